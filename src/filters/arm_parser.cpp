// Arm: armcc (ARM Compiler 5 / RVCT), armclang (ARM Compiler 6), armasm
// and armlink, run from the command line or by uVision.
//
//   "main.c", line 40 (column 5): Error:  #20: identifier "x" is undefined
//   main.c(40): warning:  #223-D: function "f" declared implicitly
//   first.s(13): error: A1163E: Unknown opcode ITEGE
//   main.c:12:5: error: use of undeclared identifier 'x'
//   Error: C3900U: Unrecognized option '--cpuX'
//   .\build\app.axf: Error: L6218E: Undefined symbol foo (referred from a.o).
//
// Echoed source lines, carets and the per-file summaries match nothing.
#include <memory>
#include <string_view>

#include "filters/parser_helpers.h"

namespace quillon {
namespace {

constexpr size_t npos = std::string_view::npos;

bool IsUpper(char c) { return c >= 'A' && c <= 'Z'; }

// An Arm message code and its colon ("A1163E:", "L6218E:", "C3900U:"),
// consumed with the blanks after it.
std::string_view ReadArmCode(std::string_view* text) {
  const std::string_view rest = *text;
  size_t i = 0;
  while (i < rest.size() && IsUpper(rest[i])) ++i;
  const size_t letters = i;
  while (i < rest.size() && IsDigitChar(rest[i])) ++i;
  if (letters == 0 || i == letters || i > 12) return {};
  while (i < rest.size() && IsUpper(rest[i]) && i < 12) ++i;
  if (i >= rest.size() || rest[i] != ':') return {};
  *text = SkipBlanks(rest.substr(i + 1));
  return rest.substr(0, i);
}

struct Diagnostic {
  int severity = CMessageTable::kError;
  std::string_view code;
  std::string_view text;
};

// "Error:  #20: text", "warning:  #12-D: text", "error: A1163E: text",
// "error: text". Remarks and notes are no entries.
bool ReadDiagnostic(std::string_view rest, Diagnostic* diagnostic) {
  Diagnostic found;
  if (!ReadSeverityWord(&rest, &found.severity) || found.severity == kSkippedSeverity) {
    return false;
  }
  if (rest.empty() || (rest.front() != ':' && rest.front() != ' ')) return false;
  found.code = ReadHashCode(&rest);
  if (found.code.empty()) found.code = ReadArmCode(&rest);
  found.text = rest;
  *diagnostic = found;
  return true;
}

// "FILE(LINE): " as uVision shows it; a '(' inside the name ("Program
// Files (x86)") is passed over.
bool ReadParenPlace(std::string_view text, std::string_view* file, int* line,
                    std::string_view* rest) {
  for (size_t close = text.find("):"); close != npos; close = text.find("):", close + 1)) {
    size_t open = close;
    while (open > 0 && IsDigitChar(text[open - 1])) --open;
    if (open == close || open < 2 || text[open - 1] != '(') continue;
    std::string_view digits = text.substr(open, close - open);
    if (!ReadNumber(&digits, line)) continue;
    *file = text.substr(0, open - 1);
    *rest = SkipBlanks(text.substr(close + 2));
    return true;
  }
  return false;
}

// "FILE:LINE:COL: " as armclang prints it from the command line; the
// colon of a drive letter is passed over.
bool ReadColonPlace(std::string_view text, std::string_view* file, int* line, int* column,
                    std::string_view* rest) {
  const size_t colon = text.find(':', 2);
  if (colon == npos) return false;
  std::string_view after = text.substr(colon + 1);
  if (!ReadNumber(&after, line) || after.empty() || after.front() != ':') return false;
  after.remove_prefix(1);
  *column = 0;
  if (ReadNumber(&after, column)) {
    if (after.empty() || after.front() != ':') return false;
    after.remove_prefix(1);
  }
  *file = text.substr(0, colon);
  *rest = SkipBlanks(after);
  return true;
}

class CArmParser : public TranslatorsAlike<COutputParser> {
 public:
  void Linker() override;

 private:
  void ParseTranslator(int kind) override;
};

void CArmParser::ParseTranslator(int kind) {
  while (ReadLine()) {
    Diagnostic diagnostic;
    QuotedPlace place;
    std::string_view file;
    int number = 0;
    int column = 0;
    std::string_view rest;
    if (ReadQuotedPlace(line(), &place)) {
      if (ReadDiagnostic(place.rest, &diagnostic)) {
        AddMessage(kind, place.file, place.line, 1, diagnostic.severity, diagnostic.text,
                   diagnostic.code);
      }
    } else if (ReadParenPlace(line(), &file, &number, &rest) ||
               ReadColonPlace(line(), &file, &number, &column, &rest)) {
      if (ReadDiagnostic(rest, &diagnostic)) {
        AddMessage(kind, file, number, 1, diagnostic.severity, diagnostic.text, diagnostic.code);
      }
    } else if (ReadDiagnostic(line(), &diagnostic) && !diagnostic.code.empty()) {
      // The tool's own complaints (options, licence) name no file.
      AddMessage(kind, "", 0, 0, diagnostic.severity, diagnostic.text, diagnostic.code);
    }
  }
}

// The severity word is taken as printed: armlink may say "Error:" for a
// code that ends in W when the warning was made an error.
void CArmParser::Linker() {
  while (ReadLine()) {
    std::string_view text = line();
    Diagnostic diagnostic;
    if (!ReadDiagnostic(text, &diagnostic)) {
      // uVision puts the image's name in front.
      const size_t prefix = text.find(": ");
      if (prefix == npos) continue;
      text = SkipBlanks(text.substr(prefix + 2));
      if (!ReadDiagnostic(text, &diagnostic)) continue;
    }
    if (diagnostic.code.empty() && text.substr(0, 6) != "Error:") continue;
    AddMessage(kLinkerMessage, "", 0, 0, diagnostic.severity, diagnostic.text, diagnostic.code);
  }
}

}  // namespace

std::unique_ptr<COutputParser> MakeArmParser() { return std::make_unique<CArmParser>(); }

}  // namespace quillon
