// Puts a dialog on the screen for one modal run over its logic object, and
// answers true when the user ended it with OK. The Windows views are real
// dialogs; where there is no desktop every dialog is cancelled.
#ifndef QUILLON_UI_DIALOG_VIEWS_H
#define QUILLON_UI_DIALOG_VIEWS_H

namespace quillon {

class CTargetsDialog;
class CNewTargetDialog;
class CRenameTargetDialog;
class CNewGroupDialog;
class CLinkOrderDialog;
class CProjectFilesDialog;
class CSettingsSheet;

class DialogViews {
 public:
  virtual ~DialogViews() = default;
  virtual bool RunTargets(CTargetsDialog& dialog) = 0;
  virtual bool RunNewTarget(CNewTargetDialog& dialog) = 0;
  virtual bool RunRenameTarget(CRenameTargetDialog& dialog) = 0;
  virtual bool RunNewGroup(CNewGroupDialog& dialog) = 0;
  virtual bool RunLinkOrder(CLinkOrderDialog& dialog) = 0;
  virtual bool RunProjectFiles(CProjectFilesDialog& dialog) = 0;
  // OK only once the sheet's Confirm agreed.
  virtual bool RunSettings(CSettingsSheet& sheet) = 0;

  static DialogViews& Default();
};

}  // namespace quillon

#endif  // QUILLON_UI_DIALOG_VIEWS_H
