#include "ui/targets_dialog.h"

#include <algorithm>
#include <utility>

#include "platform/path.h"
#include "ui/dialog_texts.h"
#include "ui/dialog_views.h"

namespace quillon {

// --- New Target

CNewTargetDialog::CNewTargetDialog(const CProjectData& project, UiServices& ui)
    : project_(project), ui_(ui) {}

void CNewTargetDialog::UseDefaultSettings() {
  use_default_ = true;
  sources_.clear();
  source_selection_ = -1;
}

void CNewTargetDialog::CopySettings() {
  if (!copy_enabled()) return;
  use_default_ = false;
  sources_.clear();
  for (const auto& target : project_.target_set().targets) sources_.push_back(target->name);
  source_selection_ = 0;
}

void CNewTargetDialog::SelectSource(int index) {
  if (index >= 0 && index < static_cast<int>(sources_.size())) source_selection_ = index;
}

bool CNewTargetDialog::Ok(const std::string& typed_name) {
  std::string name(TrimBlanks(typed_name));
  if (name.empty()) return false;
  if (project_.FindTarget(name) != nullptr) {
    ui_.ShowMessage(name + kTargetNameInUse, MessageBoxKind::kOk);
    return false;
  }
  name_ = std::move(name);
  copy_from_ = use_default_ || source_selection_ < 0 ? std::string() : sources_[source_selection_];
  return true;
}

// --- Rename Target

CRenameTargetDialog::CRenameTargetDialog(const CProjectData& project, UiServices& ui,
                                         std::string old_name)
    : project_(project), ui_(ui), old_name_(std::move(old_name)), new_name_(old_name_) {}

bool CRenameTargetDialog::OkEnabled(const std::string& typed_name) {
  return !TrimBlanks(typed_name).empty();
}

bool CRenameTargetDialog::Ok(const std::string& typed_name) {
  std::string name(TrimBlanks(typed_name));
  if (name.empty()) return false;
  if (name != old_name_ && project_.FindTarget(name) != nullptr) {
    ui_.ShowMessage(name + kTargetNameInUse, MessageBoxKind::kOk);
    return false;
  }
  new_name_ = std::move(name);
  return true;
}

// --- Targets

CTargetsDialog::CTargetsDialog(CProjectData& project, UiServices& ui, DialogViews& views)
    : project_(project), ui_(ui), views_(views) {
  // It opens on the default target, else on the first.
  const CProjectTargetSet& targets = project_.target_set();
  if (!targets.targets.empty())
    selection_ = std::max(0, targets.IndexOfTarget(targets.default_target));
}

std::vector<std::string> CTargetsDialog::names() const {
  std::vector<std::string> names;
  for (const auto& target : project_.target_set().targets) names.push_back(target->name);
  return names;
}

std::string CTargetsDialog::current_target() const {
  const CProjectTarget* target = project_.default_target();
  return target ? target->name : std::string();
}

void CTargetsDialog::Select(int index) {
  const int count = static_cast<int>(project_.target_set().targets.size());
  selection_ = index >= 0 && index < count ? index : -1;
}

CProjectTarget* CTargetsDialog::Selected() const {
  if (selection_ < 0) return nullptr;
  return project_.target_set().targets[selection_].get();
}

void CTargetsDialog::New() {
  CNewTargetDialog dialog(project_, ui_);
  if (!views_.RunNewTarget(dialog)) return;
  CProjectTarget* target = project_.AddTarget(dialog.name(), dialog.copy_from());
  // A project with targets always has one to build.
  if (project_.default_target() == nullptr) project_.SetDefaultTarget(target);
  selection_ = static_cast<int>(project_.target_set().targets.size()) - 1;
  changed_ = true;
}

void CTargetsDialog::Delete() {
  CProjectTarget* target = Selected();
  if (target == nullptr) return;
  const std::string name = target->name;
  if (ui_.ShowMessage(name + kAskDeleteTarget, MessageBoxKind::kYesNoQuestion) !=
      MessageBoxAnswer::kYes) {
    return;
  }
  const bool was_default = project_.default_target() == target;
  project_.DeleteTarget(name);
  if (was_default) project_.SetDefaultTarget(project_.first_target());
  changed_ = true;
  const int count = static_cast<int>(project_.target_set().targets.size());
  selection_ = selection_ < count ? selection_ : count - 1;
}

void CTargetsDialog::Rename() {
  CProjectTarget* target = Selected();
  if (target == nullptr) return;
  CRenameTargetDialog dialog(project_, ui_, target->name);
  if (!views_.RunRenameTarget(dialog) || dialog.new_name() == target->name) return;
  project_.RenameTarget(target->name, dialog.new_name());
  changed_ = true;
}

void CTargetsDialog::SetDefault() {
  CProjectTarget* target = Selected();
  if (target == nullptr || target == project_.default_target()) return;
  project_.SetDefaultTarget(target);
  changed_ = true;
}

}  // namespace quillon
