// The rebuild decision: which files must be translated, whether to link, why.
#include "deps/up_to_date.h"

#include <gtest/gtest.h>

#include <functional>

#include "deps/dependency_scanner.h"
#include "model/project_data.h"
#include "support/fake_file_system.h"
#include "support/native_path.h"

namespace quillon {
namespace {

using Names = std::vector<std::string>;

std::string In(const std::string& name) { return Rooted("/p/" + name); }

// Three sources built: objects newer than every source, the link output
// newer still.
struct Built {
  Built() : scanner(fs) {
    fs.set_current_directory(Rooted("/p"));
    project.Initialise(0);
    project.set_project_file(In("demo.qpj"));
    target = project.AddTarget("T", "");
    project.SetDefaultTarget(target);
    project.AddLinkGroup("g");
    for (const char* file : {"main.c", "util.c", "start.asm"}) project.AddFile(file, "g");
    project.global_options().include_paths().push_back({"inc", false});
    for (auto [name, text] : {std::pair{"main.c", "#include \"a.h\"\nint main;\n"},
                              {"util.c", "#include <c.h>\n"}, {"start.asm", "nop\n"},
                              {"inc/a.h", "#include \"b.h\"\n"}, {"inc/b.h", "#include \"c.h\"\n"},
                              {"inc/c.h", "// leaf\n"}})
      fs.Create(In(name), text);
    fs.Tick();
    for (const char* object : {"main.OBJ", "util.OBJ", "start.OBJ"}) fs.Create(In(object), "o");
    fs.Tick();
    fs.Create(In("demo"), "image");
    fs.Tick();
  }
  UpToDateDecision Decision() { return UpToDateDecision(project, *target, scanner, fs); }
  // The link reasons, then the file reasons, as "why" tells them.
  Names Why() {
    Names reasons;
    Decision().AppendLinkReasons(&reasons);
    std::vector<CProjectFile*> files;
    Decision().FilesToTranslate(&files, &reasons, nullptr);
    return reasons;
  }

  FakeFileSystem fs;
  CDependencyScanner scanner;
  std::unique_ptr<CProjectData> owner = CProjectData::Create();
  CProjectData& project = *owner;
  CProjectTarget* target;
};

// After one change to a built target: whether the make driver links, and
// the reasons "why" tells.
void ExpectAfter(bool must_link, const Names& why, const std::function<void(Built&)>& change) {
  Built built;
  change(built);
  EXPECT_EQ(built.Decision().TargetMustBeLinked(), must_link);
  EXPECT_EQ(built.Why(), why);
}

TEST(UpToDateTest, ObjectsNoNewerThanTheirSourcesMustBeTranslated) {
  ExpectAfter(false, {}, [](Built&) {});
  // The source's own time is up to date.
  ExpectAfter(false, {}, [](Built& b) {
    for (const char* f : {"inc/a.h", "inc/b.h", "inc/c.h", "main.OBJ"})
      b.fs.SetFileTime(In(f), b.fs.Stat(In("main.c")).time);
  });
  ExpectAfter(false, {"'main.OBJ' is not up to date."}, [](Built& b) {
    b.fs.SetFileTime(In("main.OBJ"), b.fs.Stat(In("inc/c.h")).time - 1);  // the end of the chain
  });
  // Changed options win over the missing object of the same file.
  const Names missing = {"'main.c': file options have changed.", "'util.OBJ' does not exist."};
  ExpectAfter(false, missing, [](Built& b) {
    b.fs.RemoveFile(In("util.OBJ"));
    b.fs.RemoveFile(In("main.OBJ"));
    b.target->files[0]->is_changed = true;
  });
  // Changes to an excluded file, and behind the marker, count for nothing.
  ExpectAfter(false, {}, [](Built& b) {
    b.fs.Create(In("main.c"), "//{{NO_DEPENDENCIES}}\n#include \"a.h\"\n");
    b.fs.Create(In("util.c"), "int u;\n");
    b.target->files[1]->options().SetInt(kExcludeFromMakeId, 1, Own);
  });
}

TEST(UpToDateTest, LinkReasons) {
  const std::string no_demo = "'" + In("demo") + "\" does not exist.";
  ExpectAfter(true, {no_demo}, [](Built& b) { b.fs.Create(In("demo"), ""); });
  ExpectAfter(true, {no_demo}, [](Built& b) { b.fs.RemoveFile(In("demo")); });
  ExpectAfter(true, {"'" + In("demo") + "\" is not up to date."}, [](Built& b) {
    b.fs.Create(In("main.OBJ"), "o2");
    b.fs.Create(In("util.OBJ"), "o2");
  });
  ExpectAfter(true, {"Linker options have changed."},
              [](Built& b) { b.target->is_changed = true; });
  ExpectAfter(true, {"'" + In("link.cmd") + "\": Indirection file has changed."}, [](Built& b) {
    b.target->target_options().SetString(kIndirectionFileId, " link.cmd ", 0);
    b.fs.Create(In("link.cmd"), "-o demo");
  });
}

TEST(UpToDateTest, FilesAreListedOnceAndReasonsAppendedNeverCleared) {
  Built built;
  built.fs.RemoveFile(In("start.OBJ"));
  built.fs.SetFileTime(In("main.OBJ"), 0);
  Names reasons{"earlier"};
  std::vector<CProjectFile*> files{built.target->files[1]};
  EXPECT_TRUE(built.Decision().FilesToTranslate(&files, &reasons, nullptr));
  EXPECT_EQ(reasons,
            (Names{"earlier", "'main.OBJ' is not up to date.", "'start.OBJ' does not exist."}));
  ASSERT_EQ(files.size(), 2u);
  EXPECT_EQ(files[0]->file_name() + files[1]->file_name(), "main.cstart.asm");
}

}  // namespace
}  // namespace quillon
