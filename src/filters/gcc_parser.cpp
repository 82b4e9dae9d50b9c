// The GCC family: gcc/g++ (cc1), GNU as and GNU ld, native or cross.
#include <algorithm>
#include <memory>
#include <string>
#include <string_view>

#include "filters/output_parser.h"
#include "filters/text_scan.h"
#include "platform/path.h"

namespace quillon {
namespace {

constexpr size_t npos = std::string_view::npos;

// Digits at the head of `text` followed by ':'; consumes both.
bool ReadNumberAndColon(std::string_view* text, int* number) {
  size_t i = 0;
  long long value = 0;
  while (i < text->size() && IsDigitChar((*text)[i]) && i < 9)
    value = value * 10 + ((*text)[i++] - '0');
  if (i == 0 || i >= text->size() || (*text)[i] != ':') return false;
  *number = static_cast<int>(value);
  text->remove_prefix(i + 1);
  return true;
}

// Whether RemoveMultipleBackslashes would change `path`: a separator that
// is not the native one, or two in a row. Most names need nothing.
bool NeedsSeparatorCleanup(std::string_view path) {
  for (size_t i = 0; i < path.size(); ++i) {
    if (!IsPathSeparator(path[i])) continue;
    if (path[i] != kPathSeparator) return true;
    if (i + 1 < path.size() && IsPathSeparator(path[i + 1])) return true;
  }
  return false;
}

enum class Tool { kNone, kLinker, kDriver };

// The program named in a "PROGRAM: " prefix: ld in its many names ("ld",
// "/usr/bin/ld", "arm-none-eabi-ld", "ld.bfd", "C:\gcc\bin\ld.exe"),
// collect2, or the gcc driver itself.
Tool ToolOf(std::string_view name) {
  const size_t slash = name.find_last_of("/\\");
  if (slash != npos) name.remove_prefix(slash + 1);
  if (name.empty() || name.find_first_of(" \t:") != npos) return Tool::kNone;
  if (name.size() > 4 && EqualsNoCase(name.substr(name.size() - 4), ".exe")) {
    name.remove_suffix(4);
  }
  Tool tool = Tool::kNone;
  while (!name.empty()) {
    const size_t dash = name.find('-');
    const std::string_view part = name.substr(0, dash);
    if (part == "ld" || part == "ld.bfd" || part == "ld.gold" || part == "ld.lld" ||
        part == "collect2") {
      return Tool::kLinker;
    }
    if (part == "gcc" || part == "g++" || part == "cc" || part == "c++") tool = Tool::kDriver;
    if (dash == npos) break;
    name.remove_prefix(dash + 1);
  }
  return tool;
}

constexpr int kNote = -1;
constexpr SeverityMarker kMarkers[] = {
    {"fatal error:", CMessageTable::kFatal},
    {"error:", CMessageTable::kError},
    {"warning:", CMessageTable::kWarning},
    {"note:", kNote},
};

// A severity word at the head of `text`, cut off; false when there is none.
bool ReadMarker(std::string_view* text, int* severity) {
  for (const SeverityMarker& marker : kMarkers) {
    if (StartsWithNoCase(*text, marker.word)) {
      *severity = marker.severity;
      *text = SkipBlanks(text->substr(marker.word.size()));
      return true;
    }
  }
  return false;
}

// Where a linker message points.
struct Place {
  std::string_view file;
  int line = 0;
  int column = 0;
  bool located = false;  // a line number or a section was read
};

// Reads "FILE:LINE:[COLUMN:] ", "FILE:(SECTION): ", "FILE(SECTION): ",
// "OBJECT:SOURCE:(SECTION): " and the bare "OBJECT: " of ld's context
// lines from the head of `text`, leaving the message behind it.
bool ReadPlace(std::string_view* text, Place* place) {
  std::string_view rest = *text;
  // A drive letter's colon is part of the name.
  size_t from =
      (rest.size() > 2 && IsLetterChar(rest[0]) && rest[1] == ':' && IsPathSeparator(rest[2])) ? 2
                                                                                               : 0;
  for (int nesting = 0; nesting < 2; ++nesting) {
    const size_t colon = rest.find(':', from);
    if (colon == npos || colon == 0) return false;
    std::string_view file = rest.substr(0, colon);
    std::string_view after = rest.substr(colon + 1);
    Place found;
    if (ReadNumberAndColon(&after, &found.line)) {
      found.located = true;
      ReadNumberAndColon(&after, &found.column);
    } else if (!after.empty() && after.front() == '(') {
      const size_t close = after.find("):");
      if (close == npos) return false;
      found.located = true;
      after.remove_prefix(close + 2);
    } else if (file.find_first_of(" \t") != npos) {
      return false;
    } else if (after.empty() || after.front() == ' ' || after.front() == '\t') {
      // An older ld writes the section in parentheses behind the object.
      const size_t open = file.find('(');
      if (open != npos && open > 0 && file.back() == ')') {
        file = file.substr(0, open);
        found.located = true;
      }
    } else {
      // "object:source:(section): ..." names the object, then the source.
      rest = after;
      from = 0;
      continue;
    }
    found.file = file;
    *place = found;
    *text = SkipBlanks(after);
    return true;
  }
  return false;
}

bool IsContextLine(std::string_view text) {
  return StartsWithNoCase(text, "in function ") || StartsWithNoCase(text, "first defined here");
}

class CGccParser : public TranslatorsAlike<COutputParser> {
 public:
  void Linker() override;

