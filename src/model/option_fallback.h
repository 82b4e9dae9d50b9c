// How file options fall back to their target's and a target's to the
// project defaults. Inheritance is written down, never looked up at build
// time: a file's set always holds the value in effect.
#ifndef QUILLON_MODEL_OPTION_FALLBACK_H
#define QUILLON_MODEL_OPTION_FALLBACK_H

#include <string>
#include <vector>

#include "model/option_catalogue.h"

namespace quillon {

class CProjectData;
class CProjectTarget;
class CProjectFile;

// Questions the settings pages ask before a reset; Yes proceeds.
inline constexpr const char* kResetTargetsQuestion =
    "Do you realy want to set options of selected targets to it's default value ?";
inline constexpr const char* kResetFilesQuestion =
    "Do you realy want to set the options of selected files to it's target value?";

// Whether a file option applies to a file of that kind: compiler options and
// the run-assembler switch to compiler sources, assembler options to
// assembler sources, exclusion to every file.
bool FileOptionAppliesTo(const OptionInfo& info, int file_kind);

// A file option edited at target level: stored into the target's file
// defaults as its own value and propagated to the target's files of the
// matching kind (files with their own value keep it).
bool SetTargetFileOption(CProjectData& project, CProjectTarget& target, const OptionInfo& info,
                         const std::vector<std::string>& values, std::string* error);

// Selected targets back to the project's default of a file option.
void ResetTargetsToDefault(CProjectData& project, const std::vector<CProjectTarget*>& targets,
                           const OptionInfo& info);

// Selected files (and every matching file of the selected targets) back to
// their target's value. With individual files selected, nothing happens
// unless all of them are of the option's kind.
void ResetFilesToTarget(CProjectData& project, const std::vector<CProjectTarget*>& targets,
                        const std::vector<CProjectFile*>& files, const OptionInfo& info);

}  // namespace quillon

#endif  // QUILLON_MODEL_OPTION_FALLBACK_H
