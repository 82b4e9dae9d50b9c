// Failures: unreadable projects, refused edits and failed saves leave both
// files as they were; usage errors answer 2.
#include <gmock/gmock.h>

#include "model/registry/settings_registry.h"
#include "qpm_fixture.h"

namespace quillon::qpm {
namespace {

using ::testing::HasSubstr;

class FailureTest : public QpmTest {
 protected:
  void SetUp() override {
    QpmTest::SetUp();
    MakeProject();
    shared_ = Bytes(dir_ / "p.qpj");
    user_ = Bytes(dir_ / "p.qpj.user");
  }
  void ExpectUnchanged(const std::string& what) {
    EXPECT_EQ(Bytes(dir_ / "p.qpj"), shared_) << what;
    EXPECT_EQ(Bytes(dir_ / "p.qpj.user"), user_) << what;
  }
  std::string shared_, user_;
};

// Everything the exports would ignore silently is refused with a message
// that names it, and nothing is written.
TEST_F(FailureTest, RefusedCommandsSayWhyAndWriteNothing) {
  struct Case {
    std::vector<std::string> args;
    const char* message;
  };
  const std::string p = "p.qpj";
  const Case cases[] = {
      {{"target", "add", p, "p - Debug"}, "target \"p - Debug\" already exists"},
      {{"target", "add", p, ""}, "a target name cannot be empty"},
      {{"target", "add", p, "X", "--copy-from", "Nope"}, "unknown target \"Nope\""},
      {{"target", "delete", p, "Nope"}, "unknown target \"Nope\" (targets: \"p - Debug\")"},
      {{"target", "default", p, "p - debug"}, "unknown target \"p - debug\""},
      {{"target", "rename", p, "Nope", "X"}, "unknown target \"Nope\""},
      {{"target", "rename", p, "p - Debug", ""}, "cannot be empty"},
      {{"group", "add", p, "Startup"}, "link group \"Startup\" already exists"},
      {{"group", "delete", p, "Nope"}, "unknown link group \"Nope\""},
      {{"group", "move", p, "Source files", "up"}, "already first"},
      {{"group", "move", p, "Startup", "down"}, "already last"},
      {{"file", "add", p, "Startup", "x.c", "./x.c"}, "\"x.c\" is named twice"},
      {{"file", "add", p, "Startup", "y.c", "a.c"}, "\"a.c\" is already in the project"},
      {{"file", "add", p, "Nope", "z.c"}, "unknown link group \"Nope\""},
      {{"file", "delete", p, "nope.c"}, "no file \"nope.c\""},
      {{"file", "move", p, "nope.c", "Startup"}, "no file \"nope.c\""},
      {{"file", "move", p, "a.c", "Nope"}, "unknown link group \"Nope\""},
      {{"option", "set", p, "NoSuchKey", "1"}, "unknown option \"NoSuchKey\""},
      {{"option", "get", p, "NoSuchKey"}, "unknown option \"NoSuchKey\""},
      {{"option", "set", p, "ExternalMake", "often"}, "not a number"},
      {{"option", "set", p, "ExternalMake", "1x"}, "not a number"},
      {{"option", "set", p, "CRLF", "maybe"}, "not a flag"},
      {{"option", "set", p, "TargetDirectory"}, "exactly one value"},
      {{"option", "set", p, "TargetDirectory", "a", "b"}, "exactly one value"},
      {{"option", "set", p, "IncludeSearchSubDirs", "1"}, "one flag per include path"},
      {{"option", "set", p, "ExternalMake", "1", "--target", "p - Debug"},
       "ExternalMake is a global option; it takes neither --target nor --file"},
      {{"option", "get", p, "CmpCustomFilterName", "--file", "a.c"}, "is a filter option"},
      {{"option", "set", p, "TargetDirectory", "o", "--file", "a.c"},
       "TargetDirectory is a target option; it takes no --file"},
      {{"option", "set", p, "TargetDirectory", "o", "--target", "Nope"}, "unknown target"},
      {{"option", "set", p, "RunAssembler", "1", "--file", "nope.c"}, "no file \"nope.c\""},
      {{"option", "set", p, "CRLF", "1", "--mode", "own"}, "--mode applies to file options only"},
      {{"option", "set", p, "RunAssembler", "1", "--mode", "own"},
       "--mode applies to a file's own value"},
  };
  for (const Case& c : cases) {
    QpmResult result = Run(c.args);
    EXPECT_EQ(result.code, 1) << c.message;
    EXPECT_THAT(result.err, ::testing::AllOf(::testing::StartsWith("qpm: "), HasSubstr(c.message)));
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
    ExpectUnchanged(c.message);
  }
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir_), {}), 5)
      << "no temporary files left";
}

