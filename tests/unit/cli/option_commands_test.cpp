// qpm option get|set|list: each level's scope, and the marks a change leaves.
// How values fall back and what modes do is the model's to test.
#include <gmock/gmock.h>

#include "qpm_fixture.h"

namespace quillon::qpm {
namespace {

using ::testing::HasSubstr;

class OptionTest : public QpmTest {
 protected:
  void SetUp() override {
    QpmTest::SetUp();
    MakeProject();
  }
  std::string Get(std::vector<std::string> args) {
    args.insert(args.begin(), {"option", "get", "p.qpj"});
    return Ok(args);
  }
  void Set(std::vector<std::string> args) {
    args.insert(args.begin(), {"option", "set", "p.qpj"});
    Ok(args);
  }
};

TEST_F(OptionTest, ScalarsAndListsRoundTripThroughTheFile) {
  Set({"includepaths", "inc", "lib/usb/include"});
  Set({"IncludeSearchSubDirs", "No", "True"});
  Set({"ExternalMake", "1"});
  Set({"ExecutableFileName", "out file.hex"});
  Set({"DF_Valid", "yes"});
  EXPECT_EQ(Get({"IncludePaths"}), "inc\nlib/usb/include\n");
  EXPECT_EQ(Get({"IncludeSearchSubDirs"}), "0\n1\n");
  EXPECT_EQ(Get({"EXTERNALMAKE"}), "1\n");
  EXPECT_EQ(Get({"ExecutableFileName"}), "out file.hex\n");
  EXPECT_EQ(Get({"DF_Valid"}), "1\n");
  Set({"IncludePaths"});  // no values clears a list
  EXPECT_EQ(Get({"IncludePaths"}), "");
  EXPECT_THAT(Ok({"option", "list", "p.qpj"}),
              HasSubstr("IncludePaths                 global  string list\n"));
}

TEST_F(OptionTest, TargetAndFileValuesGoWhereTheyAreNamed) {
  Ok({"target", "add", "p.qpj", "Release"});
  Set({"TargetDirectory", "out/rel", "--target", "Release"});
  EXPECT_EQ(Get({"TargetDirectory"}), "\n");
  EXPECT_EQ(Get({"TargetDirectory", "--target", "Release"}), "out/rel\n");
  Set({"ExcludeFromMake", "1", "--file", "a.c", "--target", "Release"});
  EXPECT_EQ(Get({"ExcludeFromMake", "--file", "a.c", "--target", "Release"}), "1\n");
  EXPECT_EQ(Get({"ExcludeFromMake", "--file", "a.c"}), "0\n");

  // A file key without --file is the target's default for its files.
  Set({"CompilerOptions", "--file", "b.c", "--mode", "propagate", "--", "-Os"});
  Set({"CompilerOptions", "--", "-O2"});
  EXPECT_EQ(Get({"CompilerOptions"}), "-O2\n");
  EXPECT_EQ(Get({"CompilerOptions", "--file", "b.c"}), "-O2\n");
  Set({"CompilerOptions", "--file", "b.c", "--", "-O1"});  // own by default
  Set({"CompilerOptions", "--", "-O3"});
  EXPECT_EQ(Get({"CompilerOptions", "--file", "b.c"}), "-O1\n");

  Ok({"target", "delete", "p.qpj", "p - Debug"});
  QpmResult result = Run({"option", "get", "p.qpj", "CompilerOptions", "--file", "a.c"});
  EXPECT_EQ(result.code, 1);
  EXPECT_THAT(result.err, HasSubstr("no default target; name one with --target"));
}

TEST_F(OptionTest, ChangedOptionsMarkWhatMustBeBuiltAgain) {
  auto changed = [&] {
    return Ok({"store", "dump", "p.qpj"}).find("string IsChanged \"True\"") != std::string::npos;
  };
  Set({"CompilerOptions", "--", "$(EDNAME)"});  // no change
  Set({"TargetDirectory", ""});                 // no change
  EXPECT_FALSE(changed());
  Set({"CompilerOptions", "--file", "s.asm", "--", "-x"});
  EXPECT_TRUE(changed());
}

}  // namespace
}  // namespace quillon::qpm
