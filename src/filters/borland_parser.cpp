// The Borland family: bcc/bcc32 (and Turbo C before them), TASM, TLINK and
// ILINK32.
//
//   Error E2451 main.c 82: Undefined symbol 'x' in function f      (bcc32)
//   Warning W8065 main.c 40: Call to function 'g' with no prototype
//   Fatal F1003 main.c 3: Error directive: stop
//   Error main.c 12: Undefined symbol 'x'                          (Turbo C)
//   **Error** main.asm(12) Undefined symbol: FOO                   (TASM)
//   *Warning* mmx.inc(64) Reserved word used as symbol: MM0
//   **Fatal** Command line: Can't locate file: x.asm
//   Error: Unresolved external '_f' referenced from MAIN.OBJ       (linkers)
//   Warning: No stack
//   Fatal: Unable to open file 'x.obj'
#include <memory>
#include <string>
#include <string_view>

#include "filters/output_parser.h"
#include "filters/text_scan.h"
#include "platform/path.h"

namespace quillon {
namespace {

constexpr size_t npos = std::string_view::npos;

bool IsUpper(char c) { return c >= 'A' && c <= 'Z'; }

// All digits, as a line number; false for none or anything else.
bool ParseNumber(std::string_view text, int* number) {
  if (text.empty()) return false;
  long long value = 0;
  for (char c : text) {
    if (!IsDigitChar(c)) return false;
    if (value < 100000000) value = value * 10 + (c - '0');
  }
  *number = static_cast<int>(value);
  return true;
}

// "E2451", "W8065", "F1003": a capital and digits.
bool IsCode(std::string_view word) {
  if (word.size() < 2 || !IsUpper(word[0])) return false;
  for (char c : word.substr(1)) {
    if (!IsDigitChar(c)) return false;
  }
  return true;
}

// The severity word a line opens with, cut off with it.
bool ReadMarker(std::string_view* text, const SeverityMarker* markers, size_t count,
                int* severity) {
  for (size_t i = 0; i < count; ++i) {
    if (StartsWith(*text, markers[i].word)) {
      *severity = markers[i].severity;
      text->remove_prefix(markers[i].word.size());
      return true;
    }
  }
  return false;
}

class CBorlandParser : public COutputParser {
 public:
  void Compiler() override;
  void Assembler() override;
  void Linker() override;
};

// "SEVERITY [CODE] FILE LINE: TEXT". The code is a capital and digits; the
// file may hold blanks, so the line number is the last word before the
// first ": ". Without a number ("Error E2194: Could not find file 'x.c'")
// the message names no place. A following line that opens with "in
// function" is the message's tail split onto its own line.
void CBorlandParser::Compiler() {
  static constexpr SeverityMarker kMarkers[] = {{"Error ", CMessageTable::kError},
                                                {"Warning ", CMessageTable::kWarning},
                                                {"Fatal ", CMessageTable::kFatal}};
  while (ReadLine()) {
    std::string_view rest = line();
    int severity;
    if (!ReadMarker(&rest, kMarkers, std::size(kMarkers), &severity)) continue;
    std::string_view code;
    const size_t word_end = rest.find_first_of(" :");
    if (word_end != npos && IsCode(rest.substr(0, word_end))) {
      code = rest.substr(0, word_end);
      rest = TrimBlanks(rest.substr(word_end));
    }
    std::string_view file;
    int number = 0;
    std::string_view message = rest;
    const size_t colon = rest.find(": ");
    if (colon != npos) {
      const std::string_view place = TrimBlanks(rest.substr(0, colon));
      const size_t blank = place.rfind(' ');
      if (place.empty()) {
        message = rest.substr(colon + 1);
      } else if (blank != npos && ParseNumber(place.substr(blank + 1), &number)) {
        file = TrimBlanks(place.substr(0, blank));
        message = rest.substr(colon + 1);
      }
    }
    std::string text(TrimBlanks(message));
    while (ReadLine()) {
      if (!StartsWith(line(), "in function ")) {
        PushBack();
        break;
      }
      text += '\n';
      text += TrimBlanks(line());
    }
    AddMessage(kCompilerMessage, file, number, number > 0 ? 1 : 0, severity, text, code);
  }
}

// "**Error** FILE(LINE) TEXT"; "*Warning*" and "**Fatal**" alike. A
// message about the command line has no "(LINE)".
void CBorlandParser::Assembler() {
  static constexpr SeverityMarker kMarkers[] = {{"**Error**", CMessageTable::kError},
                                                {"*Warning*", CMessageTable::kWarning},
                                                {"**Fatal**", CMessageTable::kFatal},
                                                {"*Fatal*", CMessageTable::kFatal}};
  while (ReadLine()) {
    std::string_view rest = TrimBlanks(line());
    int severity;
    if (!ReadMarker(&rest, kMarkers, std::size(kMarkers), &severity)) continue;
    rest = TrimBlanks(rest);
    const size_t open = rest.find('(');
    const size_t close = open == npos ? npos : rest.find(')', open);
    int number = 0;
    if (close != npos && open > 0 && rest.substr(0, open).find(' ') == npos &&
        ParseNumber(rest.substr(open + 1, close - open - 1), &number)) {
      AddMessage(kAssemblerMessage, rest.substr(0, open), number, 1, severity,
                 rest.substr(close + 1), "");
    } else {
      AddMessage(kAssemblerMessage, "", 0, 0, severity, rest, "");
    }
  }
}

// "Error: TEXT", "Warning: TEXT", "Fatal: TEXT" at the line's start.
void CBorlandParser::Linker() {
  static constexpr SeverityMarker kMarkers[] = {{"Error:", CMessageTable::kError},
                                                {"Warning:", CMessageTable::kWarning},
                                                {"Fatal:", CMessageTable::kFatal}};
  while (ReadLine()) {
    std::string_view rest = line();
    int severity;
    if (!ReadMarker(&rest, kMarkers, std::size(kMarkers), &severity)) continue;
    AddMessage(kLinkerMessage, "", 0, 0, severity, rest, "");
  }
}

}  // namespace

std::unique_ptr<COutputParser> MakeBorlandParser() { return std::make_unique<CBorlandParser>(); }

}  // namespace quillon
