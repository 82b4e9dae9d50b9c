// The process runner on real processes. The test program runs itself as the
// child: QUILLON_TEST_CHILD in the child's environment names what it does
// (print, exit with a code, sleep, start a grandchild), so neither a shell
// nor a compiler is needed. Then SplitCommandLine's rules and the fake.
#include "platform/process_runner.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <future>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "platform/environment.h"
#include "support/fake_file_system.h"
#include "support/fake_process_runner.h"
#include "support/native_path.h"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <windows.h>
#undef GetEnvironmentVariable  // ours, not the Win32 macro
#else
#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <unistd.h>
extern char** environ;
#endif

namespace quillon {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

constexpr char kChildVariable[] = "QUILLON_TEST_CHILD";

// ---------------------------------------------------------------- the child

void Print(FILE* stream, const std::string& text) {
  std::fwrite(text.data(), 1, text.size(), stream);
  std::fflush(stream);
}

// Long enough for any test, short enough that a child nobody ended goes.
void SleepUntilKilled() { std::this_thread::sleep_for(120s); }

long OwnPid() {
#ifdef _WIN32
  return static_cast<long>(::GetCurrentProcessId());
#else
  return static_cast<long>(::getpid());
#endif
}

// Written beside and renamed, so the test never reads half a number.
void WritePid(const std::string& file) {
  std::ofstream(file + ".tmp") << OwnPid();
  fs::rename(file + ".tmp", file);
}

// Starts this program again as a plain child of the child: the way a shell
// or make starts its tools, not through the runner under test.
void StartGrandchild(const std::string& pid_file) {
  const std::string mode = "pid_sleep " + pid_file;
  const std::string exe = GetEXEPath();
#ifdef _WIN32
  ::SetEnvironmentVariableA(kChildVariable, mode.c_str());
  std::string line = "\"" + exe + "\"";
  STARTUPINFOA startup = {};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION info;
  if (::CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                       &info)) {
    ::CloseHandle(info.hThread);
    ::CloseHandle(info.hProcess);
  }
#else
  ::setenv(kChildVariable, mode.c_str(), 1);
  std::string arg0 = exe;
  char* argv[] = {arg0.data(), nullptr};
  pid_t pid;
  ::posix_spawn(&pid, exe.c_str(), nullptr, nullptr, argv, environ);
#endif
}

// The arguments after the program's name, as the C runtime gave them.
std::vector<std::string> OwnArguments() {
  std::vector<std::string> args;
#ifdef _WIN32
  for (int i = 1; i < __argc; ++i) args.emplace_back(__argv[i]);
#else
  std::ifstream in("/proc/self/cmdline", std::ios::binary);
  std::string arg;
  while (std::getline(in, arg, '\0')) args.push_back(arg);
  if (!args.empty()) args.erase(args.begin());
#endif
  return args;
}

#ifndef _WIN32
// Open descriptors above 2, without the one that reads the list.
std::set<int> OpenDescriptors() {
  std::set<int> fds;
  DIR* dir = ::opendir("/proc/self/fd");
  if (dir == nullptr) return fds;
  while (const dirent* entry = ::readdir(dir)) {
    const int fd = std::atoi(entry->d_name);
    if (fd > 2 && fd != ::dirfd(dir)) fds.insert(fd);
  }
  ::closedir(dir);
  return fds;
}
#endif

