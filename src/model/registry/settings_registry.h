// CSettingsRegistry: a tree of case-insensitively named keys holding typed
// values, read from or written to a byte stream in one pass.
//
// File format (all numbers little-endian):
//   header   "ZYVEKSLO" then version bytes 0, 1 (major*256+minor <= 256 reads)
//   record   type:u8 [child count:u16 if key] name:u16-length+bytes value
//            then, for a key, its children's records in sorted order
//   values   12 int32 | 13 two u32 words | 14 string (u16 length + bytes)
//            15 string list (u32 count + strings) | 16 buffer (u32 length +
//            bytes) | 18 u32 words (u32 count + count*4 bytes)
// Names compare with ASCII letters folded to lower case, bytes unsigned.
// The reader takes a root record only if it is a key; siblings repeating an
// earlier name are dropped; a value cut short by the end of the file keeps
// the bytes that were there.
//
// A reading store parses everything when it is built; a writing store writes
// the header when built and the tree when destroyed. Each operation leaves a
// code in LastError(); ErrorText() gives its fixed message. A store keeps
// its whole tree in one arena (RegistryNode) and frees it at once.
#ifndef QUILLON_MODEL_REGISTRY_SETTINGS_REGISTRY_H
#define QUILLON_MODEL_REGISTRY_SETTINGS_REGISTRY_H

#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "model/registry/byte_stream.h"

namespace quillon {

enum RegistryType : uint8_t {
  kRegKey = 1,
  kRegInt = 12,
  kRegInt64 = 13,
  kRegString = 14,
  kRegStringList = 15,
  kRegBuffer = 16,
  kRegWords = 18,
};

enum RegistryError {
  kRegOK = 0,
  kRegPathNotValid = 1,
  kRegKeyNotFound = 2,
  kRegErrorOpening = 3,
  kRegErrorSaving = 4,
  kRegInvalidFormat = 5,
  kRegInvalidVersion = 6,
  kRegRecordsNotSupported = 7,
  kRegPathNotFound = 8,
  kRegTypeMismatch = 9,
};

// Deeper nesting than this is refused on reading as an unsupported record.
inline constexpr int kRegistryMaxDepth = 200;

// The one ordering of names in the store (and so of the bytes of every file).
int CompareRegistryNames(std::string_view a, std::string_view b);
// Whether two names are the same name (CompareRegistryNames(a, b) == 0).
bool RegistryNamesEqual(std::string_view a, std::string_view b);

// The same as RegistryNamesEqual, with the common case inline: a name asked
// for as the file spells it.
inline bool SameRegistryName(std::string_view a, std::string_view b) {
  const size_t size = a.size();
  if (size != b.size()) return false;
  const char* x = a.data();
  const char* y = b.data();
  bool same;
  if (size >= 8) {
    // Eight bytes at a time, the last eight overlapping the ones before.
    uint64_t u, v;
    same = true;
    for (size_t i = 0; same && i + 8 < size; i += 8) {
      std::memcpy(&u, x + i, 8);
      std::memcpy(&v, y + i, 8);
      same = u == v;
    }
    std::memcpy(&u, x + size - 8, 8);
    std::memcpy(&v, y + size - 8, 8);
    same = same && u == v;
  } else {
    same = true;
    for (size_t i = 0; i < size; ++i) same &= x[i] == y[i];
  }
  return same || RegistryNamesEqual(a, b);
}

// One node of the tree. Nodes live in their store's arena, a key's children
// as one contiguous range in name order (CompareRegistryNames). A loaded
// node's name and value are views into the file's bytes, which the store
// keeps; names and values written at run time are copied into the arena.
// Values are decoded when read. A node stays where it is until a child is
// added to its parent key (the range may move then) or its store dies.
class RegistryNode {
 public:
  std::string_view name() const { return {name_, name_size_}; }
  uint8_t type() const { return type_; }
  size_t child_count() const { return type_ == kRegKey ? kids_.count : 0; }
  const RegistryNode& child(size_t index) const { return kids_.data[index]; }
  // The child with that name, by binary search; null when there is none.
  const RegistryNode* FindChild(std::string_view child_name) const;

  // The value, decoded; only the accessors of the node's type are meaningful.
  int32_t int_value() const { return number_; }
  uint32_t int64_word(int which) const { return words64_[which != 0 ? 1 : 0]; }
  // kRegString and kRegBuffer.
  std::string_view string_value() const { return {bytes_.data, bytes_.size}; }
  std::vector<std::string> list_value() const;
  // The same elements as views into the store.
  std::vector<std::string_view> list_views() const;
  std::vector<uint32_t> words_value() const;

 private:
  friend class CSettingsRegistry;
  friend class RegistryCodec;

