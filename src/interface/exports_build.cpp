// The build boundary: starting, stopping and polling a build.
#include "build/message_table.h"
#include "interface/export_guard.h"
#include "interface/library_state.h"
#include "quillon/quillon.h"

using namespace quillon;

namespace {

// "There are no files in default target !"
constexpr int kNoFilesMessage = 8;

}  // namespace

void QUILLON_CALL _Make(int mode, const std::vector<std::string>* files) {
  (void)mode;
  (void)files;
  Guarded([&] {
    LibraryState& state = State();
    if (!state.project) return;
    if (state.project->default_target() == nullptr) {
      state.ui->ShowMessage("Target is not defined !", MessageBoxKind::kOk);
      return;
    }
    CProjectData& project = *state.project;
    project.build_result = 0;
    state.Output(1, 20, "");
    state.Output(0, 20, "");
    MessageTable().ResetCounts();
    project.target_set().make_activity = MakeStateIdle;
    const bool external_make = project.global_options().GetInt(kExternalMake, 0) != 0;
    if (!external_make && project.default_target()->files.empty()) {
      // Nothing to build: said as a build message, with the failure beep.
      MessageTable().ReportMessage(kNoFilesMessage, nullptr, true);
      if (project.global_options().GetInt(kBeepWhenDone, 0)) state.ui->Beep(500, 150);
      return;
    }
  });
}

void QUILLON_CALL _StopMake(void) {
  Guarded([] {
    LibraryState& state = State();
    if (!state.project) return;
    state.project->target_set().make_activity = MakeStateFailed;
    state.Output(0, 21, "Process terminated at user request.");
  });
}

int QUILLON_CALL _WhatIsInProgress(void) {
  return Guarded(static_cast<int>(MakeStateNoProject), [] {
    LibraryState& state = State();
    if (!state.project) return static_cast<int>(MakeStateNoProject);
    return state.project->target_set().make_activity.load();
  });
}
