// The Keil family: C51/C166/C251/CX51 compilers, A51/AX51/A166/A251
// assemblers, BL51/LX51/L166/L251 linkers, in the layouts they print on the
// command line and under uVision:
//
//   *** WARNING C280 IN LINE 12 OF MAIN.C: 'i': unreferenced local variable
//   *** ERROR 141 IN LINE 5 OF MAIN.C: syntax error near 'x'     (C51 4.x)
//   MAIN.C(12): error C141: syntax error near '}'                (uVision)
//   C51 FATAL-ERROR -                                            (then an
//     ACTION:  PARSING INVOKE-/#PRAGMA-LINE                       indented
//     ERROR:   UNKNOWN CONTROL                                    block)
//   *** ERROR #A45 IN 28 (START.A51, LINE 28): UNDEFINED SYMBOL  (A51)
//   *** ERROR #1, LINE #4, ILLEGAL CHARACTER IN NUMERIC CONSTANT (A166)
//   *** WARNING L15: MULTIPLE CALL TO SEGMENT                    (then the
//       SEGMENT: ?PR?_DELAYMS?MAIN                                indented
//   *** FATAL ERROR L250: CODE SIZE LIMIT IN RESTRICTED VERSION   details)
//
// Severity words are matched as the tools print them: upper case behind
// "*** ", lower case in the uVision form. The banked chain (CX51/C251,
// AX51/A251, LX51/L251) prints the same layouts, C251 included (its listing
// lines are the classic form), so its filters get the same reader.
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

// The severity word behind "*** ", cut off.
bool ReadStarSeverity(std::string_view* text, int* severity) {
  static constexpr SeverityMarker kWords[] = {{"FATAL ERROR", CMessageTable::kFatal},
                                              {"ERROR", CMessageTable::kError},
                                              {"WARNING", CMessageTable::kWarning}};
  for (const SeverityMarker& w : kWords) {
    if (StartsWith(*text, w.word) &&
        (text->size() == w.word.size() || (*text)[w.word.size()] == ' ' ||
         (*text)[w.word.size()] == ':')) {
      *severity = w.severity;
      text->remove_prefix(w.word.size());
      return true;
    }
  }
  return false;
}

// "IN LINE n OF FILE: text" (compilers).
bool ReadCompilerPlace(std::string_view rest, DiagnosticLine* d) {
  if (!StartsWith(rest, "IN LINE ")) return false;
  rest.remove_prefix(8);
  if (!ReadNumber(&rest, &d->line) || !StartsWith(rest, " OF ")) return false;
  rest.remove_prefix(4);
  const size_t colon = rest.find(": ");
  if (colon == npos) return false;
  d->file = rest.substr(0, colon);
  d->text = rest.substr(colon + 2);
  return true;
}

// "IN n (FILE, LINE n): text" (A51, AX51, A251).
bool ReadAssemblerPlace(std::string_view rest, DiagnosticLine* d) {
  if (!StartsWith(rest, "IN ")) return false;
  const size_t open = rest.find(" (");
  const size_t close = open == npos ? npos : rest.find("): ", open);
  if (close == npos) return false;
  const std::string_view inside = rest.substr(open + 2, close - open - 2);
  const size_t at = inside.rfind(", LINE ");
  if (at == npos) return false;
  std::string_view number = inside.substr(at + 7);
  if (!ReadNumber(&number, &d->line) || !number.empty()) return false;
  d->file = inside.substr(0, at);
  d->text = rest.substr(close + 3);
  return true;
}

// ", LINE #n, text" (A166 and the Intel-style assemblers it follows).
bool ReadListingPlace(std::string_view rest, DiagnosticLine* d) {
  if (!StartsWith(rest, "LINE #")) return false;
  rest.remove_prefix(6);
  if (!ReadNumber(&rest, &d->line)) return false;
  if (!rest.empty() && rest.front() == ',') rest.remove_prefix(1);
  d->text = SkipBlanks(rest);
  return true;
}

// A line that starts with "*** " and a severity word, in any of the Keil
// star layouts. The code is the token behind the word ("C280", "#A45",
// "L15", "141"), kept without '#'; it may be missing ("*** ERROR: ...").
bool ReadStarLine(std::string_view text, DiagnosticLine* d) {
  if (!StartsWith(text, "*** ")) return false;
  text.remove_prefix(4);
  if (!ReadStarSeverity(&text, &d->severity)) return false;
  text = SkipBlanks(text);
  if (!text.empty() && text.front() != ':') {
    const size_t end = text.find_first_of(" :,");
    d->code = text.substr(0, end);
    text.remove_prefix(end == npos ? text.size() : end);
    if (!d->code.empty() && d->code.front() == '#') d->code.remove_prefix(1);
  }
  if (!text.empty() && (text.front() == ':' || text.front() == ',')) {
    const bool colon = text.front() == ':';
    text = SkipBlanks(text.substr(1));
    if (colon || !ReadListingPlace(text, d)) d->text = text;
    return true;
  }
  text = SkipBlanks(text);
  if (ReadCompilerPlace(text, d) || ReadAssemblerPlace(text, d)) return true;
  d->text = text;
  return true;
}

