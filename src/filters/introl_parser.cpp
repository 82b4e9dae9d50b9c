// The Introl family: the Introl-C compilers for the 68HC11/68HC16/683xx, their
// assembler and linker.
//
// Compiler messages name the place in the quoted form and say when they are
// warnings; anything else in that form is an error:
//   "main.c", line 12: undefined identifier 'count'
//   "main.c", line 20: warning: variable 'x' is never used
// The assembler marks its messages with asterisks:
//   ***** "main.s", line 34: undefined symbol 'start'
// The linker writes "Error: text" or "Warning: text" without a place.
#include <memory>
#include <string_view>

#include "filters/output_parser.h"
#include "filters/text_scan.h"
#include "platform/path.h"

namespace quillon {
namespace {

constexpr size_t npos = std::string_view::npos;

struct Message {
  std::string_view file;
  int line = 0;
  std::string_view text;
};

// '"file", line 12: text' from the head of `text`.
bool ReadQuotedPlace(std::string_view text, Message* m) {
  text = SkipBlanks(text);
  if (text.size() < 2 || text.front() != '"') return false;
  const size_t quote = text.find('"', 1);
  if (quote == npos || text.substr(quote + 1, 7) != ", line ") return false;
  std::string_view rest = text.substr(quote + 8);
  const int number = CutNumber(&rest);
  if (number == -1 || rest.empty() || rest.front() != ':') return false;
  m->file = text.substr(1, quote - 1);
  m->line = number;
  m->text = TrimBlanks(rest.substr(1));
  return true;
}

class CIntrolParser : public COutputParser {
 public:
  void Compiler() override;
  void Assembler() override;
  void Linker() override { ParseSeverityWordLines(kLinkerMessage); }
};

void CIntrolParser::Compiler() {
  while (ReadLine()) {
    Message m;
    if (!ReadQuotedPlace(line(), &m)) continue;
    int severity = CMessageTable::kError;
    // The word is looked for in two pieces, "war" then "ning" behind it.
    SetPosition(m.text.empty() ? line().size()
                               : static_cast<size_t>(m.text.data() - line().data()));
    if (FindWord("war", true) && FindWord("ning", true)) {
      severity = CMessageTable::kWarning;
      CutSeverityWord(&m.text, &severity);
    }
    AddMessage(kCompilerMessage, m.file, m.line, 1, severity, m.text, "");
  }
}

void CIntrolParser::Assembler() {
  while (ReadLine()) {
    if (!FindWord("*****", true)) continue;
    Message m;
    std::string_view rest = RestOfLine();
    while (!rest.empty() && rest.front() == '*') rest.remove_prefix(1);
    if (!ReadQuotedPlace(rest, &m)) {
      m.text = TrimBlanks(rest);
      if (m.text.empty()) continue;
    }
    AddMessage(kAssemblerMessage, m.file, m.line, m.line > 0 ? 1 : 0, CMessageTable::kError, m.text,
               "");
  }
}

}  // namespace

std::unique_ptr<COutputParser> MakeIntrolParser() { return std::make_unique<CIntrolParser>(); }

}  // namespace quillon
