// The HiWare family (later Metrowerks and Freescale CodeWarrior for HC08,
// HC12, RS08): the chc* compilers, the ahc* assemblers and the SmartLinker.
//
// In batch mode a message reads
//   main.c(12): ERROR C1815: counter not declared (or typename)
//   main.c: WARNING C3600: ...                  (no line)
//   INFORMATION L10324: Linking successful      (no file)
// The classic IDE's window shows it in two lines, the place below:
//   Error : C12087: Not a valid operand
//   main_v2.890.c line 2371
// and the linker's with its name in front: "Link Error : L1822: text".
// The severity words come in either case. Informations are shown as warnings
// for compiler and assembler and not at all for the linker; a bad command
// line ("FATAL Error in command line: ...") is the compile's fatal error.
#include <memory>
#include <string_view>

#include "filters/output_parser.h"
#include "filters/text_scan.h"
#include "platform/path.h"

namespace quillon {
namespace {

constexpr size_t npos = std::string_view::npos;

constexpr SeverityMarker kCompilerMarkers[] = {{"FATAL", CMessageTable::kFatal},
                                               {"ERROR", CMessageTable::kError},
                                               {"WARNING", CMessageTable::kWarning},
                                               {"INFORMATION", CMessageTable::kWarning}};
constexpr SeverityMarker kAssemblerMarkers[] = {{"ERROR", CMessageTable::kError},
                                                {"WARNING", CMessageTable::kWarning},
                                                {"INFORMATION", CMessageTable::kWarning}};
constexpr SeverityMarker kLinkerMarkers[] = {{"ERROR", CMessageTable::kError},
                                             {"WARNING", CMessageTable::kWarning}};

struct Message {
  std::string_view file;
  int line = 0;
  int severity = CMessageTable::kError;
  std::string_view code;
  std::string_view text;
};

bool IsWordChar(char c) { return IsLetterChar(c) || IsDigitChar(c) || c == '_'; }

// " CODE:" or " : CODE:" behind a severity word, the code being letters then
// digits (C1815, A13003, L1822); the text after it.
bool ReadCodeAndText(std::string_view rest, Message* m) {
  rest = SkipBlanks(rest);
  if (!rest.empty() && rest.front() == ':') rest = SkipBlanks(rest.substr(1));
  size_t i = 0;
  while (i < rest.size() && IsLetterChar(rest[i])) ++i;
  const size_t letters = i;
  while (i < rest.size() && IsDigitChar(rest[i])) ++i;
  if (letters == 0 || i == letters || i >= rest.size() || rest[i] != ':') return false;
  m->code = rest.substr(0, i);
  m->text = TrimBlanks(rest.substr(i + 1));
  return true;
}

// The first severity word of `markers` that stands as a word and is followed
// by a code; where it starts, or npos.
template <size_t N>
size_t FindSeverity(std::string_view line, const SeverityMarker (&markers)[N], Message* m) {
  for (size_t i = 0; i < line.size(); ++i) {
    if (i > 0 && IsWordChar(line[i - 1])) continue;
    for (const SeverityMarker& marker : markers) {
      const size_t end = i + marker.word.size();
      if (end > line.size() || !EqualsNoCase(line.substr(i, marker.word.size()), marker.word) ||
          (end < line.size() && IsWordChar(line[end]))) {
        continue;
      }
      if (!ReadCodeAndText(line.substr(end), m)) continue;
      m->severity = marker.severity;
      return i;
    }
  }
  return npos;
}

// What stands before the severity: "file(line): ", "file: ", or a tool's
// name ("Link ") that names no place.
void ReadPlace(std::string_view head, Message* m) {
  head = TrimBlanks(head);
  if (head.empty() || head.back() != ':') return;
  head = TrimBlanks(head.substr(0, head.size() - 1));
  if (!head.empty() && head.back() == ')') {
    const size_t open = head.rfind('(');
    const int number =
        open == npos ? -1 : WholeNumber(head.substr(open + 1, head.size() - open - 2));
    if (number != -1) {
      m->line = number;
      head = TrimBlanks(head.substr(0, open));
    }
  }
  if (head.size() >= 2 && head.front() == '"' && head.back() == '"') {
    head = head.substr(1, head.size() - 2);
  }
  m->file = head;
}

// The IDE's place line: "file line 2371".
bool ReadPlaceLine(std::string_view line, Message* m) {
  line = TrimBlanks(line);
  const size_t word = line.rfind(" line ");
  if (word == npos || word == 0) return false;
  const int number = WholeNumber(TrimBlanks(line.substr(word + 6)));
  if (number == -1) return false;
  std::string_view file = TrimBlanks(line.substr(0, word));
  if (file.size() >= 2 && file.front() == '"' && file.back() == '"') {
    file = file.substr(1, file.size() - 2);
  }
  m->file = file;
  m->line = number;
  return true;
}

class CHiWareParser : public COutputParser {
 public:
  void Compiler() override { Parse(kCompilerMessage, kCompilerMarkers); }
  void Assembler() override { Parse(kAssemblerMessage, kAssemblerMarkers); }
  void Linker() override { Parse(kLinkerMessage, kLinkerMarkers); }

 private:
  template <size_t N>
  void Parse(int kind, const SeverityMarker (&markers)[N]);
  bool ReadCommandLineError(Message* m);
};

template <size_t N>
void CHiWareParser::Parse(int kind, const SeverityMarker (&markers)[N]) {
  while (ReadLine()) {
    Message m;
    if (kind != kCompilerMessage || !ReadCommandLineError(&m)) {
      const size_t at = FindSeverity(line(), markers, &m);
      if (at == npos) continue;
      ReadPlace(line().substr(0, at), &m);
      // Without a place of its own, the IDE's next line may give it.
      if (m.file.empty() && ReadLine() && !ReadPlaceLine(line(), &m)) PushBack();
    }
    AddMessage(kind, m.file, m.line, m.line > 0 ? 1 : 0, m.severity, m.text, m.code);
  }
}

bool CHiWareParser::ReadCommandLineError(Message* m) {
  if (!FindWord("FATAL Error in command line:", true)) return false;
  m->severity = CMessageTable::kFatal;
  m->text = RestOfLine();
  return true;
}

}  // namespace

std::unique_ptr<COutputParser> MakeHiWareParser() { return std::make_unique<CHiWareParser>(); }

}  // namespace quillon
