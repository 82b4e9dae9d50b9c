// Structure edits of the project model: targets, link groups and files act
// on every target at once.
#include <gtest/gtest.h>

#include "model/project_data.h"
#include "platform/path.h"
#include "support/native_path.h"

namespace quillon {
namespace {

using Names = std::vector<std::string>;

Names GroupNames(const CProjectTarget& target) {
  Names names;
  for (const auto& group : target.groups) names.push_back(group->name);
  return names;
}
Names FileNames(const CProjectTarget& target) {
  Names names;
  for (const CProjectFile* file : target.files) names.push_back(file->file_name());
  return names;
}

class ProjectModelTest : public ::testing::Test {
 protected:
  ProjectModelTest() { project.Initialise(0); }
  std::unique_ptr<CProjectData> owner = CProjectData::Create();
  CProjectData& project = *owner;
};

// A translator family of its own: its sets must be the ones every level
// gets, from the project's own sets to each file's.
class MarkedFileOptions : public CUnivFileOptions {};
class MarkedGlobalOptions : public CGlobalOptions {};
class MarkedFamily : public CProjectData {
 public:
  std::unique_ptr<COptionSet> NewFileOptions() const override {
    return std::make_unique<MarkedFileOptions>();
  }
  std::unique_ptr<CGlobalOptions> NewGlobalOptions() const override {
    return std::make_unique<MarkedGlobalOptions>();
  }
  std::unique_ptr<CProjectData> Clone() const override { return Create<MarkedFamily>(); }

