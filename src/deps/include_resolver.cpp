#include "deps/include_resolver.h"

#include "platform/path.h"

namespace quillon {
namespace {

// A leading backslash roots a name; on POSIX so does the native slash.
bool IsRootChar(char c) { return c == '\\' || c == kPathSeparator; }

std::string_view TrimWhiteSpace(std::string_view text) {
  constexpr std::string_view kWhite = " \t\v\f";
  const size_t first = text.find_first_not_of(kWhite);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kWhite) - first + 1);
}

// Components that are neither empty nor dots, no root, no drive.
bool IsPlainRelative(std::string_view name) {
  if (name.empty() || IsPathSeparator(name.front()) || IsPathSeparator(name.back())) return false;
  if (name.size() >= 2 && name[1] == ':') return false;
  size_t start = 0;
  for (size_t i = 0; i <= name.size(); ++i) {
    if (i == name.size() || IsPathSeparator(name[i])) {
      const std::string_view part = name.substr(start, i - start);
      if (part.empty() || part == "." || part == "..") return false;
      start = i + 1;
    }
  }
  return true;
}

std::string JoinNative(std::string_view directory, std::string_view name) {
  std::string path;
  path.reserve(directory.size() + name.size());
  path = directory;
  for (char c : name) path += IsPathSeparator(c) ? kPathSeparator : c;
  return path;
}

}  // namespace

void IncludeResolver::BeginUpdate(const std::vector<IncludeSearchPath>& include_paths) {
  EndUpdate();
  include_paths_ = include_paths;
}

void IncludeResolver::EndUpdate() {
  directories_.Clear();
  include_path_answers_.clear();
  answers_by_directory_.clear();
  entry_targets_.clear();
  targets_.clear();
  working_directory_.reset();
  current_directory_.clear();
  current_root_length_ = 0;
  current_answers_ = nullptr;
}

void IncludeResolver::SetIncludingFile(std::string_view file) {
  current_directory_ = DirOfFile(file);
  const bool normal = !current_directory_.empty() && IsPathSeparator(current_directory_.back()) &&
                      IsAbsolutePath(current_directory_) &&
                      NormalizePath(current_directory_) == current_directory_;
  current_root_length_ = normal ? DriveOfFile(current_directory_).size() + 1 : 0;
  current_answers_ = nullptr;
}

IncludeTarget* IncludeResolver::Resolve(std::string_view name) {
  name = TrimWhiteSpace(name);
  std::string_view base, rest;
  if (SplitBesideName(name, &base, &rest)) return ResolveBeside(name, base, rest);
  return ResolveOther(name);
}

// A relative name made of leading "." and ".." and then plain components,
// from a normal directory: what AbsolutePath would make of it is `base`
// (the directory less one component per "..", never above its root) joined
// with `rest`.
bool IncludeResolver::SplitBesideName(std::string_view name, std::string_view* base,
                                      std::string_view* rest) const {
  if (current_root_length_ == 0) return false;
  size_t base_length = current_directory_.size();
  while (true) {
    if (name.starts_with("./") || name.starts_with(".\\")) {
      name.remove_prefix(2);
    } else if (name.starts_with("../") || name.starts_with("..\\")) {
      name.remove_prefix(3);
      if (base_length > current_root_length_) {
        base_length = current_directory_.find_last_of("/\\", base_length - 2) + 1;
      }
    } else {
      break;
    }
  }
  if (!IsPlainRelative(name)) return false;
  *base = std::string_view(current_directory_).substr(0, base_length);
  *rest = name;
  return true;
}

IncludeTarget* IncludeResolver::ResolveBeside(std::string_view name, std::string_view base,
                                              std::string_view rest) {
  const DirectoryCache::Lookup found = directories_.FindBelow(base, rest);
  if (!found.found) return SearchIncludePaths(name);
  if (found.entry == nullptr) return Target(JoinNative(base, rest));
  IncludeTarget*& target = entry_targets_[found.entry];
  if (target == nullptr) target = Target(JoinNative(base, rest));
  return target;
}

// Rooted, absolute and other unusual names, cached per directory.
IncludeTarget* IncludeResolver::ResolveOther(std::string_view name) {
  if (current_answers_ == nullptr) current_answers_ = &answers_by_directory_[current_directory_];
  auto it = current_answers_->find(name);
  if (it != current_answers_->end()) return it->second;
  IncludeTarget* target = Search(name);
  current_answers_->emplace(std::string(name), target);
  return target;
}

IncludeTarget* IncludeResolver::Search(std::string_view name) {
  if (name.empty()) return nullptr;
  if (IsRootChar(name[0]) && (name.size() == 1 || !IsRootChar(name[1]))) {
    const std::string on_drive = DriveOfFile(current_directory_) + std::string(name);
    if (directories_.IsFile(on_drive)) return Target(NormalizePath(on_drive));
  }
  if (name.size() >= 3 && (name[1] == ':' || IsRootChar(name[0]))) {
    std::string full = ExpandToFullPath(name);
    // An absolute name is looked for nowhere else.
    return directories_.IsFile(full) ? Target(std::move(full)) : nullptr;
  }
  std::string beside = AbsolutePath(current_directory_, name);
  if (directories_.IsFile(beside)) return Target(std::move(beside));
  return SearchIncludePaths(name);
}

IncludeTarget* IncludeResolver::SearchIncludePaths(std::string_view name) {
  if (auto known = include_path_answers_.find(name); known != include_path_answers_.end()) {
    return known->second;
  }
  auto it = include_path_answers_.emplace(std::string(name), nullptr).first;
  std::string found;
  for (const IncludeSearchPath& entry : include_paths_) {
    if (directories_.FindFile(it->first, entry.directory, entry.search_subdirs, &found)) {
      it->second = Target(std::move(found));
      break;
    }
  }
  return it->second;
}

IncludeTarget* IncludeResolver::Target(std::string path) {
  auto it = targets_.find(path);
  if (it != targets_.end()) return it->second.get();
  auto target = std::make_unique<IncludeTarget>();
  target->path = std::move(path);
  IncludeTarget* result = target.get();
  targets_.emplace(result->path, std::move(target));
  return result;
}

std::string IncludeResolver::ExpandToFullPath(std::string_view name) {
  if (!working_directory_) working_directory_ = fs_.CurrentDirectory();
  return AbsolutePath(*working_directory_, name);
}

}  // namespace quillon
