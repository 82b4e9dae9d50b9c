// ProcessRunner on POSIX: posix_spawnp into a new process group, waiting
// through a pidfd where Linux has one, SIGKILL to the whole group.
//
// Descriptors opened here carry O_CLOEXEC, so a child started on another
// thread at the same moment inherits none of them.
#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <map>
#include <mutex>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/process_runner.h"

extern char** environ;

namespace quillon {
namespace {

using Clock = std::chrono::steady_clock;

Status SpawnError(int error) {
  std::string text = std::generic_category().message(error);
  if (error == ENOENT || error == ENOTDIR) return Status::NotFound(std::move(text));
  return Status::IoError(std::move(text));
}

// A descriptor closed when it goes out of scope.
class Fd {
 public:
  Fd() = default;
  explicit Fd(int fd) : fd_(fd) {}
  Fd(Fd&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  Fd& operator=(Fd&& other) noexcept {
    std::swap(fd_, other.fd_);
    return *this;
  }
  ~Fd() {
    if (fd_ >= 0) ::close(fd_);
  }
  int get() const { return fd_; }

 private:
  int fd_ = -1;
};

// Linux 5.3 and later: a descriptor that becomes readable when the child
// ends, so Wait sleeps in poll instead of checking again and again.
Fd OpenPidFd(pid_t pid) {
#ifdef SYS_pidfd_open
  const long fd = ::syscall(SYS_pidfd_open, pid, 0);  // always close-on-exec
  if (fd >= 0) return Fd(static_cast<int>(fd));
#else
  (void)pid;
#endif
  return Fd();
}

int EndStatus(int wait_status) {
  if (WIFEXITED(wait_status)) return WEXITSTATUS(wait_status);
  if (WIFSIGNALED(wait_status)) return 128 + WTERMSIG(wait_status);
  return -1;
}

class PosixProcess : public Process {
 public:
  PosixProcess(pid_t pid, Fd pidfd) : pid_(pid), pidfd_(std::move(pidfd)) {}

  ~PosixProcess() override {
    std::lock_guard<std::mutex> lock(mutex_);
    if (reaped_) return;
    KillLocked();
    int wait_status;
    while (::waitpid(pid_, &wait_status, 0) < 0 && errno == EINTR) {
    }
  }

  int Wait(int timeout_ms) override {
    const auto deadline = Clock::now() + std::chrono::milliseconds(std::max(timeout_ms, 0));
    auto pause = std::chrono::milliseconds(1);
    while (true) {
      if (TryReap()) return status_;
      const auto left =
          std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
      if (timeout_ms >= 0 && left.count() <= 0) return kProcessStillRunning;
      if (pidfd_.get() >= 0) {
        pollfd entry = {pidfd_.get(), POLLIN, 0};
        ::poll(&entry, 1, timeout_ms < 0 ? -1 : static_cast<int>(left.count()) + 1);
      } else {
        // Without a pidfd: short sleeps, growing to 10 ms.
        std::this_thread::sleep_for(timeout_ms < 0 ? pause : std::min(pause, left));
        pause = std::min(pause * 2, std::chrono::milliseconds(10));
      }
    }
  }

  void Terminate() override {
    std::lock_guard<std::mutex> lock(mutex_);
    if (!reaped_) KillLocked();
  }

 private:
  // Reaping and signalling both happen under the mutex, so a pid that was
  // reaped (and may belong to another process by now) is never signalled.
  bool TryReap() {
    std::lock_guard<std::mutex> lock(mutex_);
    if (reaped_) return true;
    int wait_status = 0;
    pid_t result;
    do {
      result = ::waitpid(pid_, &wait_status, WNOHANG);
    } while (result < 0 && errno == EINTR);
    if (result == 0) return false;
    reaped_ = true;
    // ECHILD: the host ignores SIGCHLD and the system reaped the child.
    status_ = result == pid_ ? EndStatus(wait_status) : -1;
    return true;
  }

  // The group takes what the child started; the child itself is signalled
  // too in case it left the group.
  void KillLocked() {
    ::kill(-pid_, SIGKILL);
    ::kill(pid_, SIGKILL);
  }

