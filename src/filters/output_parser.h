// The base of every vendor parser: the captured text as lines, a cursor in
// the current line, the search operations the parsers are written in, and the
// way entries leave.
//
// A parser lives for one run over one captured file, on the thread that
// filters. Lines are views into the captured text, which must outlive the
// run; nothing is copied until an entry is made.
#ifndef QUILLON_FILTERS_OUTPUT_PARSER_H
#define QUILLON_FILTERS_OUTPUT_PARSER_H

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "filters/message_list.h"

namespace quillon {

// Splits text into lines at LF. A CR before the LF (or at the very end) is
// not part of the line; a last line without LF still counts; an empty text
// has no lines. Other bytes, NUL included, are line content.
class CapturedLines {
 public:
  CapturedLines() = default;
  explicit CapturedLines(std::string_view text) : text_(text) {}

  bool Next(std::string_view* line);

 private:
  std::string_view text_;
  size_t pos_ = 0;
};

class COutputParser {
 public:
  static constexpr size_t npos = std::string_view::npos;

  COutputParser() = default;
  COutputParser(const COutputParser&) = delete;
  COutputParser& operator=(const COutputParser&) = delete;
  virtual ~COutputParser() = default;

  // Set up by the filter before one of the three operations runs.
  void Attach(std::string_view captured_text, MessageListSink* sink);
  void set_captured_file(std::string name) { captured_file_ = std::move(name); }
  const std::string& captured_file() const { return captured_file_; }
  // The file being translated; entries that name no file get it.
  void set_project_file(std::string file) { project_file_ = std::move(file); }
  const std::string& project_file() const { return project_file_; }

  // One per translator; each reads the captured lines to the end. A family
  // overrides those its tool chain has messages for.
  virtual void Compiler() {}
  virtual void Assembler() {}
  virtual void Linker() {}

  // Entries made so far in this run.
  int messages_added() const { return messages_added_; }

 protected:
  // The next line, a pushed-back one first. Resets the position, the marks
  // and the failure flag. False at the end.
  bool ReadLine();
  // The current line is read again by the next ReadLine.
  void PushBack();

  std::string_view line() const { return line_; }
  size_t position() const { return pos_; }
  // Both clamp to the line.
  void SetPosition(size_t pos);
  void MovePosition(ptrdiff_t delta);
  // Past blanks (space and tab) from the position.
  void SkipWhiteSpace();

  // Marks at an offset from the position, clamped to the line.
  void SetStartMark(ptrdiff_t offset);
  void SetEndMark(ptrdiff_t offset);
  // "" when the start mark lies after the end mark.
  std::string_view TextBetweenMarks() const;
  // Where the n-th (from 1) occurrence of `text` starts, searching from the
  // position; npos when there are fewer.
  size_t FindNth(std::string_view text, int n) const;

  // The search operations. The taking ones set the failure flag when their
  // delimiters are missing; it stays set until cleared or the next line is
  // read, so that a parser can chain several and look once.
  //
  // From the position to `delimiter`; answers the line from its very start
  // up to the delimiter and moves behind it.
  std::string_view TakeUpTo(std::string_view delimiter);
  // The text between `open` (searched from the position) and the next
  // `close` behind it; moves behind `close`.
  std::string_view TakeBetween(std::string_view open, std::string_view close);
  // TakeBetween read as a decimal integer the way "%d" reads it (blanks,
  // sign, digits, anything after ignored); -1 when missing or no number.
  int NumberBetween(std::string_view open, std::string_view close);
  // `word` from the position, exactly or ignoring ASCII case; moves behind
  // it when found. Not finding is an answer, not a failure.
  bool FindWord(std::string_view word, bool case_sensitive);
  // Whether `text` occurs at or after `start`; does not move.
  bool Contains(std::string_view text, size_t start = 0) const;
  std::string_view RestOfLine() const;

  bool failed() const { return failed_; }
  void ClearFailure() { failed_ = false; }

  // Sends one entry; an empty `file` means the project file. Blanks at both
  // ends of file, text and code are cut, as the error list shows them.
  void AddMessage(int kind, std::string_view file, int line, int column, int severity,
                  std::string_view text, std::string_view code);
  // Reads every line; one that starts with a severity word (CutSeverityWord)
  // becomes an entry of `kind` for the project file, the rest its text.
  void ParseSeverityWordLines(int kind);

 private:
  std::string captured_file_;
  std::string project_file_;
  MessageListSink* sink_ = nullptr;
  CapturedLines lines_;
  std::vector<std::string_view> pushed_back_;
  std::string_view line_;
  size_t pos_ = 0;
  size_t start_mark_ = 0;
  size_t end_mark_ = 0;
  bool failed_ = false;
  int messages_added_ = 0;
  MessageEntry entry_;
};

// `word` in `text` from `from` on, as string_view::find answers; faster for
// the short words parsers look for.
size_t FindText(std::string_view text, std::string_view word, size_t from = 0);

// ASCII-only helpers for the parsers.
bool StartsWithNoCase(std::string_view text, std::string_view prefix);
size_t FindNoCase(std::string_view text, std::string_view word, size_t from = 0);

// For a family whose compiler and assembler print alike: both read their
// output with ParseTranslator, told which of the two ran.
template <typename Base>
class TranslatorsAlike : public Base {
 public:
  void Compiler() final { ParseTranslator(kCompilerMessage); }
  void Assembler() final { ParseTranslator(kAssemblerMessage); }

 protected:
  virtual void ParseTranslator(int kind) = 0;
};

}  // namespace quillon

#endif  // QUILLON_FILTERS_OUTPUT_PARSER_H
