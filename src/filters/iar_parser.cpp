// The IAR family: the icc* compilers, the a*/iasm* assemblers, XLINK and
// ILINK.
//
// Compiler and linker messages carry the severity with the code in brackets:
//   "main.c",12  Error[Pe020]: identifier "y" is undefined
//   main.c(12) : Warning[Pe177]: variable "x" was declared but never referenced
//   Fatal error[Pe035]: #error directive: "..."         (no place)
//   Error[Pe167]: text<TAB>file<TAB>line                 (copied from the IDE)
//   Error[Li005]: no definition for "f" [referenced from main.o]
//   Error[e46]: Undefined external "f" referred in m ( path )
// Remarks are not reported. The compiler prints the source line and a caret
// before its message; long messages wrap onto lines indented by 10 blanks.
// The assembler is read in its quoted layout only ("file",line  Error[..]: ..)
// and with the exact words "Error[" and "Warning[".
#include <memory>
#include <string>
#include <string_view>

#include "filters/output_parser.h"
#include "filters/parser_helpers.h"
#include "filters/text_scan.h"
#include "platform/path.h"

namespace quillon {
namespace {

constexpr size_t npos = std::string_view::npos;

// A wrapped message goes on under a 10-blank indent.
bool IsWrapped(std::string_view line) {
  return line.size() > 10 && line.substr(0, 10) == "          " &&
         line.find_first_not_of(" \t") != npos;
}

// Unlike IsCaretLine, a blank line is none: it ends nothing here.
bool IsCaretOnlyLine(std::string_view line) {
  return line.find('^') != npos && line.find_first_not_of(" \t^") == npos;
}

// Where the severity marker starts and which one it is: "Warning[", "Error[",
// "Fatal Error[" or the compiler's "Fatal error[". Looks only at the
// brackets of the line, so that lines without any cost one scan.
size_t FindMarker(std::string_view line, int* severity) {
  for (size_t open = line.find('['); open != npos; open = line.find('[', open + 1)) {
    const std::string_view before = line.substr(0, open);
    if (before.size() >= 7 && before.substr(before.size() - 7) == "Warning") {
      *severity = CMessageTable::kWarning;
      return open - 7;
    }
    if (before.size() < 5) continue;
    const std::string_view word = before.substr(before.size() - 5);
    const bool fatal = before.size() >= 11 && before.substr(before.size() - 11, 6) == "Fatal ";
    if (word == "Error" || (fatal && word == "error")) {
      *severity = fatal ? CMessageTable::kFatal : CMessageTable::kError;
      return open - (fatal ? 11 : 5);
    }
  }
  return npos;
}

// The place in front of the marker: "file",line or file(line) :
bool ReadPlace(std::string_view head, DiagnosticLine* d) {
  head = TrimBlanks(head);
  if (head.size() > 2 && head.front() == '"') {
    const size_t quote = head.find('"', 1);
    if (quote == npos || quote + 1 >= head.size() || head[quote + 1] != ',') return false;
    const int number = WholeNumber(TrimBlanks(head.substr(quote + 2)));
    if (number == -1) return false;
    d->file = head.substr(1, quote - 1);
    d->line = number;
    d->column = 1;
    return true;
  }
  if (!head.empty() && head.back() == ':') head = TrimBlanks(head.substr(0, head.size() - 1));
  const size_t open = head.rfind('(');
  if (open == npos || open == 0 || head.back() != ')') return false;
  const int number = WholeNumber(head.substr(open + 1, head.size() - open - 2));
  if (number == -1) return false;
  d->file = TrimBlanks(head.substr(0, open));
  d->line = number;
  d->column = 1;
  return true;
}

// The IDE's copy puts file and line behind the text, each after a tab.
void ReadTrailingPlace(DiagnosticLine* d) {
  const size_t last_tab = d->text.rfind('\t');
  if (last_tab == npos) return;
  const int number = WholeNumber(TrimBlanks(d->text.substr(last_tab + 1)));
  const std::string_view before = d->text.substr(0, last_tab);
  const size_t file_tab = before.rfind('\t');
  if (number == -1 || file_tab == npos) return;
  d->file = TrimBlanks(before.substr(file_tab + 1));
  d->line = number;
  d->column = 1;
  d->text = before.substr(0, before.find('\t'));
}

bool ReadDiagnostic(std::string_view line, DiagnosticLine* d) {
  const size_t marker = FindMarker(line, &d->severity);
  if (marker == npos) return false;
  const size_t open = line.find('[', marker);
  const size_t close = line.find(']', open);
  if (close == npos || close + 1 >= line.size() || line[close + 1] != ':') return false;
  d->code = line.substr(open + 1, close - open - 1);
  d->text = line.substr(close + 2);
  if (marker > 0) return ReadPlace(line.substr(0, marker), d);
  ReadTrailingPlace(d);
  return true;
}

class CIarParser : public COutputParser {
 public:
  void Compiler() override { ParseMessages(kCompilerMessage); }
  void Assembler() override;
  void Linker() override { ParseMessages(kLinkerMessage); }

 private:
  void ParseMessages(int kind);
  // Wrapped lines behind a message. In compiler output a 10-blank line may
  // instead be the next message's source echo, told by the caret under it.
  void ReadContinuation(std::string* text, bool source_echoes);
};

void CIarParser::ParseMessages(int kind) {
  while (ReadLine()) {
    DiagnosticLine d;
    if (!ReadDiagnostic(line(), &d)) continue;
    std::string text(TrimBlanks(d.text));
    ReadContinuation(&text, kind == kCompilerMessage);
    AddMessage(kind, d.file, d.line, d.column, d.severity, text, d.code);
  }
}

void CIarParser::ReadContinuation(std::string* text, bool source_echoes) {
  while (ReadLine()) {
    const std::string_view wrapped = line();
    if (!IsWrapped(wrapped)) {
      PushBack();
      return;
    }
    if (source_echoes && ReadLine()) {
      if (IsCaretOnlyLine(line())) return;  // an echo and its caret add nothing
      PushBack();
    }
    *text += '\n';
    *text += TrimBlanks(wrapped);
  }
}

void CIarParser::Assembler() {
  while (ReadLine()) {
    const std::string_view file = TakeBetween("\"", "\"");
    if (failed()) continue;
    const int number = NumberBetween(",", " ");
    if (number == -1) continue;
    int severity = CMessageTable::kError;
    if (!FindWord("Error[", true)) {
      if (!FindWord("Warning[", true)) continue;
      severity = CMessageTable::kWarning;
    }
    MovePosition(-1);
    const std::string_view code = TakeBetween("[", "]");
    if (failed() || !FindWord(":", true)) continue;
    AddMessage(kAssemblerMessage, file, number, 1, severity, RestOfLine(), code);
  }
}

}  // namespace

std::unique_ptr<COutputParser> MakeIarParser() { return std::make_unique<CIarParser>(); }

}  // namespace quillon
