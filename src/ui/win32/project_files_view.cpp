#include "ui/win32/project_files_view.h"

#include <windows.h>
// After windows.h, which they need.
#include <commdlg.h>
#include <dlgs.h>

#include <set>
#include <string>
#include <vector>

#include "platform/path.h"
#include "ui/win32/dialog_ids.h"
#include "ui/win32/win32_dialog.h"

namespace quillon {
namespace {

constexpr size_t kFileBufferSize = 30000;

// "a|b|c|d" -> {"a", "b", "c", "d"}
std::vector<std::string> SplitAt(const std::string& text, char separator) {
  std::vector<std::string> parts;
  size_t start = 0;
  for (size_t at = text.find(separator); at != std::string::npos;
       at = text.find(separator, start)) {
    parts.push_back(text.substr(start, at - start));
    start = at + 1;
  }
  parts.push_back(text.substr(start));
  return parts;
}

class ProjectFilesView {
 public:
  explicit ProjectFilesView(CProjectFilesDialog& dialog)
      : dialog_(dialog), selection_message_(::RegisterWindowMessageA(LBSELCHSTRINGA)) {}

  bool Run() {
    std::vector<char> filter;
    for (char c : dialog_.filter() + "||") filter.push_back(c == '|' ? '\0' : c);
    std::vector<char> names(kFileBufferSize, '\0');
    OPENFILENAMEA ofn = {};
    ofn.lStructSize = sizeof ofn;
    ofn.hwndOwner = ::GetActiveWindow();
    ofn.hInstance = LibraryModule();
    ofn.lpstrFilter = filter.data();
    ofn.nFilterIndex = 1;
    ofn.lpstrFile = names.data();
    ofn.nMaxFile = static_cast<DWORD>(names.size());
    ofn.lpstrTitle = "Project Files";
    ofn.Flags = OFN_EXPLORER | OFN_ALLOWMULTISELECT | OFN_HIDEREADONLY | OFN_NOCHANGEDIR |
                OFN_SHOWHELP | OFN_ENABLESIZING | OFN_ENABLEHOOK | OFN_ENABLETEMPLATE;
    ofn.lpfnHook = &ProjectFilesView::Hook;
    ofn.lpTemplateName = MAKEINTRESOURCEA(IDD_PROJECT_FILES);
    ofn.lCustData = reinterpret_cast<LPARAM>(this);
    // The files are added while it runs; its own answer only says how it
    // was closed, and that is known here.
    ::GetOpenFileNameA(&ofn);
    return ended_with_ok_;
  }

 private:
  static UINT_PTR CALLBACK Hook(HWND hwnd, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_INITDIALOG) {
      auto* self =
          reinterpret_cast<ProjectFilesView*>(reinterpret_cast<OPENFILENAMEA*>(lparam)->lCustData);
      ::SetWindowLongPtrA(hwnd, DWLP_USER, reinterpret_cast<LONG_PTR>(self));
      self->hwnd_ = hwnd;
      self->OnInit();
      return TRUE;
    }
    auto* self = reinterpret_cast<ProjectFilesView*>(::GetWindowLongPtrA(hwnd, DWLP_USER));
    if (self == nullptr) return FALSE;
    if (message == WM_COMMAND) {
      self->OnCommand(LOWORD(wparam), HIWORD(wparam));
      return TRUE;
    }
    if (message == WM_NOTIFY) {
      const LRESULT result = self->OnNotify(reinterpret_cast<OFNOTIFYA*>(lparam));
      ::SetWindowLongPtrA(hwnd, DWLP_MSGRESULT, result);
      return TRUE;
    }
    if (message == self->selection_message_) {
      self->FollowFileSelection();
      return TRUE;
    }
    return FALSE;
  }

  HWND Dialog() const { return ::GetParent(hwnd_); }
  HWND Item(int id) const { return ::GetDlgItem(hwnd_, id); }

