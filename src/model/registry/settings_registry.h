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
// code in LastError(); ErrorText() gives its fixed message.
#ifndef QUILLON_MODEL_REGISTRY_SETTINGS_REGISTRY_H
#define QUILLON_MODEL_REGISTRY_SETTINGS_REGISTRY_H

#include <cstdint>
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

struct RegistryNode {
  std::string name;
  uint8_t type = kRegKey;
  // Value by type; only the member of the node's type is meaningful.
  int32_t int_value = 0;
  uint32_t words64[2] = {0, 0};
  std::string string_value;             // kRegString, kRegBuffer
  std::vector<std::string> list_value;  // kRegStringList
  std::vector<uint32_t> words_value;    // kRegWords
  // Kept sorted by name (CompareRegistryNames); null until the first child.
  std::unique_ptr<std::vector<std::unique_ptr<RegistryNode>>> children;

  RegistryNode() = default;
  // Frees the subtree without recursion, so any depth is safe.
  ~RegistryNode();
  RegistryNode(const RegistryNode&) = delete;
  RegistryNode& operator=(const RegistryNode&) = delete;

  // The child with that name, or null.
  RegistryNode* FindChild(std::string_view child_name) const;
  // Inserts in order; refuses (returns null) a name that is already there.
  RegistryNode* InsertChild(std::unique_ptr<RegistryNode> child);
  size_t child_count() const { return children ? children->size() : 0; }
};

// The one ordering of names in the store (and so of the bytes of every file).
int CompareRegistryNames(std::string_view a, std::string_view b);

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

  const RegistryNode& root() const { return *root_; }
  const RegistryNode* current_key() const { return current_; }

  // The bytes a writing store would write for its tree, header included.
  std::string Serialize() const;

 private:
  bool Walk(RegistryNode* start, std::string_view path, bool create, RegistryNode** result);
  RegistryNode* FindValue(std::string_view name, uint8_t type);
  RegistryNode* PrepareWrite(std::string_view name, uint8_t type);
  void ReadAll();

  bool storing_;
  std::unique_ptr<RegistryNode> root_;
  RegistryNode* base_;
  RegistryNode* current_;
  std::vector<RegistryNode*> key_stack_;
  int last_error_ = kRegOK;
  ByteStream* stream_;
};

}  // namespace quillon

#endif  // QUILLON_MODEL_REGISTRY_SETTINGS_REGISTRY_H
