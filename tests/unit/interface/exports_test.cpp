// The exports driven in-process as the IDE drives them: notifications and
// their order, answers without a project, transfers through a stream.
#include <gtest/gtest.h>

#include "interface/library_state.h"
#include "model/registry/settings_registry.h"
#include "platform/path.h"
#include "quillon/quillon.h"
#include "support/fake_ui_services.h"
#include "support/memory_istream.h"
#include "support/native_path.h"

namespace quillon {
namespace {

// What the callbacks were told: change codes, and how many output records.
std::vector<int>& Codes() {
  static std::vector<int> codes;
  return codes;
}

int& OutputCount() {
  static int count = 0;
  return count;
}

int QUILLON_CALL RecordChange(intptr_t, intptr_t, int code) {
  Codes().push_back(code);
  return 0;
}

int QUILLON_CALL RecordHost(int code, void*) {
  if (code == HostOutput) ++OutputCount();
  return 0;
}

class ExportsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    State().ui = &ui;
    _Set_IRF_FileName(Native("/proj/demo.irf").c_str());
    ASSERT_EQ(_InitProjectData(RecordChange, RecordHost), 1);
    Codes().clear();
    OutputCount() = 0;
  }
  void TearDown() override {
    _DoneProjectData();
    State().ui = &UiServices::Default();
  }

  // A default project with a second target and three files in one group.
  void BuildProject() {
    _CreateDefaultProject(0, 1);
    _AddTarget("Release");
    _AddProjectFile("a.c", "Source files");
    _AddProjectFile("b.c", "Source files");
    _AddProjectFile("start.asm", "Source files");
    Codes().clear();
  }

  FakeUiServices ui;
};

TEST_F(ExportsTest, NullArgumentsAreAnsweredLikeAMissingProject) {
  BuildProject();
  EXPECT_EQ(_GetTargetName(nullptr, 0), -1);
  EXPECT_EQ(_GetLinkGroupName(nullptr, 0, "Release"), -1);
  EXPECT_EQ(_IsFileInProject(nullptr, 0), 0);
  EXPECT_EQ(_SetTarget(nullptr), 0);
  _AddProjectFile(nullptr, "Source files");
  _Set_IRF_FileName(nullptr);
  _GetDefaultTargetName(nullptr);
  EXPECT_TRUE(Codes().empty());
}

TEST_F(ExportsTest, FilesMaskListsEachNonEmptyCategory) {
  std::string filter, masks;
  EXPECT_EQ(_GetFilesMask(0, &filter, &masks, '|'), 1);
  EXPECT_EQ(filter,
            "Compiler files (*.C;*.CPP)|*.C;*.CPP|Assembler files (*.ASM)|*.ASM|"
            "Header files (*.H)|*.H|Asm Header files (*.INC)|*.INC|All files (*.*)|*.*||");
  EXPECT_EQ(masks, "*.C;*.CPP");

  CGlobalOptions& global = State().project->global_options();
  global.SetString(kCInpExtensions, "", 0);
  global.SetString(kAInpExtensions, "", 0);
  filter.clear();
  masks.clear();
  _GetFilesMask(0, &filter, &masks, '\0' + 0x100 + '|');
  EXPECT_EQ(masks, "*.H");
  global.SetString(kHeaderExtension, "", 0);
  global.SetString(kAHeaderExtension, "", 0);
  filter.clear();
  masks.clear();
  _GetFilesMask(0, &filter, &masks, '|');
  EXPECT_EQ(filter, "All files (*.*)|*.*||");
  EXPECT_EQ(masks, "");
}

TEST_F(ExportsTest, MakeWithoutDefaultTargetOnlyTellsTheUser) {
  _CreateDefaultProject(0, 1);
  _DeleteTarget("demo - Debug");
  OutputCount() = 0;
  _Make(MakeModeMake, nullptr);
  EXPECT_EQ(ui.message_texts(), (std::vector<std::string>{"Target is not defined !"}));
  EXPECT_EQ(OutputCount(), 0);
}

TEST_F(ExportsTest, LocalLoadKeepsTheProjectObject) {
  BuildProject();
  CProjectData* before = State().project.get();
  // A per-user part that (wrongly) carries a compiler type.
  CSettingsRegistry writer(nullptr, true);
  writer.OpenKeyFromRoot("Project_Local", true);
  writer.WriteInt("CompilerType", 0);
  MemoryIStream stream;
  stream.Assign(writer.Serialize());
  _Transfer(stream.get(), 0, 1);
  EXPECT_EQ(State().project.get(), before);
}

TEST_F(ExportsTest, UnknownCompilerTypeLeavesNoProject) {
  BuildProject();
  CSettingsRegistry writer(nullptr, true);
  writer.OpenKeyFromRoot("Project", true);
  writer.WriteInt("CompilerType", 3);
  MemoryIStream stream;
  stream.Assign(writer.Serialize());
  EXPECT_EQ(_Transfer(stream.get(), 0, 0), 1);
  EXPECT_EQ(_WhatIsInProgress(), MakeStateNoProject);
}

TEST_F(ExportsTest, TransferOfGarbageChangesNothing) {
  BuildProject();
  MemoryIStream stream;
  stream.Assign("not a store at all");
  EXPECT_EQ(_Transfer(stream.get(), 0, 0), 1);
  std::string name;
  EXPECT_EQ(_GetProjectFileName(&name, 0), 3);
  EXPECT_TRUE(Codes().empty());
}

TEST_F(ExportsTest, DirectoryAndFileQueriesAnswerOnlyWhatTheyKnow) {
  BuildProject();
  std::string out = "kept";
  _GetDirectory(7, &out);
  _GetFile(1, &out);
  EXPECT_EQ(out, "kept");
  _GetDirectory(1, &out);
  EXPECT_EQ(out, Native("/proj/"));
  EXPECT_EQ(_GetFullNameOfProjectFile("sub/x.c", &out, 0, 0), 1);
  EXPECT_EQ(out, Native("/proj/sub/x.c"));
}

}  // namespace
}  // namespace quillon
