// Queries. Counts answer -1 for an index out of range or no open project;
// a null out-pointer or text is answered like a missing project.
#include "interface/export_guard.h"
#include "interface/library_state.h"
#include "platform/path.h"
#include "quillon/quillon.h"

using namespace quillon;

namespace {

CProjectData* Project() { return State().project.get(); }

// Assigns names[index] and answers the count, or -1 out of range.
template <typename Container, typename NameOf>
int NameAt(const Container& items, int index, std::string* out, NameOf name_of) {
  int count = static_cast<int>(items.size());
  if (index < 0 || index >= count) return -1;
  *out = name_of(items[index]);
  return count;
}

}  // namespace

int QUILLON_CALL _GetTargetName(std::string* name, int index) {
  return Guarded(-1, [&] {
    CProjectData* project = Project();
    if (project == nullptr || name == nullptr) return -1;
    return NameAt(project->target_set().targets, index, name,
                  [](const auto& target) { return target->name; });
  });
}

void QUILLON_CALL _GetDefaultTargetName(std::string* name) {
  Guarded([&] {
    if (name == nullptr) return;
    CProjectData* project = Project();
    CProjectTarget* target = project ? project->default_target() : nullptr;
    *name = target ? target->name : std::string();
  });
}

int QUILLON_CALL _GetLinkGroupName(std::string* name, int index, const char* target) {
  return Guarded(-1, [&] {
    CProjectData* project = Project();
    if (project == nullptr || name == nullptr || target == nullptr) return -1;
    CProjectTarget* found = project->FindTarget(target);
    if (found == nullptr) return -1;
    return NameAt(found->groups, index, name, [](const auto& group) { return group->name; });
  });
}

int QUILLON_CALL _GetProjectFileNameByGroup(std::string* name, int index, const char* target,
                                            const char* group) {
  return Guarded(-1, [&] {
    CProjectData* project = Project();
    if (project == nullptr || name == nullptr || target == nullptr || group == nullptr) return -1;
    CProjectTarget* found_target = project->FindTarget(target);
    CLinkGroup* found = found_target ? found_target->FindGroup(group) : nullptr;
    if (found == nullptr) return -1;
    return NameAt(found->files, index, name,
                  [](const auto& file) { return file->display_name(); });
  });
}

int QUILLON_CALL _GetProjectFileName(std::string* name, int index) {
  return Guarded(-1, [&] {
    CProjectData* project = Project();
    CProjectTarget* first = project ? project->first_target() : nullptr;
    if (first == nullptr || name == nullptr) return -1;
    return NameAt(first->files, index, name, [](const auto* file) { return file->display_name(); });
  });
}

int QUILLON_CALL _GetFullNameOfProjectFile(const char* fileName, std::string* fullName, int flag1,
                                           int flag2) {
  return Guarded(0, [&] {
    CProjectData* project = Project();
    if (project == nullptr || fileName == nullptr || fullName == nullptr) return 0;
    std::string full = project->FullNameOfFile(fileName, flag1, flag2);
    if (full.empty()) return 0;
    *fullName = full;
    return 1;
  });
}

int QUILLON_CALL _GetIntermediateAssemblerFile(const char* source, std::string* out) {
  return Guarded(0, [&] {
    CProjectData* project = Project();
    CProjectTarget* target = project ? project->default_target() : nullptr;
    if (target == nullptr || source == nullptr || out == nullptr) return 0;
    CProjectFile* file = target->FindFile(source);
    if (file == nullptr || !project->ProducesIntermediateAssemblerFile(*file)) return 0;
    *out = project->OutputDirectory(*target) + NameAndExtOfFile(source);
    return 1;
  });
}

int QUILLON_CALL _GetProjectFileInfo(const char* fileName, const char* target, int* kind,
                                     int* value) {
  return Guarded(-1, [&] {
    CProjectData* project = Project();
    if (project == nullptr || fileName == nullptr || target == nullptr || kind == nullptr ||
        value == nullptr) {
      return -1;
    }
    CProjectTarget* found = project->FindTarget(target);
    CProjectFile* file = found ? found->FindFile(fileName) : nullptr;
    if (file == nullptr) return 0;
    *kind = project->ClassifyFile(file->file_name());
    *value = file->options().GetInt(kExcludeFromMakeId, 0);
    return 1;
  });
}

void QUILLON_CALL _GetExt(std::string* compilerExt, std::string* headerExt,
                          std::string* assemblerExt, std::string* asmHeaderExt) {
  Guarded([&] {
    CProjectData* project = Project();
    if (project == nullptr) return;
    const CGlobalOptions& options = project->global_options();
    if (compilerExt) *compilerExt = options.GetString(kCInpExtensions, 0);
    if (headerExt) *headerExt = options.GetString(kHeaderExtension, 0);
    if (assemblerExt) *assemblerExt = options.GetString(kAInpExtensions, 0);
    if (asmHeaderExt) *asmHeaderExt = options.GetString(kAHeaderExtension, 0);
  });
}

int QUILLON_CALL _GetFilesMask(int, std::string* filter, std::string* defaultMasks,
                               int separator) {
  return Guarded(0, [&] {
    CProjectData* project = Project();
    if (project == nullptr || filter == nullptr || defaultMasks == nullptr) return 0;
    const char sep = static_cast<char>(separator & 0xFF);
    struct Category {
      const char* label;
      int id;
    };
    const Category categories[] = {{"Compiler files (", kCInpExtensions},
                                   {"Assembler files (", kAInpExtensions},
                                   {"Header files (", kHeaderExtension},
                                   {"Asm Header files (", kAHeaderExtension}};
    for (const Category& category : categories) {
      std::string masks = MaskList(project->global_options().GetString(category.id, 0));
      if (masks.empty()) continue;
      if (defaultMasks->empty()) *defaultMasks = masks;
      *filter += category.label + masks + ")" + sep + masks + sep;
    }
    *filter += std::string("All files (*.*)") + sep + "*.*" + sep + sep;
    return 1;
  });
}

void QUILLON_CALL _GetDirectory(int which, std::string* out) {
  Guarded([&] {
    CProjectData* project = Project();
    if (project == nullptr || out == nullptr) return;
    if (which == 0) {
      CProjectTarget* target = project->default_target();
      *out = target ? project->OutputDirectory(*target) : std::string();
    } else if (which == 1) {
      *out = project->directory();
    }
  });
}

void QUILLON_CALL _GetFile(int which, std::string* out) {
  Guarded([&] {
    CProjectData* project = Project();
    if (project == nullptr || out == nullptr || which != 0) return;
    CProjectTarget* target = project->default_target();
    *out = target ? project->OutputFile(*target) : std::string();
  });
}

int QUILLON_CALL _IsFileInProject(const char* fileName, int flag) {
  return Guarded(0, [&] {
    CProjectData* project = Project();
    if (project == nullptr || fileName == nullptr) return 0;
    return project->IsFileInProject(fileName, flag) ? 1 : 0;
  });
}
