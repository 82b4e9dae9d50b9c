// The store: key navigation, typed values, and one-pass transfer to and from
// its stream.
#include "model/registry/settings_registry.h"

#include "model/registry/registry_format.h"

namespace quillon {
namespace {

std::unique_ptr<RegistryNode> NewRoot() {
  auto root = std::make_unique<RegistryNode>();
  root->name = "$";
  root->type = kRegKey;
  return root;
}

// Reads to the end, so parsing works on one buffer instead of many calls.
std::string ReadWholeStream(ByteStream* stream) {
  std::string bytes(64 * 1024, '\0');
  size_t used = 0;
  for (;;) {
    if (used == bytes.size()) bytes.resize(bytes.size() * 2);
    size_t wanted = bytes.size() - used;
    size_t got = stream->Read(&bytes[used], wanted);
    if (got == 0) break;
    used += got < wanted ? got : wanted;
  }
  bytes.resize(used);
  return bytes;
}

// Splits off the path component that starts at *pos; false once past the
// last one. Text after the last backslash (even none) is a component.
bool NextComponent(std::string_view path, size_t* pos, std::string_view* part) {
  if (*pos > path.size()) return false;
  size_t end = path.find('\\', *pos);
  if (end == std::string_view::npos) end = path.size();
  *part = path.substr(*pos, end - *pos);
  *pos = end + 1;
  return true;
}

// Below `key`, creates the keys named by every component of `path`.
RegistryNode* CreateKeys(RegistryNode* key, std::string_view path) {
  size_t pos = 0;
  std::string_view part;
  while (NextComponent(path, &pos, &part)) {
    auto child = std::make_unique<RegistryNode>();
    child->name = part;
    key = key->InsertChild(std::move(child));
  }
  return key;
}

}  // namespace

CSettingsRegistry::CSettingsRegistry(ByteStream* stream, bool storing)
    : storing_(storing),
      root_(NewRoot()),
      base_(root_.get()),
      current_(root_.get()),
      stream_(stream) {
  if (!storing_) {
    ReadAll();
    return;
  }
  if (!stream_) {
    last_error_ = kRegPathNotValid;
    return;
  }
  std::string header;
  AppendRegistryHeader(&header);
  stream_->Write(header.data(), header.size());
}

CSettingsRegistry::~CSettingsRegistry() {
  if (!storing_ || !stream_) return;
  std::string tree;
  AppendRegistryTree(*root_, &tree);
  stream_->Write(tree.data(), tree.size());
}

void CSettingsRegistry::ReadAll() {
  root_ = NewRoot();
  base_ = current_ = root_.get();
  key_stack_.clear();
  if (!stream_) {
    last_error_ = kRegErrorOpening;
    return;
  }
  last_error_ = ParseRegistryFile(ReadWholeStream(stream_), root_.get());
  if (last_error_ != kRegOK) {
    root_ = NewRoot();
    base_ = current_ = root_.get();
  }
}

std::string CSettingsRegistry::Serialize() const {
  std::string bytes;
  AppendRegistryHeader(&bytes);
  AppendRegistryTree(*root_, &bytes);
  return bytes;
}

const char* CSettingsRegistry::ErrorText(int code) {
  static constexpr const char* kTexts[] = {
      "OK.",
      "Path name is not valid.",
      "Key not foud.",
      "Error opening registry.",
      "Error saving registry.",
      "Invalid file format (not registry).",
      "Invalid registry version ",
      "Some records not supported",
      "Regitry path not found",
      "This key has already been used with other type.",
  };
  constexpr int kCount = static_cast<int>(sizeof kTexts / sizeof kTexts[0]);
  return code >= 0 && code < kCount ? kTexts[code] : "";
}

void CSettingsRegistry::GetErrorText(std::string* out, bool reset) {
  out->assign(ErrorText(last_error_));
  if (reset) last_error_ = kRegOK;
}

// The existing part of the path is checked first, so a path that runs into
// a value fails without leaving new keys behind.
bool CSettingsRegistry::Walk(RegistryNode* start, std::string_view path, bool create,
                             RegistryNode** result) {
  RegistryNode* node = start;
  size_t pos = 0;
  std::string_view part;
  while (!path.empty()) {
    size_t component_start = pos;
    if (!NextComponent(path, &pos, &part)) break;
    RegistryNode* child = node->FindChild(part);
    if (!child && create) {
      node = CreateKeys(node, path.substr(component_start));
      break;
    }
    if (!child || child->type != kRegKey) {
      last_error_ = child && create ? kRegTypeMismatch : kRegPathNotFound;
      return false;
    }
    node = child;
  }
  *result = node;
  last_error_ = kRegOK;
  return true;
}

bool CSettingsRegistry::OpenKeyFromRoot(std::string_view path, bool create) {
  RegistryNode* key;
  if (!Walk(root_.get(), path, create, &key)) return false;
  base_ = current_ = key;
  return true;
}

bool CSettingsRegistry::OpenKeyFromBase(std::string_view path, bool create) {
  return Walk(base_, path, create, &current_);
}

bool CSettingsRegistry::OpenKey(std::string_view path, bool create) {
  return Walk(current_, path, create, &current_);
}

bool CSettingsRegistry::OpenIndexedKey(std::string_view name, int index, bool create, bool push) {
  if (push) PushKey();
  std::string path(name);
  path += '[';
  path += std::to_string(index);
  path += ']';
  return OpenKey(path, create);
}

void CSettingsRegistry::PushKey() { key_stack_.push_back(current_); }

bool CSettingsRegistry::PopKey() {
  if (key_stack_.empty()) return false;
  current_ = key_stack_.back();
  key_stack_.pop_back();
  return true;
}

bool CSettingsRegistry::HasKey(std::string_view name) const {
  const RegistryNode* node = current_->FindChild(name);
  return node && node->type == kRegKey;
}

}  // namespace quillon
