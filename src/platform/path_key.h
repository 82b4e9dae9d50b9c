// Hashing and ordering of paths in agreement with ComparePaths: separators
// of either kind alike, ASCII case folded where the file system ignores
// case. PathHash and PathEqual let hash maps be searched with a string_view
// and without building a folded copy.
#ifndef QUILLON_PLATFORM_PATH_KEY_H
#define QUILLON_PLATFORM_PATH_KEY_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/path.h"

namespace quillon {

inline char PathKeyChar(char c) {
  if (IsPathSeparator(c)) return '/';
  if (kPathsIgnoreCase && c >= 'A' && c <= 'Z') return static_cast<char>(c - 'A' + 'a');
  return c;
}

// Keys order as ComparePaths does when compared as strings (bytes unsigned).
inline std::string PathKey(std::string_view path) {
  std::string key(path);
  for (char& c : key) c = PathKeyChar(c);
  return key;
}

struct PathHash {
  using is_transparent = void;
  size_t operator()(std::string_view path) const {
    uint64_t hash = 14695981039346656037ull;  // FNV-1a
    for (char c : path) {
      hash ^= static_cast<unsigned char>(PathKeyChar(c));
      hash *= 1099511628211ull;
    }
    return static_cast<size_t>(hash);
  }
};

struct PathEqual {
  using is_transparent = void;
  bool operator()(std::string_view a, std::string_view b) const {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i) {
      if (a[i] != b[i] && PathKeyChar(a[i]) != PathKeyChar(b[i])) return false;
    }
    return true;
  }
};

// Exact keys, searched with a string_view.
struct StringHash {
  using is_transparent = void;
  size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
};

}  // namespace quillon

#endif  // QUILLON_PLATFORM_PATH_KEY_H
