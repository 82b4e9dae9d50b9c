// How the IDE's dialog commands run: the Targets and New Group dialogs edit
// a working copy of the project that replaces it on OK; Link Order edits a
// copy too, so that Cancel leaves the order as it was; Project Files adds
// and removes files in the project itself. A command that needs a target or
// a group first offers to make one.
#ifndef QUILLON_UI_DIALOG_FLOWS_H
#define QUILLON_UI_DIALOG_FLOWS_H

#include "ui/dialog_host.h"

namespace quillon {

void RunTargetsFlow(DialogHost& host);
void RunNewGroupFlow(DialogHost& host);
void RunLinkOrderFlow(DialogHost& host);
// 1 when the dialog ended with OK, else 0. `group_index` preselects a group.
int RunProjectFilesFlow(DialogHost& host, int group_index);
// The settings sheet on a working copy: 1 after OK, which installs the copy
// and tells the host the options changed; 0 after Cancel, which changes
// nothing.
int RunProjectSettingsFlow(DialogHost& host);

}  // namespace quillon

#endif  // QUILLON_UI_DIALOG_FLOWS_H
