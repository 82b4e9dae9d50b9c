// The dialogs as the IDE opens them: the 64-bit DLL loaded by name, each
// dialog opened through its export on this thread while a second thread
// finds it by title, drives it by control id, answers its message boxes
// and photographs it. The project is then checked through the query
// exports and the notifications received. Runs under Wine on a virtual
// display (dialogs_wine_test.sh).
//   dialogs_test [gtest flags] LIBRARY [SCREENSHOT_FOLDER]
#include <windows.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "gmock/gmock.h"
#include "gtest/gtest.h"
#include "host_library.h"
#include "host_recorder.h"
#include "window_driver.h"

namespace quillon {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Names = std::vector<std::string>;

HostLibrary& Q() { return Quillon(); }

constexpr char kDebug[] = "demo - Debug";
constexpr char kTargetInUse[] =
    "\n\nThis target name is already in use!\nPlease,choose a different name.";
constexpr char kGroupInUse[] =
    "\n\nThis group name is already in use!\nPlease,choose a different name.";

// Runs `drive` on a second thread while `open` runs the modal dialog here.
void WhileOpen(const std::function<void()>& open, const std::function<void()>& drive) {
  std::thread driver(drive);
  open();
  driver.join();
}

Names Targets() {
  Names names;
  std::string name;
  for (int i = 0; Q().GetTargetName(&name, i) > i; ++i) names.push_back(name);
  return names;
}

Names Groups(const std::string& target) {
  Names names;
  std::string name;
  for (int i = 0; Q().GetLinkGroupName(&name, i, target.c_str()) > i; ++i) names.push_back(name);
  return names;
}

Names FilesOf(const std::string& target, const std::string& group) {
  Names names;
  std::string name;
  for (int i = 0; Q().GetProjectFileNameByGroup(&name, i, target.c_str(), group.c_str()) > i; ++i) {
    names.push_back(name);
  }
  return names;
}

std::string DefaultTarget() {
  std::string name;
  Q().GetDefaultTargetName(&name);
  return name;
}

std::vector<int> Codes(const std::vector<Note>& notes) {
  std::vector<int> codes;
  for (const Note& note : notes) codes.push_back(note.code);
  return codes;
}

class DialogsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_THAT(Q().missing, IsEmpty());
    dir_ = std::filesystem::temp_directory_path() / "quillon-dialogs";
    std::filesystem::create_directories(dir_);
    Q().Set_IRF_FileName((dir_ / "demo.qpj").string().c_str());
    ASSERT_EQ(Q().InitProjectData(RecordChange, RecordHost), 1);
    Q().CreateDefaultProject(0, 1);
    TakeNotes();
    TakeOutputs();
  }
  void TearDown() override { Q().DoneProjectData(); }

  void WithFiles(const Names& files) {
    for (const std::string& file : files) std::ofstream(dir_ / file) << "int x;\n";
  }

  std::filesystem::path dir_;
};

TEST_F(DialogsTest, TargetsNewRenameSetDefaultDeleteThenOk) {
  WhileOpen([] { Q().DoTargetsDialog(); },
            [] {
              HWND targets = WaitForDialog("Targets");
              ASSERT_NE(targets, nullptr);
              EXPECT_THAT(ListEntries(targets, 1501), ElementsAre(kDebug));
              EXPECT_EQ(TextOf(Control(targets, 1701)), kDebug);
              Screenshot("targets");

              Click(targets, 1901);
              HWND added = WaitForDialog("New Target");
              ASSERT_NE(added, nullptr);
              EXPECT_FALSE(IsWindowEnabled(Control(added, 1596)))
                  << "the combo box starts disabled";
              EXPECT_TRUE(IsWindowEnabled(Control(added, 1594)));
              Type(added, 1593, std::string(" ") + kDebug + " ");
              Click(added, IDOK);
              EXPECT_EQ(AnswerMessageBox(IDOK), kDebug + std::string(kTargetInUse));
              Type(added, 1593, "Release");
              SendMessageA(Control(added, 1594), BM_SETCHECK, BST_CHECKED, 0);
              SendMessageA(Control(added, 1595), BM_SETCHECK, BST_UNCHECKED, 0);
              Press(added, 1594);
              EXPECT_THAT(ComboEntries(added, 1596), ElementsAre(kDebug));
              EXPECT_TRUE(IsWindowEnabled(Control(added, 1596)));
              Screenshot("new_target");
              PressKey(added, VK_RETURN);  // OK is the default button
              ASSERT_TRUE(WaitUntilClosed(added));
              EXPECT_TRUE(Eventually([&] {
                return ListEntries(targets, 1501) == Names{kDebug, "Release"};
              }));

              SelectInList(targets, 1501, 1);
              Press(targets, 1904);
              EXPECT_EQ(TextOf(Control(targets, 1701)), "Release");

              Click(targets, 1903);
              HWND rename = WaitForDialog("Rename Target");
              ASSERT_NE(rename, nullptr);
              EXPECT_EQ(TextOf(Control(rename, 1591)), "Release");
              EXPECT_EQ(TextOf(Control(rename, 1592)), "Release");
              Type(rename, 1592, "");
              EXPECT_FALSE(IsWindowEnabled(Control(rename, IDOK))) << "no OK for an empty name";
              Type(rename, 1592, kDebug);
              Click(rename, IDOK);
              EXPECT_EQ(AnswerMessageBox(IDOK), kDebug + std::string(kTargetInUse));
              Type(rename, 1592, "Final");
              Screenshot("rename_target");
              Click(rename, IDOK);
              ASSERT_TRUE(WaitUntilClosed(rename));

              SelectInList(targets, 1501, 0);
              Click(targets, 1902);
              EXPECT_EQ(AnswerMessageBox(IDYES),
                        kDebug + std::string("\n\nAre you sure you want to delete this target ?"));
              EXPECT_TRUE(Eventually([&] { return ListEntries(targets, 1501) == Names{"Final"}; }));
              EXPECT_EQ(TextOf(Control(targets, 1701)), "Final");
              Click(targets, IDOK);
              EXPECT_TRUE(WaitUntilClosed(targets));
            });
  EXPECT_THAT(Targets(), ElementsAre("Final"));
  EXPECT_EQ(DefaultTarget(), "Final");
  // The scan of the new default target tells its own news (code 4).
  EXPECT_THAT(Codes(TakeNotes()),
              ElementsAre(ProjectChangeBegin, ProjectChangeModified, ProjectChangeDependencies,
                          ProjectChangeReloaded, ProjectChangeEnd));
  EXPECT_THAT(TakeOutputs(), Contains(Output{OutputBuildMessages, OutputDependencyUpdate, ""}));
}

