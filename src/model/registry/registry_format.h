// Encoding and decoding of the store file (layout in settings_registry.h).
#ifndef QUILLON_MODEL_REGISTRY_REGISTRY_FORMAT_H
#define QUILLON_MODEL_REGISTRY_REGISTRY_FORMAT_H

#include <string>
#include <string_view>

#include "model/registry/settings_registry.h"

namespace quillon {

inline constexpr std::string_view kRegistryMagic{"ZYVEKSLO", 8};
// The newest version that reads, as major * 256 + minor: 1.0.
inline constexpr int kRegistryReadableVersion = 0x0100;

// The ten header bytes every writer emits.
void AppendRegistryHeader(std::string* out);

// The records of `root` and everything below it, depth first. `size_hint`
// is how many bytes to make room for at once.
void AppendRegistryTree(const RegistryNode& root, std::string* out, size_t size_hint = 0);

// Parses a whole file (header included) into `root`, which must be a fresh
// key; nodes go into `arena`, and names and values stay views into `bytes`,
// which must outlive them. Returns a RegistryError; on failure `root` is left
// partly filled and the caller discards it.
int ParseRegistryFile(std::string_view bytes, RegistryArena* arena, RegistryNode* root);

// The first of `count` nodes in name order whose name is not less than `name`.
size_t LowerBoundOfName(const RegistryNode* nodes, size_t count, std::string_view name);

// How a string list's elements are held in its bytes.
enum RegistryListForm : uint8_t {
  kListExact = 0,  // u16 length + bytes each, exactly as the file spells them
  kListCut = 1,    // the same, but the end of the file cut the last one short
  kListWide = 2,   // u32 length + bytes each: written with an element too long
                   // for the file, which cuts it when saving
};

// The reader, the writer and the values' code reach node internals here.
class RegistryCodec {
 public:
  static RegistryNode::Kids& Kids(RegistryNode& node) { return node.kids_; }
  static const RegistryNode::Kids& Kids(const RegistryNode& node) { return node.kids_; }
  static RegistryNode::Bytes& Bytes(RegistryNode& node) { return node.bytes_; }
  static const RegistryNode::Bytes& Bytes(const RegistryNode& node) { return node.bytes_; }
  static void SetName(RegistryNode& node, std::string_view name) {
    node.name_ = name.data();
    node.name_size_ = static_cast<uint32_t>(name.size());
  }
  static void SetType(RegistryNode& node, uint8_t type) { node.type_ = type; }
  static void SetNumber(RegistryNode& node, int32_t value) { node.number_ = value; }
  static void SetWords64(RegistryNode& node, uint32_t first, uint32_t second) {
    node.words64_[0] = first;
    node.words64_[1] = second;
  }
  static uint8_t ListForm(const RegistryNode& node) { return node.list_form_; }
  static void SetListForm(RegistryNode& node, uint8_t form) { node.list_form_ = form; }
};

}  // namespace quillon

#endif  // QUILLON_MODEL_REGISTRY_REGISTRY_FORMAT_H
