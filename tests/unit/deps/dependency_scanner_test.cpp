// The dependency graph: what is scanned, rescanned, listed, pruned, newer.
#include "deps/dependency_scanner.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/fake_file_system.h"
#include "unit/deps/scan_test_support.h"

namespace quillon {
namespace {

using Names = std::vector<std::string>;

// The fake file system, except that one file disappears when it is mapped.
class VanishingFileSystem : public FakeFileSystem {
 public:
  std::unique_ptr<MappedFile> MapReadOnly(const std::string& path) override {
    if (path == doomed) RemoveFile(path);
    return FakeFileSystem::MapReadOnly(path);
  }
  std::string doomed;
};

class ScannerTest : public ::testing::Test {
 protected:
  ScannerTest() : scanner_(fs_) {}

  // Creates each {relative name, contents}.
  void Create(std::initializer_list<std::pair<const char*, const char*>> files) {
    for (const auto& [name, contents] : files) fs_.Create(P(name), contents);
  }
  void AddSources(const Names& relative, ScanStyle style = ScanStyle::kC) {
    for (const std::string& name : relative) request_.sources.push_back({P(name), style});
  }
  void Update() {
    fs_.ClearRecords();
    observer_ = RecordingObserver();
    scanner_.Update(request_, &observer_);
  }
  // Rewrites a file one tick later than anything before.
  void Touch(const std::string& relative, const std::string& contents) {
    fs_.Tick();
    fs_.Create(P(relative), contents);
  }
  int MapCount(const std::string& relative) {
    const Names mapped = fs_.files_mapped();
    return static_cast<int>(std::count(mapped.begin(), mapped.end(), P(relative)));
  }
  static Names DependencyNames(const CDependencyNode* node) {
    if (node == nullptr) return {"<no node>"};
    Names names;
    for (const CDependencyNode* d : node->dependencies()) names.push_back(d->name());
    return names;
  }
  Names RootDeps(const std::string& name) { return DependencyNames(scanner_.FindRoot(P(name))); }
  Names NodeDeps(const std::string& name) { return DependencyNames(scanner_.FindNode(P(name))); }
  bool Newer(const std::string& root, FileTime time) {
    scanner_.ClearVisited();
    return scanner_.IsNewer(scanner_.FindRoot(P(root)), time);
  }

