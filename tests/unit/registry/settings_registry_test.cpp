#include "model/registry/settings_registry.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace quillon {
namespace {

using namespace std::string_view_literals;
using Strings = std::vector<std::string>;
using Words = std::vector<uint32_t>;

// Store files spelled out byte by byte, independently of the writer under test.
class FileBytes {
 public:
  FileBytes& Header(int major = 0, int minor = 1) { return Raw("ZYVEKSLO").U8(major).U8(minor); }
  FileBytes& U8(int v) { return Raw(std::string(1, static_cast<char>(v))); }
  FileBytes& U16(uint32_t v) { return U8(v & 0xFF).U8((v >> 8) & 0xFF); }
  FileBytes& U32(uint32_t v) { return U16(v & 0xFFFF).U16(v >> 16); }
  FileBytes& Str(std::string_view s) { return U16(static_cast<uint32_t>(s.size())).Raw(s); }
  FileBytes& Raw(std::string_view s) { return bytes_.append(s), *this; }
  FileBytes& Record(int type, std::string_view name) { return U8(type).Str(name); }
  FileBytes& Key(std::string_view name, int count) { return U8(kRegKey).U16(count).Str(name); }
  FileBytes& Int(std::string_view name, uint32_t v) { return Record(kRegInt, name).U32(v); }
  FileBytes& String(std::string_view name, std::string_view v) {
    return Record(kRegString, name).Str(v);
  }
  const std::string& str() const { return bytes_; }

