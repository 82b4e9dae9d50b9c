// The file system as the library sees it.
//
// Everything the library does with files goes through this interface, so
// that tests run on an in-memory fake with controlled times (FakeFileSystem)
// and the up-to-date rules are tested without sleeping.
#ifndef QUILLON_PLATFORM_FILE_SYSTEM_H
#define QUILLON_PLATFORM_FILE_SYSTEM_H

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "platform/path.h"
#include "platform/status.h"

namespace quillon {

// Modification time in nanoseconds since an epoch; kMissingFile when the file
// does not exist. Newer means strictly greater.
using FileTime = int64_t;
inline constexpr FileTime kMissingFile = -1;

struct FileInfo {
  FileTime time = kMissingFile;  // kMissingFile: nothing there
  uint64_t size = 0;
  bool is_directory = false;
  bool exists() const { return time != kMissingFile; }
};

// A read-only view of a whole file. An empty file maps to size 0.
class MappedFile {
 public:
  virtual ~MappedFile() = default;
  virtual const char* data() const = 0;
  virtual size_t size() const = 0;
};

// A file being written. Close() reports errors that Write() could not.
class WritableFile {
 public:
  virtual ~WritableFile() = default;
  virtual Status Write(const char* data, size_t size) = 0;
  // Flushes to stable storage.
  virtual Status Sync() = 0;
  virtual Status Close() = 0;
};

struct DirEntry {
  std::string name;  // without directory
  bool is_directory = false;
};

class FileSystem {
 public:
  virtual ~FileSystem() = default;

  virtual FileInfo Stat(const std::string& path) = 0;
  // Null when the file cannot be opened or mapped.
  virtual std::unique_ptr<MappedFile> MapReadOnly(const std::string& path) = 0;
  virtual Status ReadFile(const std::string& path, std::string* contents) = 0;
  // Creates or truncates.
  virtual Status NewWritableFile(const std::string& path, std::unique_ptr<WritableFile>* file) = 0;
  // Succeeds when the file is gone afterwards, also when it never existed.
  virtual Status RemoveFile(const std::string& path) = 0;
  // Renames, replacing `to` atomically where the OS allows.
  virtual Status RenameFile(const std::string& from, const std::string& to) = 0;
  // Every entry but "." and "..", sorted by name (byte order). Links are
  // followed when telling directories from files.
  virtual Status ListDirectory(const std::string& path, std::vector<DirEntry>* entries) = 0;
  // Creates missing parents too; succeeds when the directory exists.
  virtual Status MakeDirectories(const std::string& path) = 0;
  // Sets the modification time; the OS may round it (Windows keeps 100 ns).
  virtual Status SetFileTime(const std::string& path, FileTime time) = 0;
  virtual std::string CurrentDirectory() = 0;

  // The OS's file system; lives as long as the process.
  static FileSystem& Default();

  // Conveniences built on the primitives.
  bool FileExists(const std::string& path);
  bool DirectoryExists(const std::string& path);
  Status WriteFile(const std::string& path, const std::string& contents);
  // Writes a temporary file beside `path` (its name plus a unique suffix),
  // syncs it, then renames it over `path`. On any failure `path` is left as
  // it was and the temporary removed.
  Status WriteFileAtomically(const std::string& path, const std::string& contents);
};

// Looks for `name` in `directory`, and when `recurse` is set in every
// directory below it (breadth first, entries in name order). On success
// `found` gets the full path.
bool FindFile(FileSystem& fs, const std::string& name, const std::string& directory, bool recurse,
              std::string* found);

// The search behind FindFile, with its two questions asked of the caller so
// that a cached view of the disk can answer them: `is_file(path)`, and
// `subdirectories(dir)`, the names of dir's subdirectories in name order.
// Stops descending 64 levels down, so a link loop cannot run it forever.
template <typename IsFile, typename Subdirectories>
bool FindFileBreadthFirst(const std::string& name, const std::string& directory, bool recurse,
                          IsFile is_file, Subdirectories subdirectories, std::string* found);

// "dir" + separator + "name"; just "name" for an empty directory.
std::string JoinPath(const std::string& directory, const std::string& name);

// Whether the OS may open a file by `name` (one path component) although no
// directory listing spells it so: on Windows short 8.3 names, trailing dots
// and blanks, alternate streams and case folding beyond ASCII; never on POSIX.
bool MayOpenUnlisted(std::string_view name);

template <typename IsFile, typename Subdirectories>
bool FindFileBreadthFirst(const std::string& name, const std::string& directory, bool recurse,
                          IsFile is_file, Subdirectories subdirectories, std::string* found) {
  constexpr int kMaxDepth = 64;
  std::deque<std::pair<std::string, int>> pending;  // directory, depth
  pending.emplace_back(directory, 0);
  while (!pending.empty()) {
    auto [dir, depth] = std::move(pending.front());
    pending.pop_front();
    const std::string candidate = JoinPath(dir, name);
    if (is_file(candidate)) {
      *found = NormalizePath(candidate);
      return true;
    }
    if (!recurse || depth >= kMaxDepth) continue;
    for (const std::string& sub : subdirectories(dir.empty() ? std::string(".") : dir)) {
      pending.emplace_back(JoinPath(dir, sub), depth + 1);
    }
  }
  return false;
}

}  // namespace quillon

#endif  // QUILLON_PLATFORM_FILE_SYSTEM_H
