#include "filters/output_filter.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "filters/parser_factory.h"
#include "unit/filters/filter_test_support.h"

namespace quillon {
namespace {

using namespace std::string_literals;

constexpr const char* kGccOutput =
    "bad.c: In function 'f':\n"
    "bad.c:5: warning: unused variable 'p'\n"
    "bad.c:7:1: error: expected expression before '}' token\n";

class RecordingOutput : public OutputSink {
 public:
  void Output(int channel, int /*action*/, const std::string& text) override {
    lines.push_back(std::to_string(channel) + " " + text);
  }
  std::vector<std::string> lines;
};

class OutputFilterTest : public FilterTest {
 protected:
  OutputFilterTest() { table_.SetOutputSink(&output_); }
  RecordingOutput output_;
};

TEST_F(OutputFilterTest, NoFilterReadsNothing) {
  EXPECT_TRUE(Compile("No filter", kGccOutput).empty());
  EXPECT_TRUE(Assemble("No filter", kGccOutput).empty());
  EXPECT_TRUE(Link("No filter", "collect2: error: ld returned 1 exit status\n").empty());
  EXPECT_TRUE(fs_.files_mapped().empty());
  EXPECT_TRUE(fs_.files_read().empty());
}

TEST_F(OutputFilterTest, NamesWithoutAParserAddNothing) {
  for (const char* name : {"Microchip", "Microchip1", "gcc", "No Filter", ""}) {
    SCOPED_TRACE(name);
    EXPECT_TRUE(Compile(name, kGccOutput).empty());
    EXPECT_TRUE(Link(name, "collect2: error: ld returned 1 exit status\n").empty());
  }
  EXPECT_TRUE(output_.lines.empty());
}

TEST_F(OutputFilterTest, UnreadableCaptureIsSilent) {
  Capture("made so that the directory exists");
  COutputFilter filter("GCC", fs_, sink_, table_);
  EXPECT_TRUE(filter.FilterCompilerOutput(Rooted("/src/a.c"), Rooted("/build/none.txt")));
  EXPECT_TRUE(filter.FilterAssemblerOutput(Rooted("/src/a.s"), Rooted("/build/none.txt")));
  EXPECT_TRUE(filter.FilterLinkerOutput(Rooted("/build")));  // a directory
  EXPECT_TRUE(sink_.entries.empty());
  EXPECT_TRUE(output_.lines.empty());
}

TEST_F(OutputFilterTest, RunReportsAnUnreadableCaptureWhenAsked) {
  COutputFilter filter("GCC", fs_, sink_, table_);
  std::unique_ptr<COutputParser> parser = MakeParser("GCC");
  const std::string missing = Rooted("/build/none.txt");
  parser->set_captured_file(missing);
  EXPECT_FALSE(filter.Run(*parser, kCompilerMessage, false));
  EXPECT_TRUE(output_.lines.empty());
  EXPECT_FALSE(filter.Run(*parser, kLinkerMessage, true));
  EXPECT_EQ(output_.lines, std::vector<std::string>{
                               "0 Error [PM0]: Can't open error output file \"" + missing +
                               "\" (No such file or directory). Error list will not be avaible."});
  EXPECT_TRUE(sink_.entries.empty());
}

TEST_F(OutputFilterTest, RunCallsTheOperationOfTheKind) {
  COutputFilter filter("GCC", fs_, sink_, table_);
  std::unique_ptr<COutputParser> parser = MakeParser("GCC");
  parser->set_captured_file(Capture("a.s:3: Error: bad\n"));
  EXPECT_TRUE(filter.Run(*parser, kAssemblerMessage, true));
  EXPECT_FALSE(filter.Run(*parser, kScannerMessage, true));
  ASSERT_EQ(sink_.entries.size(), 1u);
  EXPECT_EQ(sink_.entries[0].kind, kAssemblerMessage);
  EXPECT_TRUE(output_.lines.empty());
}

TEST_F(OutputFilterTest, EmptyCaptureAddsNothing) {
  EXPECT_TRUE(Compile("GCC", "").empty());
  EXPECT_TRUE(Link("GCC", "\n\r\n").empty());
}

TEST_F(OutputFilterTest, EmbeddedNulBytesAreLineContent) {
  const std::vector<MessageEntry> entries = Compile("GCC", "a.c:2: error: x\0y\n\0\0:\0:\n"s);
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_EQ(entries[0].text, "x\0y"s);
}

class TableSinkTest : public OutputFilterTest {
 protected:
  TableSinkTest() : table_sink_(table_) {}
  MessageTableSink table_sink_;
};

TEST_F(TableSinkTest, EntriesBecomeCountedErrorListLines) {
  const std::string file = Rooted("/src/bad.c");
  COutputFilter filter("GCC", fs_, table_sink_, table_);
  EXPECT_TRUE(filter.FilterCompilerOutput(file, Capture(kGccOutput)));
  EXPECT_EQ(table_.current_file(), file);
  // GCC names the file as it was given; the table shows the project's path.
  EXPECT_EQ(output_.lines,
            (std::vector<std::string>{
                "0 " + file + " (5,1) : Warning : unused variable 'p'",
                "0 " + file + " (7,1) : Error : 1: error: expected expression before '}' token"}));
  EXPECT_EQ(table_.error_count(), 1);
  EXPECT_EQ(table_.warning_count(), 1);
}

TEST_F(TableSinkTest, FatalCountsAsError) {
  COutputFilter filter("GCC", fs_, table_sink_, table_);
  table_.SetCurrentFile(Rooted("/src/main.c"));
  EXPECT_TRUE(filter.FilterLinkerOutput(
      Capture("collect2: fatal error: ld terminated with signal 9 [Killed]\n"
              "/usr/bin/ld: warning: creating DT_TEXTREL in a PIE\n")));
  EXPECT_EQ(table_.current_file(), Rooted("/src/main.c"));  // the link names no project file
  EXPECT_EQ(output_.lines,
            (std::vector<std::string>{"0  (0,0) : Fatal : ld terminated with signal 9 [Killed]",
                                      "0  (0,0) : Warning : creating DT_TEXTREL in a PIE"}));
  EXPECT_EQ(table_.error_count(), 1);
  EXPECT_EQ(table_.warning_count(), 1);

  table_sink_.AddMessage({kCompilerMessage, "x.c", 3, 4, CMessageTable::kFatal, "boom", "F1"});
  EXPECT_EQ(output_.lines.back(), "0 x.c (3,4) : Fatal[F1] : boom");
  EXPECT_EQ(table_.error_count(), 2);
}

// The captured file on the real disk is mapped, not copied.
TEST(OutputFilterRealFilesTest, ReadsACapturedFileFromDisk) {
  const std::filesystem::path dir =
      std::filesystem::path(::testing::TempDir()) / "quillon_filters_real_files";
  std::filesystem::remove_all(dir);
  std::filesystem::create_directories(dir);
  const std::string captured = NormalizePath((dir / "stderr.txt").string());
  std::ofstream(captured, std::ios::binary)
      << "m68k.s: Assembler messages:\r\nm68k.s:4: Error: bad expression\r\nm68k.s:5: Warning: w";
  CollectingSink sink;
  CMessageTable table;
  COutputFilter filter("GCC", FileSystem::Default(), sink, table);
  EXPECT_TRUE(filter.FilterAssemblerOutput(NormalizePath((dir / "m68k.s").string()), captured));
  const std::vector<MessageEntry> expected = {
      {kAssemblerMessage, "m68k.s", 4, 1, CMessageTable::kError, "bad expression", ""},
      {kAssemblerMessage, "m68k.s", 5, 1, CMessageTable::kWarning, "w", ""},
  };
  EXPECT_EQ(sink.entries, expected);
  std::filesystem::remove_all(dir);
}

}  // namespace
}  // namespace quillon
