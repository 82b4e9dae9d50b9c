// Dependency exports: updating the include graph, querying it, and asking
// why the default target would be built.
#include "interface/export_guard.h"
#include "interface/library_state.h"
#include "quillon/quillon.h"

using namespace quillon;

int QUILLON_CALL _OnNewProject(void) {
  return Guarded(0, [] {
    LibraryState& state = State();
    CProjectTarget* target = state.project ? state.project->default_target() : nullptr;
    if (target == nullptr) return 0;
    if (target->files.empty()) return 1;
    return 0;
  });
}

void QUILLON_CALL _UpdateAllDependencies(void) {
  Guarded([] {
    LibraryState& state = State();
    if (!state.project) return;
    ChangeBracket bracket;
  });
}

void QUILLON_CALL _WhyWeMustBuildProject(std::vector<std::string>* reasons) { (void)reasons; }

int QUILLON_CALL _GetDependenciesFile(std::string* name, int index) {
  (void)name;
  (void)index;
  return -1;
}

int QUILLON_CALL _GetDependenciesFilesOfProjectFile(std::string* name, int index) {
  (void)name;
  (void)index;
  return -1;
}

int QUILLON_CALL _GetDependenciesFilesOfDependence(std::string* name, int index) {
  (void)name;
  (void)index;
  return -1;
}

int QUILLON_CALL _GetFullNameOfRelativeIncludeFile(std::string* name) {
  (void)name;
  return 0;
}
