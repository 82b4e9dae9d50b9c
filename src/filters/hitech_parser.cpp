// The HI-TECH family: the picc/c51 drivers with their parser (p1), code
// generators, assemblers and the hlink linker, as "HiTech-5", "Hitech-8051"
// and "Hitech-PIC".
//
// Every HI-TECH tool reports through one message system, so one line routine
// reads them all (hitech_lines.h):
//   main.c 12: (192) undefined identifier "count" (error)      driver's -E
//   main.c: 12: function declared implicit int (warning)       older releases
//   Error   [192] C:\proj\main.c; 12.5 undefined identifier "count"   MPLAB
// A linker message may name no place ("Error   [500] ; 0. undefined symbols:")
// and list its symbols on indented lines below it.
#include <algorithm>
#include <memory>
#include <string>
#include <string_view>

#include "filters/hitech_lines.h"
#include "filters/output_parser.h"
#include "filters/text_scan.h"
#include "platform/path.h"

namespace quillon {
namespace {

constexpr size_t npos = std::string_view::npos;
constexpr int kSkipped = -1;

// "(type)" at the end of the text, cut off; false when there is none.
bool CutType(std::string_view* text, int* severity) {
  if (text->empty() || text->back() != ')') return false;
  const size_t open = text->rfind('(');
  if (open == npos) return false;
  const std::string_view type = text->substr(open + 1, text->size() - open - 2);
  if (EqualsNoCase(type, "warning")) {
    *severity = CMessageTable::kWarning;
  } else if (EqualsNoCase(type, "error")) {
    *severity = CMessageTable::kError;
  } else if (EqualsNoCase(type, "fatal error") || EqualsNoCase(type, "fatal")) {
    *severity = CMessageTable::kFatal;
  } else if (EqualsNoCase(type, "advisory")) {
    *severity = kSkipped;
  } else {
    return false;
  }
  *text = TrimBlanks(text->substr(0, open));
  return true;
}

// "(number)" at the head of the text.
void CutCode(HiTechMessage* message) {
  std::string_view rest = message->text;
  if (rest.empty() || rest.front() != '(') return;
  rest.remove_prefix(1);
  const std::string_view digits = rest;
  if (CutNumber(&rest) == -1 || rest.empty() || rest.front() != ')') return;
  message->code = digits.substr(0, digits.size() - rest.size());
  message->text = SkipBlanks(rest.substr(1));
}

// "file line:" or "file: line:" at the head of the line; the drive letter's
// colon has no digits before it and is passed over.
bool ReadPlace(std::string_view line, HiTechMessage* message) {
  for (size_t colon = line.find(':'); colon != npos; colon = line.find(':', colon + 1)) {
    size_t digits = colon;
    while (digits > 0 && IsDigitChar(line[digits - 1])) --digits;
    if (digits == colon || colon - digits > 9) continue;
    size_t name_end = digits;
    while (name_end > 0 && line[name_end - 1] == ' ') --name_end;
    if (name_end == digits) continue;
    std::string_view file = line.substr(0, name_end);
    if (!file.empty() && file.back() == ':') file.remove_suffix(1);
    file = TrimBlanks(file);
    if (file.empty()) continue;
    std::string_view number = line.substr(digits, colon - digits);
    message->file = file;
    message->line = CutNumber(&number);
    message->text = TrimBlanks(line.substr(colon + 1));
    return true;
  }
  return false;
}

struct MplabKind {
  std::string_view word;
  int severity;
};
constexpr MplabKind kMplabKinds[] = {
    {"Fatal Error", CMessageTable::kFatal},
    {"Fatal error", CMessageTable::kFatal},
    {"Error", CMessageTable::kError},
    {"Warning", CMessageTable::kWarning},
    {"Advisory", kSkipped},
};

// "Error   [number] file; line.column text"; the place may be empty or
// missing.
bool ReadMplabLine(std::string_view line, HiTechMessage* message, bool* skipped) {
  for (const MplabKind& kind : kMplabKinds) {
    if (line.substr(0, kind.word.size()) != kind.word) continue;
    std::string_view rest = SkipBlanks(line.substr(kind.word.size()));
    const size_t close = rest.find(']');
    if (rest.empty() || rest.front() != '[' || close == npos) return false;
    *skipped = kind.severity == kSkipped;
    message->severity = kind.severity;
    message->code = TrimBlanks(rest.substr(1, close - 1));
    rest = SkipBlanks(rest.substr(close + 1));
    message->text = rest;
    const size_t semicolon = rest.find(';');
    if (semicolon == npos) return true;
    std::string_view place = SkipBlanks(rest.substr(semicolon + 1));
    const int number = CutNumber(&place);
    if (number == -1) return true;
    message->file = TrimBlanks(rest.substr(0, semicolon));
    message->line = number;
    if (!place.empty() && place.front() == '.') {
      place.remove_prefix(1);
      message->column = std::max(CutNumber(&place), 0);
    }
    message->text = SkipBlanks(place);
    return true;
  }
  return false;
}

}  // namespace

bool ReadHiTechLine(std::string_view line, HiTechMessage* message) {
  *message = HiTechMessage();
  bool skipped = false;
  if (ReadMplabLine(line, message, &skipped)) return !skipped;
  *message = HiTechMessage();
  // A place and no type: an error, as older releases mark only warnings.
  const bool placed = ReadPlace(line, message);
  if (!placed) message->text = TrimBlanks(line);
  int severity = CMessageTable::kError;
  if (!CutType(&message->text, &severity) && !placed) return false;
  if (severity == kSkipped) return false;
  message->severity = severity;
  CutCode(message);
  return true;
}

namespace {

// What one operation of a filter reads: nothing, the messages with column 1,
// or the messages with the column the tool prints.
enum class Reading { kNothing, kMessages, kMessagesWithColumns };

class CHiTechParser : public COutputParser {
 public:
  CHiTechParser(Reading compiler, Reading assembler, Reading linker)
      : compiler_(compiler), assembler_(assembler), linker_(linker) {}

