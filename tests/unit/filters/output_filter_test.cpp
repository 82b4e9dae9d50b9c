// The named filters, and the output filter with the GCC parser on what gcc, GNU as and GNU ld
// really print (Debian 12 tools unless said otherwise; temporary directories renamed).
#include "filters/output_filter.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "filters/filter_table.h"
#include "filters/parser_factory.h"
#include "support/fake_file_system.h"
#include "support/native_path.h"

namespace quillon {
namespace {

using namespace std::string_literals;
using Lines = std::vector<std::string>;

// Each translator's source, with its default error file in parentheses.
std::string Describe(const FilterDescriptor& row) {
  std::string out;
  for (const TranslatorCapture& capture : {row.compiler, row.assembler, row.linker}) {
    out += " " + std::to_string(capture.source);
    if (*capture.error_file != '\0') out += "(" + std::string(capture.error_file) + ")";
  }
  return out.substr(1);
}

// '*' marks the one row that names default error files.
TEST(FilterTableTest, RowsInTheirStoredOrderFoundByExactName) {
  std::string names;
  for (const FilterDescriptor& row : FilterTable()) {
    names += row.name + std::string(Describe(row).find('(') != std::string::npos ? "*|" : "|");
  }
  EXPECT_EQ(names,
            "No filter|Keil-8051|Keil-8051 (ver. 4.5)|Keil-8051 (Bank)|Keil-251|Keil-166|Softools|"
            "Cosmic (err)*|Cosmic|Cosmic (old)|BSO-8051|BSO-166|BSO-196|BSO-251|Tasking PowerPC|"
            "Borland|HiTech-5|Hitech-8051|Hitech-PIC|HiWare|IAR|IAR (STDERR)|2500AD|"
            "2500AD (ver. 4.0)|Intermetrics-68k|Microchip|Microchip1|Microsoft|Avocet-8051|"
            "Avocet-11|Avocet-Z80|Introl|Atmel-M4|National-CR16|National-COP8|DiabData|"
            "Texas Instruments|GNU-CoolRISC|GCC|Arm|Green Hills|Verilog|");
  EXPECT_EQ(FindFilter("IAR (STDERR)"), &FilterTable()[21]);
  // Load-time renaming ("IAR-8051") is not lookup's business.
  for (const char* name : {"gcc", "GCC ", "IAR-8051"}) EXPECT_EQ(FindFilter(name), nullptr);
}

TEST(FilterTableTest, SourcesAndDefaultErrorFilesPerTranslator) {
  const std::pair<const char*, const char*> rows[] = {
      {"No filter", "1 1 1"},     {"BSO-166", "2 1 1"},
      {"BSO-196", "1 1 2"},       {"Avocet-8051", "2 1 2"},
      {"Microchip", "0 0 0"},     {"Atmel-M4", "0 0 3"},
      {"National-COP8", "0 1 1"}, {"GCC", "2 2 2"},
      {"Verilog", "0 0 1"},       {"Cosmic (err)", "3($(NOEXT).err) 3(___ASM.ERR) 3(___LINK.ERR)"}};
  for (const auto& [name, sources] : rows) EXPECT_EQ(Describe(*FindFilter(name)), sources) << name;
}

TEST(ErrorSourceTest, DefaultOrCustomNamePerTranslator) {
  // The source, then the error file to read.
  auto chosen = [](const char* filter, TranslatorKind kind, const CFilterSelection& selection) {
    const ErrorSource source = ChooseErrorSource(*FindFilter(filter), kind, selection);
    return std::to_string(source.source) + (source.has_error_file() ? " " + source.error_file : "");
  };
  CFilterSelection s;
  EXPECT_EQ(chosen("Cosmic (err)", TranslatorCompiler, s), "3 $(NOEXT).err");
  EXPECT_EQ(chosen("Cosmic (err)", TranslatorAssembler, s), "3 ___ASM.ERR");
  EXPECT_EQ(chosen("Cosmic (err)", TranslatorLinker, s), "3 ___LINK.ERR");
  EXPECT_EQ(chosen("Cosmic (err)", TranslatorExternalMake, s), "3 ___LINK.ERR");  // as the linker
  EXPECT_EQ(chosen("Atmel-M4", TranslatorLinker, s), "3");  // no default: only a custom name
  s.cmp_use_default_name = false;
  s.cmp_custom_filter_name = "$(NOEXT).lst";
  s.asm_custom_filter_name = "ignored.err";  // its use-default flag is still set
  s.link_use_default_name = false;
  EXPECT_EQ(chosen("Cosmic (err)", TranslatorCompiler, s), "3 $(NOEXT).lst");
  EXPECT_EQ(chosen("Cosmic (err)", TranslatorAssembler, s), "3 ___ASM.ERR");
  EXPECT_EQ(chosen("Cosmic (err)", TranslatorExternalMake, s), "3");  // the custom name is empty
  s.link_custom_filter_name = "$(TARGET).err";
  EXPECT_EQ(chosen("Atmel-M4", TranslatorLinker, s), "3 $(TARGET).err");
  EXPECT_EQ(chosen("GCC", TranslatorCompiler, s), "2");  // a captured stream has no file
  EXPECT_EQ(chosen("Atmel-M4", static_cast<TranslatorKind>(8), s), "0");
}

TEST(ParserFactoryTest, EveryRegisteredNameIsARowAndMakesAParser) {
  for (std::string_view name : ParserFilterNames()) {
    EXPECT_NE(FindFilter(name), nullptr) << name;
    EXPECT_NE(MakeParser(name), nullptr) << name;
  }
}

// Each entry as "file:line:column S text [code]", S the severity's initial.
Lines Shown(const std::vector<MessageEntry>& entries, int kind) {
  Lines out;
  for (const MessageEntry& e : entries) {
    EXPECT_EQ(e.kind, kind) << e.text;
    const char severity = e.severity >= 0 && e.severity <= 2 ? "EWF"[e.severity] : '?';
    out.push_back(e.file + ":" + std::to_string(e.line) + ":" + std::to_string(e.column) + " " +
                  severity + " " + e.text + (e.code.empty() ? "" : " [" + e.code + "]"));
  }
  return out;
}

// Also the table's output sink.
class FilterTest : public ::testing::Test, public OutputSink {
 protected:
  FilterTest() { table_.SetOutputSink(this); }
  void Output(int channel, int /*action*/, const std::string& text) override {
    output_.push_back(std::to_string(channel) + " " + text);
  }

