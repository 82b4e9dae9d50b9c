#include "model/project_file.h"

#include <utility>

#include "model/key_scope.h"
#include "platform/path.h"

namespace quillon {

CProjectFile::CProjectFile(std::string file_name, std::unique_ptr<COptionSet> options)
    : options_(std::move(options)) {
  set_file_name(std::move(file_name));
}

void CProjectFile::set_file_name(std::string file_name) {
  file_name_ = std::move(file_name);
  // "$(IRFDIR)main.c" lies in the project's directory: it shows as "main.c".
  std::string_view shown = file_name_;
  constexpr std::string_view kIrfDir = "$(IRFDIR)";
  if (shown.size() >= kIrfDir.size() && EqualsNoCase(shown.substr(0, kIrfDir.size()), kIrfDir)) {
    shown.remove_prefix(kIrfDir.size());
  }
  display_start_ = file_name_.size() - NameAndExtView(shown).size();
}

int CProjectFile::Load(CSettingsRegistry& store, TransferPass pass) {
  if (pass == TransferPass::kLocal) return 1;
  std::string stored = file_name_;
  store.ReadString("FileName", &stored);
  set_file_name(std::move(stored));
  // In the store's name order.
  LoadOptionsKey(store, "FileOptios", *options_, pass);
  store.ReadBool("IsChanged", &is_changed);
  return 1;
}

int CProjectFile::Save(CSettingsRegistry& store, TransferPass pass) const {
  if (pass == TransferPass::kLocal) return 1;
  // In the store's name order, so each key goes after the one before.
  store.WriteString("FileName", file_name_);
  SaveOptionsKey(store, "FileOptios", *options_, pass);
  store.WriteBool("IsChanged", is_changed);
  return 1;
}

void CProjectFile::CopyFrom(const CProjectFile& other) {
  set_file_name(other.file_name_);
  is_changed = other.is_changed;
  other.options_->CopyTo(*options_);
}

}  // namespace quillon