int RunChild(const std::string& mode_line) {
#ifdef _WIN32
  _setmode(_fileno(stdout), _O_BINARY);  // "\n" stays "\n" in the files
  _setmode(_fileno(stderr), _O_BINARY);
#endif
  const size_t blank = mode_line.find(' ');
  const std::string mode = mode_line.substr(0, blank);
  const std::string arg = blank == std::string::npos ? "" : mode_line.substr(blank + 1);
  if (mode == "streams") {
    Print(stdout, "out line\n");
    Print(stderr, "err line\n");
  } else if (mode == "exit") {
    return std::atoi(arg.c_str());
  } else if (mode == "env") {
    std::istringstream names(arg);
    for (std::string name; names >> name;) {
      const char* value = std::getenv(name.c_str());
      Print(stdout, (value ? value : "<unset>") + std::string("\n"));
    }
  } else if (mode == "cwd") {
    Print(stdout, fs::current_path().string() + "\n");
  } else if (mode == "long") {
    Print(stdout, std::string(2000, 'x') + "\n");
  } else if (mode == "args") {
    for (const std::string& a : OwnArguments()) Print(stdout, a + "\n");
  } else if (mode == "sleep") {
    SleepUntilKilled();
  } else if (mode == "pid_sleep") {
    WritePid(arg);
    SleepUntilKilled();
  } else if (mode == "grandchild") {
    StartGrandchild(arg);
    SleepUntilKilled();
#ifndef _WIN32
  } else if (mode == "fds") {
    for (int fd : OpenDescriptors()) Print(stdout, std::to_string(fd) + "\n");
#endif
  } else {
    Print(stderr, "unknown child mode: " + mode_line + "\n");
    return 99;
  }
  return 0;
}

// Runs before main: a child started by these tests does its part and ends
// without running any test. Only a test program may do this.
[[maybe_unused]] const bool kRanAsChild = [] {
  const char* mode = std::getenv(kChildVariable);
  if (mode != nullptr) std::_Exit(RunChild(mode));
  return false;
}();

// --------------------------------------------------------------- the parent

std::string OsText(int error) {
#ifdef _WIN32
  char* buffer = nullptr;
  ::FormatMessageA(
      FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
      nullptr, static_cast<DWORD>(error), MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT),
      reinterpret_cast<char*>(&buffer), 0, nullptr);
  std::string text = buffer ? buffer : "";
  if (buffer) ::LocalFree(buffer);
  while (!text.empty() && std::strchr("\r\n ", text.back())) text.pop_back();
  return text;
#else
  return std::strerror(error);
#endif
}

void SetVariable(const char* name, const char* value) {
#ifdef _WIN32
  ::SetEnvironmentVariableA(name, value);
#else
  if (value) {
    ::setenv(name, value, 1);
  } else {
    ::unsetenv(name);
  }
#endif
}

bool ProcessGone(long pid) {
#ifdef _WIN32
  const HANDLE process = ::OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(pid));
  if (process == nullptr) return true;
  const bool gone = ::WaitForSingleObject(process, 0) == WAIT_OBJECT_0;
  ::CloseHandle(process);
  return gone;
#else
  if (::kill(static_cast<pid_t>(pid), 0) != 0) return errno == ESRCH;
  // Dead but not yet reaped by its new parent (a container's first process
  // may never reap).
  std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
  std::string line;
  std::getline(stat, line);
  const size_t name_end = line.rfind(')');
  return name_end != std::string::npos && name_end + 2 < line.size() &&
         (line[name_end + 2] == 'Z' || line[name_end + 2] == 'X');
#endif
}

// Polls, because an ended process leaves the system's tables a moment later.
bool EventuallyGone(long pid) {
  const auto deadline = std::chrono::steady_clock::now() + 30s;
  while (!ProcessGone(pid)) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::sleep_for(20ms);
  }
  return true;
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    while (!line.empty() && (line.back() == '\r' || line.back() == ' ')) line.pop_back();
    lines.push_back(line);
  }
  return lines;
}

class ProcessRunnerTest : public ::testing::Test {
 protected:
  void SetUp() override {
    std::random_device random;
    do {
      dir_ = fs::temp_directory_path() / ("quillon proc-" + std::to_string(random()));
    } while (!fs::create_directory(dir_));
  }
  void TearDown() override {
    std::error_code ignored;
    fs::remove_all(dir_, ignored);
  }

  std::string At(const std::string& name) const { return (dir_ / name).string(); }

  std::string Read(const std::string& name) const {
    std::ifstream in(At(name), std::ios::binary);
    std::ostringstream contents;
    contents << in.rdbuf();
    return contents.str();
  }

