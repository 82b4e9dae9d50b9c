#include "build/build_context.h"

#include <algorithm>

#include "build/message_table.h"
#include "model/project_data.h"
#include "platform/environment.h"
#include "platform/path.h"
#include "platform/process_runner.h"
#include "platform/ui_services.h"

namespace quillon {

bool RunningProcesses::Add(Process* process) {
  std::lock_guard<std::mutex> lock(mutex_);
  if (stopped_) return false;
  running_.push_back(process);
  return true;
}

void RunningProcesses::Remove(Process* process) {
  std::lock_guard<std::mutex> lock(mutex_);
  running_.erase(std::remove(running_.begin(), running_.end(), process), running_.end());
}

void RunningProcesses::TerminateAll() {
  std::lock_guard<std::mutex> lock(mutex_);
  stopped_ = true;
  for (Process* process : running_) process->Terminate();
}

void RunningProcesses::Reset() {
  std::lock_guard<std::mutex> lock(mutex_);
  stopped_ = false;
}

BuildContext::BuildContext(const BuildServices& services, BuildSignals& signals,
                           CProjectData& project, CProjectTarget& target)
    : services(services),
      project(project),
      target(target),
      signals(signals),
      running(signals.running) {
  const CGlobalOptions& options = project.global_options();
  macros.working_directory = BuildWorkingDirectory(project);
  std::string compiler_dir(TrimBlanks(CalculateEnvironmentVariable(
      options.GetString(kCompilerDirectory, 0))));
  if (!compiler_dir.empty()) {
    compiler_dir = AddBackslash(AbsolutePath(macros.working_directory, compiler_dir));
  }
  macros.compiler_directory = compiler_dir;
  macros.host_directory = services.host_directory;
  std::vector<std::string> settings;
  options.GetStringList(kEnvironmentSettingsList, &settings);
  environment = EnvironmentPairs(settings);
  filter_name = project.target_set().filter_name;
}

int BuildContext::GlobalInt(int id) const { return project.global_options().GetInt(id, 0); }

std::string BuildContext::GlobalString(int id) const {
  return project.global_options().GetString(id, 0);
}

bool BuildContext::Filtering() const { return filter_name != kNoFilter; }

void BuildContext::Print(const std::string& line) const {
  services.sink->Output(OutputBuildMessages, OutputAppendLine, line);
}

void BuildContext::PrintTranslatorLine(const std::string& line) const {
  services.sink->Output(OutputTranslatorOutput, OutputAppendLine, line);
}

void BuildContext::Flush() const { services.sink->Output(OutputEndOfGroup, OutputShow, ""); }

void BuildContext::Report(int number, const char* arg1, const char* arg2) const {
  services.messages->ReportMessage(number, arg1, true, arg2);
}

void BuildContext::BeepForFailure() const {
  if (GlobalInt(kBeepWhenDone)) {
    services.ui->Beep(kFailureTone.frequency_hz, kFailureTone.duration_ms);
  }
}

std::string BuildWorkingDirectory(const CProjectData& project) {
  std::string root(TrimBlanks(
      CalculateEnvironmentVariable(project.global_options().GetString(kRootDir, 0))));
  std::string base = project.directory();
  if (base.empty()) base = AddBackslash(ExpandToFullPath("."));
  if (root.empty()) return AddBackslash(NormalizePath(base));
  return AddBackslash(AbsolutePath(base, root));
}

std::vector<std::pair<std::string, std::string>> EnvironmentPairs(
    const std::vector<std::string>& settings) {
  constexpr size_t kMaxPairs = 50;
  std::vector<std::pair<std::string, std::string>> pairs;
  for (const std::string& setting : settings) {
    std::string_view entry = TrimBlanks(setting);
    size_t equals = entry.find('=');
    if (equals == std::string_view::npos || equals == 0 || equals + 1 == entry.size()) continue;
    pairs.emplace_back(entry.substr(0, equals), entry.substr(equals + 1));
    if (pairs.size() == kMaxPairs) break;
  }
  return pairs;
}

}  // namespace quillon
