// Expectations are written with '/' and converted to the native separator, so
// the same tables hold natively and under Wine.
#include "platform/path.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/file_system.h"
#include "support/native_path.h"

namespace quillon {
namespace {

TEST(PathTest, SplitsNames) {
  struct Case {
    const char* path;
    const char* name;
    const char* name_and_ext;
    const char* ext;
    const char* dir;
    const char* drive;
  };
  const Case cases[] = {
      {"C:\\src\\main.c", "main", "main.c", "c", "C:/src/", "C:"},
      {"main", "main", "main", "", "", ""},
      {"a/b.tar.gz", "b.tar", "b.tar.gz", "gz", "a/", ""},
      {"dir.d/file", "file", "file", "", "dir.d/", ""},
      {"name.", "name", "name.", "", "", ""},
      {"src\\", "", "", "", "src/", ""},
      {"C:main.c", "main", "main.c", "c", "C:", "C:"},
      {"\\\\srv\\share\\x.h", "x", "x.h", "h", "//srv/share/", "//srv/share"},
      {"//srv/share", "share", "share", "", "//srv/", "//srv/share"},
      {"/my docs\\read me.txt", "read me", "read me.txt", "txt", "/my docs/", ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.path);
    EXPECT_EQ(NameOfFile(c.path), c.name);
    EXPECT_EQ(NameAndExtOfFile(c.path), c.name_and_ext);
    EXPECT_EQ(ExtOfFile(c.path), c.ext);
    EXPECT_EQ(DirOfFile(c.path), Native(c.dir));
    EXPECT_EQ(DriveOfFile(c.path), Native(c.drive));
  }
}

TEST(PathTest, AddBackslashLeavesEmptyAndTerminatedPathsAlone) {
  EXPECT_EQ(AddBackslash(""), "");
  EXPECT_EQ(AddBackslash("C:\\src"), Native("C:\\src/"));
  EXPECT_EQ(AddBackslash("src/"), "src/");
  EXPECT_EQ(AddBackslash("src\\"), "src\\");
}

TEST(PathTest, RecognisesAbsolutePaths) {
  EXPECT_TRUE(IsAbsolutePath("C:\\x"));
  EXPECT_TRUE(IsAbsolutePath("c:/x"));
  EXPECT_TRUE(IsAbsolutePath("\\\\srv\\share"));
  EXPECT_FALSE(IsAbsolutePath("C:x"));
  EXPECT_FALSE(IsAbsolutePath("x\\y"));
  EXPECT_FALSE(IsAbsolutePath(""));
  // Rooted without a drive is absolute only where there are no drives.
  EXPECT_EQ(IsAbsolutePath("/x"), !kPathsIgnoreCase);
  EXPECT_EQ(IsAbsolutePath("\\x"), !kPathsIgnoreCase);
}

TEST(PathTest, NormalizeFoldsDotsWithoutClimbingAboveRoots) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},
      {".", "."},
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
      {"C:\\a\\..\\..\\b", "C:/b"},
      {"C:a\\..\\..", "C:.."},
      {"\\\\srv\\share\\..\\..\\x", "//srv/share/x"},
      {"\\\\srv\\share\\a\\..", "//srv/share"},
      {"//srv//share/", "//srv/share/"},
      {"C:/Program Files/./x y\\", "C:/Program Files/x y/"},
  };
  for (const auto& [path, expected] : cases) {
    SCOPED_TRACE(path);
    EXPECT_EQ(NormalizePath(path), Native(expected));
  }
}

TEST(PathTest, AbsolutePathJoinsAndNormalizes) {
  struct Case {
    const char* base;
    const char* path;
    const char* expected;
  };
  const Case cases[] = {
      {"C:\\proj", "src\\a.c", "C:/proj/src/a.c"},
      {"C:\\proj\\", "..\\inc/a.h", "C:/inc/a.h"},
      {"C:\\proj", "", "C:/proj"},
      {"C:\\proj", "D:\\x\\.\\y", "D:/x/y"},
      {"C:\\proj", "\\x", "C:/x"},
      {"C:\\proj", "C:sub\\a", "C:/proj/sub/a"},
      {"C:\\proj", "D:sub", "D:/sub"},
      {"C:\\proj", "\\\\srv\\s\\a", "//srv/s/a"},
      {"\\\\srv\\share\\proj", "..\\..\\..\\x", "//srv/share/x"},
      {"\\\\srv\\share\\proj", "\\x", "//srv/share/x"},
      {"/home/u", "src/../a.c", "/home/u/a.c"},
      {"/home/u", "\\etc", "/etc"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.base) + " + " + c.path);
    EXPECT_EQ(AbsolutePath(c.base, c.path), Native(c.expected));
  }
}

