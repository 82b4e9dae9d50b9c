// The settings sheet's pages. Every page is the same template: the tree of
// targets, groups and files, and a grid of the page's options for what the
// tree selects, edited in place. The pages share one selection, so that a
// change of page keeps what the user chose.
#include "ui/win32/settings_view.h"

#include <windows.h>
// After windows.h, which they need.
#include <commctrl.h>

#include <algorithm>
#include <cctype>
#include <memory>
#include <string>
#include <vector>

#include "filters/filter_table.h"
#include "platform/path.h"
#include "ui/settings/macro_menu.h"
#include "ui/settings/settings_sheet.h"
#include "ui/win32/dialog_ids.h"
#include "ui/win32/settings_dialogs.h"
#include "ui/win32/win32_dialog.h"

namespace quillon {
namespace {

// Posted to a page, so that an editor is never destroyed inside one of
// its own notifications. wParam: 1 to give the grid the focus afterwards;
// lParam: the editor's generation, so a late message cannot close the next.
constexpr UINT kCommitEditor = WM_APP + 1;
constexpr UINT kCancelEditor = WM_APP + 2;
constexpr UINT kOpenEditor = WM_APP + 3;  // wParam: the row
constexpr UINT kTreeChecked = WM_APP + 4;

struct TreeNode {
  CProjectTarget* target = nullptr;
  CLinkGroup* group = nullptr;
  CProjectFile* file = nullptr;
  std::string label;
  int parent = -1;
};

// What the pages share: the tree's nodes ([0] is the project), which are
// checked, which is highlighted, and whether OK went through.
struct SheetState {
  explicit SheetState(CSettingsSheet& settings) : sheet(settings) {
    nodes.push_back({nullptr, nullptr, nullptr, "Project", -1});
    for (const auto& target : sheet.working_copy().target_set().targets) {
      const int target_node = static_cast<int>(nodes.size());
      nodes.push_back({target.get(), nullptr, nullptr, target->name, 0});
      for (const auto& group : target->groups) {
        const int group_node = static_cast<int>(nodes.size());
        nodes.push_back({target.get(), group.get(), nullptr, group->name, target_node});
        for (const auto& file : group->files) {
          nodes.push_back({target.get(), group.get(), file.get(),
                           NameAndExtOfFile(file->display_name()), group_node});
        }
      }
    }
    checked.assign(nodes.size(), false);
    // Start where the options of files live: the default target.
    for (size_t i = 0; i < nodes.size(); ++i) {
      if (nodes[i].target != nullptr && nodes[i].group == nullptr &&
          nodes[i].target == sheet.working_copy().default_target()) {
        highlighted = static_cast<int>(i);
      }
    }
    Select();
  }

  // The highlighted node and every checked one.
  void Select() {
    SettingsSelection selection;
    for (size_t i = 0; i < nodes.size(); ++i) {
      if (!checked[i] && static_cast<int>(i) != highlighted) continue;
      const TreeNode& node = nodes[i];
      if (node.file != nullptr) {
        selection.files.push_back(node.file);
      } else if (node.group != nullptr) {
        selection.groups.push_back(node.group);
      } else if (node.target != nullptr) {
        selection.targets.push_back(node.target);
      }
    }
    sheet.Select(std::move(selection));
  }

  CSettingsSheet& sheet;
  std::vector<TreeNode> nodes;
  std::vector<bool> checked;
  int highlighted = 0;
  bool ok = false;
};

// "&Output file name:" as a grid shows it: "Output file name".
std::string RowLabel(const char* label) {
  std::string text;
  for (const char* c = label; *c != '\0'; ++c) {
    if (*c == '&' && c[1] != '&') continue;
    text += *c;
  }
  if (!text.empty() && text.back() == ':') text.pop_back();
  return text;
}

std::string Joined(const std::vector<std::string>& values, const std::vector<std::string>& flags) {
  std::string text;
  for (size_t i = 0; i < values.size(); ++i) {
    if (i > 0) text += "; ";
    text += values[i];
    if (i < flags.size() && flags[i] == "1") text += " (+subdirectories)";
  }
  return text;
}

class PageView {
 public:
  PageView(SheetState& state, SettingsPage page) : state_(state), page_(page) {
    for (const SettingsField* field : FieldsOfPage(page)) {
      if (!field->in_advanced_dialog) rows_.push_back(field);
    }
  }
  ~PageView() {
    if (bold_ != nullptr) ::DeleteObject(bold_);
  }

