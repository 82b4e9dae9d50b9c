// How qpm writes names and values into its text output and messages.
#ifndef QUILLON_CLI_TEXT_FORMAT_H
#define QUILLON_CLI_TEXT_FORMAT_H

#include <string>
#include <string_view>
#include <vector>

namespace quillon::qpm {

// In double quotes, with C escapes (\" \\ \n \r \t) and \xHH, always two
// hex digits, for every other control or non-ASCII byte: stored strings are
// 8-bit and need not be valid in any encoding.
std::string Quote(std::string_view text);
// Bare when the text is printable ASCII without blanks or quotes, else
// quoted: for names, which rarely need it.
std::string QuoteIfNeeded(std::string_view text);
// ["a", "b"], each element quoted.
std::string QuoteList(const std::vector<std::string_view>& items);

}  // namespace quillon::qpm

#endif  // QUILLON_CLI_TEXT_FORMAT_H
