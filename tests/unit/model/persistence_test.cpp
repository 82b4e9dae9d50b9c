// A saved project loads back equal, and a sparse store still loads. Key
// names are pinned by the example project's committed bytes.
#include <gtest/gtest.h>

#include "model/project_data.h"
#include "model/registry/settings_registry.h"

namespace quillon {
namespace {

// Bytes of the project saved in one pass (under the store's root).
std::string SaveBytes(const CProjectData& project, TransferPass pass) {
  CSettingsRegistry store(nullptr, true);
  project.Save(store, pass);
  return store.Serialize();
}

void LoadBytes(CProjectData& project, const std::string& bytes, TransferPass pass) {
  MemoryByteStream stream(bytes);
  CSettingsRegistry store(&stream, false);
  ASSERT_EQ(store.LastError(), kRegOK);
  project.Load(store, pass);
}

class PersistenceTest : public ::testing::Test {
 protected:
  PersistenceTest() {
    project.Initialise(0);
    loaded->Initialise(0);
  }

  // Two targets, groups, files with own options, odd names.
  void BuildRichProject() {
    project.target_set().project_name = "Demo & 'friends'";
    project.target_set().filter_name = "GCC";
    project.target_set().filter_selection.cmp_use_default_name = false;
    project.target_set().filter_selection.cmp_custom_filter_name = "cc.err";
    CProjectTarget* debug = project.AddTarget("Debug", "");
    project.AddLinkGroup("Source files");
    project.AddLinkGroup("Start up \xE9\xE8");
    project.AddFile("src/main.c", "Source files");
    project.AddFile("C:\\abs path\\uart & spi.c", "Source files");
    project.AddFile("boot.asm", "Start up \xE9\xE8");
    debug->files[0]->options().SetString(kCompilerOptionsId, "-O2", Own);
    debug->files[1]->options().SetInt(kExcludeFromMakeId, 1, Own);
    debug->files[1]->is_changed = true;
    debug->target_options().SetString(kLinkerOptionsId, "-Map fw.map", 0);
    debug->target_options().SetInt(kCrLfId, 1, 0);
    debug->is_changed = true;
    CProjectTarget* release = project.AddTarget("Release", "Debug");
    release->target_options().SetString(kTargetDirectoryId, "rel", 0);
    project.SetDefaultTarget(release);
    CGlobalOptions& global = project.global_options();
    global.SetString(kCompilerDirectory, "C:\\Tools\\", 0);
    global.SetInt(kRunCommandInterpreterAsm, 0, 0);
    global.SetInt(kDeleteTemporalyFiles, 1, 0);
    global.include_paths() = {{"inc", false}, {"lib\\usb\\include", true}};
    global.include_keyword() = {true, false, true, "INCLUDE", "'", "'"};
    global.SetStringList(kEnvironmentSettingsList, {"PATH=C:\\bin", "MODE=1"});
  }

  std::unique_ptr<CProjectData> owner = CProjectData::Create();
  CProjectData& project = *owner;
  std::unique_ptr<CProjectData> loaded = CProjectData::Create();  // what the bytes load into
};

TEST_F(PersistenceTest, RichProjectLoadsBackEqualInBothParts) {
  BuildRichProject();
  std::string shared = SaveBytes(project, TransferPass::kShared);
  std::string local = SaveBytes(project, TransferPass::kLocal);

  LoadBytes(*loaded, shared, TransferPass::kShared);
  LoadBytes(*loaded, local, TransferPass::kLocal);

  // Each part came back; the bytes check below shows that nothing saved was lost.
  ASSERT_EQ(loaded->target_set().targets.size(), 2u);
  ASSERT_NE(loaded->default_target(), nullptr);
  EXPECT_EQ(loaded->default_target()->name, "Release");
  EXPECT_EQ(loaded->target_set().project_name, "Demo & 'friends'");
  EXPECT_EQ(loaded->target_set().filter_selection, project.target_set().filter_selection);
  const CGlobalOptions& global = loaded->global_options();
  EXPECT_EQ(global.GetInt(kRunCommandInterpreterAsm, 0), 0);
  EXPECT_EQ(global.include_paths(), project.global_options().include_paths());
  EXPECT_EQ(global.include_keyword(), project.global_options().include_keyword());
  CProjectTarget* debug = loaded->FindTarget("Debug");
  ASSERT_EQ(debug->files.size(), 3u);
  EXPECT_EQ(debug->files[1]->display_name(), "uart & spi.c");
  EXPECT_EQ(debug->files[1]->options().GetInt(kExcludeFromMakeId, 1), 1);
  EXPECT_EQ(SaveBytes(*loaded, TransferPass::kShared), shared);
  EXPECT_EQ(SaveBytes(*loaded, TransferPass::kLocal), local);
}

TEST_F(PersistenceTest, ProjectWithoutTargetsLoadsBackWithoutThem) {
  loaded->AddTarget("Stale", "");
  LoadBytes(*loaded, SaveBytes(project, TransferPass::kShared), TransferPass::kShared);
  EXPECT_TRUE(loaded->target_set().targets.empty());
  EXPECT_EQ(loaded->default_target(), nullptr);
  EXPECT_EQ(loaded->target_set().filter_name, "No filter");
}

TEST_F(PersistenceTest, MissingProjectOptionsStillReadsTheTargets) {
  CSettingsRegistry writer(nullptr, true);
  writer.OpenKeyFromRoot("Project[0]\\Target[0]", true);
  writer.WriteString("TargetName", "Only");
  writer.OpenKeyFromRoot("Project[0]", true);
  writer.WriteString("DefaultTargetName", "Only");
  writer.WriteString("FilterName", "IAR-ARM");
  LoadBytes(*loaded, writer.Serialize(), TransferPass::kShared);
  ASSERT_NE(loaded->default_target(), nullptr);
  EXPECT_EQ(loaded->default_target()->name, "Only");
  EXPECT_EQ(loaded->target_set().filter_name, "IAR");
  EXPECT_EQ(loaded->global_options().GetString(kCInpExtensions, 0), "C;CPP");
}

}  // namespace
}  // namespace quillon