  static INT_PTR CALLBACK Proc(HWND hwnd, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_INITDIALOG) {
      auto* self = reinterpret_cast<PageView*>(reinterpret_cast<PROPSHEETPAGEA*>(lparam)->lParam);
      ::SetWindowLongPtrA(hwnd, DWLP_USER, reinterpret_cast<LONG_PTR>(self));
      self->hwnd_ = hwnd;
      self->OnInit();
      return TRUE;
    }
    auto* self = reinterpret_cast<PageView*>(::GetWindowLongPtrA(hwnd, DWLP_USER));
    return self != nullptr ? self->OnMessage(message, wparam, lparam) : FALSE;
  }

 private:
  // A label that the page repeats ("Parameters") is named after the row it
  // belongs to, the one above it.
  std::vector<std::string> RowLabels() const {
    std::vector<std::string> labels;
    for (const SettingsField* field : rows_) labels.push_back(RowLabel(field->label));
    std::vector<std::string> named = labels;
    for (size_t row = 1; row < labels.size(); ++row) {
      if (std::count(labels.begin(), labels.end(), labels[row]) < 2) continue;
      std::string label = labels[row];
      label[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(label[0])));
      named[row] = labels[row - 1] + ": " + label;
    }
    return named;
  }

  HWND Item(int id) const { return ::GetDlgItem(hwnd_, id); }
  HWND Tree() const { return Item(IDC_SETTINGS_TREE); }
  HWND Grid() const { return Item(IDC_SETTINGS_GRID); }
  CSettingsSheet& sheet() { return state_.sheet; }

