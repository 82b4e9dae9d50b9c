// FileSystem on POSIX: stat, open/read/write, mmap, rename, opendir. Stored
// names may use '\' as separator, so every path is converted before it
// reaches the OS.
#include <dirent.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

#include "platform/file_system.h"
#include "platform/path.h"

namespace quillon {
namespace {

constexpr int64_t kNanosPerSecond = 1000000000;

std::string NativePath(const std::string& path) {
  std::string out = path;
  std::replace(out.begin(), out.end(), '\\', '/');
  return out;
}

// "cannot open 'x': No such file or directory"
Status PosixError(const char* action, const std::string& path, int error) {
  std::string message =
      std::string(action) + " '" + path + "': " + std::generic_category().message(error);
  if (error == ENOENT || error == ENOTDIR) return Status::NotFound(std::move(message));
  return Status::IoError(std::move(message));
}

int OpenRetrying(const std::string& path, int flags, mode_t mode = 0) {
  int fd;
  do {
    fd = ::open(path.c_str(), flags | O_CLOEXEC, mode);
  } while (fd < 0 && errno == EINTR);
  return fd;
}

class PosixMappedFile : public MappedFile {
 public:
  PosixMappedFile(void* base, size_t size) : base_(base), size_(size) {}
  ~PosixMappedFile() override {
    if (size_ > 0) ::munmap(base_, size_);
  }
  const char* data() const override { return size_ > 0 ? static_cast<const char*>(base_) : ""; }
  size_t size() const override { return size_; }

 private:
  void* base_;
  size_t size_;
};

class PosixWritableFile : public WritableFile {
 public:
  PosixWritableFile(std::string path, int fd) : path_(std::move(path)), fd_(fd) {}
  ~PosixWritableFile() override {
    if (fd_ >= 0) ::close(fd_);
  }

  Status Write(const char* data, size_t size) override {
    if (fd_ < 0) return PosixError("cannot write", path_, EBADF);
    while (size > 0) {
      const ssize_t written = ::write(fd_, data, size);
      if (written < 0) {
        if (errno == EINTR) continue;
        return PosixError("cannot write", path_, errno);
      }
      data += written;
      size -= static_cast<size_t>(written);
    }
    return Status::OK();
  }

  Status Sync() override {
    if (fd_ < 0) return PosixError("cannot sync", path_, EBADF);
    if (::fsync(fd_) != 0) return PosixError("cannot sync", path_, errno);
    return Status::OK();
  }

  Status Close() override {
    if (fd_ < 0) return Status::OK();
    const int result = ::close(fd_);
    fd_ = -1;
    // After close() the descriptor is gone even on EINTR; do not retry.
    if (result != 0 && errno != EINTR) return PosixError("cannot close", path_, errno);
    return Status::OK();
  }

 private:
  std::string path_;
  int fd_;
};

class PosixFileSystem : public FileSystem {
 public:
  FileInfo Stat(const std::string& path) override {
    FileInfo info;
    struct stat st;
    if (::stat(NativePath(path).c_str(), &st) != 0) return info;
    info.time = static_cast<int64_t>(st.st_mtim.tv_sec) * kNanosPerSecond + st.st_mtim.tv_nsec;
    info.size = static_cast<uint64_t>(st.st_size);
    info.is_directory = S_ISDIR(st.st_mode);
    return info;
  }

  std::unique_ptr<MappedFile> MapReadOnly(const std::string& path) override {
    const int fd = OpenRetrying(NativePath(path), O_RDONLY);
    if (fd < 0) return nullptr;
    struct stat st;
    std::unique_ptr<MappedFile> mapped;
    if (::fstat(fd, &st) == 0 && S_ISREG(st.st_mode)) {
      const size_t size = static_cast<size_t>(st.st_size);
      // Every mapped file is read from start to end: its pages are mapped in
      // one go rather than faulted in one by one.
      int flags = MAP_PRIVATE;
#ifdef MAP_POPULATE
      flags |= MAP_POPULATE;
#endif
      void* base = size > 0 ? ::mmap(nullptr, size, PROT_READ, flags, fd, 0) : nullptr;
      if (base != MAP_FAILED) mapped = std::make_unique<PosixMappedFile>(base, size);
    }
    ::close(fd);  // the mapping keeps its own reference
    return mapped;
  }

