// Dialog views where the library has no desktop: every dialog is cancelled,
// and hosts use their own commands for the same edits.
#include "ui/dialog_views.h"

namespace quillon {
namespace {

class NoDialogViews : public DialogViews {
 public:
  bool RunTargets(CTargetsDialog&) override { return false; }
  bool RunNewTarget(CNewTargetDialog&) override { return false; }
  bool RunRenameTarget(CRenameTargetDialog&) override { return false; }
  bool RunNewGroup(CNewGroupDialog&) override { return false; }
  bool RunLinkOrder(CLinkOrderDialog&) override { return false; }
  bool RunProjectFiles(CProjectFilesDialog&) override { return false; }
  bool RunSettings(CSettingsSheet&) override { return false; }
};

}  // namespace

DialogViews& DialogViews::Default() {
  static NoDialogViews views;
  return views;
}

}  // namespace quillon
