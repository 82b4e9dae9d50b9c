// How the dialog commands run: copies installed on OK and dropped on
// Cancel, what the host is told, and the questions asked when a target or a
// group is missing.
#include "ui/dialog_flows.h"

#include <gtest/gtest.h>

#include "unit/ui/dialog_test_support.h"

namespace quillon {
namespace {

using Names = std::vector<std::string>;
constexpr char kTargetQuestion[] = "First you must add a project target.\nAdd now?";
constexpr char kGroupQuestion[] = "First you must add a project group.\nAdd now?";

class DialogFlowsTest : public ::testing::Test {
 protected:
  void OneTarget() {
    host.current->AddTarget("Debug", "");
    host.current->SetDefaultTarget(host.current->first_target());
  }
  // A Targets run that adds target `name` through New Target.
  void TargetsAdds(const std::string& name) {
    host.scripted.new_target = [name](CNewTargetDialog& d) { return d.Ok(name); };
    host.scripted.targets = [](CTargetsDialog& d) {
      d.New();
      return true;
    };
  }

  RecordingDialogHost host;
};

TEST_F(DialogFlowsTest, TargetsCancelDropsTheCopy) {
  OneTarget();
  const CProjectData* before = host.current.get();
  host.scripted.targets = [&](CTargetsDialog& d) {
    EXPECT_EQ(&d.project(), host.copy.get());  // the copy is held while it runs
    d.Select(0);
    host.fake_ui.QueueAnswer(MessageBoxAnswer::kYes);
    d.Delete();
    return false;
  };
  RunTargetsFlow(host);
  EXPECT_EQ(host.current.get(), before);
  EXPECT_EQ(host.current->target_set().targets.size(), 1u);
  EXPECT_EQ(host.copy, nullptr);
  EXPECT_TRUE(host.told.empty());
}

TEST_F(DialogFlowsTest, TargetsOkInstallsTheCopyAndTellsTheHost) {
  struct Case {
    bool with_target;
    bool edit;
    Names told;
  };
  const Case cases[] = {
      {true, true, {"install", "9", "update", "5"}},
      {true, false, {"install", "update", "5"}},  // the default is a new object all the same
      {false, false, {"install"}},                // no default before or after
  };
  for (const Case& c : cases) {
    RecordingDialogHost fresh;
    if (c.with_target) {
      fresh.current->AddTarget("Debug", "");
      fresh.current->SetDefaultTarget(fresh.current->first_target());
    }
    fresh.scripted.targets = [&](CTargetsDialog& d) {
      if (c.edit) {
        fresh.scripted.rename_target = [](CRenameTargetDialog& r) { return r.Ok("Release"); };
        d.Rename();
      }
      return true;
    };
    RunTargetsFlow(fresh);
    EXPECT_EQ(fresh.told, c.told);
    EXPECT_EQ(fresh.copy, nullptr);
    if (c.edit) {
      EXPECT_EQ(fresh.current->default_target()->name, "Release");
    }
  }
}

TEST_F(DialogFlowsTest, NewGroupInstallsTheCopyAndAddsTheGroupEverywhere) {
  OneTarget();
  host.current->AddTarget("Release", "");
  host.scripted.new_group = [](CNewGroupDialog& d) { return d.Ok("  Drivers "); };
  RunNewGroupFlow(host);
  EXPECT_EQ(host.told, (Names{"install", "2 Drivers"}));
  for (const auto& target : host.current->target_set().targets) {
    EXPECT_NE(target->FindGroup("Drivers"), nullptr) << target->name;
  }
  EXPECT_EQ(host.copy, nullptr);
}

TEST_F(DialogFlowsTest, NewGroupWithoutTargetOffersTheTargetsDialogFirst) {
  TargetsAdds("Debug");
  host.scripted.new_group = [](CNewGroupDialog& d) { return d.Ok("Src"); };
  host.fake_ui.QueueAnswer(MessageBoxAnswer::kYes);
  RunNewGroupFlow(host);
  EXPECT_EQ(host.fake_ui.message_texts(), Names{kTargetQuestion});
  EXPECT_EQ(host.scripted.runs, (Names{"Targets", "New Target", "New Group"}));
  EXPECT_NE(host.current->first_target()->FindGroup("Src"), nullptr);
  EXPECT_EQ(host.told.back(), "2 Src");
}

TEST_F(DialogFlowsTest, MissingTargetOrGroupAnsweredNoOpensNothing) {
  struct Case {
    bool with_target;
    const char* question;
  };
  for (const Case& c : {Case{false, kTargetQuestion}, Case{true, kGroupQuestion}}) {
    RecordingDialogHost fresh;
    if (c.with_target) fresh.current->AddTarget("Debug", "");
    EXPECT_EQ(RunProjectFilesFlow(fresh, 0), 0);
    EXPECT_EQ(fresh.fake_ui.message_texts(), Names{c.question});
    EXPECT_EQ(fresh.fake_ui.messages()[0].kind, MessageBoxKind::kYesNoQuestion);
    EXPECT_TRUE(fresh.scripted.runs.empty());
    EXPECT_TRUE(fresh.told.empty());
  }
}

TEST_F(DialogFlowsTest, ProjectFilesAsksForWhatIsMissingThenOpens) {
  TargetsAdds("Debug");
  host.scripted.new_group = [](CNewGroupDialog& d) { return d.Ok("Src"); };
  host.scripted.project_files = [](CProjectFilesDialog& d) {
    EXPECT_EQ(d.groups(), Names{"Src"});
    return true;
  };
  host.fake_ui.QueueAnswer(MessageBoxAnswer::kYes);
  host.fake_ui.QueueAnswer(MessageBoxAnswer::kYes);
  EXPECT_EQ(RunProjectFilesFlow(host, -1), 1);
  EXPECT_EQ(host.fake_ui.message_texts(), (Names{kTargetQuestion, kGroupQuestion}));
  EXPECT_EQ(host.scripted.runs, (Names{"Targets", "New Target", "New Group", "Project Files"}));
}

TEST_F(DialogFlowsTest, LinkOrderInstallsOnlyAChangeEndedWithOk) {
  struct Case {
    bool move;
    bool ok;
    bool installed;
  };
  for (const Case& c :
       {Case{true, true, true}, Case{true, false, false}, Case{false, true, false}}) {
    RecordingDialogHost fresh;
    fresh.current->AddTarget("Debug", "");
    fresh.current->SetDefaultTarget(fresh.current->first_target());
    fresh.current->AddLinkGroup("A");
    fresh.current->AddLinkGroup("B");
    const CProjectData* before = fresh.current.get();
    fresh.scripted.link_order = [&](CLinkOrderDialog& d) {
      if (c.move) d.MoveSelectedGroup(1);
      return c.ok;
    };
    RunLinkOrderFlow(fresh);
    EXPECT_EQ(fresh.told, c.installed ? (Names{"install", "9"}) : Names{});
    EXPECT_EQ(fresh.current.get() != before, c.installed);
    EXPECT_EQ(fresh.current->first_target()->groups[0]->name, c.installed ? "B" : "A");
    EXPECT_EQ(fresh.copy, nullptr);
  }
}

// The settings sheet's runs as a view drives them: edits, then OK as the
// button does it (the sheet's Ok decides) or Cancel.
TEST_F(DialogFlowsTest, SettingsOkInstallsTheEditedCopyAndTellsOptionsChanged) {
  struct Case {
    const char* key;  // null: OK without an edit
    const char* value;
    Names told;
  };
  const Case cases[] = {
      {nullptr, nullptr, {"install", "6", "9"}},
      {"LinkerOptions", "-m map", {"install", "6", "9"}},
      {"CInpExtensions", "C;CPP;CXX", {"kinds", "install", "6", "9"}},
      {"AInpExtensions", "ASM;S", {"kinds", "install", "6", "9"}},
      {"HeaderExtension", "H;HPP", {"install", "6", "9"}},  // headers are not project files
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.key ? c.key : "no edit");
    RecordingDialogHost fresh;
    fresh.current->AddTarget("Debug", "");
    fresh.scripted.settings = [&](CSettingsSheet& sheet) {
      EXPECT_EQ(&sheet.working_copy(), fresh.copy.get());
      if (c.key != nullptr) {
        SettingsSelection selection;
        selection.targets = {sheet.working_copy().FindTarget("Debug")};
        sheet.Select(selection);
        std::string error;
        EXPECT_TRUE(sheet.Edit(*FindField(c.key), {c.value}, &error)) << error;
      }
      return sheet.Ok();
    };
    EXPECT_EQ(RunProjectSettingsFlow(fresh), 1);
    EXPECT_EQ(fresh.told, c.told);
    EXPECT_EQ(fresh.copy, nullptr);
    if (c.key != nullptr) {
      OptionScope scope{fresh.current.get(), fresh.current->FindTarget("Debug"), nullptr};
      EXPECT_EQ(GetOption(*FindOption(c.key), scope), Names{c.value});
    }
  }
}

TEST_F(DialogFlowsTest, SettingsCancelChangesNothing) {
  OneTarget();
  const CProjectData* before = host.current.get();
  host.scripted.settings = [](CSettingsSheet& sheet) {
    std::string error;
    EXPECT_TRUE(sheet.Edit(*FindField("CInpExtensions"), {"CXX"}, &error)) << error;
    return false;
  };
  EXPECT_EQ(RunProjectSettingsFlow(host), 0);
  EXPECT_EQ(host.current.get(), before);
  EXPECT_EQ(GetOption(*FindOption("CInpExtensions"), {host.current.get(), nullptr, nullptr}),
            Names{"C;CPP"});
  EXPECT_TRUE(host.told.empty());
  EXPECT_EQ(host.copy, nullptr);
}

TEST_F(DialogFlowsTest, SettingsOkWaitsForTheIncludeKeyword) {
  OneTarget();
  host.scripted.settings = [](CSettingsSheet& sheet) {
    std::string error;
    EXPECT_TRUE(sheet.Edit(*FindField("DF_Valid"), {"1"}, &error)) << error;
    EXPECT_FALSE(sheet.Ok());  // the sheet stays open
    EXPECT_TRUE(sheet.Edit(*FindField("DF_Keyword"), {"INCLUDE"}, &error)) << error;
    return sheet.Ok();
  };
  EXPECT_EQ(RunProjectSettingsFlow(host), 1);
  EXPECT_EQ(host.fake_ui.message_texts(), Names{kIncludeKeywordMessage});
  EXPECT_EQ(GetOption(*FindOption("DF_Keyword"), {host.current.get(), nullptr, nullptr}),
            Names{"INCLUDE"});
}

TEST_F(DialogFlowsTest, SettingsWithoutProjectOpensNothing) {
  host.current.reset();
  EXPECT_EQ(RunProjectSettingsFlow(host), 0);
  EXPECT_TRUE(host.scripted.runs.empty());
}

}  // namespace
}  // namespace quillon
