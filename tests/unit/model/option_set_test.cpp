// Option sets: modes and own-value flags, defaults, and what each set writes.
#include <gtest/gtest.h>

#include "model/file_options.h"
#include "model/global_options.h"
#include "model/registry/settings_registry.h"
#include "model/target_options.h"

namespace quillon {
namespace {

TEST(FileOptionsTest, ModesDecideWhetherAnOwnValueIsKept) {
  CUnivFileOptions file;
  file.SetString(kCompilerOptionsId, "-O2", Own);
  EXPECT_EQ(file.GetString(kCompilerOptionsId, 1), "1");

  file.SetString(kCompilerOptionsId, "-Os", Propagate);
  EXPECT_EQ(file.GetString(kCompilerOptionsId, 0), "-O2");

  file.SetString(kCompilerOptionsId, "-Os", Inherit);
  EXPECT_EQ(file.GetString(kCompilerOptionsId, 0), "-Os");
  EXPECT_EQ(file.GetString(kCompilerOptionsId, 1), "0");

  file.SetString(kCompilerOptionsId, "-O0", Propagate);
  EXPECT_EQ(file.GetString(kCompilerOptionsId, 0), "-O0");

  file.SetInt(kExcludeFromMakeId, 1, Own);
  file.SetInt(kRunAssemblerId, 1, Propagate);
  EXPECT_EQ(file.GetInt(kExcludeFromMakeId, 0), 1);
  EXPECT_EQ(file.GetInt(kExcludeFromMakeId, 2), 1);
  EXPECT_EQ(file.GetInt(kRunAssemblerId, 0), 1);
  EXPECT_EQ(file.GetInt(kRunAssemblerId, 1), 0);
}

TEST(FileOptionsTest, UnknownIdsAreIgnoredAndAnsweredEmpty) {
  CUnivFileOptions file;
  file.SetString(7, "x", Own);
  EXPECT_EQ(file.GetString(7, 0), "");
  EXPECT_EQ(file.GetInt(5, 0), -1);
  EXPECT_EQ(CUnivTargetOptions().GetString(5, 0), "");
  EXPECT_EQ(CGlobalOptions().GetInt(14, 0), -1);
}

TEST(FileOptionsTest, DefaultLevelOneKeepsValuesButClearsFlags) {
  CUnivFileOptions file;
  file.SetString(kCompilerOptionsId, "-O2", Own);
  file.SetInt(kExcludeFromMakeId, 1, Own);
  file.SetDefault(1);
  EXPECT_EQ(file.GetString(kCompilerOptionsId, 0), "-O2");
  EXPECT_EQ(file.GetString(kCompilerOptionsId, 1), "0");
  EXPECT_EQ(file.GetInt(kExcludeFromMakeId, 0), 1);
  EXPECT_EQ(file.GetInt(kExcludeFromMakeId, 1), 0);
  file.SetString(kCompilerOptionsId, "-O2", Own);
  file.SetDefault(0);
  EXPECT_EQ(file.GetString(kCompilerOptionsId, 0), "$(EDNAME)");
  EXPECT_EQ(file.GetString(kCompilerOptionsId, 1), "0");
  EXPECT_EQ(file.GetInt(kExcludeFromMakeId, 0), 0);
}

// Saves a set into a fresh writing store and gives its key node.
template <typename Set>
std::unique_ptr<CSettingsRegistry> Saved(const Set& set, TransferPass pass) {
  auto store = std::make_unique<CSettingsRegistry>(nullptr, true);
  set.Save(*store, pass);
  return store;
}

TEST(OptionSetTest, LocalPassWritesOnlyThePerTranslatorSwitches) {
  EXPECT_EQ(Saved(CUnivFileOptions(), TransferPass::kLocal)->root().child_count(), 0u);
  EXPECT_EQ(Saved(CUnivTargetOptions(), TransferPass::kLocal)->root().child_count(), 0u);
  CGlobalOptions global;
  auto local = Saved(global, TransferPass::kLocal);
  EXPECT_EQ(local->root().child_count(), 6u);
  EXPECT_NE(local->root().FindChild("RunCommandInterpreterAsm"), nullptr);
  auto shared = Saved(global, TransferPass::kShared);
  EXPECT_EQ(shared->root().FindChild("RunCommandInterpreterAsm"), nullptr);
  EXPECT_EQ(shared->root().FindChild("RunCommandInterpreter"), nullptr);
}

// A reading store over hand-made values.
std::unique_ptr<CSettingsRegistry> StoreWith(void (*fill)(CSettingsRegistry&)) {
  CSettingsRegistry writer(nullptr, true);
  fill(writer);
  MemoryByteStream bytes(writer.Serialize());
  return std::make_unique<CSettingsRegistry>(&bytes, false);
}

// An empty store: the six switches reset, and no directory made up.
TEST(GlobalOptionsTest, SharedLoadWithoutLegacyKeysResetsTheSixSwitches) {
  CGlobalOptions global;
  for (int id = kCaptureTranslatorsOutputCmp; id <= kRunCommandInterpreterLnk; ++id)
    global.SetInt(id, 0, 0);
  global.Load(*StoreWith([](CSettingsRegistry&) {}), TransferPass::kShared);
  for (int id = kCaptureTranslatorsOutputCmp; id <= kRunCommandInterpreterLnk; ++id)
    EXPECT_EQ(global.GetInt(id, 0), 1) << CGlobalOptions::IntKey(id);
  EXPECT_EQ(global.GetString(kCompilerDirectory, 0), "");
  auto legacy = StoreWith([](CSettingsRegistry& s) { s.WriteInt("RunCommandInterpreter", 0); });
  global.Load(*legacy, TransferPass::kShared);
  EXPECT_EQ(global.GetInt(kRunCommandInterpreterLnk, 0), 0);
  EXPECT_EQ(global.GetInt(kCaptureTranslatorsOutputCmp, 0), 1);
}

// Directories gain a trailing separator; include flags missing from the
// stored list count as off.
TEST(GlobalOptionsTest, SharedLoadCompletesWhatTheStoreLeftOut) {
  CGlobalOptions global;
  auto store = StoreWith([](CSettingsRegistry& s) {
    s.WriteString("CompilerDirectory", "C:\\Tools");
    s.WriteString("RootDir", "C:\\Root\\");
    s.WriteStringList("IncludePaths", {"inc", "lib", "usb"});
    s.WriteStringList("IncludeSearchSubDirs", {"True"});
  });
  global.Load(*store, TransferPass::kShared);
  const std::string dir = global.GetString(kCompilerDirectory, 0);
  EXPECT_TRUE(dir.size() == 9u && dir.substr(0, 8) == "C:\\Tools") << dir;
  EXPECT_EQ(global.GetString(kRootDir, 0), "C:\\Root\\");
  ASSERT_EQ(global.include_paths().size(), 3u);
  EXPECT_TRUE(global.include_paths()[0].search_subdirs);
  EXPECT_FALSE(global.include_paths()[1].search_subdirs ||
               global.include_paths()[2].search_subdirs);
  std::vector<std::string> flags;
  ASSERT_TRUE(Saved(global, TransferPass::kShared)->ReadStringList("IncludeSearchSubDirs", &flags));
  EXPECT_EQ(flags, (std::vector<std::string>{"True", "False", "False"}));
}

}  // namespace
}  // namespace quillon