  const pid_t pid_;
  const Fd pidfd_;
  std::mutex mutex_;
  bool reaped_ = false;
  int status_ = -1;
};

// The current environment with `pairs` set; later pairs win.
std::vector<std::string> MergedEnvironment(
    const std::vector<std::pair<std::string, std::string>>& pairs) {
  std::map<std::string, std::string> overrides;
  for (const auto& [name, value] : pairs) overrides[name] = value;
  std::vector<std::string> entries;
  for (char** entry = environ; *entry != nullptr; ++entry) {
    const std::string_view text(*entry);
    const std::string name(text.substr(0, text.find('=')));
    if (overrides.count(name) == 0) entries.emplace_back(*entry);
  }
  for (const auto& [name, value] : overrides) entries.push_back(name + "=" + value);
  return entries;
}

bool ValidVariableName(const std::string& name) {
  return !name.empty() && name.find('=') == std::string::npos;
}

std::vector<char*> Pointers(std::vector<std::string>& strings) {
  std::vector<char*> pointers;
  for (std::string& s : strings) pointers.push_back(s.data());
  pointers.push_back(nullptr);
  return pointers;
}

Status OpenCapture(const std::string& path, Fd* fd) {
  int raw;
  do {
    raw = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  } while (raw < 0 && errno == EINTR);
  if (raw < 0) return SpawnError(errno);
  *fd = Fd(raw);
  return Status::OK();
}

// Owns the spawn attributes and file actions for one Start.
class SpawnSetup {
 public:
  SpawnSetup() {
    ::posix_spawnattr_init(&attr_);
    ::posix_spawn_file_actions_init(&actions_);
  }
  ~SpawnSetup() {
    ::posix_spawn_file_actions_destroy(&actions_);
    ::posix_spawnattr_destroy(&attr_);
  }
  SpawnSetup(const SpawnSetup&) = delete;
  SpawnSetup& operator=(const SpawnSetup&) = delete;

  // A new process group led by the child; no blocked signals and default
  // dispositions, whatever the host did to its own.
  int SetAttributes() {
    sigset_t none, all;
    sigemptyset(&none);
    sigfillset(&all);
    int error = ::posix_spawnattr_setflags(
        &attr_, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    if (error == 0) error = ::posix_spawnattr_setpgroup(&attr_, 0);
    if (error == 0) error = ::posix_spawnattr_setsigmask(&attr_, &none);
    if (error == 0) error = ::posix_spawnattr_setsigdefault(&attr_, &all);
    return error;
  }

  // Capture files are opened here, before the child changes directory, so
  // relative names mean what they mean to the caller.
  int SetFiles(const Fd& out, const Fd& err, const std::string& directory) {
    int error = ::posix_spawn_file_actions_addopen(&actions_, 0, "/dev/null", O_RDONLY, 0);
    if (error == 0 && out.get() >= 0) error = AddDup(out, 1);
    if (error == 0 && err.get() >= 0) error = AddDup(err, 2);
    if (error == 0 && !directory.empty()) {
      error = ::posix_spawn_file_actions_addchdir_np(&actions_, directory.c_str());
    }
    return error;
  }

  const posix_spawnattr_t* attr() const { return &attr_; }
  const posix_spawn_file_actions_t* actions() const { return &actions_; }

 private:
  // dup2 in the child clears close-on-exec on the copy.
  int AddDup(const Fd& fd, int target) {
    return ::posix_spawn_file_actions_adddup2(&actions_, fd.get(), target);
  }

  posix_spawnattr_t attr_;
  posix_spawn_file_actions_t actions_;
};

class PosixProcessRunner : public ProcessRunner {
 public:
  Status Start(const ProcessSpec& launch, std::unique_ptr<Process>* process) override {
    process->reset();
    std::vector<std::string> args =
        launch.interpreter.empty() ? SplitCommandLine(launch.command)
                                 : std::vector<std::string>{launch.interpreter, "-c", launch.command};
    if (args.empty()) return SpawnError(ENOENT);
    for (const auto& pair : launch.environment) {
      if (!ValidVariableName(pair.first)) return SpawnError(EINVAL);  // as setenv says
    }

    Fd out, err;
    if (!launch.stdout_path.empty()) {
      Status status = OpenCapture(launch.stdout_path, &out);
      if (!status.ok()) return status;
    }
    const bool shared = launch.stderr_path == launch.stdout_path;
    if (!launch.stderr_path.empty() && !shared) {
      Status status = OpenCapture(launch.stderr_path, &err);
      if (!status.ok()) return status;
    }

    SpawnSetup setup;
    int error = setup.SetAttributes();
    if (error == 0) error = setup.SetFiles(out, shared ? out : err, launch.working_directory);
    if (error != 0) return SpawnError(error);

    std::vector<std::string> env_strings;
    if (!launch.environment.empty()) env_strings = MergedEnvironment(launch.environment);
    std::vector<char*> argv = Pointers(args);
    std::vector<char*> envp = Pointers(env_strings);

    // glibc reports a failed exec (and a failed file action) here.
    pid_t pid = 0;
    error = ::posix_spawnp(&pid, argv[0], setup.actions(), setup.attr(), argv.data(),
                           launch.environment.empty() ? environ : envp.data());
    if (error != 0) return SpawnError(error);
    *process = std::make_unique<PosixProcess>(pid, OpenPidFd(pid));
    return Status::OK();
  }
};

}  // namespace

ProcessRunner& ProcessRunner::Default() {
  static PosixProcessRunner runner;
  return runner;
}

}  // namespace quillon
