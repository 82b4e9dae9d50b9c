// An in-memory FileSystem for tests, with a clock that moves only when told
// to, records of what was touched, and failures on demand.
#ifndef QUILLON_TESTS_SUPPORT_FAKE_FILE_SYSTEM_H
#define QUILLON_TESTS_SUPPORT_FAKE_FILE_SYSTEM_H

#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "platform/file_system.h"
#include "platform/path.h"

namespace quillon {

// Paths are made absolute against CurrentDirectory() and normalised, so
// "a\b", "a/./b" and "x/../a/b" name one file; case counts except on
// Windows. Like a real disk, a file can only be created in an existing
// directory; Create() makes the parents for test setup. Every method may be
// called from any thread.
class FakeFileSystem : public FileSystem {
 public:
  FakeFileSystem();

  FileInfo Stat(const std::string& path) override;
  std::unique_ptr<MappedFile> MapReadOnly(const std::string& path) override;
  Status ReadFile(const std::string& path, std::string* contents) override;
  Status NewWritableFile(const std::string& path, std::unique_ptr<WritableFile>* file) override;
  Status RemoveFile(const std::string& path) override;
  Status RenameFile(const std::string& from, const std::string& to) override;
  Status ListDirectory(const std::string& path, std::vector<DirEntry>* entries) override;
  Status MakeDirectories(const std::string& path) override;
  // Also the way for a test to give a file any time it likes.
  Status SetFileTime(const std::string& path, FileTime time) override;
  std::string CurrentDirectory() override;

  // Writes `contents` stamped with Now(), creating the parent directories.
  void Create(const std::string& path, const std::string& contents);
  // The contents without recording a read; "" when there is no such file.
  std::string Contents(const std::string& path) const;

  // Every write stamps the file with Now(); only Tick() moves it (by one).
  FileTime Now() const;
  void Tick();
  void set_current_directory(const std::string& directory);

  // Paths as the callers passed them, in call order, failed calls included.
  std::vector<std::string> files_read() const;     // ReadFile
  std::vector<std::string> files_mapped() const;   // MapReadOnly
  std::vector<std::string> files_written() const;  // NewWritableFile
  std::vector<std::string> files_removed() const;  // RemoveFile
  void ClearRecords();

  // The n-th WritableFile::Write call from now on (1 = the next) stores half
  // of its data and fails.
  void FailNthWrite(int n);
  void set_fail_renames(bool fail);
  void set_fail_syncs(bool fail);

 private:
  class Writer;
  struct Node {
    bool is_directory = false;
    std::string contents;
    FileTime time = 0;
  };
  struct PathLess {
    bool operator()(const std::string& a, const std::string& b) const {
      return ComparePaths(a, b) < 0;
    }
  };
  using NodeMap = std::map<std::string, Node, PathLess>;

  std::string Key(const std::string& path) const;
  bool IsDirectoryLocked(const std::string& key) const;
  void MakeParentsLocked(const std::string& key);
  Status AppendFromWriter(const std::string& key, const std::string& path, const char* data,
                          size_t size);
  Status SyncFromWriter(const std::string& path);

  mutable std::mutex mutex_;
  NodeMap nodes_;
  FileTime now_ = 1;
  std::string current_directory_;
  std::vector<std::string> files_read_, files_mapped_, files_written_, files_removed_;
  int writes_until_failure_ = 0;  // 0: no failure planned
  bool fail_renames_ = false;
  bool fail_syncs_ = false;
};

}  // namespace quillon

#endif  // QUILLON_TESTS_SUPPORT_FAKE_FILE_SYSTEM_H
