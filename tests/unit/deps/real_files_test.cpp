// The scanner on the real file system: mapped files with every kind of line
// ending, an empty file, and a file that vanishes before it can be mapped.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "deps/dependency_scanner.h"
#include "unit/deps/scan_test_support.h"

namespace quillon {
namespace {

// The real file system, except that one file disappears when it is mapped.
class VanishingFileSystem : public FileSystem {
 public:
  explicit VanishingFileSystem(std::string doomed) : doomed_(std::move(doomed)) {}
  FileInfo Stat(const std::string& p) override { return real_.Stat(p); }
  std::unique_ptr<MappedFile> MapReadOnly(const std::string& p) override {
    if (p == doomed_) real_.RemoveFile(p);
    return real_.MapReadOnly(p);
  }
  Status ReadFile(const std::string& p, std::string* c) override { return real_.ReadFile(p, c); }
  Status NewWritableFile(const std::string& p, std::unique_ptr<WritableFile>* f) override {
    return real_.NewWritableFile(p, f);
  }
  Status RemoveFile(const std::string& p) override { return real_.RemoveFile(p); }
  Status RenameFile(const std::string& a, const std::string& b) override {
    return real_.RenameFile(a, b);
  }
  Status ListDirectory(const std::string& p, std::vector<DirEntry>* e) override {
    return real_.ListDirectory(p, e);
  }
  Status MakeDirectories(const std::string& p) override { return real_.MakeDirectories(p); }
  Status SetFileTime(const std::string& p, FileTime t) override { return real_.SetFileTime(p, t); }
  std::string CurrentDirectory() override { return real_.CurrentDirectory(); }

 private:
  FileSystem& real_ = FileSystem::Default();
  std::string doomed_;
};

class RealFilesTest : public ::testing::Test {
 protected:
  RealFilesTest() {
    root_ = std::filesystem::path(::testing::TempDir()) / "quillon_deps_real_files";
    std::filesystem::remove_all(root_);
    std::filesystem::create_directories(root_);
  }
  ~RealFilesTest() override { std::filesystem::remove_all(root_); }

  std::string Write(const std::string& name, const std::string& contents) {
    const std::filesystem::path path = root_ / name;
    std::ofstream(path, std::ios::binary) << contents;
    return NormalizePath(path.string());
  }
  static std::string Missing(const std::string& name) {
    return ": Dependence file \"" + name + "\" not found";
  }

  std::filesystem::path root_;
};

TEST_F(RealFilesTest, LineEndingsEmptyAndVanishingFiles) {
  const std::string cr = Write("cr.c", "#include \"a.h\"\r#include \"miss1.h\"\r");
  const std::string lf = Write("lf.c", "x\n#include \"a.h\"\n\n#include \"miss2.h\"");
  const std::string crlf = Write("crlf.c", "\r\n\r\n#include \"miss3.h\"\r\n#include \"a.h\"");
  const std::string empty = Write("empty.c", "");
  const std::string header = Write("a.h", "#include \"gone.h\"\n");
  const std::string gone = Write("gone.h", "#include \"never.h\"\n");

  VanishingFileSystem fs(gone);
  CDependencyScanner scanner(fs);
  ScanRequest request;
  for (const std::string& path : {cr, lf, crlf, empty})
    request.sources.push_back({path, ScanStyle::kC});
  RecordingObserver observer;
  scanner.Update(request, &observer);

  EXPECT_EQ(observer.warnings, (std::vector<ScanWarning>{{cr, 2, Missing("miss1.h")},
                                                         {lf, 4, Missing("miss2.h")},
                                                         {crlf, 3, Missing("miss3.h")}}));
  for (const std::string& path : {cr, lf, crlf}) {
    const CDependencyNode* root = scanner.FindRoot(path);
    ASSERT_NE(root, nullptr);
    ASSERT_EQ(root->dependencies().size(), 1u);
    EXPECT_EQ(root->dependencies()[0]->name(), header);
  }
  EXPECT_TRUE(scanner.FindRoot(empty)->dependencies().empty());
  EXPECT_NE(scanner.FindRoot(empty)->time(), kMissingFile);
  // Resolved while it existed; unreadable when visited: no dependencies.
  const CDependencyNode* vanished = scanner.FindNode(gone);
  ASSERT_NE(vanished, nullptr);
  EXPECT_NE(vanished->time(), kMissingFile);
  EXPECT_TRUE(vanished->dependencies().empty());

  scanner.Update(request, &observer);
  EXPECT_EQ(scanner.FindNode(gone)->time(), kMissingFile);
}

}  // namespace
}  // namespace quillon
