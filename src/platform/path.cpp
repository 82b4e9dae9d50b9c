// Path and file-name helpers. Every function here is pure string work except
// ExpandToFullPath, which asks the file system for the current directory.
#include "platform/path.h"

#include <cstddef>
#include <vector>

#include "platform/file_system.h"

namespace quillon {
namespace {

bool IsDriveLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

char FoldAscii(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

// Position of the first separator at or after `from`, or the size.
size_t FindSeparator(std::string_view path, size_t from) {
  while (from < path.size() && !IsPathSeparator(path[from])) ++from;
  return from;
}

size_t SkipSeparators(std::string_view path, size_t from) {
  while (from < path.size() && IsPathSeparator(path[from])) ++from;
  return from;
}

// The part of a path in front of its components.
struct PathRoot {
  std::string prefix;  // "C:" or "\\srv\share" in native separators, or ""
  bool is_unc = false;
  bool rooted = false;  // a separator follows the prefix; always for UNC
  size_t rest = 0;      // offset of the first component
};

PathRoot ParseRoot(std::string_view path) {
  PathRoot root;
  size_t i = 0;
  if (path.size() >= 2 && IsDriveLetter(path[0]) && path[1] == ':') {
    root.prefix.assign(path.substr(0, 2));
    i = 2;
  } else if (path.size() >= 3 && IsPathSeparator(path[0]) && IsPathSeparator(path[1]) &&
             !IsPathSeparator(path[2])) {
    const size_t server_end = FindSeparator(path, 2);
    const size_t share_start = SkipSeparators(path, server_end);
    const size_t share_end = FindSeparator(path, share_start);
    root.prefix = {kPathSeparator, kPathSeparator};
    root.prefix.append(path.substr(2, server_end - 2));
    if (share_start < share_end) {
      root.prefix += kPathSeparator;
      root.prefix.append(path.substr(share_start, share_end - share_start));
    }
    root.is_unc = true;
    root.rooted = true;
    i = share_end;
  }
  if (i < path.size() && IsPathSeparator(path[i])) root.rooted = true;
  root.rest = SkipSeparators(path, i);
  return root;
}

// A path taken apart with "." and ".." folded.
struct FoldedPath {
  PathRoot root;
  std::vector<std::string_view> parts;
  bool trailing_separator = false;
};

FoldedPath Fold(std::string_view path) {
  FoldedPath folded;
  folded.root = ParseRoot(path);
  for (size_t i = folded.root.rest; i < path.size();) {
    const size_t end = FindSeparator(path, i);
    const std::string_view part = path.substr(i, end - i);
    if (part == "..") {
      if (!folded.parts.empty() && folded.parts.back() != "..") {
        folded.parts.pop_back();
      } else if (!folded.root.rooted) {
        folded.parts.push_back(part);  // a relative path may climb; a root may not
      }
    } else if (part != ".") {
      folded.parts.push_back(part);
    }
    i = SkipSeparators(path, end);
  }
  folded.trailing_separator = !path.empty() && IsPathSeparator(path.back());
  return folded;
}

std::string Join(const FoldedPath& folded) {
  std::string out = folded.root.prefix;
  const bool has_parts = !folded.parts.empty();
  if (folded.root.rooted && (!folded.root.is_unc || has_parts || folded.trailing_separator)) {
    out += kPathSeparator;
  }
  for (size_t i = 0; i < folded.parts.size(); ++i) {
    if (i > 0) out += kPathSeparator;
    out.append(folded.parts[i]);
  }
  if (has_parts && folded.trailing_separator) out += kPathSeparator;
  return out;
}

bool SamePart(std::string_view a, std::string_view b) {
  return kPathsIgnoreCase ? EqualsNoCase(a, b) : a == b;
}

// Drive letters name the same drive in either case, on every platform.
bool SamePrefix(const PathRoot& a, const PathRoot& b) {
  if (a.is_unc != b.is_unc) return false;
  return a.is_unc ? SamePart(a.prefix, b.prefix) : EqualsNoCase(a.prefix, b.prefix);
}

std::string ToNative(std::string_view path) {
  std::string out(path);
  for (char& c : out) {
    if (IsPathSeparator(c)) c = kPathSeparator;
  }
  return out;
}

// Offset of the file name: after the last separator or a drive's colon.
size_t NameStart(std::string_view path) {
  size_t start = path.size();
  while (start > 0 && !IsPathSeparator(path[start - 1])) --start;
  if (start == 0 && path.size() >= 2 && IsDriveLetter(path[0]) && path[1] == ':') start = 2;
  return start;
}

}  // namespace

std::string NameAndExtOfFile(std::string_view path) { return std::string(NameAndExtView(path)); }

std::string_view NameAndExtView(std::string_view path) { return path.substr(NameStart(path)); }

std::string NameOfFile(std::string_view path) {
  const std::string_view name = path.substr(NameStart(path));
  const size_t dot = name.rfind('.');
  return std::string(dot == std::string_view::npos ? name : name.substr(0, dot));
}

std::string ExtOfFile(std::string_view path) {
  const std::string_view name = path.substr(NameStart(path));
  const size_t dot = name.rfind('.');
  return dot == std::string_view::npos ? std::string() : std::string(name.substr(dot + 1));
}

std::string DirOfFile(std::string_view path) { return ToNative(path.substr(0, NameStart(path))); }

std::string DriveOfFile(std::string_view path) { return ParseRoot(path).prefix; }

std::string AddBackslash(std::string_view path) {
  std::string out(path);
  if (!out.empty() && !IsPathSeparator(out.back())) out += kPathSeparator;
  return out;
}

bool IsAbsolutePath(std::string_view path) {
  const PathRoot root = ParseRoot(path);
  if (root.is_unc) return true;
  if (!root.prefix.empty()) return root.rooted;
  return root.rooted && !kPathsIgnoreCase;
}

std::string NormalizePath(std::string_view path) {
  if (path.empty()) return {};
  std::string out = Join(Fold(path));
  return out.empty() ? "." : out;  // "a/.." is still a place
}

std::string AbsolutePath(std::string_view base, std::string_view path) {
  const PathRoot root = ParseRoot(path);
  if (root.is_unc || (!root.prefix.empty() && root.rooted)) return NormalizePath(path);
  if (root.rooted) return NormalizePath(DriveOfFile(base) + std::string(path));
  if (!root.prefix.empty()) {
    // "D:x": relative to base only when base lies on that drive.
    if (!EqualsNoCase(DriveOfFile(base), root.prefix)) {
      return NormalizePath(root.prefix + kPathSeparator + std::string(path.substr(2)));
    }
    path.remove_prefix(2);
  }
  if (base.empty() || path.empty()) return NormalizePath(base.empty() ? path : base);
  return NormalizePath(AddBackslash(base) + std::string(path));
}

std::string RelativePath(std::string_view base, std::string_view path) {
  if (!IsAbsolutePath(base) || !IsAbsolutePath(path)) return std::string(path);
  const FoldedPath from = Fold(base);
  const FoldedPath to = Fold(path);
  if (!SamePrefix(from.root, to.root)) return std::string(path);

  size_t common = 0;
  while (common < from.parts.size() && common < to.parts.size() &&
         SamePart(from.parts[common], to.parts[common])) {
    ++common;
  }
  FoldedPath relative;
  relative.parts.assign(from.parts.size() - common, "..");
  relative.parts.insert(relative.parts.end(), to.parts.begin() + common, to.parts.end());
  relative.trailing_separator = to.trailing_separator;
  std::string out = Join(relative);
  return out.empty() ? "." : out;
}

std::string ExpandToFullPath(std::string_view path) {
  return AbsolutePath(FileSystem::Default().CurrentDirectory(), path);
}

std::string Unix2dos(std::string_view path) {
  std::string out(path);
  for (char& c : out) {
    if (c == '/') c = '\\';
  }
  return out;
}

std::string RemoveMultipleBackslashes(std::string_view path) {
  std::string out;
  out.reserve(path.size());
  size_t i = 0;
  if (ParseRoot(path).is_unc) {
    out = {kPathSeparator, kPathSeparator};
    i = 2;
  }
  for (; i < path.size(); ++i) {
    if (!IsPathSeparator(path[i])) {
      out += path[i];
    } else if (out.empty() || out.back() != kPathSeparator) {
      out += kPathSeparator;
    }
  }
  return out;
}

std::string SetQuotesOnPath(std::string_view path) {
  const bool quoted = path.size() >= 2 && path.front() == '"' && path.back() == '"';
  if (quoted || path.find_first_of(" \t") == std::string_view::npos) return std::string(path);
  std::string out;
  out.reserve(path.size() + 2);
  out += '"';
  out.append(path);
  out += '"';
  return out;
}

int ComparePaths(std::string_view a, std::string_view b) {
  auto key = [](char c) {
    if (IsPathSeparator(c)) return static_cast<unsigned char>('/');
    return static_cast<unsigned char>(kPathsIgnoreCase ? FoldAscii(c) : c);
  };
  const size_t n = a.size() < b.size() ? a.size() : b.size();
  for (size_t i = 0; i < n; ++i) {
    const int diff = key(a[i]) - key(b[i]);
    if (diff != 0) return diff;
  }
  return a.size() < b.size() ? -1 : (a.size() > b.size() ? 1 : 0);
}

int CompareNoCase(std::string_view a, std::string_view b) {
  const size_t n = a.size() < b.size() ? a.size() : b.size();
  for (size_t i = 0; i < n; ++i) {
    const int diff =
        static_cast<unsigned char>(FoldAscii(a[i])) - static_cast<unsigned char>(FoldAscii(b[i]));
    if (diff != 0) return diff;
  }
  return a.size() < b.size() ? -1 : (a.size() > b.size() ? 1 : 0);
}

std::string_view TrimBlanks(std::string_view text) {
  const size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  const size_t last = text.find_last_not_of(" \t");
  return text.substr(first, last - first + 1);
}

bool ExtensionInList(std::string_view extension, std::string_view list) {
  if (extension.empty()) return false;
  while (true) {
    const size_t semicolon = list.find(';');
    if (EqualsNoCase(TrimBlanks(list.substr(0, semicolon)), extension)) return true;
    if (semicolon == std::string_view::npos) return false;
    list.remove_prefix(semicolon + 1);
  }
}

std::string MaskList(std::string_view extensions) {
  std::string masks;
  while (!extensions.empty()) {
    const size_t semicolon = extensions.find(';');
    const std::string_view ext = TrimBlanks(extensions.substr(0, semicolon));
    if (!ext.empty()) {
      if (!masks.empty()) masks += ';';
      masks += "*.";
      masks += ext;
    }
    if (semicolon == std::string_view::npos) break;
    extensions.remove_prefix(semicolon + 1);
  }
  return masks;
}

}  // namespace quillon
