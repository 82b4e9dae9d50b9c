// Layouts and rules of the vendor parsers that the samples under
// tests/data/diagnostics do not show, one short capture each. Entries are
// written as in the .expect files: SEVERITY|FILE|LINE|COLUMN|CODE|TEXT.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "filters/output_filter.h"
#include "filters/parser_helpers.h"
#include "support/fake_file_system.h"

namespace quillon {
namespace {

using Entries = std::vector<std::string>;

Entries Filter(const std::string& filter, char translator, const std::string& output) {
  FakeFileSystem fs;
  CollectingSink sink;
  CMessageTable table;
  fs.Create("/capture.txt", output);
  COutputFilter f(filter, fs, sink, table);
  if (translator == 'c') f.FilterCompilerOutput("P.c", "/capture.txt");
  if (translator == 'a') f.FilterAssemblerOutput("P.c", "/capture.txt");
  if (translator == 'l') f.FilterLinkerOutput("/capture.txt");
  Entries shown;
  for (const MessageEntry& e : sink.entries) {
    std::string text = e.text;
    for (size_t lf = text.find('\n'); lf != std::string::npos; lf = text.find('\n', lf)) {
      text.replace(lf, 1, "\\n");
    }
    shown.push_back(std::string(1, "EWF"[e.severity]) + "|" + e.file + "|" +
                    std::to_string(e.line) + "|" + std::to_string(e.column) + "|" + e.code + "|" +
                    text);
  }
  return shown;
}

struct Case {
  const char* filter;
  char translator;  // c, a or l
  const char* output;
  Entries entries;
};

const Case kCases[] = {
    // Continuations up to an end without a line feed.
    {"Texas Instruments",
     'c',
     "\"a.c\", line 1: error #1: x\n          wrap",
     {"E|a.c|1|1|1|x\\nwrap"}},
    {"DiabData", 'l', "dld: warning: w\ndld:    d", {"W||0|0||w\\nd"}},
    {"Tasking PowerPC", 'c', "E 1: [\"a.c\" 2] x\n|", {"E|a.c|2|1|1|x\\n|"}},
    // A lone CR is no line end.
    {"DiabData", 'c', "\"a.c\", line 1: error (dcc:1): x\r    y\r\n", {"E|a.c|1|1|dcc:1|x\r    y"}},
};

TEST(VendorLayoutsTest, EachLayoutGivesItsEntries) {
  for (const Case& c : kCases) {
    EXPECT_EQ(Filter(c.filter, c.translator, c.output), c.entries)
        << c.filter << " " << c.translator << ":\n"
        << c.output;
  }
}

// The operations that read nothing stay silent whatever the capture holds.
TEST(VendorLayoutsTest, OperationsThatReadNothingGiveNothing) {
  const std::string everything =
      "\"a.c\", line 1: error #1: x\nE 1: [\"a.c\" 2] x\n*** x\n!***  E  x\nERROR: x\n%Error: x\n"
      "a.c:1: error: x\nC816-LD.EXE: x\na.o: undefined reference to `f'\n[elxr] (error) x\n";
  const std::pair<const char*, char> kSilent[] = {
      {"National-COP8", 'c'}, {"Atmel-M4", 'c'}, {"Atmel-M4", 'a'}, {"GNU-CoolRISC", 'c'},
      {"GNU-CoolRISC", 'a'},  {"Verilog", 'c'},  {"Verilog", 'a'}};
  for (const auto& [filter, translator] : kSilent) {
    EXPECT_EQ(Filter(filter, translator, everything), Entries()) << filter << " " << translator;
  }
}

TEST(VendorLayoutsTest, LongNamesAndTextsAreKeptWhole) {
  const std::string name(100000, 'n');
  const Entries entries =
      Filter("DiabData", 'c', "\"" + name + "\", line 3: error (dcc:1): " + name);
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_EQ(entries[0], "E|" + name + "|3|1|dcc:1|" + name);
}

struct PlaceCase {
  const char* text;
  bool read;
  const char* file;
  int line, column;
  const char* rest;
};

TEST(ParserHelpersTest, QuotedPlaces) {
  const PlaceCase kPlaces[] = {
      {"\"a.c\", line 4: error", true, "a.c", 4, 0, "error"},
      {"a.c\", line 4:x", true, "a.c", 4, 0, "x"},  // the opening quote lost
      {"\"a.c\", line 40 (column 5): Error", true, "a.c", 40, 5, "Error"},
      {"\"a.c\", line x: e", false, "", 0, 0, ""},
      {"\"a.c\", line 4 x", false, "", 0, 0, ""},
      {"\", line 4: x", false, "", 0, 0, ""},
      {"\"a.c\", line 4 (column : x", false, "", 0, 0, ""},
      {"\"a.c\", line 12345678901: x", false, "", 0, 0, ""},  // no overflow into a line
  };
  for (const PlaceCase& c : kPlaces) {
    QuotedPlace place;
    ASSERT_EQ(ReadQuotedPlace(c.text, &place), c.read) << c.text;
    if (!c.read) continue;
    EXPECT_EQ(place.file, c.file);
    EXPECT_EQ(place.line, c.line);
    EXPECT_EQ(place.column, c.column);
    EXPECT_EQ(place.rest, c.rest);
  }
}

TEST(ParserHelpersTest, SeverityWordsAndCodes) {
  const struct {
    const char* text;
    int severity;  // -2: no severity word
    const char* code;
    const char* rest;
  } kWords[] = {
      {"fatal error #1: x", CMessageTable::kFatal, "1", "x"},
      {"catastrophic error: x", CMessageTable::kFatal, "", "x"},
      {"Error:  #12-D: x", CMessageTable::kError, "12-D", "x"},
      {"WARNING x", CMessageTable::kWarning, "", "x"},
      {"remark #5: x", kSkippedSeverity, "5", "x"},
      {"error #bad code: x", CMessageTable::kError, "", "#bad code: x"},
      {"error #20 x", CMessageTable::kError, "", "#20 x"},
      {"errors detected", -2, "", ""},
      {"warn: x", -2, "", ""},
  };
  for (const auto& c : kWords) {
    std::string_view text = c.text;
    int severity = -2;
    if (!ReadSeverityWord(&text, &severity)) {
      EXPECT_EQ(c.severity, -2) << c.text;
      continue;
    }
    EXPECT_EQ(severity, c.severity) << c.text;
    EXPECT_EQ(ReadHashCode(&text), c.code) << c.text;
    EXPECT_EQ(text, c.rest) << c.text;
  }
  EXPECT_TRUE(IsCaretLine("      ^"));
  EXPECT_FALSE(IsCaretLine("      | ^~~~"));  // Verilator's pointer belongs to no wrap rule
  EXPECT_FALSE(IsCaretLine("   "));
}

}  // namespace
}  // namespace quillon
