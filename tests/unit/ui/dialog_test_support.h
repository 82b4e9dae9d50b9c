// A DialogHost over a project of its own, recording what the host was told,
// and views whose modal runs are scripted per dialog.
#ifndef QUILLON_TESTS_UNIT_UI_DIALOG_TEST_SUPPORT_H
#define QUILLON_TESTS_UNIT_UI_DIALOG_TEST_SUPPORT_H

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "support/fake_ui_services.h"
#include "support/native_path.h"
#include "ui/dialog_host.h"
#include "ui/dialog_views.h"
#include "ui/link_order_dialog.h"
#include "ui/new_group_dialog.h"
#include "ui/project_files_dialog.h"
#include "ui/settings/settings_sheet.h"
#include "ui/targets_dialog.h"

namespace quillon {

// Each run calls its script, if any, and answers what the script answers;
// a dialog without a script is cancelled. Counts the runs.
struct ScriptedViews : DialogViews {
  std::function<bool(CTargetsDialog&)> targets;
  std::function<bool(CNewTargetDialog&)> new_target;
  std::function<bool(CRenameTargetDialog&)> rename_target;
  std::function<bool(CNewGroupDialog&)> new_group;
  std::function<bool(CLinkOrderDialog&)> link_order;
  std::function<bool(CProjectFilesDialog&)> project_files;
  std::function<bool(CSettingsSheet&)> settings;
  std::vector<std::string> runs;

  template <typename Dialog>
  bool Run(const char* name, const std::function<bool(Dialog&)>& script, Dialog& dialog) {
    runs.push_back(name);
    return script ? script(dialog) : false;
  }
  bool RunTargets(CTargetsDialog& d) override { return Run("Targets", targets, d); }
  bool RunNewTarget(CNewTargetDialog& d) override { return Run("New Target", new_target, d); }
  bool RunRenameTarget(CRenameTargetDialog& d) override {
    return Run("Rename Target", rename_target, d);
  }
  bool RunNewGroup(CNewGroupDialog& d) override { return Run("New Group", new_group, d); }
  bool RunLinkOrder(CLinkOrderDialog& d) override { return Run("Link Order", link_order, d); }
  bool RunProjectFiles(CProjectFilesDialog& d) override {
    return Run("Project Files", project_files, d);
  }
  bool RunSettings(CSettingsSheet& s) override { return Run("Settings", settings, s); }
};

class RecordingDialogHost : public DialogHost {
 public:
  RecordingDialogHost() {
    current = CProjectData::Create();
    current->Initialise(0);
    current->set_project_file(Rooted("/proj/demo.qpj"));
  }

  CProjectData* project() override { return current.get(); }
  std::unique_ptr<CProjectData>& working_copy() override { return copy; }
  void Install(std::unique_ptr<CProjectData> replacement) override {
    told.push_back("install");
    current = std::move(replacement);
  }
  void Modified() override { told.push_back("9"); }
  void OptionsChanged() override { told.push_back("6"); }
  void Reloaded() override { told.push_back("5"); }
  void GroupAdded(const std::string& group) override { told.push_back("2 " + group); }
  void FileAdded(const std::string& file, const std::string& group) override {
    told.push_back("1 " + file + " " + group);
  }
  void FileRemoved(const std::string& file, const std::string& group) override {
    told.push_back("0 " + file + " " + group);
  }
  void UpdateDependencies() override { told.push_back("update"); }
  void FileKindsChanged() override { told.push_back("kinds"); }
  UiServices& ui() override { return fake_ui; }
  DialogViews& views() override { return scripted; }

  std::unique_ptr<CProjectData> current;
  std::unique_ptr<CProjectData> copy;
  std::vector<std::string> told;
  FakeUiServices fake_ui;
  ScriptedViews scripted;
};

}  // namespace quillon

#endif  // QUILLON_TESTS_UNIT_UI_DIALOG_TEST_SUPPORT_H
