// The state behind the exports: the current project, the working copy of a
// dialog, the host's callbacks, the IRF file name and the transfer context.
// One instance for the life of the loaded library. Exports run on the host's
// user-interface thread and are not reentrant, so nothing here is locked.
#ifndef QUILLON_INTERFACE_LIBRARY_STATE_H
#define QUILLON_INTERFACE_LIBRARY_STATE_H

#include <memory>
#include <string>

#include "build/make_engine.h"
#include "deps/dependency_scanner.h"
#include "filters/message_list.h"
#include "model/project_data.h"
#include "model/registry/settings_registry.h"
#include "platform/file_system.h"
#include "platform/process_runner.h"
#include "platform/status.h"
#include "platform/ui_services.h"
#include "quillon/quillon.h"
#include "ui/dialog_views.h"

namespace quillon {

// The store a _Transfer is bound to while it runs.
struct TransferContext {
  bool storing = false;
  CSettingsRegistry* store = nullptr;
};

class LibraryState {
 public:
  std::unique_ptr<CProjectData> project;
  std::unique_ptr<CProjectData> working_copy;
  ProjectChangeCallback on_change = nullptr;
  HostCallback host = nullptr;
  int local_transfer = 0;
  std::string irf_file_name;
  std::string irf_directory;
  TransferContext transfer;
  // Set when a change may have altered how project files are classified.
  bool project_changed = false;
  // How the last _ProjectExport ended; the export itself tells nobody.
  quillon::Status last_export;

  FileSystem* fs = &FileSystem::Default();
  UiServices* ui = &UiServices::Default();
  ProcessRunner* runner = &ProcessRunner::Default();
  DialogViews* views = &DialogViews::Default();

  // The include graph, kept between builds; made on first use over `fs`.
  CDependencyScanner& Scanner();
  // Swaps the file system (tests); the graph starts again empty.
  void SetFileSystem(FileSystem* file_system);

  // The make driver, made on first use over the services above; it owns the
  // state of a build (the make state the host polls, the last result).
  CMakeEngine& Engine();
  // Ends a build under way and waits for its thread: the project it builds
  // is about to go.
  void EndBuild();
  // Swaps the process runner (tests); the driver is made again.
  void SetProcessRunner(ProcessRunner* process_runner);

  // The error-list entries of builds, kept only while a host asks for them
  // (qpm --diagnostics); the IDE reads its error list from the output lines.
  class DiagnosticsRecorder : public MessageListSink {
   public:
    void Start() {
      entries.clear();
      recording = true;
    }
    void AddMessage(const MessageEntry& entry) override {
      if (recording) entries.push_back(entry);
    }
    bool recording = false;
    std::vector<MessageEntry> entries;  // read when no build runs
  };
  DiagnosticsRecorder diagnostics;

  // Makes `replacement` the current project, tied to the IRF file.
  void InstallProject(std::unique_ptr<CProjectData> replacement);

  // Project-change notifications: codes without values, and codes that
  // carry two names.
  void Notify(int code) const;
  void Notify(int code, const std::string& first, const std::string& second) const;
  // One OutputRecord through the host callback.
  void Output(int channel, int action, const std::string& text) const;
  void Status(const char* text, int flag, int percent) const;

 private:
  std::unique_ptr<CDependencyScanner> scanner_;
  std::unique_ptr<CMakeEngine> engine_;
};

LibraryState& State();

// The whole dependency update of the default target, as the host asks for
// it (without the change bracket): the output record first, then a scan
// from scratch; without a default target only the warning beep.
void UpdateAllDependencies(LibraryState& state);

}  // namespace quillon

#endif  // QUILLON_INTERFACE_LIBRARY_STATE_H
