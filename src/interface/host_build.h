// What an in-process host needs to drive a build beyond _Make, _StopMake and
// _WhatIsInProgress: knowing when the build thread is done, and the command
// lines the build would run, for tools that want them.
#ifndef QUILLON_INTERFACE_HOST_BUILD_H
#define QUILLON_INTERFACE_HOST_BUILD_H

#include <string>
#include <vector>

#include "platform/status.h"

namespace quillon::host {

// Whether the build thread of the last _Make still runs.
bool BuildRunning();
// Waits for it to end; at once when no build runs.
void WaitForBuild();

// The compile of one source, as the build would start it.
struct CompileCommand {
  std::string directory;  // where it runs
  std::string file;       // the source, a full path
  std::string command;    // program and parameters, expanded
};
// Every compiler source of the default target that the build would
// compile, in list order; empty without a default target.
std::vector<CompileCommand> CompileCommands();

// One entry of an error list, as a filter read it.
struct FilterEntry {
  int kind = 0;  // 0 compiler, 1 assembler, 2 linker
  std::string file;
  int line = 0;
  int column = 0;
  int severity = 0;  // 0 error, 1 warning, 2 fatal
  std::string text;
  std::string code;
};

// From now on the filters' entries of every build are kept, naming the
// file their error-list line names; Diagnostics answers them once no build
// runs.
void RecordDiagnostics();
std::vector<FilterEntry> Diagnostics();

// Runs the parser of filter `filter_name` for `translator` (TranslatorKind)
// over the captured file, as a build would after that translator ran for
// `source_file` ("" for the linker). Fails when the file cannot be read or
// no filter has that name.
Status RunFilter(const std::string& filter_name, int translator, const std::string& source_file,
                 const std::string& captured, std::vector<FilterEntry>* entries);

}  // namespace quillon::host

#endif  // QUILLON_INTERFACE_HOST_BUILD_H
