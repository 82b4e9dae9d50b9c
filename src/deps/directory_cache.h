// File-existence answers for one dependency update, from directory listings.
//
// Resolving an include tries up to a dozen places, most of them empty.
// Each directory is listed once per update, so that a miss is a hash lookup
// instead of a system call. The answers are those a Stat would give: a hit
// is confirmed by one Stat per file, and names a listing cannot judge (dot
// components, relative paths, on Windows short names and the like) are asked
// of the file system directly. Lives for one update: files changing during
// it are not noticed.
#ifndef QUILLON_DEPS_DIRECTORY_CACHE_H
#define QUILLON_DEPS_DIRECTORY_CACHE_H

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/path_key.h"
#include "platform/file_system.h"

namespace quillon {

class DirectoryCache {
 public:
  // A name in a listed directory.
  struct Entry {
    bool is_directory = false;
    int8_t is_file = -1;  // -1 until a Stat confirmed it
  };
  struct Lookup {
    bool found = false;            // a file that is not a directory
    const Entry* entry = nullptr;  // its entry; null when only a Stat could tell
  };

  explicit DirectoryCache(FileSystem& fs) : fs_(fs) {}

  void Clear();
  // Whether `path` names an existing file that is not a directory.
  bool IsFile(const std::string& path);
  // IsFile(directory + name) for a normal absolute directory ending in a
  // separator and a name of plain components, walking the listings
  // component by component so that a miss builds no path.
  Lookup FindBelow(std::string_view directory, std::string_view name);
  // FindFile of the platform layer, answered from the cache.
  bool FindFile(const std::string& name, const std::string& directory, bool recurse,
                std::string* found);

 private:
  struct Listing {
    enum State { kListed, kMissing, kUnreadable } state = kMissing;
    std::unordered_map<std::string, Entry, PathHash, PathEqual> entries;
    std::vector<std::string> subdirectories;  // in name order
  };

  Listing& List(std::string_view directory);
  bool KnownMissing(std::string_view directory) const;
  bool Confirm(Entry& entry, const std::string& path);
  bool StatIsFile(const std::string& path);

  FileSystem& fs_;
  // By directory without trailing separators (a root keeps its own).
  std::unordered_map<std::string, Listing, PathHash, PathEqual> listings_;
  std::unordered_map<std::string, bool, StringHash, std::equal_to<>> stat_answers_;
  // The directory FindBelow saw last, which is usually asked again.
  std::string last_directory_;
  Listing* last_listing_ = nullptr;
};

}  // namespace quillon

#endif  // QUILLON_DEPS_DIRECTORY_CACHE_H
