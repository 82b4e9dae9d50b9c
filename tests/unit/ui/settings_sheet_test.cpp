// The settings sheet's logic on a small project: every option reachable and
// written at its level, what a selection shows, the fallbacks and OK's checks.
#include "ui/settings/settings_sheet.h"

#include <gtest/gtest.h>

#include <set>

#include "model/option_fallback.h"
#include "support/fake_ui_services.h"
#include "ui/settings/macro_menu.h"

namespace quillon {
namespace {

class SettingsSheetTest : public ::testing::Test {
 protected:
  SettingsSheetTest() : project_(CProjectData::Create(0)) {
    project_->Initialise(0);
    project_->set_project_file("/p/fw.qpj");
    project_->AddTarget("Debug", "");
    project_->AddLinkGroup("Src");
    for (const char* file : {"a.c", "b.c", "start.asm"}) project_->AddFile(file, "Src");
    project_->AddTarget("Release", "Debug");
  }

  CProjectTarget* Target(const char* name, CProjectData& project) {
    return project.FindTarget(name);
  }
  CProjectFile* File(const char* target, const char* name, CProjectData& project) {
    return project.FindTarget(target)->FindFile(name);
  }
  std::vector<std::string> Value(const char* key, const OptionScope& scope) {
    return GetOption(*FindOption(key), scope);
  }
  const SettingsField& F(const char* key) { return *FindField(key); }
  // A working copy, as the dialog's caller makes it.
  std::unique_ptr<CProjectData> Copy() {
    std::unique_ptr<CProjectData> copy = project_->Clone();
    copy->Initialise(0);
    copy->CopyFrom(*project_);
    return copy;
  }

