// Reading captured translator output line by line, and the environment list
// the translators get.
#include <gtest/gtest.h>

#include "build/build_context.h"
#include "build/captured_output.h"
#include "support/fake_file_system.h"
#include "support/native_path.h"

namespace quillon {
namespace {

std::vector<std::string> Lines(std::string_view contents) {
  std::vector<std::string> lines;
  ForEachCapturedLine(contents, [&](std::string_view line) { lines.emplace_back(line); });
  return lines;
}

TEST(CapturedOutputTest, LinesEndAtLineFeedsAndTheLastIsAlwaysShown) {
  using V = std::vector<std::string>;
  EXPECT_EQ(Lines("a\r\nb\n"), (V{"a", "b", ""}));
  EXPECT_EQ(Lines("a\nb"), (V{"a", "b"}));
  EXPECT_EQ(Lines(""), (V{""}));
  EXPECT_EQ(Lines("x\ry\n"), (V{"x\ry", ""}));
  // 1999 bytes and a line feed fit a 2000-byte piece; a 2000-byte line does
  // not, and ends the block unless it is all that is left.
  EXPECT_EQ(Lines(std::string(1999, 'a') + "\nz"), (V{std::string(1999, 'a'), "z"}));
  EXPECT_EQ(Lines("ok\n" + std::string(2000, 'a') + "\nz"), (V{"ok", kNotATextFile}));
  EXPECT_EQ(Lines(std::string(2000, 'a')), (V{std::string(2000, 'a')}));
  EXPECT_EQ(Lines(std::string(4000, '\0')), (V{kNotATextFile}));
}

TEST(CapturedOutputTest, BlocksAndLiveLines) {
  FakeFileSystem fs;
  std::vector<std::string> printed;
  auto print = [&](const std::string& line) { printed.push_back(line); };
  PrintCapturedFile(fs, "head", Rooted("/missing"), print);
  EXPECT_EQ(printed, (std::vector<std::string>{
                         "head", "File \"" + Rooted("/missing") + "\" can't be opened for reading"}));

  printed.clear();
  const std::string out = Rooted("/make.out");
  LiveLineReader live(fs, out);
  live.Poll(print);
  fs.Create(out, "one\ntw");
  live.Poll(print);
  fs.Create(out, "one\ntwo\r\nthree\n");
  live.Poll(print);
  live.Poll(print);
  EXPECT_EQ(printed, (std::vector<std::string>{"one", "two", "three"}));
}

TEST(EnvironmentPairsTest, KeepsWellFormedPairsUpToFifty) {
  auto pairs = EnvironmentPairs({" PATH=/bin ", "=x", "EMPTY=", "A=b=c", "noequals"});
  ASSERT_EQ(pairs.size(), 2u);
  EXPECT_EQ(pairs[0], std::make_pair(std::string("PATH"), std::string("/bin")));
  EXPECT_EQ(pairs[1], std::make_pair(std::string("A"), std::string("b=c")));
  EXPECT_EQ(EnvironmentPairs(std::vector<std::string>(60, "X=1")).size(), 50u);
}

}  // namespace
}  // namespace quillon