  void OnInit() {
    // Check boxes on a tree must be switched on after it exists.
    ::SetWindowLongPtrA(Tree(), GWL_STYLE, ::GetWindowLongPtrA(Tree(), GWL_STYLE) | TVS_CHECKBOXES);
    FillTree();
    ListView_SetExtendedListViewStyle(Grid(), LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES);
    const char* titles[2] = {"Option", "Value"};
    for (int i = 0; i < 2; ++i) {
      LVCOLUMNA column = {};
      column.mask = LVCF_TEXT | LVCF_WIDTH;
      column.pszText = const_cast<char*>(titles[i]);
      column.cx = 100;
      ListView_InsertColumn(Grid(), i, &column);
    }
    const std::vector<std::string> labels = RowLabels();
    for (size_t row = 0; row < rows_.size(); ++row) {
      LVITEMA item = {};
      item.mask = LVIF_TEXT;
      item.iItem = static_cast<int>(row);
      item.pszText = const_cast<char*>(labels[row].c_str());
      ListView_InsertItem(Grid(), &item);
    }
    // Labels in full where they fit; the values take the rest.
    RECT client;
    ::GetClientRect(Grid(), &client);
    ListView_SetColumnWidth(Grid(), 0, LVSCW_AUTOSIZE);
    const int widest = client.right * 2 / 3;
    if (ListView_GetColumnWidth(Grid(), 0) > widest) ListView_SetColumnWidth(Grid(), 0, widest);
    ListView_SetColumnWidth(Grid(), 1, LVSCW_AUTOSIZE_USEHEADER);
    ListView_SetItemState(Grid(), 0, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    LOGFONTA font = {};
    ::GetObjectA(reinterpret_cast<HFONT>(::SendMessageA(Grid(), WM_GETFONT, 0, 0)), sizeof font,
                 &font);
    font.lfWeight = FW_BOLD;
    bold_ = ::CreateFontIndirectA(&font);
    if (page_ != SettingsPage::kGeneral) ::ShowWindow(Item(IDC_ERROR_FILES), SW_HIDE);
  }

  INT_PTR OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
      case WM_COMMAND:
        OnCommand(LOWORD(wparam), HIWORD(wparam));
        return TRUE;
      case WM_NOTIFY:
        return Answer(OnNotify(reinterpret_cast<NMHDR*>(lparam)));
      case kCommitEditor:
        if (static_cast<unsigned>(lparam) == generation_ && Commit() && wparam != 0) {
          ::SetFocus(Grid());
        }
        return TRUE;
      case kCancelEditor:
        if (static_cast<unsigned>(lparam) == generation_) {
          DestroyEditor();
          ::SetFocus(Grid());
        }
        return TRUE;
      case kOpenEditor:
        OpenEditor(static_cast<int>(wparam));
        return TRUE;
      case kTreeChecked:
        ReadTree();
        return TRUE;
      default:
        return FALSE;
    }
  }

  // A dialog procedure answers notifications through DWLP_MSGRESULT.
  INT_PTR Answer(LRESULT result) {
    ::SetWindowLongPtrA(hwnd_, DWLP_MSGRESULT, result);
    return TRUE;
  }

  // Tree

  void FillTree() {
    items_.assign(state_.nodes.size(), nullptr);
    filling_ = true;
    for (size_t i = 0; i < state_.nodes.size(); ++i) {
      const TreeNode& node = state_.nodes[i];
      TVINSERTSTRUCTA insert = {};
      insert.hParent = node.parent >= 0 ? items_[static_cast<size_t>(node.parent)] : TVI_ROOT;
      insert.hInsertAfter = TVI_LAST;
      insert.item.mask = TVIF_TEXT | TVIF_PARAM;
      insert.item.pszText = const_cast<char*>(node.label.c_str());
      insert.item.lParam = static_cast<LPARAM>(i);
      items_[i] = TreeView_InsertItem(Tree(), &insert);
    }
    for (size_t i = 0; i < state_.nodes.size(); ++i) {
      if (state_.nodes[i].file == nullptr) TreeView_Expand(Tree(), items_[i], TVE_EXPAND);
    }
    filling_ = false;
  }

  // The shared selection, shown again when the page becomes active.
  void ShowTreeState() {
    filling_ = true;
    for (size_t i = 0; i < items_.size(); ++i) {
      TreeView_SetItemState(Tree(), items_[i], INDEXTOSTATEIMAGEMASK(state_.checked[i] ? 2 : 1),
                            TVIS_STATEIMAGEMASK);
    }
    TreeView_SelectItem(Tree(), items_[static_cast<size_t>(state_.highlighted)]);
    filling_ = false;
    ShowOwnValues();
  }

  void ShowOwnValues() {
    for (size_t i = 0; i < items_.size(); ++i) {
      CProjectFile* file = state_.nodes[i].file;
      const bool own =
          file != nullptr && CSettingsSheet::HasOwnValues(sheet().working_copy(), *file);
      TreeView_SetItemState(Tree(), items_[i], own ? TVIS_BOLD : 0, TVIS_BOLD);
    }
  }

  void ReadTree() {
    if (filling_) return;
    if (!Commit()) return;
    for (size_t i = 0; i < items_.size(); ++i) {
      state_.checked[i] = TreeView_GetCheckState(Tree(), items_[i]) == 1;
    }
    HTREEITEM selected = TreeView_GetSelection(Tree());
    for (size_t i = 0; i < items_.size(); ++i) {
      if (items_[i] == selected) state_.highlighted = static_cast<int>(i);
    }
    state_.Select();
    Refresh();
  }

  // Grid

  void Refresh() {
    looks_.clear();
    for (size_t row = 0; row < rows_.size(); ++row) {
      const SettingsField& field = *rows_[row];
      const FieldView view = sheet().View(field);
      looks_.push_back({view.enabled, view.own});
      std::string text;
      if (!view.enabled) {
        text = field.option().level == OptionLevel::kTarget ? "(select a target)"
                                                            : "(select a target or files)";
      } else if (!view.mixed && !view.values.empty()) {
        switch (field.control) {
          case FieldControl::kCheckBox:
            text = view.values[0] == "1" ? "Yes" : "No";
            break;
          case FieldControl::kIncludeList:
            text = Joined(view.values, sheet().View(*FindOption(field.companion)).values);
            break;
          case FieldControl::kStringList:
            text = Joined(view.values, {});
            break;
          default:
            text = view.values[0];
        }
      }
      ListView_SetItemText(Grid(), static_cast<int>(row), 1, const_cast<char*>(text.c_str()));
    }
    ShowOwnValues();
    UpdateButtons();
  }

  int FocusedRow() const { return ListView_GetNextItem(Grid(), -1, LVNI_FOCUSED); }

  void UpdateButtons() {
    const int row = FocusedRow();
    const SettingsField* field = row >= 0 ? rows_[static_cast<size_t>(row)] : nullptr;
    const bool file_level = field != nullptr && field->option().level == OptionLevel::kFile;
    const SettingsSelection& selection = sheet().selection();
    ::EnableWindow(Item(IDC_SET_TO_DEFAULT), file_level && !selection.targets.empty());
    ::EnableWindow(Item(IDC_SET_TO_TARGET),
                   file_level && (!selection.targets.empty() || !selection.files.empty() ||
                                  !selection.groups.empty()));
    ::EnableWindow(Item(IDC_INSERT_MACRO), field != nullptr && field->macros != MacroSet::kNone &&
                                               row < static_cast<int>(looks_.size()) &&
                                               looks_[static_cast<size_t>(row)].enabled);
  }

  // Disabled rows grey, own values bold.
  LRESULT CustomDraw(NMLVCUSTOMDRAW* draw) {
    switch (draw->nmcd.dwDrawStage) {
      case CDDS_PREPAINT:
        return CDRF_NOTIFYITEMDRAW;
      case CDDS_ITEMPREPAINT:
        return CDRF_NOTIFYSUBITEMDRAW;
      case CDDS_ITEMPREPAINT | CDDS_SUBITEM: {
        const size_t row = draw->nmcd.dwItemSpec;
        if (row >= looks_.size()) return CDRF_DODEFAULT;
        draw->clrText = ::GetSysColor(looks_[row].enabled ? COLOR_WINDOWTEXT : COLOR_GRAYTEXT);
        const bool bold = draw->iSubItem == 1 && looks_[row].own;
        ::SelectObject(
            draw->nmcd.hdc,
            bold ? bold_ : reinterpret_cast<HFONT>(::SendMessageA(Grid(), WM_GETFONT, 0, 0)));
        return CDRF_NEWFONT;
      }
      default:
        return CDRF_DODEFAULT;
    }
  }

  // In-place editors

  RECT CellRect(int row) const {
    RECT rect = {};
    ListView_GetSubItemRect(Grid(), row, 1, LVIR_BOUNDS, &rect);
    ::MapWindowPoints(Grid(), hwnd_, reinterpret_cast<POINT*>(&rect), 2);
    return rect;
  }

  void OpenEditor(int row) {
    if (row < 0 || row >= static_cast<int>(rows_.size())) return;
    if (editor_ != nullptr && editor_row_ == row) return;
    if (!Commit()) return;
    const SettingsField& field = *rows_[static_cast<size_t>(row)];
    const FieldView view = sheet().View(field);
    if (!view.enabled) {
      ::MessageBeep(MB_OK);
      return;
    }
    const std::string current = view.mixed || view.values.empty() ? "" : view.values[0];
    switch (field.control) {
      case FieldControl::kIncludeList:
      case FieldControl::kStringList:
        EditList(field, view);
        return;
      case FieldControl::kCheckBox:
        OpenCombo(row, {"Yes", "No"}, view.mixed ? -1 : current == "1" ? 0 : 1);
        return;
      case FieldControl::kFilterCombo: {
        std::vector<std::string> names;
        int selected = -1;
        for (const FilterDescriptor& filter : FilterTable()) {
          if (!view.mixed && current == filter.name) selected = static_cast<int>(names.size());
          names.push_back(filter.name);
        }
        OpenCombo(row, names, selected);
        return;
      }
      default:
        OpenEdit(row, current);
    }
  }

  void Place(HWND editor, int row, int extra_height) {
    const RECT cell = CellRect(row);
    ::SendMessageA(editor, WM_SETFONT, ::SendMessageA(Grid(), WM_GETFONT, 0, 0), FALSE);
    ::SetWindowPos(editor, HWND_TOP, cell.left, cell.top, cell.right - cell.left,
                   cell.bottom - cell.top + extra_height, SWP_SHOWWINDOW);
    ::SetWindowLongPtrA(editor, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    editor_proc_ = reinterpret_cast<WNDPROC>(
        ::SetWindowLongPtrA(editor, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&EditorProc)));
    editor_ = editor;
    editor_row_ = row;
    ++generation_;
    ::SetFocus(editor);
  }

  HWND Create(const char* kind, DWORD style, int id) {
    return ::CreateWindowExA(
        0, kind, "", WS_CHILD | WS_BORDER | style, 0, 0, 0, 0, hwnd_,
        reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
        reinterpret_cast<HINSTANCE>(::GetWindowLongPtrA(hwnd_, GWLP_HINSTANCE)), nullptr);
  }

  void OpenEdit(int row, const std::string& text) {
    HWND edit = Create("EDIT", ES_AUTOHSCROLL, IDC_SETTINGS_EDIT);
    ::SetWindowTextA(edit, text.c_str());
    initial_ = text;
    Place(edit, row, 0);
    ::SendMessageA(edit, EM_SETSEL, 0, -1);
  }

  void OpenCombo(int row, const std::vector<std::string>& choices, int selected) {
    HWND combo = Create("COMBOBOX", CBS_DROPDOWNLIST | WS_VSCROLL, IDC_SETTINGS_COMBO);
    for (const std::string& choice : choices) {
      ::SendMessageA(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(choice.c_str()));
    }
    ::SendMessageA(combo, CB_SETCURSEL, static_cast<WPARAM>(selected), 0);
    initial_ = selected >= 0 ? choices[static_cast<size_t>(selected)] : "";
    Place(combo, row, 200);
  }

  bool EditorIsCombo() const { return ::GetDlgCtrlID(editor_) == IDC_SETTINGS_COMBO; }

  std::string EditorText() const {
    char text[4096] = "";
    ::GetWindowTextA(editor_, text, sizeof text);
    return text;
  }

  // Writes an editor's changed value; false, with the editor kept and the
  // reason shown, when the sheet refuses it.
  bool Commit() {
    if (editor_ == nullptr) return true;
    if (committing_) return false;
    const SettingsField& field = *rows_[static_cast<size_t>(editor_row_)];
    std::string value = EditorText();
    if (value != initial_) {
      if (field.control == FieldControl::kCheckBox) value = value == "Yes" ? "1" : "0";
      std::string error;
      committing_ = true;
      const bool written = sheet().Edit(field, {value}, &error);
      if (!written) sheet().ui().ShowMessage(error, MessageBoxKind::kOk);
      committing_ = false;
      if (!written) {
        ::SetFocus(editor_);
        return false;
      }
    }
    DestroyEditor();
    Refresh();
    return true;
  }

  void DestroyEditor() {
    HWND editor = editor_;
    editor_ = nullptr;
    ++generation_;
    if (editor != nullptr) ::DestroyWindow(editor);
  }

  // Return and Escape belong to the editor while it is open, not to the
  // sheet's OK and Cancel.
  static LRESULT CALLBACK EditorProc(HWND editor, UINT message, WPARAM wparam, LPARAM lparam) {
    auto* self = reinterpret_cast<PageView*>(::GetWindowLongPtrA(editor, GWLP_USERDATA));
    const WNDPROC base = self->editor_proc_;
    const bool dropped = ::GetDlgCtrlID(editor) == IDC_SETTINGS_COMBO &&
                         ::SendMessageA(editor, CB_GETDROPPEDSTATE, 0, 0) != 0;
    const bool enter_or_escape = wparam == VK_RETURN || wparam == VK_ESCAPE;
    if (message == WM_GETDLGCODE && lparam != 0 && !dropped) {
      const MSG* key = reinterpret_cast<const MSG*>(lparam);
      if (key->message == WM_KEYDOWN && (key->wParam == VK_RETURN || key->wParam == VK_ESCAPE)) {
        return ::CallWindowProcA(base, editor, message, wparam, lparam) | DLGC_WANTMESSAGE;
      }
    }
    if (message == WM_KEYDOWN && enter_or_escape && !dropped) {
      ::PostMessageA(self->hwnd_, wparam == VK_RETURN ? kCommitEditor : kCancelEditor, 1,
                     static_cast<LPARAM>(self->generation_));
      return 0;
    }
    if (message == WM_CHAR && (wparam == '\r' || wparam == 27) && !dropped) return 0;
    return ::CallWindowProcA(base, editor, message, wparam, lparam);
  }

  void EditList(const SettingsField& field, const FieldView& view) {
    std::vector<std::string> items = view.values;
    std::vector<bool> flags;
    const OptionInfo* companion = field.companion ? FindOption(field.companion) : nullptr;
    if (companion != nullptr) {
      for (const std::string& flag : sheet().View(*companion).values) flags.push_back(flag == "1");
    }
    const std::string hint = companion != nullptr ? "Checked: its subdirectories are searched too."
                                                  : "One NAME=value per line.";
    if (!RunListEditor(RowLabel(field.label), hint, &items, companion ? &flags : nullptr)) return;
    std::string error;
    std::vector<std::string> flag_texts;
    for (bool flag : flags) flag_texts.push_back(flag ? "1" : "0");
    if (!sheet().Edit(field, items, &error) ||
        (companion != nullptr && !sheet().Edit(*companion, flag_texts, &error))) {
      sheet().ui().ShowMessage(error, MessageBoxKind::kOk);
    }
    Refresh();
  }

  void InsertMacroAtCaret() {
    const int row = FocusedRow();
    if (row < 0) return;
    const std::vector<MacroItem> macros = MacrosFor(rows_[static_cast<size_t>(row)]->macros);
    if (macros.empty()) return;
    DWORD begin = 0, end = 0;
    const bool reopened = editor_ == nullptr || editor_row_ != row;
    if (reopened) {
      OpenEditor(row);
      if (editor_ == nullptr || EditorIsCombo()) return;
      begin = end = static_cast<DWORD>(EditorText().size());
      if (caret_row_ == row) begin = caret_begin_, end = caret_end_;
    } else {
      ::SendMessageA(editor_, EM_GETSEL, reinterpret_cast<WPARAM>(&begin),
                     reinterpret_cast<LPARAM>(&end));
    }
    // The click took the focus from the editor; it stays open for the menu.
    ++generation_;
    HMENU menu = ::CreatePopupMenu();
    for (size_t i = 0; i < macros.size(); ++i) {
      const std::string entry = std::string(macros[i].macro) + "\t" + macros[i].description;
      ::AppendMenuA(menu, MF_STRING, i + 1, entry.c_str());
    }
    RECT button;
    ::GetWindowRect(Item(IDC_INSERT_MACRO), &button);
    const int choice = ::TrackPopupMenu(menu, TPM_RETURNCMD | TPM_LEFTALIGN | TPM_TOPALIGN,
                                        button.left, button.bottom, 0, hwnd_, nullptr);
    ::DestroyMenu(menu);
    if (editor_ == nullptr) return;
    if (choice > 0) {
      size_t caret = 0;
      const std::string text = InsertMacro(EditorText(), begin, end,
                                           macros[static_cast<size_t>(choice - 1)].macro, &caret);
      ::SetWindowTextA(editor_, text.c_str());
      ::SendMessageA(editor_, EM_SETSEL, caret, caret);
    }
    ::SetFocus(editor_);
  }

  // Commands and notifications

  void OnCommand(int id, int code) {
    if ((id == IDC_SETTINGS_EDIT && code == EN_KILLFOCUS) ||
        (id == IDC_SETTINGS_COMBO && code == CBN_KILLFOCUS)) {
      if (id == IDC_SETTINGS_EDIT && editor_ != nullptr) {
        caret_row_ = editor_row_;
        ::SendMessageA(editor_, EM_GETSEL, reinterpret_cast<WPARAM>(&caret_begin_),
                       reinterpret_cast<LPARAM>(&caret_end_));
      }
      ::PostMessageA(hwnd_, kCommitEditor, 0, static_cast<LPARAM>(generation_));
      return;
    }
    if (id == IDC_SETTINGS_COMBO) {
      const bool dropped = ::SendMessageA(editor_, CB_GETDROPPEDSTATE, 0, 0) != 0;
      if ((code == CBN_SELCHANGE && !dropped) || code == CBN_CLOSEUP) {
        ::PostMessageA(hwnd_, kCommitEditor, 1, static_cast<LPARAM>(generation_));
      }
      return;
    }
    if (code != BN_CLICKED) return;
    const int row = FocusedRow();
    const SettingsField* field = row >= 0 ? rows_[static_cast<size_t>(row)] : nullptr;
    switch (id) {
      case IDC_SET_TO_DEFAULT:
        if (field != nullptr && Commit()) sheet().SetTargetsToDefault(*field);
        break;
      case IDC_SET_TO_TARGET:
        if (field != nullptr && Commit()) sheet().SetFilesToTargetValue(*field);
        break;
      case IDC_ERROR_FILES:
        if (Commit()) RunErrorFilesDialog(sheet());
        break;
      case IDC_INSERT_MACRO:
        InsertMacroAtCaret();
        return;
      default:
        return;
    }
    Refresh();
  }

  LRESULT OnNotify(NMHDR* header) {
    if (header->idFrom == IDC_SETTINGS_TREE) return OnTreeNotify(header);
    if (header->idFrom == IDC_SETTINGS_GRID) return OnGridNotify(header);
    switch (header->code) {
      case PSN_SETACTIVE:
        ShowTreeState();
        Refresh();
        return 0;
      case PSN_KILLACTIVE:
        return !Commit() || !sheet().CanLeavePage(page_);
      case PSN_APPLY:
        if (!Commit()) return PSNRET_INVALID_NOCHANGEPAGE;
        if (!state_.ok && !sheet().Ok()) return PSNRET_INVALID_NOCHANGEPAGE;
        state_.ok = true;
        return PSNRET_NOERROR;
      default:
        return 0;
    }
  }

  // The highlighted item is painted here, focused or not: not every tree
  // draws its selection while the sheet is inactive, and the grid shows
  // that item's options.
  LRESULT TreeCustomDraw(NMTVCUSTOMDRAW* draw) {
    if (draw->nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
    if (draw->nmcd.dwDrawStage != CDDS_ITEMPREPAINT ||
        draw->nmcd.lItemlParam != state_.highlighted) {
      return CDRF_DODEFAULT;
    }
    if (::GetFocus() == Tree()) {
      draw->clrText = ::GetSysColor(COLOR_HIGHLIGHTTEXT);
      draw->clrTextBk = ::GetSysColor(COLOR_HIGHLIGHT);
    } else {
      // Between the face and the shadow of buttons: seen on a white tree.
      const COLORREF face = ::GetSysColor(COLOR_BTNFACE);
      const COLORREF shadow = ::GetSysColor(COLOR_BTNSHADOW);
      draw->clrText = ::GetSysColor(COLOR_WINDOWTEXT);
      draw->clrTextBk =
          RGB((GetRValue(face) + GetRValue(shadow)) / 2, (GetGValue(face) + GetGValue(shadow)) / 2,
              (GetBValue(face) + GetBValue(shadow)) / 2);
    }
    return CDRF_NEWFONT;
  }

  LRESULT OnTreeNotify(NMHDR* header) {
    switch (header->code) {
      case NM_CUSTOMDRAW:
        return TreeCustomDraw(reinterpret_cast<NMTVCUSTOMDRAW*>(header));
      case TVN_SELCHANGEDA:
      case TVN_SELCHANGEDW:
        ReadTree();
        return 0;
      case NM_CLICK: {
        TVHITTESTINFO hit = {};
        const DWORD at = ::GetMessagePos();
        hit.pt = {static_cast<short>(LOWORD(at)), static_cast<short>(HIWORD(at))};
        ::ScreenToClient(Tree(), &hit.pt);
        TreeView_HitTest(Tree(), &hit);
        // The box changes after the click is told; read it afterwards.
        if (hit.flags & TVHT_ONITEMSTATEICON) ::PostMessageA(hwnd_, kTreeChecked, 0, 0);
        return 0;
      }
      case TVN_KEYDOWN:
        if (reinterpret_cast<NMTVKEYDOWN*>(header)->wVKey == VK_SPACE) {
          ::PostMessageA(hwnd_, kTreeChecked, 0, 0);
        }
        return 0;
      default:
        return 0;
    }
  }

  LRESULT OnGridNotify(NMHDR* header) {
    switch (header->code) {
      case NM_CUSTOMDRAW:
        return CustomDraw(reinterpret_cast<NMLVCUSTOMDRAW*>(header));
      case NM_CLICK:
      case NM_DBLCLK: {
        const int row = reinterpret_cast<NMITEMACTIVATE*>(header)->iItem;
        if (row >= 0) ::PostMessageA(hwnd_, kOpenEditor, static_cast<WPARAM>(row), 0);
        return 0;
      }
      case LVN_KEYDOWN:
        if (reinterpret_cast<NMLVKEYDOWN*>(header)->wVKey == VK_F2) {
          ::PostMessageA(hwnd_, kOpenEditor, static_cast<WPARAM>(FocusedRow()), 0);
        }
        return 0;
      case LVN_ITEMCHANGED:
        UpdateButtons();
        return 0;
      default:
        return 0;
    }
  }

  struct RowLook {
    bool enabled;
    bool own;
  };

  SheetState& state_;
  SettingsPage page_;
  HWND hwnd_ = nullptr;
  std::vector<const SettingsField*> rows_;
  std::vector<RowLook> looks_;
  std::vector<HTREEITEM> items_;
  bool filling_ = false;
  HFONT bold_ = nullptr;

  HWND editor_ = nullptr;
  int editor_row_ = -1;
  WNDPROC editor_proc_ = nullptr;
  std::string initial_;
  unsigned generation_ = 0;
  bool committing_ = false;
  // Where the caret was when an edit lost the focus, for the macro menu.
  int caret_row_ = -1;
  DWORD caret_begin_ = 0;
  DWORD caret_end_ = 0;
};

}  // namespace