  std::unique_ptr<CProjectData> project_;
  FakeUiServices ui_;
};

// A value unlike the default, of the option's type.
std::vector<std::string> OtherValue(const OptionInfo& info, const std::vector<std::string>& now) {
  switch (info.type) {
    case OptionType::kNumber: return {now.empty() || now[0] != "7" ? "7" : "8"};
    case OptionType::kYesNo:
    case OptionType::kTrueFalse: return {now.empty() || now[0] == "0" ? "1" : "0"};
    case OptionType::kStringList: return {"x", "y"};
    case OptionType::kFlagList: return {"1", "1"};
    default: return {info.access == OptionAccess::kFilterName ? "GCC" : "edited"};
  }
}

TEST_F(SettingsSheetTest, EveryOptionIsOnOnePageAndWrittenAtItsLevel) {
  std::multiset<std::string> covered;
  for (const SettingsField& field : SettingsFields()) {
    covered.insert(field.key);
    if (field.companion) covered.insert(field.companion);
    EXPECT_NE(FindOption(field.key), nullptr) << field.key;
  }
  for (const OptionInfo& info : OptionCatalogue()) EXPECT_EQ(covered.count(info.key), 1u) << info.key;
  for (int page = 0; page < kSettingsPageCount; ++page) {
    EXPECT_FALSE(FieldsOfPage(static_cast<SettingsPage>(page)).empty()) << page;
  }

  for (const SettingsField& field : SettingsFields()) {
    SCOPED_TRACE(field.key);
    std::unique_ptr<CProjectData> owner = Copy();
    CProjectData& copy = *owner;
    CSettingsSheet sheet(copy, ui_);
    const OptionInfo& info = field.option();
    // Targets for target options, a compiler source for file options.
    OptionScope scope{&copy, nullptr, nullptr};
    SettingsSelection selection;
    if (info.level == OptionLevel::kTarget) {
      scope.target = Target("Release", copy);
      selection.targets = {scope.target};
    } else if (info.level == OptionLevel::kFile) {
      scope.target = Target("Release", copy);
      scope.file = File("Release", info.key == std::string("AssemblerOptions") ? "start.asm" : "a.c", copy);
      selection.files = {scope.file};
    }
    sheet.Select(selection);
    const std::vector<std::string> value = OtherValue(info, GetOption(info, scope));
    std::string error;
    ASSERT_TRUE(sheet.Edit(field, value, &error)) << error;
    if (field.companion) {
      ASSERT_TRUE(sheet.Edit(*FindOption(field.companion), {"1", "0"}, &error)) << error;
    }
    if (field.key == std::string("DF_Valid")) {  // OK wants a keyword then
      ASSERT_TRUE(sheet.Edit(F("DF_Keyword"), {"INCLUDE"}, &error)) << error;
    }
    bool kinds_changed = false;
    ASSERT_TRUE(sheet.Confirm(*project_, &kinds_changed));
    EXPECT_EQ(GetOption(info, scope), value);
    if (info.own_key) {
      EXPECT_TRUE(GetOwnFlag(info, scope));
    }
    // The original is untouched.
    OptionScope original{project_.get(), scope.target ? Target("Release", *project_) : nullptr,
                         scope.file ? File("Release", scope.file->file_name().c_str(), *project_) : nullptr};
    EXPECT_NE(GetOption(info, original), value);
  }
}

TEST_F(SettingsSheetTest, ASelectionShowsWhatItHoldsInCommon) {
  std::unique_ptr<CProjectData> owner = Copy();
  CProjectData& copy = *owner;
  CSettingsSheet sheet(copy, ui_);
  std::string error;
  // Nothing selected: global options only.
  EXPECT_TRUE(sheet.View(F("CInpExtensions")).enabled);
  EXPECT_FALSE(sheet.View(F("CompilerOptions")).enabled);
  EXPECT_FALSE(sheet.View(F("LinkerOptions")).enabled);
  EXPECT_FALSE(sheet.Edit(F("LinkerOptions"), {"x"}, &error));

  sheet.Select({{Target("Debug", copy)}, {}, {}});
  ASSERT_TRUE(sheet.Edit(F("LinkerOptions"), {"-o x"}, &error));
  EXPECT_TRUE(Target("Debug", copy)->is_changed);
  sheet.Select({{Target("Debug", copy), Target("Release", copy)}, {}, {}});
  FieldView both = sheet.View(F("LinkerOptions"));
  EXPECT_TRUE(both.enabled && both.mixed && both.values.empty());

  // A file's own value shows as such, for the file and for its group.
  sheet.Select({{}, {}, {File("Debug", "b.c", copy)}});
  ASSERT_TRUE(sheet.Edit(F("CompilerOptions"), {"-O0 $(EDNAME)"}, &error));
  EXPECT_TRUE(File("Debug", "b.c", copy)->is_changed);
  EXPECT_FALSE(File("Debug", "a.c", copy)->is_changed);
  EXPECT_TRUE(CSettingsSheet::HasOwnValues(copy, *File("Debug", "b.c", copy)));
  EXPECT_FALSE(CSettingsSheet::HasOwnValues(copy, *File("Debug", "a.c", copy)));
  sheet.Select({{}, {Target("Debug", copy)->FindGroup("Src")}, {}});
  FieldView group = sheet.View(F("CompilerOptions"));
  EXPECT_TRUE(group.own && group.mixed);  // a.c inherits, b.c has its own
  // The assembler file is not a compiler option's business.
  sheet.Select({{}, {}, {File("Debug", "start.asm", copy)}});
  EXPECT_FALSE(sheet.View(F("CompilerOptions")).enabled);
  EXPECT_TRUE(sheet.View(F("AssemblerOptions")).enabled);
  EXPECT_TRUE(sheet.View(F("ExcludeFromMake")).enabled);

  // Edited at target level, a file option reaches the files that inherit.
  sheet.Select({{Target("Debug", copy)}, {}, {}});
  ASSERT_TRUE(sheet.Edit(F("CompilerOptions"), {"-g $(EDNAME)"}, &error));
  EXPECT_EQ(Value("CompilerOptions", {&copy, Target("Debug", copy), File("Debug", "a.c", copy)}),
            std::vector<std::string>{"-g $(EDNAME)"});
  EXPECT_EQ(Value("CompilerOptions", {&copy, Target("Debug", copy), File("Debug", "b.c", copy)}),
            std::vector<std::string>{"-O0 $(EDNAME)"});
  EXPECT_EQ(Value("CompilerOptions", {&copy, Target("Release", copy), File("Release", "a.c", copy)}),
            std::vector<std::string>{"$(EDNAME)"});
  EXPECT_TRUE(ui_.messages().empty());
}

TEST_F(SettingsSheetTest, FallbacksAskFirstAndKeepToThePagesKind) {
  std::unique_ptr<CProjectData> owner = Copy();
  CProjectData& copy = *owner;
  CSettingsSheet sheet(copy, ui_);
  CProjectTarget* debug = Target("Debug", copy);
  std::string error;
  sheet.Select({{debug}, {}, {File("Debug", "b.c", copy)}});
  ASSERT_TRUE(sheet.Edit(F("CompilerOptions"), {"-O2"}, &error));
  const OptionScope b{&copy, debug, File("Debug", "b.c", copy)};

  ui_.QueueAnswer(MessageBoxAnswer::kNo);
  EXPECT_FALSE(sheet.SetFilesToTargetValue(F("CompilerOptions")));
  EXPECT_TRUE(GetOwnFlag(*FindOption("CompilerOptions"), b));
  // A selection holding an assembler file resets nothing and asks nothing.
  sheet.Select({{}, {}, {File("Debug", "b.c", copy), File("Debug", "start.asm", copy)}});
  EXPECT_FALSE(sheet.SetFilesToTargetValue(F("CompilerOptions")));
  sheet.Select({{}, {}, {File("Debug", "b.c", copy)}});
  ui_.QueueAnswer(MessageBoxAnswer::kYes);
  EXPECT_TRUE(sheet.SetFilesToTargetValue(F("CompilerOptions")));
  EXPECT_FALSE(GetOwnFlag(*FindOption("CompilerOptions"), b));
  EXPECT_EQ(Value("CompilerOptions", b), std::vector<std::string>{"-O2"});

  sheet.Select({{debug}, {}, {}});
  ui_.QueueAnswer(MessageBoxAnswer::kYes);
  EXPECT_TRUE(sheet.SetTargetsToDefault(F("CompilerOptions")));
  EXPECT_EQ(Value("CompilerOptions", b), std::vector<std::string>{"$(EDNAME)"});
  EXPECT_FALSE(sheet.SetTargetsToDefault(F("LinkerOptions")));  // not a file option
  EXPECT_EQ(ui_.message_texts(),
            (std::vector<std::string>{kResetFilesQuestion, kResetFilesQuestion,
                                      kResetTargetsQuestion}));
}

TEST_F(SettingsSheetTest, OkWantsAKeywordAndReportsNewSourceKinds) {
  std::unique_ptr<CProjectData> copy = Copy();
  CSettingsSheet sheet(*copy, ui_);
  std::string error;
  ASSERT_TRUE(sheet.Edit(F("DF_Valid"), {"1"}, &error));
  bool kinds_changed = true;
  EXPECT_FALSE(sheet.Confirm(*project_, &kinds_changed));
  EXPECT_EQ(ui_.message_texts(), std::vector<std::string>{"Please specify the include keyword"});
  EXPECT_TRUE(sheet.CanLeavePage(SettingsPage::kGeneral));
  ASSERT_TRUE(sheet.Edit(F("DF_Keyword"), {"INCLUDE"}, &error));
  ASSERT_TRUE(sheet.Confirm(*project_, &kinds_changed));
  EXPECT_FALSE(kinds_changed);

  for (const char* key : {"CInpExtensions", "AInpExtensions"}) {
    std::unique_ptr<CProjectData> other_copy = Copy();
    CSettingsSheet other(*other_copy, ui_);
    ASSERT_TRUE(other.Edit(F(key), {"S;s"}, &error));
    ASSERT_TRUE(other.Confirm(*project_, &kinds_changed));
    EXPECT_TRUE(kinds_changed) << key;
  }
}

TEST(MacroMenuTest, ListsTheExpansionsMacrosAndInsertsAtTheCaret) {
  std::vector<std::string> file, target;
  for (const MacroItem& item : MacrosFor(MacroSet::kFile)) file.push_back(item.macro);
  for (const MacroItem& item : MacrosFor(MacroSet::kTarget)) target.push_back(item.macro);
  EXPECT_EQ(file.front(), "$(EDNAME)");
  EXPECT_EQ(file.size(), 12u);
  EXPECT_EQ(target.front(), "$(OUTPUTPATH)");
  EXPECT_EQ(target.back(), "$(EXEDIR)");
  EXPECT_EQ(MacrosFor(MacroSet::kDirectory).size(), 3u);
  EXPECT_TRUE(MacrosFor(MacroSet::kNone).empty());
  size_t caret = 0;
  EXPECT_EQ(InsertMacro("-c  -o x", 3, 3, "$(EDNAME)", &caret), "-c $(EDNAME) -o x");
  EXPECT_EQ(caret, 12u);
  EXPECT_EQ(InsertMacro("-c OLD", 3, 99, "$(DIR)", &caret), "-c $(DIR)");  // selection to the end
  EXPECT_EQ(InsertMacro("ab", 7, 2, "$(DIR)", &caret), "ab$(DIR)");
}

}  // namespace
}  // namespace quillon
