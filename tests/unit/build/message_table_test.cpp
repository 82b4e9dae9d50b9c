#include "build/message_table.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quillon {
namespace {

struct Line {
  int channel;
  int action;
  std::string text;
};

class RecordingSink : public OutputSink {
 public:
  void Output(int channel, int action, const std::string& text) override {
    lines.push_back({channel, action, text});
  }
  std::vector<Line> lines;
};

class MessageTableTest : public ::testing::Test {
 protected:
  MessageTableTest() { table_.SetOutputSink(&sink_); }
  CMessageTable table_;
  RecordingSink sink_;
};

TEST_F(MessageTableTest, FormatsNumberedTemplates) {
  EXPECT_EQ(table_.FormatNumbered(14, "a.c", "2"),
            "Error [PM14]: Can't open file for reading. \"a.c\" (2)");
  EXPECT_EQ(table_.FormatNumbered(8), "Error [PM8]: There are no files in default target !");
  // 0 to 23 are numbered messages; nothing else is.
  EXPECT_EQ(table_.FormatNumbered(0, "e.txt", "5").rfind("Error [PM0]: ", 0), 0u);
  EXPECT_EQ(table_.FormatNumbered(23, "x").rfind("Error [PM23]: ", 0), 0u);
  EXPECT_EQ(table_.FormatNumbered(24, "x"), "");
  EXPECT_EQ(table_.FormatNumbered(-1), "");
}

TEST_F(MessageTableTest, ArgumentsAreUsedOnlyInOrder) {
  // Without the first argument the second is not looked at.
  EXPECT_EQ(table_.FormatNumbered(14, nullptr, "2"),
            "Error [PM14]: Can't open file for reading. \"#1#\" (#2#)");
  EXPECT_EQ(table_.FormatNumbered(14, "a.c"),
            "Error [PM14]: Can't open file for reading. \"a.c\" (#2#)");
  EXPECT_EQ(table_.FormatNumbered(21, "#1#x"), "Error [PM21]: #1#x: (Not up to date.)");
}

TEST_F(MessageTableTest, ReportChoosesChannel) {
  table_.ReportMessage(16, "grp", true);
  table_.ReportMessage(4, "post.bat", false);
  table_.ReportMessage(99, "x", true);
  ASSERT_EQ(sink_.lines.size(), 3u);
  EXPECT_EQ(sink_.lines[0].channel, 0);
  EXPECT_EQ(sink_.lines[0].action, 21);
  EXPECT_EQ(sink_.lines[0].text, "Error [PM16]: Link Group \"grp\" does not exist");
  EXPECT_EQ(sink_.lines[1].channel, 1);
  EXPECT_EQ(sink_.lines[1].action, 21);
  EXPECT_EQ(sink_.lines[2].text, "");
  EXPECT_EQ(table_.error_count(), 0);  // counting numbered failures is the caller's
}

TEST_F(MessageTableTest, ErrorListLineLayoutAndCounts) {
  table_.SetCurrentFile("C:\\src\\main.c");
  EXPECT_EQ(table_.FormatErrorListLine(0, "  other.h ", 10, 3, 0, " bad token ", " C2001 "),
            "other.h (3,10) : Error[C2001] : bad token");
  EXPECT_EQ(table_.FormatErrorListLine(0, "main.c", 1, 2, 1, "w", "   "),
            "C:\\src\\main.c (2,1) : Warning : w");
  EXPECT_EQ(table_.FormatErrorListLine(1, "", 1, 2, 2, "f", ""),
            "C:\\src\\main.c (2,1) : Fatal : f");
  EXPECT_EQ(table_.error_count(), 2);  // error and fatal
  EXPECT_EQ(table_.warning_count(), 1);

  ASSERT_EQ(sink_.lines.size(), 3u);
  EXPECT_EQ(sink_.lines[2].channel, 0);
  EXPECT_EQ(sink_.lines[2].action, 21);

  table_.AddError();
  EXPECT_EQ(table_.error_count(), 3);
  table_.ResetCounts();
  EXPECT_EQ(table_.error_count(), 0);
  EXPECT_EQ(table_.warning_count(), 0);
}

TEST_F(MessageTableTest, LinkerLinesShowTheGivenFile) {
  table_.SetCurrentFile("main.c");
  EXPECT_EQ(table_.FormatErrorListLine(2, "", 0, 0, 0, "undefined _x", "L2029"),
            " (0,0) : Error[L2029] : undefined _x");
  EXPECT_EQ(table_.FormatErrorListLine(2, "dir\\main.c", 0, 0, 1, "t", ""),
            "dir\\main.c (0,0) : Warning : t");
}

}  // namespace
}  // namespace quillon
