// The rebuild decision on a fake file system whose clock moves only when
// told: which files must be translated, whether to link, and the reasons.
#include <gtest/gtest.h>

#include "deps/dependency_scanner.h"
#include "deps/up_to_date.h"
#include "model/project_data.h"
#include "support/fake_file_system.h"
#include "support/native_path.h"

namespace quillon {
namespace {

class UpToDateTest : public ::testing::Test {
 protected:
  UpToDateTest() : scanner(fs) {
    fs.set_current_directory(Rooted("/p"));
    project.Initialise(0);
    project.set_project_file(Rooted("/p/demo.qpj"));
    target = project.AddTarget("T", "");
    project.SetDefaultTarget(target);
    project.AddLinkGroup("g");
    project.AddFile("main.c", "g");
    project.AddFile("util.c", "g");
    project.AddFile("start.asm", "g");
    project.global_options().include_paths().push_back({"inc", false});

    fs.Create(Rooted("/p/main.c"), "#include \"a.h\"\nint main;\n");
    fs.Create(Rooted("/p/util.c"), "#include <c.h>\n");
    fs.Create(Rooted("/p/start.asm"), "nop\n");
    fs.Create(Rooted("/p/inc/a.h"), "#include \"b.h\"\n");
    fs.Create(Rooted("/p/inc/b.h"), "#include \"c.h\"\n");
    fs.Create(Rooted("/p/inc/c.h"), "// leaf\n");
    fs.Tick();
    BuildAll();
  }

  // Objects and the link output, newer than every source.
  void BuildAll() {
    fs.Create(Rooted("/p/main.OBJ"), "o");
    fs.Create(Rooted("/p/util.OBJ"), "o");
    fs.Create(Rooted("/p/start.OBJ"), "o");
    fs.Tick();
    fs.Create(Rooted("/p/demo"), "image");
    fs.Tick();
  }

  std::vector<std::string> Why() {
    std::vector<std::string> reasons;
    UpToDateDecision decision(project, *target, scanner, fs);
    decision.AppendLinkReasons(&reasons);
    std::vector<CProjectFile*> files;
    decision.FilesToTranslate(&files, &reasons, nullptr);
    return reasons;
  }

  std::vector<std::string> FilesToTranslate() {
    UpToDateDecision decision(project, *target, scanner, fs);
    std::vector<CProjectFile*> files;
    decision.FilesToTranslate(&files, nullptr, nullptr);
    std::vector<std::string> names;
    for (CProjectFile* file : files) names.push_back(file->file_name());
    return names;
  }

  bool MustLink() { return UpToDateDecision(project, *target, scanner, fs).TargetMustBeLinked(); }

  FakeFileSystem fs;
  CDependencyScanner scanner;
  std::unique_ptr<CProjectData> owner = CProjectData::Create();
  CProjectData& project = *owner;
  CProjectTarget* target;
};

TEST_F(UpToDateTest, ObjectWithTheSourcesOwnTimeIsUpToDate) {
  EXPECT_TRUE(FilesToTranslate().empty());
  EXPECT_FALSE(MustLink());
  FileTime source_time = fs.Stat(Rooted("/p/main.c")).time;
  fs.SetFileTime(Rooted("/p/inc/a.h"), source_time);
  fs.SetFileTime(Rooted("/p/inc/b.h"), source_time);
  fs.SetFileTime(Rooted("/p/inc/c.h"), source_time);
  fs.SetFileTime(Rooted("/p/main.OBJ"), source_time);
  EXPECT_TRUE(FilesToTranslate().empty());
  fs.SetFileTime(Rooted("/p/main.OBJ"), source_time - 1);
  EXPECT_EQ(FilesToTranslate(), (std::vector<std::string>{"main.c"}));
}

TEST_F(UpToDateTest, MissingObjectAndChangedOptions) {
  fs.RemoveFile(Rooted("/p/util.OBJ"));
  target->files[0]->is_changed = true;
  fs.RemoveFile(Rooted("/p/main.OBJ"));
  // Options changed wins over the missing object for the same file.
  EXPECT_EQ(Why(), (std::vector<std::string>{"'main.c': file options have changed.",
                                             "'util.OBJ' does not exist."}));
}

TEST_F(UpToDateTest, EmptyOrMissingLinkOutputMustBeLinked) {
  fs.Create(Rooted("/p/demo"), "");
  EXPECT_TRUE(MustLink());
  EXPECT_EQ(Why(), (std::vector<std::string>{"'" + Rooted("/p/demo") + "\" does not exist."}));
  fs.RemoveFile(Rooted("/p/demo"));
  EXPECT_TRUE(MustLink());
}

TEST_F(UpToDateTest, NewerObjectsGiveOneLinkReason) {
  fs.Create(Rooted("/p/main.OBJ"), "o2");
  fs.Create(Rooted("/p/util.OBJ"), "o2");
  EXPECT_TRUE(MustLink());
  EXPECT_EQ(Why(), (std::vector<std::string>{"'" + Rooted("/p/demo") + "\" is not up to date."}));
}

TEST_F(UpToDateTest, LinkerOptionsAndIndirectionFile) {
  target->is_changed = true;
  EXPECT_TRUE(MustLink());
  EXPECT_EQ(Why(), (std::vector<std::string>{"Linker options have changed."}));
  target->is_changed = false;

  target->target_options().SetString(kIndirectionFileId, " link.cmd ", 0);
  fs.Create(Rooted("/p/link.cmd"), "-o demo");
  EXPECT_TRUE(MustLink());
  EXPECT_EQ(Why(), (std::vector<std::string>{"'" + Rooted("/p/link.cmd") +
                                             "\": Indirection file has changed."}));
}

TEST_F(UpToDateTest, ExcludedFilesAndMarkedFilesCountForNothing) {
  fs.Create(Rooted("/p/main.c"), "//{{NO_DEPENDENCIES}}\n#include \"a.h\"\n");
  fs.Create(Rooted("/p/util.c"), "int u;\n");
  target->files[1]->options().SetInt(kExcludeFromMakeId, 1, Own);
  EXPECT_TRUE(FilesToTranslate().empty());
  EXPECT_FALSE(MustLink());
}

TEST_F(UpToDateTest, ReasonsAreAppendedNeverCleared) {
  fs.RemoveFile(Rooted("/p/start.OBJ"));
  std::vector<std::string> reasons{"earlier"};
  UpToDateDecision decision(project, *target, scanner, fs);
  std::vector<CProjectFile*> files{target->files[0]};
  EXPECT_TRUE(decision.FilesToTranslate(&files, &reasons, nullptr));
  EXPECT_EQ(reasons, (std::vector<std::string>{"earlier", "'start.OBJ' does not exist."}));
  ASSERT_EQ(files.size(), 1u);
  EXPECT_EQ(files[0]->file_name(), "start.asm");
}

}  // namespace
}  // namespace quillon
