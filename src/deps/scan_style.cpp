#include "deps/scan_style.h"

#include <string>

#include "platform/path.h"

namespace quillon {

ScanStyle ChooseScanStyle(std::string_view file, std::string_view compiler_extensions,
                          std::string_view assembler_extensions) {
  const std::string extension = ExtOfFile(file);
  if (ExtensionInList(extension, compiler_extensions)) {
    return EqualsNoCase(extension, "V") ? ScanStyle::kVerilog : ScanStyle::kC;
  }
  if (ExtensionInList(extension, assembler_extensions)) return ScanStyle::kKeyword;
  return ScanStyle::kNone;
}

}  // namespace quillon
