// Reference expansion in both of its forms, then the real environment and
// the program's own location.
#include "platform/environment.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "platform/path.h"

namespace quillon {
namespace {

std::string Expand(const std::string& text, bool dollar_forms) {
  const std::map<std::string, std::string> variables = {
      {"ROOT", "C:\\tools"}, {"EMPTY", ""}, {"A_1", "x"}};
  return ExpandVariables(text, dollar_forms, [&](const std::string& name, std::string* value) {
    const auto it = variables.find(name);
    if (it == variables.end()) return false;
    *value = it->second;
    return true;
  });
}

TEST(ExpandVariablesTest, PercentReferences) {
  EXPECT_EQ(Expand("%ROOT%\\bin", false), "C:\\tools\\bin");
  EXPECT_EQ(Expand("[%EMPTY%]", false), "[]");
  EXPECT_EQ(Expand("%UNKNOWN%\\bin", false), "%UNKNOWN%\\bin");
  EXPECT_EQ(Expand("%UNKNOWN%ROOT%", false), "%UNKNOWNC:\\tools");  // scan goes on
  EXPECT_EQ(Expand("100%% of %ROOT", false), "100%% of %ROOT");
  EXPECT_EQ(Expand("$ROOT ${ROOT}", false), "$ROOT ${ROOT}");  // only with the dollar forms
}

TEST(ExpandVariablesTest, DollarReferences) {
  EXPECT_EQ(Expand("$ROOT/bin:${A_1}y:$A_1y", true), "C:\\tools/bin:xy:$A_1y");
  EXPECT_EQ(Expand("%ROOT%/$ROOT", true), "C:\\tools/C:\\tools");
  EXPECT_EQ(Expand("$ $1 ${} ${ROOT", true), "$ $1 ${} ${ROOT");
  EXPECT_EQ(Expand("$(ROOT) ${UNKNOWN} cost$", true), "$(ROOT) ${UNKNOWN} cost$");
}

TEST(EnvironmentTest, ReadsAndExpandsTheProcessEnvironment) {
  EXPECT_EQ(GetEnvironmentVariable("QUILLON_SURELY_UNSET_1234"), "");
  const std::string path = GetEnvironmentVariable("PATH");
  EXPECT_FALSE(path.empty());
  EXPECT_EQ(CalculateEnvironmentVariable("<%PATH%>"), "<" + path + ">");
  EXPECT_EQ(CalculateEnvironmentVariable("%QUILLON_SURELY_UNSET_1234%"),
            "%QUILLON_SURELY_UNSET_1234%");
  EXPECT_TRUE(GetOSInfo());
}

TEST(EnvironmentTest, KnowsWhereTheProgramIs) {
  const std::string dir = GetEXEDir();
  ASSERT_FALSE(dir.empty());
  EXPECT_EQ(dir.back(), kPathSeparator);
  EXPECT_TRUE(IsAbsolutePath(dir));
  EXPECT_EQ(DirOfFile(GetEXEPath()), dir);
  EXPECT_EQ(NameOfFile(GetEXEPath()), "platform_test");
}

}  // namespace
}  // namespace quillon
