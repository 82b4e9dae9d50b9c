// One contract for FileSystem, run on the real disk (in a fresh temporary
// directory) and on FakeFileSystem, so the fake cannot drift from the OS.
// Then the fake's own controls: clock, records, failure injection.
#include "platform/file_system.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include "platform/path.h"
#include "support/fake_file_system.h"

namespace quillon {
namespace {

#define ASSERT_OK(expr)                                              \
  do {                                                               \
    const ::quillon::Status status_ = (expr);                        \
    ASSERT_TRUE(status_.ok()) << #expr << ": " << status_.message(); \
  } while (0)

std::vector<std::string> Names(const std::vector<DirEntry>& entries) {
  std::vector<std::string> names;
  for (const DirEntry& entry : entries) {
    names.push_back(entry.name + (entry.is_directory ? "/" : ""));
  }
  return names;
}

// The OS's file system in a directory of its own, removed afterwards.
class RealDisk {
 public:
  RealDisk() {
    namespace fs = std::filesystem;
    std::random_device random;
    do {
      root_ = fs::temp_directory_path() / ("quillon-fs-test-" + std::to_string(random()));
    } while (!fs::create_directory(root_));
  }
  ~RealDisk() {
    std::error_code ignored;
    std::filesystem::remove_all(root_, ignored);
  }
  FileSystem& fs() { return FileSystem::Default(); }
  std::string root() const { return root_.string(); }

 private:
  std::filesystem::path root_;
};

class Fake {
 public:
  Fake() { fs_.MakeDirectories(root()); }
  FileSystem& fs() { return fs_; }
  std::string root() const { return kPathsIgnoreCase ? "C:\\work" : "/work"; }

 private:
  FakeFileSystem fs_;
};

template <typename Disk>
class FileSystemContractTest : public ::testing::Test {
 protected:
  FileSystem& fs() { return disk_.fs(); }
  // `relative` may use either separator; the file systems must accept both.
  std::string At(const std::string& relative) const { return disk_.root() + "/" + relative; }

  void Write(const std::string& relative, const std::string& contents) {
    ASSERT_OK(fs().WriteFile(At(relative), contents));
  }
  std::string Read(const std::string& relative) {
    std::string contents;
    const Status status = fs().ReadFile(At(relative), &contents);
    return status.ok() ? contents : "<" + status.message() + ">";
  }

