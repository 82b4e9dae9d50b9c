// Expectations are written with '/' and converted to the native separator, so
// the same tables hold natively and under Wine.
#include "platform/path.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "support/native_path.h"

namespace quillon {
namespace {

TEST(PathTest, SplitsNamesAndTellsAbsolutePaths) {
  struct Case {
    const char *path, *name, *name_and_ext, *ext, *dir, *drive;
    bool absolute;
  };
  const Case cases[] = {
      {"c:/src\\main.c", "main", "main.c", "c", "c:/src/", "c:", true},
      {"", "", "", "", "", "", false},
      {"main", "main", "main", "", "", "", false},
      {"a/b.tar.gz", "b.tar", "b.tar.gz", "gz", "a/", "", false},
      {"dir.d/file", "file", "file", "", "dir.d/", "", false},
      {"name.", "name", "name.", "", "", "", false},
      {"src\\", "", "", "", "src/", "", false},
      {"C:main.c", "main", "main.c", "c", "C:", "C:", false},
      {"\\\\srv\\share\\x.h", "x", "x.h", "h", "//srv/share/", "//srv/share", true},
      {"//srv/share", "share", "share", "", "//srv/", "//srv/share", true},
      {"\\doc/a b.txt", "a b", "a b.txt", "txt", "/doc/", "", !kPathsIgnoreCase},  // no drive
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.path);
    EXPECT_EQ(NameOfFile(c.path), c.name);
    EXPECT_EQ(NameAndExtOfFile(c.path), c.name_and_ext);
    EXPECT_EQ(ExtOfFile(c.path), c.ext);
    EXPECT_EQ(DirOfFile(c.path), Native(c.dir));
    EXPECT_EQ(DriveOfFile(c.path), Native(c.drive));
    EXPECT_EQ(IsAbsolutePath(c.path), c.absolute);
  }
  EXPECT_EQ(AddBackslash(""), "");
  EXPECT_EQ(AddBackslash("C:\\src"), Native("C:\\src/"));
  EXPECT_EQ(AddBackslash("src\\"), "src\\");
}

TEST(PathTest, NormalizeFoldsDotsWithoutClimbingAboveRoots) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},
      {"./", "."},
      {"a/..", "."},
      {"a/./b", "a/b"},
      {"a//b\\\\c", "a/b/c"},
      {"a/b/", "a/b/"},
      {"../a/../../b", "../../b"},
      {"/..", "/"},
      {"/a/../../b", "/b"},
      {"C:", "C:"},
      {"C:\\", "C:/"},
      {"C:a\\..\\..", "C:.."},
      {"\\\\srv\\share\\..\\..\\x", "//srv/share/x"},
      {"\\\\srv\\share\\a\\..", "//srv/share"},
      {"//srv//share/", "//srv/share/"},
  };
  for (const auto& [path, expected] : cases) {
    EXPECT_EQ(NormalizePath(path), Native(expected)) << path;
  }
}

TEST(PathTest, AbsolutePathJoinsAndNormalizes) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"C:\\proj", "src\\a.c", "C:/proj/src/a.c"},
      {"C:\\proj\\", "..\\inc/a.h", "C:/inc/a.h"},
      {"C:\\proj", "", "C:/proj"},
      {"C:\\proj", "D:\\x\\.\\y", "D:/x/y"},
      {"C:\\proj", "\\x", "C:/x"},
      {"C:\\proj", "C:sub\\a", "C:/proj/sub/a"},
      {"C:\\proj", "D:sub", "D:/sub"},
      {"\\\\srv\\share\\proj", "..\\..\\..\\x", "//srv/share/x"},
      {"\\\\srv\\share\\proj", "\\x", "//srv/share/x"},
      {"/home/u", "\\etc", "/etc"},
  };
  for (const auto& [base, path, expected] : cases) {
    EXPECT_EQ(AbsolutePath(base, path), Native(expected)) << base << " + " << path;
  }
}

TEST(PathTest, RelativePathClimbsToTheCommonDirectory) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"C:\\proj", "C:\\proj\\src\\a.c", "src/a.c"},
      {"C:\\proj\\src\\", "C:\\proj\\inc\\a.h", "../inc/a.h"},
      {"C:\\proj\\src", "C:\\proj/src/sub\\", "sub/"},
      {"C:\\proj", "C:\\proj", "."},
      {"c:\\proj", "C:\\proj\\a", "a"},
      {"C:\\Proj", "C:\\proj\\a.c", kPathsIgnoreCase ? "a.c" : "../proj/a.c"},
      {"C:\\a\\b", "C:\\", "../../"},
      {"\\\\srv\\share\\a", "\\\\srv\\share\\b\\c", "../b/c"},
      // Across drives or shares, or with a relative side: unchanged.
      {"C:\\proj", "D:\\x", "D:\\x"},
      {"C:\\proj", "rel\\a.c", "rel\\a.c"},
      {"\\\\srv\\one\\a", "\\\\srv\\two\\a", "\\\\srv\\two\\a"},
  };
  for (const auto& [base, path, expected] : cases) {
    EXPECT_EQ(RelativePath(base, path), Native(expected)) << base << " -> " << path;
  }
}

TEST(PathTest, RewritesSeparators) {
  EXPECT_EQ(Unix2dos("a/b\\c/"), "a\\b\\c\\");
  EXPECT_EQ(RemoveMultipleBackslashes("a\\\\b//\\c"), Native("a/b/c"));
  EXPECT_EQ(RemoveMultipleBackslashes("\\\\srv\\\\share"), Native("//srv/share"));
}

TEST(PathTest, ComparesPathsByPlatformAndNamesFoldingAscii) {
  EXPECT_EQ(ComparePaths("C:/src\\a.c", "C:\\src/a.c"), 0);
  EXPECT_EQ(PathsEqual("C:\\SRC\\A.C", "c:\\src\\a.c"), kPathsIgnoreCase);
  EXPECT_LT(ComparePaths("a", "ab"), 0);
  EXPECT_GT(ComparePaths("b", "a/z"), 0);
  EXPECT_EQ(CompareNoCase("Target 1", "tARGET 1"), 0);
  EXPECT_LT(CompareNoCase("a", "B"), 0);
  EXPECT_LT(CompareNoCase("Z", "\xe9"), 0);  // not folded, and above ASCII
  EXPECT_FALSE(EqualsNoCase("\xc9", "\xe9"));
  EXPECT_GT(CompareNoCase("ab", "A"), 0);
}

}  // namespace
}  // namespace quillon
