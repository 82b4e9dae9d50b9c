// The project settings sheet as the IDE opens it: through its export, on
// this thread, while a second thread picks tree items, edits the grid's
// cells in place and answers the sheet's questions. What OK wrote is read
// back from the project saved afterwards, through the store.
#include <windows.h>
// After windows.h, which they need.
#include <commctrl.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "gmock/gmock.h"
#include "gtest/gtest.h"
#include "host_library.h"
#include "host_recorder.h"
#include "model/registry/byte_stream.h"
#include "model/registry/settings_registry.h"
#include "support/memory_istream.h"
#include "window_driver.h"

namespace quillon {
namespace {

using ::testing::ElementsAre;
using Names = std::vector<std::string>;

HostLibrary& Q() { return Quillon(); }

// Control ids of the settings pages and their dialogs.
enum : int {
  kTree = 2501,
  kGrid = 2502,
  kCellEdit = 2503,
  kCellCombo = 2504,
  kSetToDefault = 2505,
  kSetToTarget = 2506,
  kInsertMacro = 2507,
  kErrorFiles = 2508,
  kListItems = 2521,
  kListText = 2522,
  kListAdd = 2523,
  kUseDefaultCompiler = 2541,
  kCustomCompiler = 2544,
};
enum Page { kGeneral, kCompiler, kAssembler, kLinker, kFileTypes, kIncludes, kCustomize };
constexpr const char* kPageShots[] = {
    "settings_general",   "settings_compiler",   "settings_assembler",
    "settings_linker",    "settings_file_types", "settings_includes",
    "settings_customize", "settings_advanced",   "settings_run_before_after",
};
constexpr char kTarget[] = "demo - Debug";

void WhileOpen(const std::function<void()>& open, const std::function<void()>& drive) {
  std::thread driver(drive);
  open();
  driver.join();
}

HWND CurrentPage(HWND sheet) {
  return reinterpret_cast<HWND>(::SendMessageA(sheet, PSM_GETCURRENTPAGEHWND, 0, 0));
}

// Switches pages as a click on a tab does; false when the page refused.
bool ShowPage(HWND sheet, int page) {
  ::SendMessageA(sheet, PSM_SETCURSEL, static_cast<WPARAM>(page), 0);
  return ::SendMessageA(sheet, PSM_HWNDTOINDEX, reinterpret_cast<WPARAM>(CurrentPage(sheet)), 0) ==
         page;
}

std::string CellText(HWND page, int row, int column) {
  char text[1024] = "";
  LVITEMA item = {};
  item.iSubItem = column;
  item.pszText = text;
  item.cchTextMax = sizeof text;
  ::SendMessageA(Control(page, kGrid), LVM_GETITEMTEXTA, static_cast<WPARAM>(row),
                 reinterpret_cast<LPARAM>(&item));
  return text;
}

int RowOf(HWND page, const std::string& label) {
  const int rows = static_cast<int>(::SendMessageA(Control(page, kGrid), LVM_GETITEMCOUNT, 0, 0));
  for (int row = 0; row < rows; ++row) {
    if (CellText(page, row, 0) == label) return row;
  }
  return -1;
}

std::string ValueOf(HWND page, const std::string& label) {
  return CellText(page, RowOf(page, label), 1);
}

// Focuses the row and presses F2, which opens its editor; the editor
// control, once it is there (a list's row opens a dialog instead).
HWND OpenCell(HWND page, const std::string& label, int editor_id) {
  HWND grid = Control(page, kGrid);
  // The last cell's editor first goes, so that it is not taken for this one.
  EXPECT_TRUE(Eventually(
      [&] { return Control(page, kCellEdit) == nullptr && Control(page, kCellCombo) == nullptr; }));
  const int row = RowOf(page, label);
  EXPECT_GE(row, 0) << label;
  LVITEMA state = {};
  state.stateMask = state.state = LVIS_SELECTED | LVIS_FOCUSED;
  ::SendMessageA(grid, LVM_SETITEMSTATE, static_cast<WPARAM>(row),
                 reinterpret_cast<LPARAM>(&state));
  ::PostMessageA(grid, WM_KEYDOWN, VK_F2, 1);
  HWND editor = nullptr;
  if (editor_id != 0) Eventually([&] { return (editor = Control(page, editor_id)) != nullptr; });
  return editor;
}

void PressOn(HWND window, UINT key) {
  ::PostMessageA(window, WM_KEYDOWN, key, 1);
  ::PostMessageA(window, WM_KEYUP, key, 0xC0000001);
}

// Types into a cell's edit and presses Return there.
void EnterInCell(HWND page, const std::string& label, const std::string& text) {
  HWND edit = OpenCell(page, label, kCellEdit);
  ASSERT_NE(edit, nullptr) << label;
  Type(page, kCellEdit, text);
  PressOn(edit, VK_RETURN);
  // Taken, or refused with a message box.
  EXPECT_TRUE(Eventually(
      [&] { return !::IsWindow(edit) || ::FindWindowA("#32770", "Quillon") != nullptr; }));
}

void ChooseInCell(HWND page, const std::string& label, const std::string& choice) {
  ASSERT_NE(OpenCell(page, label, kCellCombo), nullptr) << label;
  const Names entries = ComboEntries(page, kCellCombo);
  const auto at = std::find(entries.begin(), entries.end(), choice);
  ASSERT_NE(at, entries.end()) << choice;
  SelectInCombo(page, kCellCombo, static_cast<int>(at - entries.begin()));
  EXPECT_TRUE(Eventually([&] { return Control(page, kCellCombo) == nullptr; }));
}

// The tree item at `path` (target, group, file below the project).
HTREEITEM TreeItem(HWND page, const Names& path) {
  HWND tree = Control(page, kTree);
  HTREEITEM item = TreeView_GetRoot(tree);
  for (const std::string& name : path) {
    item = TreeView_GetChild(tree, item);
    for (; item != nullptr; item = TreeView_GetNextSibling(tree, item)) {
      char text[256] = "";
      TVITEMA get = {};
      get.mask = TVIF_TEXT;
      get.hItem = item;
      get.pszText = text;
      get.cchTextMax = sizeof text;
      ::SendMessageA(tree, TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&get));
      if (name == text) break;
    }
    if (item == nullptr) return nullptr;
  }
  return item;
}

void PickInTree(HWND page, const Names& path) {
  HTREEITEM item = TreeItem(page, path);
  ASSERT_NE(item, nullptr);
  TreeView_SelectItem(Control(page, kTree), item);
}

void CheckInTree(HWND page, const Names& path, bool checked = true) {
  HTREEITEM item = TreeItem(page, path);
  ASSERT_NE(item, nullptr);
  TreeView_SetItemState(Control(page, kTree), item, INDEXTOSTATEIMAGEMASK(checked ? 2 : 1),
                        TVIS_STATEIMAGEMASK);
}

bool ShownBold(HWND page, const Names& path) {
  return (TreeView_GetItemState(Control(page, kTree), TreeItem(page, path), TVIS_BOLD) &
          TVIS_BOLD) != 0;
}

// Adds `entries` in the list editor that `label`'s cell opens; the entry at
// `checked` gets its check box.
void AddInListEditor(HWND page, const std::string& label, const std::string& title,
                     const Names& entries, int checked, const char* shot) {
  OpenCell(page, label, 0);
  HWND editor = WaitForDialog(title.c_str());
  ASSERT_NE(editor, nullptr) << title;
  for (const std::string& entry : entries) {
    Type(editor, kListText, entry);
    Press(editor, kListAdd);
  }
  if (checked >= 0) {
    LVITEMA state = {};
    state.stateMask = LVIS_STATEIMAGEMASK;
    state.state = INDEXTOSTATEIMAGEMASK(2);
    ::SendMessageA(Control(editor, kListItems), LVM_SETITEMSTATE, static_cast<WPARAM>(checked),
                   reinterpret_cast<LPARAM>(&state));
  }
  if (shot != nullptr) Screenshot(shot);
  Click(editor, IDOK);
  EXPECT_TRUE(WaitUntilClosed(editor));
}

// The saved project, opened through the store.
class SavedProject {
 public:
  SavedProject() {
    MemoryIStream stream;
    EXPECT_EQ(Q().Transfer(stream.get(), 1, 0), 1);
    bytes_ = MemoryByteStream(stream.Contents());
    store_ = std::make_unique<CSettingsRegistry>(&bytes_, false);
    EXPECT_EQ(store_->LastError(), 0);
  }
  std::string String(const std::string& key, const std::string& name) {
    std::string value = "(missing)";
    if (store_->OpenKeyFromRoot("Project\\" + key, false)) store_->ReadString(name, &value);
    return value;
  }
  int Int(const std::string& key, const std::string& name) {
    int32_t value = -1;
    if (store_->OpenKeyFromRoot("Project\\" + key, false)) store_->ReadInt(name, &value);
    return value;
  }
  Names List(const std::string& key, const std::string& name) {
    Names value;
    if (store_->OpenKeyFromRoot("Project\\" + key, false)) store_->ReadStringList(name, &value);
    return value;
  }
  const std::string& bytes() const { return bytes_.contents(); }

