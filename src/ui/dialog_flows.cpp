#include "ui/dialog_flows.h"

#include <memory>
#include <utility>

#include "ui/dialog_texts.h"
#include "ui/dialog_views.h"
#include "ui/link_order_dialog.h"
#include "ui/new_group_dialog.h"
#include "ui/project_files_dialog.h"
#include "ui/settings/settings_sheet.h"
#include "ui/targets_dialog.h"

namespace quillon {
namespace {

CProjectData& MakeWorkingCopy(DialogHost& host) {
  const CProjectData& current = *host.project();
  std::unique_ptr<CProjectData>& copy = host.working_copy();
  copy = current.Clone();
  copy->Initialise(0);
  copy->CopyFrom(current);
  return *copy;
}

// The working copy, taken out of the host's hands: it is installed or
// dropped, and never left behind.
std::unique_ptr<CProjectData> TakeWorkingCopy(DialogHost& host) {
  return std::move(host.working_copy());
}

bool HasTarget(DialogHost& host) {
  return host.project() != nullptr && host.project()->first_target() != nullptr;
}

bool UserSaysYes(DialogHost& host, const char* question) {
  return host.ui().ShowMessage(question, MessageBoxKind::kYesNoQuestion) == MessageBoxAnswer::kYes;
}

}  // namespace

void RunTargetsFlow(DialogHost& host) {
  if (host.project() == nullptr) return;
  const bool had_default = host.project()->default_target() != nullptr;
  CTargetsDialog dialog(MakeWorkingCopy(host), host.ui(), host.views());
  const bool ok = host.views().RunTargets(dialog);
  std::unique_ptr<CProjectData> edited = TakeWorkingCopy(host);
  if (!ok) return;
  host.Install(std::move(edited));
  if (dialog.changed()) host.Modified();
  // The copy's targets are new objects, so a default before or after means
  // the graph belongs to another target object: bring it up to date.
  if (had_default || host.project()->default_target() != nullptr) {
    host.UpdateDependencies();
    host.Reloaded();
  }
}

void RunNewGroupFlow(DialogHost& host) {
  while (host.project() != nullptr) {
    if (!HasTarget(host)) {
      if (!UserSaysYes(host, kAskAddTargetFirst)) return;
      RunTargetsFlow(host);
      if (!HasTarget(host)) return;
      continue;
    }
    CNewGroupDialog dialog(MakeWorkingCopy(host), host.ui());
    const bool ok = host.views().RunNewGroup(dialog);
    std::unique_ptr<CProjectData> edited = TakeWorkingCopy(host);
    if (!ok) return;
    host.Install(std::move(edited));
    host.project()->AddLinkGroup(dialog.name());
    host.GroupAdded(dialog.name());
    return;
  }
}

void RunLinkOrderFlow(DialogHost& host) {
  if (host.project() == nullptr) return;
  CLinkOrderDialog dialog(MakeWorkingCopy(host));
  const bool ok = host.views().RunLinkOrder(dialog);
  std::unique_ptr<CProjectData> edited = TakeWorkingCopy(host);
  if (!ok || !dialog.changed()) return;
  host.Install(std::move(edited));
  host.Modified();
}

int RunProjectFilesFlow(DialogHost& host, int group_index) {
  while (host.project() != nullptr) {
    if (!HasTarget(host)) {
      if (!UserSaysYes(host, kAskAddTargetFirst)) return 0;
      RunTargetsFlow(host);
      continue;
    }
    if (host.project()->first_target()->groups.empty()) {
      if (!UserSaysYes(host, kAskAddGroupFirst)) return 0;
      RunNewGroupFlow(host);
      continue;
    }
    CProjectFilesDialog dialog(*host.project(), host, group_index);
    return host.views().RunProjectFiles(dialog) ? 1 : 0;
  }
  return 0;
}

int RunProjectSettingsFlow(DialogHost& host) {
  if (host.project() == nullptr) return 0;
  CSettingsSheet sheet(MakeWorkingCopy(host), *host.project(), host.ui());
  const bool ok = host.views().RunSettings(sheet);
  std::unique_ptr<CProjectData> edited = TakeWorkingCopy(host);
  if (!ok) return 0;
  if (sheet.kinds_changed()) host.FileKindsChanged();
  host.Install(std::move(edited));
  host.OptionsChanged();
  host.Modified();
  return 1;
}

}  // namespace quillon
