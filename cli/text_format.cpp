#include "cli/text_format.h"

namespace quillon::qpm {
namespace {

bool IsPlain(unsigned char c) { return c >= 0x20 && c < 0x7f; }

void AppendEscaped(unsigned char c, std::string* out) {
  static constexpr char kHex[] = "0123456789abcdef";
  switch (c) {
    case '"':
      *out += "\\\"";
      return;
    case '\\':
      *out += "\\\\";
      return;
    case '\n':
      *out += "\\n";
      return;
    case '\r':
      *out += "\\r";
      return;
    case '\t':
      *out += "\\t";
      return;
  }
  if (IsPlain(c)) {
    *out += static_cast<char>(c);
    return;
  }
  *out += "\\x";
  *out += kHex[c >> 4];
  *out += kHex[c & 15];
}

}  // namespace

std::string Quote(std::string_view text) {
  std::string out = "\"";
  for (char c : text) AppendEscaped(static_cast<unsigned char>(c), &out);
  out += '"';
  return out;
}

std::string QuoteIfNeeded(std::string_view text) {
  if (text.empty()) return "\"\"";
  for (char c : text) {
    auto byte = static_cast<unsigned char>(c);
    if (!IsPlain(byte) || byte == ' ' || byte == '"' || byte == '\\') return Quote(text);
  }
  return std::string(text);
}

std::string QuoteList(const std::vector<std::string_view>& items) {
  std::string out = "[";
  for (size_t i = 0; i < items.size(); ++i) {
    if (i > 0) out += ", ";
    out += Quote(items[i]);
  }
  return out + "]";
}

}  // namespace quillon::qpm
