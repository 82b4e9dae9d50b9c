// Which scan style a project file gets, from its extension.
#ifndef QUILLON_DEPS_SCAN_STYLE_H
#define QUILLON_DEPS_SCAN_STYLE_H

#include <string_view>

#include "deps/scan_request.h"

namespace quillon {

// The lists are ";"-separated extensions without dots ("C;CPP"), compared
// ignoring case. A compiler source with extension "V" is Verilog; the
// compiler list wins over the assembler list.
ScanStyle ChooseScanStyle(std::string_view file, std::string_view compiler_extensions,
                          std::string_view assembler_extensions);

}  // namespace quillon

#endif  // QUILLON_DEPS_SCAN_STYLE_H
