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

// The records of `root` and everything below it, depth first.
void AppendRegistryTree(const RegistryNode& root, std::string* out);

// Parses a whole file (header included) into `root`, which must be a fresh
// key. Returns a RegistryError; on failure `root` is left partly filled and
// the caller discards it.
int ParseRegistryFile(std::string_view bytes, RegistryNode* root);

}  // namespace quillon

#endif  // QUILLON_MODEL_REGISTRY_REGISTRY_FORMAT_H
