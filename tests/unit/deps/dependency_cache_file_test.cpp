// The dependency graph survives a trip through its cache file, and a cache
// that does not fit is refused rather than trusted. Hostile bytes are the
// fuzz target's.
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
  // A cut file is refused; damaged bytes in general are fuzz_dependency_cache's.
  EXPECT_FALSE(DecodeDependencyCache(bytes.substr(0, bytes.size() / 2), "demo.qpj", settings,
                                     &scanner));
  EXPECT_EQ(scanner.node_count() + scanner.root_count(), 0u);
}

}  // namespace
}  // namespace quillon