 private:
  void ParseTranslator(int kind) override;
  void ParseLinkerLine(std::string_view text);

  std::string file_buffer_;
};

// "file:line: text", where a warning or error word opens the text. The
// colon is looked for from index 3 on so that a drive letter's is passed
// over. A column after the line number is not taken apart: it stays at the
// head of the text, and such a line counts as an error.
void CGccParser::ParseTranslator(int kind) {
  while (ReadLine()) {
    const size_t colon = line().find(':', 3);
    if (colon == npos) continue;
    SetPosition(colon);
    const int number = NumberBetween(":", ":");
    if (number == -1) continue;
    std::string_view file = line().substr(0, colon);
    if (NeedsSeparatorCleanup(file)) {
      file_buffer_ = RemoveMultipleBackslashes(file);
      file = file_buffer_;
    }
    SkipWhiteSpace();
    std::string_view text = RestOfLine();
    int severity = CMessageTable::kError;
    if (StartsWithNoCase(text, "warning")) {
      severity = CMessageTable::kWarning;
      text.remove_prefix(std::min<size_t>(8, text.size()));
    } else if (StartsWithNoCase(text, "error")) {
      text.remove_prefix(std::min<size_t>(6, text.size()));
    }
    AddMessage(kind, file, number, 1, severity, text, "");
  }
}

// GNU ld, alone or run by gcc through collect2. A line may open with the
// program's name ("/usr/bin/ld: ", "arm-none-eabi-ld: ", "collect2: "),
// then either a severity word ("error:", "warning:", "fatal error:") with the
// message, or a place (source file and line, object and section, or just an
// object) and the message, which may again open with a severity word.
// Context lines ("In function `main':", "first defined here") and notes are
// skipped. A message without a severity word is an error when ld printed it
// or when it points at a line or section ("main.c:(.text+0x5): undefined
// reference to `foo'"). File and line are kept when the line has them; line
// and column are 0 when it has none. collect2's closing "ld returned 1 exit
// status" counts only when nothing before it did, so that a failed link is
// never silent and never counted twice.
void CGccParser::Linker() {
  while (ReadLine()) ParseLinkerLine(line());
}

void CGccParser::ParseLinkerLine(std::string_view text) {
  Tool tool = Tool::kNone;
  const size_t prefix_end = text.find(": ");
  if (prefix_end != npos) {
    tool = ToolOf(text.substr(0, prefix_end));
    if (tool != Tool::kNone) text = SkipBlanks(text.substr(prefix_end + 2));
  }

  int severity = CMessageTable::kError;
  bool marked = ReadMarker(&text, &severity);
  Place place;
  if (!marked && ReadPlace(&text, &place)) marked = ReadMarker(&text, &severity);

  if (severity == kNote || IsContextLine(text) || text.empty()) return;
  if (!marked && !place.located && tool != Tool::kLinker) return;
  if (tool == Tool::kLinker && StartsWithNoCase(text, "ld returned ") && messages_added() > 0) {
    return;
  }
  const std::string file =
      place.file.empty() ? std::string() : RemoveMultipleBackslashes(place.file);
  AddMessage(kLinkerMessage, file, place.line, place.column, severity, text, "");
}

}  // namespace

std::unique_ptr<COutputParser> MakeGccParser() { return std::make_unique<CGccParser>(); }

}  // namespace quillon
