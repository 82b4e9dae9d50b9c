// Public interface of the Quillon project library.
//
// The IDE (or any host) loads the library and drives it through the 47 flat
// functions below. Strings come in as zero-terminated 8-bit text and go out
// through std::string objects that the host owns; string arrays are
// std::vector<std::string>. Everything the library has to tell arrives through
// the two callbacks given to _InitProjectData.
//
// Calling convention: standard call on 32-bit Windows (the callee pops its
// arguments), the platform default elsewhere.
#ifndef QUILLON_QUILLON_H
#define QUILLON_QUILLON_H

#include <stdint.h>

#include <string>
#include <vector>

#include "quillon/stream.h"

#if defined(_WIN32)
#define QUILLON_CALL __stdcall
#else
#define QUILLON_CALL
#endif

// Exports are named by a module-definition file in the 32-bit Windows build
// (it needs decorated names the compiler does not make) and by attribute
// everywhere else.
#if defined(QUILLON_BUILDING) && defined(_WIN32) && !defined(QUILLON_DEF_EXPORTS)
#define QUILLON_API __declspec(dllexport)
#elif defined(QUILLON_BUILDING) && !defined(_WIN32)
#define QUILLON_API __attribute__((visibility("default")))
#else
#define QUILLON_API
#endif

// ---------------------------------------------------------------------------
// Callbacks

// Project-change notification: two values and a code (0..9). For codes that
// carry names, the values are pointers to zero-terminated text that stays
// valid only for the call; otherwise both are 0.
typedef int(QUILLON_CALL* ProjectChangeCallback)(intptr_t first, intptr_t second, int code);

// Host callback: a code and a pointer to the record for that code. The result
// is ignored.
typedef int(QUILLON_CALL* HostCallback)(int code, void* record);

// Project-change codes.
enum ProjectChangeCode {
  ProjectChangeFileRemoved = 0,
  ProjectChangeFileAdded = 1,
  ProjectChangeGroupAdded = 2,
  ProjectChangeGroupRemoved = 3,
  ProjectChangeDependencies = 4,
  ProjectChangeReloaded = 5,
  ProjectChangeOptions = 6,
  ProjectChangeBegin = 7,
  ProjectChangeEnd = 8,
  ProjectChangeModified = 9,
};

// Host callback codes and their records.
enum HostCallbackCode {
  HostBuildResult = 0,    // BuildResultRecord
  HostOutput = 1,         // OutputRecord
  HostStatus = 2,         // StatusRecord
  HostProcessWindow = 3,  // ProcessWindowRecord
};

struct BuildResultRecord {
  int makeState;  // the final MakeState
  int mode;       // the MakeMode of the build
};

// Where an OutputRecord goes, and what it does there.
enum OutputChannel {
  OutputBuildMessages = 0,
  OutputTranslatorOutput = 1,
  OutputEndOfGroup = 2,  // with OutputShow: the host may show what was appended
};

enum OutputAction {
  OutputShow = 0,
  OutputClear = 20,
  OutputAppendLine = 21,
  OutputDependencyUpdate = 22,  // a dependency update starts
};

struct OutputRecord {
  int channel;
  int action;
  const char* text;
};

// Progress of a long preparation. flag: 1 begin (text says what), 2 progress
// (percent is set), 3 end.
struct StatusRecord {
  const char* text;
  int flag;
  int percent;
};

// Sent before a translator runs in a window of its own. Carries nothing.
struct ProcessWindowRecord {
  int reserved;
};

enum MakeMode {
  MakeModeMake = 1,
  MakeModeBuildAll = 2,
  MakeModeCompile = 3,
  MakeModeLink = 4,
};

enum MakeState {
  MakeStateIdle = 0,
  MakeStateFailed = 1,
  MakeStateCompiling = 2,
  MakeStateAssembling = 3,
  MakeStateLinking = 5,
  MakeStateUpdatingDependencies = 6,
  MakeStateExternalMake = 7,
  MakeStateNoProject = 8,
  MakeStateStarting = 9,
};

enum TranslatorKind {
  TranslatorAssembler = 1,
  TranslatorCompiler = 2,
  TranslatorLinker = 4,  // also hook programs
  TranslatorExternalMake = 16,
};

