#include "ui/settings/settings_sheet.h"

#include <algorithm>
#include <unordered_set>

#include "model/global_options.h"
#include "model/option_fallback.h"

namespace quillon {
namespace {

CProjectTarget* TargetOf(const CProjectFile& file) {
  return file.group != nullptr ? file.group->owner : nullptr;
}

bool IsFileLevel(const OptionInfo& info) { return info.level == OptionLevel::kFile; }
bool IsTargetLevel(const OptionInfo& info) { return info.level == OptionLevel::kTarget; }

// The values of every scope in turn, folded into one view.
class ViewBuilder {
 public:
  void Add(const OptionInfo& info, const OptionScope& scope) {
    std::vector<std::string> values = GetOption(info, scope);
    if (!seen_) {
      view_.values = std::move(values);
      seen_ = true;
    } else if (values != view_.values) {
      view_.mixed = true;
    }
    if (scope.file != nullptr && GetOwnFlag(info, scope)) view_.own = true;
  }
  FieldView Done() {
    view_.enabled = seen_;
    if (view_.mixed) view_.values.clear();
    return std::move(view_);
  }

 private:
  FieldView view_;
  bool seen_ = false;
};

}  // namespace

bool CSettingsSheet::Applies(const OptionInfo& info, const CProjectFile& file) const {
  return FileOptionAppliesTo(info, copy_.ClassifyFile(file.file_name()));
}

std::vector<CSettingsSheet::FileInScope> CSettingsSheet::SelectedFiles() const {
  std::vector<FileInScope> files;
  std::unordered_set<const CProjectFile*> seen;
  auto add = [&](CProjectFile* file) {
    if (seen.insert(file).second) files.push_back({TargetOf(*file), file});
  };
  for (CProjectFile* file : selection_.files) add(file);
  for (CLinkGroup* group : selection_.groups) {
    for (const auto& file : group->files) add(file.get());
  }
  return files;
}

FieldView CSettingsSheet::View(const OptionInfo& info) const {
  ViewBuilder view;
  if (!IsTargetLevel(info) && !IsFileLevel(info)) {
    view.Add(info, {&copy_, nullptr, nullptr});
    return view.Done();
  }
  for (CProjectTarget* target : selection_.targets) view.Add(info, {&copy_, target, nullptr});
  if (IsFileLevel(info)) {
    for (const FileInScope& in : SelectedFiles()) {
      if (Applies(info, *in.file)) view.Add(info, {&copy_, in.target, in.file});
    }
  }
  return view.Done();
}

bool CSettingsSheet::Edit(const OptionInfo& info, const std::vector<std::string>& values,
                          std::string* error) {
  if (!View(info).enabled) {
    *error = std::string(info.key) + " cannot be set for this selection";
    return false;
  }
  CProjectData& project = copy_;
  if (!IsTargetLevel(info) && !IsFileLevel(info)) {
    return SetOption(info, {&project, nullptr, nullptr}, values, Own, error);
  }
  if (IsTargetLevel(info)) {
    for (CProjectTarget* target : selection_.targets) {
      const OptionScope scope{&project, target, nullptr};
      const std::vector<std::string> before = GetOption(info, scope);
      if (!SetOption(info, scope, values, Own, error)) return false;
      if (GetOption(info, scope) != before) target->is_changed = true;
    }
    return true;
  }
  // A file option: files that change value must be translated again.
  for (CProjectTarget* target : selection_.targets) {
    std::vector<std::vector<std::string>> before;
    for (CProjectFile* file : target->files) before.push_back(GetOption(info, {&project, target, file}));
    if (!SetTargetFileOption(project, *target, info, values, error)) return false;
    for (size_t i = 0; i < target->files.size(); ++i) {
      CProjectFile* file = target->files[i];
      if (GetOption(info, {&project, target, file}) != before[i]) file->is_changed = true;
    }
  }
  for (const FileInScope& in : SelectedFiles()) {
    if (!Applies(info, *in.file)) continue;
    const OptionScope scope{&project, in.target, in.file};
    const std::vector<std::string> before = GetOption(info, scope);
    if (!SetOption(info, scope, values, Own, error)) return false;
    if (GetOption(info, scope) != before) in.file->is_changed = true;
  }
  return true;
}

bool CSettingsSheet::SetTargetsToDefault(const SettingsField& field) {
  const OptionInfo& info = field.option();
  if (!IsFileLevel(info) || selection_.targets.empty()) return false;
  if (ui_.ShowMessage(kResetTargetsQuestion, MessageBoxKind::kYesNoQuestion) !=
      MessageBoxAnswer::kYes) {
    return false;
  }
  ResetTargetsToDefault(copy_, selection_.targets, info);
  return true;
}

bool CSettingsSheet::SetFilesToTargetValue(const SettingsField& field) {
  const OptionInfo& info = field.option();
  std::vector<CProjectFile*> files;
  for (const FileInScope& in : SelectedFiles()) files.push_back(in.file);
  if (!IsFileLevel(info) || (selection_.targets.empty() && files.empty())) return false;
  // With files selected, only a selection wholly of the page's kind resets.
  if (std::any_of(files.begin(), files.end(),
                  [&](const CProjectFile* file) { return !Applies(info, *file); })) {
    return false;
  }
  if (ui_.ShowMessage(kResetFilesQuestion, MessageBoxKind::kYesNoQuestion) !=
      MessageBoxAnswer::kYes) {
    return false;
  }
  ResetFilesToTarget(copy_, selection_.targets, files, info);
  return true;
}

bool CSettingsSheet::CanLeavePage(SettingsPage page) {
  if (page != SettingsPage::kIncludes) return true;
  const IncludeKeywordSettings& keyword = copy_.global_options().include_keyword();
  if (keyword.valid && keyword.keyword.empty()) {
    ui_.ShowMessage(kIncludeKeywordMessage, MessageBoxKind::kOk);
    return false;
  }
  return true;
}

bool CSettingsSheet::Confirm(const CProjectData& original, bool* kinds_changed) {
  for (int page = 0; page < kSettingsPageCount; ++page) {
    if (!CanLeavePage(static_cast<SettingsPage>(page))) return false;
  }
  const CGlobalOptions& before = original.global_options();
  const CGlobalOptions& after = copy_.global_options();
  *kinds_changed = before.GetString(kCInpExtensions, 0) != after.GetString(kCInpExtensions, 0) ||
                   before.GetString(kAInpExtensions, 0) != after.GetString(kAInpExtensions, 0);
  return true;
}

bool CSettingsSheet::Ok() {
  kinds_changed_ = false;
  return Confirm(original_ != nullptr ? *original_ : copy_, &kinds_changed_);
}

bool CSettingsSheet::HasOwnValues(CProjectData& project, CProjectFile& file) {
  const OptionScope scope{&project, TargetOf(file), &file};
  for (const OptionInfo& info : OptionCatalogue()) {
    if (IsFileLevel(info) && GetOwnFlag(info, scope)) return true;
  }
  return false;
}

}  // namespace quillon
