// qpm store dump: every node, its type, name and value, in stored order.
#include <gmock/gmock.h>

#include "model/registry/settings_registry.h"
#include "qpm_fixture.h"

namespace quillon::qpm {
namespace {

// A store holding every value type, written by the store itself.
std::string EveryTypeStore() {
  MemoryByteStream stream;
  {
    CSettingsRegistry store(&stream, true);
    store.WriteInt("Number", -7);
    store.OpenKey("Outer\\Inner", true);
    store.WriteString("Text", std::string("say \"hi\"\n\t\\ \x01\xe9", 14));
    store.WriteStringList("List", {"a", ""});
    store.WriteBuffer("Blob", std::string("\x00\x7f\xff", 3));
    store.WriteWords("Words", {1, 4294967295u});
    store.WriteInt64("Wide", 1, 2);
    store.OpenKeyFromRoot("Outer", false);
    store.WriteString("alpha", "first");
    store.WriteStringList("Empty", {});
  }
  return stream.contents();
}

TEST_F(QpmTest, StoreDumpPrintsEveryNodeInStoredOrder) {
  Write(dir_ / "s.bin", EveryTypeStore());
  EXPECT_EQ(Ok({"store", "dump", "s.bin"}),
            "key $\n"
            "  int Number -7\n"
            "  key Outer\n"
            "    string alpha \"first\"\n"
            "    list Empty []\n"
            "    key Inner\n"
            "      buffer Blob <00 7f ff>\n"
            "      list List [\"a\", \"\"]\n"
            "      string Text \"say \\\"hi\\\"\\n\\t\\\\ \\x01\\xe9\"\n"
            "      int64 Wide 1 2\n"
            "      words Words [1, 4294967295]\n");
}

}  // namespace
}  // namespace quillon::qpm
