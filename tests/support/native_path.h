// Tests write paths with '/'; these give the platform's form.
#ifndef QUILLON_TESTS_SUPPORT_NATIVE_PATH_H
#define QUILLON_TESTS_SUPPORT_NATIVE_PATH_H

#include <string>
#include <string_view>

#include "platform/path.h"

namespace quillon {

// Separators turned into the native one, nothing else.
inline std::string Native(std::string_view path) {
  std::string out(path);
  for (char& c : out) {
    if (c == '/') c = kPathSeparator;
  }
  return out;
}

// "/p/x" as a full native path: on drive C: on Windows.
inline std::string Rooted(std::string_view absolute) {
#ifdef _WIN32
  return "C:" + Native(absolute);
#else
  return Native(absolute);
#endif
}

}  // namespace quillon

#endif  // QUILLON_TESTS_SUPPORT_NATIVE_PATH_H
