// Where includes are looked for, and the directory cache that answers
// "does it exist" as the file system would.
#include "deps/include_resolver.h"

#include <gtest/gtest.h>

#include <sstream>

#include "deps/directory_cache.h"
#include "support/fake_file_system.h"
#include "unit/deps/scan_test_support.h"

namespace quillon {
namespace {

class ResolverTest : public ::testing::Test {
 protected:
  ResolverTest() : resolver_(fs_) {}

  std::string Resolve(const std::string& including, const std::string& name,
                      std::vector<IncludeSearchPath> paths = {}) {
    resolver_.BeginUpdate(paths);
    resolver_.SetIncludingFile(including);
    IncludeTarget* target = resolver_.Resolve(name);
    std::string result = target == nullptr ? "<not found>" : target->path;
    resolver_.EndUpdate();
    return result;
  }

  FakeFileSystem fs_;
  IncludeResolver resolver_;
};

TEST_F(ResolverTest, IncludingDirectoryComesBeforeIncludePaths) {
  fs_.Create(P("p/src/x.h"), "");
  fs_.Create(P("p/inc1/x.h"), "");
  fs_.Create(P("p/inc1/only.h"), "");
  fs_.Create(P("p/inc2/only.h"), "");
  fs_.Create(P("p/inc2/sys/t.h"), "");
  fs_.Create(P("p/common/c.h"), "");
  const std::vector<IncludeSearchPath> paths = {{P("p/inc1"), false}, {P("p/inc2"), false}};
  EXPECT_EQ(Resolve(P("p/src/a.c"), "x.h", paths), P("p/src/x.h"));
  EXPECT_EQ(Resolve(P("p/src/a.c"), "  only.h\t", paths), P("p/inc1/only.h"));
  EXPECT_EQ(Resolve(P("p/src/a.c"), "sys\\t.h", paths), P("p/inc2/sys/t.h"));
  EXPECT_EQ(Resolve(P("p/src/a.c"), "../common/./c.h", paths), P("p/common/c.h"));
  EXPECT_EQ(Resolve(P("p/src/a.c"), "src", {{P("p"), false}}), "<not found>");  // a directory
  EXPECT_EQ(Resolve(P("p/src/a.c"), "", paths), "<not found>");
}

TEST_F(ResolverTest, SubdirectoriesAreSearchedBreadthFirstInNameOrder) {
  fs_.Create(P("p/inc/a/deep/x.h"), "");
  fs_.Create(P("p/inc/c/x.h"), "");
  fs_.Create(P("p/inc/b/x.h"), "");
  fs_.Create(P("p/inc/a/deep/y.h"), "");
  EXPECT_EQ(Resolve(P("p/s.c"), "x.h", {{P("p/inc"), true}}), P("p/inc/b/x.h"));
  EXPECT_EQ(Resolve(P("p/s.c"), "y.h", {{P("p/inc"), true}}), P("p/inc/a/deep/y.h"));
  EXPECT_EQ(Resolve(P("p/s.c"), "y.h", {{P("p/inc"), false}}), "<not found>");
}

TEST_F(ResolverTest, RootedAndAbsoluteNames) {
  fs_.Create("C:/inc/on_drive.h", "");
  fs_.Create(P("inc/current.h"), "");
  fs_.Create(P("inc/inc/deep.h"), "");
  // One leading backslash: the including file's drive first...
  EXPECT_EQ(Resolve("C:/src/a.c", "\\inc\\on_drive.h"), NormalizePath("C:/inc/on_drive.h"));
  // ...then the current drive; nothing else is tried for an absolute name.
  EXPECT_EQ(Resolve("D:/src/a.c", "\\inc\\current.h", {{P("inc"), false}}),
            AbsolutePath(fs_.CurrentDirectory(), "\\inc\\current.h"));
  // The include path would hold it, but an absolute name is not looked for there.
  EXPECT_EQ(Resolve(P("inc/a.c"), "\\inc\\deep.h", {{P("inc"), false}}), "<not found>");
  EXPECT_EQ(Resolve(P("p/a.c"), P("inc/current.h")), P("inc/current.h"));
}

TEST_F(ResolverTest, JoiningFollowsAbsolutePath) {
  const std::string names =
      "x.h d/x.h d//x.h ./x.h d/../x.h d\\x.h ../s/./d/x.h ..\\s\\x.h ./../s/x.h ../../p/s/x.h "
      "../../../../p/s/d/x.h";
  fs_.Create(P("p/s/x.h"), "");
  fs_.Create(P("p/s/d/x.h"), "");
  for (const std::string& including : {P("p/s/a.c"), P("p/s") + "/./a.c", P("p/s") + "//a.c"}) {
    std::istringstream in(names);
    for (std::string name; in >> name;) {
      EXPECT_EQ(Resolve(including, name), AbsolutePath(DirOfFile(including), name)) << name;
    }
  }
}

TEST(DirectoryCacheTest, AgreesWithTheFileSystem) {
  FakeFileSystem fs;
  fs.Create(P("t/a/x.h"), "");
  fs.Create(P("t/a/sub/y.h"), "");
  fs.Create(P("t/b/sub/x.h"), "");
  fs.Create(P("t/b/z.h"), "");
  fs.Create(P("t/file"), "");
  DirectoryCache cache(fs);
  for (const char* tail : {"/a/x.h", "/a/sub", "/a/none.h", "/none/x.h", "/file/x.h", "/a/../b/z.h",
                           "/a/sub/y.h", "/B/z.h", "/a/./x.h"}) {
    const std::string path = P("t") + tail;
    EXPECT_EQ(cache.IsFile(path), fs.FileExists(path)) << path;
    if (std::string_view(tail).find("/.") == std::string_view::npos) {  // plain names only
      EXPECT_EQ(cache.FindBelow(P("t") + kPathSeparator, tail + 1).found, fs.FileExists(path))
          << path;
    }
  }
  for (const char* name : {"x.h", "y.h", "sub/x.h", "z.h", "none.h", "a/../b/z.h"}) {
    for (bool recurse : {false, true}) {
      std::string expected, found;
      const bool hit = FindFile(fs, name, P("t"), recurse, &expected);
      EXPECT_EQ(cache.FindFile(name, P("t"), recurse, &found), hit) << name;
      if (hit) {
        EXPECT_EQ(found, expected) << name;
      }
    }
  }
}

}  // namespace
}  // namespace quillon
