#include "ui/project_files_dialog.h"

#include <algorithm>
#include <string_view>

#include "platform/path.h"
#include "ui/dialog_texts.h"

namespace quillon {
namespace {

constexpr std::string_view kIrfDir = "$(IRFDIR)";

std::string WithoutIrfDir(std::string name) {
  for (size_t at = name.find(kIrfDir); at != std::string::npos; at = name.find(kIrfDir, at)) {
    name.erase(at, kIrfDir.size());
  }
  return name;
}

}  // namespace

CProjectFilesDialog::CProjectFilesDialog(CProjectData& project, DialogHost& host, int group_index,
                                         bool object_files)
    : project_(project), host_(host), object_files_(object_files) {
  if (const CProjectTarget* first = project_.first_target()) {
    for (const auto& group : first->groups) groups_.push_back(group->name);
  }
  const int count = static_cast<int>(groups_.size());
  if (count > 0) SelectGroup(group_index < 0 || group_index >= count ? 0 : group_index);
}

std::string CProjectFilesDialog::filter() const {
  struct Category {
    const char* label;
    int id;
  };
  const Category categories[] = {{"Compiler files (", kCInpExtensions},
                                 {"Assembler files (", kAInpExtensions},
                                 {"Header files (", kHeaderExtension},
                                 {"Asm Header files (", kAHeaderExtension},
                                 {"Object files (", kLInpExtensions}};
  std::string filter;
  for (const Category& category : categories) {
    if (category.id == kLInpExtensions && !object_files_) continue;
    const std::string masks = MaskList(project_.global_options().GetString(category.id, 0));
    if (masks.empty()) continue;
    filter += category.label + masks + ")|" + masks + "|";
  }
  return filter + "All files (*.*)|*.*";
}

CLinkGroup* CProjectFilesDialog::SelectedGroup() const {
  const CProjectTarget* first = project_.first_target();
  if (first == nullptr || group_selection_ < 0) return nullptr;
  return first->FindGroup(groups_[group_selection_]);
}

void CProjectFilesDialog::SelectGroup(int index) {
  if (index < 0 || index >= static_cast<int>(groups_.size())) return;
  group_selection_ = index;
  FillFiles();
}

void CProjectFilesDialog::FillFiles() {
  files_.clear();
  if (const CLinkGroup* group = SelectedGroup()) {
    for (const auto& file : group->files) files_.push_back(WithoutIrfDir(file->file_name()));
  }
}

std::string CProjectFilesDialog::StoredName(const std::string& full_path) const {
  const std::string& directory = project_.directory();
  if (directory.empty()) return full_path;
  const std::string relative = RelativePath(directory, full_path);
  if (IsAbsolutePath(relative) || relative.rfind("..", 0) == 0) return full_path;
  return std::string(kIrfDir) + relative;
}

int CProjectFilesDialog::AddFiles(const std::string& folder,
                                  const std::vector<std::string>& names) {
  CLinkGroup* group = SelectedGroup();
  if (group == nullptr || names.empty()) return 0;
  const std::string group_name = group->name;
  int added = 0;
  bool any_present = false;
  for (const std::string& name : names) {
    const std::string full = IsAbsolutePath(name) ? name : AbsolutePath(folder, name);
    if (project_.IsFileInProject(full, 0)) {
      any_present = true;
      continue;
    }
    const std::string stored = StoredName(full);
    if (!project_.AddFile(stored, group_name)) continue;
    project_.target_set().dependencies_changed = true;
    host_.FileAdded(stored, group_name);
    ++added;
  }
  if (any_present) {
    host_.ui().ShowMessage(names.size() == 1 ? kFileAlreadyInProject : kSomeFilesAlreadyInProject,
                           MessageBoxKind::kOk);
  }
  if (added > 0) changed_ = true;
  FillFiles();
  return added;
}

void CProjectFilesDialog::RemoveFiles(const std::vector<int>& indexes) {
  CLinkGroup* group = SelectedGroup();
  if (group == nullptr) return;
  const std::string group_name = group->name;
  std::vector<std::string> stored;
  for (int index : indexes) {
    if (index >= 0 && index < static_cast<int>(group->files.size())) {
      stored.push_back(group->files[index]->file_name());
    }
  }
  for (const std::string& name : stored) {
    project_.target_set().dependencies_changed = true;
    if (!project_.DeleteProjectFile(name)) continue;
    host_.FileRemoved(name, group_name);
    changed_ = true;
  }
  FillFiles();
}

}  // namespace quillon