// Files that are not what they should be fail the command with one line
// that names the file and says why, in the store's own words where it
// refused the bytes; nothing is written.
TEST_F(FailureTest, UnreadableFilesAreNamedWithTheStoresOwnText) {
  struct Case {
    const char* file;  // written with `bytes` first, unless null
    std::string bytes;
    std::vector<std::string> args;
    std::string message;
  };
  const std::string p = "p.qpj";
  const std::string invalid = "Invalid file format (not registry).";
  const Case cases[] = {
      {"p.qpj", "not a store at all", {"show", p}, "cannot read p.qpj: " + invalid},
      {"p.qpj", "not a store at all", {"target", "add", p, "X"}, "cannot read p.qpj: " + invalid},
      {"p.qpj.user", user_.substr(0, user_.size() / 2), {"group", "add", p, "G"},
       "cannot read p.qpj.user: "},
      // A valid store, but of something else: the per-user part as the project.
      {"other.qpj", user_, {"show", "other.qpj"},
       "cannot read other.qpj: " + std::string(CSettingsRegistry::ErrorText(kRegKeyNotFound)) +
           " (\"Project\")"},
      {nullptr, "", {"show", "missing.qpj"}, "cannot open 'missing.qpj'"},
      {nullptr, "", {"show", "."}, "cannot read .: it is a directory"},
      // Cut where whole records go missing (a value cut short still reads).
      {"cut.bin", shared_.substr(0, shared_.size() / 2), {"store", "dump", "cut.bin"},
       "cannot read cut.bin: "},
      {"junk.bin", "ZYVEKSLO", {"store", "dump", "junk.bin"}, "cannot read junk.bin: "},
      {"future.bin", std::string("ZYVEKSLO\x09\x09", 10), {"store", "dump", "future.bin"},
       "cannot read future.bin: " + std::string(CSettingsRegistry::ErrorText(kRegInvalidVersion))},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.args[0] + " " + c.args[1]);
    if (c.file != nullptr) Write(dir_ / c.file, c.bytes);
    QpmResult result = Run(c.args);
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, ::testing::StartsWith("qpm: " + c.message));
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
    if (c.file != nullptr) {
      EXPECT_EQ(Bytes(dir_ / c.file), c.bytes);
    }
    Write(dir_ / "p.qpj", shared_);
    Write(dir_ / "p.qpj.user", user_);
  }
  EXPECT_FALSE(std::filesystem::exists(dir_ / "missing.qpj"));
}

TEST_F(FailureTest, AFailedSaveKeepsTheProjectFile) {
  // The per-user part cannot be replaced by a file: the save fails before
  // the project file is touched.
  std::filesystem::remove(dir_ / "p.qpj.user");
  std::filesystem::create_directory(dir_ / "p.qpj.user");
  QpmResult result = Run({"group", "add", "p.qpj", "More"});
  EXPECT_EQ(result.code, 1);
  EXPECT_THAT(result.err, HasSubstr("p.qpj.user"));
  EXPECT_EQ(Bytes(dir_ / "p.qpj"), shared_);
}

TEST_F(FailureTest, UnchangedPartsAreNotRewritten) {
  auto time = std::filesystem::last_write_time(dir_ / "p.qpj.user");
  std::filesystem::last_write_time(dir_ / "p.qpj.user", time - std::chrono::hours(1));
  Ok({"group", "add", "p.qpj", "More"});
  EXPECT_EQ(std::filesystem::last_write_time(dir_ / "p.qpj.user"), time - std::chrono::hours(1));
  EXPECT_NE(Bytes(dir_ / "p.qpj"), shared_);
}

TEST_F(FailureTest, UsageErrorsAnswerTwoAndTouchNothing) {
  const std::vector<std::vector<std::string>> usage = {
      {}, {"frobnicate"}, {"target"}, {"target", "add", "p.qpj"}, {"show"},
      {"show", "p.qpj", "extra"}, {"show", "p.qpj", "--colour"},
      {"option", "set", "p.qpj", "CompilerOptions", "-O2"},
      {"option", "set", "p.qpj", "RunAssembler", "1", "--mode", "always"},
      {"option", "get", "p.qpj", "RunAssembler", "--mode", "own"},
      {"group", "move", "p.qpj", "Startup"}};
  for (const auto& args : usage) {
    QpmResult result = Run(args);
    EXPECT_EQ(result.code, 2) << (args.empty() ? "(none)" : args[0]) << result.err;
    EXPECT_THAT(result.err, HasSubstr("--help"));
  }
  ExpectUnchanged("usage errors");
}

}  // namespace
}  // namespace quillon::qpm
