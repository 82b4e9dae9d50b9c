// The dialogs as Windows shows them: thin procedures that hand each event
// to the dialog's logic and show its state again.
#include <windows.h>
// After windows.h, which they need.
#include <commctrl.h>

#include "ui/dialog_views.h"
#include "ui/link_order_dialog.h"
#include "ui/new_group_dialog.h"
#include "ui/targets_dialog.h"
#include "ui/win32/dialog_ids.h"
#include "ui/win32/project_files_view.h"
#include "ui/win32/settings_view.h"
#include "ui/win32/win32_dialog.h"

namespace quillon {
namespace {

class TargetsView : public Win32Dialog {
 public:
  explicit TargetsView(CTargetsDialog& dialog) : dialog_(dialog) {}

 private:
  BOOL OnInit() override {
    Show();
    return TRUE;
  }

  void Show() {
    FillList(IDC_TARGET_LIST, dialog_.names(), dialog_.selection());
    SetText(IDC_CURRENT_TARGET, dialog_.current_target());
    const bool selected = dialog_.selection() >= 0;
    for (int id : {IDC_TARGET_DELETE, IDC_TARGET_RENAME, IDC_TARGET_SET_DEFAULT})
      Enable(id, selected);
  }

  void OnCommand(int id, int code) override {
    switch (id) {
      case IDC_TARGET_LIST:
        if (code != LBN_SELCHANGE) return;
        dialog_.Select(ListSelection(IDC_TARGET_LIST));
        break;
      case IDC_TARGET_NEW:
        dialog_.New();
        break;
      case IDC_TARGET_DELETE:
        dialog_.Delete();
        break;
      case IDC_TARGET_RENAME:
        dialog_.Rename();
        break;
      case IDC_TARGET_SET_DEFAULT:
        dialog_.SetDefault();
        break;
      case IDOK:
        End(true);
        return;
      case IDCANCEL:
        End(false);
        return;
      default:
        return;
    }
    Show();
  }

  CTargetsDialog& dialog_;
};

class NewTargetView : public Win32Dialog {
 public:
  explicit NewTargetView(CNewTargetDialog& dialog) : dialog_(dialog) {}

 private:
  BOOL OnInit() override {
    ::CheckRadioButton(hwnd_, IDC_DEFAULT_SETTINGS, IDC_COPY_SETTINGS, IDC_DEFAULT_SETTINGS);
    ::CheckDlgButton(hwnd_, IDC_DEFAULT_SETTINGS, BST_CHECKED);
    Enable(IDC_COPY_SETTINGS, dialog_.copy_enabled());
    ShowSources();
    Enable(IDOK, false);
    FocusEdit(IDC_TARGET_NAME);
    return FALSE;
  }

  void ShowSources() {
    FillCombo(IDC_COPY_FROM, dialog_.sources(), dialog_.source_selection());
    Enable(IDC_COPY_FROM, dialog_.combo_enabled());
  }

  void OnCommand(int id, int code) override {
    switch (id) {
      case IDC_DEFAULT_SETTINGS:
      case IDC_COPY_SETTINGS:
        if (code != BN_CLICKED) return;
        if (id == IDC_COPY_SETTINGS) {
          dialog_.CopySettings();
        } else {
          dialog_.UseDefaultSettings();
        }
        ShowSources();
        return;
      case IDC_COPY_FROM:
        if (code == CBN_SELCHANGE) {
          dialog_.SelectSource(static_cast<int>(::SendMessageA(Item(id), CB_GETCURSEL, 0, 0)));
        }
        return;
      default:
        OnNameCommand(
            id, code, IDC_TARGET_NAME, CRenameTargetDialog::OkEnabled,
            [this](const std::string& name) { return dialog_.Ok(name); });
        return;
    }
  }

  CNewTargetDialog& dialog_;
};

class RenameTargetView : public Win32Dialog {
 public:
  explicit RenameTargetView(CRenameTargetDialog& dialog) : dialog_(dialog) {}

 private:
  BOOL OnInit() override {
    SetText(IDC_OLD_TARGET_NAME, dialog_.old_name());
    SetText(IDC_NEW_TARGET_NAME, dialog_.new_name());
    FocusEdit(IDC_NEW_TARGET_NAME);
    return FALSE;
  }

