// Path and file-name helpers, pure string work.
//
// Both '/' and '\' separate components on every platform; results use the
// native separator (kPathSeparator). Drive letters ("C:") and UNC roots
// ("\\server\share") are recognised on every platform so that stored Windows
// names survive a round trip through a POSIX host. Comparisons of whole paths
// ignore case on Windows only.
#ifndef QUILLON_PLATFORM_PATH_H
#define QUILLON_PLATFORM_PATH_H

#include <string>
#include <string_view>

namespace quillon {

#ifdef _WIN32
inline constexpr char kPathSeparator = '\\';
inline constexpr bool kPathsIgnoreCase = true;
#else
inline constexpr char kPathSeparator = '/';
inline constexpr bool kPathsIgnoreCase = false;
#endif

inline bool IsPathSeparator(char c) { return c == '/' || c == '\\'; }

// "C:\src\main.c" -> "main"
std::string NameOfFile(std::string_view path);
// "C:\src\main.c" -> "main.c"
std::string NameAndExtOfFile(std::string_view path);
// The same, as a view into `path`.
std::string_view NameAndExtView(std::string_view path);
// "C:\src\main.c" -> "c"; "" when the name has no dot.
std::string ExtOfFile(std::string_view path);
// "C:\src\main.c" -> "C:\src\" (keeps the trailing separator); "C:main.c" ->
// "C:"; "" when there is no directory part.
std::string DirOfFile(std::string_view path);
// "C:\src\main.c" -> "C:"; "\\srv\share\x" -> "\\srv\share"; "" otherwise.
std::string DriveOfFile(std::string_view path);
// Appends the native separator unless the path is empty or already ends in
// either separator.
std::string AddBackslash(std::string_view path);

// True for "C:\x", "\\srv\share", and on POSIX "/x". "\x" is rooted but
// drive-relative: true only on POSIX.
bool IsAbsolutePath(std::string_view path);

// Folds "." and "..", turns every separator into the native one and
// collapses repeated separators (except a UNC root's two). ".." never climbs
// above a root, drive root or UNC share; leading ".." of a relative path are
// kept. A trailing separator is kept; a relative path that folds away to
// nothing becomes ".".
std::string NormalizePath(std::string_view path);
// `path` made absolute against directory `base` and normalised; an absolute
// `path` is only normalised. A path rooted without a drive ("\x") takes
// base's drive.
std::string AbsolutePath(std::string_view base, std::string_view path);
// `path` relative to directory `base` ("..\inc\a.h"); `path` unchanged when
// the two lie on different drives or one of them is relative.
std::string RelativePath(std::string_view base, std::string_view path);
// `path` made absolute against the process's current directory.
std::string ExpandToFullPath(std::string_view path);

// Forward slashes to backslashes.
std::string Unix2dos(std::string_view path);
// Runs of separators folded to one native separator, except a leading UNC
// pair.
std::string RemoveMultipleBackslashes(std::string_view path);
// Double quotes around a path holding a blank, unless already quoted.
std::string SetQuotesOnPath(std::string_view path);

// Whole-path comparison, case-insensitive on Windows only; separators of
// either kind compare equal.
int ComparePaths(std::string_view a, std::string_view b);
inline bool PathsEqual(std::string_view a, std::string_view b) { return ComparePaths(a, b) == 0; }

// ASCII case folding for names (targets, groups, store keys): letters folded
// to lower case, bytes compared unsigned.
int CompareNoCase(std::string_view a, std::string_view b);
inline bool EqualsNoCase(std::string_view a, std::string_view b) {
  return CompareNoCase(a, b) == 0;
}

// Whether `extension` (without dot) is one of the ";"-separated entries of
// `list` ("C;CPP"), ignoring case; an empty extension never is.
bool ExtensionInList(std::string_view extension, std::string_view list);

// "*.c;*.cpp" from the extension list "C;CPP" (blank entries left out).
std::string MaskList(std::string_view extensions);

// Blanks (space and tab) cut at both ends.
std::string_view TrimBlanks(std::string_view text);

}  // namespace quillon

#endif  // QUILLON_PLATFORM_PATH_H
