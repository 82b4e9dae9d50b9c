// Small scanning helpers the vendor parsers share: ASCII classes, blanks,
// bounded decimal numbers and severity words on string views.
#ifndef QUILLON_FILTERS_TEXT_SCAN_H
#define QUILLON_FILTERS_TEXT_SCAN_H

#include <string_view>

#include "build/message_table.h"

namespace quillon {

// A word a tool prints before a message, and the severity it gives.
struct SeverityMarker {
  std::string_view word;
  int severity;
};

inline bool IsDigitChar(char c) { return c >= '0' && c <= '9'; }
inline bool IsLetterChar(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
inline bool IsBlankChar(char c) { return c == ' ' || c == '\t'; }

inline bool StartsWith(std::string_view text, std::string_view prefix) {
  return text.substr(0, prefix.size()) == prefix;
}

inline std::string_view SkipBlanks(std::string_view text) {
  while (!text.empty() && IsBlankChar(text.front())) text.remove_prefix(1);
  return text;
}

// Leading digits read as a number and cut off; -1 when there are none. More
// than 9 digits are no line number, so the reading stops there.
inline int CutNumber(std::string_view* text) {
  size_t i = 0;
  int value = 0;
  while (i < text->size() && i < 9 && IsDigitChar((*text)[i])) {
    value = value * 10 + ((*text)[i++] - '0');
  }
  if (i == 0) return -1;
  text->remove_prefix(i);
  return value;
}

// Up to 9 decimal digits at the head of `*text`, consumed; false (and
// nothing consumed) without one.
inline bool ReadNumber(std::string_view* text, int* number) {
  const int value = CutNumber(text);
  if (value < 0) return false;
  *number = value;
  return true;
}

// The whole of `text` as a number (1 to 9 digits); -1 otherwise.
inline int WholeNumber(std::string_view text) {
  const int value = CutNumber(&text);
  return text.empty() ? value : -1;
}

// "Fatal error:", "Fatal:", "Error:" or "Warning:" (any case, blanks allowed
// before the colon) opening `text`, cut off; the severity it gives.
inline bool CutSeverityWord(std::string_view* text, int* severity) {
  static constexpr SeverityMarker kWords[] = {{"fatal error", CMessageTable::kFatal},
                                              {"fatal", CMessageTable::kFatal},
                                              {"error", CMessageTable::kError},
                                              {"warning", CMessageTable::kWarning}};
  for (const SeverityMarker& w : kWords) {
    if (text->size() < w.word.size()) continue;
    bool same = true;
    for (size_t i = 0; i < w.word.size() && same; ++i) {
      const char c = (*text)[i];
      same = (c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c) == w.word[i];
    }
    if (!same) continue;
    const std::string_view rest = SkipBlanks(text->substr(w.word.size()));
    if (rest.empty() || rest.front() != ':') continue;
    *text = SkipBlanks(rest.substr(1));
    *severity = w.severity;
    return true;
  }
  return false;
}

}  // namespace quillon

#endif  // QUILLON_FILTERS_TEXT_SCAN_H
