// The process runner on real processes. The test program runs itself as the
// child, which does what QUILLON_TEST_CHILD in its environment says, so no
// compiler is needed. Then SplitCommandLine's rules.
#include "platform/process_runner.h"

#include <gtest/gtest.h>

#include <chrono>
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
#include "platform/path.h"

#ifdef _WIN32
#include <windows.h>
#undef SetEnvironmentVariable  // ours, not the Win32 macro
#else
#include <errno.h>
#include <fcntl.h>
#include <unistd.h>
#endif

namespace quillon {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

constexpr char kChildVariable[] = "QUILLON_TEST_CHILD";

// The text without its line end (and the blank cmd leaves before "&&").
std::string Chomp(std::string text) {
  while (!text.empty() && std::strchr("\r\n ", text.back())) text.pop_back();
  return text;
}

#ifdef _WIN32
constexpr int kNoFileError = ERROR_FILE_NOT_FOUND;
long OwnPid() { return static_cast<long>(::GetCurrentProcessId()); }
std::string OsText(int error) {
  char text[512] = "";
  ::FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error,
                   MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), text, sizeof text, nullptr);
  return Chomp(text);
}
bool ProcessGone(long pid) {
  const HANDLE process = ::OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(pid));
  const bool gone = process == nullptr || ::WaitForSingleObject(process, 0) == WAIT_OBJECT_0;
  if (process != nullptr) ::CloseHandle(process);
  return gone;
}
#else
constexpr int kNoFileError = ENOENT;
long OwnPid() { return static_cast<long>(::getpid()); }
std::string OsText(int error) { return std::strerror(error); }
// Also dead but not reaped: a container's first process may never reap.
bool ProcessGone(long pid) {
  std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
  std::string line;
  std::getline(stat, line);
  const size_t name_end = line.rfind(") ");  // the state follows the name
  return name_end == std::string::npos || line[name_end + 2] == 'Z' || line[name_end + 2] == 'X';
}
#endif

// Polls: an ended process leaves the system's tables a moment later.
bool EventuallyGone(long pid) {
  for (int i = 0; i < 1500 && !ProcessGone(pid); ++i) std::this_thread::sleep_for(20ms);
  return ProcessGone(pid);
}

// The child's part: "env NAME...", "sleep" or "fds".
int RunChild(const std::string& line) {
  std::istringstream words(line);
  std::string mode;
  words >> mode;
  if (mode == "env") {  // a line on stderr, the values named on stdout, and 42
    std::fputs("err line\n", stderr);
    std::fflush(stderr);  // first in a shared file
    for (std::string name; words >> name;) {
      const char* value = std::getenv(name.c_str());
      std::printf("%s\n", value ? value : "-");
    }
    return 42;
  } else if (mode == "sleep") {
    // Its pid in "pid" in its working directory, renamed so never read half-written.
    std::ofstream("pid.tmp") << OwnPid();
    fs::rename("pid.tmp", "pid");
    std::this_thread::sleep_for(120s);  // a child nobody ended goes in the end
#ifdef __linux__
  } else if (mode == "fds") {
    for (int fd = 3; fd < 1024; ++fd) {
      if (::fcntl(fd, F_GETFD) != -1) std::printf("%d\n", fd);
    }
#endif
  }
  return 0;
}

// Runs before main: a child started by these tests does its part and ends
// without running any test. Only a test program may do this.
[[maybe_unused]] const bool kRanAsChild = [] {
  const char* mode = std::getenv(kChildVariable);
  if (mode == nullptr) return false;
  const int status = RunChild(mode);
  std::fflush(nullptr);
  std::_Exit(status);
}();

class ProcessRunnerTest : public ::testing::Test {
 protected:
  void SetUp() override { fs::create_directories(dir_); }
  void TearDown() override { fs::remove_all(dir_, ignored_); }

  std::string At(const std::string& name) const { return (dir_ / name).string(); }
  // The file's text; Windows' text mode may have written "\r\n".
  std::string Read(const std::string& name) const {
    std::ifstream in(At(name), std::ios::binary);
    std::string text(std::istreambuf_iterator<char>(in), {});
    std::erase(text, '\r');
    return text;
  }

  // This program doing `mode` in the test's directory, its streams captured
  // in out.txt and err.txt.
  ProcessSpec Child(const std::string& mode) const {
    return {.command = "\"" + GetEXEPath() + "\"", .interpreter = "",
            .working_directory = dir_.string(), .environment = {{kChildVariable, mode}},
            .stdout_path = At("out.txt"), .stderr_path = At("err.txt")};
  }
  std::unique_ptr<Process> Start(const ProcessSpec& launch) {
    std::unique_ptr<Process> process;
    const Status status = runner_.Start(launch, &process);
    EXPECT_TRUE(status.ok()) << CommandLineOf(launch) << ": " << status.message();
    return process;
  }
  // Starts and waits; -1000 when it did not start.
  int Run(const ProcessSpec& launch) {
    std::unique_ptr<Process> process = Start(launch);
    return process ? process->Wait(-1) : -1000;
  }
  // The pid a sleeping child wrote in its working directory, once it is there:
  // a child killed while it starts can leave Wine's console host behind.
  long SleeperPid() const {
    for (int i = 0; i < 3000; ++i, std::this_thread::sleep_for(20ms)) {
      if (const long pid = std::atol(Read("pid").c_str()); pid > 0) return pid;
    }
    return 0;
  }

  ProcessRunner& runner_ = ProcessRunner::Default();
  const fs::path dir_ =
      fs::temp_directory_path() / ("quillon proc-" + std::to_string(std::random_device()()));
  std::error_code ignored_;
};

