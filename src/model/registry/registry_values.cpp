// Typed values in the current key: every write creates or replaces, every
// read copies out, and a name already used with another type is refused.
#include "model/registry/settings_registry.h"

namespace quillon {
namespace {

constexpr std::string_view kTrue = "True";
constexpr std::string_view kYes = "Yes";

}  // namespace

RegistryNode* CSettingsRegistry::FindValue(std::string_view name, uint8_t type) {
  RegistryNode* node = current_->FindChild(name);
  if (!node) {
    last_error_ = kRegKeyNotFound;
    return nullptr;
  }
  if (node->type != type) {
    last_error_ = kRegTypeMismatch;
    return nullptr;
  }
  last_error_ = kRegOK;
  return node;
}

RegistryNode* CSettingsRegistry::PrepareWrite(std::string_view name, uint8_t type) {
  RegistryNode* node = current_->FindChild(name);
  if (node && node->type != type) {
    last_error_ = kRegTypeMismatch;
    return nullptr;
  }
  if (!node) {
    auto value = std::make_unique<RegistryNode>();
    value->name = name;
    value->type = type;
    node = current_->InsertChild(std::move(value));
  }
  last_error_ = kRegOK;
  return node;
}

bool CSettingsRegistry::WriteInt(std::string_view name, int32_t value) {
  RegistryNode* node = PrepareWrite(name, kRegInt);
  if (node) node->int_value = value;
  return node != nullptr;
}

bool CSettingsRegistry::ReadInt(std::string_view name, int32_t* out) {
  const RegistryNode* node = FindValue(name, kRegInt);
  if (node) *out = node->int_value;
  return node != nullptr;
}

bool CSettingsRegistry::WriteInt64(std::string_view name, uint32_t first, uint32_t second) {
  RegistryNode* node = PrepareWrite(name, kRegInt64);
  if (node) {
    node->words64[0] = first;
    node->words64[1] = second;
  }
  return node != nullptr;
}

bool CSettingsRegistry::ReadInt64(std::string_view name, uint32_t* first, uint32_t* second) {
  const RegistryNode* node = FindValue(name, kRegInt64);
  if (node) {
    *first = node->words64[0];
    *second = node->words64[1];
  }
  return node != nullptr;
}

bool CSettingsRegistry::WriteString(std::string_view name, std::string_view value) {
  RegistryNode* node = PrepareWrite(name, kRegString);
  if (node) node->string_value.assign(value);
  return node != nullptr;
}

bool CSettingsRegistry::ReadString(std::string_view name, std::string* out) {
  const RegistryNode* node = FindValue(name, kRegString);
  if (node) *out = node->string_value;
  return node != nullptr;
}

bool CSettingsRegistry::WriteBool(std::string_view name, bool value, bool yes_no) {
  if (yes_no) return WriteString(name, value ? kYes : "No");
  return WriteString(name, value ? kTrue : "False");
}

bool CSettingsRegistry::ReadBool(std::string_view name, bool* out) {
  std::string text;
  if (!ReadString(name, &text)) return false;
  *out = text == kYes || text == kTrue;
  return true;
}

bool CSettingsRegistry::WriteStringList(std::string_view name,
                                        const std::vector<std::string>& value) {
  RegistryNode* node = PrepareWrite(name, kRegStringList);
  if (node) node->list_value = value;
  return node != nullptr;
}

bool CSettingsRegistry::ReadStringList(std::string_view name, std::vector<std::string>* out) {
  const RegistryNode* node = FindValue(name, kRegStringList);
  if (node) *out = node->list_value;
  return node != nullptr;
}

bool CSettingsRegistry::WriteBuffer(std::string_view name, std::string_view bytes) {
  RegistryNode* node = PrepareWrite(name, kRegBuffer);
  if (node) node->string_value.assign(bytes);
  return node != nullptr;
}

bool CSettingsRegistry::ReadBuffer(std::string_view name, std::string* out) {
  const RegistryNode* node = FindValue(name, kRegBuffer);
  if (node) *out = node->string_value;
  return node != nullptr;
}

bool CSettingsRegistry::WriteWords(std::string_view name, const std::vector<uint32_t>& words) {
  RegistryNode* node = PrepareWrite(name, kRegWords);
  if (node) node->words_value = words;
  return node != nullptr;
}

bool CSettingsRegistry::ReadWords(std::string_view name, std::vector<uint32_t>* out) {
  const RegistryNode* node = FindValue(name, kRegWords);
  if (node) *out = node->words_value;
  return node != nullptr;
}

}  // namespace quillon
