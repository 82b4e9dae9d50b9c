// The dependency graph survives a trip through its cache file, and a cache
// that does not fit is refused rather than trusted.
#include <gtest/gtest.h>

#include "deps/dependency_cache_file.h"
#include "support/fake_file_system.h"
#include "support/native_path.h"

namespace quillon {
namespace {

class DependencyCacheFileTest : public ::testing::Test {
 protected:
  DependencyCacheFileTest() {
    fs.Create(Rooted("/p/main.c"), "#include \"a.h\"\n#include \"gone.h\"\n");
    fs.Create(Rooted("/p/b.c"), "//{{NO_DEPENDENCIES}}\n");
    fs.Create(Rooted("/p/a.h"), "#include \"b.h\"\n");
    fs.Create(Rooted("/p/b.h"), "#include \"a.h\"\n");
    request.sources = {{Rooted("/p/main.c"), ScanStyle::kC, 0}, {Rooted("/p/b.c"), ScanStyle::kC, 1}};
    CDependencyScanner scanner(fs);
    scanner.Update(request, nullptr);
    bytes = EncodeDependencyCache(scanner, "demo.qpj", ScanSettingsFingerprint(request));
    expected = scanner.Snapshot();
  }

  FakeFileSystem fs;
  ScanRequest request;
  std::string bytes;
  DependencyGraphSnapshot expected;
};

bool SameGraph(const DependencyGraphSnapshot& a, const DependencyGraphSnapshot& b) {
  auto same = [](const auto& x, const auto& y) {
    if (x.size() != y.size()) return false;
    for (size_t i = 0; i < x.size(); ++i) {
      if (x[i].name != y[i].name || x[i].time != y[i].time ||
          x[i].no_dependencies != y[i].no_dependencies ||
          x[i].dependencies != y[i].dependencies) {
        return false;
      }
    }
    return true;
  };
  return same(a.roots, b.roots) && same(a.nodes, b.nodes);
}

TEST_F(DependencyCacheFileTest, GraphComesBackAndIsNotScannedAgain) {
  CDependencyScanner restored(fs);
  ASSERT_TRUE(DecodeDependencyCache(bytes, "demo.qpj", ScanSettingsFingerprint(request), &restored));
  EXPECT_TRUE(SameGraph(restored.Snapshot(), expected));
  fs.ClearRecords();
  restored.Update(request, nullptr);
  EXPECT_TRUE(fs.files_mapped().empty());
  ASSERT_NE(restored.FindRoot(Rooted("/p/b.c")), nullptr);
  EXPECT_TRUE(restored.FindRoot(Rooted("/p/b.c"))->no_dependencies());
}

TEST_F(DependencyCacheFileTest, ACacheThatDoesNotFitIsRefused) {
  CDependencyScanner scanner(fs);
  std::string settings = ScanSettingsFingerprint(request);
  EXPECT_FALSE(DecodeDependencyCache(bytes, "other.qpj", settings, &scanner));
  request.include_paths.push_back({Rooted("/p/inc"), false});
  EXPECT_FALSE(DecodeDependencyCache(bytes, "demo.qpj", ScanSettingsFingerprint(request), &scanner));
  EXPECT_FALSE(DecodeDependencyCache("", "demo.qpj", settings, &scanner));
  // Every truncation and every single-byte change is either refused or
  // gives a graph that is consistent in itself; none may crash.
  for (size_t cut = 0; cut < bytes.size(); cut += 7) {
    CDependencyScanner partial(fs);
    DecodeDependencyCache(bytes.substr(0, cut), "demo.qpj", settings, &partial);
  }
  for (size_t i = 10; i < bytes.size(); ++i) {
    std::string flipped = bytes;
    flipped[i] = static_cast<char>(flipped[i] ^ 0x5A);
    CDependencyScanner damaged(fs);
    if (DecodeDependencyCache(flipped, "demo.qpj", settings, &damaged)) {
      for (size_t n = 0; n < damaged.node_count(); ++n) {
        for (const CDependencyNode* dep : damaged.NodeAt(n)->dependencies()) {
          EXPECT_NE(damaged.FindNode(dep->name()), nullptr);
        }
      }
    }
  }
}

}  // namespace
}  // namespace quillon
