#include "interface/library_state.h"

namespace quillon {

LibraryState& State() {
  static LibraryState* state = new LibraryState();  // never destroyed: exports may run at exit
  return *state;
}

void LibraryState::InstallProject(std::unique_ptr<CProjectData> replacement) {
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
  fs = file_system;
  scanner_.reset();
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
