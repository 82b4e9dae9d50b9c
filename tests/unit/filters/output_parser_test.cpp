// The services every vendor parser is written in, on lines chosen to catch
// off-by-one positions and failures that leak from one line to the next.
#include "filters/output_parser.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {
namespace {

using namespace std::string_literals;

std::vector<std::string> SplitLines(std::string_view text) {
  CapturedLines lines(text);
  std::vector<std::string> out;
  std::string_view line;
  while (lines.Next(&line)) out.emplace_back(line);
  return out;
}

TEST(CapturedLinesTest, SplitsAtLineFeedsDroppingOneCarriageReturn) {
  using V = std::vector<std::string>;
  EXPECT_EQ(SplitLines(""), V{});
  EXPECT_EQ(SplitLines("a\r\nb\n\nc"), (V{"a", "b", "", "c"}));
  EXPECT_EQ(SplitLines("\n"), V{""});
  EXPECT_EQ(SplitLines("\r\n\r\n"), (V{"", ""}));
  EXPECT_EQ(SplitLines("last\r"), V{"last"});
  EXPECT_EQ(SplitLines("a\r\r\nb"), (V{"a\r", "b"}));
  EXPECT_EQ(SplitLines("a\rb\n"), V{"a\rb"});  // a lone CR is content
  EXPECT_EQ(SplitLines("a\0b\n\0"s), (V{"a\0b"s, "\0"s}));
}

// Makes the services callable from the tests.
class Probe : public COutputParser {
 public:
  explicit Probe(std::string_view text, MessageListSink* sink = nullptr) { Attach(text, sink); }
  using COutputParser::AddMessage;
  using COutputParser::Contains;
  using COutputParser::failed;
  using COutputParser::FindNth;
  using COutputParser::FindWord;
  using COutputParser::line;
  using COutputParser::MovePosition;
  using COutputParser::NumberBetween;
  using COutputParser::position;
  using COutputParser::PushBack;
  using COutputParser::ReadLine;
  using COutputParser::RestOfLine;
  using COutputParser::SetEndMark;
  using COutputParser::SetPosition;
  using COutputParser::SetStartMark;
  using COutputParser::SkipWhiteSpace;
  using COutputParser::TakeBetween;
  using COutputParser::TakeUpTo;
  using COutputParser::TextBetweenMarks;
};

TEST(OutputParserTest, PushedBackLinesComeFirstInReverseOrder) {
  Probe p("one\ntwo\nthree\n");
  ASSERT_TRUE(p.ReadLine());
  p.PushBack();
  ASSERT_TRUE(p.ReadLine());
  EXPECT_EQ(p.line(), "one");
  ASSERT_TRUE(p.ReadLine());
  p.PushBack();  // "two" waits
  ASSERT_TRUE(p.ReadLine());
  EXPECT_EQ(p.line(), "two");
  ASSERT_TRUE(p.ReadLine());
  EXPECT_EQ(p.line(), "three");
  p.PushBack();
  ASSERT_TRUE(p.ReadLine());
  EXPECT_EQ(p.line(), "three");
  EXPECT_FALSE(p.ReadLine());
  EXPECT_FALSE(p.ReadLine());
}

TEST(OutputParserTest, TakeUpToAnswersFromTheLineStart) {
  Probe p("a:b:c\n");
  ASSERT_TRUE(p.ReadLine());
  p.SetPosition(2);
  EXPECT_EQ(p.TakeUpTo(":"), "a:b");
  EXPECT_EQ(p.position(), 4u);
  EXPECT_FALSE(p.failed());
  EXPECT_EQ(p.TakeUpTo(":"), "");  // none left behind the position
  EXPECT_TRUE(p.failed());
  EXPECT_EQ(p.position(), 4u);

  Probe empty("(12) x\n");  // an empty answer is no failure
  ASSERT_TRUE(empty.ReadLine());
  EXPECT_EQ(empty.TakeUpTo("("), "");
  EXPECT_FALSE(empty.failed());
}

TEST(OutputParserTest, FailureLastsUntilTheNextLine) {
  Probe p("no delimiters\nf(3)\n");
  ASSERT_TRUE(p.ReadLine());
  p.TakeBetween("(", ")");
  EXPECT_TRUE(p.failed());
  EXPECT_EQ(p.RestOfLine(), "no delimiters");
  EXPECT_EQ(p.NumberBetween("n", "d"), -1);  // "o " is no number, but both were there
  EXPECT_TRUE(p.failed());
  ASSERT_TRUE(p.ReadLine());
  EXPECT_FALSE(p.failed());
  EXPECT_EQ(p.NumberBetween("(", ")"), 3);
  EXPECT_FALSE(p.failed());
}

TEST(OutputParserTest, TakeBetweenLooksForTheCloseBehindTheOpen) {
  Probe p(")x(ab)cd)\n");
  ASSERT_TRUE(p.ReadLine());
  EXPECT_EQ(p.TakeBetween("(", ")"), "ab");
  EXPECT_EQ(p.RestOfLine(), "cd)");
  Probe same("::\n");
  ASSERT_TRUE(same.ReadLine());
  EXPECT_EQ(same.TakeBetween(":", ":"), "");
  EXPECT_FALSE(same.failed());
  EXPECT_EQ(same.RestOfLine(), "");
}

TEST(OutputParserTest, NumbersReadTheWayScanfReadsThem) {
  Probe p("(12)\n( -7x)\n(+4)\n(abc)\n()\n(99999999999)\n(-99999999999)\n(-)\n(12\n(\t\r 5)\n");
  const std::vector<int> expected = {12, -7, 4, -1, -1, INT_MAX, INT_MIN, -1, -1, 5};
  for (int want : expected) {
    ASSERT_TRUE(p.ReadLine());
    EXPECT_EQ(p.NumberBetween("(", ")"), want) << p.line();
  }
}

TEST(OutputParserTest, FindWordMovesOnlyWhenFound) {
  Probe p("x.c(3) : Error C2065: ERROR\n");
  ASSERT_TRUE(p.ReadLine());
  p.SetPosition(7);
  EXPECT_FALSE(p.FindWord("error", true));
  EXPECT_EQ(p.position(), 7u);
  EXPECT_FALSE(p.failed());
  EXPECT_TRUE(p.FindWord("error", false));
  EXPECT_EQ(p.position(), 14u);
  EXPECT_TRUE(p.FindWord("ERROR", true));
  EXPECT_EQ(p.RestOfLine(), "");
  EXPECT_FALSE(p.FindWord("error", false));  // nothing behind the position
}

TEST(OutputParserTest, ContainsDoesNotMove) {
  Probe p("a warning here\n");
  ASSERT_TRUE(p.ReadLine());
  p.SetPosition(10);
  EXPECT_TRUE(p.Contains("warning"));
  EXPECT_FALSE(p.Contains("warning", 3));
  EXPECT_FALSE(p.Contains("Warning"));
  EXPECT_FALSE(p.Contains("a", 100));
  EXPECT_EQ(p.position(), 10u);
}

TEST(OutputParserTest, MarksAreClampedAndOrdered) {
  Probe p("0123456789\n");
  ASSERT_TRUE(p.ReadLine());
  p.SetPosition(4);
  p.SetStartMark(-2);
  p.SetEndMark(3);
  EXPECT_EQ(p.TextBetweenMarks(), "23456");
  p.SetStartMark(-100);
  p.SetEndMark(100);
  EXPECT_EQ(p.TextBetweenMarks(), "0123456789");
  p.SetStartMark(2);
  p.SetEndMark(1);
  EXPECT_EQ(p.TextBetweenMarks(), "");
  p.MovePosition(-100);
  EXPECT_EQ(p.position(), 0u);
  p.MovePosition(100);
  EXPECT_EQ(p.position(), 10u);
}

TEST(OutputParserTest, FindNthCountsFromThePosition) {
  Probe p("a::b::c\n");
  ASSERT_TRUE(p.ReadLine());
  EXPECT_EQ(p.FindNth("::", 1), 1u);
  EXPECT_EQ(p.FindNth("::", 2), 4u);
  EXPECT_EQ(p.FindNth("::", 3), COutputParser::npos);
  EXPECT_EQ(p.FindNth("::", 0), COutputParser::npos);
  EXPECT_EQ(p.FindNth(":", 3), 4u);
  p.SetPosition(2);
  EXPECT_EQ(p.FindNth(":", 1), 2u);
  EXPECT_EQ(p.FindNth("::", 1), 4u);
}

TEST(OutputParserTest, ReadingALineResetsTheCursor) {
  Probe p("first line\nse \tcond\n");
  ASSERT_TRUE(p.ReadLine());
  p.SetPosition(6);
  p.SetStartMark(0);
  p.SetEndMark(4);
  ASSERT_TRUE(p.ReadLine());
  EXPECT_EQ(p.position(), 0u);
  EXPECT_EQ(p.TextBetweenMarks(), "");
  p.SetPosition(2);
  p.SkipWhiteSpace();  // nothing to skip
  EXPECT_EQ(p.RestOfLine(), "cond");
}

class Recorder : public MessageListSink {
 public:
  void AddMessage(const MessageEntry& entry) override { entries.push_back(entry); }
  std::vector<MessageEntry> entries;
};

TEST(OutputParserTest, MessagesWithoutAFileNameTheProjectFile) {
  Recorder sink;
  Probe p("", &sink);
  p.set_project_file("/p/main.c");
  p.AddMessage(0, "  ", 3, 1, 1, "  text\t", " C1 ");
  p.AddMessage(1, " other.s ", 4, 2, 0, "x", "");
  ASSERT_EQ(sink.entries.size(), 2u);
  EXPECT_EQ(sink.entries[0], (MessageEntry{0, "/p/main.c", 3, 1, 1, "text", "C1"}));
  EXPECT_EQ(sink.entries[1], (MessageEntry{1, "other.s", 4, 2, 0, "x", ""}));
  EXPECT_EQ(p.messages_added(), 2);
}

}  // namespace
}  // namespace quillon
