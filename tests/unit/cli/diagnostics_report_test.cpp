// The error list as SARIF: URIs a viewer opens, and only the fields an entry has.
#include "cli/diagnostics_report.h"

#include <gtest/gtest.h>

namespace quillon::qpm {
namespace {

TEST(DiagnosticsReportTest, FileUrisAreAbsoluteAndEscaped) {
  EXPECT_EQ(FileUri("/src/my file#1.c", "/p"), "file:///src/my%20file%231.c");
  EXPECT_EQ(FileUri("C:\\src\\a.c", "/p"), "file:///C:/src/a.c");
  EXPECT_EQ(FileUri("src/b.c", "/proj/"), "file:///proj/src/b.c");
  EXPECT_EQ(FileUri("/t/\xC3\xA4.c", "/"), "file:///t/%C3%A4.c");
}

TEST(DiagnosticsReportTest, OneRunPerKindWithWhatEachEntryHas) {
  const std::vector<host::FilterEntry> entries = {
      {2, "", 0, 0, 0, "undefined reference to `f'", ""},
      {0, "/s/a.c", 12, 1, 1, "unused", "C4101"},
      {0, "/s/a.c", 3, 0, 2, "cannot open", "C1083"},
  };
  const nlohmann::json log = SarifLog(entries, "/s");
  ASSERT_EQ(log["runs"].size(), 2u);  // compiler, then linker
  const nlohmann::json& compiler = log["runs"][0]["results"];
  EXPECT_EQ(compiler[0]["level"], "warning");
  EXPECT_EQ(compiler[0]["ruleId"], "C4101");
  EXPECT_EQ(compiler[0]["locations"][0]["physicalLocation"]["region"],
            (nlohmann::json{{"startLine", 12}, {"startColumn", 1}}));
  EXPECT_EQ(compiler[1]["level"], "error");  // fatal
  EXPECT_FALSE(compiler[1]["locations"][0]["physicalLocation"]["region"].contains("startColumn"));
  const nlohmann::json& linker = log["runs"][1]["results"][0];
  EXPECT_FALSE(linker.contains("ruleId") || linker.contains("locations"));
  EXPECT_EQ(log["runs"][1]["tool"]["driver"]["name"], "Quillon linker messages");
}

}  // namespace
}  // namespace quillon::qpm