  // This program in `mode`, its streams captured in out.txt and err.txt.
  ProcessSpec Child(const std::string& mode) const {
    ProcessSpec spec;
    spec.command = "\"" + GetEXEPath() + "\"";
    spec.environment = {{kChildVariable, mode}};
    spec.stdout_path = At("out.txt");
    spec.stderr_path = At("err.txt");
    return spec;
  }

  std::unique_ptr<Process> Start(const ProcessSpec& spec) {
    std::unique_ptr<Process> process;
    const Status status = runner_.Start(spec, &process);
    EXPECT_TRUE(status.ok()) << CommandLineOf(spec) << ": " << status.message();
    return process;
  }

  // Starts and waits; -1000 when it did not start.
  int Run(const ProcessSpec& spec) {
    std::unique_ptr<Process> process = Start(spec);
    return process ? process->Wait(-1) : -1000;
  }

  // The pid a child wrote into `name`, once it is there. Tests end a child
  // only after this: under Wine, the console host of a child killed while
  // it is still starting can outlive the test run.
  long PidIn(const std::string& name) const {
    // Read until it holds a number: on Windows the writer's rename may
    // still hold the file for a moment after the name appears.
    const auto deadline = std::chrono::steady_clock::now() + 60s;
    long pid = 0;
    while ((pid = std::atol(Read(name).c_str())) <= 0 &&
           std::chrono::steady_clock::now() < deadline) {
      std::this_thread::sleep_for(20ms);
    }
    return pid;
  }

  ProcessRunner& runner_ = ProcessRunner::Default();
  fs::path dir_;
};

TEST_F(ProcessRunnerTest, ExitCodeIsTheEndStatusNotAnError) {
  EXPECT_EQ(Run(Child("exit 0")), 0);
  EXPECT_EQ(Run(Child("exit 1")), 1);
  EXPECT_EQ(Run(Child("exit 42")), 42);
}

TEST_F(ProcessRunnerTest, CapturesEachStreamInItsFile) {
  std::ofstream(At("out.txt")) << std::string(5000, 'o');  // an old, longer capture
  EXPECT_EQ(Run(Child("streams")), 0);
  EXPECT_EQ(Read("out.txt"), "out line\n");
  EXPECT_EQ(Read("err.txt"), "err line\n");

  EXPECT_EQ(Run(Child("long")), 0);
  EXPECT_EQ(Read("out.txt"), std::string(2000, 'x') + "\n");
  EXPECT_EQ(Read("err.txt"), "");
}

TEST_F(ProcessRunnerTest, OneFileTakesBothStreamsWhenNamedTwice) {
  ProcessSpec spec = Child("streams");
  spec.stderr_path = spec.stdout_path;
  EXPECT_EQ(Run(spec), 0);
  EXPECT_EQ(Read("out.txt"), "out line\nerr line\n");
}

TEST_F(ProcessRunnerTest, MissingProgramIsNotFoundWithTheSystemsText) {
  ProcessSpec spec;
  spec.command = "quillon-no-such-program-4711 -c x.c";
  std::unique_ptr<Process> process;
  Status status = runner_.Start(spec, &process);
  EXPECT_EQ(status.kind(), Status::Kind::kNotFound);
#ifdef _WIN32
  EXPECT_EQ(status.message(), OsText(ERROR_FILE_NOT_FOUND));
#else
  EXPECT_EQ(status.message(), OsText(ENOENT));
#endif
  EXPECT_EQ(process, nullptr);

  spec.command = "\"" + At("no such dir/tool") + "\" x";
  EXPECT_EQ(runner_.Start(spec, &process).kind(), Status::Kind::kNotFound);
  spec.command = "  ";
  EXPECT_FALSE(runner_.Start(spec, &process).ok());
  EXPECT_EQ(process, nullptr);
}

