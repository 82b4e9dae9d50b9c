#include "model/project_target.h"

#include "model/key_scope.h"
#include "model/project_data.h"
#include "platform/path.h"
#include "platform/path_key.h"

namespace quillon {

CProjectTarget::CProjectTarget(CProjectData& project)
    : project_(project),
      file_options_(project.NewFileOptions()),
      link_group_options_(project.NewLinkGroupOptions()),
      target_options_(project.NewTargetOptions()) {}

CLinkGroup* CProjectTarget::FindGroup(const std::string& group_name) const {
  int index = IndexOfGroup(group_name);
  return index < 0 ? nullptr : groups[index].get();
}

int CProjectTarget::IndexOfGroup(const std::string& group_name) const {
  for (size_t i = 0; i < groups.size(); ++i) {
    if (groups[i]->name == group_name) return static_cast<int>(i);
  }
  return -1;
}

CProjectFile* CProjectTarget::FindFile(const std::string& file_name) const {
  if (file_name.empty()) return nullptr;
  if (!file_index_valid_ || file_index_directory_ != project_.directory()) {
    file_index_.clear();
    file_index_.reserve(files.size());
    for (CProjectFile* file : files) {
      file_index_.emplace(PathKey(project_.FullNameOfFile(file->file_name())), file);
    }
    file_index_directory_ = project_.directory();
    file_index_valid_ = true;
  }
  auto found = file_index_.find(PathKey(project_.FullNameOfFile(file_name)));
  return found == file_index_.end() ? nullptr : found->second;
}

CLinkGroup* CProjectTarget::AddGroup(const std::string& group_name) {
  groups.push_back(
      std::make_unique<CLinkGroup>(group_name, this, project_.NewLinkGroupOptions()));
  return groups.back().get();
}

CProjectFile* CProjectTarget::AddFile(const std::string& file_name, CLinkGroup& group) {
  auto file = std::make_unique<CProjectFile>(file_name, project_.NewFileOptions());
  // A new file starts from the target's defaults for its files.
  file_options_->CopyTo(file->options());
  file->options().SetDefault(1);
  file->group = &group;
  CProjectFile* added = file.get();
  group.files.push_back(std::move(file));
  // Keep the flat list and the index current without rebuilding them: big
  // projects are filled one file at a time.
  size_t position = 0;
  for (const auto& each : groups) {
    position += each->files.size();
    if (each.get() == &group) break;
  }
  files.insert(files.begin() + static_cast<std::ptrdiff_t>(position - 1), added);
  if (file_index_valid_) {
    file_index_.emplace(PathKey(project_.FullNameOfFile(added->file_name())), added);
  }
  return added;
}

void CProjectTarget::RebuildFileList() {
  file_index_valid_ = false;
  files.clear();
  for (const auto& group : groups) {
    for (const auto& file : group->files) files.push_back(file.get());
  }
}

void CProjectTarget::Initialise(int level) {
  for (const auto& group : groups) {
    group->options().SetDefault(level);
    for (const auto& file : group->files) file->options().SetDefault(level);
  }
  file_options_->SetDefault(level);
  link_group_options_->SetDefault(level);
  target_options_->SetDefault(level);
}

void CProjectTarget::CopyFrom(const CProjectTarget& other) {
  name = other.name;
  is_changed = other.is_changed;
  groups.clear();
  for (const auto& source_group : other.groups) {
    CLinkGroup* group = AddGroup(source_group->name);
    source_group->options().CopyTo(group->options());
    for (const auto& source_file : source_group->files) {
      auto file = std::make_unique<CProjectFile>(std::string(), project_.NewFileOptions());
      file->CopyFrom(*source_file);
      file->group = group;
      group->files.push_back(std::move(file));
    }
  }
  RebuildFileList();
  other.file_options_->CopyTo(*file_options_);
  other.link_group_options_->CopyTo(*link_group_options_);
  other.target_options_->CopyTo(*target_options_);
}

int CProjectTarget::Load(CSettingsRegistry& store, TransferPass pass) {
  if (pass == TransferPass::kLocal) return 1;
  store.ReadString("TargetName", &name);
  store.ReadBool("IsChanged", &is_changed);
  ForEachIndexedKey(store, "LinkGroup", [&](int) {
    CLinkGroup* group = AddGroup(std::string());
    group->Load(store, pass);
  });
  RebuildFileList();
  LoadOptionsKey(store, "FileOptios", *file_options_, pass);
  LoadOptionsKey(store, "LinkGroupOptions", *link_group_options_, pass);
  LoadOptionsKey(store, "TargetOptios", *target_options_, pass);
  return 1;
}

int CProjectTarget::Save(CSettingsRegistry& store, TransferPass pass) const {
  if (pass == TransferPass::kLocal) return 1;
  store.WriteString("TargetName", name);
  store.WriteBool("IsChanged", is_changed);
  WriteIndexedKeys(store, "LinkGroup", groups.size(),
                   [&](size_t j) { groups[j]->Save(store, pass); });
  SaveOptionsKey(store, "FileOptios", *file_options_, pass);
  SaveOptionsKey(store, "LinkGroupOptions", *link_group_options_, pass);
  SaveOptionsKey(store, "TargetOptios", *target_options_, pass);
  return 1;
}

}  // namespace quillon
