#include "deps/include_line.h"

#include <cstring>

namespace quillon {
namespace {

constexpr std::string_view kInclude = "include";
// Shorter rests cannot hold a directive and a name.
constexpr size_t kMinDirectiveRest = 9;

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

size_t SkipBlanks(std::string_view text, size_t from) {
  while (from < text.size() && IsBlank(text[from])) ++from;
  return from;
}

LineMatch MatchInclude(std::string_view rest) {
  size_t pos = SkipBlanks(rest, 1);
  if (rest.size() - pos < kInclude.size() || rest.compare(pos, kInclude.size(), kInclude) != 0) {
    return {};
  }
  const size_t open = rest.find_first_of("<\"", pos + kInclude.size());
  if (open == std::string_view::npos) return {};
  const size_t close = rest.find_first_of(">\"", open + 1);
  if (close == std::string_view::npos || close == open + 1) return {};
  return {LineKind::kInclude, rest.substr(open + 1, close - open - 1)};
}

}  // namespace

LineMatch MatchDirectiveLine(std::string_view line, char directive) {
  const std::string_view rest = line.substr(SkipBlanks(line, 0));
  if (rest.empty()) return {};
  if (rest[0] == directive) {
    return rest.size() >= kMinDirectiveRest ? MatchInclude(rest) : LineMatch{};
  }
  if (rest[0] == '/' && rest.starts_with(kNoDependenciesMarker)) {
    return {LineKind::kNoDependencies, {}};
  }
  return {};
}

std::string_view MatchKeywordLine(std::string_view line, const KeywordIncludeRules& settings) {
  const size_t blanks = SkipBlanks(line, 0);
  if (blanks > 0 ? !settings.allow_blanks : settings.req_blanks) return {};
  std::string_view rest = line.substr(blanks);
  if (!rest.starts_with(settings.keyword)) return {};
  rest.remove_prefix(settings.keyword.size());

  size_t start;
  if (settings.start.empty()) {
    start = SkipBlanks(rest, 0);
  } else {
    start = rest.find(settings.start);
    if (start == std::string_view::npos) return {};
    ++start;  // after the first byte of the start string
  }
  if (start >= rest.size()) return {};

  size_t end = rest.size();
  if (!settings.end.empty()) {
    end = rest.find(settings.end, start);
    if (end == std::string_view::npos) return {};
  }
  std::string_view name = rest.substr(start, end - start);
  while (!name.empty() && IsBlank(name.back())) name.remove_suffix(1);
  return name;
}

DirectiveScanner::DirectiveScanner(const char* data, size_t size, char directive)
    : data_(data), size_(size), directive_(directive) {
  limit_ = FindMarkerLine();
}

bool DirectiveScanner::AtLineStart(size_t pos) const {
  while (pos > 0 && IsBlank(data_[pos - 1])) --pos;
  return pos == 0 || data_[pos - 1] == '\r' || data_[pos - 1] == '\n';
}

size_t DirectiveScanner::LineEnd(size_t pos) const {
  while (pos < size_ && data_[pos] != '\r' && data_[pos] != '\n') ++pos;
  return pos;
}

size_t DirectiveScanner::FindMarkerLine() const {
  const std::string_view text(data_, size_);
  for (size_t hit = text.find(kNoDependenciesMarker); hit != std::string_view::npos;
       hit = text.find(kNoDependenciesMarker, hit + 1)) {
    if (AtLineStart(hit)) return hit;
  }
  return size_;
}

bool DirectiveScanner::Next(std::string_view* name) {
  while (pos_ < limit_) {
    const void* found = std::memchr(data_ + pos_, directive_, limit_ - pos_);
    if (found == nullptr) break;
    const size_t hit = static_cast<const char*>(found) - data_;
    if (!AtLineStart(hit)) {
      pos_ = hit + 1;
      continue;
    }
    const size_t end = LineEnd(hit);
    pos_ = end;
    const std::string_view rest(data_ + hit, end - hit);
    if (rest.size() < kMinDirectiveRest) continue;
    const LineMatch match = MatchInclude(rest);
    if (match.kind != LineKind::kInclude) continue;
    hit_ = hit;
    *name = match.name;
    return true;
  }
  pos_ = limit_;
  return false;
}

int DirectiveScanner::line() {
  // CR LF is one ending; `counted_` never falls between its two bytes.
  for (; counted_ < hit_; ++counted_) {
    const char c = data_[counted_];
    if (c == '\n' || (c == '\r' && (counted_ + 1 >= size_ || data_[counted_ + 1] != '\n'))) {
      ++line_;
    }
  }
  return line_;
}

LineReader::LineReader(const char* data, size_t size) : data_(data), size_(size) {
  next_cr_ = Find('\r', 0);
  next_lf_ = Find('\n', 0);
}

size_t LineReader::Find(char c, size_t from) const {
  if (from >= size_) return size_;
  const void* hit = std::memchr(data_ + from, c, size_ - from);
  return hit == nullptr ? size_ : static_cast<size_t>(static_cast<const char*>(hit) - data_);
}

bool LineReader::Next(std::string_view* line) {
  if (pos_ >= size_) return false;
  if (next_cr_ < pos_) next_cr_ = Find('\r', pos_);
  if (next_lf_ < pos_) next_lf_ = Find('\n', pos_);
  const size_t end = next_cr_ < next_lf_ ? next_cr_ : next_lf_;
  *line = std::string_view(data_ + pos_, end - pos_);
  if (end == size_) {
    pos_ = size_;
  } else if (data_[end] == '\r' && end + 1 < size_ && data_[end + 1] == '\n') {
    pos_ = end + 2;
  } else {
    pos_ = end + 1;
  }
  return true;
}

}  // namespace quillon
