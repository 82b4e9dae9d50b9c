#include "model/file_options.h"

#include "model/registry/settings_registry.h"

namespace quillon {
namespace {

void ReadIntFlag(CSettingsRegistry& store, const char* key, int* value) {
  bool read = false;
  if (store.ReadBool(key, &read)) *value = read ? 1 : 0;
}

}  // namespace

int CFileOptions::Load(CSettingsRegistry& store, TransferPass pass) {
  if (pass == TransferPass::kLocal) return 1;
  ReadIntFlag(store, "ExcludeFromMake", &exclude_from_make_);
  store.ReadBool("ExcludeFromMakeWR", &exclude_from_make_own_);
  return 1;
}

int CFileOptions::Save(CSettingsRegistry& store, TransferPass pass) const {
  if (pass == TransferPass::kLocal) return 1;
  store.WriteBool("ExcludeFromMake", exclude_from_make_ != 0, /*yes_no=*/true);
  store.WriteBool("ExcludeFromMakeWR", exclude_from_make_own_, /*yes_no=*/true);
  return 1;
}

void CFileOptions::SetDefault(int level) {
  exclude_from_make_own_ = false;
  if (level != 1) exclude_from_make_ = 0;
}

void CFileOptions::CopyTo(COptionSet& other) const {
  if (auto* target = dynamic_cast<CFileOptions*>(&other)) {
    target->exclude_from_make_ = exclude_from_make_;
    target->exclude_from_make_own_ = exclude_from_make_own_;
  }
}

void CFileOptions::SetInt(int id, int value, int mode) {
  if (id == kExcludeFromMakeId) {
    StoreWithMode(&exclude_from_make_, &exclude_from_make_own_, value, mode);
  }
}

int CFileOptions::GetInt(int id, int mode) const {
  if (id != kExcludeFromMakeId) return -1;
  return mode == 0 ? exclude_from_make_ : (exclude_from_make_own_ ? 1 : 0);
}

int CUnivFileOptions::Load(CSettingsRegistry& store, TransferPass pass) {
  if (pass == TransferPass::kLocal) return 1;
  // In the store's name order: each name is found next to the one before.
  store.ReadString("AssemblerOptions", &assembler_options_);
  store.ReadBool("AssemblerOptionsWR", &assembler_options_own_);
  store.ReadString("CompilerOptions", &compiler_options_);
  store.ReadBool("CompilerOptionsWR", &compiler_options_own_);
  CFileOptions::Load(store, pass);
  ReadIntFlag(store, "RunAssembler", &run_assembler_);
  store.ReadBool("RunAssemblerWR", &run_assembler_own_);
  return 1;
}

int CUnivFileOptions::Save(CSettingsRegistry& store, TransferPass pass) const {
  if (pass == TransferPass::kLocal) return 1;
  // In the store's name order: each name goes after the one before.
  store.WriteString("AssemblerOptions", assembler_options_);
  store.WriteBool("AssemblerOptionsWR", assembler_options_own_);
  store.WriteString("CompilerOptions", compiler_options_);
  store.WriteBool("CompilerOptionsWR", compiler_options_own_);
  CFileOptions::Save(store, pass);
  store.WriteBool("RunAssembler", run_assembler_ != 0, /*yes_no=*/true);
  store.WriteBool("RunAssemblerWR", run_assembler_own_);
  return 1;
}

void CUnivFileOptions::SetDefault(int level) {
  run_assembler_own_ = false;
  compiler_options_own_ = false;
  assembler_options_own_ = false;
  if (level != 1) {
    run_assembler_ = 0;
    compiler_options_ = kDefaultTranslatorOptions;
    assembler_options_ = kDefaultTranslatorOptions;
  }
  CFileOptions::SetDefault(level);
}

void CUnivFileOptions::CopyTo(COptionSet& other) const {
  CFileOptions::CopyTo(other);
  if (auto* target = dynamic_cast<CUnivFileOptions*>(&other)) {
    target->run_assembler_ = run_assembler_;
    target->run_assembler_own_ = run_assembler_own_;
    target->compiler_options_ = compiler_options_;
    target->assembler_options_ = assembler_options_;
    target->compiler_options_own_ = compiler_options_own_;
    target->assembler_options_own_ = assembler_options_own_;
  }
}

void CUnivFileOptions::SetInt(int id, int value, int mode) {
  if (id == kRunAssemblerId) {
    StoreWithMode(&run_assembler_, &run_assembler_own_, value, mode);
  } else {
    CFileOptions::SetInt(id, value, mode);
  }
}

int CUnivFileOptions::GetInt(int id, int mode) const {
  if (id != kRunAssemblerId) return CFileOptions::GetInt(id, mode);
  return mode == 0 ? run_assembler_ : (run_assembler_own_ ? 1 : 0);
}

void CUnivFileOptions::SetString(int id, const std::string& text, int mode) {
  if (id == kCompilerOptionsId) {
    StoreWithMode(&compiler_options_, &compiler_options_own_, text, mode);
  } else if (id == kAssemblerOptionsId) {
    StoreWithMode(&assembler_options_, &assembler_options_own_, text, mode);
  }
}

std::string CUnivFileOptions::GetString(int id, int mode) const {
  const std::string* value = nullptr;
  bool own = false;
  if (id == kCompilerOptionsId) {
    value = &compiler_options_;
    own = compiler_options_own_;
  } else if (id == kAssemblerOptionsId) {
    value = &assembler_options_;
    own = assembler_options_own_;
  } else {
    return std::string();
  }
  if (mode != 0) return own ? "1" : "0";
  return *value;
}

int CFilterSelection::Load(CSettingsRegistry& store, TransferPass pass) {
  if (pass == TransferPass::kLocal) return 1;
  store.ReadBool("CmpUseDefaultName", &cmp_use_default_name);
  store.ReadString("CmpCustomFilterName", &cmp_custom_filter_name);
  store.ReadBool("AsmUseDefaultName", &asm_use_default_name);
  store.ReadString("AsmCustomFilterName", &asm_custom_filter_name);
  store.ReadBool("LinkUseDefaultName", &link_use_default_name);
  store.ReadString("LinkCustomFilterName", &link_custom_filter_name);
  return 1;
}

int CFilterSelection::Save(CSettingsRegistry& store, TransferPass pass) const {
  if (pass == TransferPass::kLocal) return 1;
  store.WriteBool("CmpUseDefaultName", cmp_use_default_name);
  store.WriteString("CmpCustomFilterName", cmp_custom_filter_name);
  store.WriteBool("AsmUseDefaultName", asm_use_default_name);
  store.WriteString("AsmCustomFilterName", asm_custom_filter_name);
  store.WriteBool("LinkUseDefaultName", link_use_default_name);
  store.WriteString("LinkCustomFilterName", link_custom_filter_name);
  return 1;
}

}  // namespace quillon
