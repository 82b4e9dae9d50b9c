// Environment and program facts on Windows: the ANSI environment API and
// GetModuleFileName of the executable.
#include <windows.h>

#include <cstdlib>

#include "platform/environment.h"

namespace quillon {

bool LookupEnvironmentVariable(const std::string& name, std::string* value) {
  std::string buffer(256, '\0');
  while (true) {
    const DWORD length =
        ::GetEnvironmentVariableA(name.c_str(), buffer.data(), static_cast<DWORD>(buffer.size()));
    if (length == 0) return false;  // unset, or set to nothing
    if (length < buffer.size()) {
      buffer.resize(length);
      *value = std::move(buffer);
      return true;
    }
    buffer.resize(length);  // too small: `length` counts the terminator
  }
}

bool SetEnvironmentVariable(const std::string& name, const std::string& value) {
  // The C runtime keeps its own copy, which getenv reads.
  return ::SetEnvironmentVariableA(name.c_str(), value.c_str()) != 0 &&
         ::_putenv_s(name.c_str(), value.c_str()) == 0;
}

std::string GetEXEPath() {
  std::string buffer(MAX_PATH, '\0');
  while (true) {
    const DWORD length =
        ::GetModuleFileNameA(nullptr, buffer.data(), static_cast<DWORD>(buffer.size()));
    if (length == 0) return std::string();
    if (length < buffer.size()) {
      buffer.resize(length);
      return buffer;
    }
    buffer.resize(buffer.size() * 2);  // truncated
  }
}

// The high bit of GetVersion marks the Windows 9x family.
bool GetOSInfo() { return (::GetVersion() & 0x80000000u) == 0; }

long CurrentProcessId() { return static_cast<long>(::GetCurrentProcessId()); }

// Windows has no way to ask another program to stop as Ctrl-C would, short
// of sharing its console; the IDE stops its builds with _StopMake instead.
bool InterruptProcess(long) { return false; }

std::string TemporaryDirectory() {
  char buffer[MAX_PATH + 1];
  const DWORD length = ::GetTempPathA(sizeof buffer, buffer);
  if (length == 0 || length > MAX_PATH) return std::string(".\\");
  return std::string(buffer, length);
}

std::string DefaultCommandInterpreter() { return "cmd.exe"; }

}  // namespace quillon
