#include "support/fake_process_runner.h"

#include <chrono>

namespace quillon {

class FakeProcessRunner::FakeProcess : public Process {
 public:
  FakeProcess(FakeProcessRunner* runner, int exit_status, bool blocks)
      : runner_(runner), status_(exit_status), blocks_(blocks) {}

  ~FakeProcess() override {
    std::lock_guard<std::mutex> lock(runner_->mutex_);
    EndLocked();
  }

  int Wait(int timeout_ms) override {
    std::unique_lock<std::mutex> lock(runner_->mutex_);
    auto done = [this] { return !blocks_ || ended_; };
    if (timeout_ms < 0) {
      runner_->ended_.wait(lock, done);
    } else if (!runner_->ended_.wait_for(lock, std::chrono::milliseconds(timeout_ms), done)) {
      return kProcessStillRunning;
    }
    EndLocked();
    return status_;
  }

  void Terminate() override {
    std::lock_guard<std::mutex> lock(runner_->mutex_);
    ++runner_->terminate_calls_;
    if (ended_) return;
    if (blocks_) status_ = kTerminatedExitStatus;  // a quick child has its status already
    EndLocked();
    runner_->ended_.notify_all();
  }

 private:
  void EndLocked() {
    if (ended_) return;
    ended_ = true;
    --runner_->running_;
  }

  FakeProcessRunner* const runner_;
  int status_;
  const bool blocks_;
  bool ended_ = false;
};

FakeProcessRunner::FakeProcessRunner(FakeFileSystem& fs) : fs_(fs) {}
FakeProcessRunner::~FakeProcessRunner() = default;

Status FakeProcessRunner::Start(const ProcessSpec& launch, std::unique_ptr<Process>* process) {
  process->reset();
  Script script;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    started_.push_back(launch);
    const std::string line = CommandLineOf(launch);
    for (auto rule = rules_.rbegin(); rule != rules_.rend(); ++rule) {
      if (line.find(rule->first) != std::string::npos) {
        script = rule->second;
        break;
      }
    }
    if (!script.start_error.ok()) return script.start_error;
    ++running_;
  }
  if (launch.stdout_path == launch.stderr_path && !launch.stdout_path.empty()) {
    fs_.Create(launch.stdout_path, script.stdout_text + script.stderr_text);
  } else {
    if (!launch.stdout_path.empty()) fs_.Create(launch.stdout_path, script.stdout_text);
    if (!launch.stderr_path.empty()) fs_.Create(launch.stderr_path, script.stderr_text);
  }
  for (const auto& [path, contents] : script.files) fs_.Create(path, contents);
  if (script.action) script.action(launch);
  *process = std::make_unique<FakeProcess>(this, script.exit_status, script.runs_until_terminated);
  return Status::OK();
}

void FakeProcessRunner::On(const std::string& needle, Script script) {
  std::lock_guard<std::mutex> lock(mutex_);
  rules_.emplace_back(needle, std::move(script));
}

std::vector<ProcessSpec> FakeProcessRunner::started() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return started_;
}

std::vector<std::string> FakeProcessRunner::command_lines() const {
  std::lock_guard<std::mutex> lock(mutex_);
  std::vector<std::string> lines;
  for (const ProcessSpec& launch : started_) lines.push_back(CommandLineOf(launch));
  return lines;
}

int FakeProcessRunner::terminate_calls() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return terminate_calls_;
}

int FakeProcessRunner::running() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return running_;
}

}  // namespace quillon
