// The dialogs' logic on a project of its own: every rule a button follows.
#include <gtest/gtest.h>

#include <algorithm>

#include "ui/dialog_texts.h"
#include "unit/ui/dialog_test_support.h"

namespace quillon {
namespace {

using Names = std::vector<std::string>;

class DialogsTest : public ::testing::Test {
 protected:
  RecordingDialogHost host;
  CProjectData& project = *host.current;

  // Targets "A", "B", "C" ("B" the default); groups "G1", "G2" with files.
  static void ThreeTargets(CProjectData& p) {
    for (const char* name : {"A", "B", "C"}) p.AddTarget(name, "");
    p.SetDefaultTarget(p.FindTarget("B"));
    p.AddLinkGroup("G1");
    p.AddLinkGroup("G2");
    for (const char* file : {"src/one.c", "src/two.c", "three.s"}) p.AddFile(file, "G1");
  }
  void ThreeTargets() { ThreeTargets(project); }
};

TEST_F(DialogsTest, DeletingMovesTheDefaultToTheFirstRemainingTarget) {
  struct Case {
    Names deleted;
    std::string default_after;
    Names left;
  };
  const Case cases[] = {
      {{"A"}, "B", {"B", "C"}},  // not the default: it stays
      {{"B"}, "A", {"A", "C"}},
      {{"B", "A"}, "C", {"C"}},
      {{"B", "A", "C"}, "", {}},
  };
  for (const Case& c : cases) {
    std::unique_ptr<CProjectData> own = CProjectData::Create();
    ThreeTargets(*own);
    CTargetsDialog dialog(*own, host.fake_ui, host.scripted);
    for (const std::string& name : c.deleted) {
      const Names names = dialog.names();
      dialog.Select(static_cast<int>(std::find(names.begin(), names.end(), name) - names.begin()));
      host.fake_ui.QueueAnswer(MessageBoxAnswer::kYes);
      dialog.Delete();
    }
    EXPECT_EQ(dialog.current_target(), c.default_after) << c.deleted.back();
    EXPECT_EQ(dialog.names(), c.left);
    EXPECT_TRUE(dialog.changed());
  }
}

TEST_F(DialogsTest, DeleteAsksByNameAndNoKeepsTheTarget) {
  ThreeTargets();
  CTargetsDialog dialog(project, host.fake_ui, host.scripted);
  dialog.Select(1);
  host.fake_ui.QueueAnswer(MessageBoxAnswer::kNo);
  dialog.Delete();
  ASSERT_EQ(host.fake_ui.messages().size(), 1u);
  EXPECT_EQ(host.fake_ui.messages()[0].text, "B\n\nAre you sure you want to delete this target ?");
  EXPECT_EQ(host.fake_ui.messages()[0].kind, MessageBoxKind::kYesNoQuestion);
  EXPECT_EQ(dialog.names(), (Names{"A", "B", "C"}));
  EXPECT_FALSE(dialog.changed());
}

TEST_F(DialogsTest, ButtonsWithoutASelectionDoNothing) {
  CTargetsDialog empty(project, host.fake_ui, host.scripted);
  EXPECT_EQ(empty.selection(), -1);
  empty.Delete();
  empty.SetDefault();
  empty.Rename();
  EXPECT_TRUE(host.fake_ui.messages().empty());
  EXPECT_TRUE(host.scripted.runs.empty());
  EXPECT_FALSE(empty.changed());
}

TEST_F(DialogsTest, SetDefaultMakesTheSelectedTargetTheDefault) {
  ThreeTargets();
  CTargetsDialog dialog(project, host.fake_ui, host.scripted);
  EXPECT_EQ(dialog.selection(), 1);  // it opens on the default target
  dialog.Select(2);
  dialog.SetDefault();
  EXPECT_EQ(dialog.current_target(), "C");
  EXPECT_EQ(project.default_target(), project.FindTarget("C"));
}

TEST_F(DialogsTest, NewTargetNamesAreTrimmedBeforeTheyAreCompared) {
  ThreeTargets();
  struct Case {
    std::string typed;
    bool accepted;
    std::string name;
  };
  const Case cases[] = {
      {" B", false, ""}, {"B  ", false, ""},      {"\tB\t", false, ""},
      {"b", true, "b"},  {"  New ", true, "New"}, {"   ", false, ""},
  };
  for (const Case& c : cases) {
    CNewTargetDialog dialog(project, host.fake_ui);
    EXPECT_EQ(dialog.Ok(c.typed), c.accepted) << '"' << c.typed << '"';
    if (c.accepted) {
      EXPECT_EQ(dialog.name(), c.name);
    }
  }
  // Only the names in use were told, and with the trimmed name.
  EXPECT_EQ(host.fake_ui.message_texts(),
            Names(3, "B\n\nThis target name is already in use!\nPlease,choose a different name."));
}

TEST_F(DialogsTest, NewTargetCopiesFromTheChosenTargetOrNone) {
  CNewTargetDialog first(project, host.fake_ui);
  EXPECT_FALSE(first.copy_enabled());
  EXPECT_FALSE(first.combo_enabled());
  first.CopySettings();  // disabled: nothing happens
  EXPECT_TRUE(first.use_default());

  ThreeTargets();
  CNewTargetDialog dialog(project, host.fake_ui);
  EXPECT_TRUE(dialog.copy_enabled());
  EXPECT_FALSE(dialog.combo_enabled());
  dialog.CopySettings();
  EXPECT_EQ(dialog.sources(), (Names{"A", "B", "C"}));
  EXPECT_EQ(dialog.source_selection(), 0);
  dialog.SelectSource(2);
  ASSERT_TRUE(dialog.Ok("D"));
  EXPECT_EQ(dialog.copy_from(), "C");

  dialog.UseDefaultSettings();
  EXPECT_TRUE(dialog.sources().empty());
  ASSERT_TRUE(dialog.Ok("E"));
  EXPECT_EQ(dialog.copy_from(), "");
}

TEST_F(DialogsTest, NewTargetThroughTheTargetsDialog) {
  host.scripted.new_target = [](CNewTargetDialog& d) { return d.Ok("First"); };
  CTargetsDialog dialog(project, host.fake_ui, host.scripted);
  dialog.New();
  // The only target is the one built.
  EXPECT_EQ(dialog.names(), (Names{"First"}));
  EXPECT_EQ(dialog.current_target(), "First");
  EXPECT_EQ(dialog.selection(), 0);
  EXPECT_TRUE(dialog.changed());

  host.scripted.new_target = [](CNewTargetDialog&) { return false; };
  CTargetsDialog cancelled(project, host.fake_ui, host.scripted);
  cancelled.New();
  EXPECT_EQ(cancelled.names(), (Names{"First"}));
  EXPECT_FALSE(cancelled.changed());
}

TEST_F(DialogsTest, RenameRefusesANameInUseAndKeepsTheDefault) {
  ThreeTargets();
  CTargetsDialog dialog(project, host.fake_ui, host.scripted);
  dialog.Select(1);
  std::vector<bool> answers;
  host.scripted.rename_target = [&](CRenameTargetDialog& d) {
    EXPECT_EQ(d.old_name(), "B");
    EXPECT_EQ(d.new_name(), "B");
    answers.push_back(d.Ok(" C "));
    answers.push_back(d.Ok("B"));  // its own name: allowed, nothing to do
    answers.push_back(d.Ok(" Beta "));
    return true;
  };
  dialog.Rename();
  EXPECT_EQ(answers, (std::vector<bool>{false, true, true}));
  EXPECT_EQ(host.fake_ui.message_texts(),
            Names{"C\n\nThis target name is already in use!\nPlease,choose a different name."});
  EXPECT_EQ(dialog.names(), (Names{"A", "Beta", "C"}));
  EXPECT_EQ(dialog.current_target(), "Beta");
  EXPECT_FALSE(CRenameTargetDialog::OkEnabled(" "));
  EXPECT_TRUE(CRenameTargetDialog::OkEnabled("x"));
}

TEST_F(DialogsTest, NewGroupLooksOnlyAtTheFirstTarget) {
  ThreeTargets();
  project.FindTarget("C")->AddGroup("OnlyInC");
  struct Case {
    std::string typed;
    bool accepted;
  };
  const Case cases[] = {
      {" G1 ", false}, {"G2", false}, {"OnlyInC", true}, {"g1", true}, {"", false}};
  for (const Case& c : cases) {
    CNewGroupDialog dialog(project, host.fake_ui);
    EXPECT_EQ(dialog.Ok(c.typed), c.accepted) << c.typed;
  }
  EXPECT_EQ(host.fake_ui.message_texts(),
            (Names{"G1\n\nThis group name is already in use!\nPlease,choose a different name.",
                   "G2\n\nThis group name is already in use!\nPlease,choose a different name."}));
}

TEST_F(DialogsTest, LinkOrderListsTheDefaultTargetsGroupsAndFileNamesOnly) {
  ThreeTargets();
  CLinkOrderDialog dialog(project);
  EXPECT_EQ(dialog.groups(), (Names{"G1", "G2"}));
  EXPECT_EQ(dialog.group_selection(), 0);
  EXPECT_EQ(dialog.files(), (Names{"one.c", "two.c", "three.s"}));
  dialog.SelectGroup(1);
  EXPECT_TRUE(dialog.files().empty());

  CLinkOrderDialog without_default(*CProjectData::Create());
  EXPECT_TRUE(without_default.groups().empty());
  without_default.MoveSelectedGroup(1);
  without_default.MoveSelectedFile(-1);
  EXPECT_FALSE(without_default.changed());
}

TEST_F(DialogsTest, LinkOrderMovesStopAtTheEnds) {
  ThreeTargets();
  CLinkOrderDialog dialog(project);
  dialog.MoveSelectedGroup(-1);  // first toward the start
  dialog.SelectFile(2);
  dialog.MoveSelectedFile(0);  // last toward the end (a zero delta moves toward the end)
  EXPECT_FALSE(dialog.changed());
  EXPECT_EQ(dialog.groups(), (Names{"G1", "G2"}));
  EXPECT_EQ(dialog.files(), (Names{"one.c", "two.c", "three.s"}));

  dialog.MoveSelectedFile(-1);
  EXPECT_EQ(dialog.files(), (Names{"one.c", "three.s", "two.c"}));
  EXPECT_EQ(dialog.file_selection(), 1);
  dialog.MoveSelectedGroup(5);
  EXPECT_EQ(dialog.groups(), (Names{"G2", "G1"}));
  EXPECT_EQ(dialog.group_selection(), 1);
  EXPECT_TRUE(dialog.changed());
  // The model moved first, in every target.
  for (const char* target : {"A", "B", "C"}) {
    const CProjectTarget& t = *project.FindTarget(target);
    EXPECT_EQ(t.groups[0]->name, "G2") << target;
    EXPECT_EQ(t.files[1]->file_name(), "three.s") << target;
  }
}

TEST_F(DialogsTest, ProjectFilesFilterHasTheNonEmptyTypesInOrder) {
  CGlobalOptions& options = project.global_options();
  options.SetString(kCInpExtensions, "C;cpp", 0);
  options.SetString(kAInpExtensions, "", 0);
  options.SetString(kHeaderExtension, "H", 0);
  options.SetString(kAHeaderExtension, "INC", 0);
  options.SetString(kLInpExtensions, "O;LIB", 0);
  EXPECT_EQ(CProjectFilesDialog(project, host, 0).filter(),
            "Compiler files (*.C;*.cpp)|*.C;*.cpp|Header files (*.H)|*.H|"
            "Asm Header files (*.INC)|*.INC|All files (*.*)|*.*");
  EXPECT_EQ(CProjectFilesDialog(project, host, 0, true).filter(),
            "Compiler files (*.C;*.cpp)|*.C;*.cpp|Header files (*.H)|*.H|"
            "Asm Header files (*.INC)|*.INC|Object files (*.O;*.LIB)|*.O;*.LIB|"
            "All files (*.*)|*.*");
  for (int id : {kCInpExtensions, kHeaderExtension, kAHeaderExtension})
    options.SetString(id, "", 0);
  EXPECT_EQ(CProjectFilesDialog(project, host, 0).filter(), "All files (*.*)|*.*");
}

TEST_F(DialogsTest, ProjectFilesPreselectsTheGivenGroupOrTheFirst) {
  ThreeTargets();
  for (const auto& [index, selected] : {std::pair{-3, 0}, {1, 1}, {7, 0}}) {
    EXPECT_EQ(CProjectFilesDialog(project, host, index).group_selection(), selected) << index;
  }
}

TEST_F(DialogsTest, ProjectFilesAddsBelowTheProjectUnderIrfDir) {
  ThreeTargets();
  CProjectFilesDialog dialog(project, host, 1);
  const std::string folder = Rooted("/proj/drivers/");
  EXPECT_EQ(dialog.AddFiles(folder, {"uart.c", "spi.c"}), 2);
  EXPECT_EQ(dialog.AddFiles(Rooted("/elsewhere/"), {"x.c"}), 1);
  const std::string uart = "$(IRFDIR)" + Native("drivers/uart.c");
  EXPECT_EQ(host.told, (Names{"1 " + uart + " G2", "1 $(IRFDIR)" + Native("drivers/spi.c") + " G2",
                              "1 " + Rooted("/elsewhere/x.c") + " G2"}));
  EXPECT_EQ(dialog.files(),
            (Names{Native("drivers/uart.c"), Native("drivers/spi.c"), Rooted("/elsewhere/x.c")}));
  EXPECT_TRUE(project.FindTarget("C")->FindGroup("G2")->files.size() == 3);
  EXPECT_TRUE(project.target_set().dependencies_changed);
  EXPECT_TRUE(dialog.changed());
  EXPECT_TRUE(host.fake_ui.messages().empty());
}

TEST_F(DialogsTest, ProjectFilesTellsWhenFilesWereAlreadyThere) {
  ThreeTargets();
  struct Case {
    Names names;
    int added;
    Names told;
  };
  const Case cases[] = {
      {{"one.c"}, 0, {"File is already in Project!"}},
      {{"one.c", "new.c"}, 1, {"Some files were already in Project!"}},
      {{"one.c", "two.c"}, 0, {"Some files were already in Project!"}},
      {{"fresh.c"}, 1, {}},
  };
  for (const Case& c : cases) {
    const size_t before = host.fake_ui.messages().size();
    CProjectFilesDialog dialog(project, host, 0);
    EXPECT_EQ(dialog.AddFiles(Rooted("/proj/src"), c.names), c.added) << c.names.back();
    const Names texts = host.fake_ui.message_texts();
    EXPECT_EQ(Names(texts.begin() + before, texts.end()), c.told) << c.names.back();
  }
}

TEST_F(DialogsTest, ProjectFilesRemovesTheSelectedEntries) {
  ThreeTargets();
  CProjectFilesDialog dialog(project, host, 0);
  dialog.RemoveFiles({2, 0, 9});
  EXPECT_EQ(dialog.files(), (Names{"src/two.c"}));
  EXPECT_EQ(host.told, (Names{"0 three.s G1", "0 src/one.c G1"}));
  EXPECT_EQ(project.FindTarget("A")->files.size(), 1u);
}

}  // namespace
}  // namespace quillon
