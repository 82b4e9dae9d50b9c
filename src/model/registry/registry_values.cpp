// Typed values in the current key: every write creates or replaces, every
// read copies out, and a name already used with another type is refused.
#include <cstring>

#include "model/registry/coding.h"
#include "model/registry/registry_format.h"

namespace quillon {
namespace {

constexpr std::string_view kTrue = "True";
constexpr std::string_view kYes = "Yes";

uint32_t Size32(size_t size) { return static_cast<uint32_t>(size); }

}  // namespace

RegistryNode* CSettingsRegistry::FindValue(std::string_view name, uint8_t type) {
  RegistryNode* node = Lookup(current_, name);
  if (!node) {
    last_error_ = kRegKeyNotFound;
    return nullptr;
  }
  if (node->type() != type) {
    last_error_ = kRegTypeMismatch;
    return nullptr;
  }
  last_error_ = kRegOK;
  return node;
}

RegistryNode* CSettingsRegistry::PrepareWrite(std::string_view name, uint8_t type) {
  size_t at = 0;
  RegistryNode* node = Lookup(current_, name, &at);
  if (node && node->type() != type) {
    last_error_ = kRegTypeMismatch;
    return nullptr;
  }
  if (!node) node = AddChild(current_, at, name, type);
  last_error_ = kRegOK;
  return node;
}

// A replaced value's bytes (in the file read, or in the arena) belong to
// this node alone, so a new value that fits takes their place.
char* CSettingsRegistry::ValueRoom(RegistryNode* node, size_t size) {
  auto& value = RegistryCodec::Bytes(*node);
  if (size <= value.size && value.data != nullptr) return const_cast<char*>(value.data);
  return static_cast<char*>(arena_.Allocate(size));
}

bool CSettingsRegistry::WriteInt(std::string_view name, int32_t value) {
  RegistryNode* node = PrepareWrite(name, kRegInt);
  if (node) RegistryCodec::SetNumber(*node, value);
  return node != nullptr;
}

bool CSettingsRegistry::ReadInt(std::string_view name, int32_t* out) {
  const RegistryNode* node = FindValue(name, kRegInt);
  if (node) *out = node->int_value();
  return node != nullptr;
}

bool CSettingsRegistry::WriteInt64(std::string_view name, uint32_t first, uint32_t second) {
  RegistryNode* node = PrepareWrite(name, kRegInt64);
  if (node) RegistryCodec::SetWords64(*node, first, second);
  return node != nullptr;
}

bool CSettingsRegistry::ReadInt64(std::string_view name, uint32_t* first, uint32_t* second) {
  const RegistryNode* node = FindValue(name, kRegInt64);
  if (node) {
    *first = node->int64_word(0);
    *second = node->int64_word(1);
  }
  return node != nullptr;
}

bool CSettingsRegistry::WriteString(std::string_view name, std::string_view value) {
  RegistryNode* node = PrepareWrite(name, kRegString);
  if (!node) return false;
  char* room = ValueRoom(node, value.size());
  if (!value.empty()) std::memmove(room, value.data(), value.size());
  RegistryCodec::Bytes(*node) = {room, Size32(value.size()), 0};
  return true;
}

bool CSettingsRegistry::ReadString(std::string_view name, std::string* out) {
  const RegistryNode* node = FindValue(name, kRegString);
  if (node) out->assign(node->string_value());
  return node != nullptr;
}

bool CSettingsRegistry::WriteBool(std::string_view name, bool value, bool yes_no) {
  if (yes_no) return WriteString(name, value ? kYes : "No");
  return WriteString(name, value ? kTrue : "False");
}

bool CSettingsRegistry::ReadBool(std::string_view name, bool* out) {
  const RegistryNode* node = FindValue(name, kRegString);
  if (node) *out = node->string_value() == kYes || node->string_value() == kTrue;
  return node != nullptr;
}

// Held as the file spells a list (u16 length + bytes per element), or with
// u32 lengths when an element is too long for that.
bool CSettingsRegistry::WriteStringList(std::string_view name,
                                        const std::vector<std::string>& value) {
  RegistryNode* node = PrepareWrite(name, kRegStringList);
  if (!node) return false;
  bool wide = false;
  size_t size = 0;
  for (const std::string& text : value) {
    wide = wide || text.size() > 0xFFFF;
    size += text.size();
  }
  size += value.size() * (wide ? 4 : 2);
  char* room = ValueRoom(node, size);
  char* next = room;
  for (const std::string& text : value) {
    next = wide ? EncodeFixed32(next, Size32(text.size()))
                : EncodeFixed16(next, static_cast<uint16_t>(text.size()));
    if (!text.empty()) std::memcpy(next, text.data(), text.size());
    next += text.size();
  }
  RegistryCodec::Bytes(*node) = {room, Size32(size), Size32(value.size())};
  RegistryCodec::SetListForm(*node, wide ? kListWide : kListExact);
  return true;
}

bool CSettingsRegistry::ReadStringList(std::string_view name, std::vector<std::string>* out) {
  const RegistryNode* node = FindValue(name, kRegStringList);
  if (node) *out = node->list_value();
  return node != nullptr;
}

bool CSettingsRegistry::WriteBuffer(std::string_view name, std::string_view bytes) {
  RegistryNode* node = PrepareWrite(name, kRegBuffer);
  if (!node) return false;
  char* room = ValueRoom(node, bytes.size());
  if (!bytes.empty()) std::memmove(room, bytes.data(), bytes.size());
  RegistryCodec::Bytes(*node) = {room, Size32(bytes.size()), 0};
  return true;
}

bool CSettingsRegistry::ReadBuffer(std::string_view name, std::string* out) {
  const RegistryNode* node = FindValue(name, kRegBuffer);
  if (node) out->assign(node->string_value());
  return node != nullptr;
}

bool CSettingsRegistry::WriteWords(std::string_view name, const std::vector<uint32_t>& words) {
  RegistryNode* node = PrepareWrite(name, kRegWords);
  if (!node) return false;
  char* room = ValueRoom(node, 4 * words.size());
  char* next = room;
  for (uint32_t word : words) next = EncodeFixed32(next, word);
  RegistryCodec::Bytes(*node) = {room, Size32(4 * words.size()), Size32(words.size())};
  return true;
}

bool CSettingsRegistry::ReadWords(std::string_view name, std::vector<uint32_t>* out) {
  const RegistryNode* node = FindValue(name, kRegWords);
  if (node) *out = node->words_value();
  return node != nullptr;
}

}  // namespace quillon
