// FileSystem on Windows: the ANSI file API, read-only file mappings and
// FindFirstFile. Times are kept as nanoseconds since 1970 like on POSIX, so
// the same constants work in tests on both.
#include <windows.h>

#include <algorithm>

#include "platform/win32/error_text.h"
#include "platform/file_system.h"
#include "platform/path.h"

namespace quillon {
namespace {

// FILETIME counts 100 ns from 1601; shifting to 1970 keeps nanoseconds in
// range of int64_t until 2262.
constexpr int64_t kTicksFrom1601To1970 = 116444736000000000LL;

FileTime FromFileTime(const FILETIME& ft) {
  const int64_t ticks = (static_cast<int64_t>(ft.dwHighDateTime) << 32) | ft.dwLowDateTime;
  return (ticks - kTicksFrom1601To1970) * 100;
}

FILETIME ToFileTime(FileTime time) {
  int64_t ticks = time / 100;
  if (time % 100 < 0) --ticks;  // round towards the past
  ticks += kTicksFrom1601To1970;
  FILETIME ft;
  ft.dwLowDateTime = static_cast<DWORD>(ticks & 0xFFFFFFFF);
  ft.dwHighDateTime = static_cast<DWORD>(static_cast<uint64_t>(ticks) >> 32);
  return ft;
}

std::string ErrorText(DWORD error) { return Win32ErrorText(error); }

// "cannot open 'x': The system cannot find the file specified."
Status Win32Error(const char* action, const std::string& path, DWORD error) {
  std::string message = std::string(action) + " '" + path + "': " + ErrorText(error);
  if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND) {
    return Status::NotFound(std::move(message));
  }
  return Status::IoError(std::move(message));
}

// Reads the error code before anything else can overwrite it.
Status LastError(const char* action, const std::string& path) {
  const DWORD error = ::GetLastError();
  return Win32Error(action, path, error);
}

bool IsMissing(DWORD error) {
  return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

HANDLE OpenForReading(const std::string& path) {
  return ::CreateFileA(path.c_str(), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING,
                       FILE_ATTRIBUTE_NORMAL, nullptr);
}

class Win32MappedFile : public MappedFile {
 public:
  Win32MappedFile(const void* view, size_t size) : view_(view), size_(size) {}
  ~Win32MappedFile() override {
    if (view_ != nullptr) ::UnmapViewOfFile(view_);
  }
  const char* data() const override { return view_ ? static_cast<const char*>(view_) : ""; }
  size_t size() const override { return size_; }

 private:
  const void* view_;
  size_t size_;
};

class Win32WritableFile : public WritableFile {
 public:
  Win32WritableFile(std::string path, HANDLE handle) : path_(std::move(path)), handle_(handle) {}
  ~Win32WritableFile() override {
    if (handle_ != INVALID_HANDLE_VALUE) ::CloseHandle(handle_);
  }

  Status Write(const char* data, size_t size) override {
    if (handle_ == INVALID_HANDLE_VALUE) {
      return Win32Error("cannot write", path_, ERROR_INVALID_HANDLE);
    }
    while (size > 0) {
      const DWORD chunk = static_cast<DWORD>(std::min<size_t>(size, 1u << 30));
      DWORD written = 0;
      if (!::WriteFile(handle_, data, chunk, &written, nullptr)) {
        return LastError("cannot write", path_);
      }
      data += written;
      size -= written;
    }
    return Status::OK();
  }

  Status Sync() override {
    if (handle_ == INVALID_HANDLE_VALUE) {
      return Win32Error("cannot sync", path_, ERROR_INVALID_HANDLE);
    }
    if (!::FlushFileBuffers(handle_)) return LastError("cannot sync", path_);
    return Status::OK();
  }

  Status Close() override {
    if (handle_ == INVALID_HANDLE_VALUE) return Status::OK();
    const BOOL closed = ::CloseHandle(handle_);
    handle_ = INVALID_HANDLE_VALUE;
    return closed ? Status::OK() : LastError("cannot close", path_);
  }

 private:
  std::string path_;
  HANDLE handle_;
};

class Win32FileSystem : public FileSystem {
 public:
  FileInfo Stat(const std::string& path) override {
    FileInfo info;
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (!::GetFileAttributesExA(path.c_str(), GetFileExInfoStandard, &data)) return info;
    info.time = FromFileTime(data.ftLastWriteTime);
    info.size = (static_cast<uint64_t>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
    info.is_directory = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    return info;
  }

  std::unique_ptr<MappedFile> MapReadOnly(const std::string& path) override;
  Status ReadFile(const std::string& path, std::string* contents) override;

  Status NewWritableFile(const std::string& path, std::unique_ptr<WritableFile>* file) override {
    const HANDLE handle =
        ::CreateFileA(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                      CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) return LastError("cannot create", path);
    *file = std::make_unique<Win32WritableFile>(path, handle);
    return Status::OK();
  }

  Status RemoveFile(const std::string& path) override {
    if (::DeleteFileA(path.c_str())) return Status::OK();
    const DWORD error = ::GetLastError();
    return IsMissing(error) ? Status::OK() : Win32Error("cannot delete", path, error);
  }

  Status RenameFile(const std::string& from, const std::string& to) override {
    if (::MoveFileExA(from.c_str(), to.c_str(),
                      MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
      return Status::OK();
    }
    const DWORD error = ::GetLastError();
    return Win32Error("cannot rename", from + "' to '" + to, error);
  }

  Status ListDirectory(const std::string& path, std::vector<DirEntry>* entries) override;
  Status MakeDirectories(const std::string& path) override;

  Status SetFileTime(const std::string& path, FileTime time) override {
    // Backup semantics let the handle be opened on a directory too.
    const HANDLE handle = ::CreateFileA(path.c_str(), FILE_WRITE_ATTRIBUTES, kShareAll, nullptr,
                                        OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (handle == INVALID_HANDLE_VALUE) return LastError("cannot set the time of", path);
    const FILETIME ft = ToFileTime(time);
    const BOOL done = ::SetFileTime(handle, nullptr, nullptr, &ft);
    const DWORD error = ::GetLastError();
    ::CloseHandle(handle);
    return done ? Status::OK() : Win32Error("cannot set the time of", path, error);
  }

  std::string CurrentDirectory() override {
    const DWORD needed = ::GetCurrentDirectoryA(0, nullptr);
    if (needed == 0) return std::string();
    std::string buffer(needed, '\0');
    const DWORD length = ::GetCurrentDirectoryA(needed, buffer.data());
    buffer.resize(length < needed ? length : 0);
    return buffer;
  }
};

std::unique_ptr<MappedFile> Win32FileSystem::MapReadOnly(const std::string& path) {
  const HANDLE file = OpenForReading(path);
  if (file == INVALID_HANDLE_VALUE) return nullptr;
  std::unique_ptr<MappedFile> mapped;
  LARGE_INTEGER size;
  if (::GetFileSizeEx(file, &size) && size.QuadPart == 0) {
    mapped = std::make_unique<Win32MappedFile>(nullptr, 0);  // empty files cannot be mapped
  } else if (size.QuadPart > 0) {
    const HANDLE mapping = ::CreateFileMappingA(file, nullptr, PAGE_READONLY, 0, 0, nullptr);
    if (mapping != nullptr) {
      const void* view = ::MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, 0);
      if (view != nullptr) {
        mapped = std::make_unique<Win32MappedFile>(view, static_cast<size_t>(size.QuadPart));
      }
      ::CloseHandle(mapping);  // the view keeps the mapping alive
    }
  }
  ::CloseHandle(file);
  return mapped;
}

// Reads into a buffer sized by the file's size, so the bytes are copied
// once; a file that grows meanwhile is read to its end all the same.
Status Win32FileSystem::ReadFile(const std::string& path, std::string* contents) {
  contents->clear();
  const HANDLE file = OpenForReading(path);
  if (file == INVALID_HANDLE_VALUE) return LastError("cannot open", path);
  LARGE_INTEGER size;
  size_t expected = 0;
  if (::GetFileSizeEx(file, &size) && size.QuadPart > 0) {
    expected = static_cast<size_t>(size.QuadPart);
  }
  Status status;
  size_t filled = 0;
  contents->resize(expected + 1);
  for (;;) {
    if (filled == contents->size()) contents->resize(2 * filled + 64 * 1024);
    // One call reads at most what a DWORD counts.
    const DWORD want = static_cast<DWORD>(std::min<size_t>(contents->size() - filled, 1u << 30));
    DWORD read = 0;
    if (!::ReadFile(file, contents->data() + filled, want, &read, nullptr)) {
      status = LastError("cannot read", path);
      break;
    }
    if (read == 0) break;
    filled += read;
  }
  contents->resize(filled);
  ::CloseHandle(file);
  return status;
}

Status Win32FileSystem::ListDirectory(const std::string& path, std::vector<DirEntry>* entries) {
  entries->clear();
  WIN32_FIND_DATAA data;
  const HANDLE find = ::FindFirstFileA((AddBackslash(path) + "*").c_str(), &data);
  if (find == INVALID_HANDLE_VALUE) {
    const DWORD error = ::GetLastError();
    return error == ERROR_FILE_NOT_FOUND ? Status::OK() : Win32Error("cannot list", path, error);
  }
  do {
    const std::string name = data.cFileName;
    if (name == "." || name == "..") continue;
    entries->push_back({name, (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0});
  } while (::FindNextFileA(find, &data));
  const DWORD error = ::GetLastError();
  ::FindClose(find);
  if (error != ERROR_NO_MORE_FILES) return Win32Error("cannot list", path, error);
  std::sort(entries->begin(), entries->end(),
            [](const DirEntry& a, const DirEntry& b) { return a.name < b.name; });
  return Status::OK();
}

// Creates each missing level in turn; a level that exists must be a directory.
Status Win32FileSystem::MakeDirectories(const std::string& path) {
  const std::string target = NormalizePath(path);
  size_t pos = DriveOfFile(target).size();
  while (pos < target.size() && IsPathSeparator(target[pos])) ++pos;
  while (pos < target.size()) {
    pos = std::min(target.find(kPathSeparator, pos), target.size());
    const std::string level = target.substr(0, pos);
    if (!::CreateDirectoryA(level.c_str(), nullptr)) {
      const DWORD error = ::GetLastError();
      if (error != ERROR_ALREADY_EXISTS) return Win32Error("cannot create directory", level, error);
      if (!Stat(level).is_directory) return Win32Error("cannot create directory", level, error);
    }
    ++pos;
  }
  return Status::OK();
}

}  // namespace

bool MayOpenUnlisted(std::string_view name) {
  if (name.empty()) return false;
  if (name.find_first_of("~:") != std::string_view::npos) return true;
  if (name.back() == '.' || name.back() == ' ') return true;
  return std::any_of(name.begin(), name.end(),
                     [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

FileSystem& FileSystem::Default() {
  static Win32FileSystem file_system;
  return file_system;
}

}  // namespace quillon