// uVision's "FILE(LINE): error C141: text" and "... warning A52: text".
bool ReadIdeLine(std::string_view text, DiagnosticLine* d) {
  const size_t close = text.find("): ");
  if (close == npos) return false;
  const size_t open = text.rfind('(', close);
  if (open == npos || open == 0) return false;
  std::string_view number = text.substr(open + 1, close - open - 1);
  if (!ReadNumber(&number, &d->line) || !number.empty()) return false;
  std::string_view rest = text.substr(close + 3);
  if (StartsWith(rest, "error ")) {
    d->severity = CMessageTable::kError;
    rest.remove_prefix(6);
  } else if (StartsWith(rest, "warning ")) {
    d->severity = CMessageTable::kWarning;
    rest.remove_prefix(8);
  } else {
    return false;
  }
  const size_t colon = rest.find(':');
  if (colon == npos) return false;
  d->file = text.substr(0, open);
  d->code = rest.substr(0, colon);
  d->text = rest.substr(colon + 1);
  return true;
}

class CKeilParser : public TranslatorsAlike<COutputParser> {
 public:
  void Linker() override;

 private:
  void ParseTranslator(int kind) override;
  void Add(int kind, const DiagnosticLine& d, std::string_view text) {
    AddMessage(kind, d.file, d.line, d.line > 0 ? 1 : 0, d.severity, text, d.code);
  }
  // Appends the indented lines that follow to `text`, each after a line
  // feed; the first other line is read again. Answers the value of a
  // "FILE:" line among them.
  std::string ReadIndentedBlock(std::string* text);
  void ReadFatalBlock(int kind, std::string_view header, size_t marker_end);
};

std::string CKeilParser::ReadIndentedBlock(std::string* text) {
  std::string file;
  while (ReadLine()) {
    const std::string_view l = line();
    const std::string_view trimmed = SkipBlanks(l);
    if (l.empty() || !IsBlankChar(l.front()) || trimmed.empty()) {
      PushBack();
      break;
    }
    if (StartsWith(trimmed, "FILE:")) file = TrimBlanks(trimmed.substr(5));
    if (!text->empty()) *text += '\n';
    text->append(trimmed);
  }
  return file;
}

// "C51 FATAL-ERROR -" (also "A51 FATAL ERROR -") and its indented
// ACTION:/LINE:/FILE:/ERROR: lines: one Fatal entry without a line number,
// for the file a FILE: line names, else the translated one.
void CKeilParser::ReadFatalBlock(int kind, std::string_view header, size_t marker_end) {
  std::string_view head = SkipBlanks(header.substr(marker_end));
  if (StartsWith(head, "-")) head = SkipBlanks(head.substr(1));
  std::string text(head);
  const std::string file = ReadIndentedBlock(&text);
  AddMessage(kind, file, 0, 0, CMessageTable::kFatal, text, "");
}

void CKeilParser::ParseTranslator(int kind) {
  while (ReadLine()) {
    const std::string_view l = line();
    DiagnosticLine d;
    if (ReadStarLine(l, &d) || ReadIdeLine(l, &d)) {
      Add(kind, d, d.text);
      continue;
    }
    // The tool's name, then the fatal marker: "C51 FATAL-ERROR -".
    const size_t blank = l.find(' ');
    if (blank == npos || blank == 0) continue;
    const std::string_view after = l.substr(blank + 1);
    if (StartsWith(after, "FATAL-ERROR") || StartsWith(after, "FATAL ERROR")) {
      ReadFatalBlock(kind, l, blank + 1 + 11);
    }
  }
}

// Linker messages are star lines with indented details (SEGMENT:, SYMBOL:,
// MODULE:, ADDRESS: ...), which go into the entry's text.
void CKeilParser::Linker() {
  while (ReadLine()) {
    DiagnosticLine d;
    if (!ReadStarLine(line(), &d)) continue;
    std::string text(d.text);
    ReadIndentedBlock(&text);
    AddMessage(kLinkerMessage, "", 0, 0, d.severity, text, d.code);
  }
}

}  // namespace

std::unique_ptr<COutputParser> MakeKeilParser() { return std::make_unique<CKeilParser>(); }

std::unique_ptr<COutputParser> MakeKeilBankedParser() { return std::make_unique<CKeilParser>(); }

}  // namespace quillon
