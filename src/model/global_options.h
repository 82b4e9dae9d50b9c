// The global option set: translator locations, file types, hooks, external
// make, tool window behaviour, include paths, environment and the include
// keyword settings of the dependency scan.
#ifndef QUILLON_MODEL_GLOBAL_OPTIONS_H
#define QUILLON_MODEL_GLOBAL_OPTIONS_H

#include <array>
#include <string>
#include <vector>

#include "model/include_keyword.h"
#include "model/option_set.h"

namespace quillon {

// Integer ids of the global set.
enum GlobalInt {
  kExternalMake = 0,
  kRunWithRelativePath,
  kCopyOutputFilesToTargetDir,
  kDeleteTemporalyFiles,
  kChangeWorkingDirectory,
  kDisplayParameters,
  kCaptureTranslatorsOutputCmp,
  kCaptureTranslatorsOutputAsm,
  kCaptureTranslatorsOutputLnk,
  kRunCommandInterpreterCmp,
  kRunCommandInterpreterAsm,
  kRunCommandInterpreterLnk,
  kShowToolWindow,
  kBeepWhenDone,
  kGlobalIntCount
};

// String ids of the global set.
enum GlobalString {
  kExecutableFileName = 0,
  kExternalMakeFile,
  kCInpExtensions,
  kCOutExtensions,
  kAInpExtensions,
  kAOutExtensions,
  kLInpExtensions,
  kHeaderExtension,
  kRunAfterLinker,
  kRunAfterLinkerParam,
  kCompilerDirectory,
  kCompilerRelPath,
  kAssemblerRelPath,
  kLinkerRelPath,
  kRunAfterAsm,
  kRunAfterAsmParam,
  kRunAfterComp,
  kRunAfterCompParam,
  kRootDir,
  kExternalMakeFileParameters,
  kAsmAdditionalOutExt,
  kCmpAdditionalOutExt,
  kLnkAdditionalOutExt,
  kPathSeparatorString,
  kAHeaderExtension,
  kRunBeforeMake,
  kRunBeforeMakeParam,
  kGlobalStringCount
};

// String-list id of the environment settings.
inline constexpr int kEnvironmentSettingsList = 0;

struct IncludePath {
  std::string directory;
  bool search_subdirs = false;
  bool operator==(const IncludePath&) const = default;
};


class CGlobalOptions : public COptionSet {
 public:
  CGlobalOptions() { SetDefault(0); }

  int Load(CSettingsRegistry& store, TransferPass pass) override;
  int Save(CSettingsRegistry& store, TransferPass pass) const override;
  void SetDefault(int level) override;
  void CopyTo(COptionSet& other) const override;

  void SetInt(int id, int value, int mode) override;
  int GetInt(int id, int mode) const override;
  void SetString(int id, const std::string& text, int mode) override;
  std::string GetString(int id, int mode) const override;
  void SetStringList(int id, const std::vector<std::string>& list) override;
  void GetStringList(int id, std::vector<std::string>* list) const override;

  std::vector<IncludePath>& include_paths() { return include_paths_; }
  const std::vector<IncludePath>& include_paths() const { return include_paths_; }
  IncludeKeywordSettings& include_keyword() { return keyword_; }
  const IncludeKeywordSettings& include_keyword() const { return keyword_; }

  static const char* IntKey(int id);
  static const char* StringKey(int id);

 private:
  std::array<int, kGlobalIntCount> ints_{};
  std::array<std::string, kGlobalStringCount> strings_;
  std::vector<IncludePath> include_paths_;
  std::vector<std::string> environment_;
  IncludeKeywordSettings keyword_;
};

}  // namespace quillon

#endif  // QUILLON_MODEL_GLOBAL_OPTIONS_H
