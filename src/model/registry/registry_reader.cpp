// Reading the store file from a buffer that holds all of it.
//
// Input is outside bytes, so nothing here trusts a count: nodes are made
// only as records are actually read (a key's children gather on a scratch
// stack and move to the arena, as one range, when the key ends), nesting is
// bounded by kRegistryMaxDepth, and every record consumes input, so the
// work and the memory are linear in the input size. Names and values are
// not copied: nodes keep views into the bytes.
#include <algorithm>
#include <cstring>
#include <new>
#include <vector>

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

bool NameLess(const RegistryNode& a, const RegistryNode& b) {
  return CompareRegistryNames(a.name(), b.name()) < 0;
}

unsigned char Folded(char c) {
  auto byte = static_cast<unsigned char>(c);
  return byte >= 'A' && byte <= 'Z' ? static_cast<unsigned char>(byte + ('a' - 'A')) : byte;
}

// NameLess for the siblings of a file we wrote, without a call: they mostly
// differ in one byte that has no case, or one is the other's prefix.
bool InOrder(std::string_view a, std::string_view b) {
  const size_t common = a.size() < b.size() ? a.size() : b.size();
  size_t i = 0;
#if defined(__GNUC__) && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
  for (; i + 8 <= common; i += 8) {
    uint64_t x, y;
    std::memcpy(&x, a.data() + i, 8);
    std::memcpy(&y, b.data() + i, 8);
    if (x != y) {
      i += static_cast<size_t>(__builtin_ctzll(x ^ y)) / 8;
      break;
    }
  }
#endif
  for (; i < common; ++i) {
    if (a[i] == b[i]) continue;
    unsigned char p = Folded(a[i]), q = Folded(b[i]);
    if (p != q) return p < q;
    return CompareRegistryNames(a, b) < 0;
  }
  return a.size() < b.size();
}

bool NameEqual(const RegistryNode& a, const RegistryNode& b) {
  return CompareRegistryNames(a.name(), b.name()) == 0;
}

uint32_t Size32(size_t size) { return static_cast<uint32_t>(size); }

class RecordParser {
 public:
  RecordParser(std::string_view bytes, RegistryArena* arena) : in_(bytes), arena_(arena) {}

  int ParseHeader();
  int ParseRoot(RegistryNode* root);

 private:
  bool ReadChildren(uint16_t count, int depth, RegistryNode* key);
  void ReadValue(RegistryNode* node);
  void ReadStringList(RegistryNode* node);
  void ReadWords(RegistryNode* node);
  void SetBytes(RegistryNode* node, std::string_view bytes, size_t count) {
    RegistryCodec::Bytes(*node) = {bytes.data(), Size32(bytes.size()), Size32(count)};
  }

  ByteReader in_;
  RegistryArena* arena_;
};

int RecordParser::ParseHeader() {
  if (in_.ReadView(kRegistryMagic.size()) != kRegistryMagic) return kRegInvalidFormat;
  int major = std::max(in_.ReadByte(), 0);
  int minor = std::max(in_.ReadByte(), 0);
  if (major * 256 + minor > kRegistryReadableVersion) return kRegInvalidVersion;
  return kRegOK;
}

// The root must be a key: every operation of the store starts from it.
int RecordParser::ParseRoot(RegistryNode* root) {
  if (in_.ReadByte() != kRegKey) return kRegRecordsNotSupported;
  RegistryCodec::SetType(*root, kRegKey);
  uint16_t count = in_.ReadFixed16();
  RegistryCodec::SetName(*root, in_.ReadView(in_.ReadFixed16()));
  if (count == 0) return kRegOK;
  return ReadChildren(count, 0, root) ? kRegOK : kRegRecordsNotSupported;
}

