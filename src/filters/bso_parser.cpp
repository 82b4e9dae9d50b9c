// The classic BSO/Tasking tool chains for 8051, 80C196, 80C251 and C166.
// Their compilers and newer tools write a severity letter and a number,
// with the place in brackets:
//
//   c51 E 227: ["main.c" 12] syntax error                  (E, W, F; S is fatal too)
//   >>>> E 227: ["main.c" 12] syntax error                 (c166, under its source echo)
//   link251 E 201: unresolved external "_f" in main.obj     (no place)
//
// the Intel-compatible assemblers and linkers upper-case words:
//
//   **** ERROR #20, LINE #12, UNDEFINED SYMBOL              (asm51)
//   *** ERROR 102: UNRESOLVED EXTERNAL SYMBOL               (rl51, rl196; then
//       SYMBOL:  _f                                          indented details)
//   *** FATAL ERROR 216: CANNOT FIND FILE
//
// and the c196 compiler, the a251 assembler and the l166 linker their own:
//
//   Error 58: main.c line 12: undeclared identifier "x"     (c196)
//   E 20: main.src line 12: undefined symbol "X"            (a251)
//   l166 Fatal error: cannot open file "x.obj"              (l166)
#include <memory>
#include <string>
#include <string_view>

#include "filters/output_parser.h"
#include "filters/text_scan.h"
#include "platform/path.h"

