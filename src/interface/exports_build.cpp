// The build boundary: starting, stopping and polling a build.
#include <cstdlib>

#include "build/make_engine.h"
#include "interface/export_guard.h"
#include "interface/library_state.h"
#include "platform/environment.h"
#include "quillon/quillon.h"

using namespace quillon;

namespace {

// How many compiles may run at once: QUILLON_JOBS when it is a number above
// one, else one, which is the engine exactly as it always ran.
int JobsFromEnvironment() {
  const std::string value = GetEnvironmentVariable("QUILLON_JOBS");
  char* end = nullptr;
  long jobs = std::strtol(value.c_str(), &end, 10);
  if (value.empty() || *end != '\0' || jobs < 1) return 1;
  return static_cast<int>(std::min(jobs, 256L));
}

}  // namespace

void QUILLON_CALL _Make(int mode, const std::vector<std::string>* files) {
  Guarded([&] {
    LibraryState& state = State();
    if (!state.project) return;
    CProjectTarget* target = state.project->default_target();
    if (target == nullptr) {
      state.ui->ShowMessage("Target is not defined !", MessageBoxKind::kOk);
      return;
    }
    state.Engine().Start(*state.project, *target, mode, files, JobsFromEnvironment());
  });
}

void QUILLON_CALL _StopMake(void) {
  Guarded([] {
    LibraryState& state = State();
    if (!state.project) return;
    state.Engine().Stop();
  });
}

int QUILLON_CALL _WhatIsInProgress(void) {
  return Guarded(static_cast<int>(MakeStateNoProject), [] {
    LibraryState& state = State();
    if (!state.project) return static_cast<int>(MakeStateNoProject);
    return state.Engine().state();
  });
}
