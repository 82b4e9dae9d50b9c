#include "cli/lookup.h"

#include <vector>

#include "cli/text_format.h"
#include "interface/host_api.h"
#include "platform/path.h"
#include "quillon/quillon.h"

namespace quillon::qpm {
namespace {

Status NoTargets() { return Status::Error("the project has no target; add one first"); }

// The names an export enumerates by index.
template <typename Export>
std::vector<std::string> Enumerate(Export enumerate) {
  std::vector<std::string> names;
  std::string name;
  for (int index = 0; enumerate(&name, index) > index; ++index) names.push_back(name);
  return names;
}

// The link groups of the first target, or false when there is no target.
bool FirstTargetGroups(std::vector<std::string>* groups) {
  std::string first;
  if (_GetTargetName(&first, 0) < 1) return false;
  *groups = GroupNames(first);
  return true;
}

std::string QuotedNames(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ", ") + Quote(name);
  return text;
}

bool Contains(const std::vector<std::string>& names, const std::string& name) {
  for (const std::string& each : names) {
    if (each == name) return true;
  }
  return false;
}

Status CheckName(const char* what, const std::string& name) {
  if (name.empty()) return Status::Error(std::string("a ") + what + " name cannot be empty");
  return Status::OK();
}

bool InTarget(const std::string& target, const std::string& name) {
  int kind = 0, value = 0;
  return _GetProjectFileInfo(name.c_str(), target.c_str(), &kind, &value) == 1;
}

}  // namespace

std::vector<std::string> TargetNames() { return Enumerate(_GetTargetName); }

std::vector<std::string> GroupNames(const std::string& target) {
  return Enumerate(
      [&](std::string* name, int index) { return _GetLinkGroupName(name, index, target.c_str()); });
}

Status FindTarget(const std::string& name) {
  const std::vector<std::string> targets = TargetNames();
  if (Contains(targets, name)) return Status::OK();
  if (targets.empty()) return NoTargets();
  return Status::Error("unknown target " + Quote(name) + " (targets: " + QuotedNames(targets) +
                       ")");
}

Status TargetOrDefault(const std::string* name, std::string* found) {
  if (name != nullptr) {
    *found = *name;
    return FindTarget(*name);
  }
  if (host::HasDefaultTarget()) {
    _GetDefaultTargetName(found);
    return Status::OK();
  }
  if (TargetNames().empty()) return NoTargets();
  return Status::Error("the project has no default target; name one with --target");
}

Status CheckNewTargetName(const std::string& name) {
  Status status = CheckName("target", name);
  if (status.ok() && Contains(TargetNames(), name)) {
    status = Status::Error("target " + Quote(name) + " already exists");
  }
  return status;
}

Status FindGroup(const std::string& name) {
  std::vector<std::string> groups;
  if (!FirstTargetGroups(&groups)) return NoTargets();
  if (Contains(groups, name)) return Status::OK();
  return Status::Error("unknown link group " + Quote(name) +
                       " (groups: " + (groups.empty() ? "none" : QuotedNames(groups)) + ")");
}

Status CheckNewGroupName(const std::string& name) {
  std::vector<std::string> groups;
  if (!FirstTargetGroups(&groups)) return NoTargets();
  Status status = CheckName("link group", name);
  if (status.ok() && Contains(groups, name)) {
    status = Status::Error("link group " + Quote(name) + " already exists");
  }
  return status;
}

std::string StoredFileName(const std::string& path) {
  if (IsAbsolutePath(path)) return NormalizePath(path);
  std::string directory;
  _GetDirectory(1, &directory);
  return RelativePath(directory, ExpandToFullPath(path));
}

std::string FullFileName(const std::string& stored) {
  std::string full;
  _GetFullNameOfProjectFile(stored.c_str(), &full, 0, 0);
  return full;
}

bool IsProjectFile(const std::string& name) {
  std::string first;
  return _GetTargetName(&first, 0) >= 1 && InTarget(first, name);
}

Status FindFile(const std::string& target, const std::string& path, std::string* name) {
  *name = path;
  if (!InTarget(target, *name) && !path.empty()) *name = StoredFileName(path);
  if (InTarget(target, *name)) return Status::OK();
  return Status::Error("no file " + Quote(path) + " in the project");
}

Status FindProjectFile(const std::string& path, std::string* name) {
  std::string first;
  if (_GetTargetName(&first, 0) < 1) return NoTargets();
  return FindFile(first, path, name);
}

}  // namespace quillon::qpm