// Reads the `count` child records of `key`, which has `depth` keys above it,
// straight into their range of the arena. The range is sized by the count,
// but never beyond the records the bytes left can hold, so a hostile count
// sizes nothing.
bool RecordParser::ReadChildren(uint16_t count, int depth, RegistryNode* key) {
  if (depth >= kRegistryMaxDepth) return false;
  // A record is at least its type and its name's length.
  constexpr size_t kSmallestRecord = 3;
  if (count > in_.remaining() / kSmallestRecord) return false;
  RegistryNode* const range = arena_->AllocateNodes(count);
  bool in_order = true;
  for (uint16_t i = 0; i < count; ++i) {
    // The end of the input shows here, as a missing type code.
    int type = in_.ReadByte();
    RegistryNode* node = new (&range[i]) RegistryNode();
    uint16_t children = 0;
    // Strings and keys are nearly all there is: they go first.
    if (type == kRegString) {
      RegistryCodec::SetType(*node, kRegString);
      RegistryCodec::SetName(*node, in_.ReadView(in_.ReadFixed16()));
      SetBytes(node, in_.ReadView(in_.ReadFixed16()), 0);
    } else if (type == kRegKey) {
      children = in_.ReadFixed16();
      RegistryCodec::SetName(*node, in_.ReadView(in_.ReadFixed16()));
    } else {
      if (!IsDefinedType(type)) return false;
      RegistryCodec::SetType(*node, static_cast<uint8_t>(type));
      RegistryCodec::SetName(*node, in_.ReadView(in_.ReadFixed16()));
      ReadValue(node);
    }
    if (children != 0 && !ReadChildren(children, depth + 1, node)) return false;
    if (i > 0 && in_order) in_order = InOrder(range[i - 1].name(), node->name());
  }
  size_t kept = count;
  // Files we write are in order; hostile ones are sorted once, and a name
  // that repeats an earlier sibling's is dropped (a stable sort keeps the
  // first of equal names first).
  if (!in_order) {
    std::stable_sort(range, range + count, NameLess);
    kept = static_cast<size_t>(std::unique(range, range + count, NameEqual) - range);
  }
  RegistryCodec::Kids(*key) = {range, Size32(kept), Size32(kept)};
  return true;
}

void RecordParser::ReadValue(RegistryNode* node) {
  switch (node->type()) {
    case kRegInt:
      RegistryCodec::SetNumber(*node, static_cast<int32_t>(in_.ReadFixed32()));
      break;
    case kRegInt64: {
      uint32_t first = in_.ReadFixed32();
      RegistryCodec::SetWords64(*node, first, in_.ReadFixed32());
      break;
    }
    case kRegString:
      SetBytes(node, in_.ReadView(in_.ReadFixed16()), 0);
      break;
    case kRegBuffer:
      SetBytes(node, in_.ReadView(in_.ReadFixed32()), 0);
      break;
    case kRegStringList:
      ReadStringList(node);
      break;
    case kRegWords:
      ReadWords(node);
      break;
    default:
      break;
  }
}

// Only the extent is found here; the elements are decoded when read.
void RecordParser::ReadStringList(RegistryNode* node) {
  uint32_t count = in_.ReadFixed32();
  const char* start = in_.position();
  uint32_t read = 0;
  bool cut = false;
  // Each element takes at least one byte, so this ends with the input.
  for (; read < count && !in_.AtEnd(); ++read) {
    cut = in_.remaining() < 2;
    uint16_t length = in_.ReadFixed16();
    cut = cut || in_.remaining() < length;
    in_.ReadView(length);
  }
  SetBytes(node, std::string_view(start, static_cast<size_t>(in_.position() - start)), read);
  RegistryCodec::SetListForm(*node, cut ? kListCut : kListExact);
}

void RecordParser::ReadWords(RegistryNode* node) {
  uint32_t count = in_.ReadFixed32();
  // A last word cut short still counts, with the bytes that are there.
  size_t present = (in_.remaining() + 3) / 4;
  size_t taken = count < present ? count : present;
  SetBytes(node, in_.ReadView(taken * 4), taken);
}

}  // namespace

int ParseRegistryFile(std::string_view bytes, RegistryArena* arena, RegistryNode* root) {
  RecordParser parser(bytes, arena);
  int error = parser.ParseHeader();
  return error != kRegOK ? error : parser.ParseRoot(root);
}

}  // namespace quillon