TEST(PathTest, RelativePathClimbsToCommonDirectory) {
  struct Case {
    const char* base;
    const char* path;
    const char* expected;  // with '/' converted to native
  };
  const Case cases[] = {
      {"C:\\proj", "C:\\proj\\src\\a.c", "src/a.c"},
      {"C:\\proj\\src\\", "C:\\proj\\inc\\a.h", "../inc/a.h"},
      {"C:\\proj\\src", "C:\\proj/src/sub\\", "sub/"},
      {"C:\\proj", "C:\\proj", "."},
      {"c:\\proj", "C:\\proj\\a", "a"},
      {"C:\\a\\b", "C:\\", "../../"},
      {"\\\\srv\\share\\a", "\\\\srv\\share\\b\\c", "../b/c"},
      {"C:\\My Files\\x", "C:\\My Files\\y z\\f.c", "../y z/f.c"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.base) + " -> " + c.path);
    EXPECT_EQ(RelativePath(c.base, c.path), Native(c.expected));
  }
}

TEST(PathTest, RelativePathKeepsPathAcrossDrivesOrWhenRelative) {
  EXPECT_EQ(RelativePath("C:\\proj", "D:\\x"), "D:\\x");
  EXPECT_EQ(RelativePath("C:\\proj", "rel\\a.c"), "rel\\a.c");
  EXPECT_EQ(RelativePath("rel", "C:\\a"), "C:\\a");
  EXPECT_EQ(RelativePath("\\\\srv\\one\\a", "\\\\srv\\two\\a"), "\\\\srv\\two\\a");
}

TEST(PathTest, RelativePathFoldsCaseOnWindowsOnly) {
  const std::string relative = RelativePath("C:\\Proj", "C:\\proj\\a.c");
  EXPECT_EQ(relative, kPathsIgnoreCase ? "a.c" : Native("../proj/a.c"));
}

TEST(PathTest, ExpandToFullPathUsesCurrentDirectory) {
  const std::string cwd = FileSystem::Default().CurrentDirectory();
  ASSERT_FALSE(cwd.empty());
  EXPECT_EQ(ExpandToFullPath("sub/../x.c"), AddBackslash(NormalizePath(cwd)) + "x.c");
}

TEST(PathTest, RewritesSeparators) {
  EXPECT_EQ(Unix2dos("a/b\\c/"), "a\\b\\c\\");
  EXPECT_EQ(RemoveMultipleBackslashes("a\\\\b//\\c"), Native("a/b/c"));
  EXPECT_EQ(RemoveMultipleBackslashes("\\\\srv\\\\share"), Native("//srv/share"));
}

TEST(PathTest, ComparePathsTreatsSeparatorsAlikeAndCaseByPlatform) {
  EXPECT_EQ(ComparePaths("C:/src\\a.c", "C:\\src/a.c"), 0);
  EXPECT_EQ(PathsEqual("C:\\SRC\\A.C", "c:\\src\\a.c"), kPathsIgnoreCase);
  EXPECT_LT(ComparePaths("a", "ab"), 0);
  EXPECT_GT(ComparePaths("b", "a/z"), 0);
}

TEST(PathTest, CompareNoCaseFoldsAsciiAndComparesBytesUnsigned) {
  EXPECT_EQ(CompareNoCase("Target 1", "tARGET 1"), 0);
  EXPECT_LT(CompareNoCase("a", "B"), 0);
  EXPECT_LT(CompareNoCase("Z", "\xe9"), 0);  // not folded, and above ASCII
  EXPECT_FALSE(EqualsNoCase("\xc9", "\xe9"));
  EXPECT_GT(CompareNoCase("ab", "A"), 0);
}

}  // namespace
}  // namespace quillon