namespace quillon {
namespace {

constexpr size_t npos = std::string_view::npos;

struct Diagnostic {
  std::string file;
  int line = 0;
  int column = 0;
  int severity = CMessageTable::kError;
  std::string code;
  std::string_view text;
};

// "[TOOL ]L NNN: " with L one of E, W, F, S; the code is the letter and
// the number ("E227"). Information messages (I) are not diagnostics.
bool ReadLetterHead(std::string_view* text, Diagnostic* d) {
  std::string_view rest = SkipBlanks(*text);
  if (rest.size() > 1 && !IsBlankChar(rest[1])) {
    const size_t blank = rest.find(' ');
    if (blank == npos) return false;
    rest = SkipBlanks(rest.substr(blank));
  }
  if (rest.size() < 3 || !IsBlankChar(rest[1])) return false;
  switch (rest[0]) {
    case 'E':
      d->severity = CMessageTable::kError;
      break;
    case 'W':
      d->severity = CMessageTable::kWarning;
      break;
    case 'F':
    case 'S':
      d->severity = CMessageTable::kFatal;
      break;
    default:
      return false;
  }
  const char letter = rest[0];
  rest = SkipBlanks(rest.substr(1));
  const std::string_view digits = rest;
  int number = 0;
  if (!ReadNumber(&rest, &number) || !StartsWith(rest, ":")) return false;
  d->code = std::string(1, letter) + std::string(digits.substr(0, digits.size() - rest.size()));
  *text = SkipBlanks(rest.substr(1));
  return true;
}

// `["FILE" LINE[/COLUMN]] ` at the head of `text`, cut off.
bool ReadBracketPlace(std::string_view* text, Diagnostic* d) {
  if (!StartsWith(*text, "[\"")) return false;
  const size_t quote = text->find('"', 2);
  if (quote == npos) return false;
  std::string_view rest = SkipBlanks(text->substr(quote + 1));
  int line = 0;
  int column = 1;
  if (!ReadNumber(&rest, &line)) return false;
  if (StartsWith(rest, "/")) {
    rest.remove_prefix(1);
    if (!ReadNumber(&rest, &column)) return false;
  }
  if (!StartsWith(rest, "]")) return false;
  d->file = text->substr(2, quote - 2);
  d->line = line;
  d->column = column;
  *text = SkipBlanks(rest.substr(1));
  return true;
}

// "FILE line N: " at the head of `text`, cut off.
bool ReadLinePlace(std::string_view* text, Diagnostic* d) {
  const size_t at = text->find(" line ");
  if (at == npos || at == 0) return false;
  std::string_view rest = text->substr(at + 6);
  int line = 0;
  if (!ReadNumber(&rest, &line) || !StartsWith(rest, ":")) return false;
  d->file = std::string(TrimBlanks(text->substr(0, at)));
  d->line = line;
  *text = SkipBlanks(rest.substr(1));
  return true;
}

// `STARS SEVERITY CODE: TEXT` or `STARS SEVERITY #CODE, LINE #N, TEXT`, the
// severity one of FATAL ERROR, ERROR, WARNING.
bool ReadStarLine(std::string_view text, std::string_view stars, Diagnostic* d) {
  if (!StartsWith(text, stars) || !StartsWith(text.substr(stars.size()), " ")) return false;
  text = SkipBlanks(text.substr(stars.size()));
  if (StartsWith(text, "FATAL ERROR")) {
    d->severity = CMessageTable::kFatal;
    text.remove_prefix(11);
  } else if (StartsWith(text, "ERROR")) {
    d->severity = CMessageTable::kError;
    text.remove_prefix(5);
  } else if (StartsWith(text, "WARNING")) {
    d->severity = CMessageTable::kWarning;
    text.remove_prefix(7);
  } else {
    return false;
  }
  text = SkipBlanks(text);
  if (StartsWith(text, "#")) text.remove_prefix(1);
  const size_t end = text.find_first_of(":,");
  if (end == npos) return false;
  d->code = std::string(TrimBlanks(text.substr(0, end)));
  text = SkipBlanks(text.substr(end + 1));
  if (StartsWith(text, "LINE #")) {
    std::string_view rest = text.substr(6);
    if (ReadNumber(&rest, &d->line) && StartsWith(rest, ",")) text = SkipBlanks(rest.substr(1));
  }
  d->text = text;
  return true;
}

class CBsoParser : public COutputParser {
 protected:
  void Add(int kind, const Diagnostic& d, std::string_view text) {
    const int column = d.line > 0 ? (d.column > 0 ? d.column : 1) : 0;
    AddMessage(kind, d.file, d.line, column, d.severity, text, d.code);
  }
  // Letter-coded lines, optionally behind `prefix`, with an optional
  // bracketed place.
  void ParseLetterLines(int kind, std::string_view prefix);
  // "*** ..." linker lines and the indented details under them.
  void ParseStarLinker();
};

void CBsoParser::ParseLetterLines(int kind, std::string_view prefix) {
  while (ReadLine()) {
    std::string_view rest = line();
    if (!StartsWith(rest, prefix)) continue;
    rest.remove_prefix(prefix.size());
    Diagnostic d;
    if (!ReadLetterHead(&rest, &d)) continue;
    ReadBracketPlace(&rest, &d);
    Add(kind, d, rest);
  }
}

void CBsoParser::ParseStarLinker() {
  while (ReadLine()) {
    Diagnostic d;
    if (!ReadStarLine(line(), "***", &d)) continue;
    std::string text(d.text);
    while (ReadLine()) {
      const std::string_view l = line();
      const std::string_view trimmed = SkipBlanks(l);
      if (l.empty() || !IsBlankChar(l.front()) || trimmed.empty()) {
        PushBack();
        break;
      }
      if (!text.empty()) text += '\n';
      text.append(trimmed);
    }
    d.line = 0;
    Add(kLinkerMessage, d, text);
  }
}

class CBso8051Parser : public CBsoParser {
 public:
  void Compiler() override { ParseLetterLines(kCompilerMessage, ""); }
  void Assembler() override;
  void Linker() override { ParseStarLinker(); }
};

void CBso8051Parser::Assembler() {
  while (ReadLine()) {
    Diagnostic d;
    if (ReadStarLine(line(), "****", &d)) Add(kAssemblerMessage, d, d.text);
  }
}

// c196: "Error 58: FILE line N: TEXT", "Warning ..."; without a place the
// message is about the translated file as a whole.
class CBso196Parser : public CBsoParser {
 public:
  void Compiler() override;
  void Linker() override { ParseStarLinker(); }
};

void CBso196Parser::Compiler() {
  while (ReadLine()) {
    std::string_view rest = line();
    Diagnostic d;
    if (StartsWith(rest, "Error")) {
      rest.remove_prefix(5);
    } else if (StartsWith(rest, "Warning")) {
      d.severity = CMessageTable::kWarning;
      rest.remove_prefix(7);
    } else {
      continue;
    }
    const std::string_view digits = SkipBlanks(rest);
    rest = digits;
    int number = 0;
    if (ReadNumber(&rest, &number))
      d.code = std::string(digits.substr(0, digits.size() - rest.size()));
    if (!StartsWith(rest, ":")) continue;
    rest = SkipBlanks(rest.substr(1));
    ReadLinePlace(&rest, &d);
    Add(kCompilerMessage, d, rest);
  }
}

// c251 writes like c51; a251 puts "FILE line N:" behind its letter; the
// linker writes letter lines without a place.
class CBso251Parser : public CBsoParser {
 public:
  void Compiler() override { ParseLetterLines(kCompilerMessage, ""); }
  void Assembler() override;
  void Linker() override { ParseLetterLines(kLinkerMessage, ""); }
};

void CBso251Parser::Assembler() {
  while (ReadLine()) {
    std::string_view rest = line();
    Diagnostic d;
    if (!ReadLetterHead(&rest, &d) || !ReadLinePlace(&rest, &d)) continue;
    Add(kAssemblerMessage, d, rest);
  }
}

// c166 marks its messages with ">>>>" under the echoed source line; a166
// writes letter lines; l166 stops with "Fatal error:".
class CBso166Parser : public CBsoParser {
 public:
  void Compiler() override { ParseLetterLines(kCompilerMessage, ">>>>"); }
  void Assembler() override { ParseLetterLines(kAssemblerMessage, ""); }
  void Linker() override;
};

void CBso166Parser::Linker() {
  while (ReadLine()) {
    const size_t at = line().find("Fatal error:");
    if (at == npos) continue;
    Diagnostic d;
    d.severity = CMessageTable::kFatal;
    Add(kLinkerMessage, d, line().substr(at + 12));
  }
}

}  // namespace

std::unique_ptr<COutputParser> MakeBso8051Parser() { return std::make_unique<CBso8051Parser>(); }
std::unique_ptr<COutputParser> MakeBso196Parser() { return std::make_unique<CBso196Parser>(); }
std::unique_ptr<COutputParser> MakeBso251Parser() { return std::make_unique<CBso251Parser>(); }
std::unique_ptr<COutputParser> MakeBso166Parser() { return std::make_unique<CBso166Parser>(); }

}  // namespace quillon
