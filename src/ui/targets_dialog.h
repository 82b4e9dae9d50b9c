// The Targets dialog and the two it opens, New Target and Rename Target:
// their state and what each button does, over the project copy that the
// Targets dialog edits. Called on the user-interface thread only.
#ifndef QUILLON_UI_TARGETS_DIALOG_H
#define QUILLON_UI_TARGETS_DIALOG_H

#include <string>
#include <vector>

#include "model/project_data.h"
#include "platform/ui_services.h"

namespace quillon {

class DialogViews;

class CNewTargetDialog {
 public:
  CNewTargetDialog(const CProjectData& project, UiServices& ui);

  // "&Copy Settings From:" can be chosen only when there is a target.
  bool copy_enabled() const { return !project_.target_set().targets.empty(); }
  bool use_default() const { return use_default_; }
  bool combo_enabled() const { return !use_default_; }
  const std::vector<std::string>& sources() const { return sources_; }
  int source_selection() const { return source_selection_; }

  void UseDefaultSettings();
  void CopySettings();
  void SelectSource(int index);
  // False keeps the dialog open (the name is in use, or blank).
  bool Ok(const std::string& typed_name);

  // After OK: the trimmed name, and the target to copy from (empty for
  // default settings).
  const std::string& name() const { return name_; }
  const std::string& copy_from() const { return copy_from_; }

 private:
  const CProjectData& project_;
  UiServices& ui_;
  bool use_default_ = true;
  std::vector<std::string> sources_;
  int source_selection_ = -1;
  std::string name_;
  std::string copy_from_;
};

class CRenameTargetDialog {
 public:
  CRenameTargetDialog(const CProjectData& project, UiServices& ui, std::string old_name);

  const std::string& old_name() const { return old_name_; }
  // The edit starts with the old name too.
  const std::string& new_name() const { return new_name_; }
  static bool OkEnabled(const std::string& typed_name);
  // False keeps the dialog open: another target has the name.
  bool Ok(const std::string& typed_name);

 private:
  const CProjectData& project_;
  UiServices& ui_;
  std::string old_name_;
  std::string new_name_;
};

class CTargetsDialog {
 public:
  CTargetsDialog(CProjectData& project, UiServices& ui, DialogViews& views);

  std::vector<std::string> names() const;
  // Text 1701: the default target's name, or nothing.
  std::string current_target() const;
  int selection() const { return selection_; }
  void Select(int index);

  // The buttons. Each does nothing without a selection, except New.
  void New();
  void Delete();
  void Rename();
  void SetDefault();

  // Whether OK would hand back a changed project.
  bool changed() const { return changed_; }
  CProjectData& project() { return project_; }

 private:
  CProjectTarget* Selected() const;

  CProjectData& project_;
  UiServices& ui_;
  DialogViews& views_;
  int selection_ = -1;
  bool changed_ = false;
};

}  // namespace quillon

#endif  // QUILLON_UI_TARGETS_DIALOG_H
