#include "deps/dependency_cache_file.h"

#include <optional>
#include <set>
#include <utility>

#include "model/registry/settings_registry.h"
#include "platform/path.h"
#include "platform/path_key.h"

namespace quillon {
namespace {

constexpr int32_t kCacheVersion = 1;
constexpr const char* kTopKey = "DependencyCache";

void EncodeSet(CSettingsRegistry& store, const char* key,
               const std::vector<DependencyGraphSnapshot::Node>& set) {
  std::vector<std::string> names;
  std::vector<uint32_t> times, marked, deps;
  names.reserve(set.size());
  times.reserve(set.size() * 2);
  for (size_t i = 0; i < set.size(); ++i) {
    const DependencyGraphSnapshot::Node& node = set[i];
    names.push_back(node.name);
    uint64_t time = static_cast<uint64_t>(node.time);
    times.push_back(static_cast<uint32_t>(time));
    times.push_back(static_cast<uint32_t>(time >> 32));
    if (node.no_dependencies) marked.push_back(static_cast<uint32_t>(i));
    deps.push_back(static_cast<uint32_t>(node.dependencies.size()));
    deps.insert(deps.end(), node.dependencies.begin(), node.dependencies.end());
  }
  store.PushKey();
  store.OpenKey(key, true);
  store.WriteStringList("Names", names);
  store.WriteWords("Times", times);
  store.WriteWords("Marked", marked);
  store.WriteWords("Deps", deps);
  store.PopKey();
}

// Reads one set; dependency indices must stay below `targets`, the size of
// the all-nodes set (none while reading that set itself: its own size).
bool DecodeSet(CSettingsRegistry& store, const char* key, std::optional<size_t> targets,
               std::vector<DependencyGraphSnapshot::Node>* set) {
  store.PushKey();
  bool opened = store.OpenKey(key, false);
  std::vector<std::string> own_names;
  std::vector<uint32_t> times, marked, deps;
  bool read = opened && store.ReadStringList("Names", &own_names) &&
              store.ReadWords("Times", &times) && store.ReadWords("Marked", &marked) &&
              store.ReadWords("Deps", &deps);
  store.PopKey();
  if (!read || times.size() != own_names.size() * 2) return false;
  const size_t limit = targets.value_or(own_names.size());
  set->resize(own_names.size());
  size_t cursor = 0;
  for (size_t i = 0; i < own_names.size(); ++i) {
    DependencyGraphSnapshot::Node& node = (*set)[i];
    node.name = std::move(own_names[i]);
    node.time = static_cast<FileTime>(static_cast<uint64_t>(times[2 * i]) |
                                      (static_cast<uint64_t>(times[2 * i + 1]) << 32));
    if (cursor >= deps.size()) return false;
    uint32_t count = deps[cursor++];
    if (count > deps.size() - cursor) return false;
    node.dependencies.reserve(count);
    for (uint32_t k = 0; k < count; ++k) {
      uint32_t index = deps[cursor++];
      if (index >= limit) return false;
      node.dependencies.push_back(index);
    }
  }
  for (uint32_t index : marked) {
    if (index >= set->size()) return false;
    (*set)[index].no_dependencies = true;
  }
  return cursor == deps.size();
}

}  // namespace

std::string ScanSettingsFingerprint(const ScanRequest& request) {
  std::string print;
  for (const IncludeSearchPath& path : request.include_paths) {
    print += path.directory;
    print += path.search_subdirs ? "|1;" : "|0;";
  }
  const KeywordIncludeRules& k = request.keywords;
  print += k.valid ? "V" : "v";
  print += k.req_blanks ? "R" : "r";
  print += k.allow_blanks ? "A" : "a";
  print += "\n" + k.keyword + "\n" + k.start + "\n" + k.end + "\n";
  // A file scanned in another style may have other includes; the style
  // follows from the extension, so adding a file of a known kind keeps the
  // cache usable.
  std::set<std::string> styles;
  for (const ScanSource& source : request.sources) {
    styles.insert(PathKey(ExtOfFile(source.path)) + "=" +
                  static_cast<char>('0' + static_cast<int>(source.style)));
  }
  for (const std::string& style : styles) print += style + ";";
  return print;
}

std::string EncodeDependencyCache(const CDependencyScanner& scanner, const std::string& project,
                                  const std::string& settings) {
  DependencyGraphSnapshot snapshot = scanner.Snapshot();
  CSettingsRegistry store(nullptr, true);
  store.OpenKey(kTopKey, true);
  store.WriteInt("Version", kCacheVersion);
  store.WriteString("Project", project);
  store.WriteString("Settings", settings);
  EncodeSet(store, "Nodes", snapshot.nodes);
  EncodeSet(store, "Roots", snapshot.roots);
  return store.Serialize();
}

bool DecodeDependencyCache(const std::string& bytes, const std::string& project,
                           const std::string& settings, CDependencyScanner* scanner) {
  MemoryByteStream stream(bytes);
  CSettingsRegistry store(&stream, false);
  if (store.LastError() != kRegOK || !store.OpenKey(kTopKey, false)) return false;
  int32_t version = 0;
  std::string stored_project, stored_settings;
  if (!store.ReadInt("Version", &version) || version != kCacheVersion ||
      !store.ReadString("Project", &stored_project) || stored_project != project ||
      !store.ReadString("Settings", &stored_settings) || stored_settings != settings) {
    return false;
  }
  DependencyGraphSnapshot snapshot;
  if (!DecodeSet(store, "Nodes", std::nullopt, &snapshot.nodes)) return false;
  if (!DecodeSet(store, "Roots", snapshot.nodes.size(), &snapshot.roots)) return false;
  return scanner->Restore(snapshot);
}

}  // namespace quillon
