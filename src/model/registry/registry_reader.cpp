// Reading the store file from a buffer that holds all of it.
//
// Input is outside bytes, so nothing here trusts a count: elements are
// allocated only as they are actually read, nesting is bounded by
// kRegistryMaxDepth, and every record consumes input, so the work is linear
// in the input size.
#include <algorithm>

#include "model/registry/coding.h"
#include "model/registry/registry_format.h"

namespace quillon {
namespace {

bool IsDefinedType(int type) {
  switch (type) {
    case kRegKey:
    case kRegInt:
    case kRegInt64:
    case kRegString:
    case kRegStringList:
    case kRegBuffer:
    case kRegWords:
      return true;
    default:
      return false;
  }
}

using NodeList = std::vector<std::unique_ptr<RegistryNode>>;

bool NameLess(const std::unique_ptr<RegistryNode>& a, const std::unique_ptr<RegistryNode>& b) {
  return CompareRegistryNames(a->name, b->name) < 0;
}

bool NameEqual(const std::unique_ptr<RegistryNode>& a, const std::unique_ptr<RegistryNode>& b) {
  return CompareRegistryNames(a->name, b->name) == 0;
}

// Sorts siblings that arrived out of order and drops every name that repeats
// an earlier sibling's. A stable sort keeps the first of equal names first.
void SortAndDropDuplicates(NodeList* nodes) {
  std::stable_sort(nodes->begin(), nodes->end(), NameLess);
  nodes->erase(std::unique(nodes->begin(), nodes->end(), NameEqual), nodes->end());
}

class RecordParser {
 public:
  explicit RecordParser(std::string_view bytes) : in_(bytes) {}

  int ParseHeader();
  int ParseRoot(RegistryNode* root);

 private:
  bool ReadRecord(RegistryNode* node, int depth);
  bool ReadChildren(RegistryNode* key, uint16_t count, int depth);
  void ReadValue(RegistryNode* node);
  void ReadString16(std::string* out) { in_.ReadBytes(in_.ReadFixed16(), out); }
  void ReadStringList(std::vector<std::string>* out);
  void ReadWords(std::vector<uint32_t>* out);

  ByteReader in_;
};

int RecordParser::ParseHeader() {
  std::string magic;
  in_.ReadBytes(kRegistryMagic.size(), &magic);
  if (magic != kRegistryMagic) return kRegInvalidFormat;
  int major = std::max(in_.ReadByte(), 0);
  int minor = std::max(in_.ReadByte(), 0);
  if (major * 256 + minor > kRegistryReadableVersion) return kRegInvalidVersion;
  return kRegOK;
}

// The root must be a key: every operation of the store starts from it.
int RecordParser::ParseRoot(RegistryNode* root) {
  if (in_.ReadByte() != kRegKey) return kRegRecordsNotSupported;
  root->type = kRegKey;
  return ReadRecord(root, 0) ? kRegOK : kRegRecordsNotSupported;
}

// Reads the rest of a record whose type byte has been consumed into
// node->type. `depth` counts the keys above the node.
bool RecordParser::ReadRecord(RegistryNode* node, int depth) {
  uint16_t count = node->type == kRegKey ? in_.ReadFixed16() : 0;
  ReadString16(&node->name);
  ReadValue(node);
  if (count == 0) return true;
  if (depth >= kRegistryMaxDepth) return false;
  return ReadChildren(node, count, depth);
}

bool RecordParser::ReadChildren(RegistryNode* key, uint16_t count, int depth) {
  auto children = std::make_unique<NodeList>();
  children->reserve(4);
  bool in_order = true;
  for (uint16_t i = 0; i < count; ++i) {
    // The end of the input shows here, as a missing type code.
    int type = in_.ReadByte();
    if (!IsDefinedType(type)) return false;
    auto child = std::make_unique<RegistryNode>();
    child->type = static_cast<uint8_t>(type);
    if (!ReadRecord(child.get(), depth + 1)) return false;
    if (!children->empty() && !NameLess(children->back(), child)) in_order = false;
    children->push_back(std::move(child));
  }
  // Files we write are in order; sorting once keeps hostile input from
  // costing an insertion per child.
  if (!in_order) SortAndDropDuplicates(children.get());
  key->children = std::move(children);
  return true;
}

void RecordParser::ReadValue(RegistryNode* node) {
  switch (node->type) {
    case kRegInt:
      node->int_value = static_cast<int32_t>(in_.ReadFixed32());
      break;
    case kRegInt64:
      node->words64[0] = in_.ReadFixed32();
      node->words64[1] = in_.ReadFixed32();
      break;
    case kRegString:
      ReadString16(&node->string_value);
      break;
    case kRegStringList:
      ReadStringList(&node->list_value);
      break;
    case kRegBuffer:
      in_.ReadBytes(in_.ReadFixed32(), &node->string_value);
      break;
    case kRegWords:
      ReadWords(&node->words_value);
      break;
    default:
      break;
  }
}

void RecordParser::ReadStringList(std::vector<std::string>* out) {
  uint32_t count = in_.ReadFixed32();
  // Each element takes at least one byte, so this ends with the input.
  for (uint32_t i = 0; i < count && !in_.AtEnd(); ++i) {
    out->emplace_back();
    ReadString16(&out->back());
  }
}

void RecordParser::ReadWords(std::vector<uint32_t>* out) {
  uint32_t count = in_.ReadFixed32();
  // A last word cut short still counts, with the bytes that are there.
  size_t present = (in_.remaining() + 3) / 4;
  size_t taken = count < present ? count : present;
  out->reserve(taken);
  for (size_t i = 0; i < taken; ++i) out->push_back(in_.ReadFixed32());
}

}  // namespace

int ParseRegistryFile(std::string_view bytes, RegistryNode* root) {
  RecordParser parser(bytes);
  int error = parser.ParseHeader();
  return error != kRegOK ? error : parser.ParseRoot(root);
}

}  // namespace quillon
