#include "model/option_catalogue.h"

#include <charconv>

#include "model/project_data.h"
#include "platform/path.h"

namespace quillon {
namespace {

std::vector<OptionInfo> BuildCatalogue() {
  std::vector<OptionInfo> all;
  for (int id = 0; id < kGlobalIntCount; ++id) {
    all.push_back({CGlobalOptions::IntKey(id), OptionLevel::kGlobal, OptionType::kNumber,
                   OptionAccess::kGlobalInt, id, nullptr});
  }
  for (int id = 0; id < kGlobalStringCount; ++id) {
    all.push_back({CGlobalOptions::StringKey(id), OptionLevel::kGlobal, OptionType::kString,
                   OptionAccess::kGlobalString, id, nullptr});
  }
  const OptionLevel g = OptionLevel::kGlobal;
  all.push_back({"IncludePaths", g, OptionType::kStringList, OptionAccess::kIncludePaths, 0, nullptr});
  all.push_back({"IncludeSearchSubDirs", g, OptionType::kFlagList, OptionAccess::kIncludeFlags, 0,
                 nullptr});
  all.push_back({"EnvironmentSettings", g, OptionType::kStringList, OptionAccess::kEnvironment, 0,
                 nullptr});
  const char* keyword_flags[] = {"DF_Valid", "DF_ReqBlanks", "DF_AllowBlanks"};
  const char* keyword_strings[] = {"DF_Keyword", "DF_Start", "DF_End"};
  for (int id = 0; id < 3; ++id) {
    all.push_back({keyword_flags[id], g, OptionType::kTrueFalse, OptionAccess::kKeywordFlag, id,
                   nullptr});
  }
  for (int id = 0; id < 3; ++id) {
    all.push_back({keyword_strings[id], g, OptionType::kString, OptionAccess::kKeywordString, id,
                   nullptr});
  }
  all.push_back({"FilterName", OptionLevel::kFilter, OptionType::kString,
                 OptionAccess::kFilterName, 0, nullptr});
  const char* filter_flags[] = {"CmpUseDefaultName", "AsmUseDefaultName", "LinkUseDefaultName"};
  const char* filter_names[] = {"CmpCustomFilterName", "AsmCustomFilterName",
                                "LinkCustomFilterName"};
  for (int id = 0; id < 3; ++id) {
    all.push_back({filter_flags[id], OptionLevel::kFilter, OptionType::kTrueFalse,
                   OptionAccess::kFilterFlag, id, nullptr});
    all.push_back({filter_names[id], OptionLevel::kFilter, OptionType::kString,
                   OptionAccess::kFilterString, id, nullptr});
  }
  const OptionLevel t = OptionLevel::kTarget;
  all.push_back({"TargetDirectory", t, OptionType::kString, OptionAccess::kTargetString,
                 kTargetDirectoryId, nullptr});
  all.push_back({"LinkerOptions", t, OptionType::kString, OptionAccess::kTargetString,
                 kLinkerOptionsId, nullptr});
  all.push_back({"IndirectionFile", t, OptionType::kString, OptionAccess::kTargetString,
                 kIndirectionFileId, nullptr});
  all.push_back({"CRLF", t, OptionType::kYesNo, OptionAccess::kTargetInt, kCrLfId, nullptr});
  all.push_back({"TranslateCharacter", t, OptionType::kNumber, OptionAccess::kTargetInt,
                 kTranslateCharacterId, nullptr});
  const OptionLevel f = OptionLevel::kFile;
  all.push_back({"ExcludeFromMake", f, OptionType::kYesNo, OptionAccess::kFileInt,
                 kExcludeFromMakeId, "ExcludeFromMakeWR"});
  all.push_back({"RunAssembler", f, OptionType::kYesNo, OptionAccess::kFileInt, kRunAssemblerId,
                 "RunAssemblerWR"});
  all.push_back({"CompilerOptions", f, OptionType::kString, OptionAccess::kFileString,
                 kCompilerOptionsId, "CompilerOptionsWR"});
  all.push_back({"AssemblerOptions", f, OptionType::kString, OptionAccess::kFileString,
                 kAssemblerOptionsId, "AssemblerOptionsWR"});
  return all;
}

COptionSet& TargetSet(const OptionScope& scope) {
  if (scope.target) return scope.target->target_options();
  return scope.project->target_set().target_options();
}

COptionSet& FileSet(const OptionScope& scope) {
  if (scope.file) return scope.file->options();
  if (scope.target) return scope.target->file_options();
  return scope.project->file_default_options();
}

bool* KeywordFlag(IncludeKeywordSettings& k, int id) {
  return id == 0 ? &k.valid : id == 1 ? &k.req_blanks : &k.allow_blanks;
}
std::string* KeywordString(IncludeKeywordSettings& k, int id) {
  return id == 0 ? &k.keyword : id == 1 ? &k.start : &k.end;
}
bool* FilterFlag(CFilterSelection& s, int id) {
  return id == 0 ? &s.cmp_use_default_name
         : id == 1 ? &s.asm_use_default_name
                   : &s.link_use_default_name;
}
std::string* FilterString(CFilterSelection& s, int id) {
  return id == 0 ? &s.cmp_custom_filter_name
         : id == 1 ? &s.asm_custom_filter_name
                   : &s.link_custom_filter_name;
}

std::string FlagText(bool value) { return value ? "1" : "0"; }

bool IsScalar(OptionType type) {
  return type != OptionType::kStringList && type != OptionType::kFlagList;
}

bool IsFlag(OptionType type) {
  return type == OptionType::kYesNo || type == OptionType::kTrueFalse;
}

}  // namespace

const std::vector<OptionInfo>& OptionCatalogue() {
  static const std::vector<OptionInfo>* catalogue = new std::vector<OptionInfo>(BuildCatalogue());
  return *catalogue;
}

const OptionInfo* FindOption(std::string_view key) {
  for (const OptionInfo& info : OptionCatalogue()) {
    if (EqualsNoCase(info.key, key)) return &info;
  }
  return nullptr;
}

const char* LevelName(OptionLevel level) {
  switch (level) {
    case OptionLevel::kGlobal:
      return "global";
    case OptionLevel::kFilter:
      return "filter";
    case OptionLevel::kTarget:
      return "target";
    case OptionLevel::kFile:
      return "file";
  }
  return "";
}

const char* TypeName(OptionType type) {
  switch (type) {
    case OptionType::kNumber:
      return "number";
    case OptionType::kYesNo:
      return "Yes/No flag";
    case OptionType::kTrueFalse:
      return "True/False flag";
    case OptionType::kString:
      return "string";
    case OptionType::kStringList:
      return "string list";
    case OptionType::kFlagList:
      return "flag list";
  }
  return "";
}

bool ParseFlag(std::string_view text, int* value) {
  if (text == "1" || EqualsNoCase(text, "Yes") || EqualsNoCase(text, "True")) {
    *value = 1;
  } else if (text == "0" || EqualsNoCase(text, "No") || EqualsNoCase(text, "False")) {
    *value = 0;
  } else {
    return false;
  }
  return true;
}

bool ParseNumber(std::string_view text, int* value) {
  if (text.empty()) return false;
  const char* end = text.data() + text.size();
  auto [ptr, ec] = std::from_chars(text.data(), end, *value);
  return ec == std::errc() && ptr == end;
}

std::vector<std::string> GetOption(const OptionInfo& info, const OptionScope& scope) {
  CProjectData& project = *scope.project;
  CGlobalOptions& global = project.global_options();
  switch (info.access) {
    case OptionAccess::kGlobalInt:
      return {std::to_string(global.GetInt(info.id, 0))};
    case OptionAccess::kGlobalString:
      return {global.GetString(info.id, 0)};
    case OptionAccess::kEnvironment: {
      std::vector<std::string> list;
      global.GetStringList(kEnvironmentSettingsList, &list);
      return list;
    }
    case OptionAccess::kIncludePaths:
    case OptionAccess::kIncludeFlags: {
      std::vector<std::string> list;
      for (const IncludePath& path : global.include_paths()) {
        list.push_back(info.access == OptionAccess::kIncludePaths ? path.directory
                                                                  : FlagText(path.search_subdirs));
      }
      return list;
    }
    case OptionAccess::kKeywordFlag:
      return {FlagText(*KeywordFlag(global.include_keyword(), info.id))};
    case OptionAccess::kKeywordString:
      return {*KeywordString(global.include_keyword(), info.id)};
    case OptionAccess::kFilterFlag:
      return {FlagText(*FilterFlag(project.target_set().filter_selection, info.id))};
    case OptionAccess::kFilterString:
      return {*FilterString(project.target_set().filter_selection, info.id)};
    case OptionAccess::kFilterName:
      return {project.target_set().filter_name};
    case OptionAccess::kTargetInt:
      return {std::to_string(TargetSet(scope).GetInt(info.id, 0))};
    case OptionAccess::kTargetString:
      return {TargetSet(scope).GetString(info.id, 0)};
    case OptionAccess::kFileInt:
      return {std::to_string(FileSet(scope).GetInt(info.id, 0))};
    case OptionAccess::kFileString:
      return {FileSet(scope).GetString(info.id, 0)};
  }
  return {};
}

bool GetOwnFlag(const OptionInfo& info, const OptionScope& scope) {
  if (info.access == OptionAccess::kFileInt) return FileSet(scope).GetInt(info.id, 1) == 1;
  if (info.access == OptionAccess::kFileString) return FileSet(scope).GetString(info.id, 1) == "1";
  return false;
}

bool SetOption(const OptionInfo& info, const OptionScope& scope,
               const std::vector<std::string>& values, int mode, std::string* error) {
  if (IsScalar(info.type) && values.size() != 1) {
    *error = std::string(info.key) + " takes exactly one value";
    return false;
  }
  int number = 0;
  if (info.type == OptionType::kNumber && !ParseNumber(values[0], &number)) {
    *error = "'" + values[0] + "' is not a number (" + info.key + ")";
    return false;
  }
  if (IsFlag(info.type) && !ParseFlag(values[0], &number)) {
    *error = "'" + values[0] + "' is not a flag (" + info.key + " takes 0/1, Yes/No or True/False)";
    return false;
  }
  std::vector<int> flags;
  if (info.type == OptionType::kFlagList) {
    for (const std::string& value : values) {
      if (!ParseFlag(value, &number)) {
        *error = "'" + value + "' is not a flag (" + info.key + ")";
        return false;
      }
      flags.push_back(number);
    }
  }
  CProjectData& project = *scope.project;
  CGlobalOptions& global = project.global_options();
  switch (info.access) {
    case OptionAccess::kGlobalInt:
      global.SetInt(info.id, number, mode);
      break;
    case OptionAccess::kGlobalString:
      global.SetString(info.id, values[0], mode);
      break;
    case OptionAccess::kEnvironment:
      global.SetStringList(kEnvironmentSettingsList, values);
      break;
    case OptionAccess::kIncludePaths: {
      std::vector<IncludePath>& paths = global.include_paths();
      std::vector<IncludePath> updated;
      for (size_t i = 0; i < values.size(); ++i) {
        updated.push_back({values[i], i < paths.size() && paths[i].search_subdirs});
      }
      paths = updated;
      break;
    }
    case OptionAccess::kIncludeFlags: {
      std::vector<IncludePath>& paths = global.include_paths();
      if (flags.size() != paths.size()) {
        *error = "IncludeSearchSubDirs needs one flag per include path (" +
                 std::to_string(paths.size()) + ")";
        return false;
      }
      for (size_t i = 0; i < paths.size(); ++i) paths[i].search_subdirs = flags[i] != 0;
      break;
    }
    case OptionAccess::kKeywordFlag:
      *KeywordFlag(global.include_keyword(), info.id) = number != 0;
      break;
    case OptionAccess::kKeywordString:
      *KeywordString(global.include_keyword(), info.id) = values[0];
      break;
    case OptionAccess::kFilterFlag:
      *FilterFlag(project.target_set().filter_selection, info.id) = number != 0;
      break;
    case OptionAccess::kFilterString:
      *FilterString(project.target_set().filter_selection, info.id) = values[0];
      break;
    case OptionAccess::kFilterName:
      project.target_set().filter_name = values[0];
      break;
    case OptionAccess::kTargetInt:
      TargetSet(scope).SetInt(info.id, number, mode);
      break;
    case OptionAccess::kTargetString:
      TargetSet(scope).SetString(info.id, values[0], mode);
      break;
    case OptionAccess::kFileInt:
      FileSet(scope).SetInt(info.id, number, mode);
      break;
    case OptionAccess::kFileString:
      FileSet(scope).SetString(info.id, values[0], mode);
      break;
  }
  return true;
}

bool DiffersFromDefault(const OptionInfo& info, const OptionScope& scope) {
  // A fresh project of the same family, so that its defaults are the family's.
  std::unique_ptr<CProjectData> owner = scope.project->Clone();
  CProjectData& fresh = *owner;
  fresh.Initialise(0);
  OptionScope fresh_scope{&fresh, nullptr, nullptr};
  if (info.level == OptionLevel::kTarget || info.level == OptionLevel::kFile) {
    fresh_scope.target = fresh.AddTarget("t", "");
  }
  if (info.level == OptionLevel::kFile && scope.file != nullptr) {
    fresh.AddLinkGroup("g");
    fresh.AddFile("f", "g");
    fresh_scope.file = fresh_scope.target->files.front();
  }
  return GetOption(info, scope) != GetOption(info, fresh_scope) ||
         GetOwnFlag(info, scope) != GetOwnFlag(info, fresh_scope);
}

}  // namespace quillon
