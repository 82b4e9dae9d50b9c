// The exports in-process: bad arguments, no project, texts for the user,
// stores that hold no project. tests/host drives the scenarios.
#include <gtest/gtest.h>

#include "interface/library_state.h"
#include "model/registry/settings_registry.h"
#include "platform/path.h"
#include "quillon/quillon.h"
#include "support/fake_file_system.h"
#include "support/fake_ui_services.h"
#include "support/memory_istream.h"
#include "support/native_path.h"

namespace quillon {
namespace {

// What the callbacks were told: change codes, and how many output records.
struct Told {
  std::vector<int> codes;
  int outputs = 0;
} heard;

int QUILLON_CALL RecordChange(intptr_t, intptr_t, int code) {
  heard.codes.push_back(code);
  return 0;
}

int QUILLON_CALL RecordHost(int code, void*) {
  if (code == HostOutput) ++heard.outputs;
  return 0;
}

class ExportsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    State().ui = &ui;
    _Set_IRF_FileName(Native("/proj/demo.irf").c_str());
    ASSERT_EQ(_InitProjectData(RecordChange, RecordHost), 1);
    heard = Told();
  }
  void TearDown() override {
    _DoneProjectData();
    State().ui = &UiServices::Default();
  }

  // A default project with a second target and three files in one group.
  void BuildProject() {
    _CreateDefaultProject(0, 1);
    _AddTarget("Release");
    for (const char* file : {"a.c", "b.c", "start.asm"}) _AddProjectFile(file, "Source files");
    heard.codes.clear();
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
  EXPECT_TRUE(heard.codes.empty());
}

TEST_F(ExportsTest, FilesMaskListsEachNonEmptyCategory) {
  using Mask = std::pair<std::string, std::string>;  // the filter, the source masks
  auto mask = [](int separator) {
    Mask out;
    _GetFilesMask(0, &out.first, &out.second, separator);
    return out;
  };
  EXPECT_EQ(mask('|'), Mask("Compiler files (*.C;*.CPP)|*.C;*.CPP|Assembler files (*.ASM)|*.ASM|"
                            "Header files (*.H)|*.H|Asm Header files (*.INC)|*.INC|"
                            "All files (*.*)|*.*||",
                            "*.C;*.CPP"));
  CGlobalOptions& global = State().project->global_options();
  global.SetString(kCInpExtensions, "", 0);
  global.SetString(kAInpExtensions, "", 0);
  // Only the separator's low byte counts.
  EXPECT_EQ(
      mask(0x100 + '|'),
      Mask("Header files (*.H)|*.H|Asm Header files (*.INC)|*.INC|All files (*.*)|*.*||", "*.H"));
  global.SetString(kHeaderExtension, "", 0);
  global.SetString(kAHeaderExtension, "", 0);
  EXPECT_EQ(mask('|'), Mask("All files (*.*)|*.*||", ""));
}

TEST_F(ExportsTest, MakeWithoutDefaultTargetOnlyTellsTheUser) {
  _CreateDefaultProject(0, 1);
  _DeleteTarget("demo - Debug");
  heard.outputs = 0;
  _Make(MakeModeMake, nullptr);
  EXPECT_EQ(ui.message_texts(), (std::vector<std::string>{"Target is not defined !"}));
  EXPECT_EQ(heard.outputs, 0);
}

// A store whose key holds one int; the bytes as a stream to transfer from.
void Assign(MemoryIStream* stream, const char* key, const char* name, int value) {
  CSettingsRegistry writer(nullptr, true);
  writer.OpenKeyFromRoot(key, true);
  writer.WriteInt(name, value);
  stream->Assign(writer.Serialize());
}

TEST_F(ExportsTest, TransfersThatCannotLoadAProject) {
  BuildProject();
  CProjectData* before = State().project.get();
  MemoryIStream stream;
  // A per-user part that (wrongly) carries a compiler type keeps the object.
  Assign(&stream, "Project_Local", "CompilerType", 0);
  _Transfer(stream.get(), 0, 1);
  EXPECT_EQ(State().project.get(), before);
  // Garbage changes nothing.
  heard.codes.clear();
  stream.Assign("not a store at all");
  EXPECT_EQ(_Transfer(stream.get(), 0, 0), 1);
  std::string name;
  EXPECT_EQ(_GetProjectFileName(&name, 0), 3);
  EXPECT_TRUE(heard.codes.empty());
  // An unknown compiler type leaves no project.
  Assign(&stream, "Project", "CompilerType", 3);
  EXPECT_EQ(_Transfer(stream.get(), 0, 0), 1);
  EXPECT_EQ(_WhatIsInProgress(), MakeStateNoProject);
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

TEST_F(ExportsTest, ProjectExportAsksWhereAndIsQuietOtherwise) {
  FakeFileSystem fs;
  fs.MakeDirectories(Native("/proj"));
  State().SetFileSystem(&fs);
  const std::string out = Native("/proj/out.xml");
  _ProjectExport();  // a project without targets: not even the dialog
  EXPECT_TRUE(ui.save_requests().empty());

  BuildProject();
  ui.QueueSaveAnswer(std::nullopt);
  ui.QueueSaveAnswer(out);
  _ProjectExport();
  EXPECT_TRUE(fs.files_written().empty());
  _ProjectExport();
  ASSERT_EQ(ui.save_requests().size(), 2u);
  EXPECT_EQ(ui.save_requests()[0].extension, "xml");
  EXPECT_EQ(ui.save_requests()[0].proposal, "*.xml");
  EXPECT_EQ(ui.save_requests()[0].filter, "XML files(*.xml)|*.xml|All files (*.*)|*.*");
  const std::string text = fs.Contents(out);
  EXPECT_NE(text.find("<Project Name=\"" + Native("/proj/demo.irf") + "\">"), std::string::npos);
  EXPECT_NE(text.find("\t\t<File>start.asm</File>"), std::string::npos);
  EXPECT_TRUE(heard.codes.empty());
  EXPECT_TRUE(ui.messages().empty());
  State().SetFileSystem(&FileSystem::Default());
}

}  // namespace
}  // namespace quillon