bool RunSettingsView(CSettingsSheet& sheet) {
  SheetState state(sheet);
  std::vector<std::unique_ptr<PageView>> views;
  PROPSHEETPAGEA pages[kSettingsPageCount] = {};
  for (int i = 0; i < kSettingsPageCount; ++i) {
    const auto page = static_cast<SettingsPage>(i);
    views.push_back(std::make_unique<PageView>(state, page));
    pages[i].dwSize = sizeof pages[i];
    pages[i].dwFlags = PSP_USETITLE;
    pages[i].hInstance = LibraryModule();
    pages[i].pszTemplate = MAKEINTRESOURCEA(IDD_SETTINGS_PAGE);
    pages[i].pfnDlgProc = &PageView::Proc;
    pages[i].pszTitle = PageTitle(page);
    pages[i].lParam = reinterpret_cast<LPARAM>(views.back().get());
  }
  PROPSHEETHEADERA header = {};
  header.dwSize = sizeof header;
  header.dwFlags = PSH_PROPSHEETPAGE | PSH_NOAPPLYNOW | PSH_NOCONTEXTHELP;
  header.hwndParent = ::GetActiveWindow();
  header.hInstance = LibraryModule();
  header.pszCaption = "Project Settings";
  header.nPages = kSettingsPageCount;
  header.ppsp = pages;
  return ::PropertySheetA(&header) > 0 && state.ok;
}

}  // namespace quillon