  void Compiler() override { Parse(kCompilerMessage, compiler_); }
  void Assembler() override { Parse(kAssemblerMessage, assembler_); }
  void Linker() override { Parse(kLinkerMessage, linker_); }

 private:
  void Parse(int kind, Reading reading);
  // hlink lists the symbols of a message on indented lines.
  void ReadSymbolLines(std::string* text);

  Reading compiler_, assembler_, linker_;
};

void CHiTechParser::Parse(int kind, Reading reading) {
  if (reading == Reading::kNothing) return;
  while (ReadLine()) {
    HiTechMessage m;
    if (!ReadHiTechLine(line(), &m)) continue;
    int column = m.line > 0 ? 1 : 0;
    if (reading == Reading::kMessagesWithColumns && m.column > 0) column = m.column;
    std::string text(m.text);
    if (kind == kLinkerMessage) ReadSymbolLines(&text);
    AddMessage(kind, m.file, m.line, column, m.severity, text, m.code);
  }
}

void CHiTechParser::ReadSymbolLines(std::string* text) {
  while (ReadLine()) {
    const std::string_view next = line();
    if (next.empty() || (next[0] != ' ' && next[0] != '\t') || TrimBlanks(next).empty()) {
      PushBack();
      return;
    }
    *text += '\n';
    *text += TrimBlanks(next);
  }
}

}  // namespace

std::unique_ptr<COutputParser> MakeHiTech5Parser() {
  return std::make_unique<CHiTechParser>(Reading::kMessages, Reading::kMessagesWithColumns,
                                         Reading::kNothing);
}

std::unique_ptr<COutputParser> MakeHiTech8051Parser() {
  return std::make_unique<CHiTechParser>(Reading::kMessages, Reading::kMessages,
                                         Reading::kMessagesWithColumns);
}

std::unique_ptr<COutputParser> MakeHiTechPicParser() {
  return std::make_unique<CHiTechParser>(Reading::kNothing, Reading::kNothing, Reading::kMessages);
}

}  // namespace quillon
