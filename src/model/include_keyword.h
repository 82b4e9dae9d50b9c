// How assembler-style sources name their includes: a keyword of the user's
// choosing, where the name starts and ends, and whether leading blanks are
// allowed or required. Kept with the global options; the scanner gets a copy.
#ifndef QUILLON_MODEL_INCLUDE_KEYWORD_H
#define QUILLON_MODEL_INCLUDE_KEYWORD_H

#include <string>

namespace quillon {

struct IncludeKeywordSettings {
  bool valid = false;         // DF_Valid: search keyword-style files at all
  bool req_blanks = true;     // DF_ReqBlanks
  bool allow_blanks = true;   // DF_AllowBlanks
  std::string keyword;        // DF_Keyword
  std::string start;          // DF_Start
  std::string end;            // DF_End
  bool operator==(const IncludeKeywordSettings&) const = default;
};

}  // namespace quillon

#endif  // QUILLON_MODEL_INCLUDE_KEYWORD_H
