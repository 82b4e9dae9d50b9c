// One contract for FileSystem, run on the real disk (in a fresh temporary
// directory) and on FakeFileSystem, so the fake cannot drift from the OS.
// Then the fake's own failure injection.
#include "platform/file_system.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "platform/path.h"
#include "support/fake_file_system.h"
#include "support/native_path.h"

namespace quillon {
namespace {

// For ASSERT_TRUE(Ok(...)): a failure shows the message.
::testing::AssertionResult Ok(const Status& status) {
  if (status.ok()) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << status.message();
}

// The entries of `dir`, a directory's name ending in '/'.
std::vector<std::string> List(FileSystem& fs, const std::string& dir) {
  std::vector<DirEntry> entries;
  std::vector<std::string> names;
  if (!fs.ListDirectory(dir, &entries).ok()) return {"<failed>"};
  for (const DirEntry& e : entries) names.push_back(e.name + (e.is_directory ? "/" : ""));
  return names;
}

// The parameter: the real disk, else the fake.
class FileSystemContractTest : public ::testing::TestWithParam<bool> {
 protected:
  void SetUp() override { ASSERT_TRUE(Ok(fs().MakeDirectories(root_))); }
  void TearDown() override {
    if (GetParam()) std::filesystem::remove_all(root_);
  }
  FileSystem& fs() { return GetParam() ? FileSystem::Default() : fake_; }
  // `relative` may use either separator; the file systems must accept both.
  std::string At(const std::string& relative) const { return root_ + "/" + relative; }
  void Write(const std::string& relative, const std::string& contents) {
    ASSERT_TRUE(Ok(fs().WriteFile(At(relative), contents)));
  }
  std::string Read(const std::string& relative) {
    std::string contents;
    fs().ReadFile(At(relative), &contents);
    return contents;
  }

