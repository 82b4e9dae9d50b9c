#include "interface/library_state.h"

#include <chrono>
#include <thread>

#include "build/message_table.h"
#include "interface/host_observer.h"
#include "platform/environment.h"

namespace quillon {

LibraryState& State() {
  static LibraryState* state = new LibraryState();  // never destroyed: exports may run at exit
  return *state;
}

void LibraryState::InstallProject(std::unique_ptr<CProjectData> replacement) {
  EndBuild();
  project = std::move(replacement);
  if (project && !irf_file_name.empty()) project->set_project_file(irf_file_name);
}

void LibraryState::Notify(int code) const {
  if (on_change != nullptr) on_change(0, 0, code);
}

void LibraryState::Notify(int code, const std::string& first, const std::string& second) const {
  if (on_change == nullptr) return;
  on_change(reinterpret_cast<intptr_t>(first.c_str()), reinterpret_cast<intptr_t>(second.c_str()),
            code);
}

CDependencyScanner& LibraryState::Scanner() {
  if (!scanner_) scanner_ = std::make_unique<CDependencyScanner>(*fs);
  return *scanner_;
}

void LibraryState::SetFileSystem(FileSystem* file_system) {
  EndBuild();
  fs = file_system;
  scanner_.reset();
  engine_.reset();
}

void LibraryState::SetProcessRunner(ProcessRunner* process_runner) {
  EndBuild();
  runner = process_runner;
  engine_.reset();
}

CMakeEngine& LibraryState::Engine() {
  if (engine_) return *engine_;
  static HostScanObserver observer;
  BuildServices services;
  services.fs = fs;
  services.runner = runner;
  services.ui = ui;
  services.sink = &TheHostOutputSink();
  services.messages = &MessageTable();
  services.scanner = &Scanner();
  services.scan_observer = &observer;
  services.diagnostics = &diagnostics;
  services.host = [this](int code, void* record) {
    if (host != nullptr) host(code, record);
  };
  services.environment_variable = [](const std::string& name) {
    return GetEnvironmentVariable(name);
  };
  services.sleep = [](int milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
  };
  services.temp_directory = TemporaryDirectory();
  services.host_directory = GetEXEDir();
  engine_ = std::make_unique<CMakeEngine>(std::move(services));
  return *engine_;
}

void LibraryState::EndBuild() {
  if (engine_ && engine_->running()) engine_->Stop();
  if (engine_) engine_->Join();
}

void LibraryState::Status(const char* text, int flag, int percent) const {
  if (host == nullptr) return;
  StatusRecord record{text, flag, percent};
  host(HostStatus, &record);
}

void LibraryState::Output(int channel, int action, const std::string& text) const {
  if (host == nullptr) return;
  OutputRecord record{channel, action, text.c_str()};
  host(HostOutput, &record);
}

}  // namespace quillon

#include "interface/export_guard.h"

namespace quillon {

ChangeBracket::ChangeBracket() { State().Notify(ProjectChangeBegin); }
ChangeBracket::~ChangeBracket() { State().Notify(ProjectChangeEnd); }

}  // namespace quillon
