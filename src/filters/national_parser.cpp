// National Semiconductor: the CompactRISC (CR16) tool set (crcc, crasm,
// crlink) and the COP8 assembler and linker (no COP8 C compiler is run).
//
//   "main.c", line 12: error: undeclared identifier "count"     (crcc)
//   main.c:20: warning: unused variable "tmp"
//   "start.s", line 34: error: undefined symbol _stack           (crasm)
//   CompactRISC Linker: error: undefined symbol _init in main.o  (crlink)
//      14 0006 9D00     LD   A,COUNTR        (COP8 listing line, then)
//   !***  E  Undefined symbol: COUNTR
//   ERROR: Undefined symbol COUNTR in module MAIN                (COP8 link)
#include <memory>
#include <string_view>

#include "filters/parser_helpers.h"

namespace quillon {
namespace {

constexpr size_t npos = std::string_view::npos;

struct Place {
  std::string_view file;
  int line = 0;
  bool located = false;
};

// The head before the severity word: '"FILE", line N: ' or 'FILE:N: '.
Place ReadHeadPlace(std::string_view head) {
  Place place;
  QuotedPlace quoted;
  if (ReadQuotedPlace(head, &quoted)) return {quoted.file, quoted.line, true};
  head = TrimBlanks(head);
  if (head.empty() || head.back() != ':') return place;
  head.remove_suffix(1);
  const size_t colon = head.rfind(':');
  if (colon == npos || colon < 1) return place;
  std::string_view digits = head.substr(colon + 1);
  int number = 0;
  if (!ReadNumber(&digits, &number) || !digits.empty()) return place;
  return {head.substr(0, colon), number, true};
}

// "crcc: " before a message about the run itself. Anything else before the
// word (a source line with an "error:" label) is no message.
bool IsToolName(std::string_view head) {
  if (IndentOf(head) > 0) return false;
  head = TrimBlanks(head);
  return head.size() >= 2 && head.back() == ':' && head.find_first_of(" \t") == npos;
}

std::string_view AfterSeverity(std::string_view text) {
  text = SkipBlanks(text);
  if (!text.empty() && text.front() == ':') text.remove_prefix(1);
  return SkipBlanks(text);
}

// The first of "error:" and "warning:" in the line.
bool FindSeverityMarker(std::string_view text, size_t* at, size_t* length, int* severity) {
  const size_t error = text.find("error:");
  const size_t warning = text.find("warning:");
  if (error == npos && warning == npos) return false;
  if (warning < error) {
    *at = warning;
    *length = 8;
    *severity = CMessageTable::kWarning;
  } else {
    *at = error;
    *length = 6;
    const std::string_view head = text.substr(0, error);
    const bool fatal = head.size() >= 6 && EqualsNoCase(head.substr(head.size() - 6), "fatal ");
    *severity = fatal ? CMessageTable::kFatal : CMessageTable::kError;
  }
  return true;
}

class CCompactRiscParser : public COutputParser {
 public:
  void Compiler() override;
  void Assembler() override;
  void Linker() override;
};

void CCompactRiscParser::Compiler() {
  while (ReadLine()) {
    size_t at = 0;
    size_t length = 0;
    int severity = CMessageTable::kError;
    if (!FindSeverityMarker(line(), &at, &length, &severity)) continue;
    std::string_view head = line().substr(0, at);
    if (severity == CMessageTable::kFatal) head.remove_suffix(6);  // "fatal "
    const Place place = ReadHeadPlace(head);
    const std::string_view text = SkipBlanks(line().substr(at + length));
    if (place.located) {
      AddMessage(kCompilerMessage, place.file, place.line, 1, severity, text, "");
    } else if (IsToolName(head)) {
      AddMessage(kCompilerMessage, "", 0, 0, severity, text, "");
    }
  }
}

// '"FILE", line N: [severity:] text' or 'FILE line N: ...': the word line
// and its number carry the place.
void CCompactRiscParser::Assembler() {
  while (ReadLine()) {
    if (!FindWord("line", false)) continue;
    const size_t marker = position() - 4;
    const int number = NumberBetween(" ", ":");
    if (number < 0) continue;
    std::string_view file = TrimBlanks(line().substr(0, marker));
    while (!file.empty() && (file.back() == ',' || file.back() == '"')) file.remove_suffix(1);
    if (!file.empty() && file.front() == '"') file.remove_prefix(1);
    std::string_view text = SkipBlanks(RestOfLine());
    int severity = CMessageTable::kError;
    if (ReadSeverityWord(&text, &severity)) {
      if (severity == kSkippedSeverity) continue;
      text = AfterSeverity(text);
    }
    AddMessage(kAssemblerMessage, file, number, 1, severity, text, "");
  }
}

void CCompactRiscParser::Linker() {
  constexpr std::string_view kMarker = "CompactRISC Linker:";
  while (ReadLine()) {
    if (!FindWord(kMarker, true)) continue;
    std::string_view text = SkipBlanks(RestOfLine());
    int severity = CMessageTable::kError;
    if (ReadSeverityWord(&text, &severity)) {
      if (severity == kSkippedSeverity) continue;
      text = AfterSeverity(text);
    }
    if (text.empty()) continue;
    AddMessage(kLinkerMessage, "", 0, 0, severity, text, "");
  }
}

// The COP8 assembler marks an error under the listing line it belongs to;
// that line opens with the source line number.
class CCop8Parser : public COutputParser {
 public:
  void Assembler() override;
  void Linker() override;
};

void CCop8Parser::Assembler() {
  constexpr std::string_view kMarker = "!***  E";
  int listed_line = 0;
  while (ReadLine()) {
    std::string_view text = line();
    if (text.substr(0, kMarker.size()) == kMarker) {
      text = SkipBlanks(text.substr(kMarker.size()));
      AddMessage(kAssemblerMessage, "", listed_line, listed_line > 0 ? 1 : 0, CMessageTable::kError,
                 text, "");
      continue;
    }
    text = SkipBlanks(text);
    int number = 0;
    if (ReadNumber(&text, &number) && !text.empty() &&
        (text.front() == ' ' || text.front() == '\t')) {
      listed_line = number;
    }
  }
}

void CCop8Parser::Linker() {
  while (ReadLine()) {
    const std::string_view text = SkipBlanks(line());
    int severity = CMessageTable::kError;
    if (text.substr(0, 6) == "ERROR:") {
      AddMessage(kLinkerMessage, "", 0, 0, severity, text.substr(6), "");
    } else if (text.substr(0, 8) == "WARNING:") {
      severity = CMessageTable::kWarning;
      AddMessage(kLinkerMessage, "", 0, 0, severity, text.substr(8), "");
    }
  }
}

}  // namespace

std::unique_ptr<COutputParser> MakeCompactRiscParser() {
  return std::make_unique<CCompactRiscParser>();
}
std::unique_ptr<COutputParser> MakeCop8Parser() { return std::make_unique<CCop8Parser>(); }

}  // namespace quillon
