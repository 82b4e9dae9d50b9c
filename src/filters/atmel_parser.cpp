// Atmel-M4: only the linker's error file is read; the compiler and the
// assembler leave nothing to it.
//
//   %Error: undefined symbol 'timer_init' in module main
//   %Error-MEMFULL: segment CODE does not fit in ROM
#include <memory>
#include <string_view>

#include "filters/parser_helpers.h"

namespace quillon {
namespace {

class CAtmelParser : public COutputParser {
 public:
  void Linker() override;
};

void CAtmelParser::Linker() {
  constexpr std::string_view kMarker = "%Error";
  while (ReadLine()) {
    std::string_view text = SkipBlanks(line());
    if (text.substr(0, kMarker.size()) != kMarker) continue;
    text.remove_prefix(kMarker.size());
    std::string_view code;
    if (!text.empty() && text.front() == '-') {
      const size_t colon = text.find(':');
      if (colon == std::string_view::npos) continue;
      code = text.substr(1, colon - 1);
      text.remove_prefix(colon);
    }
    text = SkipBlanks(text);
    if (!text.empty() && text.front() == ':') text.remove_prefix(1);
    AddMessage(kLinkerMessage, "", 0, 0, CMessageTable::kError, text, code);
  }
}

}  // namespace

std::unique_ptr<COutputParser> MakeAtmelParser() { return std::make_unique<CAtmelParser>(); }

}  // namespace quillon
