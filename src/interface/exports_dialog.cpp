// Dialog and export entry points.
#include "interface/export_guard.h"
#include "interface/library_state.h"
#include "quillon/quillon.h"

using namespace quillon;

int QUILLON_CALL _DoProjectSettingsDialog(void) {
  return Guarded(0, [] {
    if (!State().project) return 0;
    ChangeBracket bracket;
    return 0;
  });
}

int QUILLON_CALL _DoAddProjectFileDialog(intptr_t) {
  return Guarded(0, [] {
    if (!State().project) return 0;
    ChangeBracket bracket;
    return 0;
  });
}

void QUILLON_CALL _DoTargetsDialog(void) {
  Guarded([] {
    if (!State().project) return;
    ChangeBracket bracket;
  });
}

void QUILLON_CALL _DoNewGroupDialog(void) {
  Guarded([] {
    if (!State().project) return;
    ChangeBracket bracket;
  });
}

void QUILLON_CALL _DoLinkOrderDialog(void) {
  Guarded([] {
    if (!State().project) return;
    ChangeBracket bracket;
  });
}

int QUILLON_CALL _ProjectExport(void) {
  return Guarded(0, [] { return State().project ? 0 : 0; });
}