  std::string Capture(const std::string& contents) {
    fs_.Create(Rooted("/build/capture.txt"), contents);
    return Rooted("/build/capture.txt");
  }
  // What the filter finds in the captured output of a translator of `kind`.
  Lines Run(int kind, const std::string& output, const std::string& filter = "GCC") {
    COutputFilter f(filter, fs_, sink_, table_);
    const std::string captured = Capture(output);
    EXPECT_TRUE(kind == kLinkerMessage      ? f.FilterLinkerOutput(captured)
                : kind == kAssemblerMessage ? f.FilterAssemblerOutput(Rooted("/a.s"), captured)
                                            : f.FilterCompilerOutput(Rooted("/a.c"), captured));
    const Lines shown = Shown(sink_.entries, kind);
    sink_.entries.clear();
    return shown;
  }

  FakeFileSystem fs_;
  CollectingSink sink_;
  CMessageTable table_;
  Lines output_;
};

// The rules on made-up lines; real output is in the vendor samples.
TEST_F(FilterTest, GccCompiler) {
  const std::string output =
      "bad.c:5: warning: unused variable 'p'\r\n"
      "bad.c:7: error: expected expression\r\n"
      "bad.c:10: note: declared here\r\n"
      "bad.c:11: WARNING\r\n"
      "bad.c:12:warning:tight\r\n"
      "In file included from main.c:3:\r\n"  // of the file-and-number shape
      "a.c:-1: error: no line\n"             // -1 means none
      "a:1: error: x\n"                      // no colon from index 3 on before "1"
      "ab\n"
      "a.c: error: no number at all\n"
      "C:\\\\src\\\\a.c:12: error: x\n"
      "C:\\src\\a.c:13: warning: y\n"
      "/scratch/diag//armok.c:7: error: z\n"
      "a.c:2: error: x\0y\n\0\0:\0:\n"  // NUL and a lone CR are line content
      "a.c:3: error: lone\rCR\r\r\n"
      "src/sub/a.c:1: error: w\r"s;  // '/' stays on POSIX; a last line needs no LF
  EXPECT_EQ(Run(kCompilerMessage, output),
            (Lines{"bad.c:5:1 W unused variable 'p'", "bad.c:7:1 E expected expression",
                   "bad.c:10:1 E note: declared here", "bad.c:11:1 W ", "bad.c:12:1 W tight",
                   "In file included from main.c:3:1 E ", Native("C:/src/a.c") + ":12:1 E x",
                   Native("C:/src/a.c") + ":13:1 W y", Native("/scratch/diag/armok.c") + ":7:1 E z",
                   "a.c:2:1 E x\0y"s, "a.c:3:1 E lone\rCR\r", Native("src/sub/a.c") + ":1:1 E w"}));
  EXPECT_EQ(Run(kCompilerMessage, ""), Lines{});
}

TEST_F(FilterTest, GccLinker) {
  const std::string output =
      "/usr/bin/ld: /scratch/ccv7h2B2.o:(.data+0x0): multiple definition of `dup'; "
      "/scratch/ccl1obUo.o:(.data+0x0): first defined here\n"
      "collect2: error: ld returned 1 exit status\n"
      // arm-none-eabi-ld 2.40 run directly.
      "arm-none-eabi-ld: region `FLASH' overflowed by 83636 bytes\n"
      "arm-none-eabi-ld: armok.o: in function `main':\n"
      "/scratch/diag/armok.c:5: undefined reference to `missing_fn'\n"
      "/scratch/ccPTDguw.o: In function `main':\n"  // binutils 2.26
      // MinGW: the object, then the source.
      "C:/mingw/bin/../lib/gcc/x86_64-w64-mingw32/12/../../../../x86_64-w64-mingw32/bin/"
      "ld.exe: C:\\Users\\me\\Temp\\ccX.o:main.c:(.text+0x9): undefined reference to `foo'\n"
      // Markers decide the severity.
      "/usr/bin/ld: warning: x.o: missing .note.GNU-stack section implies executable stack\n"
      "/usr/bin/ld: NOTE: This behaviour is deprecated and will be removed in a future version\n"
      "ld: cannot find -lfoo: No such file or directory\n"
      "main.c:(.text+0x5): undefined reference to `foo'\n"
      "main.o(.text+0x9): undefined reference to `bar'\n"
      "/usr/bin/ld: a.o: warning: relocation in read-only section `.text'\n"
      "gcc: error: nosuch.o: No such file or directory\n"
      "util.c:4:3: error: from a source given to the link\n"
      "make: *** [Makefile:3: app] Error 1\n"
      "FLASH:        1024 B        16 KB      6.25%\n";
  EXPECT_EQ(Run(kLinkerMessage, output),
            (Lines{Native("/scratch/ccv7h2B2.o") +
                       ":0:0 E multiple definition of `dup'; /scratch/ccl1obUo.o:(.data+0x0): "
                       "first defined here",
                   ":0:0 E region `FLASH' overflowed by 83636 bytes",
                   Native("/scratch/diag/armok.c") + ":5:0 E undefined reference to `missing_fn'",
                   "main.c:0:0 E undefined reference to `foo'",
                   ":0:0 W x.o: missing .note.GNU-stack section implies executable stack",
                   ":0:0 E cannot find -lfoo: No such file or directory",
                   "main.c:0:0 E undefined reference to `foo'",
                   "main.o:0:0 E undefined reference to `bar'",
                   "a.o:0:0 W relocation in read-only section `.text'",
                   ":0:0 E nosuch.o: No such file or directory",
                   "util.c:4:3 E from a source given to the link"}));
  // collect2's summary counts only when alone.
  EXPECT_EQ(Run(kLinkerMessage, "collect2: error: ld returned 1 exit status\n\r\n"),
            Lines{":0:0 E ld returned 1 exit status"});
  EXPECT_EQ(Run(kLinkerMessage, "collect2: fatal error: ld terminated with signal 9 [Killed]\n"),
            Lines{":0:0 F ld terminated with signal 9 [Killed]"});
}

// avr-as 2.26, captured on the real disk (mapped, not copied) with CR LF and no last one.
TEST_F(FilterTest, GnuAsFromARealFile) {
  const std::string captured = NormalizePath(::testing::TempDir() + "quillon_avr_as.txt");
  std::ofstream(captured, std::ios::binary)
      << "avr.s: Assembler messages:\r\navr.s:4: Error: register number above 15 required\r\n"
         "avr.s:5: Warning: constant out of 8-bit range: 300";
  COutputFilter filter("GCC", FileSystem::Default(), sink_, table_);
  EXPECT_TRUE(filter.FilterAssemblerOutput(Rooted("/src/avr.s"), captured));
  std::filesystem::remove(captured);
  EXPECT_EQ(Shown(sink_.entries, kAssemblerMessage),
            (Lines{"avr.s:4:1 E register number above 15 required",
                   "avr.s:5:1 W constant out of 8-bit range: 300"}));
}

TEST_F(FilterTest, NoFilterReadsNothingAndNamesWithoutAParserAddNothing) {
  const std::string output =
      "bad.c:5: warning: unused variable 'p'\ncollect2: error: ld returned 1 exit status\n";
  const int kinds[] = {kCompilerMessage, kAssemblerMessage, kLinkerMessage};
  for (int kind : kinds) EXPECT_EQ(Run(kind, output, "No filter"), Lines{});
  EXPECT_TRUE(fs_.files_mapped().empty() && fs_.files_read().empty());
  for (const char* name : {"Microchip", "Microchip1", "gcc", "No Filter", ""}) {
    for (int kind : kinds) EXPECT_EQ(Run(kind, output, name), Lines{}) << name;
  }
  EXPECT_TRUE(output_.empty());
}

TEST_F(FilterTest, AnUnreadableCaptureIsReportedOnlyWhenAsked) {
  Capture("made so that the directory exists");
  COutputFilter filter("GCC", fs_, sink_, table_);
  const std::string missing = Rooted("/build/none.txt");
  EXPECT_TRUE(filter.FilterCompilerOutput(Rooted("/src/a.c"), missing));
  EXPECT_TRUE(filter.FilterLinkerOutput(Rooted("/build")));  // a directory
  std::unique_ptr<COutputParser> parser = MakeParser("GCC");
  parser->set_captured_file(missing);
  EXPECT_FALSE(filter.Run(*parser, kCompilerMessage, false));
  EXPECT_TRUE(output_.empty());
  EXPECT_FALSE(filter.Run(*parser, kLinkerMessage, true));
  EXPECT_EQ(output_, Lines{"0 Error [PM0]: Can't open error output file \"" + missing +
                           "\" (No such file or directory). Error list will not be avaible."});
  parser->set_captured_file(Capture("a.s:3: Error: bad\n"));
  EXPECT_FALSE(filter.Run(*parser, kScannerMessage, true));  // no operation for that kind
  EXPECT_TRUE(sink_.entries.empty());
}

TEST_F(FilterTest, TheTableCountsEntriesAndFatalAsAnError) {
  MessageTableSink table_sink(table_);
  COutputFilter filter("GCC", fs_, table_sink, table_);
  const std::string file = Rooted("/src/bad.c");
  EXPECT_TRUE(filter.FilterCompilerOutput(
      file, Capture("bad.c:5: warning: unused variable 'p'\n"
                    "bad.c:7:1: error: expected expression before '}' token\n")));
  EXPECT_TRUE(filter.FilterLinkerOutput(
      Capture("collect2: fatal error: ld terminated with signal 9 [Killed]\n")));
  EXPECT_EQ(table_.current_file(), file);  // the link names no project file
  table_sink.AddMessage({kCompilerMessage, "x.c", 3, 4, CMessageTable::kFatal, "boom", "F1"});
  // GCC names the file as it was given; the table shows the project's path.
  EXPECT_EQ(output_,
            (Lines{"0 " + file + " (5,1) : Warning : unused variable 'p'",
                   "0 " + file + " (7,1) : Error : 1: error: expected expression before '}' token",
                   "0  (0,0) : Fatal : ld terminated with signal 9 [Killed]",
                   "0 x.c (3,4) : Fatal[F1] : boom"}));
  EXPECT_EQ(table_.error_count(), 3);
  EXPECT_EQ(table_.warning_count(), 1);
}

}  // namespace
}  // namespace quillon
