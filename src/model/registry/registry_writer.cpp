// Writing the store file. Large projects save tens of thousands of nodes, so
// the image is sized in a first pass and then encoded in place, with no
// per-field appends.
#include <cstring>
#include <vector>

#include "model/registry/coding.h"
#include "model/registry/registry_format.h"

namespace quillon {
namespace {

// Deliberately older than the newest version the reader takes (1.0).
constexpr char kWrittenVersion[2] = {0, 1};

// Counts and lengths that do not fit their field are cut to it, and only as
// many elements as the field says are written, so the file stays parseable.
uint16_t Length16(size_t size) { return static_cast<uint16_t>(size & 0xFFFF); }
uint32_t Length32(size_t size) { return static_cast<uint32_t>(size & 0xFFFFFFFFu); }
uint16_t WrittenChildCount(const RegistryNode& node) { return Length16(node.child_count()); }

// Calls visit(node) for `root` and every node below it in file order,
// without recursion.
template <typename Visit>
void ForEachRecord(const RegistryNode& root, Visit visit) {
  struct Frame {
    const RegistryNode* key;
    size_t next;
    size_t end;
  };
  std::vector<Frame> stack;
  visit(root);
  if (root.type == kRegKey) stack.push_back({&root, 0, WrittenChildCount(root)});
  while (!stack.empty()) {
    Frame& top = stack.back();
    if (top.next == top.end) {
      stack.pop_back();
      continue;
    }
    const RegistryNode& child = *(*top.key->children)[top.next++];
    visit(child);
    if (child.type == kRegKey) stack.push_back({&child, 0, WrittenChildCount(child)});
  }
}

size_t ValueSize(const RegistryNode& node) {
  switch (node.type) {
    case kRegInt:
      return 4;
    case kRegInt64:
      return 8;
    case kRegString:
      return 2 + Length16(node.string_value.size());
    case kRegStringList: {
      size_t size = 4;
      uint32_t count = Length32(node.list_value.size());
      for (uint32_t i = 0; i < count; ++i) size += 2 + Length16(node.list_value[i].size());
      return size;
    }
    case kRegBuffer:
      return 4 + Length32(node.string_value.size());
    case kRegWords:
      return 4 + 4 * static_cast<size_t>(Length32(node.words_value.size()));
    default:
      return 0;
  }
}

size_t RecordSize(const RegistryNode& node) {
  return 1 + (node.type == kRegKey ? 2 : 0) + 2 + Length16(node.name.size()) + ValueSize(node);
}

char* EncodeBytes(char* dst, const char* bytes, size_t size) {
  if (size != 0) std::memcpy(dst, bytes, size);
  return dst + size;
}

char* EncodeString16(char* dst, std::string_view text) {
  uint16_t length = Length16(text.size());
  return EncodeBytes(EncodeFixed16(dst, length), text.data(), length);
}

char* EncodeValue(char* dst, const RegistryNode& node) {
  switch (node.type) {
    case kRegInt:
      return EncodeFixed32(dst, static_cast<uint32_t>(node.int_value));
    case kRegInt64:
      return EncodeFixed32(EncodeFixed32(dst, node.words64[0]), node.words64[1]);
    case kRegString:
      return EncodeString16(dst, node.string_value);
    case kRegStringList: {
      uint32_t count = Length32(node.list_value.size());
      dst = EncodeFixed32(dst, count);
      for (uint32_t i = 0; i < count; ++i) dst = EncodeString16(dst, node.list_value[i]);
      return dst;
    }
    case kRegBuffer: {
      uint32_t length = Length32(node.string_value.size());
      return EncodeBytes(EncodeFixed32(dst, length), node.string_value.data(), length);
    }
    case kRegWords: {
      uint32_t count = Length32(node.words_value.size());
      dst = EncodeFixed32(dst, count);
      for (uint32_t i = 0; i < count; ++i) dst = EncodeFixed32(dst, node.words_value[i]);
      return dst;
    }
    default:
      return dst;
  }
}

char* EncodeRecord(char* dst, const RegistryNode& node) {
  *dst++ = static_cast<char>(node.type);
  if (node.type == kRegKey) dst = EncodeFixed16(dst, WrittenChildCount(node));
  return EncodeValue(EncodeString16(dst, node.name), node);
}

}  // namespace

void AppendRegistryHeader(std::string* out) {
  out->append(kRegistryMagic);
  out->append(kWrittenVersion, sizeof kWrittenVersion);
}

void AppendRegistryTree(const RegistryNode& root, std::string* out) {
  size_t size = 0;
  ForEachRecord(root, [&size](const RegistryNode& node) { size += RecordSize(node); });
  size_t start = out->size();
  out->resize(start + size);
  char* next = out->data() + start;
  ForEachRecord(root, [&next](const RegistryNode& node) { next = EncodeRecord(next, node); });
}

}  // namespace quillon
