// The portable part of the environment helpers: reference expansion.
#include "platform/environment.h"

#include "platform/path.h"

namespace quillon {
namespace {

bool IsNameStart(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_'; }
bool IsNameChar(char c) { return IsNameStart(c) || (c >= '0' && c <= '9'); }

// The reference that starts at text[i] ('%' or '$'): its name and the
// position just after it; false when there is none.
bool ParseReference(std::string_view text, size_t i, bool dollar_forms, std::string* name,
                    size_t* end) {
  if (text[i] == '%') {
    const size_t close = text.find('%', i + 1);
    if (close == std::string_view::npos || close == i + 1) return false;
    *name = std::string(text.substr(i + 1, close - i - 1));
    *end = close + 1;
    return true;
  }
  if (!dollar_forms || text[i] != '$' || i + 1 >= text.size()) return false;
  if (text[i + 1] == '{') {
    const size_t close = text.find('}', i + 2);
    if (close == std::string_view::npos || close == i + 2) return false;
    *name = std::string(text.substr(i + 2, close - i - 2));
    *end = close + 1;
    return true;
  }
  if (!IsNameStart(text[i + 1])) return false;
  size_t j = i + 1;
  while (j < text.size() && IsNameChar(text[j])) ++j;
  *name = std::string(text.substr(i + 1, j - i - 1));
  *end = j;
  return true;
}

}  // namespace

std::string ExpandVariables(std::string_view text, bool dollar_forms,
                            const VariableLookup& lookup) {
  std::string out;
  size_t i = 0;
  while (i < text.size()) {
    std::string name, value;
    size_t end = 0;
    if (ParseReference(text, i, dollar_forms, &name, &end) && lookup(name, &value)) {
      out += value;
      i = end;
    } else {
      out += text[i++];
    }
  }
  return out;
}

std::string GetEnvironmentVariable(const std::string& name) {
  std::string value;
  return LookupEnvironmentVariable(name, &value) ? value : std::string();
}

std::string CalculateEnvironmentVariable(std::string_view text) {
#ifdef _WIN32
  constexpr bool kDollarForms = false;
#else
  constexpr bool kDollarForms = true;
#endif
  return ExpandVariables(text, kDollarForms, LookupEnvironmentVariable);
}

std::string GetEXEDir() {
  const std::string path = GetEXEPath();
  return path.empty() ? std::string() : DirOfFile(path);
}

}  // namespace quillon
