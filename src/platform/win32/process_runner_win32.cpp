// ProcessRunner on Windows: CreateProcessA with inherited standard handles;
// the child starts suspended and joins a Job Object before it runs, so that
// ending the job also ends whatever `cmd /c` or make started below it.
#include <windows.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "platform/win32/error_text.h"
#include "platform/process_runner.h"

namespace quillon {
namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

std::string ErrorText(DWORD error) { return Win32ErrorText(error); }

Status Win32Error(DWORD error) {
  if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND) {
    return Status::NotFound(ErrorText(error));
  }
  return Status::IoError(ErrorText(error));
}

// A kernel handle closed when it goes out of scope.
class Handle {
 public:
  Handle() = default;
  explicit Handle(HANDLE handle) : handle_(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
  Handle(Handle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Handle& operator=(Handle&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~Handle() {
    if (handle_ != nullptr) ::CloseHandle(handle_);
  }
  HANDLE get() const { return handle_; }
  explicit operator bool() const { return handle_ != nullptr; }

 private:
  HANDLE handle_ = nullptr;
};

class Win32Process : public Process {
 public:
  // `job` is null when the OS would not give the child a job of its own.
  Win32Process(Handle process, Handle job) : process_(std::move(process)), job_(std::move(job)) {}

  // Closing the last handle of the job ends what is left in it
  // (JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE); without a job only the child can
  // be ended.
  ~Win32Process() override {
    if (::WaitForSingleObject(process_.get(), 0) == WAIT_TIMEOUT) Terminate();
  }

  int Wait(int timeout_ms) override {
    const DWORD result = ::WaitForSingleObject(
        process_.get(), timeout_ms < 0 ? INFINITE : static_cast<DWORD>(timeout_ms));
    if (result == WAIT_TIMEOUT) return kProcessStillRunning;
    DWORD code = 0;
    if (result != WAIT_OBJECT_0 || !::GetExitCodeProcess(process_.get(), &code)) return -1;
    return static_cast<int>(code);
  }

  // The process handle keeps the child's id from being reused, so this is
  // safe from any thread at any time while the object lives.
  void Terminate() override {
    if (job_) {
      ::TerminateJobObject(job_.get(), 0);
    } else {
      ::TerminateProcess(process_.get(), 0);
    }
  }

 private:
  const Handle process_;
  const Handle job_;
};

// A job that ends its processes when its last handle closes, with `process`
// in it; null when the OS refuses (a host inside a job that forbids nesting).
Handle JobFor(HANDLE process) {
  Handle job(::CreateJobObjectA(nullptr, nullptr));
  if (!job) return Handle();
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits;
  std::memset(&limits, 0, sizeof limits);
  limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
  if (!::SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &limits,
                                 sizeof limits) ||
      !::AssignProcessToJobObject(job.get(), process)) {
    return Handle();
  }
  return job;
}

char Upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

// Windows wants the block sorted by name, ignoring case as upper case.
bool NameLess(const std::string& a, const std::string& b) {
  return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
    return static_cast<unsigned char>(Upper(x)) < static_cast<unsigned char>(Upper(y));
  });
}

bool SameName(const std::string& a, const std::string& b) {
  return !NameLess(a, b) && !NameLess(b, a);
}

// A name may begin with '=' (the hidden per-drive directories "=C:").
bool ValidVariableName(const std::string& name) {
  return !name.empty() && name.find('=', 1) == std::string::npos;
}

using Variable = std::pair<std::string, std::string>;

std::vector<Variable> CurrentEnvironment() {
  std::vector<Variable> variables;
  char* block = ::GetEnvironmentStringsA();
  if (block == nullptr) return variables;
  for (const char* entry = block; *entry != '\0'; entry += std::strlen(entry) + 1) {
    const char* equals = std::strchr(entry + 1, '=');
    if (equals == nullptr) continue;
    variables.emplace_back(std::string(entry, equals), std::string(equals + 1));
  }
  ::FreeEnvironmentStringsA(block);
  return variables;
}

// The current environment with `pairs` set (later pairs win), as the
// double-NUL-ended block CreateProcessA takes.
std::string EnvironmentBlock(const std::vector<Variable>& pairs) {
  std::vector<Variable> variables = CurrentEnvironment();
  for (const Variable& pair : pairs) {
    std::erase_if(variables, [&](const Variable& v) { return SameName(v.first, pair.first); });
    variables.push_back(pair);
  }
  std::stable_sort(variables.begin(), variables.end(),
                   [](const Variable& a, const Variable& b) { return NameLess(a.first, b.first); });
  std::string block;
  for (const Variable& v : variables) {
    block += v.first + "=" + v.second;
    block += '\0';
  }
  if (block.empty()) block += '\0';
  block += '\0';
  return block;
}

