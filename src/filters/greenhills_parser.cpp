// Green Hills MULTI: the EDG-based compiler drivers (ccarm, ccppc,
// ccrh850, ...), the assemblers (asarm, asppc, ...) and the elxr linker.
//
//   "tx_thread_create.c", line 276: error #20: identifier
//             "__IPSR" is undefined             (wrapped, 10 blanks)
//   "start.c", line 12: warning: text           (without message numbers)
//   [asarm] (error #123) start.s 44: unknown opcode
//   [elxr] (error #16) cannot find file cr
//   [elxr] (assertion) internal consistency check failed
#include <memory>
#include <string>
#include <string_view>

#include "filters/parser_helpers.h"

namespace quillon {
namespace {

constexpr size_t npos = std::string_view::npos;
constexpr size_t kWrapIndent = 10;

constexpr SeverityMarker kParenMarkers[] = {
    {"(error", CMessageTable::kError},
    {"(warning", CMessageTable::kWarning},
    {"(fatal", CMessageTable::kFatal},
    {"(assertion", CMessageTable::kFatal},
};

// "(error)", "(error #16)", "(warning #1)", "(assertion)" anywhere in the
// line (a shell may have echoed the command in front of it).
struct Paren {
  size_t at = 0;
  int severity = CMessageTable::kError;
  std::string_view code;
  std::string_view rest;  // behind the closing parenthesis
};
bool FindParen(std::string_view text, Paren* paren) {
  size_t best = npos;
  Paren found;
  for (const SeverityMarker& marker : kParenMarkers) {
    const size_t at = text.find(marker.word);
    if (at == npos || at >= best) continue;
    std::string_view after = text.substr(at + marker.word.size());
    std::string_view code;
    if (!after.empty() && after.front() == ' ') {
      after = SkipBlanks(after);
      if (after.empty() || after.front() != '#') continue;
      const size_t close = after.find(')');
      if (close == npos) continue;
      code = TrimBlanks(after.substr(1, close - 1));
      after.remove_prefix(close);
    }
    if (after.empty() || after.front() != ')') continue;
    best = at;
    found = {at, marker.severity, code, SkipBlanks(after.substr(1))};
  }
  if (best == npos) return false;
  *paren = found;
  return true;
}

// "start.s 44: text" behind an assembler's parenthesis.
bool ReadFileAndLine(std::string_view text, std::string_view* file, int* line,
                     std::string_view* rest) {
  const size_t blank = text.find(' ');
  if (blank == npos || blank == 0) return false;
  std::string_view after = text.substr(blank + 1);
  int number = 0;
  if (!ReadNumber(&after, &number) || after.empty() || after.front() != ':') return false;
  *file = text.substr(0, blank);
  *line = number;
  *rest = SkipBlanks(after.substr(1));
  return true;
}

bool IsIndentedDetail(std::string_view text) {
  return IndentOf(text) > 0 && !TrimBlanks(text).empty();
}

class CGreenHillsParser : public TranslatorsAlike<CContinuedParser> {
 public:
  void Linker() override;

 private:
  void ParseTranslator(int kind) override;
  bool ParseEdgLine(int kind);
};

// The compiler's own messages and, as the driver runs the assembler, the
// assembler's; the assembler alone prints only the second kind.
void CGreenHillsParser::ParseTranslator(int kind) {
  while (ReadLine()) {
    if (ParseEdgLine(kind)) continue;
    // Only behind the tool's name: a source line echoed under a compiler
    // message may well hold "(error)".
    Paren paren;
    if (!FindParen(line(), &paren) || paren.at < 2 || line().substr(paren.at - 2, 2) != "] ") {
      continue;
    }
    std::string_view file;
    int number = 0;
    std::string_view text = paren.rest;
    if (ReadFileAndLine(paren.rest, &file, &number, &text)) {
      AddMessage(kind, file, number, 1, paren.severity, text, paren.code);
    } else {
      AddMessage(kind, "", 0, 0, paren.severity, text, paren.code);
    }
  }
}

bool CGreenHillsParser::ParseEdgLine(int kind) {
  QuotedPlace place;
  if (!ReadQuotedPlace(line(), &place)) return false;
  std::string_view rest = place.rest;
  int severity = CMessageTable::kError;
  if (!ReadSeverityWord(&rest, &severity)) return false;
  if (severity == kSkippedSeverity) return true;
  const std::string_view code = ReadHashCode(&rest);
  std::string text(rest);
  AppendWrappedLines(&text, kWrapIndent);
  AddMessage(kind, place.file, place.line, 1, severity, text, code);
  return true;
}

// elxr lists what a message is about (unresolved symbols and where they
// are used) on indented lines below it.
void CGreenHillsParser::Linker() {
  while (ReadLine()) {
    Paren paren;
    if (!FindParen(line(), &paren)) continue;
    std::string text(paren.rest);
    AppendContinuation(&text, IsIndentedDetail);
    AddMessage(kLinkerMessage, "", 0, 0, paren.severity, text, paren.code);
  }
}

}  // namespace

std::unique_ptr<COutputParser> MakeGreenHillsParser() {
  return std::make_unique<CGreenHillsParser>();
}

}  // namespace quillon
