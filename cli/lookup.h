// Names typed by the user turned into model objects, or into an error that
// says what was wrong. The exports ignore unknown and duplicate names
// silently, so every command checks through these first.
#ifndef QUILLON_CLI_LOOKUP_H
#define QUILLON_CLI_LOOKUP_H

#include <string>

#include "model/project_data.h"
#include "platform/status.h"

namespace quillon::qpm {

Status FindTarget(const CProjectData& project, const std::string& name, CProjectTarget** target);
// The named target, or the default one when `name` is null.
Status TargetOrDefault(const CProjectData& project, const std::string* name,
                       CProjectTarget** target);
Status CheckNewTargetName(const CProjectData& project, const std::string& name);

// Groups are looked up in the first target; every target has the same ones.
Status FindGroup(const CProjectData& project, const std::string& name, CLinkGroup** group);
Status CheckNewGroupName(const CProjectData& project, const std::string& name);

// How a path typed by the user is stored in the project: a relative path
// (from the current directory) relative to the project's directory, an
// absolute one as it is.
std::string StoredFileName(const CProjectData& project, const std::string& path);
// The file of `target` named by `path`: its stored name as `qpm show` lists
// it, or a path to it from the current directory.
Status FindFile(const CProjectData& project, const CProjectTarget& target, const std::string& path,
                CProjectFile** file);
// The same in the first target, the reference for structure edits.
Status FindProjectFile(const CProjectData& project, const std::string& path, CProjectFile** file);

}  // namespace quillon::qpm

#endif  // QUILLON_CLI_LOOKUP_H
