// Finds the file an include directive names, in the fixed order: the
// including file's drive for a name with one leading backslash, an absolute
// name as it stands, the including file's directory, then the include search
// paths (with their subdirectories where asked).
//
// Per update, the search of the include paths is cached by spelling (it does
// not depend on the including file), a relative name is looked for beside
// the including file by walking cached directory listings, and the rarer
// forms are cached by (including directory, spelling). Call BeginUpdate
// before and EndUpdate after each update, so that no answer outlives the
// files it saw.
#ifndef QUILLON_DEPS_INCLUDE_RESOLVER_H
#define QUILLON_DEPS_INCLUDE_RESOLVER_H

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "deps/directory_cache.h"
#include "platform/path_key.h"
#include "deps/scan_request.h"
#include "platform/file_system.h"

namespace quillon {

class CDependencyNode;

// A file that includes resolve to.
struct IncludeTarget {
  std::string path;                 // normalised full path
  CDependencyNode* node = nullptr;  // the scanner's node for `path`, once it made one
};

class IncludeResolver {
 public:
  explicit IncludeResolver(FileSystem& fs) : fs_(fs), directories_(fs) {}

  void BeginUpdate(const std::vector<IncludeSearchPath>& include_paths);
  void EndUpdate();

  // Names resolved after this come from `file`.
  void SetIncludingFile(std::string_view file);
  // What `name` included from the current including file resolves to, or
  // null when it is found nowhere; valid until EndUpdate.
  IncludeTarget* Resolve(std::string_view name);

 private:
  using Answers = std::unordered_map<std::string, IncludeTarget*, StringHash, std::equal_to<>>;

  bool SplitBesideName(std::string_view name, std::string_view* base, std::string_view* rest) const;
  IncludeTarget* ResolveBeside(std::string_view name, std::string_view base, std::string_view rest);
  IncludeTarget* ResolveOther(std::string_view name);
  IncludeTarget* Search(std::string_view name);
  IncludeTarget* SearchIncludePaths(std::string_view name);
  IncludeTarget* Target(std::string path);
  std::string ExpandToFullPath(std::string_view name);

  FileSystem& fs_;
  DirectoryCache directories_;
  std::vector<IncludeSearchPath> include_paths_;
  std::unordered_map<std::string, IncludeTarget*, StringHash, std::equal_to<>>
      include_path_answers_;
  std::unordered_map<std::string, Answers, StringHash, std::equal_to<>> answers_by_directory_;
  std::unordered_map<const DirectoryCache::Entry*, IncludeTarget*> entry_targets_;
  // One target per file, so that every spelling of it shares the node.
  std::unordered_map<std::string_view, std::unique_ptr<IncludeTarget>, PathHash, PathEqual>
      targets_;
  std::optional<std::string> working_directory_;  // read once per update

  std::string current_directory_;
  size_t current_root_length_ = 0;  // 0: not a normal absolute directory
  Answers* current_answers_ = nullptr;
};

}  // namespace quillon

#endif  // QUILLON_DEPS_INCLUDE_RESOLVER_H
