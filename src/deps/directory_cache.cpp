#include "deps/directory_cache.h"

#include <algorithm>
#include <utility>

#include "platform/path.h"

namespace quillon {
namespace {

// With "." or "..", the OS walks the path and may answer differently from
// the folded text (a missing or linked directory on the way).
bool HasDotComponent(std::string_view path) {
  size_t start = 0;
  for (size_t i = 0; i <= path.size(); ++i) {
    if (i == path.size() || IsPathSeparator(path[i])) {
      const std::string_view part = path.substr(start, i - start);
      if (part == "." || part == "..") return true;
      start = i + 1;
    }
  }
  return false;
}

// The directory as listings are keyed and listed: without its trailing
// separator unless it is a root ("/", "C:\\").
std::string_view ListingName(std::string_view directory) {
  const size_t n = directory.size();
  if (n > 1 && IsPathSeparator(directory[n - 1]) && !IsPathSeparator(directory[n - 2]) &&
      directory[n - 2] != ':') {
    directory.remove_suffix(1);
  }
  return directory;
}

bool IsDotName(std::string_view name) { return name == "." || name == ".."; }

}  // namespace

void DirectoryCache::Clear() {
  listings_.clear();
  stat_answers_.clear();
  last_directory_.clear();
  last_listing_ = nullptr;
}

bool DirectoryCache::IsFile(const std::string& path) {
  size_t name_start = path.size();
  while (name_start > 0 && !IsPathSeparator(path[name_start - 1])) --name_start;
  if (name_start == 0 || name_start == path.size() || !IsAbsolutePath(path) ||
      HasDotComponent(path)) {
    return StatIsFile(path);
  }
  const std::string_view name = std::string_view(path).substr(name_start);
  Listing& listing = List(std::string_view(path).substr(0, name_start));
  switch (listing.state) {
    case Listing::kMissing:
      return false;
    case Listing::kUnreadable:
      return StatIsFile(path);
    case Listing::kListed:
      break;
  }
  auto it = listing.entries.find(name);
  if (it == listing.entries.end()) return MayOpenUnlisted(name) && StatIsFile(path);
  return Confirm(it->second, path);
}

DirectoryCache::Lookup DirectoryCache::FindBelow(std::string_view directory,
                                                 std::string_view name) {
  std::string path;  // directory + name, made only when needed
  auto full_path = [&]() -> const std::string& {
    if (path.empty()) {
      path.reserve(directory.size() + name.size());
      path = directory;
      for (char c : name) path += IsPathSeparator(c) ? kPathSeparator : c;
    }
    return path;
  };
  auto by_stat = [&] { return Lookup{StatIsFile(full_path()), nullptr}; };

  if (last_listing_ == nullptr || last_directory_ != directory) {
    last_listing_ = &List(directory);
    last_directory_ = directory;
  }
  Listing* listing = last_listing_;
  for (size_t start = 0;;) {
    if (listing->state == Listing::kMissing) return {};
    if (listing->state == Listing::kUnreadable) return by_stat();
    size_t end = start;
    while (end < name.size() && !IsPathSeparator(name[end])) ++end;
    const std::string_view part = name.substr(start, end - start);
    auto it = listing->entries.find(part);
    if (it == listing->entries.end()) return MayOpenUnlisted(part) ? by_stat() : Lookup{};
    Entry& entry = it->second;
    if (end == name.size()) {
      return Confirm(entry, full_path()) ? Lookup{true, &entry} : Lookup{};
    }
    if (!entry.is_directory) return {};
    listing = &List(std::string_view(full_path()).substr(0, directory.size() + end));
    start = end + 1;
  }
}

// A listed file is confirmed once: the entry may be a dangling link.
bool DirectoryCache::Confirm(Entry& entry, const std::string& path) {
  if (entry.is_directory) return false;
  if (entry.is_file < 0) {
    const FileInfo info = fs_.Stat(path);
    entry.is_file = info.exists() && !info.is_directory;
  }
  return entry.is_file > 0;
}

bool DirectoryCache::StatIsFile(const std::string& path) {
  auto [it, inserted] = stat_answers_.try_emplace(path, false);
  if (inserted) {
    const FileInfo info = fs_.Stat(path);
    it->second = info.exists() && !info.is_directory;
  }
  return it->second;
}

// Whether a listing already made shows that `directory` cannot exist,
// which spares a failing ListDirectory for every place an include is not.
bool DirectoryCache::KnownMissing(std::string_view directory) const {
  size_t name_start = directory.size();
  while (name_start > 0 && !IsPathSeparator(directory[name_start - 1])) --name_start;
  const std::string_view name = directory.substr(name_start);
  if (name_start == 0 || name.empty() || IsDotName(name)) return false;
  auto parent = listings_.find(ListingName(directory.substr(0, name_start)));
  if (parent == listings_.end()) return false;
  const Listing& listing = parent->second;
  if (listing.state == Listing::kMissing) return true;
  if (listing.state != Listing::kListed || MayOpenUnlisted(name)) return false;
  auto entry = listing.entries.find(name);
  return entry == listing.entries.end() || !entry->second.is_directory;
}

DirectoryCache::Listing& DirectoryCache::List(std::string_view directory) {
  directory = ListingName(directory);
  if (auto it = listings_.find(directory); it != listings_.end()) return it->second;
  const bool known_missing = KnownMissing(directory);
  Listing& listing = listings_[std::string(directory)];
  if (known_missing) return listing;  // kMissing

  const std::string argument(directory);
  std::vector<DirEntry> entries;
  if (fs_.ListDirectory(argument, &entries).ok()) {
    listing.state = Listing::kListed;
    for (const DirEntry& entry : entries) {
      listing.entries.emplace(entry.name, Entry{entry.is_directory});
      if (entry.is_directory) listing.subdirectories.push_back(entry.name);
    }
    std::sort(listing.subdirectories.begin(), listing.subdirectories.end());
  } else {
    // Nothing lies below a missing directory or a file.
    const FileInfo info = fs_.Stat(argument);
    const bool unreadable_directory = info.exists() && info.is_directory;
    listing.state = unreadable_directory ? Listing::kUnreadable : Listing::kMissing;
  }
  return listing;
}

bool DirectoryCache::FindFile(const std::string& name, const std::string& directory, bool recurse,
                              std::string* found) {
  auto is_file = [this](const std::string& path) { return IsFile(path); };
  auto subdirectories = [this](const std::string& dir) -> const std::vector<std::string>& {
    return List(dir).subdirectories;
  };
  return FindFileBreadthFirst(name, directory, recurse, is_file, subdirectories, found);
}

}  // namespace quillon
