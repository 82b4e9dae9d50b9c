// NewestTimesOfRoots must answer for every root and time exactly what
// IsNewer answers after the all-nodes flags are cleared: through include
// cycles, around nodes carrying the no-dependencies marker, and on a graph
// dense enough that most walks share nodes.
#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "deps/dependency_scanner.h"
#include "support/fake_file_system.h"
#include "unit/deps/scan_test_support.h"

namespace quillon {
namespace {

class NewestTimesTest : public ::testing::Test {
 protected:
  NewestTimesTest() : scanner_(fs_) {}

  void Create(const std::string& relative, const std::string& contents) {
    fs_.Tick();
    fs_.Create(P(relative), contents);
  }
  void Update() { scanner_.Update(request_, nullptr); }
  FileTime TimeOf(const std::string& relative) { return fs_.Stat(P(relative)).time; }
  FileTime NewestOf(const std::string& root) {
    const std::vector<FileTime> newest = scanner_.NewestTimesOfRoots();
    for (size_t i = 0; i < scanner_.root_count(); ++i) {
      if (scanner_.RootAt(i)->name() == P(root)) return newest[i];
    }
    ADD_FAILURE() << "no root " << root;
    return 0;
  }
  // Every root against every time of the graph, one either side too.
  void ExpectSameAnswersAsIsNewer() {
    std::set<FileTime> times;
    for (size_t i = 0; i < scanner_.node_count(); ++i) times.insert(scanner_.NodeAt(i)->time());
    for (size_t i = 0; i < scanner_.root_count(); ++i) times.insert(scanner_.RootAt(i)->time());
    const std::vector<FileTime> newest = scanner_.NewestTimesOfRoots();
    ASSERT_EQ(newest.size(), scanner_.root_count());
    for (FileTime at : times) {
      for (FileTime time : {at - 1, at, at + 1}) {
        scanner_.ClearVisited();
        for (size_t i = 0; i < scanner_.root_count(); ++i) {
          scanner_.ClearVisitedOfNodes();
          EXPECT_EQ(scanner_.IsNewer(scanner_.RootAt(i), time), newest[i] > time)
              << scanner_.RootAt(i)->name() << " at " << time;
        }
      }
    }
  }

  FakeFileSystem fs_;
  CDependencyScanner scanner_;
  ScanRequest request_;
};

TEST_F(NewestTimesTest, CyclesShareTheirTimeAndMarkedNodesCountForNothing) {
  Create("p/x.h", "#include \"y.h\"\n");
  Create("p/a.c", "#include \"x.h\"\n#include \"z.h\"\n");
  Create("p/c.c", "//{{NO_DEPENDENCIES}}\n#include \"x.h\"\n");
  Create("p/d.c", "");
  Create("p/y.h", "#include \"x.h\"\n");  // newer than x.h, reached from x.h only
  // Includes before the marker are listed, but a walk never enters z.h.
  Create("p/z.h", "#include \"w.h\"\n//{{NO_DEPENDENCIES}}\n");
  Create("p/b.c", "#include \"w.h\"\n");
  Create("p/w.h", "");
  for (const char* source : {"p/a.c", "p/b.c", "p/c.c", "p/d.c"}) {
    request_.sources.push_back({P(source), ScanStyle::kC});
  }
  Update();

  EXPECT_EQ(NewestOf("p/a.c"), TimeOf("p/y.h"));
  EXPECT_EQ(NewestOf("p/b.c"), TimeOf("p/w.h"));
  EXPECT_EQ(NewestOf("p/c.c"), std::numeric_limits<FileTime>::min());
  EXPECT_EQ(NewestOf("p/d.c"), TimeOf("p/d.c"));
  ExpectSameAnswersAsIsNewer();
}

// Headers include others at random, back edges and self includes
// included, a few carry the marker; sources include a handful each.
TEST_F(NewestTimesTest, AgreesWithIsNewerOnARandomGraph) {
  std::mt19937 random(7);
  constexpr int kHeaders = 60;
  constexpr int kSources = 40;
  auto header = [](int i) { return "h" + std::to_string(i) + ".h"; };
  for (int i = 0; i < kHeaders; ++i) {
    std::string text;
    const int includes = static_cast<int>(random() % 4);
    for (int k = 0; k < includes; ++k) {
      // Mostly toward lower numbers, sometimes back up: cycles of all sizes.
      const int target = random() % 5 == 0 ? static_cast<int>(random() % kHeaders)
                                           : static_cast<int>(random() % (i + 1));
      text += "#include \"" + header(target) + "\"\n";
    }
    if (random() % 8 == 0) text += "//{{NO_DEPENDENCIES}}\n";
    fs_.Tick();
    fs_.Create(P("p/" + header(i)), text);
  }
  for (int i = 0; i < kSources; ++i) {
    std::string text;
    for (int k = 0; k < 3; ++k) text += "#include \"" + header(random() % kHeaders) + "\"\n";
    if (random() % 10 == 0) text = "//{{NO_DEPENDENCIES}}\n" + text;
    const std::string source = "p/s" + std::to_string(i) + ".c";
    fs_.Tick();
    fs_.Create(P(source), text);
    request_.sources.push_back({P(source), ScanStyle::kC});
  }
  // Headers rewritten in random order after the sources, so that the newest
  // file of a closure may sit anywhere in it.
  for (int i = 0; i < kHeaders / 3; ++i) {
    const std::string path = P("p/" + header(random() % kHeaders));
    std::string text;
    fs_.ReadFile(path, &text);
    fs_.Tick();
    fs_.Create(path, text);
  }
  Update();
  ASSERT_EQ(scanner_.root_count(), static_cast<size_t>(kSources));
  ExpectSameAnswersAsIsNewer();
}

}  // namespace
}  // namespace quillon