TEST_F(DialogsTest, EscapeCancelsTheTargetsDialogAndItsEdits) {
  WhileOpen([] { Q().DoTargetsDialog(); },
            [] {
              HWND targets = WaitForDialog("Targets");
              ASSERT_NE(targets, nullptr);
              SelectInList(targets, 1501, 0);
              Click(targets, 1902);
              EXPECT_NE(AnswerMessageBox(IDYES), "");
              EXPECT_TRUE(Eventually([&] { return ListEntries(targets, 1501).empty(); }));
              EXPECT_EQ(TextOf(Control(targets, 1701)), "");
              PressKey(targets, VK_ESCAPE);
              EXPECT_TRUE(WaitUntilClosed(targets));
            });
  EXPECT_THAT(Targets(), ElementsAre(kDebug));
  EXPECT_EQ(DefaultTarget(), kDebug);
  EXPECT_THAT(Codes(TakeNotes()), ElementsAre(ProjectChangeBegin, ProjectChangeEnd));
}

TEST_F(DialogsTest, NewGroupRefusesANameInUse) {
  WhileOpen([] { Q().DoNewGroupDialog(); },
            [] {
              HWND group = WaitForDialog("New Group");
              ASSERT_NE(group, nullptr);
              EXPECT_FALSE(IsWindowEnabled(Control(group, IDOK)));
              Type(group, 1201, "Source files ");
              Click(group, IDOK);
              EXPECT_EQ(AnswerMessageBox(IDOK), "Source files" + std::string(kGroupInUse));
              Type(group, 1201, "Drivers");
              Screenshot("new_group");
              Click(group, IDOK);
              EXPECT_TRUE(WaitUntilClosed(group));
            });
  EXPECT_THAT(Groups(kDebug), ElementsAre("Source files", "Drivers"));
  EXPECT_THAT(TakeNotes(),
              ElementsAre(Begin(), Named(ProjectChangeGroupAdded, "Drivers", ""), End()));
}

TEST_F(DialogsTest, NewGroupWithoutTargetAsksFirst) {
  Q().DeleteTarget(kDebug);
  TakeNotes();
  WhileOpen(
      [] { Q().DoNewGroupDialog(); },
      [] { EXPECT_EQ(AnswerMessageBox(IDNO), "First you must add a project target.\nAdd now?"); });
  EXPECT_THAT(Codes(TakeNotes()), ElementsAre(ProjectChangeBegin, ProjectChangeEnd));
}

