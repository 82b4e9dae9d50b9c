// Dependency exports: updating the include graph, querying it, and asking
// why the default target would be built.
#include "build/build_services.h"
#include "deps/target_scan.h"
#include "deps/up_to_date.h"
#include "interface/export_guard.h"
#include "interface/host_observer.h"
#include "interface/library_state.h"
#include "platform/path.h"
#include "quillon/quillon.h"

using namespace quillon;

namespace {

CProjectTarget* DefaultTarget() {
  LibraryState& state = State();
  return state.project ? state.project->default_target() : nullptr;
}

// Assigns dependency `index` of `node` and answers their number, or -1.
int DependencyAt(const CDependencyNode* node, int index, std::string* name) {
  if (node == nullptr) return -1;
  const auto& deps = node->dependencies();
  if (index < 0 || index >= static_cast<int>(deps.size())) return -1;
  *name = deps[index]->name();
  return static_cast<int>(deps.size());
}

void UpdateDependencies(LibraryState& state, CProjectTarget& target) {
  WaitCursor wait(*state.ui);
  HostScanObserver observer;
  state.Scanner().Update(MakeScanRequest(*state.project, target), &observer);
}

}  // namespace

int QUILLON_CALL _OnNewProject(void) {
  return Guarded(0, [] {
    LibraryState& state = State();
    CProjectTarget* target = DefaultTarget();
    if (target == nullptr) return 0;
    if (target->files.empty()) return 1;
    WaitCursor wait(*state.ui);
    HostScanObserver observer;
    UpToDateDecision decision(*state.project, *target, state.Scanner(), *state.fs);
    std::vector<CProjectFile*> files;
    if (decision.FilesToTranslate(&files, nullptr, &observer)) return 0;
    return decision.TargetMustBeLinked() ? 0 : 1;
  });
}

namespace quillon {

void UpdateAllDependencies(LibraryState& state) {
  CProjectTarget* target = state.project->default_target();
  if (target == nullptr) {
    if (state.project->global_options().GetInt(kBeepWhenDone, 0)) {
      state.ui->Beep(kFailureTone.frequency_hz, kFailureTone.duration_ms);
    }
    return;
  }
  state.Output(OutputBuildMessages, OutputDependencyUpdate, "");
  state.Scanner().SetReset();
  UpdateDependencies(state, *target);
}

}  // namespace quillon

void QUILLON_CALL _UpdateAllDependencies(void) {
  Guarded([] {
    LibraryState& state = State();
    if (!state.project) return;
    ChangeBracket bracket;
    UpdateAllDependencies(state);
  });
}

void QUILLON_CALL _WhyWeMustBuildProject(std::vector<std::string>* reasons) {
  Guarded([&] {
    LibraryState& state = State();
    CProjectTarget* target = DefaultTarget();
    if (target == nullptr || reasons == nullptr) return;
    WaitCursor wait(*state.ui);
    HostScanObserver observer;
    UpToDateDecision decision(*state.project, *target, state.Scanner(), *state.fs);
    decision.AppendLinkReasons(reasons);
    std::vector<CProjectFile*> files;
    decision.FilesToTranslate(&files, reasons, &observer);
  });
}

int QUILLON_CALL _GetDependenciesFile(std::string* name, int index) {
  return Guarded(-1, [&] {
    CDependencyScanner& scanner = State().Scanner();
    int count = static_cast<int>(scanner.node_count());
    if (name == nullptr || index < 0 || index >= count) return -1;
    *name = scanner.NodeAt(index)->name();
    return count;
  });
}

int QUILLON_CALL _GetDependenciesFilesOfProjectFile(std::string* name, int index) {
  return Guarded(-1, [&] {
    CProjectTarget* target = DefaultTarget();
    if (target == nullptr || name == nullptr) return -1;
    CProjectFile* file = target->FindFile(*name);
    if (file == nullptr) return -1;
    std::string full = State().project->FullNameOfFile(file->file_name());
    return DependencyAt(State().Scanner().FindRoot(full), index, name);
  });
}

int QUILLON_CALL _GetDependenciesFilesOfDependence(std::string* name, int index) {
  return Guarded(-1, [&] {
    if (name == nullptr) return -1;
    return DependencyAt(State().Scanner().FindNode(*name), index, name);
  });
}

int QUILLON_CALL _GetFullNameOfRelativeIncludeFile(std::string* name) {
  return Guarded(0, [&] {
    LibraryState& state = State();
    if (name == nullptr) return 0;
    if (IsAbsolutePath(*name)) return state.fs->FileExists(*name) ? 1 : 0;
    if (!state.project) return 0;
    for (const IncludePath& path : state.project->global_options().include_paths()) {
      std::string dir = state.project->FullNameOfFile(path.directory);
      std::string found;
      if (!dir.empty() && FindFile(*state.fs, *name, dir, path.search_subdirs, &found)) {
        *name = found;
        return 1;
      }
    }
    return 0;
  });
}