 private:
  MemoryByteStream bytes_;
  std::unique_ptr<CSettingsRegistry> store_;
};

constexpr char kTargetKey[] = "Project[0]\\Target[0]\\TargetOptios";
std::string FileKey(int index) {
  return "Project[0]\\Target[0]\\LinkGroup[0]\\File[" + std::to_string(index) + "]\\FileOptios";
}

class SettingsDialogTest : public ::testing::Test {
 protected:
  void SetUp() override {
    const std::filesystem::path dir = std::filesystem::temp_directory_path() / "quillon-settings";
    std::filesystem::create_directories(dir);
    Q().Set_IRF_FileName((dir / "demo.qpj").string().c_str());
    ASSERT_EQ(Q().InitProjectData(RecordChange, RecordHost), 1);
    Q().CreateDefaultProject(0, 1);
    for (const char* file : {"main.c", "util.c", "start.asm"}) {
      Q().AddProjectFile(file, "Source files");
    }
    TakeNotes();
  }
  void TearDown() override { Q().DoneProjectData(); }
};

TEST_F(SettingsDialogTest, EditsEveryKindOfOptionAndOkSavesThemAtTheirLevels) {
  int result = -1;
  WhileOpen(
      [&] { result = Q().DoProjectSettingsDialog(); },
      [] {
        HWND sheet = WaitForDialog("Project Settings");
        ASSERT_NE(sheet, nullptr);
        // Target level: the sheet opens on the default target.
        HWND page = CurrentPage(sheet);
        EXPECT_EQ(ValueOf(page, "Error Filter"), "No filter");
        EnterInCell(page, "Target directory", "out\\debug");
        EXPECT_TRUE(Eventually([&] { return ValueOf(page, "Target directory") == "out\\debug"; }));
        ChooseInCell(page, "Error Filter", "GCC");
        EXPECT_EQ(ValueOf(page, "Error Filter"), "GCC");

        Click(page, kErrorFiles);
        HWND files = WaitForDialog("Advanced");
        ASSERT_NE(files, nullptr);
        EXPECT_EQ(TextOf(Control(files, 2531)), "GCC");
        ::SendMessageA(Control(files, kUseDefaultCompiler), BM_SETCHECK, BST_UNCHECKED, 0);
        Press(files, kUseDefaultCompiler);
        EXPECT_TRUE(IsWindowEnabled(Control(files, kCustomCompiler)));
        Type(files, kCustomCompiler, "$(NOEXT).gcc");
        Screenshot("settings_error_files");
        Click(files, IDOK);
        ASSERT_TRUE(WaitUntilClosed(files));

        ASSERT_TRUE(ShowPage(sheet, kLinker));
        page = CurrentPage(sheet);
        ChooseInCell(page, "One command file line per file", "Yes");
        EnterInCell(page, "Options", "-m $(OUTPUTDIR)map");
        // A number that is none is refused, and the editor keeps it.
        const char* separator = "Code of the file list separator character";
        EnterInCell(page, separator, "semicolon");
        EXPECT_THAT(AnswerMessageBox(IDOK), ::testing::HasSubstr("semicolon"));
        ASSERT_NE(Control(page, kCellEdit), nullptr);
        Type(page, kCellEdit, "59");
        PressOn(Control(page, kCellEdit), VK_RETURN);
        EXPECT_TRUE(Eventually([&] { return ValueOf(page, separator) == "59"; }));

        // Global lists, edited in their own dialog.
        ASSERT_TRUE(ShowPage(sheet, kIncludes));
        page = CurrentPage(sheet);
        AddInListEditor(page, "Include paths", "Include paths", {"inc", "lib"}, 1,
                        "settings_list_editor");
        EXPECT_TRUE(Eventually(
            [&] { return ValueOf(page, "Include paths") == "inc; lib (+subdirectories)"; }));
        // The page keeps the user until the keyword rule holds.
        ChooseInCell(page, "Check Assembler Includes", "Yes");
        ::PostMessageA(sheet, PSM_SETCURSEL, kCustomize, 0);
        EXPECT_EQ(AnswerMessageBox(IDOK), "Please specify the include keyword");
        EXPECT_EQ(CurrentPage(sheet), page);
        EnterInCell(page, "Include Keyword", "INCLUDE");
        EXPECT_TRUE(Eventually([&] { return ValueOf(page, "Include Keyword") == "INCLUDE"; }));

        ASSERT_TRUE(ShowPage(sheet, kCustomize));
        page = CurrentPage(sheet);
        AddInListEditor(page, "Environment (NAME=value, one per line)",
                        "Environment (NAME=value, one per line)", {"TOOLS=C:\\tools"}, -1, nullptr);
        EXPECT_TRUE(Eventually([&] {
          return ValueOf(page, "Environment (NAME=value, one per line)") == "TOOLS=C:\\tools";
        }));

        // File level: main.c gets its own compiler options, with a macro from
        // the menu at the caret.
        ASSERT_TRUE(ShowPage(sheet, kCompiler));
        page = CurrentPage(sheet);
        PickInTree(page, {kTarget, "Source files", "main.c"});
        EXPECT_TRUE(Eventually([&] { return ValueOf(page, "Options") == "$(EDNAME)"; }));
        EXPECT_FALSE(ShownBold(page, {kTarget, "Source files", "main.c"}));
        HWND edit = OpenCell(page, "Options", kCellEdit);
        ASSERT_NE(edit, nullptr);
        Type(page, kCellEdit, "-O2 ");
        ::SendMessageA(edit, EM_SETSEL, 4, 4);
        Click(page, kInsertMacro);
        HWND menu = nullptr;
        ASSERT_TRUE(
            Eventually([&] { return (menu = ::FindWindowA("#32768", nullptr)) != nullptr; }));
        Screenshot("settings_macro_menu");
        PressOn(menu, VK_DOWN);
        PressOn(menu, VK_DOWN);  // the second: $(NOEXT)
        PressOn(menu, VK_RETURN);
        EXPECT_TRUE(Eventually([&] { return TextOf(edit) == "-O2 $(NOEXT)"; })) << TextOf(edit);
        PressOn(edit, VK_RETURN);
        EXPECT_TRUE(Eventually([&] { return ValueOf(page, "Options") == "-O2 $(NOEXT)"; }));
        EXPECT_TRUE(ShownBold(page, {kTarget, "Source files", "main.c"}));
        ChooseInCell(page, "Assemble the compiler's output", "Yes");

        // Two files that differ show blank; a value set for both is theirs.
        CheckInTree(page, {kTarget, "Source files", "util.c"});
        PickInTree(page, {kTarget, "Source files", "util.c"});
        CheckInTree(page, {kTarget, "Source files", "main.c"});
        PickInTree(page, {kTarget, "Source files", "main.c"});
        EXPECT_TRUE(Eventually([&] { return ValueOf(page, "Options") == ""; }));
        Screenshot("settings_compiler_files");

        // The pages as the target shows them.
        CheckInTree(page, {kTarget, "Source files", "util.c"}, false);
        CheckInTree(page, {kTarget, "Source files", "main.c"}, false);
        PickInTree(page, {kTarget});
        EXPECT_TRUE(Eventually([&] { return ValueOf(page, "Options") == "$(EDNAME)"; }));
        for (int shown = 0; shown < 9; ++shown) {
          ASSERT_TRUE(ShowPage(sheet, shown));
          Screenshot(kPageShots[shown]);
        }
        Click(sheet, IDOK);
        EXPECT_TRUE(WaitUntilClosed(sheet));
      });
  EXPECT_EQ(result, 1);
  EXPECT_THAT(TakeNotes(), ElementsAre(Begin(), Note{ProjectChangeOptions}, Modified(), End()));

  SavedProject saved;
  EXPECT_EQ(saved.String(kTargetKey, "TargetDirectory"), "out\\debug");
  EXPECT_EQ(saved.String(kTargetKey, "LinkerOptions"), "-m $(OUTPUTDIR)map");
  EXPECT_EQ(saved.String(kTargetKey, "CRLF"), "Yes");
  EXPECT_EQ(saved.Int(kTargetKey, "TranslateCharacter"), 59);
  EXPECT_EQ(saved.String("Project[0]", "FilterName"), "GCC");
  EXPECT_EQ(saved.String("Project[0]\\AdvancedLinkerOptions", "CmpUseDefaultName"), "False");
  EXPECT_EQ(saved.String("Project[0]\\AdvancedLinkerOptions", "CmpCustomFilterName"),
            "$(NOEXT).gcc");
  EXPECT_THAT(saved.List("GlobalOptions", "IncludePaths"), ElementsAre("inc", "lib"));
  EXPECT_THAT(saved.List("GlobalOptions", "EnvironmentSettings"), ElementsAre("TOOLS=C:\\tools"));
  EXPECT_EQ(saved.String("GlobalOptions", "DF_Keyword"), "INCLUDE");
  // main.c holds its own options; util.c still follows its target.
  EXPECT_EQ(saved.String(FileKey(0), "CompilerOptions"), "-O2 $(NOEXT)");
  EXPECT_EQ(saved.String(FileKey(0), "CompilerOptionsWR"), "True");
  EXPECT_EQ(saved.String(FileKey(0), "RunAssembler"), "Yes");
  EXPECT_EQ(saved.String(FileKey(0), "RunAssemblerWR"), "True");
  EXPECT_EQ(saved.String(FileKey(1), "CompilerOptions"), "$(EDNAME)");
  EXPECT_EQ(saved.String(FileKey(1), "CompilerOptionsWR"), "False");
}

TEST_F(SettingsDialogTest, FallbacksAskThenResetFilesAndTargets) {
  int result = -1;
  WhileOpen(
      [&] { result = Q().DoProjectSettingsDialog(); },
      [] {
        HWND sheet = WaitForDialog("Project Settings");
        ASSERT_NE(sheet, nullptr);
        ASSERT_TRUE(ShowPage(sheet, kCompiler));
        HWND page = CurrentPage(sheet);
        EnterInCell(page, "Options", "-g $(EDNAME)");  // the target's, for every file
        EXPECT_TRUE(Eventually([&] { return ValueOf(page, "Options") == "-g $(EDNAME)"; }));
        PickInTree(page, {kTarget, "Source files", "util.c"});
        EnterInCell(page, "Options", "-Os");
        EXPECT_TRUE(Eventually([&] {
          return ShownBold(page, {kTarget, "Source files", "util.c"});
        }));
        Click(page, kSetToTarget);
        EXPECT_EQ(AnswerMessageBox(IDYES),
                  "Do you realy want to set the options of selected files to it's target value?");
        EXPECT_TRUE(Eventually([&] { return ValueOf(page, "Options") == "-g $(EDNAME)"; }));
        EXPECT_FALSE(ShownBold(page, {kTarget, "Source files", "util.c"}));

        PickInTree(page, {kTarget});
        Click(page, kSetToDefault);
        EXPECT_EQ(AnswerMessageBox(IDNO),
                  "Do you realy want to set options of selected targets to it's default value ?");
        EXPECT_EQ(ValueOf(page, "Options"), "-g $(EDNAME)");
        Click(page, kSetToDefault);
        EXPECT_NE(AnswerMessageBox(IDYES), "");
        EXPECT_TRUE(Eventually([&] { return ValueOf(page, "Options") == "$(EDNAME)"; }));
        PressKey(sheet, VK_RETURN);  // OK is the default button
        EXPECT_TRUE(WaitUntilClosed(sheet));
      });
  EXPECT_EQ(result, 1);
  SavedProject saved;
  EXPECT_EQ(saved.String("Project[0]\\Target[0]\\FileOptios", "CompilerOptions"), "$(EDNAME)");
  for (int file : {0, 1}) {
    EXPECT_EQ(saved.String(FileKey(file), "CompilerOptions"), "$(EDNAME)") << file;
    EXPECT_EQ(saved.String(FileKey(file), "CompilerOptionsWR"), "False") << file;
  }
}

TEST_F(SettingsDialogTest, CancelChangesNothing) {
  const std::string before = SavedProject().bytes();
  int result = -1;
  WhileOpen([&] { result = Q().DoProjectSettingsDialog(); },
            [] {
              HWND sheet = WaitForDialog("Project Settings");
              ASSERT_NE(sheet, nullptr);
              ASSERT_TRUE(ShowPage(sheet, kFileTypes));
              HWND page = CurrentPage(sheet);
              EnterInCell(page, "C sources", "C;CXX");
              EXPECT_TRUE(Eventually([&] { return ValueOf(page, "C sources") == "C;CXX"; }));
              PressKey(sheet, VK_ESCAPE);
              EXPECT_TRUE(WaitUntilClosed(sheet));
            });
  EXPECT_EQ(result, 0);
  EXPECT_THAT(TakeNotes(), ElementsAre(Begin(), End()));
  EXPECT_EQ(SavedProject().bytes(), before);
}

}  // namespace
}  // namespace quillon
