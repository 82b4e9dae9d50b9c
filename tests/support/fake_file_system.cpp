#include "support/fake_file_system.h"

#include <algorithm>
#include <utility>

namespace quillon {
namespace {

Status Failure(const char* action, const std::string& path, const char* reason) {
  std::string message = std::string(action) + " '" + path + "': " + reason;
  if (std::string(reason) == "No such file or directory") return Status::NotFound(message);
  return Status::IoError(message);
}

// Length of the root ("/", "C:\", "\\srv\share") at the start of a
// normalised path.
size_t RootLength(const std::string& path) {
  size_t length = DriveOfFile(path).size();
  if (length < path.size() && IsPathSeparator(path[length])) ++length;
  return length;
}

std::string StripTrailingSeparator(std::string path) {
  while (path.size() > RootLength(path) && IsPathSeparator(path.back())) path.pop_back();
  return path;
}

bool IsRoot(const std::string& key) { return !key.empty() && key.size() == RootLength(key); }

// "" for a root.
std::string ParentOf(const std::string& key) {
  if (IsRoot(key)) return std::string();
  return StripTrailingSeparator(DirOfFile(key));
}

using Strings = std::vector<std::string>;

// A copy of `value` taken under `mutex`, and `change` run under it.
template <typename T>
T Copy(std::mutex& mutex, const T& value) {
  std::lock_guard<std::mutex> lock(mutex);
  return value;
}
template <typename F>
void Under(std::mutex& mutex, F change) {
  std::lock_guard<std::mutex> lock(mutex);
  change();
}

class FakeMappedFile : public MappedFile {
 public:
  explicit FakeMappedFile(std::string contents) : contents_(std::move(contents)) {}
  const char* data() const override { return contents_.data(); }
  size_t size() const override { return contents_.size(); }

 private:
  std::string contents_;
};

}  // namespace

class FakeFileSystem::Writer : public WritableFile {
 public:
  Writer(FakeFileSystem* fs, std::string key, std::string path)
      : fs_(fs), key_(std::move(key)), path_(std::move(path)) {}

  Status Write(const char* data, size_t size) override {
    if (closed_) return Failure("cannot write", path_, "file is closed");
    return fs_->AppendFromWriter(key_, path_, data, size);
  }
  Status Sync() override {
    if (closed_) return Failure("cannot sync", path_, "file is closed");
    return fs_->SyncFromWriter(path_);
  }
  Status Close() override {
    closed_ = true;
    return Status::OK();
  }

