// Entering and leaving sub-keys of the store while loading or saving: each
// sub-key is entered with the current key saved on the key stack and left by
// popping it, so that siblings land in the same parent.
#ifndef QUILLON_MODEL_KEY_SCOPE_H
#define QUILLON_MODEL_KEY_SCOPE_H

#include "model/option_set.h"
#include "model/registry/settings_registry.h"

namespace quillon {

// Runs `body` inside sub-key `name`. A reading open skips a missing key; a
// creating open makes it.
template <typename Body>
void InSubKey(CSettingsRegistry& store, const char* name, bool create, Body body) {
  if (!create) {
    if (store.EnterChildKey(name)) {
      body();
      store.PopKey();
    }
    return;
  }
  store.PushKey();
  if (store.OpenKey(name, create)) body();
  store.PopKey();
}

// Runs `body(index)` inside "name[0]", "name[1]", ... while they exist
// (reading), stopping at the first missing index.
template <typename Body>
void ForEachIndexedKey(CSettingsRegistry& store, const char* name, Body body) {
  for (int index = 0;; ++index) {
    bool opened = store.OpenIndexedKey(name, index, false, true);
    if (opened) body(index);
    store.PopKey();
    if (!opened) return;
  }
}

// Writes `body(index)` into "name[index]" for index 0..count-1, in the
// keys' name order, so that each new key goes at the end of its siblings.
template <typename Body>
void WriteIndexedKeys(CSettingsRegistry& store, const char* name, size_t count, Body body) {
  ForEachIndexInNameOrder(count, [&](size_t index) {
    if (store.OpenIndexedKey(name, static_cast<int>(index), true, true)) body(index);
    store.PopKey();
  });
}

inline void LoadOptionsKey(CSettingsRegistry& store, const char* name, COptionSet& set,
                           TransferPass pass) {
  InSubKey(store, name, false, [&] { set.Load(store, pass); });
}

inline void SaveOptionsKey(CSettingsRegistry& store, const char* name, const COptionSet& set,
                           TransferPass pass) {
  InSubKey(store, name, true, [&] { set.Save(store, pass); });
}

}  // namespace quillon

#endif  // QUILLON_MODEL_KEY_SCOPE_H
