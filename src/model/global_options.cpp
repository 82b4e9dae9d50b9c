#include "model/global_options.h"

#include "model/registry/settings_registry.h"
#include "platform/path.h"

namespace quillon {
namespace {

const char* const kIntKeys[kGlobalIntCount] = {
    "ExternalMake",
    "RunWithRelativePath",
    "CopyOutputFilesToTargetDir",
    "DeleteTemporalyFiles",
    "ChangeWorkingDirectory",
    "DisplayParameters",
    "CaptureTranslatorsOutputCmp",
    "CaptureTranslatorsOutputAsm",
    "CaptureTranslatorsOutputLnk",
    "RunCommandInterpreterCmp",
    "RunCommandInterpreterAsm",
    "RunCommandInterpreterLnk",
    "ShowToolWindow",
    "BeepWhenDone",
};

const int kIntDefaults[kGlobalIntCount] = {0, 0, 1, 0, 1, 0, 1, 1, 1, 1, 1, 1, 0, 1};

const char* const kStringKeys[kGlobalStringCount] = {
    "ExecutableFileName",
    "ExternalMakeFile",
    "CInpExtensions",
    "COutExtensions",
    "AInpExtensions",
    "AOutExtensions",
    "LInpExtensions",
    "HeaderExtension",
    "RunAfterLinker",
    "RunAfterLinkerParam",
    "CompilerDirectory",
    "CompilerRelPath",
    "AssemblerRelPath",
    "LinkerRelPath",
    "RunAfterAsm",
    "RunAfterAsmParam",
    "RunAfterComp",
    "RunAfterCompParam",
    "RootDir",
    "ExternalMakeFileParameters",
    "AsmAdditionalOutExt",
    "CmpAdditionalOutExt",
    "LnkAdditionalOutExt",
    "PathSeparator",
    "AHeaderExtension",
    "RunBeforeMake",
    "RunBeforeMakeParam",
};

// The per-translator switches: the only options of the local pass.
const int kLocalInts[] = {kRunCommandInterpreterCmp,    kRunCommandInterpreterAsm,
                          kRunCommandInterpreterLnk,    kCaptureTranslatorsOutputCmp,
                          kCaptureTranslatorsOutputAsm, kCaptureTranslatorsOutputLnk};

// Shared-pass order after the legacy keys.
const int kSharedInts[] = {kExternalMake,          kRunWithRelativePath,
                           kCopyOutputFilesToTargetDir, kDeleteTemporalyFiles,
                           kChangeWorkingDirectory, kDisplayParameters,
                           kShowToolWindow,        kBeepWhenDone};

const int kSharedStrings[] = {
    kExecutableFileName, kExternalMakeFile,   kExternalMakeFileParameters,
    kCInpExtensions,     kCOutExtensions,     kAInpExtensions,
    kAOutExtensions,     kLInpExtensions,     kHeaderExtension,
    kAHeaderExtension,   kPathSeparatorString,      kAsmAdditionalOutExt,
    kCmpAdditionalOutExt, kLnkAdditionalOutExt, kRunAfterLinker,
    kRunAfterLinkerParam, kRunAfterAsm,       kRunAfterAsmParam,
    kRunAfterComp,       kRunAfterCompParam,  kRunBeforeMake,
    kRunBeforeMakeParam, kCompilerDirectory,  kRootDir,
    kCompilerRelPath,    kAssemblerRelPath,   kLinkerRelPath,
};

bool IsValidInt(int id) { return id >= 0 && id < kGlobalIntCount; }
bool IsValidString(int id) { return id >= 0 && id < kGlobalStringCount; }

// A legacy switch read into a temporary that starts at 1 and fanned out to
// the three per-translator values.
void ReadLegacySwitch(CSettingsRegistry& store, const char* key, int* values, int first) {
  int32_t value = 1;
  store.ReadInt(key, &value);
  for (int i = 0; i < 3; ++i) values[first + i] = value;
}

}  // namespace

const char* CGlobalOptions::IntKey(int id) { return IsValidInt(id) ? kIntKeys[id] : nullptr; }
const char* CGlobalOptions::StringKey(int id) {
  return IsValidString(id) ? kStringKeys[id] : nullptr;
}

void CGlobalOptions::SetDefault(int) {
  for (int i = 0; i < kGlobalIntCount; ++i) ints_[i] = kIntDefaults[i];
  for (auto& s : strings_) s.clear();
  strings_[kCInpExtensions] = "C;CPP";
  strings_[kCOutExtensions] = "OBJ";
  strings_[kAInpExtensions] = "ASM";
  strings_[kAOutExtensions] = "OBJ";
  strings_[kLInpExtensions] = "OBJ;LIB";
  strings_[kHeaderExtension] = "H";
  strings_[kPathSeparatorString] = "\\";
  strings_[kAHeaderExtension] = "INC";
  include_paths_.clear();
  environment_.clear();
  keyword_ = IncludeKeywordSettings();
}

int CGlobalOptions::Load(CSettingsRegistry& store, TransferPass pass) {
  if (pass == TransferPass::kLocal) {
    for (int id : kLocalInts) {
      int32_t value = ints_[id];
      if (store.ReadInt(kIntKeys[id], &value)) ints_[id] = value;
    }
    return 1;
  }
  ReadLegacySwitch(store, "RunCommandInterpreter", ints_.data(), kRunCommandInterpreterCmp);
  ReadLegacySwitch(store, "CaptureTranslatorsOutput", ints_.data(), kCaptureTranslatorsOutputCmp);
  for (int id : kSharedInts) {
    int32_t value = ints_[id];
    if (store.ReadInt(kIntKeys[id], &value)) ints_[id] = value;
  }

  std::vector<std::string> paths, flags;
  store.ReadStringList("IncludePaths", &paths);
  store.ReadStringList("IncludeSearchSubDirs", &flags);
  for (size_t i = 0; i < paths.size(); ++i) {
    bool subdirs = i < flags.size() && (flags[i] == "Yes" || flags[i] == "True");
    include_paths_.push_back({paths[i], subdirs});
  }
  store.ReadStringList("EnvironmentSettings", &environment_);
  store.ReadBool("DF_Valid", &keyword_.valid);
  store.ReadBool("DF_AllowBlanks", &keyword_.allow_blanks);
  store.ReadBool("DF_ReqBlanks", &keyword_.req_blanks);
  store.ReadString("DF_Keyword", &keyword_.keyword);
  store.ReadString("DF_Start", &keyword_.start);
  store.ReadString("DF_End", &keyword_.end);

  for (int id : kSharedStrings) store.ReadString(kStringKeys[id], &strings_[id]);
  strings_[kCompilerDirectory] = AddBackslash(strings_[kCompilerDirectory]);
  strings_[kRootDir] = AddBackslash(strings_[kRootDir]);
  return 1;
}

int CGlobalOptions::Save(CSettingsRegistry& store, TransferPass pass) const {
  if (pass == TransferPass::kLocal) {
    for (int id : kLocalInts) store.WriteInt(kIntKeys[id], ints_[id]);
    return 1;
  }
  for (int id : kSharedInts) store.WriteInt(kIntKeys[id], ints_[id]);
  std::vector<std::string> paths, flags;
  for (const IncludePath& path : include_paths_) {
    paths.push_back(path.directory);
    flags.push_back(path.search_subdirs ? "True" : "False");
  }
  store.WriteStringList("IncludePaths", paths);
  store.WriteStringList("IncludeSearchSubDirs", flags);
  store.WriteStringList("EnvironmentSettings", environment_);
  store.WriteBool("DF_Valid", keyword_.valid);
  store.WriteBool("DF_AllowBlanks", keyword_.allow_blanks);
  store.WriteBool("DF_ReqBlanks", keyword_.req_blanks);
  store.WriteString("DF_Keyword", keyword_.keyword);
  store.WriteString("DF_Start", keyword_.start);
  store.WriteString("DF_End", keyword_.end);
  for (int id : kSharedStrings) store.WriteString(kStringKeys[id], strings_[id]);
  return 1;
}

void CGlobalOptions::CopyTo(COptionSet& other) const {
  auto* target = dynamic_cast<CGlobalOptions*>(&other);
  if (target == nullptr || target == this) return;
  std::string name_kept = target->name;
  *target = *this;
  target->name = name_kept;
}

void CGlobalOptions::SetInt(int id, int value, int) {
  if (IsValidInt(id)) ints_[id] = value;
}

int CGlobalOptions::GetInt(int id, int) const { return IsValidInt(id) ? ints_[id] : -1; }

void CGlobalOptions::SetString(int id, const std::string& text, int) {
  if (IsValidString(id)) strings_[id] = text;
}

std::string CGlobalOptions::GetString(int id, int) const {
  return IsValidString(id) ? strings_[id] : std::string();
}

void CGlobalOptions::SetStringList(int id, const std::vector<std::string>& list) {
  if (id == kEnvironmentSettingsList) environment_ = list;
}

void CGlobalOptions::GetStringList(int id, std::vector<std::string>* list) const {
  if (id == kEnvironmentSettingsList) {
    *list = environment_;
  } else {
    list->clear();
  }
}

}  // namespace quillon
