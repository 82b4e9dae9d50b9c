// The Avocet family: the AvCase C compilers, the AVMAC/AVA51 assemblers and
// AVLINK, as "Avocet-8051", "Avocet-11" and "Avocet-Z80".
//
// The C compilers come from HI-TECH and print its messages (hitech_lines.h):
//   main.c: 12: undefined identifier: count
//   main.c: 20: function declared implicit int (warning)
// The 8051 assembler names the line and file in words:
//   Error in line 34 of main.a51: Undefined symbol
// the 68HC11 and Z80 assemblers put the place first:
//   Line 34 (main.s11): ERROR - Undefined symbol
// and the linker writes "Error: text" or "Warning: text" without a place.
#include <memory>
#include <string_view>

#include "filters/hitech_lines.h"
#include "filters/output_parser.h"
#include "filters/text_scan.h"
#include "platform/path.h"

namespace quillon {
namespace {

constexpr size_t npos = std::string_view::npos;

struct Message {
  std::string_view file;
  int line = 0;
  int severity = CMessageTable::kError;
  std::string_view text;
};

// " in line 34 of main.a51: text" behind the severity word.
bool ReadWordedPlace(std::string_view rest, Message* m) {
  if (rest.substr(0, 9) != " in line ") return false;
  rest.remove_prefix(9);
  const int number = CutNumber(&rest);
  if (number == -1 || rest.substr(0, 4) != " of ") return false;
  rest.remove_prefix(4);
  const size_t colon = rest.find(": ");
  if (colon == npos) return false;
  m->file = TrimBlanks(rest.substr(0, colon));
  m->line = number;
  m->text = TrimBlanks(rest.substr(colon + 2));
  return true;
}

// "Line 34 (main.s11): ERROR - text"; the file may be left out.
bool ReadLineFirst(std::string_view line, Message* m) {
  std::string_view rest = TrimBlanks(line);
  if (rest.substr(0, 5) != "Line ") return false;
  rest = SkipBlanks(rest.substr(5));
  const int number = CutNumber(&rest);
  if (number == -1) return false;
  rest = SkipBlanks(rest);
  if (!rest.empty() && rest.front() == '(') {
    const size_t close = rest.find(')');
    if (close == npos) return false;
    m->file = TrimBlanks(rest.substr(1, close - 1));
    rest = SkipBlanks(rest.substr(close + 1));
  }
  if (rest.empty() || rest.front() != ':') return false;
  rest = SkipBlanks(rest.substr(1));
  if (rest.substr(0, 5) == "ERROR") {
    rest.remove_prefix(5);
  } else if (rest.substr(0, 7) == "WARNING") {
    m->severity = CMessageTable::kWarning;
    rest.remove_prefix(7);
  } else {
    return false;
  }
  while (!rest.empty() && (rest.front() == ' ' || rest.front() == '-' || rest.front() == ':')) {
    rest.remove_prefix(1);
  }
  m->line = number;
  m->text = TrimBlanks(rest);
  return true;
}

class CAvocetParser : public COutputParser {
 public:
  explicit CAvocetParser(bool avma51) : avma51_(avma51) {}

  void Compiler() override;
  void Assembler() override;
  void Linker() override { ParseSeverityWordLines(kLinkerMessage); }

 private:
  bool avma51_;  // the 8051 assembler's worded layout
};

void CAvocetParser::Compiler() {
  while (ReadLine()) {
    HiTechMessage m;
    if (!ReadHiTechLine(line(), &m)) continue;
    AddMessage(kCompilerMessage, m.file, m.line, m.line > 0 ? 1 : 0, m.severity, m.text, m.code);
  }
}

void CAvocetParser::Assembler() {
  while (ReadLine()) {
    Message m;
    if (avma51_) {
      if (FindWord("Error", true)) {
        m.severity = CMessageTable::kError;
      } else if (FindWord("Warning", true)) {
        m.severity = CMessageTable::kWarning;
      } else {
        continue;
      }
      if (!ReadWordedPlace(RestOfLine(), &m)) continue;
    } else if (!ReadLineFirst(line(), &m)) {
      continue;
    }
    AddMessage(kAssemblerMessage, m.file, m.line, 1, m.severity, m.text, "");
  }
}

}  // namespace

std::unique_ptr<COutputParser> MakeAvocet8051Parser() {
  return std::make_unique<CAvocetParser>(true);
}

std::unique_ptr<COutputParser> MakeAvocetParser() { return std::make_unique<CAvocetParser>(false); }

}  // namespace quillon