#ifndef _WIN32
TEST_F(ProcessRunnerTest, ProgramThatCannotRunIsAnIoError) {
  std::ofstream(At("data.txt")) << "not a program\n";
  ProcessSpec spec;
  spec.command = "\"" + At("data.txt") + "\"";
  std::unique_ptr<Process> process;
  const Status status = runner_.Start(spec, &process);
  EXPECT_EQ(status.kind(), Status::Kind::kIoError);
  EXPECT_EQ(status.message(), OsText(EACCES));
}
#endif

TEST_F(ProcessRunnerTest, EnvironmentPairsAreSetOverTheInheritedOnes) {
  SetVariable("QUILLON_TEST_INHERITED", "parent");
  SetVariable("QUILLON_TEST_OTHER", "kept");
  ProcessSpec spec = Child("env QUILLON_TEST_INHERITED QUILLON_TEST_OTHER QUILLON_TEST_VALUE");
  spec.environment.emplace_back("QUILLON_TEST_VALUE", "first");
  spec.environment.emplace_back("QUILLON_TEST_VALUE", "a b=c");  // the later pair wins
  EXPECT_EQ(Run(spec), 0);
  EXPECT_EQ(Read("out.txt"), "parent\nkept\na b=c\n");

  spec.environment.emplace_back("QUILLON_TEST_INHERITED", "child");
  EXPECT_EQ(Run(spec), 0);
  EXPECT_EQ(Read("out.txt"), "child\nkept\na b=c\n");

#ifdef _WIN32
  // Names ignore case on Windows: this replaces the inherited variable.
  spec.environment.back().first = "quillon_test_inherited";
  EXPECT_EQ(Run(spec), 0);
  EXPECT_EQ(Read("out.txt"), "child\nkept\na b=c\n");
#endif

  spec.environment.emplace_back("BAD=NAME", "x");
  std::unique_ptr<Process> process;
  const Status status = runner_.Start(spec, &process);
  EXPECT_EQ(status.kind(), Status::Kind::kIoError);
#ifdef _WIN32
  EXPECT_EQ(status.message(), OsText(ERROR_INVALID_PARAMETER));
#else
  EXPECT_EQ(status.message(), OsText(EINVAL));
#endif
  SetVariable("QUILLON_TEST_INHERITED", nullptr);
  SetVariable("QUILLON_TEST_OTHER", nullptr);
}

TEST_F(ProcessRunnerTest, RunsInTheWorkingDirectory) {
  fs::create_directory(dir_ / "work dir");
  ProcessSpec spec = Child("cwd");
  spec.working_directory = At("work dir");
  EXPECT_EQ(Run(spec), 0);
  const std::vector<std::string> lines = Lines(Read("out.txt"));
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_TRUE(fs::equivalent(lines[0], dir_ / "work dir")) << lines[0];
}

TEST_F(ProcessRunnerTest, InterpreterRunsTheWholeCommand) {
  ProcessSpec spec;
#ifdef _WIN32
  spec.interpreter = GetEnvironmentVariable("COMSPEC");
  if (spec.interpreter.empty()) spec.interpreter = "cmd.exe";
#else
  spec.interpreter = "/bin/sh";
#endif
  spec.command = "echo a && echo b";
  spec.stdout_path = At("out.txt");
  EXPECT_EQ(Run(spec), 0);
  EXPECT_EQ(Lines(Read("out.txt")), (std::vector<std::string>{"a", "b"}));

  spec.command = "exit 3";
  EXPECT_EQ(Run(spec), 3);
}

TEST_F(ProcessRunnerTest, ChildSeesTheArgumentsSplitCommandLineGives) {
  // Quoting that the C runtime on Windows and the split on POSIX must read
  // the same way.
  const std::string args = R"(one "two three" four\"five "six\\" se\ven "" eight\\\"nine)";
  ProcessSpec spec = Child("args");
  spec.command += " " + args;
  EXPECT_EQ(Run(spec), 0);
  const std::vector<std::string> expected = {"one",     "two three", "four\"five",   "six\\",
                                             "se\\ven", "",          "eight\\\"nine"};
  ASSERT_EQ(SplitCommandLine(args), expected);
  EXPECT_EQ(Lines(Read("out.txt")), expected);
}

