// The conveniences of FileSystem, built only on its primitives so that the
// real file systems and the test fake share them.
#include "platform/file_system.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <deque>
#include <utility>

#include "platform/path.h"

namespace quillon {
namespace {

// FindFile does not follow links forever: a tree deeper than this is cut off.

// Beside the target, so that the rename stays on one volume; the clock and a
// counter keep two writers of the same target apart.
std::string TempNameBeside(const std::string& path) {
  static std::atomic<unsigned> counter{0};
  const auto ticks = std::chrono::steady_clock::now().time_since_epoch().count();
  char suffix[48];
  std::snprintf(suffix, sizeof suffix, ".~%llx-%x.tmp", static_cast<unsigned long long>(ticks),
                counter.fetch_add(1));
  return path + suffix;
}

Status WriteAndClose(FileSystem& fs, const std::string& path, const std::string& contents,
                     bool sync) {
  std::unique_ptr<WritableFile> file;
  Status status = fs.NewWritableFile(path, &file);
  if (!status.ok()) return status;
  status = file->Write(contents.data(), contents.size());
  if (status.ok() && sync) status = file->Sync();
  Status closed = file->Close();
  return status.ok() ? closed : status;
}

}  // namespace

std::string JoinPath(const std::string& directory, const std::string& name) {
  return directory.empty() ? name : AddBackslash(directory) + name;
}

bool FileSystem::FileExists(const std::string& path) {
  const FileInfo info = Stat(path);
  return info.exists() && !info.is_directory;
}

bool FileSystem::DirectoryExists(const std::string& path) {
  const FileInfo info = Stat(path);
  return info.exists() && info.is_directory;
}

Status FileSystem::WriteFile(const std::string& path, const std::string& contents) {
  return WriteAndClose(*this, path, contents, /*sync=*/false);
}

Status FileSystem::WriteFileAtomically(const std::string& path, const std::string& contents) {
  const std::string temp = TempNameBeside(path);
  Status status = WriteAndClose(*this, temp, contents, /*sync=*/true);
  if (status.ok()) status = RenameFile(temp, path);
  if (!status.ok()) RemoveFile(temp);
  return status;
}

bool FindFile(FileSystem& fs, const std::string& name, const std::string& directory, bool recurse,
              std::string* found) {
  auto is_file = [&](const std::string& path) { return fs.FileExists(path); };
  auto subdirectories = [&](const std::string& dir) {
    std::vector<DirEntry> entries;
    std::vector<std::string> names;
    if (!fs.ListDirectory(dir, &entries).ok()) return names;
    for (const DirEntry& entry : entries) {
      if (entry.is_directory) names.push_back(entry.name);
    }
    std::sort(names.begin(), names.end());
    return names;
  };
  return FindFileBreadthFirst(name, directory, recurse, is_file, subdirectories, found);
}

}  // namespace quillon