SECURITY_ATTRIBUTES* Inheritable() {
  static SECURITY_ATTRIBUTES attributes = {sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  return &attributes;
}

Handle OpenNul(DWORD access) {
  return Handle(::CreateFileA("NUL", access, kShareAll, Inheritable(), OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL, nullptr));
}

// Shared for reading and deleting, so the build can follow the output of an
// external make while it is written.
Status OpenCapture(const std::string& path, Handle* handle) {
  *handle = Handle(::CreateFileA(path.c_str(), GENERIC_WRITE, kShareAll, Inheritable(),
                                 CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  return *handle ? Status::OK() : Win32Error(::GetLastError());
}

// An inheritable copy of our own standard handle, or NUL when we have none.
Handle InheritedStandard(DWORD which) {
  const HANDLE own = ::GetStdHandle(which);
  HANDLE copy = nullptr;
  if (own != nullptr && own != INVALID_HANDLE_VALUE &&
      ::DuplicateHandle(::GetCurrentProcess(), own, ::GetCurrentProcess(), &copy, 0, TRUE,
                        DUPLICATE_SAME_ACCESS)) {
    return Handle(copy);
  }
  return OpenNul(GENERIC_WRITE);
}

// The three handles the child starts with.
struct StandardHandles {
  Handle in, out, err;
  bool use = true;  // false: the child's own console gives all three
};

Status OpenStandardHandles(const ProcessSpec& launch, StandardHandles* handles) {
  if (launch.own_window && launch.stdout_path.empty() && launch.stderr_path.empty()) {
    handles->use = false;
    return Status::OK();
  }
  handles->in = OpenNul(GENERIC_READ);
  if (!handles->in) return Win32Error(::GetLastError());
  if (!launch.stdout_path.empty()) {
    Status status = OpenCapture(launch.stdout_path, &handles->out);
    if (!status.ok()) return status;
  } else {
    handles->out = InheritedStandard(STD_OUTPUT_HANDLE);
  }
  if (!launch.stderr_path.empty() && launch.stderr_path != launch.stdout_path) {
    Status status = OpenCapture(launch.stderr_path, &handles->err);
    if (!status.ok()) return status;
  } else if (launch.stderr_path.empty()) {
    handles->err = InheritedStandard(STD_ERROR_HANDLE);
  }
  return Status::OK();
}

class Win32ProcessRunner : public ProcessRunner {
 public:
  Status Start(const ProcessSpec& launch, std::unique_ptr<Process>* process) override {
    process->reset();
    std::string environment;
    if (!launch.environment.empty()) {
      for (const Variable& pair : launch.environment) {
        if (!ValidVariableName(pair.first)) return Win32Error(ERROR_INVALID_PARAMETER);
      }
      environment = EnvironmentBlock(launch.environment);
    }
    StandardHandles handles;
    Status status = OpenStandardHandles(launch, &handles);
    if (!status.ok()) return status;

    STARTUPINFOA startup;
    std::memset(&startup, 0, sizeof startup);
    startup.cb = sizeof startup;
    if (handles.use) {
      startup.dwFlags = STARTF_USESTDHANDLES;
      startup.hStdInput = handles.in.get();
      startup.hStdOutput = handles.out.get();
      startup.hStdError = handles.err ? handles.err.get() : handles.out.get();
    }
    std::string line = CommandLineOf(launch);
    const DWORD flags =
        CREATE_SUSPENDED | (launch.own_window ? CREATE_NEW_CONSOLE : CREATE_NO_WINDOW);
    PROCESS_INFORMATION info;
    if (!::CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE, flags,
                          environment.empty() ? nullptr : environment.data(),
                          launch.working_directory.empty() ? nullptr : launch.working_directory.c_str(),
                          &startup, &info)) {
      return Win32Error(::GetLastError());
    }
    Handle child(info.hProcess);
    const Handle thread(info.hThread);
    Handle job = JobFor(child.get());
    if (::ResumeThread(thread.get()) == static_cast<DWORD>(-1)) {
      const DWORD error = ::GetLastError();
      ::TerminateProcess(child.get(), 0);
      return Win32Error(error);
    }
    *process = std::make_unique<Win32Process>(std::move(child), std::move(job));
    return Status::OK();
  }
};

}  // namespace

ProcessRunner& ProcessRunner::Default() {
  static Win32ProcessRunner runner;
  return runner;
}

}  // namespace quillon
