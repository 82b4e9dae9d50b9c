// A modal dialog from the library's own resources, with its messages
// dispatched to a C++ object, and the control helpers the views share.
// User-interface thread only.
#ifndef QUILLON_UI_WIN32_WIN32_DIALOG_H
#define QUILLON_UI_WIN32_WIN32_DIALOG_H

#include <windows.h>

#include <string>
#include <vector>

namespace quillon {

// The module the dialog templates live in: the library, not the host.
HINSTANCE LibraryModule();

class Win32Dialog {
 public:
  virtual ~Win32Dialog() = default;
  // True when the dialog ended with OK.
  bool Run(int template_id);

 protected:
  // Answer FALSE when the focus was set.
  virtual BOOL OnInit() = 0;
  virtual void OnCommand(int id, int code) = 0;
  virtual void OnNotify(NMHDR*) {}

  std::string Text(int id) const;
  void SetText(int id, const std::string& text) const;
  void Enable(int id, bool enabled) const;
  HWND Item(int id) const { return ::GetDlgItem(hwnd_, id); }
  // Refills a list box or a combo box and selects `selection` (-1: none).
  void FillList(int id, const std::vector<std::string>& entries, int selection) const;
  void FillCombo(int id, const std::vector<std::string>& entries, int selection) const;
  int ListSelection(int id) const;
  void End(bool ok) const { ::EndDialog(hwnd_, ok ? IDOK : IDCANCEL); }
  // Back to the edit after a refused name, its text selected.
  void FocusEdit(int id) const;
  // The commands of a dialog around one name in edit `edit`: OK is enabled
  // while `acceptable(name)` holds; OK ends the dialog when `accept(name)`
  // does, else the edit gets the focus back; Cancel ends it. Answers
  // whether `id` was one of those.
  template <typename Acceptable, typename Accept>
  bool OnNameCommand(int id, int code, int edit, Acceptable acceptable, Accept accept) {
    if (id == edit) {
      if (code == EN_CHANGE) Enable(IDOK, acceptable(Text(edit)));
    } else if (id == IDOK) {
      if (accept(Text(edit))) {
        End(true);
      } else {
        FocusEdit(edit);
      }
    } else if (id == IDCANCEL) {
      End(false);
    } else {
      return false;
    }
    return true;
  }

  HWND hwnd_ = nullptr;

 private:
  static INT_PTR CALLBACK Proc(HWND hwnd, UINT message, WPARAM wparam, LPARAM lparam);
};

}  // namespace quillon

#endif  // QUILLON_UI_WIN32_WIN32_DIALOG_H
