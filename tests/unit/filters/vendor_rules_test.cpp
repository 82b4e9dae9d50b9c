// Rules of the vendor filters that their samples (vendor_samples_test.cpp)
// do not reach: odd shapes, places missing or odd, blocks one after the
// other, the words only some operations know, the operations that read
// nothing, the last line without a line feed.
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "filters/output_filter.h"
#include "support/fake_file_system.h"

namespace quillon {
namespace {

enum Op { kCmp, kAsm, kLnk };

struct Case {
  const char* filter;
  Op op;
  std::string_view output;
  std::vector<std::string> entries;  // "SEVERITY|FILE|LINE|COLUMN|CODE|TEXT"
};

std::vector<std::string> Filter(const Case& c) {
  FakeFileSystem fs;
  CollectingSink sink;
  CMessageTable table;
  fs.Create("/capture.txt", std::string(c.output));
  COutputFilter filter(c.filter, fs, sink, table);
  if (c.op == kCmp) filter.FilterCompilerOutput("P.c", "/capture.txt");
  if (c.op == kAsm) filter.FilterAssemblerOutput("P.c", "/capture.txt");
  if (c.op == kLnk) filter.FilterLinkerOutput("/capture.txt");
  std::vector<std::string> shown;
  for (const MessageEntry& e : sink.entries) {
    EXPECT_EQ(e.kind, static_cast<int>(c.op)) << c.filter;
    shown.push_back(std::string(1, "EWF"[e.severity]) + "|" + e.file + "|" +
                    std::to_string(e.line) + "|" + std::to_string(e.column) + "|" + e.code + "|" +
                    e.text);
  }
  return shown;
}

// Output that every HI-TECH layout reads, for the operations that read nothing.
constexpr const char* kHiTechLines =
    "main.c 12: (192) undefined identifier \"count\" (error)\n"
    "main.c: 20: function declared implicit int (warning)\n"
    "Error   [500] ; 0. undefined symbols:\n";

// One case per entry of the table reads better than the formatter's layout.
// clang-format off
const Case kCases[] = {
    // The error line and its warning twin: a warning keeps its code in the text.
    {"Microsoft", kCmp, "file.c(12) : error C2065: 'x' : undeclared identifier\n",
     {"E|file.c|12|1|C2065|'x' : undeclared identifier"}},
    {"Microsoft", kCmp, "file.c(12) : warning C4101: 'y' : unreferenced local variable\n",
     {"W|file.c|12|1||warning C4101: 'y' : unreferenced local variable"}},
    {"Microsoft", kAsm, "file.c(12) : fatal error A1000: cannot open file : x.inc\n",
     {"E|file.c|12|1|A1000|cannot open file : x.inc"}},
    // No "(", no number in it, no severity word, no colon behind the code.
    {"Microsoft", kCmp,
     "file.c : error C2065: text\nfile.c(x) : error C2065: text\nfile.c(3) : note: see x\n"
     "file.c(4) : error\n",
     {}},
    {"Microsoft", kLnk, "LINK : fatal error LNK1104: cannot open file 'a.lib'\nplain line\n",
     {"E|LINK|0|0|LNK1104|cannot open file 'a.lib'"}},
    // IAR: the source echo and caret come first; a long message wraps under
    // 10 blanks; a 10-blank line with a caret under it is the next echo.
    {"IAR", kCmp,
     "      x = y;\n          ^\n"
     "\"main.c\",5  Warning[Pe550]: variable \"x\" was set but never\n"
     "          used\n"
     "          int z = w;\n              ^\n"
     "main.c(6) : Error[Pe020]: identifier \"w\" is undefined\n"
     "\"main.c\",7  Remark[Pe177]: function \"f\" was declared but never referenced\n"
     "Errors: 1\nWarnings: 1\n",
     {"W|main.c|5|1|Pe550|variable \"x\" was set but never\nused",
      "E|main.c|6|1|Pe020|identifier \"w\" is undefined"}},
    {"IAR", kCmp,
     "Fatal error[Pe1696]: cannot open source file \"x.h\"\n"
     "  printf(\"Error[%d]: x\");\n"
     "somewhere Error[Pe1]: a place that is none\n",
     {"F|P.c|0|0|Pe1696|cannot open source file \"x.h\""}},
    {"IAR (STDERR)", kLnk,
     "Warning[Lp005]: placement includes a mix of sections\n"
     "          with content and sections without\n"
     "Fatal Error[Lc002]: expected a command\n",
     {"W||0|0|Lp005|placement includes a mix of sections\nwith content and sections without",
      "F||0|0|Lc002|expected a command"}},
    {"IAR", kAsm,
     "\"start.s\",12  Warning[As010]: value truncated\n"
     "\"start.s\",13  error[As001]: lower-case word\n"
     "start.s(14) : Error[As002]: other layout\n",
     {"W|start.s|12|1|As010|value truncated"}},
    // HI-TECH: type words, codes, advisories, and a linker's symbol lines.
    {"HiTech-5", kCmp,
     "main.c 12: (192) undefined identifier \"count\" (error)\n"
     "C:\\p\\main.c 13: (361) function declared implicit int (warning)\n"
     "main.c 14: (1) no space (fatal error)\n"
     "main.c 15: (1273) Omniscient Code Generation not available (advisory)\n"
     "Advisory[1233] Employing 16F877 errata work-arounds\n",
     {"E|main.c|12|1|192|undefined identifier \"count\"",
      "W|C:\\p\\main.c|13|1|361|function declared implicit int",
      "F|main.c|14|1|1|no space"}},
    {"Hitech-8051", kLnk,
     "Error   [500] ; 0. undefined symbols:\n\t_foo(main.obj)\n\t_bar(main.obj)\nLoad map\n",
     {"E||0|0|500|undefined symbols:\n_foo(main.obj)\n_bar(main.obj)"}},
    {"Hitech-PIC", kLnk, kHiTechLines,
     {"E|main.c|12|1|192|undefined identifier \"count\"",
      "W|main.c|20|1||function declared implicit int", "E||0|0|500|undefined symbols:"}},
    {"Hitech-PIC", kCmp, kHiTechLines, {}},
    {"Hitech-PIC", kAsm, kHiTechLines, {}},
    {"HiTech-5", kLnk, kHiTechLines, {}},
    // HiWare: the bad command line, informations from compiler and assembler,
    // the IDE's place line and the linker's name in front.
    {"HiWare", kCmp,
     "FATAL Error in command line: unknown option -Zx\n"
     "main.c(3): INFORMATION C2705: Possible loss of data\n"
     "main.c: FATAL C1: out of memory\n"
     "Warning : C1420: Result of function call is ignored\n"
     "\"my file.c\" line 40\n",
     {"F|P.c|0|0||unknown option -Zx", "W|main.c|3|1|C2705|Possible loss of data",
      "F|main.c|0|0|C1|out of memory",
      "W|my file.c|40|1|C1420|Result of function call is ignored"}},
    {"HiWare", kLnk,
     "Link Error : L1822: Symbol _x in file main.o is undefined\n"
     "INFORMATION L10324: Linking successful\nFATAL L1: not a linker word\n",
     {"E||0|0|L1822|Symbol _x in file main.o is undefined"}},
    {"HiWare", kAsm, "start.asm(7): INFORMATION A13003: Value is truncated to one Byte\n",
     {"W|start.asm|7|1|A13003|Value is truncated to one Byte"}},
    // The word "error" anywhere behind the number makes an Error, and the
    // code is whatever stands between the next blank and colon.
    {"Microsoft", kCmp, "a.c(7) : warning C4013: 'error' undefined: assuming extern\n",
     {"E|a.c|7|1|undefined|assuming extern"}},
    {"Microsoft", kLnk, "a.lib(b.obj) : warning LNK4006: x already defined\n",
     {"W|a.lib|0|0||warning LNK4006: x already defined"}},
    // A trailing field that is no line number leaves the text whole.
    {"IAR", kCmp, "Error[Pe1]: text\tfile.c\tnot a line\n",
     {"E|P.c|0|0|Pe1|text\tfile.c\tnot a line"}},
    // Only a known type word at the end counts; a place without one is an error.
    {"Hitech-8051", kCmp,
     "main.c 3: the (warning) word inside\nmain.c 4: ends in (something)\n"
     "no place here (something)\n12: no file (warning)\n",
     {"E|main.c|3|1||the (warning) word inside", "E|main.c|4|1||ends in (something)",
      "W|P.c|0|0||12: no file"}},
    {"HiWare", kCmp,
     "main.c(12): ERROR: a code is missing\nERRORS: 0\nmain.c(5): warning C1420: lower case\n",
     {"W|main.c|5|1|C1420|lower case"}},
    // "war" and "ning" are two searches, the second behind the first.
    {"Introl", kCmp,
     "\"a.c\", line 3: forward ref running past\n\"a.c\", line 4: ning before war\n",
     {"W|a.c|3|1||forward ref running past", "E|a.c|4|1||ning before war"}},
    {"Intermetrics-68k", kAsm, "s.s:3:AS: (Warning) only the compiler's\ns.s:x:AS: no line\n",
     {"E|s.s|3|1||(Warning) only the compiler's"}},
    {"2500AD", kCmp, "main.c Line # x: no number\nmain.c, Line # 7: Warning: w\n",
     {"W|main.c|7|1||w"}},
    {"2500AD (ver. 4.0)", kAsm, "******************\n***** Phase Error *****\nLine 3 in a.asm\n",
     {"E|P.c|0|0||Phase Error"}},
    // The first "(" starts the number, so a path holding one is passed over.
    {"Microsoft", kCmp, "C:\\Program Files (x86)\\a.h(12) : error C1083: x\n", {}},
    // A blank line ends a wrapped message; CR LF endings change nothing.
    {"IAR", kLnk, "Error[e46]: Undefined external \"f\"\n\n          not a wrap\n",
     {"E||0|0|e46|Undefined external \"f\""}},
    {"IAR", kCmp, "\"a.c\",3  Error[Pe020]: x\r\n          wrapped\r\n",
     {"E|a.c|3|1|Pe020|x\nwrapped"}},
    {"HiWare", kCmp, "Error : C2450: Expected: ; at end\n",
     {"E|P.c|0|0|C2450|Expected: ; at end"}},
    // "HiTech-5" keeps the assembler's column, "Hitech-8051" gives 1.
    {"HiTech-5", kAsm, "Fatal Error [1] a.as; 3.7 can't open\nWarning [2] a.as; 4.2 w\n",
     {"F|a.as|3|7|1|can't open", "W|a.as|4|2|2|w"}},
    {"Hitech-8051", kAsm, "Fatal Error [1] a.as; 3.7 can't open\nWarning [2] a.as; 4.2 w\n",
     {"F|a.as|3|1|1|can't open", "W|a.as|4|1|2|w"}},
    {"2500AD", kLnk, "Fatal Error: out of memory\nErrors: 1\n", {"F||0|0||out of memory"}},
    {"Avocet-8051", kAsm, "Error in line x of a.a51: no line\nWarning in line 4 of a.a51 text\n", {}},
    // Keil, Cosmic, Borland, Softools and BSO.
    // A fatal block names its file on a FILE: line; the closing line is no detail.
    {"Keil-8051",
     kAsm,
     "A51 FATAL ERROR -\n  FILE:       START.A51\n  ERROR:      CAN'T OPEN FILE\nA51 TERMINATED.\n",
     {"F|START.A51|0|0||FILE:       START.A51\nERROR:      CAN'T OPEN FILE"}},
    {"Keil-251",
     kAsm,
     "STARTUP.A51(104): error A9: SYNTAX ERROR\n*** MORE ERRORS DETECTED, NOT REPORTED.\n",
     {"E|STARTUP.A51|104|1|A9|SYNTAX ERROR"}},
    // C51 4.x: a bare number as code; the drive letter's colon is part of the name.
    {"Keil-8051 (ver. 4.5)",
     kCmp,
     "*** ERROR 141 IN LINE 5 OF C:\\SRC\\X.C: syntax error near 'x'\n",
     {"E|C:\\SRC\\X.C|5|1|141|syntax error near 'x'"}},
    // Blocks one after the other, a message without code, no final line feed.
    {"Keil-8051",
     kLnk,
     "*** ERROR: ADDRESS OUTSIDE INTEL-HEX RANGE\n*** FATAL ERROR 206: INVALID CONSTANT\n"
     "*** WARNING L16: UNCALLED SEGMENT\n    SEGMENT: ?PR?F?MAIN\n"
     "*** WARNING L16: UNCALLED SEGMENT\n    SEGMENT: ?PR?G?MAIN",
     {"E||0|0||ADDRESS OUTSIDE INTEL-HEX RANGE", "F||0|0|206|INVALID CONSTANT",
      "W||0|0|L16|UNCALLED SEGMENT\nSEGMENT: ?PR?F?MAIN",
      "W||0|0|L16|UNCALLED SEGMENT\nSEGMENT: ?PR?G?MAIN"}},
    {"Cosmic",
     kCmp,
     "#error cpstm8 C:\\src\\main.c:12(3+2) missing ;\n#error cpstm8 can't open main.c\n"
     "#warning cpstm8 x.c:7 unused\n#error cpstm8 x.c:9(3 bad\n#errors are not this\n",
     {"E|C:\\src\\main.c|12|1||missing ;", "E|P.c|0|0||can't open main.c", "W|x.c|7|1||unused",
      "E|P.c|0|0||x.c:9(3 bad"}},
    {"Cosmic (old)",
     kLnk,
     "clnk: x.lkf:3 bad\n#error clnk x.lkf:1 new style\nnot: me\n",
     {"E|x.lkf|3|1||bad", "E||0|0||me"}},
    // No place: a command-line message; Turbo C without codes.
    {"Borland",
     kCmp,
     "Error E2194: Could not find file 'x.c'\nError main.c 12: Undefined symbol 'x'\n"
     "Fatal F1003 C:\\my src\\a.c 3: Error directive: stop\n",
     {"E|P.c|0|0|E2194|Could not find file 'x.c'", "E|main.c|12|1||Undefined symbol 'x'",
      "F|C:\\my src\\a.c|3|1|F1003|Error directive: stop"}},
    {"Borland",
     kAsm,
     "**Fatal** Command line: Can't locate file: x.asm\n**Error** main.asm(12) Undefined symbol: "
     "FOO\n",
     {"F|P.c|0|0||Command line: Can't locate file: x.asm",
      "E|main.asm|12|1||Undefined symbol: FOO"}},
    {"Borland",
     kLnk,
     "Turbo Link\nWarning: No stack\nError: Undefined symbol _main\n",
     {"W||0|0||No stack", "E||0|0||Undefined symbol _main"}},
    {"Softools",
     kCmp,
     "Errors: 2\nWarning 7 here\nx.c(3): Fatal error: out of memory\n",
     {"F|x.c|3|1||out of memory"}},
    // An "in function" line continues only the entry just made.
    {"Borland",
     kCmp,
     "in function f\nWarning W8004 a.c 4: 'i' is assigned a value that is never used\n"
     "in function g\nin function h\n",
     {"W|a.c|4|1|W8004|'i' is assigned a value that is never used\nin function g\nin function h"}},
    // Information lines are no diagnostics; S (system) is fatal.
    {"BSO-8051",
     kCmp,
     "c51 I 800: done\nc51 S 1: out of memory\n",
     {"F|P.c|0|0|S1|out of memory"}},
    {"BSO-166",
     kCmp,
     "c166 E 227: [\"main.c\" 12] syntax error\n>>>> W 5: [\"m.c\" 3\n",
     {"W|P.c|0|0|W5|[\"m.c\" 3"}},
    {"BSO-196",
     kCmp,
     "Warning: main.c line 3: unused\nError 9 main.c line 4: no colon\n",
     {"W|main.c|3|1||unused"}},
    {"BSO-196", kAsm, "**** ERROR #20, LINE #12, UNDEFINED SYMBOL\n", {}},
};
// clang-format on

TEST(VendorRulesTest, EachCaseGivesItsEntries) {
  for (const Case& c : kCases) {
    EXPECT_EQ(Filter(c), c.entries) << c.filter << " " << c.op << ":\n" << c.output;
  }
}

// One diagnostic per filter and operation, read the same behind lines that
// carry each filter's delimiters in bulk or odd bytes, and without a final
// line feed.
TEST(VendorRulesTest, OddLinesBeforeADiagnosticChangeNothing) {
  using namespace std::string_literals;
  const std::string junk = "\0(\0[\0\"\0:\n\r\r\n"s + std::string(100000, '(') + "\n" +
                           std::string(100000, '[') + "\n" + std::string(100000, ':') + "\n" +
                           std::string(50000, '"') + ",1\n";
  const Case kLast[] = {
      {"Microsoft", kCmp, "a.c(3) : error C2065: x", {}},
      {"Microsoft", kLnk, "a.obj : error LNK2019: x", {}},
      {"IAR", kCmp, "\"a.c\",3  Error[Pe020]: x", {}},
      {"IAR", kAsm, "\"a.s\",3  Error[As1]: x", {}},
      {"IAR", kLnk, "Error[Li005]: x", {}},
      {"HiTech-5", kAsm, "Error   [1] a.as; 3.1 x", {}},
      {"Hitech-8051", kCmp, "a.c 3: (1) x (warning)", {}},
      {"Hitech-PIC", kLnk, "a.c 3: (1) x (warning)", {}},
      {"HiWare", kCmp, "a.c(3): ERROR C1815: x", {}},
      {"2500AD", kAsm, "***** x *****\nLine 3 in a.asm", {}},
      {"2500AD (ver. 4.0)", kCmp, "a.c Line # 3: x", {}},
      {"Avocet-8051", kAsm, "Error in line 3 of a.a51: x", {}},
      {"Avocet-11", kAsm, "Line 3 (a.s): ERROR - x", {}},
      {"Avocet-Z80", kLnk, "Error: x", {}},
      {"Introl", kAsm, "***** \"a.s\", line 3: x", {}},
      {"Intermetrics-68k", kCmp, "a.c:3:FE: x", {}},
  };
  for (const Case& c : kLast) {
    const std::vector<std::string> alone = Filter(c);
    EXPECT_EQ(alone.size(), 1u) << c.filter << " " << c.op;
    const std::string behind = junk + std::string(c.output);
    EXPECT_EQ(Filter({c.filter, c.op, behind, {}}), alone) << c.filter << " " << c.op;
  }
}

}  // namespace
}  // namespace quillon