  // Reads into a buffer sized by the file's size, so the bytes are copied
  // once; a file that grows meanwhile is read to its end all the same.
  Status ReadFile(const std::string& path, std::string* contents) override {
    contents->clear();
    const int fd = OpenRetrying(NativePath(path), O_RDONLY);
    if (fd < 0) return PosixError("cannot open", path, errno);
    struct stat st;
    size_t expected = 0;
    if (::fstat(fd, &st) == 0 && S_ISREG(st.st_mode)) expected = static_cast<size_t>(st.st_size);
    Status status;
    size_t filled = 0;
    contents->resize(expected + 1);
    for (;;) {
      if (filled == contents->size()) contents->resize(2 * filled + 64 * 1024);
      const ssize_t n = ::read(fd, contents->data() + filled, contents->size() - filled);
      if (n < 0 && errno == EINTR) continue;
      if (n < 0) status = PosixError("cannot read", path, errno);
      if (n <= 0) break;
      filled += static_cast<size_t>(n);
    }
    contents->resize(filled);
    ::close(fd);
    return status;
  }

  Status NewWritableFile(const std::string& path, std::unique_ptr<WritableFile>* file) override {
    const int fd = OpenRetrying(NativePath(path), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    if (fd < 0) return PosixError("cannot create", path, errno);
    *file = std::make_unique<PosixWritableFile>(path, fd);
    return Status::OK();
  }

  Status RemoveFile(const std::string& path) override {
    if (::unlink(NativePath(path).c_str()) == 0 || errno == ENOENT || errno == ENOTDIR) {
      return Status::OK();
    }
    return PosixError("cannot delete", path, errno);
  }

  Status RenameFile(const std::string& from, const std::string& to) override {
    if (::rename(NativePath(from).c_str(), NativePath(to).c_str()) == 0) return Status::OK();
    return PosixError("cannot rename", from + "' to '" + to, errno);
  }

  Status ListDirectory(const std::string& path, std::vector<DirEntry>* entries) override;
  Status MakeDirectories(const std::string& path) override;

  Status SetFileTime(const std::string& path, FileTime time) override {
    int64_t seconds = time / kNanosPerSecond;
    int64_t nanos = time % kNanosPerSecond;
    if (nanos < 0) {
      nanos += kNanosPerSecond;
      seconds -= 1;
    }
    struct timespec times[2];
    times[0].tv_sec = 0;
    times[0].tv_nsec = UTIME_OMIT;  // access time stays
    times[1].tv_sec = static_cast<time_t>(seconds);
    times[1].tv_nsec = static_cast<long>(nanos);
    if (::utimensat(AT_FDCWD, NativePath(path).c_str(), times, 0) == 0) return Status::OK();
    return PosixError("cannot set the time of", path, errno);
  }

  std::string CurrentDirectory() override {
    std::string buffer(256, '\0');
    while (::getcwd(buffer.data(), buffer.size()) == nullptr) {
      if (errno != ERANGE) return std::string();
      buffer.resize(buffer.size() * 2);
    }
    buffer.resize(buffer.find('\0'));
    return buffer;
  }
};

Status PosixFileSystem::ListDirectory(const std::string& path, std::vector<DirEntry>* entries) {
  entries->clear();
  const std::string dir_path = NativePath(path);
  DIR* dir = ::opendir(dir_path.c_str());
  if (dir == nullptr) return PosixError("cannot list", path, errno);
  while (const dirent* entry = ::readdir(dir)) {
    const std::string name = entry->d_name;
    if (name == "." || name == "..") continue;
    bool is_directory = entry->d_type == DT_DIR;
    if (entry->d_type == DT_UNKNOWN || entry->d_type == DT_LNK) {
      is_directory = Stat(AddBackslash(dir_path) + name).is_directory;
    }
    entries->push_back({name, is_directory});
  }
  ::closedir(dir);
  std::sort(entries->begin(), entries->end(),
            [](const DirEntry& a, const DirEntry& b) { return a.name < b.name; });
  return Status::OK();
}

// Creates each missing level in turn; a level that exists must be a directory.
Status PosixFileSystem::MakeDirectories(const std::string& path) {
  const std::string target = NativePath(NormalizePath(path));
  size_t pos = DriveOfFile(target).size();
  while (pos < target.size() && target[pos] == '/') ++pos;
  while (pos < target.size()) {
    pos = std::min(target.find('/', pos), target.size());
    const std::string level = target.substr(0, pos);
    if (::mkdir(level.c_str(), 0777) != 0) {
      const int error = errno;
      if (error != EEXIST) return PosixError("cannot create directory", level, error);
      if (!Stat(level).is_directory) return PosixError("cannot create directory", level, EEXIST);
    }
    ++pos;
  }
  return Status::OK();
}

}  // namespace

// POSIX opens exactly the names a listing shows.
bool MayOpenUnlisted(std::string_view) { return false; }

FileSystem& FileSystem::Default() {
  static PosixFileSystem file_system;
  return file_system;
}

}  // namespace quillon
