#include "ui/win32/settings_dialogs.h"

#include <windows.h>
// After windows.h, which they need.
#include <commctrl.h>

#include <utility>

#include "filters/filter_table.h"
#include "ui/settings/settings_sheet.h"
#include "ui/win32/dialog_ids.h"
#include "ui/win32/win32_dialog.h"

namespace quillon {
namespace {

std::string Trimmed(const std::string& text) {
  const size_t begin = text.find_first_not_of(" \t");
  if (begin == std::string::npos) return std::string();
  return text.substr(begin, text.find_last_not_of(" \t") - begin + 1);
}

class ListEditorView : public Win32Dialog {
 public:
  ListEditorView(std::string title, std::string hint, std::vector<std::string> items,
                 std::vector<bool> flags, bool with_flags)
      : items_(std::move(items)),
        flags_(std::move(flags)),
        title_(std::move(title)),
        hint_(std::move(hint)),
        with_flags_(with_flags) {}

  std::vector<std::string> items_;
  std::vector<bool> flags_;

 private:
  HWND List() const { return Item(IDC_LIST_ITEMS); }

  BOOL OnInit() override {
    ::SetWindowTextA(hwnd_, title_.c_str());
    SetText(IDC_LIST_HINT, hint_);
    DWORD style = LVS_EX_FULLROWSELECT;
    if (with_flags_) style |= LVS_EX_CHECKBOXES;
    ListView_SetExtendedListViewStyle(List(), style);
    RECT client;
    ::GetClientRect(List(), &client);
    LVCOLUMNA column = {};
    column.mask = LVCF_WIDTH;
    column.cx = client.right - ::GetSystemMetrics(SM_CXVSCROLL);
    ListView_InsertColumn(List(), 0, &column);
    Show(items_.empty() ? -1 : 0);
    FocusEdit(IDC_LIST_TEXT);
    return FALSE;
  }

  // The list from items_ and flags_, with `selected` chosen.
  void Show(int selected) {
    ListView_DeleteAllItems(List());
    for (size_t i = 0; i < items_.size(); ++i) {
      LVITEMA item = {};
      item.mask = LVIF_TEXT;
      item.iItem = static_cast<int>(i);
      item.pszText = const_cast<char*>(items_[i].c_str());
      ListView_InsertItem(List(), &item);
      if (with_flags_) ListView_SetCheckState(List(), static_cast<int>(i), flags_[i]);
    }
    if (selected >= 0) {
      ListView_SetItemState(List(), selected, LVIS_SELECTED | LVIS_FOCUSED,
                            LVIS_SELECTED | LVIS_FOCUSED);
      ListView_EnsureVisible(List(), selected, FALSE);
    }
    UpdateButtons();
  }

  int Selected() const { return ListView_GetNextItem(List(), -1, LVNI_SELECTED); }

  // The check boxes are the user's to click: read them before each change.
  void ReadFlags() {
    if (!with_flags_) return;
    for (size_t i = 0; i < items_.size(); ++i) {
      flags_[i] = ListView_GetCheckState(List(), static_cast<int>(i)) != 0;
    }
  }

  void UpdateButtons() {
    const int selected = Selected();
    const int count = static_cast<int>(items_.size());
    Enable(IDC_LIST_REPLACE, selected >= 0);
    Enable(IDC_LIST_REMOVE, selected >= 0);
    Enable(IDC_LIST_UP, selected > 0);
    Enable(IDC_LIST_DOWN, selected >= 0 && selected + 1 < count);
  }

  void Add() {
    const std::string text = Trimmed(Text(IDC_LIST_TEXT));
    if (text.empty()) return;
    ReadFlags();
    items_.push_back(text);
    flags_.push_back(false);
    Show(static_cast<int>(items_.size()) - 1);
    FocusEdit(IDC_LIST_TEXT);
  }

  void Replace(int selected) {
    const std::string text = Trimmed(Text(IDC_LIST_TEXT));
    if (selected < 0 || text.empty()) return;
    ReadFlags();
    items_[static_cast<size_t>(selected)] = text;
    Show(selected);
  }

  void Remove(int selected) {
    if (selected < 0) return;
    ReadFlags();
    items_.erase(items_.begin() + selected);
    flags_.erase(flags_.begin() + selected);
    Show(std::min(selected, static_cast<int>(items_.size()) - 1));
  }

  void Move(int selected, int delta) {
    const int to = selected + delta;
    if (selected < 0 || to < 0 || to >= static_cast<int>(items_.size())) return;
    ReadFlags();
    std::swap(items_[static_cast<size_t>(selected)], items_[static_cast<size_t>(to)]);
    const bool flag = flags_[static_cast<size_t>(selected)];
    flags_[static_cast<size_t>(selected)] = flags_[static_cast<size_t>(to)];
    flags_[static_cast<size_t>(to)] = flag;
    Show(to);
  }

  void OnCommand(int id, int code) override {
    if (code != BN_CLICKED) return;
    switch (id) {
      case IDC_LIST_ADD:
        Add();
        return;
      case IDC_LIST_REPLACE:
        Replace(Selected());
        return;
      case IDC_LIST_REMOVE:
        Remove(Selected());
        return;
      case IDC_LIST_UP:
        Move(Selected(), -1);
        return;
      case IDC_LIST_DOWN:
        Move(Selected(), 1);
        return;
      case IDOK:
        ReadFlags();
        End(true);
        return;
      case IDCANCEL:
        End(false);
        return;
      default:
        return;
    }
  }

