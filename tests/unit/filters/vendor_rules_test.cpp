// Rules of the Keil, Cosmic, Borland, Softools and BSO parsers that the
// vendor samples do not reach: places that are missing or odd, blocks that
// follow each other, the last line without a line feed.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "filters/output_filter.h"
#include "support/fake_file_system.h"

namespace quillon {
namespace {

struct Case {
  const char* filter;
  int kind;
  const char* output;
  std::vector<std::string> entries;  // SEVERITY|FILE|LINE|COLUMN|CODE|TEXT
};

std::vector<std::string> Entries(const Case& c) {
  FakeFileSystem fs;
  CollectingSink sink;
  CMessageTable table;
  fs.Create("/capture.txt", c.output);
  COutputFilter filter(c.filter, fs, sink, table);
  if (c.kind == kCompilerMessage) filter.FilterCompilerOutput("P.c", "/capture.txt");
  if (c.kind == kAssemblerMessage) filter.FilterAssemblerOutput("P.c", "/capture.txt");
  if (c.kind == kLinkerMessage) filter.FilterLinkerOutput("/capture.txt");
  std::vector<std::string> shown;
  for (const MessageEntry& e : sink.entries) {
    shown.push_back(std::string(1, "EWF"[e.severity]) + "|" + e.file + "|" +
                    std::to_string(e.line) + "|" + std::to_string(e.column) + "|" + e.code + "|" +
                    e.text);
  }
  return shown;
}

const Case kCases[] = {
    // A fatal block names its file on a FILE: line; the closing line is no detail.
    {"Keil-8051",
     kAssemblerMessage,
     "A51 FATAL ERROR -\n  FILE:       START.A51\n  ERROR:      CAN'T OPEN FILE\nA51 TERMINATED.\n",
     {"F|START.A51|0|0||FILE:       START.A51\nERROR:      CAN'T OPEN FILE"}},
    {"Keil-251",
     kAssemblerMessage,
     "STARTUP.A51(104): error A9: SYNTAX ERROR\n*** MORE ERRORS DETECTED, NOT REPORTED.\n",
     {"E|STARTUP.A51|104|1|A9|SYNTAX ERROR"}},
    // C51 4.x: a bare number as code; the drive letter's colon is part of the name.
    {"Keil-8051 (ver. 4.5)",
     kCompilerMessage,
     "*** ERROR 141 IN LINE 5 OF C:\\SRC\\X.C: syntax error near 'x'\n",
     {"E|C:\\SRC\\X.C|5|1|141|syntax error near 'x'"}},
    // Blocks one after the other, a message without code, no final line feed.
    {"Keil-8051",
     kLinkerMessage,
     "*** ERROR: ADDRESS OUTSIDE INTEL-HEX RANGE\n*** FATAL ERROR 206: INVALID CONSTANT\n"
     "*** WARNING L16: UNCALLED SEGMENT\n    SEGMENT: ?PR?F?MAIN\n"
     "*** WARNING L16: UNCALLED SEGMENT\n    SEGMENT: ?PR?G?MAIN",
     {"E||0|0||ADDRESS OUTSIDE INTEL-HEX RANGE", "F||0|0|206|INVALID CONSTANT",
      "W||0|0|L16|UNCALLED SEGMENT\nSEGMENT: ?PR?F?MAIN",
      "W||0|0|L16|UNCALLED SEGMENT\nSEGMENT: ?PR?G?MAIN"}},
    {"Cosmic",
     kCompilerMessage,
     "#error cpstm8 C:\\src\\main.c:12(3+2) missing ;\n#error cpstm8 can't open main.c\n"
     "#warning cpstm8 x.c:7 unused\n#error cpstm8 x.c:9(3 bad\n#errors are not this\n",
     {"E|C:\\src\\main.c|12|1||missing ;", "E|P.c|0|0||can't open main.c", "W|x.c|7|1||unused",
      "E|P.c|0|0||x.c:9(3 bad"}},
    {"Cosmic (old)",
     kLinkerMessage,
     "clnk: x.lkf:3 bad\n#error clnk x.lkf:1 new style\nnot: me\n",
     {"E|x.lkf|3|1||bad", "E||0|0||me"}},
    // No place: a command-line message; Turbo C without codes.
    {"Borland",
     kCompilerMessage,
     "Error E2194: Could not find file 'x.c'\nError main.c 12: Undefined symbol 'x'\n"
     "Fatal F1003 C:\\my src\\a.c 3: Error directive: stop\n",
     {"E|P.c|0|0|E2194|Could not find file 'x.c'", "E|main.c|12|1||Undefined symbol 'x'",
      "F|C:\\my src\\a.c|3|1|F1003|Error directive: stop"}},
    {"Borland",
     kAssemblerMessage,
     "**Fatal** Command line: Can't locate file: x.asm\n**Error** main.asm(12) Undefined symbol: "
     "FOO\n",
     {"F|P.c|0|0||Command line: Can't locate file: x.asm",
      "E|main.asm|12|1||Undefined symbol: FOO"}},
    {"Borland",
     kLinkerMessage,
     "Turbo Link\nWarning: No stack\nError: Undefined symbol _main\n",
     {"W||0|0||No stack", "E||0|0||Undefined symbol _main"}},
    {"Softools",
     kCompilerMessage,
     "Errors: 2\nWarning 7 here\nx.c(3): Fatal error: out of memory\n",
     {"F|x.c|3|1||out of memory"}},
    // An "in function" line continues only the entry just made.
    {"Borland",
     kCompilerMessage,
     "in function f\nWarning W8004 a.c 4: 'i' is assigned a value that is never used\n"
     "in function g\nin function h\n",
     {"W|a.c|4|1|W8004|'i' is assigned a value that is never used\nin function g\nin function h"}},
    // Information lines are no diagnostics; S (system) is fatal.
    {"BSO-8051",
     kCompilerMessage,
     "c51 I 800: done\nc51 S 1: out of memory\n",
     {"F|P.c|0|0|S1|out of memory"}},
    {"BSO-166",
     kCompilerMessage,
     "c166 E 227: [\"main.c\" 12] syntax error\n>>>> W 5: [\"m.c\" 3\n",
     {"W|P.c|0|0|W5|[\"m.c\" 3"}},
    {"BSO-196",
     kCompilerMessage,
     "Warning: main.c line 3: unused\nError 9 main.c line 4: no colon\n",
     {"W|main.c|3|1||unused"}},
    {"BSO-196", kAssemblerMessage, "**** ERROR #20, LINE #12, UNDEFINED SYMBOL\n", {}},
};

TEST(VendorRulesTest, EntriesPerCase) {
  for (const Case& c : kCases) {
    EXPECT_EQ(Entries(c), c.entries) << c.filter << " " << c.kind << ": " << c.output;
  }
}

}  // namespace
}  // namespace quillon
