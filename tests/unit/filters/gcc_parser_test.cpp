// The GCC filter on what gcc, GNU as and GNU ld really print (Debian 12
// tools unless said otherwise); only the temporary directories are renamed.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "unit/filters/filter_test_support.h"

namespace quillon {
namespace {

using Entries = std::vector<MessageEntry>;

constexpr int kError = CMessageTable::kError;
constexpr int kWarning = CMessageTable::kWarning;
constexpr int kFatal = CMessageTable::kFatal;

MessageEntry Cmp(const std::string& file, int line, int severity, const std::string& text) {
  return {kCompilerMessage, file, line, 1, severity, text, ""};
}

MessageEntry Lnk(const std::string& file, int line, int severity, const std::string& text,
                 int column = 0) {
  return {kLinkerMessage, file, line, column, severity, text, ""};
}

// gcc -Wall -c bad.c, C locale.
constexpr const char* kGccWithColumns = R"(bad.c: In function 'f':
bad.c:5:15: warning: initialization of 'char *' from 'int' makes pointer from integer without a cast [-Wint-conversion]
    5 |     char *p = 5;
      |               ^
bad.c:7:1: error: expected expression before '}' token
    7 | }
      | ^
bad.c:5:11: warning: unused variable 'p' [-Wunused-variable]
    5 |     char *p = 5;
      |           ^
bad.c:4:9: warning: unused variable 'unused' [-Wunused-variable]
    4 |     int unused;
      |         ^~~~~~
bad.c: In function 'main':
bad.c:10:5: error: 'undeclared_var' undeclared (first use in this function)
   10 |     undeclared_var = 3;
      |     ^~~~~~~~~~~~~~
bad.c:10:5: note: each undeclared identifier is reported only once for each function it appears in
bad.c:11:5: warning: implicit declaration of function 'g' [-Wimplicit-function-declaration]
   11 |     g();
      |     ^
bad.c: In function 'f':
bad.c:7:1: warning: control reaches end of non-void function [-Wreturn-type]
    7 | }
      | ^
)";

using GccCompilerTest = FilterTest;

// The column stays at the head of the text, and the line is an error
// whatever word follows; context, excerpt and caret lines add nothing.
TEST_F(GccCompilerTest, ColumnNumbersMakeErrors) {
  const Entries expected = {
      Cmp("bad.c", 5, kError,
          "15: warning: initialization of 'char *' from 'int' makes pointer from integer "
          "without a cast [-Wint-conversion]"),
      Cmp("bad.c", 7, kError, "1: error: expected expression before '}' token"),
      Cmp("bad.c", 5, kError, "11: warning: unused variable 'p' [-Wunused-variable]"),
      Cmp("bad.c", 4, kError, "9: warning: unused variable 'unused' [-Wunused-variable]"),
      Cmp("bad.c", 10, kError,
          "5: error: 'undeclared_var' undeclared (first use in this function)"),
      Cmp("bad.c", 10, kError,
          "5: note: each undeclared identifier is reported only once for each function it "
          "appears in"),
      Cmp("bad.c", 11, kError,
          "5: warning: implicit declaration of function 'g' [-Wimplicit-function-declaration]"),
      Cmp("bad.c", 7, kError,
          "1: warning: control reaches end of non-void function [-Wreturn-type]"),
  };
  EXPECT_EQ(Compile("GCC", kGccWithColumns), expected);
}

TEST_F(GccCompilerTest, FatalErrorAndUtf8Quotes) {
  const Entries entries = Compile(
      "GCC",
      "inc.c:1:10: fatal error: nosuchheader.h: No such file or directory\n"
      "    1 | #include \"nosuchheader.h\"\n"
      "      |          ^~~~~~~~~~~~~~~~\n"
      "compilation terminated.\n"
      "warn.c: In function \xE2\x80\x98"
      "f\xE2\x80\x99:\n"
      "warn.c:3:9: warning: unused variable \xE2\x80\x98unused\xE2\x80\x99 [-Wunused-variable]\n");
  const Entries expected = {
      Cmp("inc.c", 1, kError, "10: fatal error: nosuchheader.h: No such file or directory"),
      Cmp("warn.c", 3, kError,
          "9: warning: unused variable \xE2\x80\x98unused\xE2\x80\x99 [-Wunused-variable]"),
  };
  EXPECT_EQ(entries, expected);
}

