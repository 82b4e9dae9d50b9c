#include "filters/filter_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "filters/parser_factory.h"

namespace quillon {
namespace {

TEST(FilterTableTest, RowsInTheirStoredOrder) {
  const std::vector<std::string> expected = {"No filter",
                                             "Keil-8051",
                                             "Keil-8051 (ver. 4.5)",
                                             "Keil-8051 (Bank)",
                                             "Keil-251",
                                             "Keil-166",
                                             "Softools",
                                             "Cosmic (err)",
                                             "Cosmic",
                                             "Cosmic (old)",
                                             "BSO-8051",
                                             "BSO-166",
                                             "BSO-196",
                                             "BSO-251",
                                             "Tasking PowerPC",
                                             "Borland",
                                             "HiTech-5",
                                             "Hitech-8051",
                                             "Hitech-PIC",
                                             "HiWare",
                                             "IAR",
                                             "IAR (STDERR)",
                                             "2500AD",
                                             "2500AD (ver. 4.0)",
                                             "Intermetrics-68k",
                                             "Microchip",
                                             "Microchip1",
                                             "Microsoft",
                                             "Avocet-8051",
                                             "Avocet-11",
                                             "Avocet-Z80",
                                             "Introl",
                                             "Atmel-M4",
                                             "National-CR16",
                                             "National-COP8",
                                             "DiabData",
                                             "Texas Instruments",
                                             "GNU-CoolRISC",
                                             "GCC",
                                             "Arm",
                                             "Green Hills",
                                             "Verilog"};
  std::vector<std::string> names;
  for (const FilterDescriptor& row : FilterTable()) names.push_back(row.name);
  EXPECT_EQ(names, expected);
  EXPECT_EQ(FilterTable().size(), 42u);
}

struct Sources {
  int compiler, assembler, linker;
  bool operator==(const Sources&) const = default;
};

Sources SourcesOf(const char* name) {
  const FilterDescriptor* row = FindFilter(name);
  if (row == nullptr) return {-1, -1, -1};
  return {row->compiler.source, row->assembler.source, row->linker.source};
}

TEST(FilterTableTest, SourcesPerTranslator) {
  EXPECT_EQ(SourcesOf("No filter"), (Sources{1, 1, 1}));
  EXPECT_EQ(SourcesOf("BSO-166"), (Sources{2, 1, 1}));
  EXPECT_EQ(SourcesOf("BSO-196"), (Sources{1, 1, 2}));
  EXPECT_EQ(SourcesOf("Avocet-8051"), (Sources{2, 1, 2}));
  EXPECT_EQ(SourcesOf("Microchip"), (Sources{0, 0, 0}));
  EXPECT_EQ(SourcesOf("Atmel-M4"), (Sources{0, 0, 3}));
  EXPECT_EQ(SourcesOf("National-COP8"), (Sources{0, 1, 1}));
  EXPECT_EQ(SourcesOf("GCC"), (Sources{2, 2, 2}));
  EXPECT_EQ(SourcesOf("Verilog"), (Sources{0, 0, 1}));
}

TEST(FilterTableTest, OnlyCosmicErrNamesDefaultErrorFiles) {
  const FilterDescriptor* cosmic = FindFilter("Cosmic (err)");
  ASSERT_NE(cosmic, nullptr);
  EXPECT_STREQ(cosmic->compiler.error_file, "$(NOEXT).err");
  EXPECT_STREQ(cosmic->assembler.error_file, "___ASM.ERR");
  EXPECT_STREQ(cosmic->linker.error_file, "___LINK.ERR");
  for (const FilterDescriptor& row : FilterTable()) {
    if (row.name == std::string("Cosmic (err)")) continue;
    SCOPED_TRACE(row.name);
    EXPECT_STREQ(row.compiler.error_file, "");
    EXPECT_STREQ(row.assembler.error_file, "");
    EXPECT_STREQ(row.linker.error_file, "");
  }
}

TEST(FilterTableTest, LookupIsExact) {
  ASSERT_NE(FindFilter("IAR (STDERR)"), nullptr);
  EXPECT_STREQ(FindFilter("IAR (STDERR)")->name, "IAR (STDERR)");
  EXPECT_EQ(FindFilter("gcc"), nullptr);
  EXPECT_EQ(FindFilter("GCC "), nullptr);
  EXPECT_EQ(FindFilter("IAR-8051"), nullptr);  // load-time renaming is not lookup's business
}

TEST(ErrorSourceTest, DefaultNamesComeFromTheRow) {
  const FilterDescriptor& cosmic = *FindFilter("Cosmic (err)");
  const CFilterSelection defaults;
  const ErrorSource compiler = ChooseErrorSource(cosmic, TranslatorCompiler, defaults);
  EXPECT_EQ(compiler.source, kSourceErrorFile);
  EXPECT_EQ(compiler.error_file, "$(NOEXT).err");
  EXPECT_TRUE(compiler.has_error_file());
  EXPECT_EQ(ChooseErrorSource(cosmic, TranslatorAssembler, defaults).error_file, "___ASM.ERR");
  EXPECT_EQ(ChooseErrorSource(cosmic, TranslatorLinker, defaults).error_file, "___LINK.ERR");
  // External make is read like the linker.
  EXPECT_EQ(ChooseErrorSource(cosmic, TranslatorExternalMake, defaults).error_file, "___LINK.ERR");
}

TEST(ErrorSourceTest, CustomNamesReplaceTheDefaultPerTranslator) {
  const FilterDescriptor& cosmic = *FindFilter("Cosmic (err)");
  CFilterSelection selection;
  selection.cmp_use_default_name = false;
  selection.cmp_custom_filter_name = "$(NOEXT).lst";
  selection.asm_custom_filter_name = "ignored.err";  // its flag is still set
  selection.link_use_default_name = false;
  EXPECT_EQ(ChooseErrorSource(cosmic, TranslatorCompiler, selection).error_file, "$(NOEXT).lst");
  EXPECT_EQ(ChooseErrorSource(cosmic, TranslatorAssembler, selection).error_file, "___ASM.ERR");
  EXPECT_FALSE(ChooseErrorSource(cosmic, TranslatorExternalMake, selection).has_error_file());

  // Atmel-M4's linker has no default: only a custom name gives it a file.
  const FilterDescriptor& atmel = *FindFilter("Atmel-M4");
  EXPECT_FALSE(ChooseErrorSource(atmel, TranslatorLinker, CFilterSelection()).has_error_file());
  selection.link_custom_filter_name = "$(TARGET).err";
  const ErrorSource linker = ChooseErrorSource(atmel, TranslatorLinker, selection);
  EXPECT_TRUE(linker.has_error_file());
  EXPECT_EQ(linker.error_file, "$(TARGET).err");

  // Captured streams have no error file, whatever the name says.
  const ErrorSource gcc = ChooseErrorSource(*FindFilter("GCC"), TranslatorCompiler, selection);
  EXPECT_EQ(gcc.source, kSourceStderr);
  EXPECT_FALSE(gcc.has_error_file());
  EXPECT_EQ(ChooseErrorSource(atmel, static_cast<TranslatorKind>(8), selection).source,
            kSourceNone);
}

TEST(ParserFactoryTest, EveryRegisteredNameIsARowAndMakesAParser) {
  const std::vector<std::string_view> registered = ParserFilterNames();
  EXPECT_FALSE(registered.empty());
  for (std::string_view name : registered) {
    EXPECT_NE(FindFilter(name), nullptr) << name;
  }
  for (const FilterDescriptor& row : FilterTable()) {
    const bool has_parser =
        std::find(registered.begin(), registered.end(), row.name) != registered.end();
    EXPECT_EQ(MakeParser(row.name) != nullptr, has_parser) << row.name;
  }
  EXPECT_NE(MakeParser("GCC"), nullptr);
  EXPECT_EQ(MakeParser("gcc"), nullptr);
  EXPECT_EQ(MakeParser("Microchip"), nullptr);
}

}  // namespace
}  // namespace quillon
