#include "filters/filter_table.h"

namespace quillon {
namespace {

constexpr TranslatorCapture kNone = {kSourceNone, ""};
constexpr TranslatorCapture kStdout = {kSourceStdout, ""};
constexpr TranslatorCapture kStderr = {kSourceStderr, ""};

// Order and names are what projects store in FilterName and what the
// settings dialog lists; neither may change.
constexpr FilterDescriptor kFilters[] = {
    {"No filter", kStdout, kStdout, kStdout},
    {"Keil-8051", kStdout, kStdout, kStdout},
    {"Keil-8051 (ver. 4.5)", kStdout, kStdout, kStdout},
    {"Keil-8051 (Bank)", kStdout, kStdout, kStdout},
    {"Keil-251", kStdout, kStdout, kStdout},
    {"Keil-166", kStdout, kStdout, kStdout},
    {"Softools", kStdout, kStdout, kStdout},
    {"Cosmic (err)",
     {kSourceErrorFile, "$(NOEXT).err"},
     {kSourceErrorFile, "___ASM.ERR"},
     {kSourceErrorFile, "___LINK.ERR"}},
    {"Cosmic", kStderr, kStderr, kStderr},
    {"Cosmic (old)", kStderr, kStderr, kStderr},
    {"BSO-8051", kStderr, kStderr, kStdout},
    {"BSO-166", kStderr, kStdout, kStdout},
    {"BSO-196", kStdout, kStdout, kStderr},
    {"BSO-251", kStderr, kStderr, kStdout},
    {"Tasking PowerPC", kStderr, kStderr, kStderr},
    {"Borland", kStdout, kStdout, kStdout},
    {"HiTech-5", kStdout, kStderr, kStdout},
    {"Hitech-8051", kStdout, kStderr, kStdout},
    {"Hitech-PIC", kStdout, kStderr, kStdout},
    {"HiWare", kStdout, kStdout, kStdout},
    {"IAR", kStdout, kStdout, kStdout},
    {"IAR (STDERR)", kStderr, kStderr, kStderr},
    {"2500AD", kStdout, kStdout, kStdout},
    {"2500AD (ver. 4.0)", kStdout, kStdout, kStdout},
    {"Intermetrics-68k", kStderr, kStderr, kStderr},
    {"Microchip", kNone, kNone, kNone},
    {"Microchip1", kNone, kNone, kNone},
    {"Microsoft", kStdout, kStdout, kStdout},
    {"Avocet-8051", kStderr, kStdout, kStderr},
    {"Avocet-11", kStderr, kStderr, kStderr},
    {"Avocet-Z80", kStderr, kStderr, kStderr},
    {"Introl", kStdout, kStdout, kStdout},
    // The linker writes an error file whose name the user must give.
    {"Atmel-M4", kNone, kNone, {kSourceErrorFile, ""}},
    {"National-CR16", kStderr, kStderr, kStderr},
    {"National-COP8", kNone, kStdout, kStdout},
    {"DiabData", kStderr, kStderr, kStderr},
    {"Texas Instruments", kStderr, kStderr, kStderr},
    {"GNU-CoolRISC", kStderr, kStderr, kStderr},
    {"GCC", kStderr, kStderr, kStderr},
    {"Arm", kStderr, kStderr, kStderr},
    {"Green Hills", kStderr, kStderr, kStderr},
    {"Verilog", kNone, kNone, kStdout},
};

ErrorSource Choose(const TranslatorCapture& capture, bool use_default,
                   const std::string& custom_name) {
  return {capture.source, use_default ? std::string(capture.error_file) : custom_name};
}

}  // namespace

std::span<const FilterDescriptor> FilterTable() { return kFilters; }

const FilterDescriptor* FindFilter(std::string_view name) {
  for (const FilterDescriptor& row : kFilters) {
    if (name == row.name) return &row;
  }
  return nullptr;
}

ErrorSource ChooseErrorSource(const FilterDescriptor& row, TranslatorKind translator,
                              const CFilterSelection& selection) {
  switch (translator) {
    case TranslatorCompiler:
      return Choose(row.compiler, selection.cmp_use_default_name, selection.cmp_custom_filter_name);
    case TranslatorAssembler:
      return Choose(row.assembler, selection.asm_use_default_name,
                    selection.asm_custom_filter_name);
    case TranslatorLinker:
    case TranslatorExternalMake:
      return Choose(row.linker, selection.link_use_default_name, selection.link_custom_filter_name);
  }
  return {};
}

}  // namespace quillon
