// Project edits. Each is bracketed by change codes 7 and 8; without an open
// project (or with null text) nothing changes and nothing is sent.
#include "interface/export_guard.h"
#include "interface/library_state.h"
#include "quillon/quillon.h"

using namespace quillon;

namespace {

// Runs `edit` on the current project inside a change bracket.
template <typename Body>
int Edit(std::initializer_list<const char*> texts, Body&& edit) {
  return Guarded(0, [&] {
    for (const char* text : texts) {
      if (text == nullptr) return 0;
    }
    LibraryState& state = State();
    if (!state.project) return 0;
    ChangeBracket bracket;
    return edit(state, *state.project);
  });
}

}  // namespace

int QUILLON_CALL _AddProjectFile(const char* fileName, const char* groupName) {
  return Edit({fileName, groupName}, [&](LibraryState& state, CProjectData& project) {
    bool added = project.AddFile(fileName, groupName);
    project.target_set().dependencies_changed = true;
    state.Notify(ProjectChangeFileAdded, fileName, groupName);
    return added ? 1 : 0;
  });
}

int QUILLON_CALL _DeleteProjectFile(const char* fileName) {
  return Edit({fileName}, [&](LibraryState& state, CProjectData& project) {
    CProjectTarget* first = project.first_target();
    CProjectFile* file = first ? first->FindFile(fileName) : nullptr;
    std::string group = file ? file->group->name : std::string();
    project.target_set().dependencies_changed = true;
    bool removed = project.DeleteProjectFile(fileName);
    state.Scanner().SetReset();
    if (removed) state.Notify(ProjectChangeFileRemoved, fileName, group);
    return removed ? 1 : 0;
  });
}

int QUILLON_CALL _ChangeProjectFileGroup(const char* fileName, const char* groupName) {
  return Edit({fileName, groupName}, [&](LibraryState& state, CProjectData& project) {
    if (!project.ChangeFileGroup(fileName, groupName)) return 0;
    state.Notify(ProjectChangeModified);
    return 1;
  });
}

int QUILLON_CALL _AddLinkGroup(const char* groupName) {
  return Edit({groupName}, [&](LibraryState& state, CProjectData& project) {
    project.AddLinkGroup(groupName);
    state.Notify(ProjectChangeGroupAdded, groupName, "");
    return 1;
  });
}

int QUILLON_CALL _DeleteLinkGroup(const char* groupName) {
  return Edit({groupName}, [&](LibraryState& state, CProjectData& project) {
    CProjectTarget* first = project.first_target();
    CLinkGroup* group = first ? first->FindGroup(groupName) : nullptr;
    if (group != nullptr) {
      for (const auto& file : group->files) {
        state.Notify(ProjectChangeFileRemoved, project.FullNameOfFile(file->file_name()),
                     group->name);
      }
    }
    state.Notify(ProjectChangeGroupRemoved, groupName, "");
    return project.DeleteLinkGroup(groupName) ? 1 : 0;
  });
}

int QUILLON_CALL _AddTarget(const char* targetName) {
  return Edit({targetName}, [&](LibraryState& state, CProjectData& project) {
    project.AddTarget(targetName, std::string());
    state.Notify(ProjectChangeModified);
    return 1;
  });
}

int QUILLON_CALL _DeleteTarget(const char* targetName) {
  return Edit({targetName}, [&](LibraryState& state, CProjectData& project) {
    bool deleted = project.DeleteTarget(targetName);
    state.Notify(ProjectChangeModified);
    return deleted ? 1 : 0;
  });
}

int QUILLON_CALL _SetTarget(const char* targetName) {
  return Edit({targetName}, [&](LibraryState& state, CProjectData& project) {
    CProjectTarget* target = project.FindTarget(targetName);
    if (target == nullptr) return 0;
    project.SetDefaultTarget(target);
    state.Notify(ProjectChangeReloaded, "", "");
    return 1;
  });
}

int QUILLON_CALL _DeleteAllProjectFiles(void) {
  return Edit({}, [&](LibraryState&, CProjectData& project) {
    project.DeleteAllFiles();
    return 1;
  });
}