 private:
  FakeFileSystem* fs_;
  std::string key_;
  std::string path_;
  bool closed_ = false;
};

FakeFileSystem::FakeFileSystem() : current_directory_(kPathsIgnoreCase ? "C:\\" : "/") {}

std::string FakeFileSystem::Key(const std::string& path) const {
  if (path.empty()) return std::string();
  return StripTrailingSeparator(AbsolutePath(current_directory_, path));
}

bool FakeFileSystem::IsDirectoryLocked(const std::string& key) const {
  if (IsRoot(key)) return true;
  const auto it = nodes_.find(key);
  return it != nodes_.end() && it->second.is_directory;
}

void FakeFileSystem::MakeParentsLocked(const std::string& key) {
  for (std::string dir = ParentOf(key); !dir.empty() && !IsRoot(dir); dir = ParentOf(dir)) {
    auto [it, inserted] = nodes_.try_emplace(dir);
    if (!inserted && it->second.is_directory) break;
    it->second = Node{true, std::string(), now_};  // a file in the way becomes a directory
  }
}

FileInfo FakeFileSystem::Stat(const std::string& path) {
  std::lock_guard<std::mutex> lock(mutex_);
  const std::string key = Key(path);
  if (IsRoot(key)) return FileInfo{0, 0, true};
  const auto it = nodes_.find(key);
  if (it == nodes_.end()) return FileInfo();
  return FileInfo{it->second.time, it->second.contents.size(), it->second.is_directory};
}

std::unique_ptr<MappedFile> FakeFileSystem::MapReadOnly(const std::string& path) {
  std::lock_guard<std::mutex> lock(mutex_);
  files_mapped_.push_back(path);
  const auto it = nodes_.find(Key(path));
  if (it == nodes_.end() || it->second.is_directory) return nullptr;
  return std::make_unique<FakeMappedFile>(it->second.contents);
}

Status FakeFileSystem::ReadFile(const std::string& path, std::string* contents) {
  std::lock_guard<std::mutex> lock(mutex_);
  files_read_.push_back(path);
  contents->clear();
  const std::string key = Key(path);
  if (IsDirectoryLocked(key)) return Failure("cannot read", path, "Is a directory");
  const auto it = nodes_.find(key);
  if (it == nodes_.end()) return Failure("cannot open", path, "No such file or directory");
  *contents = it->second.contents;
  return Status::OK();
}

Status FakeFileSystem::NewWritableFile(const std::string& path,
                                       std::unique_ptr<WritableFile>* file) {
  std::lock_guard<std::mutex> lock(mutex_);
  files_written_.push_back(path);
  const std::string key = Key(path);
  if (IsDirectoryLocked(key)) return Failure("cannot create", path, "Is a directory");
  if (key.empty() || !IsDirectoryLocked(ParentOf(key))) {
    return Failure("cannot create", path, "No such file or directory");
  }
  nodes_[key] = Node{false, std::string(), now_};
  *file = std::make_unique<Writer>(this, key, path);
  return Status::OK();
}

Status FakeFileSystem::AppendFromWriter(const std::string& key, const std::string& path,
                                        const char* data, size_t size) {
  std::lock_guard<std::mutex> lock(mutex_);
  const auto it = nodes_.find(key);
  if (it == nodes_.end() || it->second.is_directory) {
    return Failure("cannot write", path, "file was removed while open");
  }
  const bool fail = writes_until_failure_ > 0 && --writes_until_failure_ == 0;
  it->second.contents.append(data, fail ? size / 2 : size);
  it->second.time = now_;
  return fail ? Failure("cannot write", path, "injected failure") : Status::OK();
}

Status FakeFileSystem::SyncFromWriter(const std::string& path) {
  if (Copy(mutex_, fail_syncs_)) return Failure("cannot sync", path, "injected failure");
  return Status::OK();
}

Status FakeFileSystem::RemoveFile(const std::string& path) {
  std::lock_guard<std::mutex> lock(mutex_);
  files_removed_.push_back(path);
  const std::string key = Key(path);
  if (IsDirectoryLocked(key)) return Failure("cannot delete", path, "Is a directory");
  nodes_.erase(key);
  return Status::OK();
}

Status FakeFileSystem::RenameFile(const std::string& from, const std::string& to) {
  std::lock_guard<std::mutex> lock(mutex_);
  const std::string what = from + "' to '" + to;
  if (fail_renames_) return Failure("cannot rename", what, "injected failure");
  const std::string to_key = Key(to);
  const auto it = nodes_.find(Key(from));
  if (it == nodes_.end()) return Failure("cannot rename", what, "No such file or directory");
  // Directories are not moved by the library; keep the fake simple.
  if (it->second.is_directory) return Failure("cannot rename", what, "Is a directory");
  if (IsDirectoryLocked(to_key)) return Failure("cannot rename", what, "Is a directory");
  if (to_key.empty() || !IsDirectoryLocked(ParentOf(to_key))) {
    return Failure("cannot rename", what, "No such file or directory");
  }
  Node node = std::move(it->second);  // a rename keeps the file's time
  nodes_.erase(it);
  nodes_.erase(to_key);
  nodes_.emplace(to_key, std::move(node));
  return Status::OK();
}

Status FakeFileSystem::ListDirectory(const std::string& path, std::vector<DirEntry>* entries) {
  std::lock_guard<std::mutex> lock(mutex_);
  entries->clear();
  const std::string key = Key(path);
  if (!IsDirectoryLocked(key)) {
    const bool is_file = nodes_.count(key) != 0;
    return Failure("cannot list", path, is_file ? "Not a directory" : "No such file or directory");
  }
  for (const auto& [child, node] : nodes_) {
    if (PathsEqual(ParentOf(child), key)) {
      entries->push_back({NameAndExtOfFile(child), node.is_directory});
    }
  }
  std::sort(entries->begin(), entries->end(),
            [](const DirEntry& a, const DirEntry& b) { return a.name < b.name; });
  return Status::OK();
}

Status FakeFileSystem::MakeDirectories(const std::string& path) {
  std::lock_guard<std::mutex> lock(mutex_);
  const std::string key = Key(path);
  std::vector<std::string> missing;
  for (std::string dir = key; !dir.empty() && !IsDirectoryLocked(dir); dir = ParentOf(dir)) {
    if (nodes_.count(dir) != 0) return Failure("cannot create directory", dir, "File exists");
    missing.push_back(dir);
  }
  for (const std::string& dir : missing) nodes_[dir] = Node{true, std::string(), now_};
  return Status::OK();
}

Status FakeFileSystem::SetFileTime(const std::string& path, FileTime time) {
  std::lock_guard<std::mutex> lock(mutex_);
  const auto it = nodes_.find(Key(path));
  if (it == nodes_.end()) {
    return Failure("cannot set the time of", path, "No such file or directory");
  }
  it->second.time = time;
  return Status::OK();
}

std::string FakeFileSystem::CurrentDirectory() { return Copy(mutex_, current_directory_); }

void FakeFileSystem::Create(const std::string& path, const std::string& contents) {
  std::lock_guard<std::mutex> lock(mutex_);
  const std::string key = Key(path);
  MakeParentsLocked(key);
  nodes_[key] = Node{false, contents, now_};
}

std::string FakeFileSystem::Contents(const std::string& path) const {
  std::lock_guard<std::mutex> lock(mutex_);
  const auto it = nodes_.find(Key(path));
  return it == nodes_.end() ? std::string() : it->second.contents;
}

FileTime FakeFileSystem::Now() const { return Copy(mutex_, now_); }
void FakeFileSystem::Tick() { Under(mutex_, [&] { ++now_; }); }
void FakeFileSystem::set_current_directory(const std::string& directory) {
  Under(mutex_, [&] { current_directory_ = NormalizePath(directory); });
}

Strings FakeFileSystem::files_read() const { return Copy(mutex_, files_read_); }
Strings FakeFileSystem::files_mapped() const { return Copy(mutex_, files_mapped_); }
Strings FakeFileSystem::files_written() const { return Copy(mutex_, files_written_); }
Strings FakeFileSystem::files_removed() const { return Copy(mutex_, files_removed_); }

void FakeFileSystem::ClearRecords() {
  Under(mutex_, [&] { files_read_ = files_mapped_ = files_written_ = files_removed_ = Strings(); });
}

void FakeFileSystem::FailNthWrite(int n) { Under(mutex_, [&] { writes_until_failure_ = n; }); }
void FakeFileSystem::set_fail_renames(bool fail) { Under(mutex_, [&] { fail_renames_ = fail; }); }
void FakeFileSystem::set_fail_syncs(bool fail) { Under(mutex_, [&] { fail_syncs_ = fail; }); }

}  // namespace quillon
