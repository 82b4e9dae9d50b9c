// The 2500 A.D. family: its C compilers, cross assemblers and linker, as
// "2500AD" and, for the 4.0 assemblers, "2500AD (ver. 4.0)".
//
// The compiler writes one line per message, a warning saying so:
//   main.c  Line # 12: Undefined symbol 'count'
//   main.c  Line # 20: Warning: Constant truncated
// The assembler sets the message between asterisks and the place on the line
// below it, which the 4.0 assemblers head "Active Commands":
//   ***** Undefined Symbol *****
//   Line 12 in main.asm                  (before 4.0)
//   Active Commands: main.asm 12         (4.0)
// The linker writes "Error: text" or "Warning: text", naming no place.
#include <memory>
#include <string_view>

#include "filters/output_parser.h"
#include "filters/text_scan.h"
#include "platform/path.h"

namespace quillon {
namespace {

constexpr size_t npos = std::string_view::npos;

struct Place {
  std::string_view file;
  int line = 0;
};

// "Line 12 in main.asm"; the file may be left out.
bool ReadLinePlace(std::string_view line, Place* place) {
  line = TrimBlanks(line);
  if (line.substr(0, 5) != "Line ") return false;
  std::string_view rest = SkipBlanks(line.substr(5));
  const int number = CutNumber(&rest);
  if (number == -1) return false;
  rest = SkipBlanks(rest);
  if (rest.substr(0, 3) == "in ") rest = rest.substr(3);
  place->file = TrimBlanks(rest);
  place->line = number;
  return true;
}

// "Active Commands: main.asm 12": the last word is the line.
bool ReadActiveCommands(std::string_view line, Place* place) {
  const size_t head = line.find("Active Commands");
  if (head == npos) return false;
  std::string_view rest = SkipBlanks(line.substr(head + 15));
  if (!rest.empty() && rest.front() == ':') rest.remove_prefix(1);
  rest = TrimBlanks(rest);
  const size_t blank = rest.find_last_of(" \t");
  if (blank == npos) return false;
  const int number = WholeNumber(rest.substr(blank + 1));
  if (number == -1) return false;
  place->file = TrimBlanks(rest.substr(0, blank));
  place->line = number;
  return true;
}

class C2500adParser : public COutputParser {
 public:
  explicit C2500adParser(bool version4) : version4_(version4) {}

  void Compiler() override;
  void Assembler() override;
  void Linker() override { ParseSeverityWordLines(kLinkerMessage); }

 private:
  bool version4_;
};

void C2500adParser::Compiler() {
  while (ReadLine()) {
    if (!FindWord("Line #", true)) continue;
    std::string_view file = TrimBlanks(line().substr(0, position() - 6));
    if (!file.empty() && (file.back() == ',' || file.back() == ':')) file.remove_suffix(1);
    std::string_view rest = SkipBlanks(RestOfLine());
    const int number = CutNumber(&rest);
    if (number == -1) continue;
    rest = SkipBlanks(rest);
    if (!rest.empty() && rest.front() == ':') rest = SkipBlanks(rest.substr(1));
    int severity = CMessageTable::kError;
    if (Contains("Warning", position())) {
      severity = CMessageTable::kWarning;
      CutSeverityWord(&rest, &severity);
    }
    AddMessage(kCompilerMessage, file, number, 1, severity, rest, "");
  }
}

void C2500adParser::Assembler() {
  while (ReadLine()) {
    if (!FindWord("*****", true)) continue;
    std::string_view text = TrimBlanks(line());
    while (!text.empty() && (text.front() == '*' || text.front() == ' ')) text.remove_prefix(1);
    while (!text.empty() && (text.back() == '*' || text.back() == ' ')) text.remove_suffix(1);
    if (text.empty()) continue;
    int severity = CMessageTable::kError;
    if (FindNoCase(text, "warning") != npos) severity = CMessageTable::kWarning;
    Place place;
    if (ReadLine()) {
      const bool placed =
          version4_ ? ReadActiveCommands(line(), &place) : ReadLinePlace(line(), &place);
      if (!placed) PushBack();
    }
    AddMessage(kAssemblerMessage, place.file, place.line, place.line > 0 ? 1 : 0, severity, text,
               "");
  }
}

}  // namespace

std::unique_ptr<COutputParser> Make2500adParser() { return std::make_unique<C2500adParser>(false); }

std::unique_ptr<COutputParser> Make2500adVersion4Parser() {
  return std::make_unique<C2500adParser>(true);
}

}  // namespace quillon
