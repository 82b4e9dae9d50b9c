// The library as a host sees it: loaded at run time and bound export by
// export through the exported names, never linked.
#ifndef QUILLON_TESTS_HOST_HOST_LIBRARY_H
#define QUILLON_TESTS_HOST_HOST_LIBRARY_H

#include <string>
#include <vector>

#include "quillon/quillon.h"

namespace quillon {

// Every export, without its leading underscore.
#define QUILLON_HOST_EXPORTS(X)                                                                    \
  X(InitProjectData)                                                                               \
  X(DoneProjectData) X(Transfer) X(Load) X(Save) X(OnNewProject) X(CreateDefaultProject) X(        \
      Set_IRF_FileName) X(SetWizardData) X(GetWizardData) X(AddProjectFile) X(DeleteProjectFile)   \
      X(ChangeProjectFileGroup) X(AddLinkGroup) X(DeleteLinkGroup) X(AddTarget) X(DeleteTarget)    \
          X(SetTarget) X(DeleteAllProjectFiles) X(GetTargetName) X(GetDefaultTargetName)           \
              X(GetLinkGroupName) X(GetProjectFileNameByGroup) X(GetProjectFileName)               \
                  X(GetFullNameOfProjectFile) X(GetIntermediateAssemblerFile)                      \
                      X(GetProjectFileInfo) X(GetExt) X(GetFilesMask) X(GetDirectory) X(GetFile)   \
                          X(IsFileInProject) X(Make) X(StopMake) X(WhatIsInProgress)               \
                              X(UpdateAllDependencies) X(WhyWeMustBuildProject)                    \
                                  X(GetDependenciesFile) X(GetDependenciesFilesOfProjectFile)      \
                                      X(GetDependenciesFilesOfDependence)                          \
                                          X(GetFullNameOfRelativeIncludeFile)                      \
                                              X(DoProjectSettingsDialog) X(DoAddProjectFileDialog) \
                                                  X(DoTargetsDialog) X(DoNewGroupDialog)           \
                                                      X(DoLinkOrderDialog) X(ProjectExport)

// One function pointer per export, typed from the public header's
// declaration, so a host built from the header calls with the right shape.
struct HostLibrary {
#define QUILLON_HOST_MEMBER(name) decltype(&::_##name) name = nullptr;
  QUILLON_HOST_EXPORTS(QUILLON_HOST_MEMBER)
#undef QUILLON_HOST_MEMBER

  // Exported names that were not found.
  std::vector<std::string> missing;
};

// Loads the library at `path` and binds every export by its plain exported
// name (the 64-bit DLL and the shared object; the 32-bit DLL is only checked
// through its export table). Returns false with `error` set if the library
// does not load; missing exports are listed in `lib->missing` instead.
bool LoadHostLibrary(const std::string& path, HostLibrary* lib, std::string* error);

// The library under test, bound once by main().
HostLibrary& Quillon();

}  // namespace quillon

#endif  // QUILLON_TESTS_HOST_HOST_LIBRARY_H
