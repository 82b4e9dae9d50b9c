// How a project lies in the store: key names, nesting, what the per-user
// part holds, and that a saved project loads back equal.
#include <gtest/gtest.h>

#include "model/project_data.h"
#include "model/registry/settings_registry.h"

namespace quillon {
namespace {

// Bytes of the project saved in one pass (under the store's root).
std::string SaveBytes(const CProjectData& project, TransferPass pass) {
  CSettingsRegistry store(nullptr, true);
  project.Save(store, pass);
  return store.Serialize();
}

void LoadBytes(CProjectData& project, const std::string& bytes, TransferPass pass) {
  MemoryByteStream stream(bytes);
  CSettingsRegistry store(&stream, false);
  ASSERT_EQ(store.LastError(), kRegOK);
  project.Load(store, pass);
}

// Reads a string at a backslash path below the root of `bytes`.
std::string ValueAt(const std::string& bytes, const std::string& key, const char* name) {
  MemoryByteStream stream(bytes);
  CSettingsRegistry store(&stream, false);
  if (!store.OpenKeyFromRoot(key, false)) return "<no key>";
  std::string value = "<no value>";
  store.ReadString(name, &value);
  return value;
}

bool HasKeyAt(const std::string& bytes, const std::string& key) {
  MemoryByteStream stream(bytes);
  CSettingsRegistry store(&stream, false);
  return store.OpenKeyFromRoot(key, false);
}

class PersistenceTest : public ::testing::Test {
 protected:
  PersistenceTest() { project.Initialise(0); }

  // Two targets, groups, files with own options, odd names.
  void BuildRichProject() {
    project.target_set().project_name = "Demo & 'friends'";
    project.target_set().filter_name = "GCC";
    project.target_set().filter_selection.cmp_use_default_name = false;
    project.target_set().filter_selection.cmp_custom_filter_name = "cc.err";
    CProjectTarget* debug = project.AddTarget("Debug", "");
    project.AddLinkGroup("Source files");
    project.AddLinkGroup("Start up \xE9\xE8");
    project.AddFile("src/main.c", "Source files");
    project.AddFile("C:\\abs path\\uart & spi.c", "Source files");
    project.AddFile("boot.asm", "Start up \xE9\xE8");
    debug->files[0]->options().SetString(kCompilerOptionsId, std::string(70000, 'x'), Own);
    debug->files[1]->options().SetInt(kExcludeFromMakeId, 1, Own);
    debug->files[1]->is_changed = true;
    debug->target_options().SetString(kLinkerOptionsId, "-Map fw.map", 0);
    debug->target_options().SetInt(kCrLfId, 1, 0);
    debug->is_changed = true;
    CProjectTarget* release = project.AddTarget("Release", "Debug");
    release->target_options().SetString(kTargetDirectoryId, "rel", 0);
    project.SetDefaultTarget(release);
    CGlobalOptions& global = project.global_options();
    global.SetString(kCompilerDirectory, "C:\\Tools\\", 0);
    global.SetInt(kRunCommandInterpreterAsm, 0, 0);
    global.SetInt(kDeleteTemporalyFiles, 1, 0);
    global.include_paths() = {{"inc", false}, {"lib\\usb\\include", true}};
    global.include_keyword() = {true, false, true, "INCLUDE", "'", "'"};
    global.SetStringList(kEnvironmentSettingsList, {"PATH=C:\\bin", "MODE=1"});
  }

