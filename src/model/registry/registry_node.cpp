// Nodes of the store tree: the name order, lookups in a sorted range,
// values decoded from their bytes, and the arena that holds them all.
#include <algorithm>
#include <cstring>
#include <mutex>

#include "model/registry/coding.h"
#include "model/registry/registry_format.h"

namespace quillon {
namespace {

unsigned char FoldCase(char c) {
  unsigned char byte = static_cast<unsigned char>(c);
  return (byte >= 'A' && byte <= 'Z') ? static_cast<unsigned char>(byte + ('a' - 'A')) : byte;
}

// The first block is small (most stores are); each next one is twice as
// big, up to 1 MiB.
constexpr size_t kFirstBlock = 4 * 1024;
constexpr size_t kLargestBlock = kFirstBlock << 8;

// Full-size blocks of stores that died, kept for the next store: loading
// and saving one project after another then reuses the same memory instead
// of having the system map (and clear) it afresh each time.
class SpareBlocks {
 public:
  static SpareBlocks& Get() {
    static SpareBlocks* spare = new SpareBlocks;  // never destroyed: used until exit
    return *spare;
  }

  std::unique_ptr<char[]> Take() {
    std::lock_guard<std::mutex> lock(mutex_);
    if (blocks_.empty()) return nullptr;
    std::unique_ptr<char[]> block = std::move(blocks_.back());
    blocks_.pop_back();
    return block;
  }

  void Give(std::vector<std::unique_ptr<char[]>>* blocks) {
    std::lock_guard<std::mutex> lock(mutex_);
    for (auto& block : *blocks) {
      if (block && blocks_.size() < kMaxBlocks) blocks_.push_back(std::move(block));
    }
    blocks->clear();
  }

 private:
  static constexpr size_t kMaxBlocks = 64;  // 64 MiB
  std::mutex mutex_;
  std::vector<std::unique_ptr<char[]>> blocks_;
};

}  // namespace

// Only ASCII letters fold: names are bytes in the host's code page, and a
// locale-dependent fold would let the order (and so the file) vary by machine.
int CompareRegistryNames(std::string_view a, std::string_view b) {
  const size_t common = std::min(a.size(), b.size());
  size_t i = 0;
  while (i < common) {
    // Equal bytes fold equal: skip them eight at a time.
    if (common - i >= 8) {
      uint64_t x, y;
      std::memcpy(&x, a.data() + i, 8);
      std::memcpy(&y, b.data() + i, 8);
      if (x == y) {
        i += 8;
        continue;
      }
#if defined(__GNUC__) && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
      i += static_cast<size_t>(__builtin_ctzll(x ^ y)) / 8;
#endif
    }
    if (a[i] != b[i]) {
      unsigned char x = FoldCase(a[i]);
      unsigned char y = FoldCase(b[i]);
      if (x != y) return x < y ? -1 : 1;
    }
    ++i;
  }
  if (a.size() == b.size()) return 0;
  return a.size() < b.size() ? -1 : 1;
}

bool RegistryNamesEqual(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  size_t i = 0;
  for (; a.size() - i >= 8; i += 8) {
    if (std::memcmp(a.data() + i, b.data() + i, 8) != 0) break;
  }
  for (; i < a.size(); ++i) {
    if (a[i] != b[i] && FoldCase(a[i]) != FoldCase(b[i])) return false;
  }
  return true;
}

const RegistryNode* RegistryNode::FindChild(std::string_view child_name) const {
  size_t count = child_count();
  const RegistryNode* first = kids_.data;
  size_t at = LowerBoundOfName(first, count, child_name);
  if (at == count || !RegistryNamesEqual(first[at].name(), child_name)) return nullptr;
  return first + at;
}

size_t LowerBoundOfName(const RegistryNode* nodes, size_t count, std::string_view name) {
  size_t low = 0;
  while (count > 0) {
    size_t half = count / 2;
    if (CompareRegistryNames(nodes[low + half].name(), name) < 0) {
      low += half + 1;
      count -= half + 1;
    } else {
      count = half;
    }
  }
  return low;
}

std::vector<std::string_view> RegistryNode::list_views() const {
  std::vector<std::string_view> list;
  if (type_ != kRegStringList) return list;
  bool wide = list_form_ == kListWide;
  ByteReader in(std::string_view(bytes_.data, bytes_.size));
  // The count was taken from elements actually read.
  list.reserve(bytes_.count);
  for (uint32_t i = 0; i < bytes_.count; ++i) {
    list.push_back(in.ReadView(wide ? in.ReadFixed32() : in.ReadFixed16()));
  }
  return list;
}

std::vector<std::string> RegistryNode::list_value() const {
  std::vector<std::string_view> views = list_views();
  return std::vector<std::string>(views.begin(), views.end());
}

std::vector<uint32_t> RegistryNode::words_value() const {
  std::vector<uint32_t> words;
  if (type_ != kRegWords) return words;
  ByteReader in(std::string_view(bytes_.data, bytes_.size));
  words.reserve(bytes_.count);
  for (uint32_t i = 0; i < bytes_.count; ++i) words.push_back(in.ReadFixed32());
  return words;
}

void* RegistryArena::Allocate(size_t size) {
  constexpr size_t kAlign = alignof(RegistryNode);
  size = (size + kAlign - 1) & ~(kAlign - 1);
  if (size > left_) {
    size_t block = blocks_.size() < 8 ? kFirstBlock << blocks_.size() : kLargestBlock;
    std::unique_ptr<char[]> memory;
    if (block == kLargestBlock && size <= block) memory = SpareBlocks::Get().Take();
    if (!memory) {
      if (block < size) block = size;
      memory.reset(new char[block]);
      if (block == kLargestBlock) full_blocks_.push_back(blocks_.size());
    } else {
      full_blocks_.push_back(blocks_.size());
    }
    blocks_.push_back(std::move(memory));
    next_ = blocks_.back().get();
    left_ = block;
  }
  void* memory = next_;
  next_ += size;
  left_ -= size;
  used_ += size;
  return memory;
}

const char* RegistryArena::Copy(std::string_view bytes) {
  if (bytes.empty()) return "";
  char* copy = static_cast<char*>(Allocate(bytes.size()));
  CopyBytes(copy, bytes.data(), bytes.size());
  return copy;
}

RegistryArena::~RegistryArena() { Clear(); }

void RegistryArena::Clear() {
  std::vector<std::unique_ptr<char[]>> full;
  for (size_t index : full_blocks_) full.push_back(std::move(blocks_[index]));
  full_blocks_.clear();
  if (!full.empty()) SpareBlocks::Get().Give(&full);
  blocks_.clear();
  next_ = nullptr;
  left_ = 0;
  used_ = 0;
}

}  // namespace quillon
