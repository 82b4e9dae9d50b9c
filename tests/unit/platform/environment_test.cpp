// Reference expansion in both of its forms, then the real environment and
// the program's own location.
#include "platform/environment.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <tuple>

#include "platform/path.h"

namespace quillon {
namespace {

TEST(ExpandVariablesTest, PercentAndDollarReferences) {
  const std::map<std::string, std::string> variables = {
      {"ROOT", "C:\\tools"}, {"EMPTY", ""}, {"A_1", "x"}};
  auto lookup = [&](const std::string& name, std::string* value) {
    if (variables.count(name) != 0) *value = variables.at(name);
    return variables.count(name) != 0;
  };
  const std::tuple<const char*, bool, const char*> cases[] = {
      {"%ROOT%\\bin[%EMPTY%]", false, "C:\\tools\\bin[]"},
      {"%UNKNOWN%ROOT%", false, "%UNKNOWNC:\\tools"},  // the scan goes on
      {"100%% of %ROOT $ROOT ${ROOT}", false, "100%% of %ROOT $ROOT ${ROOT}"},
      {"$ROOT/bin:${A_1}y:$A_1y", true, "C:\\tools/bin:xy:$A_1y"},
      {"%ROOT%/$ROOT", true, "C:\\tools/C:\\tools"},
      {"$ $1 ${} $(ROOT) ${UNKNOWN} cost$ ${ROOT", true,
       "$ $1 ${} $(ROOT) ${UNKNOWN} cost$ ${ROOT"},
  };
  for (const auto& [text, dollar_forms, expected] : cases) {
    EXPECT_EQ(ExpandVariables(text, dollar_forms, lookup), expected) << text;
  }
}

TEST(EnvironmentTest, ReadsTheProcessEnvironmentAndKnowsWhereTheProgramIs) {
  const std::string path = GetEnvironmentVariable("PATH");
  EXPECT_FALSE(path.empty());
  EXPECT_EQ(CalculateEnvironmentVariable("<%PATH%>%QUILLON_UNSET%"),
            "<" + path + ">%QUILLON_UNSET%");
  EXPECT_EQ(DirOfFile(GetEXEPath()), GetEXEDir());
  EXPECT_EQ(NameOfFile(GetEXEPath()), "platform_test");
}

}  // namespace
}  // namespace quillon
