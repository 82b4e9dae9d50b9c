// The project settings sheet without its windows: a working copy of the
// project, the selection of the target tree, what each field shows for it,
// where an edit is written and in which mode, the two fallback operations,
// and what OK checks and reports.
#ifndef QUILLON_UI_SETTINGS_SETTINGS_SHEET_H
#define QUILLON_UI_SETTINGS_SETTINGS_SHEET_H

#include <string>
#include <vector>

#include "model/project_data.h"
#include "platform/ui_services.h"
#include "ui/settings/settings_pages.h"

namespace quillon {

// What the tree has selected, all in the working copy. Nothing selected is
// the project level: global options only.
struct SettingsSelection {
  std::vector<CProjectTarget*> targets;  // their file defaults and target options
  std::vector<CLinkGroup*> groups;       // every file of the group
  std::vector<CProjectFile*> files;
};

// What a field shows for the selection.
struct FieldView {
  bool enabled = false;  // the field's level is part of the selection
  bool mixed = false;    // the selection's values differ: shown blank
  bool own = false;      // a selected file holds a value of its own
  std::vector<std::string> values;  // text form; empty when mixed
};

inline constexpr const char* kIncludeKeywordMessage = "Please specify the include keyword";

class CSettingsSheet {
 public:
  // Edits `working_copy`, a copy of the open project that the caller
  // installs on OK and drops on Cancel.
  CSettingsSheet(CProjectData& working_copy, UiServices& ui) : copy_(working_copy), ui_(ui) {}
  // With the open project that OK compares against.
  CSettingsSheet(CProjectData& working_copy, const CProjectData& original, UiServices& ui)
      : copy_(working_copy), ui_(ui), original_(&original) {}

  CProjectData& working_copy() { return copy_; }
  // For the views' own messages (a refused value).
  UiServices& ui() { return ui_; }

  void Select(SettingsSelection selection) { selection_ = std::move(selection); }
  const SettingsSelection& selection() const { return selection_; }

  FieldView View(const SettingsField& field) const { return View(field.option()); }
  FieldView View(const OptionInfo& info) const;
  // Global options go to the project; target options to each selected
  // target; file options to the file defaults of each selected target
  // (propagated to files that inherit) and as own values to the selected
  // files and groups' files that they apply to. Files whose value changed
  // are marked for translation, targets whose options changed for linking.
  // False with a reason for a disabled field or a value of the wrong type.
  bool Edit(const SettingsField& field, const std::vector<std::string>& values,
            std::string* error) {
    return Edit(field.option(), values, error);
  }
  // Also for a field's companion key.
  bool Edit(const OptionInfo& info, const std::vector<std::string>& values, std::string* error);

  // The two fallback operations of a file option, each after its question;
  // false when the user said No or nothing applies.
  bool SetTargetsToDefault(const SettingsField& field);
  bool SetFilesToTargetValue(const SettingsField& field);

  // Whether `page` may be left; shows why not.
  bool CanLeavePage(SettingsPage page);

  // OK: false, and the sheet stays open, unless every page may be left.
  // Then tells whether the files' kinds may have changed: the compiler or
  // assembler source extensions differ from `original`'s.
  bool Confirm(const CProjectData& original, bool* kinds_changed);
  // The view's OK button: Confirm against the original given at
  // construction (none: kinds never change), the outcome kept for the
  // caller that installs the copy.
  bool Ok();
  bool kinds_changed() const { return kinds_changed_; }

  // Whether a file holds an own value of any file option (the tree marks it).
  static bool HasOwnValues(CProjectData& project, CProjectFile& file);

 private:
  struct FileInScope {
    CProjectTarget* target;
    CProjectFile* file;
  };
  // The selected files and the files of the selected groups, each once.
  std::vector<FileInScope> SelectedFiles() const;
  bool Applies(const OptionInfo& info, const CProjectFile& file) const;

  CProjectData& copy_;
  UiServices& ui_;
  SettingsSelection selection_;
  const CProjectData* original_ = nullptr;
  bool kinds_changed_ = false;
};

}  // namespace quillon

#endif  // QUILLON_UI_SETTINGS_SETTINGS_SHEET_H
