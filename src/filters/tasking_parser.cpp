// TASKING PowerPC (classic tool chain): the cppc compiler, the asppc
// assembler and the ldppc linker, as the IDE runs them.
//
//   E 212: ["ctl.c" 41] syntax error - token ";" inserted before "}"
//   w 536: ["ctl.c" 57] variable "tmp" is never used
//   |      further lines of a message open with a bar
//   >>>> and *** lines: the compiler gave up (no place of their own)
//   E 101: start.asm Line 34: undefined symbol: _stack_top
//   [LDPPC.EXE] E 104: undefined symbol: _init_timer
//
// The VX-toolset's "ctc E333: [...]" opens with the tool's name and is no
// classic message: it is not read.
#include <memory>
#include <string>
#include <string_view>

#include "filters/parser_helpers.h"

namespace quillon {
namespace {

constexpr size_t npos = std::string_view::npos;

bool IsBarLine(std::string_view text) { return !text.empty() && text.front() == '|'; }

// The digits of "212:" behind the severity letter, consumed with the colon.
std::string_view ReadCode(std::string_view* text) {
  std::string_view rest = SkipBlanks(*text);
  std::string_view digits = rest;
  int number = 0;
  if (!ReadNumber(&digits, &number) || digits.empty() || digits.front() != ':') return {};
  *text = SkipBlanks(digits.substr(1));
  return rest.substr(0, rest.size() - digits.size());
}

// '["file" 41]' or '["file" 41/5]'; the column is not kept.
bool ReadBracketPlace(std::string_view* text, std::string_view* file, int* line) {
  std::string_view rest = *text;
  if (!StartsWith(rest, "[\"")) return false;
  const size_t quote = rest.find('"', 2);
  if (quote == npos) return false;
  *file = rest.substr(2, quote - 2);
  rest = SkipBlanks(rest.substr(quote + 1));
  if (!ReadNumber(&rest, line)) return false;
  const size_t close = rest.find(']');
  if (close == npos) return false;
  *text = SkipBlanks(rest.substr(close + 1));
  return true;
}

// E, W or F (either case) alone as the first word.
bool ReadSeverityLetter(std::string_view* text, int* severity) {
  if (text->size() < 2 || (*text)[1] != ' ') return false;
  switch ((*text)[0]) {
    case 'E':
    case 'e':
      *severity = CMessageTable::kError;
      break;
    case 'W':
    case 'w':
      *severity = CMessageTable::kWarning;
      break;
    case 'F':
    case 'f':
      *severity = CMessageTable::kFatal;
      break;
    default:
      return false;
  }
  text->remove_prefix(2);
  return true;
}

class CTaskingParser : public CContinuedParser {
 public:
  void Compiler() override;
  void Assembler() override;
  void Linker() override;

 private:
  void AddCompilerEntry(int severity, std::string_view rest);
  void AddLinkerEntry(std::string_view rest);
};

void CTaskingParser::Compiler() {
  while (ReadLine()) {
    const std::string_view first_word = line().substr(0, line().find(' '));
    if (first_word == "E") {
      AddCompilerEntry(CMessageTable::kError, line().substr(1));
    } else if (first_word == "w") {
      AddCompilerEntry(CMessageTable::kWarning, line().substr(1));
    } else if (StartsWith(line(), "***") || StartsWith(line(), ">>>>")) {
      AddMessage(kCompilerMessage, "", 1, 1, CMessageTable::kFatal, line(), "");
    }
  }
}

void CTaskingParser::AddCompilerEntry(int severity, std::string_view rest) {
  const std::string_view code = ReadCode(&rest);
  std::string_view file;
  int number = 0;
  const bool placed = ReadBracketPlace(&rest, &file, &number);
  std::string text(rest);
  AppendContinuation(&text, IsBarLine);
  AddMessage(kCompilerMessage, file, placed ? number : 0, placed ? 1 : 0, severity, text, code);
}

// "E 101: start.asm Line 34: text": the file is what stands between the
// code and the word Line.
void CTaskingParser::Assembler() {
  while (ReadLine()) {
    if (!FindWord("Line", true)) continue;
    const size_t marker = position() - 4;
    const int number = NumberBetween(" ", ":");
    if (number < 0) continue;
    const std::string_view text = SkipBlanks(RestOfLine());
    std::string_view head = SkipBlanks(line().substr(0, marker));
    int severity = CMessageTable::kError;
    std::string_view code;
    if (ReadSeverityLetter(&head, &severity)) code = ReadCode(&head);
    std::string_view file = TrimBlanks(head);
    if (file.size() >= 2 && file.front() == '"' && file.back() == '"') {
      file = file.substr(1, file.size() - 2);
    }
    AddMessage(kAssemblerMessage, file, number, 1, severity, text, code);
  }
}

void CTaskingParser::Linker() {
  // The second marker is the other linker's prefix, doubled as it is shown.
  constexpr std::string_view kMarkers[] = {"[LDPPC.EXE]",
                                           "CompactRISC Linker: CompactRISC Linker:"};
  while (ReadLine()) {
    for (std::string_view marker : kMarkers) {
      const size_t at = line().find(marker);
      if (at == npos) continue;
      AddLinkerEntry(SkipBlanks(line().substr(at + marker.size())));
      break;
    }
  }
}

void CTaskingParser::AddLinkerEntry(std::string_view rest) {
  int severity = CMessageTable::kError;
  std::string_view code;
  if (ReadSeverityLetter(&rest, &severity)) {
    code = ReadCode(&rest);
  } else if (ReadSeverityWord(&rest, &severity)) {
    if (severity == kSkippedSeverity) return;
    rest = SkipBlanks(rest);
    if (!rest.empty() && rest.front() == ':') rest = SkipBlanks(rest.substr(1));
  }
  if (rest.empty()) return;
  AddMessage(kLinkerMessage, "", 0, 0, severity, rest, code);
}

}  // namespace

std::unique_ptr<COutputParser> MakeTaskingParser() { return std::make_unique<CTaskingParser>(); }

}  // namespace quillon
