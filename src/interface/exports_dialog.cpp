// Dialog and export entry points. The dialogs' logic is in src/ui; here the
// library's state is handed to it as the DialogHost.
#include <ctime>
#include <string>
#include <vector>

#include "interface/export_guard.h"
#include "interface/library_state.h"
#include "model/project_xml.h"
#include "quillon/quillon.h"
#include "ui/dialog_flows.h"
#include "ui/dialog_views.h"

using namespace quillon;

namespace {

class LibraryDialogHost : public DialogHost {
 public:
  explicit LibraryDialogHost(LibraryState& state) : state_(state) {}

  CProjectData* project() override { return state_.project.get(); }
  std::unique_ptr<CProjectData>& working_copy() override { return state_.working_copy; }
  void Install(std::unique_ptr<CProjectData> replacement) override {
    state_.InstallProject(std::move(replacement));
  }

  void Modified() override { state_.Notify(ProjectChangeModified); }
  void OptionsChanged() override { state_.Notify(ProjectChangeOptions); }
  void Reloaded() override { state_.Notify(ProjectChangeReloaded, "", ""); }
  void GroupAdded(const std::string& group) override {
    state_.Notify(ProjectChangeGroupAdded, group, "");
  }
  void FileAdded(const std::string& file, const std::string& group) override {
    state_.Notify(ProjectChangeFileAdded, file, group);
  }
  void FileRemoved(const std::string& file, const std::string& group) override {
    state_.Scanner().SetReset();
    state_.Notify(ProjectChangeFileRemoved, file, group);
  }
  void UpdateDependencies() override { UpdateAllDependencies(state_); }
  void FileKindsChanged() override {
    state_.project_changed = true;
    state_.Scanner().SetReset();
  }

  UiServices& ui() override { return *state_.ui; }
  DialogViews& views() override { return *state_.views; }

 private:
  LibraryState& state_;
};

// Runs `flow` on the current project inside a change bracket; the working
// copy never outlives it, whatever happens inside.
template <typename R, typename Flow>
R RunDialog(R cancelled, Flow&& flow) {
  return Guarded(cancelled, [&] {
    LibraryState& state = State();
    if (!state.project) return cancelled;
    ChangeBracket bracket;
    LibraryDialogHost host(state);
    struct DropCopy {
      LibraryState& state;
      ~DropCopy() { state.working_copy.reset(); }
    } drop{state};
    return flow(host);
  });
}

// "Monday, 23 November 2026 14:05:09": the long forms, in the C locale the
// library runs in.
std::string CreationStamp() {
  const std::time_t now = std::time(nullptr);
  const std::tm* local = std::localtime(&now);
  char stamp[128] = "";
  if (local != nullptr) std::strftime(stamp, sizeof stamp, "%A, %d %B %Y %H:%M:%S", local);
  return stamp;
}

// The user's cancel, and a project without targets, end it quietly: the
// export tells the user nothing. Hosts can read what happened.
Status ExportProject(LibraryState& state) {
  if (!state.project || state.project->first_target() == nullptr) {
    return Status::Error("the project has no target to export");
  }
  std::string path = "*.xml";
  if (!state.ui->AskSaveFileName("xml", "XML files(*.xml)|*.xml|All files (*.*)|*.*", &path)) {
    return Status::Error("the export was cancelled");
  }
  CXmlWriter writer(*state.fs, -1);
  if (!writer.Open(path)) return Status::Error("cannot create " + path);
  std::vector<std::string> dependencies;
  CDependencyScanner& scanner = state.Scanner();
  for (size_t i = 0; i < scanner.node_count(); ++i)
    dependencies.push_back(scanner.NodeAt(i)->name());
  Status written =
      WriteProjectXml(writer, *state.project, state.irf_file_name, dependencies, CreationStamp());
  return written.ok() ? written : Status::Error("cannot write " + path + ": " + written.message());
}

}  // namespace

int QUILLON_CALL _DoProjectSettingsDialog(void) {
  return RunDialog(0, [](DialogHost& host) { return RunProjectSettingsFlow(host); });
}

int QUILLON_CALL _DoAddProjectFileDialog(intptr_t value) {
  return RunDialog(
      0, [&](DialogHost& host) { return RunProjectFilesFlow(host, static_cast<int>(value)); });
}

void QUILLON_CALL _DoTargetsDialog(void) {
  RunDialog(0, [](DialogHost& host) {
    RunTargetsFlow(host);
    return 0;
  });
}

void QUILLON_CALL _DoNewGroupDialog(void) {
  RunDialog(0, [](DialogHost& host) {
    RunNewGroupFlow(host);
    return 0;
  });
}

void QUILLON_CALL _DoLinkOrderDialog(void) {
  RunDialog(0, [](DialogHost& host) {
    RunLinkOrderFlow(host);
    return 0;
  });
}

int QUILLON_CALL _ProjectExport(void) {
  return Guarded(0, [] {
    LibraryState& state = State();
    state.last_export = ExportProject(state);
    return 0;
  });
}
