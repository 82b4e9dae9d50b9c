// The store: key navigation, typed values, and one-pass transfer to and from
// its stream.
#include "model/registry/settings_registry.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "model/registry/registry_format.h"

namespace quillon {
namespace {

constexpr std::string_view kRootName = "$";

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

// The i of a child named "<name>[i]", with i spelled as std::to_string
// spells it; -1 for any other name.
long IndexInName(std::string_view child, std::string_view name) {
  if (child.size() < name.size() + 3 || child[name.size()] != '[' || child.back() != ']') return -1;
  std::string_view digits = child.substr(name.size() + 1, child.size() - name.size() - 2);
  if (digits.size() > 9 || (digits.size() > 1 && digits[0] == '0')) return -1;
  long value = 0;
  for (char digit : digits) {
    if (digit < '0' || digit > '9') return -1;
    value = value * 10 + (digit - '0');
  }
  return SameRegistryName(child.substr(0, name.size()), name) ? value : -1;
}

}  // namespace

CSettingsRegistry::CSettingsRegistry(ByteStream* stream, bool storing)
    : storing_(storing), base_(&root_), current_(&root_), stream_(stream) {
  ResetTree();
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
  AppendRegistryTree(root_, &tree, SizeHint());
  stream_->Write(tree.data(), tree.size());
}

void CSettingsRegistry::ResetTree() {
  root_ = RegistryNode();
  RegistryCodec::SetName(root_, kRootName);
  base_ = current_ = &root_;
  key_stack_.clear();
  hint_ = nullptr;
  indexed_.key = nullptr;
  for (std::string_view& name : recent_names_) name = std::string_view();
  arena_.Clear();
  file_ = std::string();
}

void CSettingsRegistry::ReadAll() {
  ResetTree();
  if (!stream_) {
    last_error_ = kRegErrorOpening;
    return;
  }
  // One buffer for the whole file: the tree keeps views into it.
  file_ = stream_->ReadToEnd();
  last_error_ = ParseRegistryFile(file_, &arena_, &root_);
  if (last_error_ != kRegOK) ResetTree();
}

// Past the inline tries: the hint itself (a name asked for again), the first
// child, then a search.
RegistryNode* CSettingsRegistry::LookupSlow(const RegistryNode* key, std::string_view name,
                                            size_t* at) const {
  const size_t count = key->child_count();
  if (count == 0) {
    if (at) *at = 0;
    return nullptr;
  }
  RegistryNode* first = RegistryCodec::Kids(const_cast<RegistryNode&>(*key)).data;
  if (Within(hint_, first, count)) {
    if (SameRegistryName(hint_->name(), name)) return hint_;
    if (SameRegistryName(first->name(), name)) return hint_ = first;
  }
  // Writes mostly come in name order: past the last child, no search.
  if (at && CompareRegistryNames(first[count - 1].name(), name) < 0) {
    *at = count;
    return nullptr;
  }
  size_t place = LowerBoundOfName(first, count, name);
  if (place < count && SameRegistryName(first[place].name(), name)) return hint_ = first + place;
  if (at) *at = place;
  return nullptr;
}

RegistryNode* CSettingsRegistry::AddChild(RegistryNode* key, size_t at, std::string_view name,
                                          uint8_t type) {
  if (key == indexed_.key) indexed_.key = nullptr;
  auto& kids = RegistryCodec::Kids(*key);
  RegistryNode* old = kids.data;
  size_t count = kids.count;
  if (count == kids.capacity) {
    size_t capacity = count < 8 ? 8 : 2 * count;
    RegistryNode* range = arena_.AllocateNodes(capacity);
    if (at != 0) std::memcpy(static_cast<void*>(range), old, at * sizeof(RegistryNode));
    if (at != count) {
      std::memcpy(static_cast<void*>(range + at + 1), old + at,
                  (count - at) * sizeof(RegistryNode));
    }
    kids.data = range;
    kids.capacity = static_cast<uint32_t>(capacity);
  } else if (at != count) {
    std::memmove(static_cast<void*>(old + at + 1), old + at, (count - at) * sizeof(RegistryNode));
  }
  if (kids.data != old || at != count) FollowMove(old, count, kids.data, at);
  kids.count = static_cast<uint32_t>(count + 1);
  RegistryNode* node = new (&kids.data[at]) RegistryNode();
  RegistryCodec::SetName(*node, OwnName(name));
  RegistryCodec::SetType(*node, type);
  if (type != kRegKey) RegistryCodec::Bytes(*node) = {nullptr, 0, 0};
  return hint_ = node;
}

std::string_view CSettingsRegistry::OwnName(std::string_view name) {
  // The size and the first and last four bytes tell most names apart.
  uint32_t head = 0, tail = 0;
  if (name.size() >= 4) {
    std::memcpy(&head, name.data(), 4);
    std::memcpy(&tail, name.data() + name.size() - 4, 4);
  } else {
    for (char c : name) head = head * 31 + static_cast<unsigned char>(c);
  }
  uint32_t hash = (head * 0x9E3779B1u) ^ (tail * 0x85EBCA77u) ^ static_cast<uint32_t>(name.size());
  std::string_view& recent = recent_names_[hash >> 24];
  if (recent.size() == name.size() &&
      (name.empty() || std::memcmp(recent.data(), name.data(), name.size()) == 0)) {
    return recent;
  }
  recent = std::string_view(arena_.Copy(name), name.size());
  return recent;
}

void CSettingsRegistry::FollowMove(const RegistryNode* from, size_t count, RegistryNode* to,
                                   size_t gap) {
  auto follow = [&](RegistryNode*& node) {
    if (!Within(node, from, count)) return;
    size_t index = static_cast<size_t>(node - from);
    node = to + index + (index >= gap ? 1 : 0);
  };
  // A moved key's address may now be a sibling's.
  indexed_.key = nullptr;
  follow(base_);
  follow(current_);
  for (RegistryNode*& key : key_stack_) follow(key);
}

// Below `key`, which has no children, creates the keys named by every
// component of `path`, each inside the one before.
RegistryNode* CSettingsRegistry::CreateKeys(RegistryNode* key, std::string_view path) {
  size_t pos = 0;
  std::string_view part;
  while (NextComponent(path, &pos, &part)) key = AddChild(key, 0, part, kRegKey);
  return key;
}

std::string CSettingsRegistry::Serialize() const {
  std::string bytes;
  AppendRegistryHeader(&bytes);
  AppendRegistryTree(root_, &bytes, SizeHint());
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
    if (!NextComponent(path, &pos, &part)) break;
    size_t at = 0;
    RegistryNode* child = Lookup(node, part, create ? &at : nullptr);
    if (!child && create) {
      node = AddChild(node, at, part, kRegKey);
      // The rest, if any, goes into keys made just now.
      if (pos <= path.size()) node = CreateKeys(node, path.substr(pos));
      break;
    }
    if (!child || child->type() != kRegKey) {
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
  if (!Walk(&root_, path, create, &key)) return false;
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
  RegistryNode* child = nullptr;
  if (!create && IndexedChild(name, index, &child)) {
    if (!child || child->type() != kRegKey) {
      last_error_ = kRegPathNotFound;
      return false;
    }
    current_ = child;
    last_error_ = kRegOK;
    return true;
  }
  std::string path(name);
  path += '[';
  path += std::to_string(index);
  path += ']';
  return OpenKey(path, create);
}

bool CSettingsRegistry::IndexedChild(std::string_view name, int index, RegistryNode** child) {
  const size_t count = current_->child_count();
  if (index < 0 || static_cast<size_t>(index) >= count) return false;
  if (name.find('\\') != std::string_view::npos) return false;
  if (indexed_.key != current_ || !RegistryNamesEqual(indexed_.name, name)) {
    indexed_.key = current_;
    indexed_.name.assign(name);
    indexed_.by_index.assign(count, nullptr);
    RegistryNode* first = RegistryCodec::Kids(*current_).data;
    for (size_t i = 0; i < count; ++i) {
      long at = IndexInName(first[i].name(), name);
      if (at >= 0 && static_cast<size_t>(at) < count) indexed_.by_index[at] = first + i;
    }
  }
  *child = indexed_.by_index[static_cast<size_t>(index)];
  return true;
}

// Stored order is the keys' name order: visiting them so reads the store
// front to back instead of jumping about it. A name with a backslash is a
// path and matches no child.
void CSettingsRegistry::VisitIndexedKeys(std::string_view name,
                                         const std::function<void(size_t)>& count,
                                         const std::function<void(size_t)>& visit) {
  // One look at each child: which are keys "name[i]", where, and whether
  // each i is there. No i reaches the number of children before one is missing.
  const size_t children = current_->child_count();
  const RegistryNode* first = children != 0 ? &current_->child(0) : nullptr;
  std::vector<std::pair<size_t, size_t>> found;  // position, index
  std::vector<bool> present(children, false);
  for (size_t at = 0; at < children; ++at) {
    long index = first[at].type() == kRegKey ? IndexInName(first[at].name(), name) : -1;
    if (index < 0 || static_cast<size_t>(index) >= children) continue;
    found.emplace_back(at, static_cast<size_t>(index));
    present[static_cast<size_t>(index)] = true;
  }
  size_t keys = 0;
  while (keys < children && present[keys]) ++keys;
  count(keys);
  if (keys == 0) return;
  // The key is kept on the stack, which follows it should it move.
  PushKey();
  for (auto [at, index] : found) {
    RegistryNode* key = key_stack_.back();
    if (at >= key->child_count()) break;
    if (index >= keys) continue;
    current_ = RegistryCodec::Kids(*key).data + at;
    visit(index);
  }
  PopKey();
}

bool CSettingsRegistry::EnterChildKey(std::string_view name) {
  RegistryNode* child = Lookup(current_, name);
  if (!child || child->type() != kRegKey) return false;
  key_stack_.push_back(current_);
  current_ = child;
  last_error_ = kRegOK;
  return true;
}

void CSettingsRegistry::PushKey() { key_stack_.push_back(current_); }

bool CSettingsRegistry::PopKey() {
  if (key_stack_.empty()) return false;
  // The key left is often a child of the one restored, and the next name
  // asked for its next sibling.
  hint_ = current_;
  current_ = key_stack_.back();
  key_stack_.pop_back();
  return true;
}

bool CSettingsRegistry::HasKey(std::string_view name) const {
  const RegistryNode* node = Lookup(current_, name);
  return node && node->type() == kRegKey;
}

}  // namespace quillon
