#include "filters/parser_helpers.h"

#include "build/message_table.h"
#include "platform/path.h"

namespace quillon {
namespace {

// Longer words first, so that "fatal error" is not read as "fatal".
constexpr SeverityMarker kSeverityWords[] = {
    {"catastrophic error", CMessageTable::kFatal},
    {"internal error", CMessageTable::kError},
    {"fatal error", CMessageTable::kFatal},
    {"fatal", CMessageTable::kFatal},
    {"error", CMessageTable::kError},
    {"warning", CMessageTable::kWarning},
    {"remark", kSkippedSeverity},
    {"note", kSkippedSeverity},
    {"info", kSkippedSeverity},
};

}  // namespace

void CContinuedParser::AppendWrappedLines(std::string* text, size_t indent) {
  size_t before_last = std::string::npos;
  while (ReadLine()) {
    if (IsCaretLine(line())) {
      if (before_last != std::string::npos) text->resize(before_last);
      return;
    }
    if (IndentOf(line()) < indent) {
      PushBack();
      return;
    }
    before_last = text->size();
    text->append("\n").append(TrimBlanks(line()));
  }
}

bool IsCaretLine(std::string_view text) {
  bool caret = false;
  for (char c : text) {
    if (c == '^') {
      caret = true;
    } else if (!IsBlankChar(c)) {
      return false;
    }
  }
  return caret;
}

size_t IndentOf(std::string_view text) {
  size_t i = 0;
  while (i < text.size() && IsBlankChar(text[i])) ++i;
  return i;
}

bool ReadQuotedPlace(std::string_view text, QuotedPlace* place) {
  constexpr std::string_view kLineWord = "\", line ";
  const size_t at = text.find(kLineWord);
  if (at == std::string_view::npos) return false;
  std::string_view file = text.substr(0, at);
  if (!file.empty() && file.front() == '"') file.remove_prefix(1);
  if (TrimBlanks(file).empty()) return false;
  std::string_view rest = text.substr(at + kLineWord.size());
  QuotedPlace found;
  if (!ReadNumber(&rest, &found.line)) return false;
  constexpr std::string_view kColumnWord = " (column ";
  if (rest.substr(0, kColumnWord.size()) == kColumnWord) {
    rest.remove_prefix(kColumnWord.size());
    if (!ReadNumber(&rest, &found.column) || rest.empty() || rest.front() != ')') return false;
    rest.remove_prefix(1);
  }
  if (rest.empty() || rest.front() != ':') return false;
  found.file = file;
  found.rest = SkipBlanks(rest.substr(1));
  *place = found;
  return true;
}

bool ReadSeverityWord(std::string_view* text, int* severity) {
  for (const SeverityMarker& entry : kSeverityWords) {
    if (!StartsWithNoCase(*text, entry.word)) continue;
    // A whole word only: "errors detected" is no "error".
    const std::string_view after = text->substr(entry.word.size());
    if (!after.empty() && ((after.front() >= 'a' && after.front() <= 'z') ||
                           (after.front() >= 'A' && after.front() <= 'Z'))) {
      continue;
    }
    *severity = entry.severity;
    *text = after;
    return true;
  }
  return false;
}

std::string_view ReadHashCode(std::string_view* text) {
  std::string_view rest = SkipBlanks(*text);
  if (!rest.empty() && rest.front() == ':') rest = SkipBlanks(rest.substr(1));
  *text = rest;
  if (rest.empty() || rest.front() != '#') return {};
  const size_t colon = rest.find(':');
  if (colon == std::string_view::npos) return {};
  const std::string_view code = TrimBlanks(rest.substr(1, colon - 1));
  if (code.empty() || code.find_first_of(" \t") != std::string_view::npos) return {};
  *text = SkipBlanks(rest.substr(colon + 1));
  return code;
}

}  // namespace quillon
