#include "model/target_options.h"

#include "model/registry/settings_registry.h"

namespace quillon {

int CTargetOptions::Load(CSettingsRegistry& store, TransferPass pass) {
  if (pass == TransferPass::kLocal) return 1;
  store.ReadString("TargetDirectory", &target_directory_);
  return 1;
}

int CTargetOptions::Save(CSettingsRegistry& store, TransferPass pass) const {
  if (pass == TransferPass::kLocal) return 1;
  store.WriteString("TargetDirectory", target_directory_);
  return 1;
}

void CTargetOptions::SetDefault(int) { target_directory_.clear(); }

void CTargetOptions::CopyTo(COptionSet& other) const {
  if (auto* target = dynamic_cast<CTargetOptions*>(&other)) {
    target->target_directory_ = target_directory_;
  }
}

// The one string is reached by index; only 0 means anything.
void CTargetOptions::SetString(int id, const std::string& text, int) {
  if (id == kTargetDirectoryId) target_directory_ = text;
}

std::string CTargetOptions::GetString(int id, int) const {
  return id == kTargetDirectoryId ? target_directory_ : std::string();
}

int CUnivTargetOptions::Load(CSettingsRegistry& store, TransferPass pass) {
  if (pass == TransferPass::kLocal) return 1;
  CTargetOptions::Load(store, pass);
  store.ReadString("LinkerOptions", &linker_options_);
  store.ReadString("IndirectionFile", &indirection_file_);
  bool crlf = false;
  if (store.ReadBool("CRLF", &crlf)) crlf_ = crlf ? 1 : 0;
  int32_t character = translate_character_;
  if (store.ReadInt("TranslateCharacter", &character)) translate_character_ = character;
  return 1;
}

int CUnivTargetOptions::Save(CSettingsRegistry& store, TransferPass pass) const {
  if (pass == TransferPass::kLocal) return 1;
  CTargetOptions::Save(store, pass);
  store.WriteString("LinkerOptions", linker_options_);
  store.WriteString("IndirectionFile", indirection_file_);
  store.WriteBool("CRLF", crlf_ != 0, /*yes_no=*/true);
  store.WriteInt("TranslateCharacter", translate_character_);
  return 1;
}

void CUnivTargetOptions::SetDefault(int level) {
  CTargetOptions::SetDefault(level);
  linker_options_.clear();
  indirection_file_.clear();
  crlf_ = 0;
  translate_character_ = '&';
}

void CUnivTargetOptions::CopyTo(COptionSet& other) const {
  CTargetOptions::CopyTo(other);
  if (auto* target = dynamic_cast<CUnivTargetOptions*>(&other)) {
    target->linker_options_ = linker_options_;
    target->indirection_file_ = indirection_file_;
    target->crlf_ = crlf_;
    target->translate_character_ = translate_character_;
  }
}

void CUnivTargetOptions::SetInt(int id, int value, int) {
  if (id == kCrLfId) crlf_ = value;
  if (id == kTranslateCharacterId) translate_character_ = value;
}

int CUnivTargetOptions::GetInt(int id, int) const {
  if (id == kCrLfId) return crlf_;
  if (id == kTranslateCharacterId) return translate_character_;
  return -1;
}

void CUnivTargetOptions::SetString(int id, const std::string& text, int mode) {
  if (id == kLinkerOptionsId) {
    linker_options_ = text;
  } else if (id == kIndirectionFileId) {
    indirection_file_ = text;
  } else {
    CTargetOptions::SetString(id, text, mode);
  }
}

std::string CUnivTargetOptions::GetString(int id, int mode) const {
  if (id == kLinkerOptionsId) return linker_options_;
  if (id == kIndirectionFileId) return indirection_file_;
  return CTargetOptions::GetString(id, mode);
}

}  // namespace quillon