  Disk disk_;
};

struct DiskNames {
  template <typename T>
  static std::string GetName(int) {
    return std::is_same_v<T, RealDisk> ? "RealDisk" : "Fake";
  }
};

using Disks = ::testing::Types<RealDisk, Fake>;
TYPED_TEST_SUITE(FileSystemContractTest, Disks, DiskNames);

TYPED_TEST(FileSystemContractTest, WrittenBytesReadBackUnchanged) {
  const std::string contents("line\r\nnext\n\0\xff end", 17);
  this->Write("a.bin", contents);
  const FileInfo info = this->fs().Stat(this->At("a.bin"));
  EXPECT_TRUE(info.exists());
  EXPECT_EQ(info.size, contents.size());
  EXPECT_FALSE(info.is_directory);
  EXPECT_TRUE(this->fs().FileExists(this->At("a.bin")));
  EXPECT_FALSE(this->fs().DirectoryExists(this->At("a.bin")));
  EXPECT_EQ(this->Read("a.bin"), contents);

  this->Write("a.bin", "short");  // rewriting truncates
  EXPECT_EQ(this->Read("a.bin"), "short");
}

TYPED_TEST(FileSystemContractTest, MissingFilesHaveMissingTimeAndErrorsNameThem) {
  EXPECT_EQ(this->fs().Stat(this->At("missing.h")).time, kMissingFile);
  EXPECT_FALSE(this->fs().Stat(this->At("no/such/dir/x.c")).exists());
  EXPECT_FALSE(this->fs().FileExists(this->At("missing.h")));
  EXPECT_TRUE(this->fs().DirectoryExists(this->At("")));
  std::string contents = "stale";
  const Status status = this->fs().ReadFile(this->At("missing.h"), &contents);
  EXPECT_FALSE(status.ok());
  EXPECT_NE(status.message().find("missing.h'"), std::string::npos) << status.message();
  EXPECT_TRUE(status.IsNotFound());
  EXPECT_EQ(contents, "");

  std::unique_ptr<WritableFile> file;
  EXPECT_FALSE(this->fs().NewWritableFile(this->At("no/dir/x.c"), &file).ok());
  EXPECT_FALSE(this->fs().RenameFile(this->At("missing.h"), this->At("b.h")).ok());
  std::vector<DirEntry> entries;
  EXPECT_FALSE(this->fs().ListDirectory(this->At("missing"), &entries).ok());
}

TYPED_TEST(FileSystemContractTest, MapsEmptyAndNonEmptyFiles) {
  this->Write("empty.c", "");
  this->Write("full.c", "int x;\n");
  ASSERT_OK(this->fs().MakeDirectories(this->At("dir")));

  const auto empty = this->fs().MapReadOnly(this->At("empty.c"));
  ASSERT_NE(empty, nullptr);
  EXPECT_EQ(empty->size(), 0u);
  const auto full = this->fs().MapReadOnly(this->At("full.c"));
  ASSERT_NE(full, nullptr);
  EXPECT_EQ(std::string(full->data(), full->size()), "int x;\n");
  EXPECT_EQ(this->fs().MapReadOnly(this->At("missing.c")), nullptr);
  EXPECT_EQ(this->fs().MapReadOnly(this->At("dir")), nullptr);
}

TYPED_TEST(FileSystemContractTest, RemoveSucceedsWhenFileIsGoneAndRenameReplaces) {
  ASSERT_OK(this->fs().RemoveFile(this->At("never.o")));
  ASSERT_OK(this->fs().RemoveFile(this->At("no/dir/never.o")));
  this->Write("x.o", "obj");
  ASSERT_OK(this->fs().RemoveFile(this->At("x.o")));
  EXPECT_FALSE(this->fs().Stat(this->At("x.o")).exists());

  this->Write("new.txt", "new");
  this->Write("old.txt", "old");
  ASSERT_OK(this->fs().RenameFile(this->At("new.txt"), this->At("old.txt")));
  EXPECT_EQ(this->Read("old.txt"), "new");
  EXPECT_FALSE(this->fs().Stat(this->At("new.txt")).exists());
}

TYPED_TEST(FileSystemContractTest, ListsDirectorySortedWithKinds) {
  this->Write("b.txt", "");
  this->Write("a.txt", "");
  ASSERT_OK(this->fs().MakeDirectories(this->At("sub")));
  this->Write("sub/inner.c", "");
  std::vector<DirEntry> entries;
  ASSERT_OK(this->fs().ListDirectory(this->At(""), &entries));
  EXPECT_EQ(Names(entries), (std::vector<std::string>{"a.txt", "b.txt", "sub/"}));
}

TYPED_TEST(FileSystemContractTest, MakeDirectoriesCreatesEveryLevelOnce) {
  ASSERT_OK(this->fs().MakeDirectories(this->At("a/b\\c/")));
  EXPECT_TRUE(this->fs().DirectoryExists(this->At("a/b/c")));
  ASSERT_OK(this->fs().MakeDirectories(this->At("a/b/c")));
  this->Write("a/b/c/f.txt", "in the tree");
  EXPECT_EQ(this->Read("a\\b\\c\\f.txt"), "in the tree");

  this->Write("file", "");
  EXPECT_FALSE(this->fs().MakeDirectories(this->At("file/sub")).ok());
  EXPECT_FALSE(this->fs().MakeDirectories(this->At("file")).ok());
}

TYPED_TEST(FileSystemContractTest, SetFileTimeIsSeenByStat) {
  this->Write("t.c", "");
  // 100 ns steps: the resolution Windows keeps.
  const FileTime time = 1500000000123456700;
  ASSERT_OK(this->fs().SetFileTime(this->At("t.c"), time));
  EXPECT_EQ(this->fs().Stat(this->At("t.c")).time, time);
  ASSERT_OK(this->fs().SetFileTime(this->At("t.c"), time - 3600000000000));
  EXPECT_EQ(this->fs().Stat(this->At("t.c")).time, time - 3600000000000);
  EXPECT_FALSE(this->fs().SetFileTime(this->At("missing.c"), time).ok());
}

TYPED_TEST(FileSystemContractTest, FindFileSearchesBreadthFirstInNameOrder) {
  ASSERT_OK(this->fs().MakeDirectories(this->At("a/deep/deeper")));
  ASSERT_OK(this->fs().MakeDirectories(this->At("c")));
  ASSERT_OK(this->fs().MakeDirectories(this->At("b")));
  this->Write("a/deep/deeper/t.h", "");
  this->Write("c/t.h", "");
  this->Write("b/t.h", "");

  const std::string root = this->At("");
  std::string found;
  EXPECT_FALSE(FindFile(this->fs(), "t.h", root, /*recurse=*/false, &found));
  ASSERT_TRUE(FindFile(this->fs(), "t.h", root, /*recurse=*/true, &found));
  EXPECT_TRUE(PathsEqual(found, NormalizePath(this->At("b/t.h")))) << found;
  ASSERT_TRUE(FindFile(this->fs(), "deeper\\t.h", root, /*recurse=*/true, &found));
  EXPECT_TRUE(PathsEqual(found, NormalizePath(this->At("a/deep/deeper/t.h")))) << found;
  EXPECT_FALSE(FindFile(this->fs(), "deep", root, /*recurse=*/true, &found));  // not a file
}

TYPED_TEST(FileSystemContractTest, WriteFileAtomicallyReplacesAndLeavesNothingElse) {
  this->Write("store.qpj", "old");
  ASSERT_OK(this->fs().WriteFileAtomically(this->At("store.qpj"), "new"));
  EXPECT_EQ(this->Read("store.qpj"), "new");
  ASSERT_OK(this->fs().WriteFileAtomically(this->At("fresh.qpj"), "first"));
  EXPECT_EQ(this->Read("fresh.qpj"), "first");

  // A directory in the way: the rename fails and the temporary goes.
  ASSERT_OK(this->fs().MakeDirectories(this->At("dir.qpj")));
  EXPECT_FALSE(this->fs().WriteFileAtomically(this->At("dir.qpj"), "x").ok());

  std::vector<DirEntry> entries;
  ASSERT_OK(this->fs().ListDirectory(this->At(""), &entries));
  EXPECT_EQ(Names(entries), (std::vector<std::string>{"dir.qpj/", "fresh.qpj", "store.qpj"}));
}

// Names Windows opens although no listing spells them so; POSIX has none.
TEST(FileNamesTest, OnlyWindowsOpensUnlistedNames) {
  for (const char* name : {"PROGRA~1", "a.c.", "a.c ", "a.c:stream", "\xe9t\xe9.h"}) {
    EXPECT_EQ(MayOpenUnlisted(name), kPathsIgnoreCase) << name;
  }
  EXPECT_FALSE(MayOpenUnlisted("plain.h"));
  EXPECT_FALSE(MayOpenUnlisted(""));
}

class FakeFileSystemTest : public ::testing::Test {
 protected:
  std::string P(std::string relative) const {
    return (kPathsIgnoreCase ? "C:\\p\\" : "/p/") + relative;
  }
  std::vector<std::string> ListP() {
    std::vector<DirEntry> entries;
    fs_.ListDirectory(P(""), &entries);
    return Names(entries);
  }
  FakeFileSystem fs_;
};

TEST_F(FakeFileSystemTest, AtomicWriteKeepsOldFileWhenAnyStepFails) {
  enum Step { kWrite, kSync, kRename };
  for (const Step step : {kWrite, kSync, kRename}) {
    SCOPED_TRACE(step);
    FakeFileSystem fs;
    fs.Create(P("store.qpj"), "old contents");
    fs.FailNthWrite(step == kWrite ? 1 : 0);
    fs.set_fail_syncs(step == kSync);
    fs.set_fail_renames(step == kRename);

    EXPECT_FALSE(fs.WriteFileAtomically(P("store.qpj"), "new contents, longer").ok());
    EXPECT_EQ(fs.Contents(P("store.qpj")), "old contents");
    const std::vector<std::string> written = fs.files_written();
    ASSERT_EQ(written.size(), 1u);
    EXPECT_NE(written[0], P("store.qpj"));  // only ever the temporary
    EXPECT_EQ(DirOfFile(written[0]), DirOfFile(P("store.qpj")));
    EXPECT_EQ(fs.files_removed(), written);
    std::vector<DirEntry> entries;
    ASSERT_OK(fs.ListDirectory(P(""), &entries));
    EXPECT_EQ(Names(entries), std::vector<std::string>{"store.qpj"});
  }
}

TEST_F(FakeFileSystemTest, NamesOneFileWhateverTheSpelling) {
  fs_.Create(P("src/./main.c"), "m");
  EXPECT_EQ(fs_.Contents(P("inc\\..\\src\\main.c")), "m");
  EXPECT_EQ(fs_.FileExists(P("SRC/Main.C")), kPathsIgnoreCase);

  fs_.set_current_directory(P("src"));
  EXPECT_EQ(fs_.CurrentDirectory(), NormalizePath(P("src")));
  EXPECT_EQ(fs_.Contents("main.c"), "m");
  EXPECT_EQ(fs_.Contents("..\\src/main.c"), "m");
}

}  // namespace
}  // namespace quillon
