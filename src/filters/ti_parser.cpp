// Texas Instruments code generation tools (cl430, cl2000, cl6x, armcl):
// the EDG-based compilers, the assembler and the linker.
//
//   "main.c", line 4: error #34: invalid line number
//             wrapped text runs on indented by 10 blanks
//   Command-line error #1965: cannot open preprocessing output file "x.pp"
//   "main.c", line 7: [E104] text               (compilers before EDG)
//   "boot.asm", ERROR!   at line 12: [E0300] Symbol foo has not been defined
//   error #10234-D: unresolved symbols remain   (linker, after its table)
//   "linker.cmd", line 31: error #10099-D: program will not fit into memory
#include <memory>
#include <string>
#include <string_view>

#include "filters/parser_helpers.h"

namespace quillon {
namespace {

constexpr size_t npos = std::string_view::npos;
constexpr size_t kWrapIndent = 10;

// The old class letters: W warning, E and I (an internal limit) error, F fatal.
int SeverityOfClass(char letter) {
  switch (letter) {
    case 'W':
      return CMessageTable::kWarning;
    case 'F':
      return CMessageTable::kFatal;
    default:
      return CMessageTable::kError;
  }
}

// "E104": a class letter and the number.
bool IsClassCode(std::string_view code) {
  if (code.size() < 2 || std::string_view("WEFI").find(code.front()) == npos) return false;
  for (char c : code.substr(1)) {
    if (c < '0' || c > '9') return false;
  }
  return true;
}

struct Diagnostic {
  int severity = CMessageTable::kError;
  std::string_view code;
  std::string_view text;
};

// What follows the place: "error #20: text", "warning: text" or the older
// "[W100] text". False for remarks and for what is no diagnostic.
bool ReadDiagnostic(std::string_view rest, Diagnostic* diagnostic) {
  Diagnostic found;
  if (!rest.empty() && rest.front() == '[') {
    const size_t close = rest.find(']');
    if (close == npos || !IsClassCode(rest.substr(1, close - 1))) return false;
    found.code = rest.substr(1, close - 1);
    found.severity = SeverityOfClass(found.code.front());
    found.text = SkipBlanks(rest.substr(close + 1));
  } else {
    if (!ReadSeverityWord(&rest, &found.severity)) return false;
    found.code = ReadHashCode(&rest);
    found.text = rest;
  }
  if (found.severity == kSkippedSeverity) return false;
  *diagnostic = found;
  return true;
}

class CTexasParser : public CContinuedParser {
 public:
  void Compiler() override;
  void Assembler() override;
  void Linker() override;

 private:
  void AddWrapped(int kind, std::string_view file, int line, int column,
                  const Diagnostic& diagnostic);
};

void CTexasParser::AddWrapped(int kind, std::string_view file, int line, int column,
                              const Diagnostic& diagnostic) {
  std::string text(diagnostic.text);
  AppendWrappedLines(&text, kWrapIndent);
  AddMessage(kind, file, line, column, diagnostic.severity, text, diagnostic.code);
}

void CTexasParser::Compiler() {
  constexpr std::string_view kCommandLine = "Command-line ";
  while (ReadLine()) {
    Diagnostic diagnostic;
    QuotedPlace place;
    if (ReadQuotedPlace(line(), &place)) {
      if (ReadDiagnostic(place.rest, &diagnostic)) {
        AddWrapped(kCompilerMessage, place.file, place.line, 1, diagnostic);
      }
    } else if (StartsWithNoCase(line(), kCommandLine) &&
               ReadDiagnostic(line().substr(kCommandLine.size()), &diagnostic)) {
      AddWrapped(kCompilerMessage, "", 0, 0, diagnostic);
    }
  }
}

// The echoed source line that follows each message matches nothing.
void CTexasParser::Assembler() {
  while (ReadLine()) {
    if (!FindWord("at line", true)) continue;
    const size_t marker = position() - 7;
    const int number = NumberBetween(" ", ":");
    if (number < 0) continue;
    const std::string_view head = line().substr(0, marker);
    std::string_view file;
    if (!head.empty() && head.front() == '"') {
      const size_t close = head.find('"', 1);
      if (close != npos) file = head.substr(1, close - 1);
    }
    int severity = CMessageTable::kError;
    if (FindNoCase(head, "warning") != npos) {
      severity = CMessageTable::kWarning;
    } else if (FindNoCase(head, "fatal") != npos) {
      severity = CMessageTable::kFatal;
    } else if (FindNoCase(head, "remark") != npos) {
      continue;
    }
    std::string_view text = SkipBlanks(RestOfLine());
    std::string_view code;
    if (!text.empty() && text.front() == '[') {
      const size_t close = text.find(']');
      if (close != npos) {
        code = text.substr(1, close - 1);
        text.remove_prefix(close + 1);
      }
    }
    AddMessage(kAssemblerMessage, file, number, 1, severity, text, code);
  }
}

// The table of undefined symbols before the summary is no message; the
// file and line, where there are any, are the linker command file's.
void CTexasParser::Linker() {
  while (ReadLine()) {
    std::string_view text = line();
    while (!text.empty() && (text.front() == '>' || text.front() == ' ' || text.front() == '\t')) {
      text.remove_prefix(1);  // older linkers open with ">> "
    }
    Diagnostic diagnostic;
    QuotedPlace place;
    if (ReadQuotedPlace(text, &place)) {
      if (ReadDiagnostic(place.rest, &diagnostic)) {
        AddWrapped(kLinkerMessage, place.file, place.line, 1, diagnostic);
      }
    } else if (ReadDiagnostic(text, &diagnostic)) {
      AddWrapped(kLinkerMessage, "", 0, 0, diagnostic);
    }
  }
}

}  // namespace

std::unique_ptr<COutputParser> MakeTexasParser() { return std::make_unique<CTexasParser>(); }

}  // namespace quillon
