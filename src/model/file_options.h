// File option sets (per file, and as the defaults a target and the project
// hold for their files) and the project's filter selection. Every file
// option has an own-value flag.
#ifndef QUILLON_MODEL_FILE_OPTIONS_H
#define QUILLON_MODEL_FILE_OPTIONS_H

#include <string>

#include "model/option_set.h"
#include "model/slab_allocator.h"

namespace quillon {

// Accessor ids.
inline constexpr int kExcludeFromMakeId = 0;     // integer
inline constexpr int kRunAssemblerId = 100;      // integer
inline constexpr int kCompilerOptionsId = 100;   // string
inline constexpr int kAssemblerOptionsId = 101;  // string

inline constexpr const char* kDefaultTranslatorOptions = "$(EDNAME)";

class CFileOptions : public COptionSet {
 public:
  CFileOptions() = default;
  QUILLON_SLAB_ALLOCATED

  int Load(CSettingsRegistry& store, TransferPass pass) override;
  int Save(CSettingsRegistry& store, TransferPass pass) const override;
  void SetDefault(int level) override;
  void CopyTo(COptionSet& other) const override;
  void SetInt(int id, int value, int mode) override;
  int GetInt(int id, int mode) const override;

 protected:
  int exclude_from_make_ = 0;
  bool exclude_from_make_own_ = false;
};

class CUnivFileOptions : public CFileOptions {
 public:
  CUnivFileOptions() = default;

  int Load(CSettingsRegistry& store, TransferPass pass) override;
  int Save(CSettingsRegistry& store, TransferPass pass) const override;
  void SetDefault(int level) override;
  void CopyTo(COptionSet& other) const override;
  void SetInt(int id, int value, int mode) override;
  int GetInt(int id, int mode) const override;
  void SetString(int id, const std::string& text, int mode) override;
  std::string GetString(int id, int mode) const override;

 private:
  int run_assembler_ = 0;
  bool run_assembler_own_ = false;
  std::string compiler_options_ = kDefaultTranslatorOptions;
  std::string assembler_options_ = kDefaultTranslatorOptions;
  bool compiler_options_own_ = false;
  bool assembler_options_own_ = false;
};

// Which error file each translator's output filter reads: the filter's
// default, or a custom name.
class CFilterSelection {
 public:
  int Load(CSettingsRegistry& store, TransferPass pass);
  int Save(CSettingsRegistry& store, TransferPass pass) const;
  void CopyTo(CFilterSelection& other) const { other = *this; }

  bool cmp_use_default_name = true;
  std::string cmp_custom_filter_name;
  bool asm_use_default_name = true;
  std::string asm_custom_filter_name;
  bool link_use_default_name = true;
  std::string link_custom_filter_name;

  bool operator==(const CFilterSelection&) const = default;
};

}  // namespace quillon

#endif  // QUILLON_MODEL_FILE_OPTIONS_H
