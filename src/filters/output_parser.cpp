#include "filters/output_parser.h"

#include <algorithm>
#include <climits>
#include <cstring>

#include "filters/text_scan.h"
#include "platform/path.h"

namespace quillon {
namespace {

char LowerAscii(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

bool EqualNoCase(char a, char b) { return LowerAscii(a) == LowerAscii(b); }

bool IsSpace(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

// "%d": leading white space, a sign, then as many digits as there are.
// Values beyond int saturate rather than wrap.
int ReadDecimal(std::string_view text) {
  size_t i = 0;
  while (i < text.size() && IsSpace(text[i])) ++i;
  bool negative = false;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
  if (i == text.size() || text[i] < '0' || text[i] > '9') return -1;
  long long value = 0;
  for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
    value = std::min<long long>(value * 10 + (text[i] - '0'), static_cast<long long>(INT_MAX) + 1);
  }
  if (negative) return static_cast<int>(std::max<long long>(-value, INT_MIN));
  return static_cast<int>(std::min<long long>(value, INT_MAX));
}

size_t Clamp(ptrdiff_t pos, size_t size) {
  if (pos < 0) return 0;
  return std::min(static_cast<size_t>(pos), size);
}

}  // namespace

bool CapturedLines::Next(std::string_view* line) {
  if (pos_ >= text_.size()) return false;
  size_t end = text_.find('\n', pos_);
  const size_t next = end == std::string_view::npos ? text_.size() : end + 1;
  if (end == std::string_view::npos) end = text_.size();
  if (end > pos_ && text_[end - 1] == '\r') --end;
  *line = text_.substr(pos_, end - pos_);
  pos_ = next;
  return true;
}

bool StartsWithNoCase(std::string_view text, std::string_view prefix) {
  return text.size() >= prefix.size() &&
         std::equal(prefix.begin(), prefix.end(), text.begin(), EqualNoCase);
}

size_t FindNoCase(std::string_view text, std::string_view word, size_t from) {
  if (from > text.size()) return std::string_view::npos;
  const auto it =
      std::search(text.begin() + from, text.end(), word.begin(), word.end(), EqualNoCase);
  if (it == text.end() && !word.empty()) return std::string_view::npos;
  return static_cast<size_t>(it - text.begin());
}

void COutputParser::Attach(std::string_view captured_text, MessageListSink* sink) {
  lines_ = CapturedLines(captured_text);
  sink_ = sink;
  pushed_back_.clear();
  line_ = {};
  pos_ = start_mark_ = end_mark_ = 0;
  failed_ = false;
  messages_added_ = 0;
}

bool COutputParser::ReadLine() {
  if (!pushed_back_.empty()) {
    line_ = pushed_back_.back();
    pushed_back_.pop_back();
  } else if (!lines_.Next(&line_)) {
    line_ = {};
    return false;
  }
  pos_ = start_mark_ = end_mark_ = 0;
  failed_ = false;
  return true;
}

void COutputParser::PushBack() { pushed_back_.push_back(line_); }

void COutputParser::SetPosition(size_t pos) { pos_ = std::min(pos, line_.size()); }

void COutputParser::MovePosition(ptrdiff_t delta) {
  pos_ = Clamp(static_cast<ptrdiff_t>(pos_) + delta, line_.size());
}

void COutputParser::SkipWhiteSpace() {
  while (pos_ < line_.size() && (line_[pos_] == ' ' || line_[pos_] == '\t')) ++pos_;
}

void COutputParser::SetStartMark(ptrdiff_t offset) {
  start_mark_ = Clamp(static_cast<ptrdiff_t>(pos_) + offset, line_.size());
}

void COutputParser::SetEndMark(ptrdiff_t offset) {
  end_mark_ = Clamp(static_cast<ptrdiff_t>(pos_) + offset, line_.size());
}

std::string_view COutputParser::TextBetweenMarks() const {
  if (start_mark_ > end_mark_) return {};
  return line_.substr(start_mark_, end_mark_ - start_mark_);
}

size_t COutputParser::FindNth(std::string_view text, int n) const {
  if (n < 1 || text.empty()) return npos;
  size_t found = pos_;
  for (int i = 0; i < n; ++i) {
    found = line_.find(text, i == 0 ? found : found + text.size());
    if (found == npos) return npos;
  }
  return found;
}

// string_view::find with the comparison inline: the words searched for are
// short and their first letters common, so a call to memcmp per candidate
// would cost more than the search.
size_t FindText(std::string_view text, std::string_view word, size_t from) {
  if (from > text.size() || word.size() > text.size() - from) return std::string_view::npos;
  if (word.empty()) return from;
  const char* const begin = text.data();
  const char* const last = begin + (text.size() - word.size());
  for (const char* p = begin + from; p <= last; ++p) {
    p = static_cast<const char*>(std::memchr(p, word[0], static_cast<size_t>(last - p) + 1));
    if (p == nullptr) return std::string_view::npos;
    size_t i = 1;
    while (i < word.size() && p[i] == word[i]) ++i;
    if (i == word.size()) return static_cast<size_t>(p - begin);
  }
  return std::string_view::npos;
}

std::string_view COutputParser::TakeUpTo(std::string_view delimiter) {
  const size_t found = FindText(line_, delimiter, pos_);
  if (found == npos) {
    failed_ = true;
    return {};
  }
  pos_ = found + delimiter.size();
  return line_.substr(0, found);
}

std::string_view COutputParser::TakeBetween(std::string_view open, std::string_view close) {
  const size_t opened = FindText(line_, open, pos_);
  const size_t from = opened == npos ? npos : opened + open.size();
  const size_t closed = from == npos ? npos : FindText(line_, close, from);
  if (closed == npos) {
    failed_ = true;
    return {};
  }
  pos_ = closed + close.size();
  return line_.substr(from, closed - from);
}

int COutputParser::NumberBetween(std::string_view open, std::string_view close) {
  const bool failed_before = failed_;
  failed_ = false;
  const std::string_view text = TakeBetween(open, close);
  const bool missing = failed_;
  failed_ = failed_before || missing;
  return missing ? -1 : ReadDecimal(text);
}

bool COutputParser::FindWord(std::string_view word, bool case_sensitive) {
  const size_t found = case_sensitive ? FindText(line_, word, pos_) : FindNoCase(line_, word, pos_);
  if (found == npos) return false;
  pos_ = found + word.size();
  return true;
}

bool COutputParser::Contains(std::string_view text, size_t start) const {
  return FindText(line_, text, start) != npos;
}

std::string_view COutputParser::RestOfLine() const { return line_.substr(pos_); }

void COutputParser::AddMessage(int kind, std::string_view file, int line, int column, int severity,
                               std::string_view text, std::string_view code) {
  ++messages_added_;
  if (sink_ == nullptr) return;
  file = TrimBlanks(file);
  // One entry reused: its strings keep their capacity, so a long log of
  // diagnostics costs no allocation per entry.
  MessageEntry& entry = entry_;
  entry.kind = kind;
  if (file.empty()) {
    entry.file = project_file_;
  } else {
    entry.file.assign(file);
  }
  entry.line = line;
  entry.column = column;
  entry.severity = severity;
  entry.text.assign(TrimBlanks(text));
  entry.code.assign(TrimBlanks(code));
  sink_->AddMessage(entry);
}

void COutputParser::ParseSeverityWordLines(int kind) {
  while (ReadLine()) {
    std::string_view text = TrimBlanks(line());
    int severity = CMessageTable::kError;
    if (CutSeverityWord(&text, &severity)) AddMessage(kind, "", 0, 0, severity, text, "");
  }
}

}  // namespace quillon