  CProjectData project;
};

TEST_F(PersistenceTest, RichProjectLoadsBackEqualInBothParts) {
  BuildRichProject();
  std::string shared = SaveBytes(project, TransferPass::kShared);
  std::string local = SaveBytes(project, TransferPass::kLocal);

  CProjectData loaded;
  loaded.Initialise(0);
  LoadBytes(loaded, shared, TransferPass::kShared);
  LoadBytes(loaded, local, TransferPass::kLocal);

  ASSERT_EQ(loaded.target_set().targets.size(), 2u);
  ASSERT_NE(loaded.default_target(), nullptr);
  EXPECT_EQ(loaded.default_target()->name, "Release");
  EXPECT_EQ(loaded.target_set().project_name, "Demo & 'friends'");
  EXPECT_EQ(loaded.target_set().filter_selection, project.target_set().filter_selection);
  EXPECT_EQ(loaded.global_options().GetInt(kRunCommandInterpreterAsm, 0), 0);
  EXPECT_EQ(loaded.global_options().include_paths(), project.global_options().include_paths());
  EXPECT_EQ(loaded.global_options().include_keyword(), project.global_options().include_keyword());
  CProjectTarget* debug = loaded.FindTarget("Debug");
  ASSERT_EQ(debug->files.size(), 3u);
  EXPECT_EQ(debug->files[1]->file_name(), "C:\\abs path\\uart & spi.c");
  EXPECT_EQ(debug->files[1]->display_name(), "uart & spi.c");
  EXPECT_EQ(debug->files[1]->options().GetInt(kExcludeFromMakeId, 1), 1);
  EXPECT_EQ(debug->groups[1]->name, "Start up \xE9\xE8");
  // The store keeps string lengths modulo 65536.
  EXPECT_EQ(debug->files[0]->options().GetString(kCompilerOptionsId, 0).size(), 70000u - 65536u);

  // Saving what was loaded gives the same bytes again.
  EXPECT_EQ(SaveBytes(loaded, TransferPass::kShared), shared);
  EXPECT_EQ(SaveBytes(loaded, TransferPass::kLocal), local);
}

TEST_F(PersistenceTest, KeyNamesKeepTheirHistoricSpellings) {
  BuildRichProject();
  std::string shared = SaveBytes(project, TransferPass::kShared);
  EXPECT_TRUE(HasKeyAt(shared, "Project[0]\\Target[0]\\TargetOptios"));
  EXPECT_TRUE(HasKeyAt(shared, "Project[0]\\Target[0]\\FileOptios"));
  EXPECT_TRUE(HasKeyAt(shared, "Project[0]\\Target[0]\\LinkGroup[1]\\File[0]\\FileOptios"));
  EXPECT_TRUE(HasKeyAt(shared, "Project[0]\\TargetOptions"));
  EXPECT_TRUE(HasKeyAt(shared, "Project[0]\\LinkGroupOptions"));
  EXPECT_TRUE(HasKeyAt(shared, "Project[0]\\AdvancedLinkerOptions"));
  EXPECT_TRUE(HasKeyAt(shared, "ProjectOptions"));
  EXPECT_TRUE(HasKeyAt(shared, "GlobalOptions"));
  EXPECT_EQ(ValueAt(shared, "Project[0]\\Target[1]", "TargetName"), "Release");
  EXPECT_EQ(ValueAt(shared, "Project[0]\\Target[0]", "IsChanged"), "True");
  EXPECT_EQ(ValueAt(shared, "Project[0]\\AdvancedLinkerOptions", "CmpUseDefaultName"), "False");
}

TEST_F(PersistenceTest, DefaultTargetNameIsInBothPartsAndLocalHoldsNoStructure) {
  BuildRichProject();
  std::string shared = SaveBytes(project, TransferPass::kShared);
  std::string local = SaveBytes(project, TransferPass::kLocal);
  EXPECT_EQ(ValueAt(shared, "Project[0]", "DefaultTargetName"), "Release");
  EXPECT_EQ(ValueAt(local, "Project[0]", "DefaultTargetName"), "Release");
  EXPECT_FALSE(HasKeyAt(local, "Project[0]\\Target[0]"));
  EXPECT_EQ(ValueAt(local, "Project[0]", "ProjectName"), "<no value>");
  EXPECT_TRUE(HasKeyAt(local, "ProjectOptions"));
  EXPECT_TRUE(HasKeyAt(local, "GlobalOptions"));
  EXPECT_EQ(ValueAt(local, "", "CompilerType"), "<no value>");
}

TEST_F(PersistenceTest, ProjectWithoutTargetsWritesAnEmptyDefaultAndNoTargetKeys) {
  std::string shared = SaveBytes(project, TransferPass::kShared);
  EXPECT_EQ(ValueAt(shared, "Project[0]", "DefaultTargetName"), "");
  EXPECT_FALSE(HasKeyAt(shared, "Project[0]\\Target[0]"));
  EXPECT_EQ(ValueAt(shared, "Project[0]", "FilterName"), "No filter");
}

TEST_F(PersistenceTest, MissingProjectOptionsStillReadsTheTargets) {
  CSettingsRegistry writer(nullptr, true);
  writer.OpenKeyFromRoot("Project[0]\\Target[0]", true);
  writer.WriteString("TargetName", "Only");
  writer.OpenKeyFromRoot("Project[0]", true);
  writer.WriteString("DefaultTargetName", "Only");
  writer.WriteString("FilterName", "IAR-ARM");
  CProjectData loaded;
  loaded.Initialise(0);
  LoadBytes(loaded, writer.Serialize(), TransferPass::kShared);
  ASSERT_NE(loaded.default_target(), nullptr);
  EXPECT_EQ(loaded.default_target()->name, "Only");
  EXPECT_EQ(loaded.target_set().filter_name, "IAR");
  EXPECT_EQ(loaded.global_options().GetString(kCInpExtensions, 0), "C;CPP");
}

}  // namespace
}  // namespace quillon