TEST_F(GccCompilerTest, WithoutColumnsTheWordDecides) {
  const Entries entries = Compile("GCC",
                                  "bad.c:5: warning: unused variable 'p'\r\n"
                                  "bad.c:7: error: expected expression\r\n"
                                  "bad.c:10: note: declared here\r\n"
                                  "bad.c:11: WARNING\r\n"
                                  "bad.c:12:warning:tight\r\n"
                                  "In file included from main.c:3:\r\n");
  const Entries expected = {
      Cmp("bad.c", 5, kWarning, "unused variable 'p'"),
      Cmp("bad.c", 7, kError, "expected expression"),
      Cmp("bad.c", 10, kError, "note: declared here"),
      Cmp("bad.c", 11, kWarning, ""),
      Cmp("bad.c", 12, kWarning, "tight"),
      // Context lines of the file-and-number shape are errors too.
      Cmp("In file included from main.c", 3, kError, ""),
  };
  EXPECT_EQ(entries, expected);
}

TEST_F(GccCompilerTest, LinesThatAreNotDiagnostics) {
  EXPECT_EQ(Compile("GCC",
                    "a.c:-1: error: no line\n"  // -1 means none
                    "a:1: error: x\n"           // no colon from index 3 on before "1"
                    "ab\n"
                    "a.c:x: error: not a number\n"
                    "a.c: error: no number at all\n"
                    "collect2: error: ld returned 1 exit status\n"
                    "/usr/bin/ld: cannot find -lfoo\n"
                    "\n"),
            Entries{});
}

TEST_F(GccCompilerTest, DriveLettersAndDoubledBackslashes) {
  const Entries entries = Compile("GCC",
                                  "C:\\\\src\\\\a.c:12: error: x\n"
                                  "C:\\src\\a.c:13: warning: y\n"
                                  "/scratch/diag//armok.c:7: error: z\n"
                                  "src/sub/a.c:1: error: w\n");
  const Entries expected = {
      Cmp(Native("C:/src/a.c"), 12, kError, "x"), Cmp(Native("C:/src/a.c"), 13, kWarning, "y"),
      Cmp(Native("/scratch/diag/armok.c"), 7, kError, "z"),
      Cmp(Native("src/sub/a.c"), 1, kError, "w"),  // '/' stays on POSIX
  };
  EXPECT_EQ(entries, expected);
}

using GccAssemblerTest = FilterTest;

TEST_F(GccAssemblerTest, GnuAsMessagesWithCrLf) {
  // avr-as 2.26; the captured file here has Windows line endings.
  const Entries entries = Assemble("GCC",
                                   "avr.s: Assembler messages:\r\n"
                                   "avr.s:4: Error: register number above 15 required\r\n"
                                   "avr.s:5: Warning: constant out of 8-bit range: 300\r\n"
                                   "avr.s:6: Error: unknown opcode `bogus'\r\n"
                                   "avr.s:5: Error: operand out of range: 300");
  const Entries expected = {
      {kAssemblerMessage, "avr.s", 4, 1, kError, "register number above 15 required", ""},
      {kAssemblerMessage, "avr.s", 5, 1, kWarning, "constant out of 8-bit range: 300", ""},
      {kAssemblerMessage, "avr.s", 6, 1, kError, "unknown opcode `bogus'", ""},
      {kAssemblerMessage, "avr.s", 5, 1, kError, "operand out of range: 300", ""},
  };
  EXPECT_EQ(entries, expected);
}

using GccLinkerTest = FilterTest;

TEST_F(GccLinkerTest, MultipleDefinitionThroughCollect2) {
  const Entries entries =
      Link("GCC",
           "/usr/bin/ld: /scratch/ccv7h2B2.o:(.data+0x0): multiple definition of "
           "`dup'; /scratch/ccl1obUo.o:(.data+0x0): first defined here\n"
           "collect2: error: ld returned 1 exit status\n");
  const Entries expected = {
      Lnk(Native("/scratch/ccv7h2B2.o"), 0, kError,
          "multiple definition of `dup'; /scratch/ccl1obUo.o:(.data+0x0): first defined here"),
  };
  EXPECT_EQ(entries, expected);
}

