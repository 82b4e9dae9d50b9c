// The parsers' services, on lines that catch off-by-one positions and failures leaking on.
#include "filters/output_parser.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {
namespace {

// The tests are parsers themselves, to reach the protected services.
class OutputParserTest : public ::testing::Test, public COutputParser {
 protected:
  void Read(std::string_view text) {
    Attach(text, &sink);
    EXPECT_TRUE(ReadLine());
  }
  // An answer, the position behind it and "!" once the line has failed.
  std::string At(std::string_view answer) {
    return std::string(answer) + "@" + std::to_string(position()) + (failed() ? "!" : "");
  }
  std::string At(int number) { return At(std::to_string(number)); }

  CollectingSink sink;
};

TEST_F(OutputParserTest, PushedBackLinesComeFirst) {
  Attach("one\ntwo\n", nullptr);
  std::string seen;
  for (bool push = true; ReadLine(); push = !push) {
    seen += std::string(line()) + (push ? "<" : " ");
    if (push) PushBack();
  }
  EXPECT_EQ(seen, "one<one two<two ");
}

TEST_F(OutputParserTest, TakingAnswersAndFailuresLastUntilTheNextLine) {
  Read("a:b:c\n");
  SetPosition(2);
  EXPECT_EQ(At(TakeUpTo(":")), "a:b@4");  // from the line start
  EXPECT_EQ(At(TakeUpTo(":")), "@4!");    // none left behind the position
  Read("no delimiters\n(12)\n");
  EXPECT_EQ(At(TakeBetween("(", ")")), "@0!");
  EXPECT_EQ(At(NumberBetween("n", "d")), "-1@4!");  // "o " is no number, but both were there
  ASSERT_TRUE(ReadLine());
  EXPECT_EQ(At(NumberBetween("(", ")")), "12@4");
  SetPosition(0);
  EXPECT_EQ(At(TakeUpTo("(")), "@1");  // an empty answer is no failure
  Read(")x(ab)cd)\n::\n");
  EXPECT_EQ(At(TakeBetween("(", ")")), "ab@6");  // the close is looked for behind the open
  ASSERT_TRUE(ReadLine());
  EXPECT_EQ(At(TakeBetween(":", ":")), "@2");
  // Numbers are read the way scanf reads them.
  Attach("(12)\n( -7x)\n(+4)\n(abc)\n()\n(99999999999)\n(-99999999999)\n(-)\n(12\n(\t\r 5)\n",
         nullptr);
  for (int want : {12, -7, 4, -1, -1, INT_MAX, INT_MIN, -1, -1, 5}) {
    ASSERT_TRUE(ReadLine());
    EXPECT_EQ(NumberBetween("(", ")"), want) << line();
  }
}

TEST_F(OutputParserTest, FindingMovesOnlyWhenFoundAndContainsNever) {
  Read("x.c(3) : Error C2065: ERROR\n");
  SetPosition(7);
  EXPECT_EQ(At(FindWord("error", true)), "0@7");
  EXPECT_EQ(At(FindWord("error", false)), "1@14");
  EXPECT_EQ(At(FindWord("ERROR", true)), "1@27");
  EXPECT_EQ(At(FindWord("error", false)), "0@27");  // nothing behind the position
  EXPECT_EQ(At(Contains("Error")), "1@27");         // from the line start, not moving
  EXPECT_FALSE(Contains("Error", 10));
  EXPECT_FALSE(Contains("x", 100));
  Read("a::b::c\n");
  EXPECT_EQ((std::vector<size_t>{FindNth("::", 1), FindNth("::", 2), FindNth("::", 3),
                                 FindNth("::", 0), FindNth(":", 3)}),
            (std::vector<size_t>{1, 4, npos, npos, 4}));
  SetPosition(2);
  EXPECT_EQ(FindNth(":", 1), 2u);
  EXPECT_EQ(FindNth("::", 1), 4u);
}

TEST_F(OutputParserTest, MarksAndPositionAreClampedAndResetByTheNextLine) {
  Read("0123456789\nse \tcond\n");
  SetPosition(4);
  SetStartMark(-2);
  SetEndMark(3);
  EXPECT_EQ(TextBetweenMarks(), "23456");
  SetStartMark(-100);
  SetEndMark(100);
  EXPECT_EQ(TextBetweenMarks(), "0123456789");
  SetStartMark(2);
  SetEndMark(1);
  EXPECT_EQ(TextBetweenMarks(), "");  // the start after the end
  MovePosition(-100);
  EXPECT_EQ(position(), 0u);
  MovePosition(100);
  EXPECT_EQ(position(), 10u);
  SetStartMark(-10);
  ASSERT_TRUE(ReadLine());
  EXPECT_EQ(At(TextBetweenMarks()), "@0");
  SetPosition(2);
  SkipWhiteSpace();
  EXPECT_EQ(RestOfLine(), "cond");
}

TEST_F(OutputParserTest, MessagesWithoutAFileNameTheProjectFile) {
  Attach("", &sink);
  set_project_file("/p/main.c");
  AddMessage(1, "  ", 3, 4, 2, "  text\t", " C1 ");
  EXPECT_EQ(sink.entries, (std::vector<MessageEntry>{{1, "/p/main.c", 3, 4, 2, "text", "C1"}}));
}

}  // namespace
}  // namespace quillon
