// qpm option get|set|list: levels, types, modes and how file values follow
// their target.
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
  std::string Error(std::vector<std::string> args) {
    QpmResult result = Run(args);
    EXPECT_EQ(result.code, 1) << result.err;
    return result.err;
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

  // No values clears a list.
  Set({"IncludePaths"});
  EXPECT_EQ(Get({"IncludePaths"}), "");
}

TEST_F(OptionTest, TargetKeysNeedADefaultTargetWhenNoneIsNamed) {
  Ok({"target", "add", "p.qpj", "Release"});
  Set({"TargetDirectory", "out/rel", "--target", "Release"});
  EXPECT_EQ(Get({"TargetDirectory"}), "\n");
  EXPECT_EQ(Get({"TargetDirectory", "--target", "Release"}), "out/rel\n");

  Ok({"target", "delete", "p.qpj", "p - Debug"});
  EXPECT_THAT(Error({"option", "get", "p.qpj", "TargetDirectory"}),
              HasSubstr("no default target; name one with --target"));
  EXPECT_THAT(Error({"option", "get", "p.qpj", "CompilerOptions", "--file", "a.c"}),
              HasSubstr("no default target"));
}

TEST_F(OptionTest, TargetFileDefaultsReachFilesThatInheritAndOfTheirKind) {
  Set({"CompilerOptions", "--file", "b.c", "--", "-Os"});
  Set({"CompilerOptions", "--", "-O2"});
  EXPECT_EQ(Get({"CompilerOptions"}), "-O2\n");
  EXPECT_EQ(Get({"CompilerOptions", "--file", "a.c"}), "-O2\n");
  // b.c has a value of its own; the assembler file takes no compiler options.
  EXPECT_EQ(Get({"CompilerOptions", "--file", "b.c"}), "-Os\n");
  EXPECT_EQ(Get({"CompilerOptions", "--file", "s.asm"}), "$(EDNAME)\n");
  Set({"AssemblerOptions", "--", "-g"});
  EXPECT_EQ(Get({"AssemblerOptions", "--file", "s.asm"}), "-g\n");
  EXPECT_EQ(Get({"AssemblerOptions", "--file", "a.c"}), "$(EDNAME)\n");
}

TEST_F(OptionTest, FileModesDecideWhetherAFileKeepsFollowingItsTarget) {
  Set({"CompilerOptions", "--file", "a.c", "--mode", "propagate", "--", "-O1"});
  Set({"CompilerOptions", "--file", "b.c", "--", "-O1"});
  auto files = Show()["targets"][0]["groups"][0]["files"];
  EXPECT_EQ(files[0]["options"]["CompilerOptions"]["own"], false);
  EXPECT_EQ(files[1]["options"]["CompilerOptions"]["own"], true);

  // Propagate leaves an own value alone; inherit takes it back.
  Set({"CompilerOptions", "--file", "b.c", "--mode", "propagate", "--", "-O3"});
  EXPECT_EQ(Get({"CompilerOptions", "--file", "b.c"}), "-O1\n");
  Set({"CompilerOptions", "--file", "b.c", "--mode", "inherit", "--", "-O3"});
  Set({"CompilerOptions", "--", "-O2"});
  EXPECT_EQ(Get({"CompilerOptions", "--file", "b.c"}), "-O2\n");
}

TEST_F(OptionTest, FileValuesArePerTarget) {
  Ok({"target", "add", "p.qpj", "Release"});
  Set({"ExcludeFromMake", "1", "--file", "a.c", "--target", "Release"});
  EXPECT_EQ(Get({"ExcludeFromMake", "--file", "a.c", "--target", "Release"}), "1\n");
  EXPECT_EQ(Get({"ExcludeFromMake", "--file", "a.c"}), "0\n");
}

TEST_F(OptionTest, ChangedOptionsMarkWhatMustBeBuiltAgain) {
  auto changed = [&](const std::string& path) {
    std::string dump = Ok({"store", "dump", path});
    return dump.find("string IsChanged \"True\"") != std::string::npos;
  };
  Set({"CompilerOptions", "--", "$(EDNAME)"});  // no change
  Set({"TargetDirectory", ""});                 // no change
  EXPECT_FALSE(changed("p.qpj"));
  Set({"CompilerOptions", "--file", "s.asm", "--", "-x"});
  EXPECT_TRUE(changed("p.qpj"));
}

}  // namespace
}  // namespace quillon::qpm