 private:
  friend class CProjectData;
  explicit MarkedFamily(int compiler_type) : CProjectData(compiler_type) {}
};

TEST(ProjectFamilyTest, EveryLevelGetsTheFamilysOptionSets) {
  std::unique_ptr<CProjectData> project = CProjectData::Create<MarkedFamily>();
  EXPECT_NE(dynamic_cast<MarkedGlobalOptions*>(&project->global_options()), nullptr);
  EXPECT_NE(dynamic_cast<MarkedFileOptions*>(&project->file_default_options()), nullptr);
  CProjectTarget* target = project->AddTarget("T", "");
  project->AddLinkGroup("g");
  project->AddFile("a.c", "g");
  EXPECT_NE(dynamic_cast<MarkedFileOptions*>(&target->file_options()), nullptr);
  EXPECT_NE(dynamic_cast<MarkedFileOptions*>(&target->files[0]->options()), nullptr);
  EXPECT_NE(dynamic_cast<MarkedGlobalOptions*>(&project->Clone()->global_options()), nullptr);
}

TEST_F(ProjectModelTest, EditsActInEveryTarget) {
  EXPECT_TRUE(project.AddTarget("A", "")->groups.empty());
  project.AddLinkGroup("g1");
  project.AddTarget("B", "");  // takes the first target's structure
  project.AddLinkGroup("g2");  // last, in every target
  EXPECT_TRUE(project.AddFile("a.c", "g1"));
  EXPECT_FALSE(project.AddFile("a.c", "g2"));
  EXPECT_FALSE(project.AddFile("x.c", "missing"));
  project.AddFile("b.c", "g1");
  project.AddFile("c.c", "g2");
  EXPECT_TRUE(project.ChangeFileGroup("a.c", "g2"));
  EXPECT_FALSE(project.ChangeFileGroup("missing.c", "g2"));
  EXPECT_FALSE(project.ChangeFileGroup("a.c", "missing"));
  EXPECT_TRUE(project.MoveLinkGroup("g2", -1));
  EXPECT_FALSE(project.MoveLinkGroup("g2", -1));  // already first
  EXPECT_TRUE(project.MoveProjectFile("a.c", -1));
  for (const auto& target : project.target_set().targets) {
    EXPECT_EQ(GroupNames(*target), (Names{"g2", "g1"}));
    EXPECT_EQ(FileNames(*target), (Names{"a.c", "c.c", "b.c"}));
    EXPECT_EQ(target->groups.back()->owner, target.get());
  }
  EXPECT_NE(project.FindTarget("A")->groups[0].get(), project.FindTarget("B")->groups[0].get());
  EXPECT_TRUE(project.DeleteLinkGroup("g2"));
  EXPECT_TRUE(project.DeleteProjectFile("b.c"));
  for (const auto& target : project.target_set().targets) {
    EXPECT_EQ(GroupNames(*target), Names{"g1"});
    EXPECT_TRUE(target->files.empty());
  }
  EXPECT_TRUE(project.AddTarget("C", "nobody")->groups.empty());
}

TEST_F(ProjectModelTest, TargetWithoutSourceTakesStructureOfFirstTargetAndDefaults) {
  CProjectTarget* a = project.AddTarget("A", "");
  project.AddLinkGroup("g");
  project.AddFile("main.c", "g");
  a->target_options().SetString(kTargetDirectoryId, "out", Own);
  a->files[0]->options().SetString(kCompilerOptionsId, "-O2", Own);

  CProjectTarget* b = project.AddTarget("B", "");
  EXPECT_EQ(GroupNames(*b), GroupNames(*a));
  EXPECT_EQ(FileNames(*b), FileNames(*a));
  EXPECT_EQ(b->target_options().GetString(kTargetDirectoryId, 0), "");
  EXPECT_EQ(b->files[0]->options().GetString(kCompilerOptionsId, 0), "$(EDNAME)");
  EXPECT_EQ(b->files[0]->options().GetString(kCompilerOptionsId, 1), "0");

  CProjectTarget* c = project.AddTarget("C", "A");
  EXPECT_EQ(c->target_options().GetString(kTargetDirectoryId, 0), "out");
  EXPECT_EQ(c->files[0]->options().GetString(kCompilerOptionsId, 0), "-O2");
  EXPECT_EQ(c->files[0]->options().GetString(kCompilerOptionsId, 1), "1");
  // Copies, not shared objects.
  EXPECT_NE(c->files[0], a->files[0]);
}

// A copy has its own objects, the default target the one at the same place.
TEST_F(ProjectModelTest, CopyFromCopiesEverything) {
  project.AddTarget("A", "");
  project.SetDefaultTarget(project.AddTarget("B", ""));
  project.AddLinkGroup("g");
  project.AddFile("x.c", "g");
  CGlobalOptions& global = project.global_options();
  global.SetString(kCInpExtensions, "C", 0);
  global.include_paths().push_back({"inc", true});
  global.include_keyword().keyword = "INCLUDE";
  global.SetStringList(kEnvironmentSettingsList, {"X=1"});
  std::unique_ptr<CProjectData> copy = project.Clone();
  copy->CopyFrom(project);
  ASSERT_NE(copy->default_target(), nullptr);
  EXPECT_EQ(copy->default_target()->name, "B");
  EXPECT_NE(copy->default_target(), project.default_target());
  EXPECT_EQ(FileNames(*copy->FindTarget("A")), Names{"x.c"});
  const CGlobalOptions& copied = copy->global_options();
  EXPECT_EQ(copied.GetString(kCInpExtensions, 0), "C");
  EXPECT_TRUE(copied.include_paths() == global.include_paths() &&
              copied.include_keyword() == global.include_keyword());
  Names env;
  copied.GetStringList(kEnvironmentSettingsList, &env);
  EXPECT_EQ(env, Names{"X=1"});
}

TEST_F(ProjectModelTest, FilesAreClassifiedByTheExtensionLists) {
  const std::pair<const char*, int> cases[] = {
      {"a.c", kFileCompilerSource}, {"a.CPP", kFileCompilerSource},
      {"start.asm", kFileAssemblerSource}, {"a.h", kFileHeader},
      {"regs.inc", kFileAssemblerHeader}, {"lib.lib", kFileLinkerInput}, {"readme", kFileOther}};
  for (auto [name, kind] : cases) EXPECT_EQ(project.ClassifyFile(name), kind) << name;
}

TEST_F(ProjectModelTest, OutputNamesFollowTheTargetAndGlobalOptions) {
  project.set_project_file(Native("/p/demo.qpj"));
  CProjectTarget* target = project.AddTarget("T", "");
  project.AddLinkGroup("g");
  for (const char* file : {"src/main.c", "boot.asm", "notes.txt"}) project.AddFile(file, "g");

  EXPECT_EQ(project.OutputDirectory(*target), Native("/p/"));
  EXPECT_EQ(project.OutputFile(*target), Native("/p/demo"));
  target->target_options().SetString(kTargetDirectoryId, "out", 0);
  project.global_options().SetString(kExecutableFileName, "fw.hex", 0);
  project.global_options().SetString(kAOutExtensions, "R;O", 0);
  EXPECT_EQ(project.OutputDirectory(*target), Native("/p/out/"));
  EXPECT_EQ(project.OutputFile(*target), Native("/p/out/fw.hex"));
  EXPECT_EQ(project.OutputFileOf(*target, *target->files[0]), Native("/p/out/main.OBJ"));
  EXPECT_EQ(project.OutputFileOf(*target, *target->files[1]), Native("/p/out/boot.R"));
  EXPECT_EQ(project.OutputFileOf(*target, *target->files[2]), "");
}

TEST(FilterNameTest, OldProcessorSpecificNamesLoadUnderTheirFamily) {
  EXPECT_EQ(UpdateFilterName("AD-123456789"), "2500AD");              // 12 characters
  EXPECT_EQ(UpdateFilterName("AD-1234567890"), "2500AD (ver. 4.0)");  // 13
  EXPECT_EQ(UpdateFilterName("iar-8051"), "iar-8051");
}

}  // namespace
}  // namespace quillon
