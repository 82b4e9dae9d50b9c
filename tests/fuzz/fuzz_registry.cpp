// Loads arbitrary bytes as a store file. Beyond the sanitizers, checks that
// a failed load leaves an empty tree, that every child is found where the
// sorted lookup expects it, and that saving and reloading changes nothing.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "model/registry/settings_registry.h"

namespace {

using quillon::RegistryNode;

void CheckLookups(const RegistryNode& root) {
  std::vector<const RegistryNode*> pending = {&root};
  while (!pending.empty()) {
    const RegistryNode* key = pending.back();
    pending.pop_back();
    for (size_t i = 0; i < key->child_count(); ++i) {
      const RegistryNode* child = &key->child(i);
      if (key->FindChild(child->name()) != child) __builtin_trap();
      pending.push_back(child);
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  quillon::MemoryByteStream input(std::string(reinterpret_cast<const char*>(data), size));
  quillon::CSettingsRegistry store(&input, false);
  if (store.LastError() != quillon::kRegOK && store.root().child_count() != 0) __builtin_trap();
  CheckLookups(store.root());

  std::string saved = store.Serialize();
  quillon::MemoryByteStream reread(saved);
  quillon::CSettingsRegistry again(&reread, false);
  if (again.LastError() != quillon::kRegOK || again.Serialize() != saved) __builtin_trap();
  return 0;
}
