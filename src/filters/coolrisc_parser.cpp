// GNU tools for CoolRISC (the C816 port of gcc, gas and ld): only the
// linker's output is read.
//
//   C816-LD.EXE: cannot open -lmath: No such file or directory
//   C816-LD.EXE: warning: cannot find entry symbol _start
//   main.o(.text+0x1a): undefined reference to `init_port'
//   main.c:12: undefined reference to `init_port'
//   util.o: error: ...
#include <memory>
#include <string_view>

#include "filters/parser_helpers.h"

namespace quillon {
namespace {

constexpr size_t npos = std::string_view::npos;

// "FILE:LINE", "OBJECT(SECTION+OFFSET)", "OBJECT(SECTION+OFFSET):SOURCE"
// or "OBJECT" before a message.
struct Place {
  std::string_view file;
  int line = 0;
};
Place ReadPlace(std::string_view head) {
  head = TrimBlanks(head);
  // A head of several words is some program's banner, not a file.
  if (head.find_first_of(" \t") != npos) return {};
  const size_t colon = head.rfind(':');
  if (colon != npos && colon > 1) {
    std::string_view digits = head.substr(colon + 1);
    int number = 0;
    if (ReadNumber(&digits, &number) && digits.empty()) return {head.substr(0, colon), number};
    // "main.o(.text+0x1a):main.c": the source named behind the object.
    if (!digits.empty()) head = head.substr(colon + 1);
  }
  const size_t open = head.find('(');
  if (open != npos && open > 0 && head.back() == ')') return {head.substr(0, open), 0};
  return {head, 0};
}

class CCoolRiscParser : public COutputParser {
 public:
  void Linker() override;

 private:
  void AddPlaced(std::string_view head, int severity, std::string_view text);
};

void CCoolRiscParser::AddPlaced(std::string_view head, int severity, std::string_view text) {
  const Place place = ReadPlace(head);
  AddMessage(kLinkerMessage, place.file, place.line, place.line > 0 ? 1 : 0, severity, text, "");
}

// The program's own lines count whatever follows its name; others count
// when they are about an undefined reference or carry a severity word.
// "In function" lines only say where the next reference is.
void CCoolRiscParser::Linker() {
  constexpr std::string_view kProgram = "C816-LD.EXE:";
  while (ReadLine()) {
    const std::string_view text = line();
    if (StartsWithNoCase(text, kProgram)) {
      std::string_view rest = SkipBlanks(text.substr(kProgram.size()));
      int severity = CMessageTable::kError;
      if (rest.substr(0, 8) == "warning:") {
        severity = CMessageTable::kWarning;
        rest = rest.substr(8);
      } else if (rest.substr(0, 6) == "error:") {
        rest = rest.substr(6);
      }
      if (!TrimBlanks(rest).empty()) AddMessage(kLinkerMessage, "", 0, 0, severity, rest, "");
      continue;
    }
    size_t at = text.find(": undefined reference");
    if (at != npos) {
      AddPlaced(text.substr(0, at), CMessageTable::kError, text.substr(at + 2));
    } else if ((at = text.find(": error:")) != npos) {
      AddPlaced(text.substr(0, at), CMessageTable::kError, text.substr(at + 8));
    } else if ((at = text.find(": warning:")) != npos) {
      AddPlaced(text.substr(0, at), CMessageTable::kWarning, text.substr(at + 10));
    }
  }
}

}  // namespace

std::unique_ptr<COutputParser> MakeCoolRiscParser() { return std::make_unique<CCoolRiscParser>(); }

}  // namespace quillon
