// Arbitrary bytes read as a NAME.qpj.deps file. A file is either refused,
// leaving the graph empty, or gives a graph whose every edge names a node
// of it, and that encodes to bytes which decode and encode again unchanged.
// A file of another project is always refused.
#include <cstddef>
#include <cstdint>
#include <string>

#include "deps/dependency_cache_file.h"
#include "model/registry/settings_registry.h"
#include "support/fake_file_system.h"

namespace {

using namespace quillon;

// The project and settings the bytes claim, so that the fuzzer gets past
// the checks of both and into the graph.
void Claimed(const std::string& bytes, std::string* project, std::string* settings) {
  MemoryByteStream stream(bytes);
  CSettingsRegistry store(&stream, false);
  if (!store.OpenKey("DependencyCache", false)) return;
  store.ReadString("Project", project);
  store.ReadString("Settings", settings);
}

void CheckEdges(const CDependencyScanner& scanner, const CDependencyNode* node) {
  for (const CDependencyNode* dep : node->dependencies()) {
    if (scanner.FindNode(dep->name()) != dep) __builtin_trap();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  std::string project, settings;
  Claimed(bytes, &project, &settings);
  FakeFileSystem fs;

  CDependencyScanner other(fs);
  if (DecodeDependencyCache(bytes, project + "x", settings, &other)) __builtin_trap();

  CDependencyScanner scanner(fs);
  if (!DecodeDependencyCache(bytes, project, settings, &scanner)) {
    if (scanner.node_count() != 0 || scanner.root_count() != 0) __builtin_trap();
    return 0;
  }
  for (size_t i = 0; i < scanner.root_count(); ++i) CheckEdges(scanner, scanner.RootAt(i));
  for (size_t i = 0; i < scanner.node_count(); ++i) CheckEdges(scanner, scanner.NodeAt(i));

  const std::string encoded = EncodeDependencyCache(scanner, project, settings);
  CDependencyScanner again(fs);
  if (!DecodeDependencyCache(encoded, project, settings, &again) ||
      EncodeDependencyCache(again, project, settings) != encoded) {
    __builtin_trap();
  }
  return 0;
}
