// qpm deps and qpm why on real files, and the life of NAME.qpj.deps: made
// when missing, used while it fits, and replaced when it is damaged or
// belongs to another project or other scan settings.
#include <gmock/gmock.h>

#include "qpm_fixture.h"

namespace quillon::qpm {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
namespace fs = std::filesystem;

class DepsTest : public QpmTest {
 protected:
  void SetUp() override {
    QpmTest::SetUp();
    for (const char* sub : {"src", "inc"}) fs::create_directories(dir_ / sub);
    Write(dir_ / "src" / "a.c", "#include \"a.h\"\n#include <missing.h>\n");
    Write(dir_ / "src" / "b.c", "#include \"a.h\"\n");
    Write(dir_ / "inc" / "a.h", "#include \"b.h\"\n");
    Write(dir_ / "inc" / "b.h", "");
    Ok({"new", "p.qpj"});
    Ok({"file", "add", "p.qpj", "Source files", "src/a.c", "src/b.c"});
    Ok({"option", "set", "p.qpj", "IncludePaths", "inc"});
  }

  // Sets a file's time `hours` from now, so that tests need not sleep.
  void Age(const fs::path& path, int hours) {
    fs::last_write_time(path, fs::file_time_type::clock::now() + std::chrono::hours(hours));
  }
  fs::path Cache() const { return dir_ / "p.qpj.deps"; }
};

TEST_F(DepsTest, ListsWhatEachSourceIncludes) {
  // (The unresolved include's warning goes to standard error through the
  // host callback; tests/cli/exit_codes_test.sh sees it there.)
  EXPECT_EQ(Ok({"deps", "p.qpj"}), "src/a.c:\n  inc/a.h\nsrc/b.c:\n  inc/a.h\n");
  EXPECT_EQ(Ok({"deps", "p.qpj", "--transitive"}),
            "src/a.c:\n  inc/a.h\n  inc/b.h\nsrc/b.c:\n  inc/a.h\n  inc/b.h\n");
  EXPECT_EQ(Ok({"deps", "p.qpj", "--make"}),
            "src/a.o: src/a.c \\\n  inc/a.h \\\n  inc/b.h\n"
            "src/b.o: src/b.c \\\n  inc/a.h \\\n  inc/b.h\n");
  EXPECT_THAT(Ok({"deps", "p.qpj", "--dot"}),
              AllOf(HasSubstr("  \"src/a.c\" -> \"inc/a.h\";\n"),
                    HasSubstr("  \"inc/a.h\" -> \"inc/b.h\";\n")));
  EXPECT_EQ(Run({"deps", "p.qpj", "--make", "--dot"}).code, 1);

  // Paths are shown from the current directory; excluded files not at all.
  Ok({"option", "set", "p.qpj", "ExcludeFromMake", "1", "--file", "src/b.c"});
  fs::current_path(dir_ / "src");
  EXPECT_EQ(Ok({"deps", "../p.qpj"}), "a.c:\n  ../inc/a.h\n");
}

// What a build changes is the example project's test (tests/cli): it builds,
// touches a header and asks again.
TEST_F(DepsTest, WhyNamesWhatIsOutOfDate) {
  EXPECT_EQ(Ok({"why", "p.qpj"}), "'" + (dir_ / "p").string() +
                                      "\" does not exist.\n'a.OBJ' does not exist.\n"
                                      "'b.OBJ' does not exist.\n");
  Ok({"target", "delete", "p.qpj", "p - Debug"});
  for (const char* command : {"deps", "why"}) {
    QpmResult result = Run({command, "p.qpj"});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.err, "qpm: the project has no default target\n");
  }
}

TEST_F(DepsTest, TheCacheIsMadeUsedAndReplacedWhenItDoesNotFit) {
  const std::string expected = Ok({"deps", "p.qpj", "--transitive"});
  ASSERT_TRUE(fs::exists(Cache()));
  // Nothing changed: the cache is read and left alone.
  Age(Cache(), -1);
  const auto written = fs::last_write_time(Cache());
  EXPECT_EQ(Ok({"deps", "p.qpj", "--transitive"}), expected);
  Ok({"why", "p.qpj"});
  EXPECT_EQ(fs::last_write_time(Cache()), written);

  // Damaged: ignored, and replaced by one that is used again.
  Write(Cache(), "ZYVEKSLO damaged");
  EXPECT_EQ(Ok({"deps", "p.qpj", "--transitive"}), expected);
  EXPECT_NE(Bytes(Cache()), "ZYVEKSLO damaged");
  Age(Cache(), -1);
  const auto rewritten = fs::last_write_time(Cache());
  Ok({"deps", "p.qpj"});
  EXPECT_EQ(fs::last_write_time(Cache()), rewritten);

  // Another project's cache is not this one's, even over the same files.
  for (const std::string part : {".qpj", ".qpj.user", ".qpj.deps"})
    fs::copy_file(dir_ / ("p" + part), dir_ / ("q" + part));
  EXPECT_EQ(Ok({"deps", "q.qpj", "--transitive"}), expected);
  EXPECT_NE(Bytes(dir_ / "q.qpj.deps"), Bytes(Cache()));

  // Other include paths resolve the same names elsewhere, although no
  // source changed: a graph trusted across them would be wrong.
  fs::create_directories(dir_ / "inc2");
  Write(dir_ / "inc2" / "a.h", "");
  Ok({"option", "set", "p.qpj", "IncludePaths", "inc2"});
  EXPECT_EQ(Ok({"deps", "p.qpj"}), "src/a.c:\n  inc2/a.h\nsrc/b.c:\n  inc2/a.h\n");
}

TEST_F(DepsTest, ACacheThatCannotBeWrittenIsOnlyWarnedAbout) {
  fs::create_directory(Cache());
  QpmResult result = Run({"deps", "p.qpj"});
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out, "src/a.c:\n  inc/a.h\nsrc/b.c:\n  inc/a.h\n");
  EXPECT_THAT(result.err, AllOf(HasSubstr("qpm: warning: "), HasSubstr("p.qpj.deps")));
}

}  // namespace
}  // namespace quillon::qpm
