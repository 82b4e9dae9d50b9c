#include "platform/win32/error_text.h"

namespace quillon {

std::string Win32ErrorText(DWORD error) {
  char* buffer = nullptr;
  const DWORD length = ::FormatMessageA(
      FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
      nullptr, error, MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), reinterpret_cast<char*>(&buffer),
      0, nullptr);
  std::string text = length > 0 ? std::string(buffer, length) : std::string();
  if (buffer != nullptr) ::LocalFree(buffer);
  while (!text.empty() && (text.back() == '\r' || text.back() == '\n' || text.back() == ' ')) {
    text.pop_back();
  }
  return text.empty() ? "error " + std::to_string(error) : text;
}

}  // namespace quillon