#ifdef __cplusplus
extern "C" {
#endif

// ---------------------------------------------------------------------------
// Lifecycle and persistence

QUILLON_API int QUILLON_CALL _InitProjectData(ProjectChangeCallback onChange, HostCallback host);
QUILLON_API void QUILLON_CALL _DoneProjectData(void);
QUILLON_API int QUILLON_CALL _Transfer(IStream* stream, int storing, int local);
QUILLON_API int QUILLON_CALL _Load(int local);
QUILLON_API int QUILLON_CALL _Save(int local);
QUILLON_API int QUILLON_CALL _OnNewProject(void);
QUILLON_API void QUILLON_CALL _CreateDefaultProject(int compilerType, int makeSourceGroup);
QUILLON_API void QUILLON_CALL _Set_IRF_FileName(const char* fullPath);
QUILLON_API int QUILLON_CALL _SetWizardData(int compilerType, void* data);
QUILLON_API void QUILLON_CALL _GetWizardData(int* compilerType, void* data);

// ---------------------------------------------------------------------------
// Project edits (each bracketed by change codes 7 and 8)

QUILLON_API int QUILLON_CALL _AddProjectFile(const char* fileName, const char* groupName);
QUILLON_API int QUILLON_CALL _DeleteProjectFile(const char* fileName);
QUILLON_API int QUILLON_CALL _ChangeProjectFileGroup(const char* fileName, const char* groupName);
QUILLON_API int QUILLON_CALL _AddLinkGroup(const char* groupName);
QUILLON_API int QUILLON_CALL _DeleteLinkGroup(const char* groupName);
QUILLON_API int QUILLON_CALL _AddTarget(const char* targetName);
QUILLON_API int QUILLON_CALL _DeleteTarget(const char* targetName);
QUILLON_API int QUILLON_CALL _SetTarget(const char* targetName);
QUILLON_API int QUILLON_CALL _DeleteAllProjectFiles(void);

// ---------------------------------------------------------------------------
// Queries

QUILLON_API int QUILLON_CALL _GetTargetName(std::string* name, int index);
QUILLON_API void QUILLON_CALL _GetDefaultTargetName(std::string* name);
QUILLON_API int QUILLON_CALL _GetLinkGroupName(std::string* name, int index, const char* target);
QUILLON_API int QUILLON_CALL _GetProjectFileNameByGroup(std::string* name, int index,
                                                        const char* target, const char* group);
QUILLON_API int QUILLON_CALL _GetProjectFileName(std::string* name, int index);
QUILLON_API int QUILLON_CALL _GetFullNameOfProjectFile(const char* fileName, std::string* fullName,
                                                       int flag1, int flag2);
QUILLON_API int QUILLON_CALL _GetIntermediateAssemblerFile(const char* source, std::string* out);
QUILLON_API int QUILLON_CALL _GetProjectFileInfo(const char* fileName, const char* target,
                                                 int* kind, int* value);
QUILLON_API void QUILLON_CALL _GetExt(std::string* compilerExt, std::string* headerExt,
                                      std::string* assemblerExt, std::string* asmHeaderExt);
QUILLON_API int QUILLON_CALL _GetFilesMask(int unused, std::string* filter,
                                           std::string* defaultMasks, int separator);
QUILLON_API void QUILLON_CALL _GetDirectory(int which, std::string* out);
QUILLON_API void QUILLON_CALL _GetFile(int which, std::string* out);
QUILLON_API int QUILLON_CALL _IsFileInProject(const char* fileName, int flag);

// ---------------------------------------------------------------------------
// Build and dependencies

QUILLON_API void QUILLON_CALL _Make(int mode, const std::vector<std::string>* files);
QUILLON_API void QUILLON_CALL _StopMake(void);
QUILLON_API int QUILLON_CALL _WhatIsInProgress(void);
QUILLON_API void QUILLON_CALL _UpdateAllDependencies(void);
QUILLON_API void QUILLON_CALL _WhyWeMustBuildProject(std::vector<std::string>* reasons);
QUILLON_API int QUILLON_CALL _GetDependenciesFile(std::string* name, int index);
QUILLON_API int QUILLON_CALL _GetDependenciesFilesOfProjectFile(std::string* name, int index);
QUILLON_API int QUILLON_CALL _GetDependenciesFilesOfDependence(std::string* name, int index);
QUILLON_API int QUILLON_CALL _GetFullNameOfRelativeIncludeFile(std::string* name);

// ---------------------------------------------------------------------------
// Dialogs and export

QUILLON_API int QUILLON_CALL _DoProjectSettingsDialog(void);
QUILLON_API int QUILLON_CALL _DoAddProjectFileDialog(intptr_t value);
QUILLON_API void QUILLON_CALL _DoTargetsDialog(void);
QUILLON_API void QUILLON_CALL _DoNewGroupDialog(void);
QUILLON_API void QUILLON_CALL _DoLinkOrderDialog(void);
QUILLON_API int QUILLON_CALL _ProjectExport(void);

#ifdef __cplusplus
}
#endif

#endif  // QUILLON_QUILLON_H
