// The dependency graph on a fake file system whose clock moves only when
// told: what is scanned, rescanned, listed, pruned and found newer.
#include "deps/dependency_scanner.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/fake_file_system.h"
#include "unit/deps/scan_test_support.h"

namespace quillon {
namespace {

class ScannerTest : public ::testing::Test {
 protected:
  ScannerTest() : scanner_(fs_) {}

  void AddSource(const std::string& relative, ScanStyle style = ScanStyle::kC) {
    request_.sources.push_back({P(relative), style});
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
    const auto mapped = fs_.files_mapped();
    return static_cast<int>(std::count(mapped.begin(), mapped.end(), P(relative)));
  }
  std::vector<std::string> DependencyNames(const CDependencyNode* node) {
    std::vector<std::string> names;
    if (node == nullptr) return {"<no node>"};
    for (const CDependencyNode* d : node->dependencies()) names.push_back(d->name());
    return names;
  }
  std::vector<std::string> RootDeps(const std::string& relative) {
    return DependencyNames(scanner_.FindRoot(P(relative)));
  }
  bool Newer(const std::string& root, FileTime time) {
    scanner_.ClearVisited();
    return scanner_.IsNewer(scanner_.FindRoot(P(root)), time);
  }

  FakeFileSystem fs_;
  CDependencyScanner scanner_;
  ScanRequest request_;
  RecordingObserver observer_;
};

using Names = std::vector<std::string>;

TEST_F(ScannerTest, SharedHeaderIsScannedOnceAndListedOnce) {
  fs_.Create(P("p/a.c"), "#include \"h.h\"\n#include \"g.h\"\n#include \"h.h\"\n");
  fs_.Create(P("p/b.c"), "#include \"h.h\"\n");
  fs_.Create(P("p/h.h"), "#include \"g.h\"\n");
  fs_.Create(P("p/g.h"), "");
  AddSource("p/a.c");
  AddSource("p/b.c");
  Update();

  EXPECT_EQ(RootDeps("p/a.c"), (Names{P("p/g.h"), P("p/h.h")}));
  EXPECT_EQ(RootDeps("p/b.c"), Names{P("p/h.h")});
  EXPECT_EQ(MapCount("p/h.h"), 1);
  EXPECT_EQ(MapCount("p/g.h"), 1);
  ASSERT_EQ(scanner_.node_count(), 2u);
  EXPECT_EQ(scanner_.NodeAt(0)->name(), P("p/g.h"));
  EXPECT_EQ(scanner_.NodeAt(1)->name(), P("p/h.h"));
  EXPECT_EQ(observer_.events,
            (Names{"begin Updating dependencies ...", "0", "50", "end", "changed"}));
}

TEST_F(ScannerTest, UnchangedFilesAreNotMappedAgain) {
  fs_.Create(P("p/a.c"), "#include \"b.h\"\n");
  fs_.Create(P("p/b.h"), "#include \"c.h\"\n");
  fs_.Create(P("p/c.h"), "int c;\n");
  AddSource("p/a.c");
  Update();
  const FileTime built = fs_.Now();
  EXPECT_FALSE(Newer("p/a.c", built));

  Update();
  EXPECT_TRUE(fs_.files_mapped().empty());

  Touch("p/c.h", "int c2;\n");
  Update();
  EXPECT_EQ(fs_.files_mapped(), Names{P("p/c.h")});
  EXPECT_TRUE(Newer("p/a.c", built));  // through b.h
  EXPECT_FALSE(Newer("p/a.c", fs_.Now()));
}

TEST_F(ScannerTest, IncludeCyclesEnd) {
  fs_.Create(P("p/a.c"), "#include \"x.h\"\n");
  fs_.Create(P("p/x.h"), "#include \"y.h\"\n");
  fs_.Create(P("p/y.h"), "#include \"x.h\"\n#include \"y.h\"\n");
  AddSource("p/a.c");
  Update();
  EXPECT_EQ(DependencyNames(scanner_.FindNode(P("p/y.h"))), (Names{P("p/x.h"), P("p/y.h")}));
  EXPECT_FALSE(Newer("p/a.c", fs_.Now()));
  Touch("p/y.h", "#include \"x.h\"\n");
  Update();
  EXPECT_TRUE(Newer("p/a.c", fs_.Now() - 1));
}

TEST_F(ScannerTest, VisitedNodesAnswerFalseUntilCleared) {
  fs_.Create(P("p/a.c"), "#include \"h.h\"\n");
  fs_.Create(P("p/b.c"), "#include \"h.h\"\n");
  fs_.Create(P("p/h.h"), "");
  AddSource("p/a.c");
  AddSource("p/b.c");
  Update();
  const FileTime before = fs_.Now();
  Touch("p/h.h", "");
  Update();
  scanner_.ClearVisited();
  // A newer node is not marked, so the second root still sees it.
  EXPECT_TRUE(scanner_.IsNewer(scanner_.FindRoot(P("p/a.c")), before));
  EXPECT_TRUE(scanner_.IsNewer(scanner_.FindRoot(P("p/b.c")), before));
  // A root already walked answers false.
  scanner_.ClearVisited();
  EXPECT_FALSE(scanner_.IsNewer(scanner_.FindRoot(P("p/a.c")), fs_.Now()));
  EXPECT_FALSE(scanner_.IsNewer(scanner_.FindRoot(P("p/a.c")), before));
  scanner_.ClearVisitedOfNodes();
  EXPECT_FALSE(scanner_.IsNewer(scanner_.FindRoot(P("p/a.c")), before));
}

TEST_F(ScannerTest, MarkerStopsTheScanAndIsSticky) {
  fs_.Create(P("p/before.c"), "//{{NO_DEPENDENCIES}}\n#include \"h.h\"\n");
  fs_.Create(P("p/after.c"), "#include \"h.h\"\n  //{{NO_DEPENDENCIES}}\n#include \"g.h\"\n");
  fs_.Create(P("p/user.c"), "#include \"m.h\"\n");
  fs_.Create(P("p/m.h"), "//{{NO_DEPENDENCIES}}\n");
  fs_.Create(P("p/h.h"), "");
  fs_.Create(P("p/g.h"), "");
  AddSource("p/before.c");
  AddSource("p/after.c");
  AddSource("p/user.c");
  Update();
  EXPECT_EQ(RootDeps("p/before.c"), Names{});
  EXPECT_EQ(RootDeps("p/after.c"), Names{P("p/h.h")});
  EXPECT_TRUE(scanner_.FindRoot(P("p/after.c"))->no_dependencies());
  EXPECT_FALSE(Newer("p/after.c", 0));  // counts neither by itself nor by its includes

  Touch("p/m.h", "int no_marker_now;\n");
  Update();
  EXPECT_TRUE(scanner_.FindNode(P("p/m.h"))->no_dependencies());
  EXPECT_FALSE(Newer("p/user.c", fs_.Now() - 1));
}

TEST_F(ScannerTest, UnresolvedIncludesWarnWithTheirLine) {
  fs_.Create(P("p/a.c"), "int a;\r\n#include \"here.h\"\r\n\r\n  #include <gone.h>\n");
  fs_.Create(P("p/here.h"), "");
  AddSource("p/a.c");
  Update();
  EXPECT_EQ(observer_.warnings,
            (std::vector<ScanWarning>{{P("p/a.c"), 4, ": Dependence file \"gone.h\" not found"}}));
  Update();
  EXPECT_TRUE(observer_.warnings.empty());  // not rescanned, so not repeated
}

TEST_F(ScannerTest, PruningIsOnePassAndOnlyWithoutReset) {
  fs_.Create(P("p/a.c"), "#include \"z.h\"\n");
  fs_.Create(P("p/z.h"), "#include \"b.h\"\n");
  fs_.Create(P("p/b.h"), "");
  fs_.Create(P("p/g.h"), "");
  AddSource("p/a.c");
  Update();
  ASSERT_EQ(scanner_.node_count(), 2u);

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
  fs_.Create(P("p/a.c"), "#include \"b.c\"\n");
  fs_.Create(P("p/b.c"), "#include \"h.h\"\n");
  fs_.Create(P("p/h.h"), "");
  AddSource("p/a.c");
  AddSource("p/b.c");
  Update();
  const CDependencyNode* as_root = scanner_.FindRoot(P("p/b.c"));
  const CDependencyNode* as_include = scanner_.FindNode(P("p/b.c"));
  ASSERT_NE(as_root, nullptr);
  ASSERT_NE(as_include, nullptr);
  EXPECT_NE(as_root, as_include);
  EXPECT_EQ(DependencyNames(as_root), DependencyNames(as_include));
  EXPECT_EQ(MapCount("p/b.c"), 2);
}

TEST_F(ScannerTest, IndirectionFileGetsANodeUnlessAProjectFileBearsIt) {
  fs_.Create(P("p/a.c"), "");
  fs_.Create(P("p/link.rsp"), "");
  AddSource("p/a.c");
  request_.indirection_file = P("p/link.rsp");
  Update();
  const CDependencyNode* node = scanner_.FindNode(P("p/link.rsp"));
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(node->time(), kMissingFile);

  scanner_.SetReset();
  request_.sources.push_back({P("p/LINK.RSP"), ScanStyle::kNone});
  request_.file_count = 4;
  request_.sources[1].file_index = 3;
  Update();
  EXPECT_EQ(scanner_.FindNode(P("p/link.rsp")), nullptr);
  EXPECT_EQ(scanner_.root_count(), 1u);
  EXPECT_EQ(observer_.events[1], "0");
  EXPECT_EQ(observer_.events[2], "75");
}

TEST_F(ScannerTest, StylesComeFromTheProjectFile) {
  fs_.Create(P("p/top.v"), "`include \"sub/x.v\"\n#include \"c.h\"\n");
  fs_.Create(P("p/sub/x.v"), "`include \"y.v\"\n");
  fs_.Create(P("p/sub/y.v"), "");
  fs_.Create(P("p/c.h"), "");
  fs_.Create(P("p/boot.asm"), "  INCLUDE 'x.inc'\n#include \"c.h\"\n");
  fs_.Create(P("p/x.inc"), "");
  AddSource("p/top.v", ScanStyle::kVerilog);
  AddSource("p/boot.asm", ScanStyle::kKeyword);
  Update();
  EXPECT_EQ(RootDeps("p/top.v"), Names{P("p/sub/x.v")});
  EXPECT_EQ(DependencyNames(scanner_.FindNode(P("p/sub/x.v"))), Names{P("p/sub/y.v")});
  EXPECT_EQ(RootDeps("p/boot.asm"), Names{});  // keyword scanning is off
  EXPECT_EQ(MapCount("p/boot.asm"), 0);

  request_.keywords = {true, true, true, "INCLUDE", "'", "'"};
  scanner_.SetReset();
  Update();
  EXPECT_EQ(RootDeps("p/boot.asm"), Names{P("p/x.inc")});
}

}  // namespace
}  // namespace quillon
