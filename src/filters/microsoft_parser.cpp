// The Microsoft family: cl, ml/ml64 and link.
//
// Compiler and assembler lines read "file(line) : error C2065: text" (older
// releases) or "file(line,column): error C2065: text" (newer ones, column
// not taken). A warning is recognised but its code is not cut out: the
// entry's text keeps "warning C4189: ..." (or, in the newer layout, the code
// field takes "warning C4068"), which is how this filter has always shown
// warnings. "fatal error" is found by the word "error" and counts as Error.
// The linker reads "object : error LNK2019: text", "LINK : warning ..." and
// "lib(member.obj) : error ..." without a line number.
#include <memory>
#include <string_view>

#include "filters/output_parser.h"

namespace quillon {
namespace {

constexpr size_t npos = std::string_view::npos;

// The first ':' with a blank before it.
size_t FindBlankColon(std::string_view line) {
  for (size_t colon = line.find(':', 1); colon != npos; colon = line.find(':', colon + 1)) {
    if (line[colon - 1] == ' ') return colon;
  }
  return npos;
}

class CMicrosoftParser : public TranslatorsAlike<COutputParser> {
 public:
  void Linker() override;

 private:
  void ParseTranslator(int kind) override;
  // From the position: the severity, then the code between the next blank
  // and colon, then the text. False when the line holds no diagnostic.
  bool ReadSeverityCodeText(int* severity, std::string_view* code, std::string_view* text);
};

void CMicrosoftParser::ParseTranslator(int kind) {
  while (ReadLine()) {
    const std::string_view file = TakeUpTo("(");
    if (failed()) continue;
    MovePosition(-1);
    const int number = NumberBetween("(", ")");
    if (number == -1) continue;
    int severity = 0;
    std::string_view code;
    std::string_view text;
    if (!ReadSeverityCodeText(&severity, &code, &text)) continue;
    AddMessage(kind, file, number, 1, severity, text, code);
  }
}

bool CMicrosoftParser::ReadSeverityCodeText(int* severity, std::string_view* code,
                                            std::string_view* text) {
  if (FindWord("error", true)) {
    *severity = CMessageTable::kError;
  } else if (Contains("warning", 0)) {
    // The position stays: the code is then looked for before the word.
    *severity = CMessageTable::kWarning;
  } else {
    return false;
  }
  MovePosition(-1);
  *code = TakeBetween(" ", ":");
  if (failed()) return false;
  *text = RestOfLine();
  return true;
}

void CMicrosoftParser::Linker() {
  while (ReadLine()) {
    std::string_view file = TakeUpTo("(");
    if (failed()) {
      // Up to " :", found by its colon: blanks are too common to search by.
      const size_t colon = FindBlankColon(line());
      if (colon == npos) continue;
      ClearFailure();
      file = line().substr(0, colon - 1);
      SetPosition(colon + 1);
    }
    MovePosition(-2);
    int severity = 0;
    std::string_view code;
    std::string_view text;
    if (!ReadSeverityCodeText(&severity, &code, &text)) continue;
    AddMessage(kLinkerMessage, file, 0, 0, severity, text, code);
  }
}

}  // namespace

std::unique_ptr<COutputParser> MakeMicrosoftParser() {
  return std::make_unique<CMicrosoftParser>();
}

}  // namespace quillon
