// Pieces that several vendor families share: messages continued on the
// lines after them, the '"file", line n' place of EDG-based compilers and
// their followers, and the severity words those print.
#ifndef QUILLON_FILTERS_PARSER_HELPERS_H
#define QUILLON_FILTERS_PARSER_HELPERS_H

#include <string>
#include <string_view>

#include "filters/output_parser.h"
#include "filters/text_scan.h"
#include "platform/path.h"

namespace quillon {

// A parser whose messages may run on over the lines after them.
class CContinuedParser : public COutputParser {
 protected:
  // Reads on while `belongs(line)` holds, appending each such line to
  // `text`, trimmed, after a line feed; the first other line is read again.
  template <typename Belongs>
  void AppendContinuation(std::string* text, Belongs belongs) {
    while (ReadLine()) {
      if (!belongs(line())) {
        PushBack();
        return;
      }
      text->append("\n").append(TrimBlanks(line()));
    }
  }

  // EDG-style wraps: the lines indented by at least `indent` blanks. The
  // echoed source line keeps the source's own indent and may pass for one;
  // the caret line under it gives it away, and both are dropped. The first
  // line indented less is read again.
  void AppendWrappedLines(std::string* text, size_t indent);
};

// Not a severity the error list shows (remarks, notes): the line adds nothing.
constexpr int kSkippedSeverity = -1;

// What one diagnostic line says, as views into the line.
struct DiagnosticLine {
  std::string_view file;
  int line = 0;
  int column = 0;
  int severity = CMessageTable::kError;
  std::string_view code;
  std::string_view text;
};

// A blank line or one of blanks and carets with at least one '^': the
// pointer under an echoed source line.
bool IsCaretLine(std::string_view text);
// Blanks (space or tab) at the head of `text`.
size_t IndentOf(std::string_view text);

// '"FILE", line N[ (column C)]: REST' as EDG front ends, Diab, TI and armcc
// print it. The opening quote may be missing (quoted lines lose it).
struct QuotedPlace {
  std::string_view file;
  int line = 0;
  int column = 0;         // 0 when none is printed
  std::string_view rest;  // behind the colon, blanks skipped
};
bool ReadQuotedPlace(std::string_view text, QuotedPlace* place);

// A severity word at the head of `*text`, ignoring case: "catastrophic
// error", "fatal error" and "fatal" give kFatal, "error" and "internal
// error" kError, "warning" kWarning, "remark", "note" and "info"
// kSkippedSeverity. The word is consumed; false when none opens the text.
bool ReadSeverityWord(std::string_view* text, int* severity);

// What follows a severity word: blanks and one colon are consumed, then an
// EDG code ("#20", "#12-D", "#10234-D") up to its colon, consumed with the
// colon and the blanks after it. The code comes back without '#'; it is
// empty when no '#' follows.
std::string_view ReadHashCode(std::string_view* text);

}  // namespace quillon

#endif  // QUILLON_FILTERS_PARSER_HELPERS_H