  void OnNotify(NMHDR* header) override {
    if (header->idFrom != IDC_LIST_ITEMS || header->code != LVN_ITEMCHANGED) return;
    const auto* change = reinterpret_cast<NMLISTVIEW*>(header);
    if ((change->uNewState & LVIS_SELECTED) && !(change->uOldState & LVIS_SELECTED) &&
        change->iItem >= 0 && change->iItem < static_cast<int>(items_.size())) {
      SetText(IDC_LIST_TEXT, items_[static_cast<size_t>(change->iItem)]);
    }
    UpdateButtons();
  }

  std::string title_;
  std::string hint_;
  bool with_flags_;
};

constexpr const char* kUseDefaultKeys[3] = {"CmpUseDefaultName", "AsmUseDefaultName",
                                            "LinkUseDefaultName"};
constexpr const char* kCustomKeys[3] = {"CmpCustomFilterName", "AsmCustomFilterName",
                                        "LinkCustomFilterName"};

std::string FirstValue(CSettingsSheet& sheet, const char* key) {
  const FieldView view = sheet.View(*FindField(key));
  return view.values.empty() ? std::string() : view.values[0];
}

class ErrorFilesView : public Win32Dialog {
 public:
  explicit ErrorFilesView(CSettingsSheet& sheet) : sheet_(sheet) {}

 private:
  BOOL OnInit() override {
    std::vector<std::string> names;
    int selected = -1;
    const std::string current = FirstValue(sheet_, "FilterName");
    for (const FilterDescriptor& row : FilterTable()) {
      if (current == row.name) selected = static_cast<int>(names.size());
      names.push_back(row.name);
    }
    FillCombo(IDC_ERR_FILTER, names, selected);
    for (int i = 0; i < 3; ++i) {
      ::CheckDlgButton(hwnd_, IDC_ERR_USE_DEFAULT + i,
                       FirstValue(sheet_, kUseDefaultKeys[i]) == "1" ? BST_CHECKED : BST_UNCHECKED);
      SetText(IDC_ERR_CUSTOM + i, FirstValue(sheet_, kCustomKeys[i]));
    }
    ShowDefaults();
    return TRUE;
  }

  // The chosen row's own error-file names, beside the boxes that use them;
  // a custom name is typed only where the default is not used.
  void ShowDefaults() {
    const FilterDescriptor* row = FindFilter(Text(IDC_ERR_FILTER));
    const TranslatorCapture* captures[3] = {nullptr, nullptr, nullptr};
    if (row != nullptr) {
      captures[0] = &row->compiler;
      captures[1] = &row->assembler;
      captures[2] = &row->linker;
    }
    for (int i = 0; i < 3; ++i) {
      const char* name = captures[i] != nullptr ? captures[i]->error_file : "";
      SetText(IDC_ERR_DEFAULT_NAME + i, *name ? std::string("(") + name + ")" : "");
      Enable(IDC_ERR_CUSTOM + i, ::IsDlgButtonChecked(hwnd_, IDC_ERR_USE_DEFAULT + i) == 0);
    }
  }

  bool Write() {
    std::string error;
    const std::string filter = Text(IDC_ERR_FILTER);
    if (!filter.empty() && !sheet_.Edit(*FindField("FilterName"), {filter}, &error))
      return Fail(error);
    for (int i = 0; i < 3; ++i) {
      const bool use_default = ::IsDlgButtonChecked(hwnd_, IDC_ERR_USE_DEFAULT + i) != 0;
      if (!sheet_.Edit(*FindField(kUseDefaultKeys[i]), {use_default ? "1" : "0"}, &error) ||
          !sheet_.Edit(*FindField(kCustomKeys[i]), {Text(IDC_ERR_CUSTOM + i)}, &error)) {
        return Fail(error);
      }
    }
    return true;
  }

  bool Fail(const std::string& error) {
    sheet_.ui().ShowMessage(error, MessageBoxKind::kOk);
    return false;
  }

  void OnCommand(int id, int code) override {
    if (id == IDC_ERR_FILTER && code == CBN_SELCHANGE) {
      ShowDefaults();
    } else if (id >= IDC_ERR_USE_DEFAULT && id < IDC_ERR_USE_DEFAULT + 3 && code == BN_CLICKED) {
      ShowDefaults();
    } else if (id == IDOK) {
      if (Write()) End(true);
    } else if (id == IDCANCEL) {
      End(false);
    }
  }

  CSettingsSheet& sheet_;
};

}  // namespace

bool RunListEditor(const std::string& title, const std::string& hint,
                   std::vector<std::string>* items, std::vector<bool>* flags) {
  std::vector<bool> own_flags = flags != nullptr ? *flags : std::vector<bool>(items->size());
  own_flags.resize(items->size());
  ListEditorView view(title, hint, *items, own_flags, flags != nullptr);
  if (!view.Run(IDD_LIST_EDITOR)) return false;
  *items = view.items_;
  if (flags != nullptr) *flags = view.flags_;
  return true;
}

bool RunErrorFilesDialog(CSettingsSheet& sheet) {
  return ErrorFilesView(sheet).Run(IDD_ERROR_FILES);
}

}  // namespace quillon