TEST_F(ProcessRunnerTest, WaitWithATimeoutReportsARunningChild) {
  std::unique_ptr<Process> process = Start(Child("pid_sleep " + At("pid")));
  ASSERT_NE(process, nullptr);
  EXPECT_EQ(process->Wait(0), kProcessStillRunning);
  ASSERT_GT(PidIn("pid"), 0);
  EXPECT_EQ(process->Wait(50), kProcessStillRunning);
  process->Terminate();
  EXPECT_EQ(process->Wait(-1), kTerminatedExitStatus);
  process->Terminate();  // after the end: nothing happens
  EXPECT_EQ(process->Wait(0), kTerminatedExitStatus);
}

TEST_F(ProcessRunnerTest, TerminateFromAnotherThreadEndsAWaitWithoutLimit) {
  std::unique_ptr<Process> process = Start(Child("pid_sleep " + At("pid")));
  ASSERT_NE(process, nullptr);
  ASSERT_GT(PidIn("pid"), 0);
  std::future<int> waited = std::async(std::launch::async, [&] { return process->Wait(-1); });
  std::this_thread::sleep_for(100ms);  // most likely inside Wait by now
  process->Terminate();
  if (waited.wait_for(60s) != std::future_status::ready) {
    ADD_FAILURE() << "Wait(-1) did not return after Terminate";
    std::abort();  // the waiting thread holds the process; nothing else is safe
  }
  EXPECT_EQ(waited.get(), kTerminatedExitStatus);
}

TEST_F(ProcessRunnerTest, TerminateEndsWhatTheChildStarted) {
  std::unique_ptr<Process> process = Start(Child("grandchild " + At("pid")));
  ASSERT_NE(process, nullptr);
  const long grandchild = PidIn("pid");
  ASSERT_GT(grandchild, 0);
  EXPECT_FALSE(ProcessGone(grandchild));
  process->Terminate();
  EXPECT_EQ(process->Wait(-1), kTerminatedExitStatus);
  EXPECT_TRUE(EventuallyGone(grandchild)) << grandchild;
}

TEST_F(ProcessRunnerTest, DestroyingARunningProcessEndsIt) {
  std::unique_ptr<Process> process = Start(Child("pid_sleep " + At("pid")));
  ASSERT_NE(process, nullptr);
  const long child = PidIn("pid");
  ASSERT_GT(child, 0);
  process.reset();
  EXPECT_TRUE(EventuallyGone(child)) << child;
}

#ifdef __linux__
TEST_F(ProcessRunnerTest, NoDescriptorOfOursLeaksIntoTheChild) {
  // Descriptors the test program itself lets children inherit are allowed.
  std::set<int> inheritable;
  for (int fd : OpenDescriptors()) {
    if ((::fcntl(fd, F_GETFD) & FD_CLOEXEC) == 0) inheritable.insert(fd);
  }
  std::unique_ptr<Process> sleeping = Start(Child("sleep"));  // its pidfd is open now
  ProcessSpec spec = Child("fds");
  EXPECT_EQ(Run(spec), 0);
  for (const std::string& line : Lines(Read("out.txt"))) {
    EXPECT_EQ(inheritable.count(std::atoi(line.c_str())), 1u) << "leaked descriptor " << line;
  }
}
#endif

// ------------------------------------------------------------ the splitting