TEST_F(GccLinkerTest, CrossLinkerRegionsAndUndefinedReference) {
  // arm-none-eabi-ld 2.40 run directly.
  const Entries entries =
      Link("GCC",
           "arm-none-eabi-ld: armok.elf section `.data' will not fit in region `RAM'\n"
           "arm-none-eabi-ld: region `FLASH' overflowed by 83636 bytes\n"
           "arm-none-eabi-ld: armok.o: in function `main':\n"
           "/scratch/diag/armok.c:5: undefined reference to `missing_fn'\n");
  const Entries expected = {
      Lnk("", 0, kError, "armok.elf section `.data' will not fit in region `RAM'"),
      Lnk("", 0, kError, "region `FLASH' overflowed by 83636 bytes"),
      Lnk(Native("/scratch/diag/armok.c"), 5, kError, "undefined reference to `missing_fn'"),
  };
  EXPECT_EQ(entries, expected);
}

TEST_F(GccLinkerTest, OlderBinutilsContextLine) {
  // avr-gcc 5.4 with binutils 2.26.
  const Entries entries = Link("GCC",
                               "/scratch/ccPTDguw.o: In function `main':\n"
                               "/scratch/diag/avrlink.c:2: undefined reference to `nothere'\n"
                               "collect2: error: ld returned 1 exit status\n");
  EXPECT_EQ(entries, (Entries{Lnk(Native("/scratch/diag/avrlink.c"), 2, kError,
                                  "undefined reference to `nothere'")}));
}

TEST_F(GccLinkerTest, MarkersDecideTheSeverity) {
  const Entries entries = Link(
      "GCC",
      "/usr/bin/ld: warning: x.o: missing .note.GNU-stack section implies executable stack\n"
      "/usr/bin/ld: NOTE: This behaviour is deprecated and will be removed in a future version\n"
      "ld: cannot find -lfoo: No such file or directory\n"
      "main.c:(.text+0x5): undefined reference to `foo'\n"
      "main.o(.text+0x9): undefined reference to `bar'\n"
      "/usr/bin/ld: a.o: warning: relocation in read-only section `.text'\n"
      "gcc: error: nosuch.o: No such file or directory\n"
      "util.c:4:3: error: from a source given to the link\n"
      "make: *** [Makefile:3: app] Error 1\n"
      "FLASH:        1024 B        16 KB      6.25%\n");
  const Entries expected = {
      Lnk("", 0, kWarning, "x.o: missing .note.GNU-stack section implies executable stack"),
      Lnk("", 0, kError, "cannot find -lfoo: No such file or directory"),
      Lnk("main.c", 0, kError, "undefined reference to `foo'"),
      Lnk("main.o", 0, kError, "undefined reference to `bar'"),
      Lnk("a.o", 0, kWarning, "relocation in read-only section `.text'"),
      Lnk("", 0, kError, "nosuch.o: No such file or directory"),
      Lnk("util.c", 4, kError, "from a source given to the link", 3),
  };
  EXPECT_EQ(entries, expected);
}

TEST_F(GccLinkerTest, MinGwPathsAndObjectThenSource) {
  const Entries entries =
      Link("GCC",
           "C:/mingw/bin/../lib/gcc/x86_64-w64-mingw32/12/../../../../x86_64-w64-mingw32/bin/"
           "ld.exe: C:\\Users\\me\\Temp\\ccX.o:main.c:(.text+0x9): undefined reference to `foo'\n"
           "collect2.exe: error: ld returned 1 exit status\n");
  EXPECT_EQ(entries, (Entries{Lnk("main.c", 0, kError, "undefined reference to `foo'")}));
}

TEST_F(GccLinkerTest, Collect2SummaryCountsOnlyWhenAlone) {
  EXPECT_EQ(Link("GCC", "collect2: error: ld returned 1 exit status\n"),
            (Entries{Lnk("", 0, kError, "ld returned 1 exit status")}));
  sink_.entries.clear();
  EXPECT_EQ(Link("GCC", "collect2: fatal error: ld terminated with signal 9 [Killed]\n"),
            (Entries{Lnk("", 0, kFatal, "ld terminated with signal 9 [Killed]")}));
}

}  // namespace
}  // namespace quillon
