// The catalogue of every option by key: its level, storage type and default,
// with access in text form. Hosts (qpm, the settings pages) address options
// by key through it instead of by numeric id.
#ifndef QUILLON_MODEL_OPTION_CATALOGUE_H
#define QUILLON_MODEL_OPTION_CATALOGUE_H

#include <string>
#include <string_view>
#include <vector>

namespace quillon {

class CProjectData;
class CProjectTarget;
class CProjectFile;

enum class OptionLevel {
  kGlobal,  // the project's global set
  kFilter,  // the project's filter selection
  kTarget,  // a target's set (or the project-level target defaults)
  kFile,    // a file's set (or a target's or the project's file defaults)
};

enum class OptionType { kNumber, kYesNo, kTrueFalse, kString, kStringList, kFlagList };

// Where an option is read or written: a file, else a target, else the
// project level.
struct OptionScope {
  CProjectData* project = nullptr;
  CProjectTarget* target = nullptr;
  CProjectFile* file = nullptr;
};

// Which member of which set an option lives in.
enum class OptionAccess {
  kGlobalInt,      // id: global integer id
  kGlobalString,   // id: global string id
  kEnvironment,    // the environment list
  kIncludePaths,   // the directories of the include list
  kIncludeFlags,   // the search-subdirectories flags of the include list
  kKeywordFlag,    // id: 0 DF_Valid, 1 DF_ReqBlanks, 2 DF_AllowBlanks
  kKeywordString,  // id: 0 DF_Keyword, 1 DF_Start, 2 DF_End
  kFilterFlag,     // id: 0 compiler, 1 assembler, 2 linker
  kFilterString,   // id: as kFilterFlag
  kFilterName,     // the project's output filter
  kTargetInt,      // id: target integer id
  kTargetString,   // id: target string id
  kFileInt,        // id: file integer id
  kFileString,     // id: file string id
};

struct OptionInfo {
  const char* key;
  OptionLevel level;
  OptionType type;
  OptionAccess access;
  int id;
  // The own-value flag's key, or null.
  const char* own_key;
};

// Every option, in catalogue order: global, filter, target, file.
const std::vector<OptionInfo>& OptionCatalogue();
// The option with that key (case-insensitive), or null.
const OptionInfo* FindOption(std::string_view key);
const char* LevelName(OptionLevel level);
const char* TypeName(OptionType type);

// A flag from its text: "1"/"0", "Yes"/"No", "True"/"False" (any case).
bool ParseFlag(std::string_view text, int* value);
bool ParseNumber(std::string_view text, int* value);

// Values in text form: one element for a scalar (numbers in decimal, flags
// as "1"/"0"), one per element for a list.
std::vector<std::string> GetOption(const OptionInfo& info, const OptionScope& scope);
// The own-value flag (false for options without one).
bool GetOwnFlag(const OptionInfo& info, const OptionScope& scope);
// Parses and stores with the set mode; false with a message for a value of
// the wrong type or count.
bool SetOption(const OptionInfo& info, const OptionScope& scope,
               const std::vector<std::string>& values, int mode, std::string* error);
// Whether the value (or own flag) in the scope differs from a fresh set's.
bool DiffersFromDefault(const OptionInfo& info, const OptionScope& scope);

}  // namespace quillon

#endif  // QUILLON_MODEL_OPTION_CATALOGUE_H