  void OnInit() {
    ::SendMessageA(Dialog(), CDM_SETCONTROLTEXT, IDOK, reinterpret_cast<LPARAM>("&Add"));
    filling_ = true;
    HWND combo = Item(IDC_ADD_TO_GROUP);
    for (const std::string& group : dialog_.groups()) {
      ::SendMessageA(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(group.c_str()));
    }
    ::SendMessageA(combo, CB_SETCURSEL, static_cast<WPARAM>(dialog_.group_selection()), 0);
    filling_ = false;
    ShowGroupFiles();
  }

  void ShowGroupFiles() {
    filling_ = true;
    HWND list = Item(IDC_GROUP_FILES);
    ::SendMessageA(list, LB_RESETCONTENT, 0, 0);
    for (const std::string& file : dialog_.files()) {
      ::SendMessageA(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(file.c_str()));
    }
    filling_ = false;
    ::EnableWindow(Item(IDC_REMOVE_FILES), FALSE);
  }

  // The folder the dialog shows, from its own folder text.
  std::string Folder() const {
    char folder[MAX_PATH + 1] = "";
    ::SendMessageA(Dialog(), CDM_GETFOLDERPATH, sizeof folder, reinterpret_cast<LPARAM>(folder));
    return AddBackslash(folder);
  }

  void OnCommand(int id, int code) {
    if (filling_) return;
    if (id == IDC_ADD_TO_GROUP && code == CBN_SELCHANGE) {
      dialog_.SelectGroup(static_cast<int>(::SendMessageA(Item(id), CB_GETCURSEL, 0, 0)));
      ShowGroupFiles();
    } else if (id == IDC_GROUP_FILES && code == LBN_SELCHANGE) {
      const LRESULT count = ::SendMessageA(Item(id), LB_GETSELCOUNT, 0, 0);
      ::EnableWindow(Item(IDC_REMOVE_FILES), count > 0);
    } else if (id == IDC_REMOVE_FILES) {
      RemoveSelected();
    } else if (id == IDC_ADD_ALL) {
      AddAll();
    } else if (id == IDC_FILES_OK) {
      ended_with_ok_ = true;
      ::PostMessageA(Dialog(), WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED),
                     reinterpret_cast<LPARAM>(::GetDlgItem(Dialog(), IDCANCEL)));
    }
  }

  // Where control `id` of the open dialog lies, in this window's terms.
  bool DialogControlRect(int id, RECT* rect) const {
    HWND control = ::GetDlgItem(Dialog(), id);
    if (control == nullptr || !::GetWindowRect(control, rect)) return false;
    ::MapWindowPoints(nullptr, hwnd_, reinterpret_cast<POINT*>(rect), 2);
    return true;
  }

  void Place(int id, LONG left, LONG width) const {
    HWND control = Item(id);
    RECT rect;
    ::GetWindowRect(control, &rect);
    ::MapWindowPoints(nullptr, hwnd_, reinterpret_cast<POINT*>(&rect), 2);
    ::SetWindowPos(control, nullptr, left, rect.top, width, rect.bottom - rect.top,
                   SWP_NOZORDER | SWP_NOACTIVATE);
  }

  // The group controls line up with the dialog's own, whatever its layout:
  // their left edge with "File name:", the lists' right edge with the name
  // box, the buttons in the column of Open and Cancel.
  void LineUp() const {
    RECT label, name, open;
    if (!DialogControlRect(stc3, &label) || !DialogControlRect(cmb13, &name) ||
        !DialogControlRect(IDOK, &open)) {
      return;
    }
    for (int id : {IDC_ADD_TO_GROUP_LABEL, IDC_GROUP_FILES_LABEL}) {
      Place(id, label.left, name.right - label.left);
    }
    for (int id : {IDC_ADD_TO_GROUP, IDC_GROUP_FILES})
      Place(id, label.left, name.right - label.left);
    for (int id : {IDC_REMOVE_FILES, IDC_ADD_ALL, IDC_FILES_OK}) {
      Place(id, open.left, open.right - open.left);
    }
  }