  VanishingFileSystem fs_;
  CDependencyScanner scanner_;
  ScanRequest request_;
  RecordingObserver observer_;
};

TEST_F(ScannerTest, SharedHeadersAreScannedOnceListedOnceAndRescannedOnlyWhenChanged) {
  Create({{"p/a.c", "#include \"h.h\"\n#include \"g.h\"\n#include \"h.h\"\n"},
          {"p/b.c", "#include \"h.h\"\n"}, {"p/h.h", "#include \"g.h\"\n"}, {"p/g.h", ""}});
  AddSources({"p/a.c", "p/b.c"});
  Update();
  EXPECT_EQ(RootDeps("p/a.c"), (Names{P("p/g.h"), P("p/h.h")}));
  EXPECT_EQ(RootDeps("p/b.c"), Names{P("p/h.h")});
  EXPECT_EQ(std::pair(MapCount("p/h.h"), MapCount("p/g.h")), std::pair(1, 1));
  ASSERT_EQ(scanner_.node_count(), 2u);
  EXPECT_EQ(scanner_.NodeAt(0)->name(), P("p/g.h"));
  EXPECT_EQ(observer_.events,
            (Names{"begin Updating dependencies ...", "0", "50", "end", "changed"}));
  const FileTime built = fs_.Now();
  EXPECT_FALSE(Newer("p/b.c", built));

  Update();
  EXPECT_TRUE(fs_.files_mapped().empty());
  Touch("p/g.h", "int g;\n");
  Update();
  EXPECT_EQ(fs_.files_mapped(), Names{P("p/g.h")});
  EXPECT_TRUE(Newer("p/b.c", built));  // through h.h
  EXPECT_FALSE(Newer("p/b.c", fs_.Now()));
}

TEST_F(ScannerTest, IncludeCyclesEnd) {
  Create({{"p/a.c", "#include \"x.h\"\n"}, {"p/x.h", "#include \"y.h\"\n"},
          {"p/y.h", "#include \"x.h\"\n#include \"y.h\"\n"}});
  AddSources({"p/a.c"});
  Update();
  EXPECT_EQ(NodeDeps("p/y.h"), (Names{P("p/x.h"), P("p/y.h")}));
  EXPECT_FALSE(Newer("p/a.c", fs_.Now()));
}

TEST_F(ScannerTest, MarkerStopsTheScanAndIsSticky) {
  Create({{"p/before.c", "//{{NO_DEPENDENCIES}}\n#include \"h.h\"\n"},
          {"p/after.c", "#include \"h.h\"\n  //{{NO_DEPENDENCIES}}\n#include \"g.h\"\n"},
          {"p/user.c", "#include \"m.h\"\n"}, {"p/m.h", "//{{NO_DEPENDENCIES}}\n"},
          {"p/h.h", ""}, {"p/g.h", ""}});
  AddSources({"p/before.c", "p/after.c", "p/user.c"});
  Update();
  EXPECT_EQ(RootDeps("p/before.c"), Names{});
  EXPECT_EQ(RootDeps("p/after.c"), Names{P("p/h.h")});
  EXPECT_FALSE(Newer("p/after.c", 0));  // counts neither by itself nor by its includes

  Touch("p/m.h", "int no_marker_now;\n");
  Update();
  EXPECT_TRUE(scanner_.FindNode(P("p/m.h"))->no_dependencies());
  EXPECT_FALSE(Newer("p/user.c", fs_.Now() - 1));
}

TEST_F(ScannerTest, UnresolvedIncludesWarnWithTheirLine) {
  Create({{"p/a.c", "int a;\r\n#include \"here.h\"\r\n\r\n  #include <gone.h>\n"},
          {"p/here.h", ""}});
  AddSources({"p/a.c"});
  Update();
  EXPECT_EQ(observer_.warnings,
            (std::vector<ScanWarning>{{P("p/a.c"), 4, ": Dependence file \"gone.h\" not found"}}));
  Update();
  EXPECT_TRUE(observer_.warnings.empty());  // not rescanned, so not repeated
}

// Resolved while it existed, unreadable when visited: no dependencies, and
// the next update finds it missing.
TEST_F(ScannerTest, FileThatVanishesBeforeItIsMapped) {
  Create({{"p/a.c", "#include \"gone.h\"\n"}, {"p/gone.h", "#include \"a.c\"\n"}});
  fs_.doomed = P("p/gone.h");
  AddSources({"p/a.c"});
  Update();
  ASSERT_EQ(RootDeps("p/a.c"), Names{P("p/gone.h")});
  EXPECT_NE(scanner_.FindNode(P("p/gone.h"))->time(), kMissingFile);
  EXPECT_EQ(NodeDeps("p/gone.h"), Names{});
  Update();
  EXPECT_EQ(scanner_.FindNode(P("p/gone.h"))->time(), kMissingFile);
}

TEST_F(ScannerTest, PruningIsOnePassAndOnlyWithoutReset) {
  Create({{"p/a.c", "#include \"z.h\"\n"}, {"p/z.h", "#include \"b.h\"\n"}, {"p/b.h", ""},
          {"p/g.h", ""}});
  AddSources({"p/a.c"});
  Update();
  Touch("p/a.c", "#include \"g.h\"\n");
  Update();
  // z.h went; b.h, which only z.h included, stays one more update although
  // the pass reaches it after z.h is gone.
  EXPECT_EQ(scanner_.FindNode(P("p/z.h")), nullptr);
  EXPECT_NE(scanner_.FindNode(P("p/b.h")), nullptr);
  Update();
  EXPECT_EQ(scanner_.FindNode(P("p/b.h")), nullptr);
  EXPECT_NE(scanner_.FindNode(P("p/g.h")), nullptr);

  scanner_.SetReset();
  Update();
  EXPECT_FALSE(scanner_.reset());
  EXPECT_EQ(fs_.files_mapped(), (Names{P("p/a.c"), P("p/g.h")}));
}

TEST_F(ScannerTest, ProjectFileAlsoIncludedHasTwoNodes) {
  Create({{"p/a.c", "#include \"b.c\"\n"}, {"p/b.c", "#include \"h.h\"\n"}, {"p/h.h", ""}});
  AddSources({"p/a.c", "p/b.c"});
  Update();
  EXPECT_NE(scanner_.FindRoot(P("p/b.c")), scanner_.FindNode(P("p/b.c")));
  EXPECT_EQ(RootDeps("p/b.c"), Names{P("p/h.h")});
  EXPECT_EQ(NodeDeps("p/b.c"), Names{P("p/h.h")});
  EXPECT_EQ(MapCount("p/b.c"), 2);
}

TEST_F(ScannerTest, IndirectionFileGetsANodeUnlessAProjectFileBearsIt) {
  Create({{"p/a.c", ""}, {"p/link.rsp", ""}});
  AddSources({"p/a.c"});
  request_.indirection_file = P("p/link.rsp");
  Update();
  ASSERT_NE(scanner_.FindNode(P("p/link.rsp")), nullptr);
  EXPECT_EQ(scanner_.FindNode(P("p/link.rsp"))->time(), kMissingFile);

  scanner_.SetReset();
  request_.sources.push_back({P("p/LINK.RSP"), ScanStyle::kNone, 3});
  request_.file_count = 4;
  Update();
  EXPECT_EQ(scanner_.FindNode(P("p/link.rsp")), nullptr);
  EXPECT_EQ(scanner_.root_count(), 1u);
  EXPECT_EQ(Names(observer_.events.begin() + 1, observer_.events.begin() + 3), (Names{"0", "75"}));
}

TEST_F(ScannerTest, StylesComeFromTheProjectFile) {
  Create({{"p/top.v", "`include \"sub/x.v\"\n#include \"c.h\"\n"},
          {"p/sub/x.v", "`include \"y.v\"\n"}, {"p/sub/y.v", ""}, {"p/c.h", ""},
          {"p/boot.asm", "  INCLUDE 'x.inc'\n#include \"c.h\"\n"}, {"p/x.inc", ""}});
  AddSources({"p/top.v"}, ScanStyle::kVerilog);
  AddSources({"p/boot.asm"}, ScanStyle::kKeyword);
  Update();
  EXPECT_EQ(RootDeps("p/top.v"), Names{P("p/sub/x.v")});
  EXPECT_EQ(NodeDeps("p/sub/x.v"), Names{P("p/sub/y.v")});
  EXPECT_EQ(RootDeps("p/boot.asm"), Names{});  // keyword scanning is off
  EXPECT_EQ(MapCount("p/boot.asm"), 0);

  request_.keywords = {true, true, true, "INCLUDE", "'", "'"};
  scanner_.SetReset();
  Update();
  EXPECT_EQ(RootDeps("p/boot.asm"), Names{P("p/x.inc")});
}

}  // namespace
}  // namespace quillon
