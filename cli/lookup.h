// Names typed by the user checked against the current project, or an error
// that says what was wrong. The exports ignore unknown and duplicate names
// silently, so every command checks through these first.
#ifndef QUILLON_CLI_LOOKUP_H
#define QUILLON_CLI_LOOKUP_H

#include <string>
#include <vector>

#include "platform/status.h"

namespace quillon::qpm {

// Every target's name in order; the link groups of a target in link order.
std::vector<std::string> TargetNames();
std::vector<std::string> GroupNames(const std::string& target);

Status FindTarget(const std::string& name);
// The named target, or the default one when `name` is null; `found` gets
// its name.
Status TargetOrDefault(const std::string* name, std::string* found);
Status CheckNewTargetName(const std::string& name);

// Groups are looked up in the first target; every target has the same ones.
Status FindGroup(const std::string& name);
Status CheckNewGroupName(const std::string& name);

// How a path typed by the user is stored in the project: a relative path
// (from the current directory) relative to the project's directory, an
// absolute one as it is.
std::string StoredFileName(const std::string& path);
// The full path of a file named as the project stores it.
std::string FullFileName(const std::string& stored);
// Whether the first target (and so every target) has a file of that name.
bool IsProjectFile(const std::string& name);
// The file of `target` named by `path`: its stored name as `qpm show` lists
// it, or a path to it from the current directory. `name` gets a name of it
// that the library resolves.
Status FindFile(const std::string& target, const std::string& path, std::string* name);
// The same in the first target, the reference for structure edits.
Status FindProjectFile(const std::string& path, std::string* name);

}  // namespace quillon::qpm

#endif  // QUILLON_CLI_LOOKUP_H
