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
    {"IAR", kCmp, "\"a.c\",3  Error[Pe020]: x\r\n          wrapped\r\n",
     {"E|a.c|3|1|Pe020|x\nwrapped"}},
    // Blocks one after the other, a message without code, no final line feed.
    {"Keil-8051",
     kLnk,
     "*** ERROR: ADDRESS OUTSIDE INTEL-HEX RANGE\n*** FATAL ERROR 206: INVALID CONSTANT\n"
     "*** WARNING L16: UNCALLED SEGMENT\n    SEGMENT: ?PR?F?MAIN\n"
     "*** WARNING L16: UNCALLED SEGMENT\n    SEGMENT: ?PR?G?MAIN",
     {"E||0|0||ADDRESS OUTSIDE INTEL-HEX RANGE", "F||0|0|206|INVALID CONSTANT",
      "W||0|0|L16|UNCALLED SEGMENT\nSEGMENT: ?PR?F?MAIN",
      "W||0|0|L16|UNCALLED SEGMENT\nSEGMENT: ?PR?G?MAIN"}},
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