  FakeFileSystem fake_;
  const std::string root_ = GetParam()
                                ? (std::filesystem::temp_directory_path() /
                                   ("quillon-fs-test-" + std::to_string(std::random_device()())))
                                      .string()
                                : Rooted("/work");
};

INSTANTIATE_TEST_SUITE_P(, FileSystemContractTest, ::testing::Values(true, false),
                         [](const auto& info) { return info.param ? "RealDisk" : "Fake"; });

TEST_P(FileSystemContractTest, WrittenBytesReadBackMapAndTakeATime) {
  const std::string contents("line\r\nnext\n\0\xff end", 17);
  Write("a.bin", contents);
  EXPECT_EQ(fs().Stat(At("a.bin")).size, contents.size());
  EXPECT_TRUE(fs().FileExists(At("a.bin")));
  EXPECT_EQ(fs().FileExists(At("A.BIN")), kPathsIgnoreCase);
  EXPECT_EQ(Read("a.bin"), contents);
  auto mapped = fs().MapReadOnly(At("a.bin"));
  ASSERT_NE(mapped, nullptr);
  EXPECT_EQ(std::string(mapped->data(), mapped->size()), contents);
  mapped.reset();  // Windows cannot truncate a mapped file

  const FileTime time = 1500000000123456700;  // in 100 ns steps: what Windows keeps
  ASSERT_TRUE(Ok(fs().SetFileTime(At("a.bin"), time)));
  EXPECT_EQ(fs().Stat(At("a.bin")).time, time);

  Write("a.bin", "");  // rewriting truncates, and an empty file maps
  ASSERT_NE(fs().MapReadOnly(At("a.bin")), nullptr);
  EXPECT_EQ(fs().MapReadOnly(At("a.bin"))->size(), 0u);
  EXPECT_EQ(Read("a.bin"), "");

  std::string big(300 * 1024 + 7, '\0');
  for (size_t i = 0; i < big.size(); ++i) big[i] = static_cast<char>(i * 131 % 251);
  Write("big.bin", big);
  EXPECT_EQ(Read("big.bin"), big);
}

#ifdef __linux__
// Its size says 0, yet it has lines: reading goes on to the end.
TEST(FileSystemTest, ReadsFilesThatUnderstateTheirSize) {
  std::string status;
  ASSERT_TRUE(Ok(FileSystem::Default().ReadFile("/proc/self/status", &status)));
  EXPECT_NE(status.find("Name:"), std::string::npos);
  EXPECT_EQ(status.back(), '\n');
}
#endif

// Removing one succeeds: it is gone afterwards.
TEST_P(FileSystemContractTest, MissingFilesHaveMissingTimeAndErrorsNameThem) {
  EXPECT_EQ(fs().Stat(At("missing.h")).time, kMissingFile);
  EXPECT_FALSE(fs().Stat(At("no/such/dir/x.c")).exists());
  EXPECT_TRUE(fs().DirectoryExists(At("")));
  std::string contents;
  const Status status = fs().ReadFile(At("missing.h"), &contents);
  EXPECT_TRUE(status.IsNotFound());
  EXPECT_NE(status.message().find("missing.h'"), std::string::npos) << status.message();

  std::unique_ptr<WritableFile> file;
  EXPECT_FALSE(fs().NewWritableFile(At("no/dir/x.c"), &file).ok());
  EXPECT_FALSE(fs().RenameFile(At("missing.h"), At("b.h")).ok());
  EXPECT_FALSE(fs().SetFileTime(At("missing.h"), 1).ok());
  EXPECT_EQ(List(fs(), At("missing")), std::vector<std::string>{"<failed>"});
  EXPECT_EQ(fs().MapReadOnly(At("missing.h")), nullptr);
  EXPECT_EQ(fs().MapReadOnly(At("")), nullptr);  // a directory
  ASSERT_TRUE(Ok(fs().RemoveFile(At("never.o"))));
  ASSERT_TRUE(Ok(fs().RemoveFile(At("no/dir/never.o"))));
}

TEST_P(FileSystemContractTest, RemoveRenameAndAtomicWriteReplaceAndLeaveNothingElse) {
  Write("x.o", "obj");
  ASSERT_TRUE(Ok(fs().RemoveFile(At("x.o"))));
  EXPECT_FALSE(fs().Stat(At("x.o")).exists());

  Write("new.txt", "new");
  Write("old.txt", "old");
  ASSERT_TRUE(Ok(fs().RenameFile(At("new.txt"), At("old.txt"))));
  EXPECT_EQ(Read("old.txt"), "new");
  EXPECT_FALSE(fs().Stat(At("new.txt")).exists());

  Write("store.qpj", "old");
  ASSERT_TRUE(Ok(fs().WriteFileAtomically(At("store.qpj"), "new")));
  EXPECT_EQ(Read("store.qpj"), "new");
  ASSERT_TRUE(Ok(fs().WriteFileAtomically(At("fresh.qpj"), "first")));
  EXPECT_EQ(Read("fresh.qpj"), "first");
  // A directory in the way: the rename fails and the temporary goes.
  ASSERT_TRUE(Ok(fs().MakeDirectories(At("dir.qpj"))));
  EXPECT_FALSE(fs().WriteFileAtomically(At("dir.qpj"), "x").ok());
  // The listing: sorted by name, directories marked, whatever the order of creation.
  EXPECT_EQ(List(fs(), At("")),
            (std::vector<std::string>{"dir.qpj/", "fresh.qpj", "old.txt", "store.qpj"}));
}

TEST_P(FileSystemContractTest, MakeDirectoriesCreatesEveryLevelAndFindFileFindsOnlyFiles) {
  ASSERT_TRUE(Ok(fs().MakeDirectories(At("a/b\\c/"))));
  EXPECT_TRUE(fs().DirectoryExists(At("a/b/c")));
  ASSERT_TRUE(Ok(fs().MakeDirectories(At("a/b/c"))));
  Write("a/b/c/f.txt", "in the tree");
  EXPECT_EQ(Read("a\\b\\c\\..\\c\\.\\f.txt"), "in the tree");
  std::string found;
  EXPECT_FALSE(FindFile(fs(), "c", At("a"), /*recurse=*/true, &found));
  ASSERT_TRUE(FindFile(fs(), "f.txt", At(""), /*recurse=*/true, &found));
  EXPECT_TRUE(PathsEqual(found, NormalizePath(At("a/b/c/f.txt")))) << found;

  Write("file", "");
  EXPECT_FALSE(fs().MakeDirectories(At("file/sub")).ok());
  EXPECT_FALSE(fs().MakeDirectories(At("file")).ok());
}

// Also names relative to the fake's current directory.
TEST(FakeFileSystemTest, AtomicWriteKeepsTheOldFileWhenAnyStepFails) {
  const std::string store = "store.qpj";
  for (int step = 0; step < 3; ++step) {  // the write, the sync, the rename
    SCOPED_TRACE(step);
    FakeFileSystem fs;
    fs.set_current_directory(Rooted("/p"));
    fs.Create(store, "old contents");
    fs.FailNthWrite(step == 0 ? 1 : 0);
    fs.set_fail_syncs(step == 1);
    fs.set_fail_renames(step == 2);
    EXPECT_FALSE(fs.WriteFileAtomically(store, "new contents, longer").ok());
    EXPECT_EQ(fs.Contents(store), "old contents");
    ASSERT_EQ(fs.files_written().size(), 1u);
    EXPECT_EQ(DirOfFile(fs.files_written()[0]), DirOfFile(store));  // one volume
    EXPECT_EQ(List(fs, Rooted("/p")), std::vector<std::string>{"store.qpj"});
  }
}

// Names Windows opens although no listing spells them so; POSIX has none.
TEST(FileNamesTest, OnlyWindowsOpensUnlistedNames) {
  for (const char* name : {"PROGRA~1", "a.c.", "a.c ", "a.c:stream", "\xe9t\xe9.h"}) {
    EXPECT_EQ(MayOpenUnlisted(name), kPathsIgnoreCase) << name;
  }
  for (const char* name : {"plain.h", ""}) EXPECT_FALSE(MayOpenUnlisted(name)) << name;
}

}  // namespace
}  // namespace quillon
