// The process environment and facts about the running program, with the
// names the rest of the library knows them by.
#ifndef QUILLON_PLATFORM_ENVIRONMENT_H
#define QUILLON_PLATFORM_ENVIRONMENT_H

#include <functional>
#include <string>
#include <string_view>

// <windows.h> maps this name to GetEnvironmentVariableA; the library's own
// function keeps its name. Code that wants the Win32 one calls the A form.
#ifdef GetEnvironmentVariable
#undef GetEnvironmentVariable
#endif
#ifdef SetEnvironmentVariable
#undef SetEnvironmentVariable
#endif

namespace quillon {

// False when the variable is not set (on Windows also when it is empty).
bool LookupEnvironmentVariable(const std::string& name, std::string* value);
// "" when unset.
std::string GetEnvironmentVariable(const std::string& name);
// Sets it for this process and the children it starts from now on.
bool SetEnvironmentVariable(const std::string& name, const std::string& value);

// Expands %NAME% references, and on POSIX also $NAME and ${NAME}; names
// that are not set stay as written.
std::string CalculateEnvironmentVariable(std::string_view text);

// The expansion behind CalculateEnvironmentVariable, with the lookup given.
// `dollar_forms` adds $NAME (letters, digits, '_', not starting with a
// digit) and ${NAME}. An unknown name leaves its opening character as
// written and the scan goes on after it, so "%X%PATH%" still expands PATH.
using VariableLookup = std::function<bool(const std::string& name, std::string* value)>;
std::string ExpandVariables(std::string_view text, bool dollar_forms, const VariableLookup& lookup);

// Full path of the running executable; "" when the OS cannot tell.
std::string GetEXEPath();
// Its directory with a trailing separator; "" when unknown.
std::string GetEXEDir();

// True on a system with preemptive threads: always on POSIX and on the NT
// family of Windows, which is every Windows this library runs on.
bool GetOSInfo();

// This process's id, and a request to another process to stop as Ctrl-C
// asks (false when there is no such process or it may not be signalled).
long CurrentProcessId();
bool InterruptProcess(long pid);

// The directory for temporary files, with a trailing separator.
std::string TemporaryDirectory();
// What runs a command line when no COMSPEC says otherwise.
std::string DefaultCommandInterpreter();

}  // namespace quillon

#endif  // QUILLON_PLATFORM_ENVIRONMENT_H