  void OnCommand(int id, int code) override {
    OnNameCommand(
        id, code, IDC_NEW_TARGET_NAME, CRenameTargetDialog::OkEnabled,
        [this](const std::string& name) { return dialog_.Ok(name); });
  }

  CRenameTargetDialog& dialog_;
};

class NewGroupView : public Win32Dialog {
 public:
  explicit NewGroupView(CNewGroupDialog& dialog) : dialog_(dialog) {}

 private:
  BOOL OnInit() override {
    Enable(IDOK, false);
    FocusEdit(IDC_GROUP_NAME);
    return FALSE;
  }

  void OnCommand(int id, int code) override {
    OnNameCommand(
        id, code, IDC_GROUP_NAME, CNewGroupDialog::OkEnabled,
        [this](const std::string& name) { return dialog_.Ok(name); });
  }

  CNewGroupDialog& dialog_;
};

class LinkOrderView : public Win32Dialog {
 public:
  explicit LinkOrderView(CLinkOrderDialog& dialog) : dialog_(dialog) {}

 private:
  BOOL OnInit() override {
    // A wide range, so that the arrows never stop at an end of their own;
    // the lists decide where a move ends.
    for (int id : {IDC_GROUP_SPIN, IDC_FILE_SPIN}) {
      ::SendMessageA(Item(id), UDM_SETRANGE32, static_cast<WPARAM>(UD_MAXVAL), UD_MINVAL);
      ::SendMessageA(Item(id), UDM_SETPOS32, 0, 0);
    }
    FillList(IDC_GROUP_LIST, dialog_.groups(), dialog_.group_selection());
    FillList(IDC_FILE_LIST, dialog_.files(), dialog_.file_selection());
    return TRUE;
  }

  void OnCommand(int id, int code) override {
    if (id == IDC_GROUP_LIST && code == LBN_SELCHANGE) {
      dialog_.SelectGroup(ListSelection(IDC_GROUP_LIST));
      FillList(IDC_FILE_LIST, dialog_.files(), dialog_.file_selection());
    } else if (id == IDC_FILE_LIST && code == LBN_SELCHANGE) {
      dialog_.SelectFile(ListSelection(IDC_FILE_LIST));
    } else if (id == IDOK || id == IDCANCEL) {
      End(id == IDOK);
    }
  }

  void OnNotify(NMHDR* header) override {
    if (header->code != UDN_DELTAPOS) return;
    const int delta = reinterpret_cast<NMUPDOWN*>(header)->iDelta;
    if (header->idFrom == IDC_GROUP_SPIN) {
      dialog_.MoveSelectedGroup(delta);
      FillList(IDC_GROUP_LIST, dialog_.groups(), dialog_.group_selection());
    } else if (header->idFrom == IDC_FILE_SPIN) {
      dialog_.MoveSelectedFile(delta);
      FillList(IDC_FILE_LIST, dialog_.files(), dialog_.file_selection());
    }
  }

  CLinkOrderDialog& dialog_;
};

class Win32DialogViews : public DialogViews {
 public:
  Win32DialogViews() {
    INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_UPDOWN_CLASS | ICC_STANDARD_CLASSES |
                                                          ICC_TREEVIEW_CLASSES |
                                                          ICC_LISTVIEW_CLASSES | ICC_TAB_CLASSES};
    ::InitCommonControlsEx(&controls);
  }

  bool RunTargets(CTargetsDialog& dialog) override { return TargetsView(dialog).Run(IDD_TARGETS); }
  bool RunNewTarget(CNewTargetDialog& dialog) override {
    return NewTargetView(dialog).Run(IDD_NEW_TARGET);
  }
  bool RunRenameTarget(CRenameTargetDialog& dialog) override {
    return RenameTargetView(dialog).Run(IDD_RENAME_TARGET);
  }
  bool RunNewGroup(CNewGroupDialog& dialog) override {
    return NewGroupView(dialog).Run(IDD_NEW_GROUP);
  }
  bool RunLinkOrder(CLinkOrderDialog& dialog) override {
    return LinkOrderView(dialog).Run(IDD_LINK_ORDER);
  }
  bool RunProjectFiles(CProjectFilesDialog& dialog) override { return RunProjectFilesView(dialog); }
  bool RunSettings(CSettingsSheet& sheet) override { return RunSettingsView(sheet); }
};

}  // namespace

DialogViews& DialogViews::Default() {
  static Win32DialogViews views;
  return views;
}

}  // namespace quillon