TEST_F(ProcessRunnerTest, ChildGetsTheVariablesBothStreamsAreCapturedAndExit42IsAStatus) {
  SetEnvironmentVariable("QUILLON_TEST_KEPT", "kept");
  SetEnvironmentVariable("QUILLON_TEST_REPLACED", "parent");
  std::ofstream(At("out.txt")) << std::string(5000, 'o');  // an old, longer capture
  ProcessSpec launch = Child("env QUILLON_TEST_KEPT QUILLON_TEST_REPLACED QUILLON_TEST_NEW");
  launch.environment.emplace_back("QUILLON_TEST_NEW", "first");
  launch.environment.emplace_back("QUILLON_TEST_NEW", "a b=c");  // the later pair wins
  // Names ignore case on Windows (as paths do): this replaces the inherited one.
  launch.environment.emplace_back(
      kPathsIgnoreCase ? "quillon_test_replaced" : "QUILLON_TEST_REPLACED", "child");
  EXPECT_EQ(Run(launch), 42);
  EXPECT_EQ(Read("out.txt"), "kept\nchild\na b=c\n");
  EXPECT_EQ(Read("err.txt"), "err line\n");

  launch.stderr_path = launch.stdout_path;  // named twice: one file takes both
  EXPECT_EQ(Run(launch), 42);
  EXPECT_EQ(Read("out.txt"), "err line\nkept\nchild\na b=c\n");
}

TEST_F(ProcessRunnerTest, FailedStartIsAStatusWithTheSystemsText) {
  std::unique_ptr<Process> process;
  auto start = [&](const std::string& line) {
    ProcessSpec launch;
    launch.command = line;
    return runner_.Start(launch, &process);
  };
  const Status status = start("quillon-no-such-program-4711 -c x.c");
  EXPECT_EQ(status.kind(), Status::Kind::kNotFound);
  EXPECT_EQ(status.message(), OsText(kNoFileError));
  EXPECT_EQ(start("\"" + At("no such dir/tool") + "\" x").kind(), Status::Kind::kNotFound);
  EXPECT_FALSE(start("  ").ok());
}

// The interpreter runs the whole line, starting this program as a grandchild
// ("&& exit" keeps sh from replacing itself with it); a second thread waits.
TEST_F(ProcessRunnerTest, InterpreterWaitTimeoutAndTerminateOfWhatTheChildStarted) {
  ProcessSpec launch = Child("sleep");
  launch.interpreter = DefaultCommandInterpreter();
  launch.command = "echo a && " + launch.command + " && exit 0";
  std::unique_ptr<Process> process = Start(launch);
  ASSERT_NE(process, nullptr);
  EXPECT_EQ(process->Wait(0), kProcessStillRunning);
  const long grandchild = SleeperPid();
  ASSERT_GT(grandchild, 0);
  EXPECT_EQ(Chomp(Read("out.txt")), "a");
  EXPECT_EQ(process->Wait(50), 258);  // what callers show as "Timeout"
  EXPECT_FALSE(ProcessGone(grandchild));

  std::future<int> waited = std::async(std::launch::async, [&] { return process->Wait(-1); });
  std::this_thread::sleep_for(100ms);  // most likely inside Wait by now
  process->Terminate();
  ASSERT_EQ(waited.wait_for(60s), std::future_status::ready) << "Wait(-1) went on";
  EXPECT_EQ(waited.get(), kTerminatedExitStatus);
  EXPECT_TRUE(EventuallyGone(grandchild)) << grandchild;
}

#ifdef __linux__
TEST_F(ProcessRunnerTest, NoDescriptorOfOursLeaksIntoTheChildAndDestroyingEndsOne) {
  std::set<int> inheritable;  // what the test program itself lets children have
  for (int fd = 3; fd < 1024; ++fd) {
    if (::fcntl(fd, F_GETFD) == 0) inheritable.insert(fd);
  }
  std::unique_ptr<Process> sleeping = Start(Child("sleep"));  // holds a pidfd
  const long sleeper = SleeperPid();
  ASSERT_GT(sleeper, 0);
  EXPECT_EQ(Run(Child("fds")), 0);
  std::istringstream fds(Read("out.txt"));
  for (int fd; fds >> fd;) EXPECT_EQ(inheritable.count(fd), 1u) << "leaked descriptor " << fd;
  sleeping.reset();
  EXPECT_TRUE(EventuallyGone(sleeper)) << sleeper;
}
#endif

TEST(SplitCommandLineTest, FollowsTheWindowsRuntimeRules) {
  const std::pair<const char*, std::vector<std::string>> cases[] = {
      {"  a   b\tc  ", {"a", "b", "c"}},
      {R"(a"b c"d)", {"ab cd"}},                     // quotes group inside a word
      {R"("unterminated  x)", {"unterminated  x"}},  // runs to the end
      {R"(a\\b c\)", {R"(a\\b)", R"(c\)"}},          // not before a quote: literal
      {R"(a "" b)", {"a", "", "b"}},                 // an empty argument
      {R"(a\"b)", {R"(a"b)"}},                       // 1: a literal quote
      {R"(a\\"b c")", {R"(a\b c)"}},                 // 2: one backslash, the quote acts
      {R"(a\\\"b)", {R"(a\"b)"}},                    // 3: one backslash and a quote
      {R"("a""b" c)", {R"(a"b)", "c"}},              // "" inside quotes: a quote, still quoted
  };
  for (const auto& [line, args] : cases) EXPECT_EQ(SplitCommandLine(line), args) << line;
}

}  // namespace
}  // namespace quillon
