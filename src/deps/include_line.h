// Recognising include directives, one line at a time, and splitting a mapped
// file into lines. Lines end at CR, LF or CR LF; the ending is not part of
// the line and the last line may have none.
#ifndef QUILLON_DEPS_INCLUDE_LINE_H
#define QUILLON_DEPS_INCLUDE_LINE_H

#include <cstddef>
#include <string_view>

#include "deps/scan_request.h"

namespace quillon {

inline constexpr std::string_view kNoDependenciesMarker = "//{{NO_DEPENDENCIES}}";

enum class LineKind { kOther, kInclude, kNoDependencies };

struct LineMatch {
  LineKind kind = LineKind::kOther;
  std::string_view name;  // for kInclude: the text between the delimiters
};

// C style with '#', Verilog style with '`'.
LineMatch MatchDirectiveLine(std::string_view line, char directive);

// The include directives of a whole file in C or Verilog style, as
// MatchDirectiveLine would find them line by line up to the first marker
// line, but found by searching for the directive character: most lines
// never need to be looked at, and line numbers are counted only when asked.
class DirectiveScanner {
 public:
  DirectiveScanner(const char* data, size_t size, char directive);
  // The next directive's name; false when none is left.
  bool Next(std::string_view* name);
  // The line (from 1) of the directive Next gave last.
  int line();
  // Whether the file has a marker line; directives behind it are not given.
  bool has_marker() const { return limit_ < size_; }

 private:
  bool AtLineStart(size_t pos) const;
  size_t LineEnd(size_t pos) const;
  size_t FindMarkerLine() const;

  const char* data_;
  size_t size_;
  char directive_;
  size_t limit_;        // the marker line's start, or size_
  size_t pos_ = 0;      // where the search goes on
  size_t hit_ = 0;      // the directive Next gave last
  size_t counted_ = 0;  // line endings before this offset are counted
  int line_ = 1;        // the line at `counted_`
};

// Keyword style (the caller checks `settings.valid`). Returns the name with
// trailing blanks cut, or an empty view when the line is no directive.
std::string_view MatchKeywordLine(std::string_view line, const KeywordIncludeRules& settings);

// Lines one by one, for the keyword style.
class LineReader {
 public:
  LineReader(const char* data, size_t size);
  // False once the data is used up; an empty file has no lines.
  bool Next(std::string_view* line);

 private:
  size_t Find(char c, size_t from) const;

  const char* data_;
  size_t size_;
  size_t pos_ = 0;
  // Next CR and LF at or after pos_ (size_ when none), found lazily so that
  // a file of one kind of ending is not searched again for the other.
  size_t next_cr_ = 0;
  size_t next_lf_ = 0;
};

}  // namespace quillon

#endif  // QUILLON_DEPS_INCLUDE_LINE_H
