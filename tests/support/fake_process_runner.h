// A ProcessRunner for tests that runs nothing: each command line gets a
// scripted result, its output and produced files appear in a FakeFileSystem
// when the child "starts", and every start is recorded.
#ifndef QUILLON_TESTS_SUPPORT_FAKE_PROCESS_RUNNER_H
#define QUILLON_TESTS_SUPPORT_FAKE_PROCESS_RUNNER_H

#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "platform/process_runner.h"
#include "support/fake_file_system.h"

namespace quillon {

// Every method, and every method of the processes it hands out, may be
// called from any thread. The runner must outlive its processes.
class FakeProcessRunner : public ProcessRunner {
 public:
  struct Script {
    // Written to launch.stdout_path / stderr_path when those are set (both
    // into one file when the two names are the same).
    std::string stdout_text{}, stderr_text{};
    // Path -> contents, "produced" by the run.
    std::map<std::string, std::string> files{};
    int exit_status = 0;
    // Not ok: Start fails with it and nothing is written.
    Status start_error{};
    // Wait gives kProcessStillRunning (Wait(-1) blocks) until Terminate;
    // the status is then kTerminatedExitStatus.
    bool runs_until_terminated = false;
    // Optional extra effect at start, called without the runner's lock.
    std::function<void(const ProcessSpec&)> action{};
  };

  explicit FakeProcessRunner(FakeFileSystem& fs);
  ~FakeProcessRunner() override;

  Status Start(const ProcessSpec& launch, std::unique_ptr<Process>* process) override;

  // The last-added rule whose needle occurs in CommandLineOf(launch) wins;
  // without one the child exits with 0 and prints nothing.
  void On(const std::string& needle, Script script);

  // Every Start call in order, failed ones included.
  std::vector<ProcessSpec> started() const;
  std::vector<std::string> command_lines() const;
  int terminate_calls() const;
  // Children started and not yet waited for to the end, terminated or
  // destroyed: a caller that forgets a child leaves this above 0.
  int running() const;

 private:
  class FakeProcess;

  FakeFileSystem& fs_;
  mutable std::mutex mutex_;
  std::condition_variable ended_;  // a terminated child's waiters wake
  std::vector<std::pair<std::string, Script>> rules_;
  std::vector<ProcessSpec> started_;
  int terminate_calls_ = 0;
  int running_ = 0;
};

}  // namespace quillon

#endif  // QUILLON_TESTS_SUPPORT_FAKE_PROCESS_RUNNER_H
