// Child processes: start a command line in a directory with an environment
// and redirected output, wait with a timeout, terminate it with everything
// it started.
//
// POSIX starts the child with posix_spawn in a process group of its own, so
// that stopping it also stops what a shell or make started below it; Windows
// puts the child into a Job Object for the same reason. Tests use
// FakeProcessRunner, which answers as scripted.
#ifndef QUILLON_PLATFORM_PROCESS_RUNNER_H
#define QUILLON_PLATFORM_PROCESS_RUNNER_H

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/status.h"

namespace quillon {

// What Process::Wait answers while the child still runs ("Timeout").
inline constexpr int kProcessStillRunning = 258;

// The end status of a child stopped by Process::Terminate: Windows ends the
// job with exit code 0; on POSIX SIGKILL ends it (128 + 9).
#ifdef _WIN32
inline constexpr int kTerminatedExitStatus = 0;
#else
inline constexpr int kTerminatedExitStatus = 128 + 9;
#endif

// One run. The child's standard input is the null device (on Windows
// unless it runs in a window of its own): a build never feeds it, and a tool
// that prompts must not stall the build.
struct ProcessSpec {
  // Program and parameters as one line: "gcc -c \"a b.c\"". Name the
  // program by full path or bare name (searched in PATH): POSIX resolves a
  // relative path in the working directory, Windows in the caller's.
  std::string command;
  // Empty: `command` runs directly (on POSIX it is split into arguments by
  // the Windows rules, see SplitCommandLine). Otherwise the command
  // interpreter runs it: Windows runs "interpreter /c command", POSIX runs
  // argv {interpreter, "-c", command}.
  std::string interpreter;
  // Must exist (the caller checks); empty: the caller's current directory.
  std::string working_directory;
  // Set over the inherited environment, later pairs winning; empty: the
  // child inherits the environment unchanged. A name holding '=' is refused
  // ("Invalid argument" and its Windows equivalent).
  std::vector<std::pair<std::string, std::string>> environment;
  // Empty: inherited. Otherwise created or truncated, and the child's stream
  // goes there. The same name for both gives one file with both streams.
  std::string stdout_path;
  std::string stderr_path;
  // Windows: the child gets a visible console window of its own, which also
  // gives it its three streams when neither is captured. Ignored on POSIX.
  bool own_window = false;
};

// One started child. Wait may run on one thread while Terminate is called
// from another; destroy the object only after both have returned.
class Process {
 public:
  // A child still running is terminated with everything it started.
  virtual ~Process() = default;
  // Waits up to `timeout_ms` (-1: without limit). kProcessStillRunning while
  // the child runs; afterwards its end status, also on every later call: the
  // exit code, on POSIX 128 + the signal number when a signal ended it, and
  // -1 when the OS could not tell (the host let the system reap children).
  virtual int Wait(int timeout_ms) = 0;
  // Ends the child and everything it started at once. A running Wait then
  // returns. Harmless when repeated or after the child ended. On POSIX a
  // group whose leader has been waited for is left alone: its id may name
  // another process by then. Windows ends what is left in the job.
  virtual void Terminate() = 0;
};

// Start may be called from any thread.
class ProcessRunner {
 public:
  virtual ~ProcessRunner() = default;
  // Starts the child; `*process` stays null on failure. NotFound when the
  // program is not there, IoError otherwise; the message is the OS's own
  // text for the error ("No such file or directory", "The system cannot find
  // the file specified."), because the build prints it as the run's result.
  virtual Status Start(const ProcessSpec& launch, std::unique_ptr<Process>* process) = 0;

  // The OS's process runner; lives as long as the process.
  static ProcessRunner& Default();
};

// Splits a command line into arguments as the Windows C runtime does:
// blanks and tabs separate, double quotes group; 2n backslashes before a
// quote give n backslashes and the quote acts, 2n+1 give n and a literal
// quote; other backslashes are literal; inside quotes "" gives a literal
// quote and the quoted part goes on.
std::vector<std::string> SplitCommandLine(std::string_view line);

// The command line as a person reads it: `command`, or
// "interpreter /c command".
std::string CommandLineOf(const ProcessSpec& launch);

}  // namespace quillon

#endif  // QUILLON_PLATFORM_PROCESS_RUNNER_H
