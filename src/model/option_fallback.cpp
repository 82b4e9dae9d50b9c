#include "model/option_fallback.h"

#include "model/project_data.h"

namespace quillon {
namespace {

OptionScope FileScope(CProjectData& project, CProjectTarget* target, CProjectFile* file) {
  return OptionScope{&project, target, file};
}

CProjectTarget* TargetOf(const CProjectFile& file) {
  return file.group ? file.group->owner : nullptr;
}

void StoreInFile(CProjectData& project, CProjectTarget& target, CProjectFile& file,
                 const OptionInfo& info, const std::vector<std::string>& values, int mode) {
  std::string ignored;
  SetOption(info, FileScope(project, &target, &file), values, mode, &ignored);
}

}  // namespace

bool FileOptionAppliesTo(const OptionInfo& info, int file_kind) {
  switch (info.access) {
    case OptionAccess::kFileString:
      return file_kind ==
             (info.id == kCompilerOptionsId ? kFileCompilerSource : kFileAssemblerSource);
    case OptionAccess::kFileInt:
      return info.id == kExcludeFromMakeId || file_kind == kFileCompilerSource;
    default:
      return false;
  }
}

bool SetTargetFileOption(CProjectData& project, CProjectTarget& target, const OptionInfo& info,
                         const std::vector<std::string>& values, std::string* error) {
  if (info.level != OptionLevel::kFile) {
    *error = std::string(info.key) + " is not a file option";
    return false;
  }
  if (!SetOption(info, FileScope(project, &target, nullptr), values, Own, error)) return false;
  for (CProjectFile* file : target.files) {
    if (FileOptionAppliesTo(info, project.ClassifyFile(file->file_name()))) {
      StoreInFile(project, target, *file, info, values, Propagate);
    }
  }
  return true;
}

void ResetTargetsToDefault(CProjectData& project, const std::vector<CProjectTarget*>& targets,
                           const OptionInfo& info) {
  std::vector<std::string> value = GetOption(info, FileScope(project, nullptr, nullptr));
  std::string ignored;
  for (CProjectTarget* target : targets) {
    SetOption(info, FileScope(project, target, nullptr), value, Inherit, &ignored);
    for (CProjectFile* file : target->files) {
      if (!FileOptionAppliesTo(info, project.ClassifyFile(file->file_name()))) continue;
      StoreInFile(project, *target, *file, info, value, Propagate);
      file->is_changed = true;
    }
  }
}

void ResetFilesToTarget(CProjectData& project, const std::vector<CProjectTarget*>& targets,
                        const std::vector<CProjectFile*>& files, const OptionInfo& info) {
  if (!files.empty()) {
    for (CProjectFile* file : files) {
      if (!FileOptionAppliesTo(info, project.ClassifyFile(file->file_name()))) return;
    }
  }
  for (CProjectTarget* target : targets) {
    std::vector<std::string> value = GetOption(info, FileScope(project, target, nullptr));
    for (CProjectFile* file : target->files) {
      if (!FileOptionAppliesTo(info, project.ClassifyFile(file->file_name()))) continue;
      StoreInFile(project, *target, *file, info, value, Inherit);
      file->is_changed = true;
    }
  }
  for (CProjectFile* file : files) {
    CProjectTarget* target = TargetOf(*file);
    if (target == nullptr) continue;
    std::vector<std::string> value = GetOption(info, FileScope(project, target, nullptr));
    StoreInFile(project, *target, *file, info, value, Inherit);
    file->is_changed = true;
  }
}

}  // namespace quillon
