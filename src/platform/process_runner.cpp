// The portable part of the process runner: command-line splitting and the
// command line as shown to a person.
#include "platform/process_runner.h"

namespace quillon {
namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

}  // namespace

std::vector<std::string> SplitCommandLine(std::string_view line) {
  std::vector<std::string> args;
  size_t i = 0;
  const size_t n = line.size();
  while (true) {
    while (i < n && IsBlank(line[i])) ++i;
    if (i == n) break;
    std::string arg;
    bool quoted = false;
    while (i < n && (quoted || !IsBlank(line[i]))) {
      const char c = line[i];
      if (c == '\\') {
        size_t count = 0;
        while (i < n && line[i] == '\\') ++count, ++i;
        const bool before_quote = i < n && line[i] == '"';
        arg.append(before_quote ? count / 2 : count, '\\');
        if (before_quote && count % 2 == 1) {
          arg += '"';  // escaped: literal, the quote does not act
          ++i;
        }
      } else if (c == '"') {
        if (quoted && i + 1 < n && line[i + 1] == '"') {
          arg += '"';  // "" inside quotes; the quoted part goes on
          i += 2;
        } else {
          quoted = !quoted;
          ++i;
        }
      } else {
        arg += c;
        ++i;
      }
    }
    args.push_back(std::move(arg));
  }
  return args;
}

std::string CommandLineOf(const ProcessSpec& launch) {
  if (launch.interpreter.empty()) return launch.command;
  return launch.interpreter + " /c " + launch.command;
}

}  // namespace quillon
