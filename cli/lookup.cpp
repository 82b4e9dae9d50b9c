#include "cli/lookup.h"

#include "cli/text_format.h"
#include "platform/path.h"

namespace quillon::qpm {
namespace {

Status NoTargets() { return Status::Error("the project has no target; add one first"); }

std::string TargetNames(const CProjectData& project) {
  std::string names;
  for (const auto& target : project.target_set().targets) {
    names += (names.empty() ? "" : ", ") + Quote(target->name);
  }
  return names;
}

std::string GroupNames(const CProjectTarget& target) {
  std::string names;
  for (const auto& group : target.groups) names += (names.empty() ? "" : ", ") + Quote(group->name);
  return names.empty() ? "none" : names;
}

Status CheckName(const char* what, const std::string& name) {
  if (name.empty()) return Status::Error(std::string("a ") + what + " name cannot be empty");
  return Status::OK();
}

}  // namespace

Status FindTarget(const CProjectData& project, const std::string& name, CProjectTarget** target) {
  *target = project.FindTarget(name);
  if (*target != nullptr) return Status::OK();
  if (project.target_set().targets.empty()) return NoTargets();
  return Status::Error("unknown target " + Quote(name) + " (targets: " + TargetNames(project) +
                       ")");
}

Status TargetOrDefault(const CProjectData& project, const std::string* name,
                       CProjectTarget** target) {
  if (name != nullptr) return FindTarget(project, *name, target);
  *target = project.default_target();
  if (*target != nullptr) return Status::OK();
  if (project.target_set().targets.empty()) return NoTargets();
  return Status::Error("the project has no default target; name one with --target");
}

Status CheckNewTargetName(const CProjectData& project, const std::string& name) {
  Status status = CheckName("target", name);
  if (status.ok() && project.FindTarget(name) != nullptr) {
    status = Status::Error("target " + Quote(name) + " already exists");
  }
  return status;
}

Status FindGroup(const CProjectData& project, const std::string& name, CLinkGroup** group) {
  CProjectTarget* first = project.first_target();
  if (first == nullptr) return NoTargets();
  *group = first->FindGroup(name);
  if (*group != nullptr) return Status::OK();
  return Status::Error("unknown link group " + Quote(name) + " (groups: " + GroupNames(*first) +
                       ")");
}

Status CheckNewGroupName(const CProjectData& project, const std::string& name) {
  CProjectTarget* first = project.first_target();
  if (first == nullptr) return NoTargets();
  Status status = CheckName("link group", name);
  if (status.ok() && first->FindGroup(name) != nullptr) {
    status = Status::Error("link group " + Quote(name) + " already exists");
  }
  return status;
}

std::string StoredFileName(const CProjectData& project, const std::string& path) {
  if (IsAbsolutePath(path)) return NormalizePath(path);
  return RelativePath(project.directory(), ExpandToFullPath(path));
}

Status FindFile(const CProjectData& project, const CProjectTarget& target, const std::string& path,
                CProjectFile** file) {
  *file = target.FindFile(path);
  if (*file == nullptr && !path.empty()) *file = target.FindFile(StoredFileName(project, path));
  if (*file != nullptr) return Status::OK();
  return Status::Error("no file " + Quote(path) + " in the project");
}

Status FindProjectFile(const CProjectData& project, const std::string& path, CProjectFile** file) {
  CProjectTarget* first = project.first_target();
  if (first == nullptr) return NoTargets();
  return FindFile(project, *first, path, file);
}

}  // namespace quillon::qpm
