// The Cosmic family: the cx* drivers' parsers (cpstm8, cp6812, cpm08 ...),
// the ca* assemblers and the clnk linker. Each diagnostic is one line:
//
//   #error cpstm8 main.c:496(72) bad struct/union operand
//   #warning cpstm8 main.c:494(2+4) implicit int type in global declaration
//   #error clnk Debug\test.lkf:1 segment .text size overflow (3717)
//
// marker, the program's name, FILE:LINE with an optional (COLUMN) or
// (COLUMN+LENGTH), then the text. The linker's FILE:LINE is its command
// file. Older linkers printed no marker: "clnk: TEXT", read by the
// "Cosmic (old)" filter.
#include <memory>
#include <string_view>

#include "filters/output_parser.h"
#include "filters/text_scan.h"
#include "platform/path.h"

namespace quillon {
namespace {

constexpr size_t npos = std::string_view::npos;

size_t SkipDigits(std::string_view text, size_t i) {
  while (i < text.size() && IsDigitChar(text[i])) ++i;
  return i;
}

struct Place {
  std::string_view file;
  int line = 0;
};

// "FILE:LINE[(COL[+LEN])] " at the head of `text`, cut off. The colon is
// the first one followed by a digit, so a drive letter's is passed over;
// the place must end at a blank or the line's end.
bool ReadPlace(std::string_view* text, Place* place) {
  for (size_t colon = text->find(':'); colon != npos; colon = text->find(':', colon + 1)) {
    if (colon == 0 || colon + 1 >= text->size() || !IsDigitChar((*text)[colon + 1])) continue;
    const size_t digits_end = SkipDigits(*text, colon + 1);
    size_t end = digits_end;
    if (end < text->size() && (*text)[end] == '(') {
      end = SkipDigits(*text, end + 1);
      if (end < text->size() && (*text)[end] == '+') end = SkipDigits(*text, end + 1);
      if (end >= text->size() || (*text)[end] != ')') continue;
      ++end;
    }
    if (end < text->size() && !IsBlankChar((*text)[end])) continue;
    const std::string_view number = text->substr(colon + 1, digits_end - colon - 1);
    int line = 0;
    for (char c : number) line = line < 100000000 ? line * 10 + (c - '0') : line;
    place->file = text->substr(0, colon);
    place->line = line;
    text->remove_prefix(end);
    return true;
  }
  return false;
}

class CCosmicParser : public COutputParser {
 public:
  void Compiler() override { ParseMarked(kCompilerMessage); }
  void Assembler() override { ParseMarked(kAssemblerMessage); }
  void Linker() override { ParseMarked(kLinkerMessage); }

 protected:
  void ParseMarked(int kind);
};

// "#error PROGRAM [FILE:LINE[(COL)]] TEXT", "#warning ...". The column is
// not kept: the entry points at the line.
void CCosmicParser::ParseMarked(int kind) {
  while (ReadLine()) {
    std::string_view text = line();
    int severity;
    if (StartsWith(text, "#error ")) {
      severity = CMessageTable::kError;
      text.remove_prefix(7);
    } else if (StartsWith(text, "#warning ")) {
      severity = CMessageTable::kWarning;
      text.remove_prefix(9);
    } else {
      continue;
    }
    text = TrimBlanks(text);
    const size_t blank = text.find_first_of(" \t");
    text = TrimBlanks(text.substr(blank == npos ? text.size() : blank));
    Place place;
    if (ReadPlace(&text, &place)) {
      AddMessage(kind, place.file, place.line, 1, severity, text, "");
    } else {
      AddMessage(kind, "", 0, 0, severity, text, "");
    }
  }
}

// The old linker's "PROGRAM: [FILE:LINE ]TEXT" lines, PROGRAM being one word
// (clnk, lnkhc11, a path to it). It printed nothing else on its error
// output, and only errors.
class CCosmicOldParser : public CCosmicParser {
 public:
  void Linker() override;
};

void CCosmicOldParser::Linker() {
  while (ReadLine()) {
    const std::string_view l = line();
    const size_t colon = l.find(": ");
    if (colon == npos || colon == 0 || l.substr(0, colon).find_first_of(" \t") != npos) continue;
    std::string_view text = TrimBlanks(l.substr(colon + 2));
    if (text.empty()) continue;
    Place place;
    if (ReadPlace(&text, &place)) {
      AddMessage(kLinkerMessage, place.file, place.line, 1, CMessageTable::kError, text, "");
    } else {
      AddMessage(kLinkerMessage, "", 0, 0, CMessageTable::kError, text, "");
    }
  }
}

}  // namespace

std::unique_ptr<COutputParser> MakeCosmicParser() { return std::make_unique<CCosmicParser>(); }

std::unique_ptr<COutputParser> MakeCosmicOldParser() {
  return std::make_unique<CCosmicOldParser>();
}

}  // namespace quillon