  struct Kids {
    RegistryNode* data;
    uint32_t count;
    uint32_t capacity;
  };
  // Strings and buffers: the bytes. Lists and words: their encoded elements
  // (RegistryCodec) and how many there are.
  struct Bytes {
    const char* data;
    uint32_t size;
    uint32_t count;
  };

  const char* name_ = nullptr;
  uint32_t name_size_ = 0;
  uint8_t type_ = kRegKey;
  uint8_t list_form_ = 0;  // kRegStringList: see RegistryCodec
  union {
    Kids kids_{nullptr, 0, 0};
    Bytes bytes_;
    int32_t number_;
    uint32_t words64_[2];
  };
};

// Memory for nodes and run-time bytes, freed all at once with its store.
class RegistryArena {
 public:
  RegistryArena() = default;
  // Full-size blocks go back to a process-wide spare list (up to 64 MiB)
  // for the next store.
  ~RegistryArena();
  RegistryArena(const RegistryArena&) = delete;
  RegistryArena& operator=(const RegistryArena&) = delete;

  // Uninitialised, aligned for any node.
  void* Allocate(size_t size);
  RegistryNode* AllocateNodes(size_t count) {
    return static_cast<RegistryNode*>(Allocate(count * sizeof(RegistryNode)));
  }
  const char* Copy(std::string_view bytes);
  void Clear();
  // Bytes handed out so far.
  size_t used() const { return used_; }

 private:
  std::vector<std::unique_ptr<char[]>> blocks_;
  // Which of blocks_ have the full size.
  std::vector<size_t> full_blocks_;
  char* next_ = nullptr;
  size_t left_ = 0;
  size_t used_ = 0;
};
// Calls visit(i) for every i below `count` in the name order of keys named
// "name[i]" (a longer number before its own prefix: "x[10]" < "x[1]"), so
// that writing them in this order only ever appends.
template <typename Visit>
void ForEachIndexInNameOrder(size_t count, Visit visit) {
  struct Walker {
    size_t count;
    Visit& visit;
    void Below(size_t prefix) {
      for (size_t digit = 0; digit < 10; ++digit) {
        size_t longer = prefix * 10 + digit;
        if (longer >= count || longer / 10 != prefix) break;
        Below(longer);
      }
      visit(prefix);
    }
  } walker{count, visit};
  if (count > 0) visit(size_t{0});
  for (size_t first = 1; first < 10 && first < count; ++first) walker.Below(first);
}

class CSettingsRegistry {
 public:
  // A writing store (storing) writes the header at once; a reading store
  // reads the whole tree. The outcome stands in LastError(). `stream` may be
  // null, which fails with error 1 (writing) or 3 (reading).
  CSettingsRegistry(ByteStream* stream, bool storing);
  // A writing store with a stream writes the tree here.
  ~CSettingsRegistry();
  CSettingsRegistry(const CSettingsRegistry&) = delete;
  CSettingsRegistry& operator=(const CSettingsRegistry&) = delete;

  bool IsStoring() const { return storing_; }
  int LastError() const { return last_error_; }
  // The message of the last error; with reset, the error becomes 0.
  void GetErrorText(std::string* out, bool reset);
  static const char* ErrorText(int code);

  // Path walking. `create` selects the writing form (missing keys are made).
  // An empty path selects the start key.
  bool OpenKeyFromRoot(std::string_view path, bool create);  // sets base and current
  bool OpenKeyFromBase(std::string_view path, bool create);  // sets current
  bool OpenKey(std::string_view path, bool create);          // from current; sets current
  // Opens "name[index]" from the current key; with push, the current key is
  // saved on the key stack first (and stays saved even if the open fails).
  bool OpenIndexedKey(std::string_view name, int index, bool create, bool push);
  // Reading "name[0]", "name[1]", ... up to the first index that is missing
  // or no key: count(n) is told how many there are, then each becomes the
  // current key in turn, in the order they are stored rather than by index,
  // and visit(index) runs there. `visit` reads; it leaves the key stack as
  // it found it. The current key is the same again afterwards. Unlike
  // OpenIndexedKey, `name` is one key's name, never a path.
  void VisitIndexedKeys(std::string_view name, const std::function<void(size_t)>& count,
                        const std::function<void(size_t)>& visit);
  // Reading: when the current key has a child key of that name (one name,
  // never a path), saves the current key on the key stack and makes the
  // child current. Otherwise nothing changes, the error included.
  bool EnterChildKey(std::string_view name);
  void PushKey();
  // Returns false when the stack is empty.
  bool PopKey();
  // True when the current key has a child key of that name (no error change).
  bool HasKey(std::string_view name) const;

