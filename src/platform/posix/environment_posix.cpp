// Environment and program facts on POSIX: getenv and, on Linux,
// /proc/self/exe.
#include <limits.h>
#include <signal.h>
#include <unistd.h>

#include <cstdlib>

#include "platform/environment.h"

namespace quillon {

bool LookupEnvironmentVariable(const std::string& name, std::string* value) {
  const char* found = std::getenv(name.c_str());
  if (found == nullptr) return false;
  *value = found;
  return true;
}

bool SetEnvironmentVariable(const std::string& name, const std::string& value) {
  return ::setenv(name.c_str(), value.c_str(), 1) == 0;
}

std::string GetEXEPath() {
  char buffer[PATH_MAX];
  const ssize_t length = ::readlink("/proc/self/exe", buffer, sizeof buffer);
  if (length <= 0 || static_cast<size_t>(length) >= sizeof buffer) return std::string();
  return std::string(buffer, static_cast<size_t>(length));
}

bool GetOSInfo() { return true; }

long CurrentProcessId() { return static_cast<long>(::getpid()); }

bool InterruptProcess(long pid) {
  return pid > 0 && ::kill(static_cast<pid_t>(pid), SIGINT) == 0;
}

std::string TemporaryDirectory() {
  std::string dir = GetEnvironmentVariable("TMPDIR");
  if (dir.empty()) dir = "/tmp";
  if (dir.back() != '/') dir += '/';
  return dir;
}

std::string DefaultCommandInterpreter() { return "/bin/sh"; }

}  // namespace quillon