TEST_F(DialogsTest, LinkOrderMovesAGroupDownAndBackAndAFileUp) {
  Q().AddLinkGroup("Drivers");
  for (const char* file : {"main.c", "util.c"}) Q().AddProjectFile(file, "Source files");
  TakeNotes();
  WhileOpen([] { Q().DoLinkOrderDialog(); },
            [] {
              HWND order = WaitForDialog("Select Link Order");
              ASSERT_NE(order, nullptr);
              EXPECT_THAT(ListEntries(order, 1501), ElementsAre("Source files", "Drivers"));
              EXPECT_THAT(ListEntries(order, 1502), ElementsAre("main.c", "util.c"));
              Screenshot("link_order");
              ClickArrow(order, 2401, false);
              EXPECT_THAT(ListEntries(order, 1501), ElementsAre("Drivers", "Source files"));
              EXPECT_EQ(ListSelection(order, 1501), 1);
              ClickArrow(order, 2401, true);
              EXPECT_THAT(ListEntries(order, 1501), ElementsAre("Source files", "Drivers"));
              SelectInList(order, 1502, 1);
              ClickArrow(order, 2402, true);
              EXPECT_THAT(ListEntries(order, 1502), ElementsAre("util.c", "main.c"));
              ClickArrow(order, 2402, true);  // already first
              EXPECT_THAT(ListEntries(order, 1502), ElementsAre("util.c", "main.c"));
              Click(order, IDOK);
              EXPECT_TRUE(WaitUntilClosed(order));
            });
  EXPECT_THAT(Groups(kDebug), ElementsAre("Source files", "Drivers"));
  EXPECT_THAT(FilesOf(kDebug, "Source files"), ElementsAre("util.c", "main.c"));
  EXPECT_THAT(Codes(TakeNotes()),
              ElementsAre(ProjectChangeBegin, ProjectChangeModified, ProjectChangeEnd));
}

TEST_F(DialogsTest, ProjectFilesAddsToTheChosenGroupAndRemoves) {
  Q().AddLinkGroup("Drivers");
  WithFiles({"main.c", "util.c", "uart.c", "notes.txt"});
  SetCurrentDirectoryA(dir_.string().c_str());
  TakeNotes();
  int result = -1;
  WhileOpen([&] { result = Q().DoAddProjectFileDialog(1); },
            [] {
              HWND files = WaitForDialog("Project Files");
              ASSERT_NE(files, nullptr);
              EXPECT_THAT(ComboEntries(files, 1601), ElementsAre("Source files", "Drivers"));
              EXPECT_EQ(SendMessageA(Control(files, 1601), CB_GETCURSEL, 0, 0), 1);
              Type(files, 1148, "uart.c");  // the file name box
              Type(files, 1152, "uart.c");
              Click(files, IDOK);
              EXPECT_TRUE(Eventually([&] { return ListEntries(files, 1501) == Names{"uart.c"}; }));
              Type(files, 1148, "uart.c");
              Type(files, 1152, "uart.c");
              Click(files, IDOK);
              EXPECT_EQ(AnswerMessageBox(IDOK), "File is already in Project!");

              SelectInCombo(files, 1601, 0);
              EXPECT_THAT(ListEntries(files, 1501), IsEmpty());
              Click(files, 1902);  // Add All: the C files the first filter shows
              EXPECT_EQ(AnswerMessageBox(IDOK), "Some files were already in Project!");
              EXPECT_TRUE(Eventually([&] {
                return ListEntries(files, 1501) == Names{"main.c", "util.c"};
              }));
              Screenshot("project_files");
              SendMessageA(Control(files, 1501), LB_SETSEL, TRUE, 0);
              Press(files, 1901);
              EXPECT_THAT(ListEntries(files, 1501), ElementsAre("util.c"));
              Click(files, 1903);
              EXPECT_TRUE(WaitUntilClosed(files));
            });
  EXPECT_EQ(result, 1);
  EXPECT_THAT(FilesOf(kDebug, "Source files"), ElementsAre("util.c"));
  EXPECT_THAT(FilesOf(kDebug, "Drivers"), ElementsAre("uart.c"));
  const std::vector<Note> notes = TakeNotes();
  EXPECT_THAT(notes, Contains(Named(ProjectChangeFileAdded, "$(IRFDIR)uart.c", "Drivers")));
  EXPECT_THAT(notes, Contains(Named(ProjectChangeFileRemoved, "$(IRFDIR)main.c", "Source files")));
}

TEST_F(DialogsTest, ProjectFilesWithoutGroupAsksForOne) {
  Q().DeleteLinkGroup("Source files");
  TakeNotes();
  int result = -1;
  WhileOpen(
      [&] { result = Q().DoAddProjectFileDialog(0); },
      [] { EXPECT_EQ(AnswerMessageBox(IDNO), "First you must add a project group.\nAdd now?"); });
  EXPECT_EQ(result, 0);
}

}  // namespace
}  // namespace quillon

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  if (argc < 2) {
    fprintf(stderr, "usage: dialogs_test [gtest flags] LIBRARY [SCREENSHOT_FOLDER]\n");
    return 2;
  }
  if (argc > 2) quillon::SetScreenshotFolder(argv[2]);
  std::string error;
  if (!quillon::LoadHostLibrary(argv[1], &quillon::Quillon(), &error)) {
    fprintf(stderr, "cannot load %s: %s\n", argv[1], error.c_str());
    return 1;
  }
  return RUN_ALL_TESTS();
}
