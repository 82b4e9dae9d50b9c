// "$(NAME)" macros in translator parameters, hook parameters and paths.
//
// Three expansions: per file (compiler and assembler strings), per target
// (linker and hook strings) and per directory, which both others end with.
// Every replacement is literal, case-sensitive and of every occurrence, in a
// fixed order; a value put in is only looked at again by the later steps.
// Pure string work on the model: callable from any thread that may read the
// project.
#ifndef QUILLON_BUILD_MACRO_EXPANSION_H
#define QUILLON_BUILD_MACRO_EXPANSION_H

#include <string>
#include <string_view>

#include "model/project_data.h"

namespace quillon {

// What the expansions need beyond the model; the make driver computes it.
struct MacroEnvironment {
  std::string working_directory;   // absolute, with a trailing separator: $(IRFDIR)
  std::string compiler_directory;  // env-expanded and made absolute by the caller: $(CMPDIR)
  std::string host_directory;      // the host executable's directory: $(EXEDIR)
};

// "%1" by `extra` when it is not empty, then $(EDNAME), $(NOEXT), $(DIR),
// $(OUTPUTDIR), $(CEXT), $(COUTEXT), $(AEXT), $(AOUTEXT), $(FILEGROUP), then
// the directory macros with path joining.
std::string ExpandFileMacros(std::string_view text, const CProjectData& project,
                             const CProjectTarget& target, const CProjectFile& file,
                             const MacroEnvironment& env, std::string_view extra = {});

// "%1" by `target_string` when it is not empty, "%2", $(OUTPUTPATH),
// $(OUTPUTFILE), $(OUTPUTNOEXT), $(OUTPUTDIR), $(INDPATH), then the
// directory macros with path joining.
std::string ExpandTargetMacros(std::string_view text, const CProjectData& project,
                               const CProjectTarget& target, const MacroEnvironment& env,
                               std::string_view target_string = {});

// $(CMPDIR), $(IRFDIR), $(EXEDIR). With `join_paths` the path written right
// after a macro is appended to its directory and the whole quoted when it
// holds a blank.
std::string ExpandDirectoryMacros(std::string_view text, const MacroEnvironment& env,
                                  bool join_paths);

// Trimmed; empty or absolute kept; otherwise made absolute against the
// directory of a directory macro at its start, else the working directory.
// Quotes around the whole path are dropped: the result is a bare path.
std::string MakeAbsoluteForBuild(std::string_view path, const MacroEnvironment& env);

// " ...  with parameters  \"exe params\"" when `display` is set, else "".
std::string ParametersDisplay(bool display, std::string_view executable,
                              std::string_view parameters);

// Every occurrence of `from` in `text` replaced by `to`, left to right,
// never looking into what was put in.
void ReplaceAll(std::string& text, std::string_view from, std::string_view to);

}  // namespace quillon

#endif  // QUILLON_BUILD_MACRO_EXPANSION_H