  LRESULT OnNotify(OFNOTIFYA* notify) {
    if (notify->hdr.code == CDN_INITDONE) LineUp();
    if (notify->hdr.code == CDN_SELCHANGE) FollowFileSelection();
    if (notify->hdr.code != CDN_FILEOK) return 0;
    AddChosen(*notify->lpOFN);
    // Stay open: more files may follow, to this group or another.
    return 1;
  }

  // A pick in the file list is what "&Add" will take; the group list's
  // selection is for "&Remove", so it goes, not to look like a pending
  // choice.
  void FollowFileSelection() {
    ::SendMessageA(Item(IDC_GROUP_FILES), LB_SETSEL, FALSE, -1);
    ::EnableWindow(Item(IDC_REMOVE_FILES), FALSE);
  }

  // What the Open button took: one full path, or the folder and then each
  // name, separated by NULs.
  void AddChosen(const OPENFILENAMEA& ofn) {
    const char* buffer = ofn.lpstrFile;
    std::vector<std::string> names;
    if (ofn.nFileOffset > 0 && buffer[ofn.nFileOffset - 1] == '\0') {
      for (const char* name = buffer + ofn.nFileOffset; *name != '\0'; name += strlen(name) + 1) {
        names.push_back(name);
      }
    } else {
      names.push_back(buffer);
    }
    dialog_.AddFiles(Folder(), names);
    ShowGroupFiles();
    ::SendMessageA(Dialog(), CDM_SETCONTROLTEXT, cmb13, reinterpret_cast<LPARAM>(""));
    ::SendMessageA(Dialog(), CDM_SETCONTROLTEXT, edt1, reinterpret_cast<LPARAM>(""));
  }

  // Every file of the folder that the chosen file type shows.
  void AddAll() {
    const std::vector<std::string> filter = SplitAt(dialog_.filter(), '|');
    const LRESULT type = ::SendMessageA(::GetDlgItem(Dialog(), cmb1), CB_GETCURSEL, 0, 0);
    const size_t pattern = 2 * static_cast<size_t>(type < 0 ? 0 : type) + 1;
    if (pattern >= filter.size()) return;
    const std::string folder = Folder();
    // In name order, each once, whichever masks match it.
    std::set<std::string> names;
    for (const std::string& mask : SplitAt(filter[pattern], ';')) {
      WIN32_FIND_DATAA found;
      HANDLE search = ::FindFirstFileA((folder + mask).c_str(), &found);
      if (search == INVALID_HANDLE_VALUE) continue;
      do {
        if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) names.insert(found.cFileName);
      } while (::FindNextFileA(search, &found));
      ::FindClose(search);
    }
    dialog_.AddFiles(folder, std::vector<std::string>(names.begin(), names.end()));
    ShowGroupFiles();
  }

  void RemoveSelected() {
    HWND list = Item(IDC_GROUP_FILES);
    const LRESULT count = ::SendMessageA(list, LB_GETSELCOUNT, 0, 0);
    if (count <= 0) return;
    std::vector<int> selected(static_cast<size_t>(count));
    ::SendMessageA(list, LB_GETSELITEMS, static_cast<WPARAM>(count),
                   reinterpret_cast<LPARAM>(selected.data()));
    dialog_.RemoveFiles(selected);
    ShowGroupFiles();
  }

  CProjectFilesDialog& dialog_;
  const UINT selection_message_;
  HWND hwnd_ = nullptr;
  // Set while the view fills its controls: what that makes them tell is
  // not the user's doing.
  bool filling_ = false;
  bool ended_with_ok_ = false;
};

}  // namespace

bool RunProjectFilesView(CProjectFilesDialog& dialog) { return ProjectFilesView(dialog).Run(); }

}  // namespace quillon