 private:
  std::string bytes_;
};

// A reading store over bytes in memory.
struct Loaded {
  explicit Loaded(std::string bytes) : stream(std::move(bytes)), store(&stream, false) {}
  int error() const { return store.LastError(); }
  MemoryByteStream stream;
  CSettingsRegistry store;
};

std::string Save(const std::function<void(CSettingsRegistry&)>& fill) {
  MemoryByteStream stream;
  {
    CSettingsRegistry store(&stream, true);
    fill(store);
    EXPECT_EQ(stream.contents(), FileBytes().Header().str()) << "the tree comes at the end";
  }
  return stream.contents();
}

Strings ChildNames(const RegistryNode& key) {
  Strings names;
  for (size_t i = 0; i < key.child_count(); ++i) names.emplace_back(key.child(i).name());
  return names;
}

void ExpectEmptyTree(const CSettingsRegistry& store) {
  EXPECT_EQ(store.root().name(), "$");
  EXPECT_EQ(store.root().child_count(), 0u);
  EXPECT_EQ(store.current_key(), &store.root());
}

// Every value type, in name order, so this is exactly what the writer emits.
std::string EveryTypeFile() {
  // clang-format off
  return FileBytes().Header().Key("$", 2).Key("Target[0]", 6)
      .Record(kRegBuffer, "Blob").U32(3).Raw("\0\1\xff"sv)
      .Int("Count", 0xFFFFFFFE)
      .Record(kRegStringList, "List").U32(3).Str("a").Str("").Str("c")
      .String("Name", "main")
      .Record(kRegInt64, "Time").U32(1).U32(0x80000000)
      .Record(kRegWords, "Words").U32(2).U32(7).U32(0xDEADBEEF)
      .String("TargetName", "Debug").str();
  // clang-format on
}

// The same tree through the API, deliberately out of name order.
void FillEveryType(CSettingsRegistry& store) {
  store.WriteString("TargetName", "Debug");
  ASSERT_TRUE(store.OpenKeyFromRoot("Target[0]", true));
  store.WriteWords("Words", {7, 0xDEADBEEF});
  store.WriteInt64("Time", 1, 0x80000000);
  store.WriteString("Name", "main");
  store.WriteStringList("List", {"a", "", "c"});
  store.WriteInt("Count", -2);
  store.WriteBuffer("Blob", "\0\1\xff"sv);
}

TEST(RegistryFormatTest, HandWrittenFileReadsAndWritesBackTheSameBytes) {
  Loaded file(EveryTypeFile());
  ASSERT_EQ(file.error(), kRegOK);
  // Names fold case; the other value types are read back in HugeCounts below.
  CSettingsRegistry& store = file.store;
  std::string text;
  EXPECT_TRUE(store.ReadString("targetname", &text) && text == "Debug");
  ASSERT_TRUE(store.OpenKeyFromRoot("TARGET[0]", false));
  int32_t count = 0;
  uint32_t first = 0, second = 0;
  EXPECT_TRUE(store.ReadInt("Count", &count) && store.ReadInt64("Time", &first, &second));
  EXPECT_TRUE(count == -2 && first == 1 && second == 0x80000000);
  EXPECT_EQ(store.Serialize(), EveryTypeFile());
  EXPECT_EQ(Save(FillEveryType), EveryTypeFile());
}

// Until saved, a store keeps what was written whole.
TEST(RegistryFormatTest, OversizedFieldsAreCutToTheirWidth) {
  std::string long_text(65536 + 10, 'x');
  long_text[0] = 'y';
  Loaded file(Save([&](CSettingsRegistry& store) {
    store.WriteString("Long", long_text);
    store.WriteStringList("List", {"a", long_text});
    Strings list;
    EXPECT_TRUE(store.ReadStringList("List", &list) && list == Strings({"a", long_text}));
    ASSERT_TRUE(store.OpenKeyFromRoot("Many", true));
    for (int i = 0; i < 65537; ++i) store.WriteInt("k" + std::to_string(100000 + i), i);
  }));
  ASSERT_EQ(file.error(), kRegOK);
  std::string text;
  EXPECT_TRUE(file.store.ReadString("Long", &text) && text == "yxxxxxxxxx");
  Strings list;
  EXPECT_TRUE(file.store.ReadStringList("List", &list) && list == Strings({"a", "yxxxxxxxxx"}));
  ASSERT_TRUE(file.store.OpenKeyFromRoot("Many", false));
  EXPECT_EQ(ChildNames(*file.store.current_key()), Strings{"k100000"});
}

// Values of a loaded file replaced by shorter, longer and other values.
TEST(RegistryFormatTest, ReplacedValuesOfALoadedFile) {
  Loaded file(FileBytes()
                  .Header()
                  .Key("$", 3)
                  .String("a", "first")
                  .String("b", "second")
                  .Record(kRegWords, "w")
                  .U32(1)
                  .U32(5)
                  .str());
  ASSERT_EQ(file.error(), kRegOK);
  CSettingsRegistry& store = file.store;
  EXPECT_TRUE(store.WriteString("a", "1st") && store.WriteString("B", "the second one"));
  EXPECT_TRUE(store.WriteWords("w", {6, 7}) && store.WriteInt("c", 3));
  std::string a, b;
  EXPECT_TRUE(store.ReadString("a", &a) && store.ReadString("b", &b));
  EXPECT_EQ(a + "|" + b, "1st|the second one");
  EXPECT_EQ(store.Serialize(), FileBytes()
                                   .Header()
                                   .Key("$", 4)
                                   .String("a", "1st")
                                   .String("b", "the second one")
                                   .Int("c", 3)
                                   .Record(kRegWords, "w")
                                   .U32(2)
                                   .U32(6)
                                   .U32(7)
                                   .str());
}

// Written in any order, names come back sorted (letters folded, bytes
// unsigned); a file's out-of-order siblings are sorted, later repeats dropped.
TEST(RegistryFormatTest, SiblingsAreSortedAndUnique) {
  Loaded saved(Save([](CSettingsRegistry& store) {
    for (const char* name : {"b", "TargetName", "\xe9", "Target[0]", "Z", "a_", "A"})
      store.WriteInt(name, 0);
  }));
  EXPECT_EQ(ChildNames(saved.store.root()),
            Strings({"A", "a_", "b", "Target[0]", "TargetName", "Z", "\xe9"}));

  FileBytes bytes;
  bytes.Header().Key("$", 4).String("b", "first b").String("Name", "first").Key("NAME", 1);
  Loaded file(bytes.Int("inside the dropped key", 1).String("B", "second b").str());
  ASSERT_EQ(file.error(), kRegOK);
  EXPECT_EQ(ChildNames(file.store.root()), Strings({"b", "Name"}));
  std::string text;
  EXPECT_TRUE(file.store.ReadString("B", &text) && text == "first b");
  EXPECT_TRUE(file.store.ReadString("name", &text) && text == "first");
}

TEST(RegistryReadTest, HeaderMagicAndVersion) {
  const std::string tree = FileBytes().Key("$", 1).Int("x", 5).str();
  const std::pair<std::string, int> cases[] = {
      {FileBytes().Header(1, 0).Raw(tree).str(), kRegOK},
      {FileBytes().Header(1, 1).Raw(tree).str(), kRegInvalidVersion},
      {FileBytes().Header(255, 255).Raw(tree).str(), kRegInvalidVersion},
      {FileBytes().Raw("ZYVEKSLX").U16(0x100).Raw(tree).str(), kRegInvalidFormat},
      {"", kRegInvalidFormat},
  };
  for (const auto& [bytes, error] : cases) {
    Loaded file(bytes);
    EXPECT_EQ(file.error(), error) << bytes;
    EXPECT_EQ(file.store.root().child_count(), error == kRegOK ? 1u : 0u);
    std::string text;
    file.store.GetErrorText(&text, true);  // the error's own text, then reset
    EXPECT_EQ(text, CSettingsRegistry::ErrorText(error));
    EXPECT_EQ(file.error(), kRegOK);
  }
  EXPECT_EQ(CSettingsRegistry(nullptr, false).LastError(), kRegErrorOpening);
  EXPECT_EQ(CSettingsRegistry(nullptr, true).LastError(), kRegPathNotValid);
}

TEST(RegistryReadTest, CutOrCorruptedFilesFailCleanly) {
  std::string full = Save([](CSettingsRegistry& store) {
    FillEveryType(store);
    store.OpenKeyFromRoot("", false);
    store.WriteString("Zeta", "tail");
  });
  const size_t last_record = full.size() - (1 + 2 + 4 + 2 + 4);
  for (size_t length = 0; length < full.size(); ++length) {
    SCOPED_TRACE(length);
    Loaded file(full.substr(0, length));
    // A cut goes unnoticed only where no type code is read after it: inside
    // the last record, or before the root's child count (which reads as 0).
    bool unnoticed = length == 11 || length > last_record;
    EXPECT_EQ(file.error(), length < 8  ? kRegInvalidFormat
                            : unnoticed ? kRegOK
                                        : kRegRecordsNotSupported);
    if (file.error() != kRegOK) ExpectEmptyTree(file.store);
  }

  // An undefined type code, of the root or deep inside, fails the whole load.
  const std::string good =
      FileBytes().Header().Key("$", 2).Int("a", 1).Key("k", 1).Int("b", 0).str();
  ASSERT_EQ(Loaded(good).error(), kRegOK);
  for (size_t at : {size_t{10}, good.size() - 8}) {
    for (int code : {0, 2, 11, 17, 19, 255}) {
      std::string bytes = good;
      bytes[at] = static_cast<char>(code);
      Loaded bad(bytes);
      EXPECT_EQ(bad.error(), kRegRecordsNotSupported) << at << " " << code;
      ExpectEmptyTree(bad.store);
    }
  }
}

TEST(RegistryReadTest, HugeCountsAreBoundedByTheInput) {
  FileBytes head;
  head.Header().Key("$", 1);
  Loaded list(
      FileBytes(head).Record(kRegStringList, "L").U32(~0u).Str("ab").Str("cd").U16(5).str());
  Strings strings;
  EXPECT_TRUE(list.store.ReadStringList("L", &strings) && strings == Strings({"ab", "cd", ""}));
  Loaded buffer(FileBytes(head).Record(kRegBuffer, "B").U32(~0u).Raw("xyz").str());
  std::string bytes;
  EXPECT_TRUE(buffer.store.ReadBuffer("B", &bytes) && bytes == "xyz");
  Loaded words(FileBytes(head).Record(kRegWords, "W").U32(~0u).U32(9).U16(0x1234).str());
  Words values;
  EXPECT_TRUE(words.store.ReadWords("W", &values) && values == Words({9, 0x1234}));
}

TEST(RegistryReadTest, NestingDepthIsBounded) {
  auto nested = [](int levels) {
    FileBytes bytes;
    bytes.Header();
    for (int i = 0; i < levels; ++i) bytes.Key("k", i + 1 < levels ? 1 : 0);
    return bytes.str();
  };
  EXPECT_EQ(Loaded(nested(kRegistryMaxDepth + 1)).error(), kRegOK);
  EXPECT_EQ(Loaded(nested(kRegistryMaxDepth + 2)).error(), kRegRecordsNotSupported);

  // A tree built in memory may go deeper; saving and freeing it must not recurse.
  std::string path = "k";
  for (int i = 0; i < 100000; ++i) path += "\\k";
  std::string bytes = Save([&](CSettingsRegistry& store) { store.OpenKeyFromRoot(path, true); });
  EXPECT_EQ(bytes.size(), 10 + 6 + 100001u * 6);
}

TEST(RegistryValuesTest, NameAlreadyUsedWithAnotherType) {
  CSettingsRegistry store(nullptr, true);
  EXPECT_TRUE(store.WriteString("Name", "one") && store.WriteString("NAME", "two"));
  EXPECT_EQ(ChildNames(store.root()), Strings{"Name"});
  EXPECT_FALSE(store.WriteInt("NAME", 3));
  EXPECT_EQ(store.LastError(), kRegTypeMismatch);
  int32_t number = 42;
  EXPECT_FALSE(store.ReadInt("name", &number));
  EXPECT_EQ(store.LastError(), kRegTypeMismatch);
  EXPECT_EQ(number, 42);
  EXPECT_FALSE(store.ReadInt("Missing", &number));
  EXPECT_EQ(store.LastError(), kRegKeyNotFound);

  EXPECT_FALSE(store.OpenKeyFromRoot("Name\\Sub", true));
  EXPECT_EQ(store.LastError(), kRegTypeMismatch);
  ASSERT_TRUE(store.OpenKeyFromRoot("Key", true));
  EXPECT_TRUE(store.WriteInt("v", 1));
  EXPECT_FALSE(store.OpenKeyFromRoot("Key\\v\\Deeper", true));
  EXPECT_FALSE(store.OpenKeyFromRoot("Name", false));
  EXPECT_EQ(store.LastError(), kRegPathNotFound);
  EXPECT_EQ(ChildNames(store.root()), Strings({"Key", "Name"}));
  EXPECT_EQ(ChildNames(*store.current_key()), Strings{"v"});
}

TEST(RegistryValuesTest, BooleansAreCaseSensitiveTexts) {
  CSettingsRegistry store(nullptr, true);
  store.WriteBool("t", true);
  store.WriteBool("n", false, true);
  store.WriteBool("y", true, true);
  store.WriteString("lower", "true");
  std::string t, n;
  EXPECT_TRUE(store.ReadString("t", &t) && store.ReadString("n", &n) && t == "True" && n == "No");
  for (auto [name, expected] :
       {std::pair{"t", true}, {"y", true}, {"n", false}, {"lower", false}}) {
    bool value = !expected;
    EXPECT_TRUE(store.ReadBool(name, &value) && value == expected) << name;
  }
}

// Adding siblings moves a key's range; the base and stacked keys follow.
TEST(RegistryKeysTest, KeysFollowTheirMovedSiblings) {
  CSettingsRegistry store(nullptr, true);
  ASSERT_TRUE(store.OpenKeyFromRoot("q", true));
  store.PushKey();
  ASSERT_TRUE(store.OpenKeyFromRoot("q\\z", true));  // the base
  EXPECT_TRUE(store.PopKey());
  for (const char* name : {"f", "a", "e", "b", "d", "c"}) {
    store.PushKey();
    ASSERT_TRUE(store.OpenKey(name, true));
    store.PopKey();
  }
  ASSERT_TRUE(store.OpenKeyFromBase("", false));
  EXPECT_EQ(store.current_key()->name(), "z");

  store.PushKey();
  ASSERT_TRUE(store.OpenKeyFromRoot("q", false));
  for (const char* name : {"y", "g", "x", "h", "w", "i"})
    ASSERT_TRUE(store.OpenKeyFromBase(name, true));
  EXPECT_TRUE(store.PopKey());
  EXPECT_TRUE(store.WriteInt("v", 1));
  Loaded file(store.Serialize());
  int32_t v = 0;
  EXPECT_TRUE(file.store.OpenKeyFromRoot("q\\z", false) && file.store.ReadInt("v", &v) && v == 1);
}

// Writing "x[i]" in this order only appends.
TEST(RegistryKeysTest, IndicesInNameOrder) {
  for (size_t count : {0, 1, 10, 11, 1234}) {
    std::vector<std::string> names;
    ForEachIndexInNameOrder(count,
                            [&](size_t i) { names.push_back("x[" + std::to_string(i) + "]"); });
    ASSERT_EQ(names.size(), count);
    for (size_t i = 1; i < names.size(); ++i)
      EXPECT_LT(CompareRegistryNames(names[i - 1], names[i]), 0) << names[i];
  }
}

// A reading open of "name[i]" (found through an index) finds what the path
// finds: names fold case, and the number must be spelled as written.
TEST(RegistryKeysTest, IndexedOpenFindsWhatThePathFinds) {
  Loaded file(Save([](CSettingsRegistry& store) {
    for (const char* path : {"K\\t[0]", "K\\T[01]", "K\\T[3]", "K\\T[3x]", "K\\U[1]"})
      store.OpenKeyFromRoot(path, true);
    store.OpenKeyFromRoot("K", false);
    store.WriteInt("T[2]", 2);
  }));
  CSettingsRegistry& store = file.store;
  ASSERT_TRUE(store.OpenKeyFromRoot("K", false));
  for (int i : {-1, 0, 1, 2, 3, 4, 7}) {
    bool by_index = store.OpenIndexedKey("T", i, false, true);
    std::pair<int, const RegistryNode*> indexed{store.LastError(), store.current_key()};
    store.PopKey();
    bool by_path = store.OpenKey("T[" + std::to_string(i) + "]", false);
    EXPECT_EQ(by_index, by_path) << i;
    EXPECT_EQ(indexed, std::make_pair(store.LastError(), store.current_key())) << i;
    EXPECT_EQ(by_index, i == 0 || i == 3) << i;
    ASSERT_TRUE(store.OpenKeyFromBase("", false));
  }
}

// Up to the first index that is missing or no key, in stored (name) order.
TEST(RegistryKeysTest, IndexedKeysVisitedInStoredOrder) {
  CSettingsRegistry store(nullptr, true);
  for (int i : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 13}) {
    ASSERT_TRUE(store.OpenKeyFromRoot("K\\F[" + std::to_string(i) + "]", true));
    store.WriteInt("i", i);
  }
  ASSERT_TRUE(store.OpenKeyFromRoot("K", false));
  store.WriteInt("F[12]", 12);
  size_t count = 0;
  std::vector<size_t> order;
  store.VisitIndexedKeys(
      "F", [&](size_t n) { count = n; },
      [&](size_t index) {
        int32_t i = -1;
        EXPECT_TRUE(store.ReadInt("i", &i) && i == static_cast<int32_t>(index));
        order.push_back(index);
      });
  EXPECT_EQ(count, 12u);
  EXPECT_EQ(order, (std::vector<size_t>{0, 10, 11, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
  EXPECT_EQ(store.current_key()->name(), "K");
}

TEST(RegistryKeysTest, StackBaseAndIndexedOpen) {
  CSettingsRegistry store(nullptr, true);
  ASSERT_TRUE(store.OpenKeyFromRoot("Targets", true));
  ASSERT_TRUE(store.OpenIndexedKey("Target", 0, true, true));
  EXPECT_EQ(store.current_key()->name(), "Target[0]");
  ASSERT_TRUE(store.OpenKey("Options\\Compiler", true));
  EXPECT_TRUE(store.PopKey());
  EXPECT_EQ(store.current_key()->name(), "Targets");
  EXPECT_TRUE(store.HasKey("target[0]"));

  // The key stays pushed even when the open fails.
  EXPECT_FALSE(store.OpenIndexedKey("Target", 1, false, true));
  EXPECT_EQ(store.LastError(), kRegPathNotFound);
  EXPECT_TRUE(store.PopKey());
  EXPECT_FALSE(store.PopKey());

  ASSERT_TRUE(store.OpenKeyFromBase("Target[0]\\Options", false));
  EXPECT_EQ(store.current_key()->name(), "Options");
  ASSERT_TRUE(store.OpenKeyFromBase("", false));
  EXPECT_EQ(store.current_key()->name(), "Targets");
  ASSERT_TRUE(store.OpenIndexedKey("T", -1, true, false));
  EXPECT_EQ(store.current_key()->name(), "T[-1]");
  ASSERT_TRUE(store.OpenKeyFromRoot("", false));
  EXPECT_EQ(store.current_key(), &store.root());
}

}  // namespace
}  // namespace quillon
