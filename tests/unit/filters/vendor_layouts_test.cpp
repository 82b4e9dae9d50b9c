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
    // Only "%Error" lines, and only from the linker.
    {"Atmel-M4",
     'l',
     "%Error: undefined symbol 'timer_init'\n  %Error-MEMFULL: CODE too big\n%Warning: x\n",
     {"E||0|0||undefined symbol 'timer_init'", "E||0|0|MEMFULL|CODE too big"}},
    {"Atmel-M4", 'c', "%Error: x\n", {}},
    // Indented lines continue a compiler message; remarks take theirs along.
    {"DiabData",
     'c',
     "\"a.c\", line 3: warning (dcc:1500): function f has no\n    prototype\n"
     "\"a.c\", line 4: info (dcc:1): hidden\n    more\n"
     "\"a.c\", line 5: fatal error (dcc:1234): out of memory\n",
     {"W|a.c|3|1|dcc:1500|function f has no\\nprototype", "F|a.c|5|1|dcc:1234|out of memory"}},
    {"DiabData",
     'l',
     "dld:    stray detail\nDLD.EXE: error: cannot open crt0.o\ndld: Undefined symbol foo\n",
     {"E||0|0||cannot open crt0.o", "E||0|0||Undefined symbol foo"}},
    // Wraps end at the echoed source line; the pre-EDG class letters.
    {"Texas Instruments",
     'c',
     "\"m.c\", line 7: warning #552-D: variable \"x\" was set\n          but never used\n"
     "      int x;\n          ^\n\"old.c\", line 9: [F104] too complex\n"
     "\"m.c\", line 2: remark #1: hidden\n\"m.c\", line 8: error #20: no\n",
     {"W|m.c|7|1|552-D|variable \"x\" was set\\nbut never used", "F|old.c|9|1|F104|too complex",
      "E|m.c|8|1|20|no"}},
    {"Texas Instruments",
     'a',
     "\"boot.asm\", ERROR!   at line 12: [E0300] Symbol foo has not been defined\n"
     "        ldi foo\n\"boot.asm\", WARNING! at line 20: [W0000] value truncated\n",
     {"E|boot.asm|12|1|E0300|Symbol foo has not been defined",
      "W|boot.asm|20|1|W0000|value truncated"}},
    {"Texas Instruments",
     'l',
     "\"linker.cmd\", line 31: error #10099-D: program will not fit into memory\n"
     ">> error: symbol referencing errors\nwarning #10247-D: creating output section\n",
     {"E|linker.cmd|31|1|10099-D|program will not fit into memory",
      "E||0|0||symbol referencing errors", "W||0|0|10247-D|creating output section"}},
    {"Green Hills",
     'a',
     "[asarm] (error #123) start.s 44: unknown opcode\n[asarm] (warning) start.s 50: odd\n",
     {"E|start.s|44|1|123|unknown opcode", "W|start.s|50|1||odd"}},
    // An echoed source line is no assembler message.
    {"Green Hills",
     'c',
     "\"a.c\", line 3: error #20: e is undefined\n    if (error) return;\n        ^\n",
     {"E|a.c|3|1|20|e is undefined"}},
    {"Green Hills",
     'l',
     "[elxr] (error #412) unresolved symbols: 1\n  foo   from main.o\n[elxr] (assertion) bad\n",
     {"E||0|0|412|unresolved symbols: 1\\nfoo   from main.o", "F||0|0||bad"}},
    // armcc's command line (a column is not kept), armclang, the tool itself.
    {"Arm",
     'c',
     "\"m.c\", line 40 (column 5): Error:  #20: x is undefined\nm.c:12:5: error: no y\n"
     "Error: C3900U: Unrecognized option\nm.c(3): remark:  #1: hidden\nm.c: 1 warning, 1 error\n",
     {"E|m.c|40|1|20|x is undefined", "E|m.c|12|1||no y", "E|P.c|0|0|C3900U|Unrecognized option"}},
    {"Verilog",
     'l',
     "top.v:7: error: port a is not a port of u1.\ntop.v:3:      : u1 is declared here.\n"
     "%Warning-WIDTH: top.v:9:12: Operator ASSIGN expects 4 bits\n%Error: Exiting due to 1 "
     "error(s)\n"
     "ERROR: Module `sub' is not part of the design.\ntop.v:11: sorry: constant selects\n",
     {"E|top.v|7|1||port a is not a port of u1.\\nu1 is declared here.",
      "W|top.v|9|12|WIDTH|Operator ASSIGN expects 4 bits",
      "E||0|0||Module `sub' is not part of the design.", "E|top.v|11|1||constant selects"}},
    // A label in a source line is no message; the compiler's own name is.
    {"National-CR16",
     'c',
     "  error: return -1;\nerror: x\ncrcc: fatal error: out of memory\n",
     {"F|P.c|0|0||out of memory"}},
    // Older ld names the source behind the object and section.
    {"GNU-CoolRISC",
     'l',
     "main.o(.text+0x1a):main.c: undefined reference to `f'\nSome Linker: error: x\n",
     {"E|main.c|0|0||undefined reference to `f'", "E||0|0||x"}},
    // A message right after another is not taken for its continuation.
    {"Green Hills",
     'c',
     "\"a.c\", line 1: error #1: x\n\"a.c\", line 2: warning #2: y\n",
     {"E|a.c|1|1|1|x", "W|a.c|2|1|2|y"}},
    // Continuations up to an end without a line feed.
    {"Texas Instruments",
     'c',
     "\"a.c\", line 1: error #1: x\n          wrap",
     {"E|a.c|1|1|1|x\\nwrap"}},
    {"DiabData", 'l', "dld: warning: w\ndld:    d", {"W||0|0||w\\nd"}},
    {"Tasking PowerPC", 'c', "E 1: [\"a.c\" 2] x\n|", {"E|a.c|2|1|1|x\\n|"}},
    // A lone CR is no line end.
    {"DiabData", 'c', "\"a.c\", line 1: error (dcc:1): x\r    y\r\n", {"E|a.c|1|1|dcc:1|x\r    y"}},
    // Drive letters and parentheses inside names.
    {"Verilog", 'l', "C:\\v\\top.v:7: error: x\n", {"E|C:\\v\\top.v|7|1||x"}},
    {"Arm",
     'c',
     "C:\\Program Files (x86)\\m.c(12): error:  #20: x\n",
     {"E|C:\\Program Files (x86)\\m.c|12|1|20|x"}},
    // Only a lone E or w opens a message; bars after anything else are lost.
    {"Tasking PowerPC",
     'c',
     "W 536: [\"a.c\" 3] x\n| y\nError: x\nw 1: no place\n|  more\n",
     {"W|P.c|0|0|1|no place\\n|  more"}},
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
