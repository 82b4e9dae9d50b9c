// Target option sets: the output directory, and in the universal family the
// linker's options, its indirection file and how that file is written.
#ifndef QUILLON_MODEL_TARGET_OPTIONS_H
#define QUILLON_MODEL_TARGET_OPTIONS_H

#include <string>

#include "model/option_set.h"

namespace quillon {

// Accessor ids.
inline constexpr int kTargetDirectoryId = 0;      // string
inline constexpr int kLinkerOptionsId = 100;      // string
inline constexpr int kIndirectionFileId = 101;    // string
inline constexpr int kCrLfId = 100;               // integer
inline constexpr int kTranslateCharacterId = 101; // integer

class CTargetOptions : public COptionSet {
 public:
  CTargetOptions() = default;

  int Load(CSettingsRegistry& store, TransferPass pass) override;
  int Save(CSettingsRegistry& store, TransferPass pass) const override;
  void SetDefault(int level) override;
  void CopyTo(COptionSet& other) const override;
  void SetString(int id, const std::string& text, int mode) override;
  std::string GetString(int id, int mode) const override;

 protected:
  std::string target_directory_;
};

class CUnivTargetOptions : public CTargetOptions {
 public:
  CUnivTargetOptions() = default;

  int Load(CSettingsRegistry& store, TransferPass pass) override;
  int Save(CSettingsRegistry& store, TransferPass pass) const override;
  void SetDefault(int level) override;
  void CopyTo(COptionSet& other) const override;
  void SetInt(int id, int value, int mode) override;
  int GetInt(int id, int mode) const override;
  void SetString(int id, const std::string& text, int mode) override;
  std::string GetString(int id, int mode) const override;

 private:
  std::string linker_options_;
  std::string indirection_file_;
  int crlf_ = 0;
  int translate_character_ = '&';
};

}  // namespace quillon

#endif  // QUILLON_MODEL_TARGET_OPTIONS_H
