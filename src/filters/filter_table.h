// The named output filters, in the order the settings dialog lists them, and
// where each translator's diagnostics come from under a filter.
//
// The table is constant data: no object is built for it at load time.
#ifndef QUILLON_FILTERS_FILTER_TABLE_H
#define QUILLON_FILTERS_FILTER_TABLE_H

#include <span>
#include <string>
#include <string_view>

#include "model/file_options.h"
#include "quillon/quillon.h"

namespace quillon {

// Where a translator's diagnostics are read from.
enum DiagnosticSource : int {
  kSourceNone = 0,       // nothing is captured
  kSourceStdout = 1,     // the translator's standard output
  kSourceStderr = 2,     // its standard error
  kSourceErrorFile = 3,  // a file the translator writes itself
};

struct TranslatorCapture {
  int source;
  // Default error-file name, possibly holding macros ("$(NOEXT).err"); "" for
  // none.
  const char* error_file;
};

struct FilterDescriptor {
  const char* name;
  TranslatorCapture compiler;
  TranslatorCapture assembler;
  TranslatorCapture linker;
};

// All 42 rows, in their fixed order.
std::span<const FilterDescriptor> FilterTable();

// The row named exactly `name` (case counts); null when there is none.
const FilterDescriptor* FindFilter(std::string_view name);

// What the make driver needs to read a translator's diagnostics.
struct ErrorSource {
  int source = kSourceNone;
  // Unexpanded; the driver expands macros. Meaningful for kSourceErrorFile,
  // where an empty name means there is no error file to read.
  std::string error_file;

  bool has_error_file() const { return source == kSourceErrorFile && !error_file.empty(); }
};

// The source of `translator` under `row`, and its error-file name: the row's
// default when the project's use-default flag for that translator is set,
// else the project's custom name. External make reads like the linker; any
// other kind captures nothing.
ErrorSource ChooseErrorSource(const FilterDescriptor& row, TranslatorKind translator,
                              const CFilterSelection& selection);

}  // namespace quillon

#endif  // QUILLON_FILTERS_FILTER_TABLE_H