TEST(SplitCommandLineTest, FollowsTheWindowsRuntimeRules) {
  struct Case {
    const char* line;
    std::vector<std::string> args;
  };
  const Case cases[] = {
      {"", {}},
      {" \t ", {}},
      {"  a   b\tc  ", {"a", "b", "c"}},
      {R"("a b" c)", {"a b", "c"}},
      {R"(a"b c"d)", {"ab cd"}},                     // quotes group inside a word
      {R"(a "" b)", {"a", "", "b"}},                 // an empty argument
      {R"("unterminated  x)", {"unterminated  x"}},  // runs to the end
      {R"(a\\b c\)", {R"(a\\b)", R"(c\)"}},          // not before a quote: literal
      {R"(a\"b)", {R"(a"b)"}},                       // 1: a literal quote
      {R"(a\\"b c")", {R"(a\b c)"}},                 // 2: one backslash, the quote acts
      {R"(a\\\"b)", {R"(a\"b)"}},                    // 3: one backslash and a quote
      {R"("C:\dir\\" next)", {R"(C:\dir\)", "next"}},
      {R"("a""b" c)", {R"(a"b)", "c"}},  // "" inside quotes: a quote, still quoted
      {R"("a""b c")", {R"(a"b c)"}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(SplitCommandLine(c.line), c.args) << c.line;
  }
}

TEST(CommandLineOfTest, ShowsTheInterpreterWithSlashC) {
  ProcessSpec spec;
  spec.command = "gcc -c \"a b.c\"";
  EXPECT_EQ(CommandLineOf(spec), "gcc -c \"a b.c\"");
  spec.interpreter = "C:\\Windows\\system32\\cmd.exe";
  EXPECT_EQ(CommandLineOf(spec), "C:\\Windows\\system32\\cmd.exe /c gcc -c \"a b.c\"");
}

// ----------------------------------------------------------------- the fake

TEST(FakeProcessRunnerTest, LastMatchingRuleWinsAndProducesItsOutput) {
  FakeFileSystem fs;
  FakeProcessRunner runner(fs);
  runner.On("cc", {.stdout_text = "generic\n"});
  runner.On("cc -c main.c", {.stdout_text = "main.c(3): error\n",
                             .files = {{Rooted("/p/main.o"), "obj"}},
                             .exit_status = 1});
  runner.On("missing", {.start_error = Status::NotFound("No such file or directory")});

  ProcessSpec spec;
  spec.command = "cc -c main.c";
  spec.stdout_path = Rooted("/p/out.txt");
  spec.stderr_path = Rooted("/p/err.txt");
  std::unique_ptr<Process> process;
  ASSERT_TRUE(runner.Start(spec, &process).ok());
  EXPECT_EQ(fs.Contents(Rooted("/p/out.txt")), "main.c(3): error\n");  // there before Wait
  EXPECT_TRUE(fs.FileExists(Rooted("/p/err.txt")));
  EXPECT_EQ(fs.Contents(Rooted("/p/main.o")), "obj");
  EXPECT_EQ(runner.running(), 1);
  EXPECT_EQ(process->Wait(-1), 1);
  EXPECT_EQ(runner.running(), 0);

  spec.command = "cc -c util.c";
  ASSERT_TRUE(runner.Start(spec, &process).ok());
  EXPECT_EQ(fs.Contents(Rooted("/p/out.txt")), "generic\n");

  spec.command = "missing-tool";
  EXPECT_TRUE(runner.Start(spec, &process).IsNotFound());
  EXPECT_EQ(process, nullptr);
  EXPECT_EQ(runner.command_lines(),
            (std::vector<std::string>{"cc -c main.c", "cc -c util.c", "missing-tool"}));
  EXPECT_EQ(runner.running(), 0);  // the second child ended when its object went
}

TEST(FakeProcessRunnerTest, TerminateFromAnotherThreadEndsABlockingChild) {
  FakeFileSystem fs;
  FakeProcessRunner runner(fs);
  runner.On("make", {.runs_until_terminated = true});
  ProcessSpec spec;
  spec.command = "make all";
  std::unique_ptr<Process> process;
  ASSERT_TRUE(runner.Start(spec, &process).ok());
  EXPECT_EQ(process->Wait(10), kProcessStillRunning);

  std::future<int> waited = std::async(std::launch::async, [&] { return process->Wait(-1); });
  process->Terminate();
  EXPECT_EQ(waited.get(), kTerminatedExitStatus);
  EXPECT_EQ(runner.terminate_calls(), 1);
  EXPECT_EQ(runner.running(), 0);
}

}  // namespace
}  // namespace quillon
