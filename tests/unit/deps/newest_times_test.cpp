// NewestTimesOfRoots must answer for every root and time exactly what
// IsNewer answers after the all-nodes flags are cleared: through include
// cycles of every size, around nodes carrying the no-dependencies marker,
// on a graph dense enough that most walks share nodes.
#include <gtest/gtest.h>

#include <random>
#include <set>
#include <string>
#include <vector>

#include "deps/dependency_scanner.h"
#include "support/fake_file_system.h"
#include "unit/deps/scan_test_support.h"

namespace quillon {
namespace {

// Headers include others at random, back edges and self includes
// included, a few carry the marker; sources include a handful each.
TEST(NewestTimesTest, AgreesWithIsNewerOnARandomGraph) {
  FakeFileSystem fs;
  CDependencyScanner scanner(fs);
  ScanRequest request;
  std::mt19937 random(7);
  constexpr int kHeaders = 60;
  constexpr int kSources = 40;
  auto header = [](int i) { return "h" + std::to_string(i) + ".h"; };
  for (int i = 0; i < kHeaders; ++i) {
    std::string text;
    for (int k = static_cast<int>(random() % 4); k > 0; --k) {
      // Mostly toward lower numbers, sometimes back up: cycles of all sizes.
      const int target = random() % 5 == 0 ? static_cast<int>(random() % kHeaders)
                                           : static_cast<int>(random() % (i + 1));
      text += "#include \"" + header(target) + "\"\n";
    }
    if (random() % 8 == 0) text += "//{{NO_DEPENDENCIES}}\n";
    fs.Tick();
    fs.Create(P("p/" + header(i)), text);
  }
  for (int i = 0; i < kSources; ++i) {
    std::string text;
    for (int k = 0; k < 3; ++k) text += "#include \"" + header(random() % kHeaders) + "\"\n";
    if (random() % 10 == 0) text = "//{{NO_DEPENDENCIES}}\n" + text;
    const std::string source = P("p/s" + std::to_string(i) + ".c");
    fs.Tick();
    fs.Create(source, text);
    request.sources.push_back({source, ScanStyle::kC});
  }
  // Headers rewritten in random order after the sources, so that the newest
  // file of a closure may sit anywhere in it.
  for (int i = 0; i < kHeaders / 3; ++i) {
    const std::string path = P("p/" + header(random() % kHeaders));
    std::string text = fs.Contents(path);
    fs.Tick();
    fs.Create(path, text);
  }
  scanner.Update(request, nullptr);
  ASSERT_EQ(scanner.root_count(), static_cast<size_t>(kSources));

  // Every root against every time of the graph, one either side too.
  std::set<FileTime> times = {kMissingFile};  // a root where nothing counts is older than anything
  for (size_t i = 0; i < scanner.node_count(); ++i) times.insert(scanner.NodeAt(i)->time());
  for (size_t i = 0; i < scanner.root_count(); ++i) times.insert(scanner.RootAt(i)->time());
  const std::vector<FileTime> newest = scanner.NewestTimesOfRoots();
  ASSERT_EQ(newest.size(), scanner.root_count());
  for (FileTime at : times) {
    for (FileTime time : {at - 1, at, at + 1}) {
      scanner.ClearVisited();
      for (size_t i = 0; i < scanner.root_count(); ++i) {
        scanner.ClearVisitedOfNodes();
        EXPECT_EQ(scanner.IsNewer(scanner.RootAt(i), time), newest[i] > time)
            << scanner.RootAt(i)->name() << " at " << time;
      }
    }
  }
}

}  // namespace
}  // namespace quillon