  // Values in the current key. Writes create or replace (error 9 on another
  // type); reads fail with error 2 when the value is missing and leave `out`
  // alone.
  bool WriteInt(std::string_view name, int32_t value);
  bool ReadInt(std::string_view name, int32_t* out);
  bool WriteInt64(std::string_view name, uint32_t first, uint32_t second);
  bool ReadInt64(std::string_view name, uint32_t* first, uint32_t* second);
  bool WriteString(std::string_view name, std::string_view value);
  bool ReadString(std::string_view name, std::string* out);
  // Stored as "True"/"False", or "Yes"/"No" with yes_no.
  bool WriteBool(std::string_view name, bool value, bool yes_no = false);
  // True exactly for "Yes" or "True".
  bool ReadBool(std::string_view name, bool* out);
  bool WriteStringList(std::string_view name, const std::vector<std::string>& value);
  bool ReadStringList(std::string_view name, std::vector<std::string>* out);
  bool WriteBuffer(std::string_view name, std::string_view bytes);
  bool ReadBuffer(std::string_view name, std::string* out);
  bool WriteWords(std::string_view name, const std::vector<uint32_t>& words);
  bool ReadWords(std::string_view name, std::vector<uint32_t>* out);

  const RegistryNode& root() const { return root_; }
  const RegistryNode* current_key() const { return current_; }

  // The bytes a writing store would write for its tree, header included.
  std::string Serialize() const;

 private:
  bool Walk(RegistryNode* start, std::string_view path, bool create, RegistryNode** result);
  // The child of `key` with that name, or null; then, with `at`, *at is
  // where it would go in name order. Names are mostly asked for in name
  // order, so the sibling after the last one found is tried first, inline.
  RegistryNode* Lookup(const RegistryNode* key, std::string_view name,
                       size_t* at = nullptr) const {
    const size_t count = key->child_count();
    if (count != 0) {
      RegistryNode* first = key->kids_.data;
      RegistryNode* next = Within(hint_, first, count) ? hint_ + 1 : first;
      if (next != first + count && SameRegistryName(next->name(), name)) return hint_ = next;
    }
    return LookupSlow(key, name, at);
  }
  RegistryNode* LookupSlow(const RegistryNode* key, std::string_view name, size_t* at) const;
  static bool Within(const RegistryNode* node, const RegistryNode* first, size_t count) {
    auto place = reinterpret_cast<uintptr_t>(node);
    auto start = reinterpret_cast<uintptr_t>(first);
    return place - start < count * sizeof(RegistryNode);
  }
  RegistryNode* CreateKeys(RegistryNode* key, std::string_view path);
  // Adds a child whose name is not there yet, at its place `at`.
  RegistryNode* AddChild(RegistryNode* key, size_t at, std::string_view name, uint8_t type);
  // For a reading open of "name[index]" from the current key: whether the
  // index below can answer (then *child is the child, or null).
  bool IndexedChild(std::string_view name, int index, RegistryNode** child);
  // Points the base, current and stacked keys that were among `count` nodes
  // at `from` to where they are now: at `to`, with a gap made at `gap`.
  void FollowMove(const RegistryNode* from, size_t count, RegistryNode* to, size_t gap);
  RegistryNode* FindValue(std::string_view name, uint8_t type);
  RegistryNode* PrepareWrite(std::string_view name, uint8_t type);
  // A copy of a name given at run time, shared with nodes of the same name.
  std::string_view OwnName(std::string_view name);
  // Room for a new value of `size` bytes: the old one's when it fits.
  char* ValueRoom(RegistryNode* node, size_t size);
  void ResetTree();
  void ReadAll();
  // About the size of the tree's records: every record's bytes are a view
  // into the file read or were copied into the arena.
  size_t SizeHint() const { return file_.size() + arena_.used(); }

  bool storing_;
  // The file read; loaded names and values are views into it.
  std::string file_;
  RegistryArena arena_;
  RegistryNode root_;
  RegistryNode* base_;
  RegistryNode* current_;
  std::vector<RegistryNode*> key_stack_;
  // The child found or made last: the next name asked for is often its own
  // or its next sibling's.
  mutable RegistryNode* hint_ = nullptr;
  // Names copied lately, by a hash of their bytes: keys and values repeat
  // their names thousands of times ("FileName" in every file), and one copy
  // each keeps them few and at hand.
  std::string_view recent_names_[256];
  // The children of one key named "name[i]", by i (below the key's child
  // count): keys opened one index after another are found without a search.
  struct IndexedChildren {
    const RegistryNode* key = nullptr;
    std::string name;
    std::vector<RegistryNode*> by_index;
  } indexed_;
  int last_error_ = kRegOK;
  ByteStream* stream_;
};

}  // namespace quillon

#endif  // QUILLON_MODEL_REGISTRY_SETTINGS_REGISTRY_H
