// Writing the store file. Large projects save hundreds of thousands of
// nodes, so each record is encoded in place with no per-field appends.
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
uint16_t WrittenChildCount(const RegistryNode& node) { return Length16(node.child_count()); }

// Calls visit(node) for `root` and every node below it in file order,
// without recursion.
template <typename Visit>
void ForEachRecord(const RegistryNode& root, Visit visit) {
  struct Frame {
    const RegistryNode* next;
    const RegistryNode* end;
  };
  auto children = [](const RegistryNode& key) {
    const RegistryNode* first = key.child_count() != 0 ? &key.child(0) : nullptr;
    return Frame{first, first + WrittenChildCount(key)};
  };
  std::vector<Frame> stack;
  visit(root);
  if (root.type() == kRegKey) stack.push_back(children(root));
  while (!stack.empty()) {
    Frame& top = stack.back();
    if (top.next == top.end) {
      stack.pop_back();
      continue;
    }
    const RegistryNode& child = *top.next++;
    visit(child);
    if (child.type() == kRegKey && child.child_count() != 0) stack.push_back(children(child));
  }
}

// Calls element(bytes) for each element of a list that is not held exactly
// as the file spells it.
template <typename Element>
void ForEachListElement(const RegistryNode& node, Element element) {
  const auto& value = RegistryCodec::Bytes(node);
  bool wide = RegistryCodec::ListForm(node) == kListWide;
  ByteReader in(std::string_view(value.data, value.size));
  for (uint32_t i = 0; i < value.count; ++i) {
    element(in.ReadView(wide ? in.ReadFixed32() : in.ReadFixed16()));
  }
}

size_t ValueSize(const RegistryNode& node) {
  const auto& value = RegistryCodec::Bytes(node);
  switch (node.type()) {
    case kRegInt:
      return 4;
    case kRegInt64:
      return 8;
    case kRegString:
      return 2 + Length16(value.size);
    case kRegStringList: {
      if (RegistryCodec::ListForm(node) == kListExact) return 4 + size_t{value.size};
      size_t size = 4;
      ForEachListElement(node,
                         [&size](std::string_view text) { size += 2 + Length16(text.size()); });
      return size;
    }
    case kRegBuffer:
      return 4 + size_t{value.size};
    case kRegWords:
      return 4 + 4 * size_t{value.count};
    default:
      return 0;
  }
}

size_t RecordSize(const RegistryNode& node) {
  return 1 + (node.type() == kRegKey ? 2 : 0) + 2 + Length16(node.name().size()) + ValueSize(node);
}

char* EncodeBytes(char* dst, const char* bytes, size_t size) {
  CopyBytes(dst, bytes, size);
  return dst + size;
}

char* EncodeString16(char* dst, std::string_view text) {
  uint16_t length = Length16(text.size());
  return EncodeBytes(EncodeFixed16(dst, length), text.data(), length);
}

char* EncodeValue(char* dst, const RegistryNode& node) {
  const auto& value = RegistryCodec::Bytes(node);
  switch (node.type()) {
    case kRegInt:
      return EncodeFixed32(dst, static_cast<uint32_t>(node.int_value()));
    case kRegInt64:
      return EncodeFixed32(EncodeFixed32(dst, node.int64_word(0)), node.int64_word(1));
    case kRegString:
      return EncodeString16(dst, node.string_value());
    case kRegStringList:
      dst = EncodeFixed32(dst, value.count);
      if (RegistryCodec::ListForm(node) == kListExact)
        return EncodeBytes(dst, value.data, value.size);
      ForEachListElement(node, [&dst](std::string_view text) { dst = EncodeString16(dst, text); });
      return dst;
    case kRegBuffer:
      return EncodeBytes(EncodeFixed32(dst, value.size), value.data, value.size);
    case kRegWords: {
      dst = EncodeFixed32(dst, value.count);
      if (value.size == 4 * size_t{value.count}) return EncodeBytes(dst, value.data, value.size);
      // A last word cut short by the end of the file: its missing bytes are 0.
      ByteReader in(std::string_view(value.data, value.size));
      for (uint32_t i = 0; i < value.count; ++i) dst = EncodeFixed32(dst, in.ReadFixed32());
      return dst;
    }
    default:
      return dst;
  }
}

char* EncodeRecord(char* dst, const RegistryNode& node) {
  *dst++ = static_cast<char>(node.type());
  if (node.type() == kRegKey) dst = EncodeFixed16(dst, WrittenChildCount(node));
  return EncodeValue(EncodeString16(dst, node.name()), node);
}

}  // namespace

void AppendRegistryHeader(std::string* out) {
  out->append(kRegistryMagic);
  out->append(kWrittenVersion, sizeof kWrittenVersion);
}

void AppendRegistryTree(const RegistryNode& root, std::string* out, size_t size_hint) {
  out->reserve(out->size() + size_hint);
  // One pass over the nodes (they are many, and scattered): each record is
  // sized and encoded while its node is at hand, into a small buffer that is
  // appended whenever it fills.
  constexpr size_t kStage = 32 * 1024;
  char stage[kStage];
  size_t used = 0;
  ForEachRecord(root, [&](const RegistryNode& node) {
    size_t size = RecordSize(node);
    if (size > kStage - used) {
      out->append(stage, used);
      used = 0;
    }
    if (size > kStage) {
      size_t start = out->size();
      out->resize(start + size);
      EncodeRecord(out->data() + start, node);
      return;
    }
    EncodeRecord(stage + used, node);
    used += size;
  });
  out->append(stage, used);
}

}  // namespace quillon
