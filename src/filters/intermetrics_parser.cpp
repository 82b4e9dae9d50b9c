// The Intermetrics 68000 family: the C compiler's front end, the assembler
// and the linker, as "Intermetrics-68k".
//
// Compiler and assembler messages put file and line first, then the tool
// that speaks (FE the C front end, AS the assembler); a compiler warning
// opens its text with "(Warning)":
//   main.c:12:FE: undefined identifier "count"
//   main.c:20:FE: (Warning) variable "x" is never used
//   start.s:34:AS: undefined symbol "reset"
// The linker writes "Error: text" or "Warning: text" without a place.
#include <memory>
#include <string_view>

#include "filters/output_parser.h"
#include "filters/text_scan.h"
#include "platform/path.h"

namespace quillon {
namespace {

constexpr size_t npos = std::string_view::npos;

class CIntermetricsParser : public COutputParser {
 public:
  void Compiler() override { Parse(kCompilerMessage, ":FE:", ":FE:"); }
  void Assembler() override { Parse(kAssemblerMessage, ":AS:", ":FE:"); }
  void Linker() override { ParseSeverityWordLines(kLinkerMessage); }

 private:
  void Parse(int kind, std::string_view tool, std::string_view other_tool);
};

// "file:line" before the tool; the last colon splits them, so that a drive
// letter stays with the file.
void CIntermetricsParser::Parse(int kind, std::string_view tool, std::string_view other_tool) {
  while (ReadLine()) {
    size_t at = line().find(tool);
    if (at == npos) at = line().find(other_tool);
    if (at == npos) continue;
    const std::string_view head = line().substr(0, at);
    const size_t colon = head.rfind(':');
    if (colon == npos) continue;
    const int number = WholeNumber(head.substr(colon + 1));
    if (number == -1) continue;
    std::string_view text = TrimBlanks(line().substr(at + tool.size()));
    int severity = CMessageTable::kError;
    if (kind == kCompilerMessage && text.find("(Warning") != npos) {
      severity = CMessageTable::kWarning;
      const size_t close = text.find(')');
      if (text.substr(0, 8) == "(Warning")
        text = close == npos ? text.substr(8) : text.substr(close + 1);
    }
    AddMessage(kind, head.substr(0, colon), number, 1, severity, text, "");
  }
}

}  // namespace

std::unique_ptr<COutputParser> MakeIntermetricsParser() {
  return std::make_unique<CIntermetricsParser>();
}

}  // namespace quillon
