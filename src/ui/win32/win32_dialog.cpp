#include "ui/win32/win32_dialog.h"

namespace quillon {

HINSTANCE LibraryModule() {
  HMODULE module = nullptr;
  ::GetModuleHandleExA(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      reinterpret_cast<LPCSTR>(&LibraryModule), &module);
  return module;
}

bool Win32Dialog::Run(int template_id) {
  const INT_PTR result =
      ::DialogBoxParamA(LibraryModule(), MAKEINTRESOURCEA(template_id), ::GetActiveWindow(),
                        &Win32Dialog::Proc, reinterpret_cast<LPARAM>(this));
  return result == IDOK;
}

INT_PTR CALLBACK Win32Dialog::Proc(HWND hwnd, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_INITDIALOG) {
    auto* self = reinterpret_cast<Win32Dialog*>(lparam);
    ::SetWindowLongPtrA(hwnd, DWLP_USER, lparam);
    self->hwnd_ = hwnd;
    return self->OnInit();
  }
  auto* self = reinterpret_cast<Win32Dialog*>(::GetWindowLongPtrA(hwnd, DWLP_USER));
  if (self == nullptr) return FALSE;
  switch (message) {
    case WM_COMMAND:
      self->OnCommand(LOWORD(wparam), HIWORD(wparam));
      return TRUE;
    case WM_NOTIFY:
      self->OnNotify(reinterpret_cast<NMHDR*>(lparam));
      ::SetWindowLongPtrA(hwnd, DWLP_MSGRESULT, 0);
      return TRUE;
    default:
      return FALSE;
  }
}

std::string Win32Dialog::Text(int id) const {
  HWND item = Item(id);
  std::string text(static_cast<size_t>(::GetWindowTextLengthA(item)) + 1, '\0');
  text.resize(
      static_cast<size_t>(::GetWindowTextA(item, text.data(), static_cast<int>(text.size()))));
  return text;
}

void Win32Dialog::SetText(int id, const std::string& text) const {
  ::SetDlgItemTextA(hwnd_, id, text.c_str());
}

void Win32Dialog::Enable(int id, bool enabled) const { ::EnableWindow(Item(id), enabled); }

void Win32Dialog::FillList(int id, const std::vector<std::string>& entries, int selection) const {
  HWND list = Item(id);
  ::SendMessageA(list, LB_RESETCONTENT, 0, 0);
  for (const std::string& entry : entries) {
    ::SendMessageA(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entry.c_str()));
  }
  ::SendMessageA(list, LB_SETCURSEL, static_cast<WPARAM>(selection), 0);
}

void Win32Dialog::FillCombo(int id, const std::vector<std::string>& entries, int selection) const {
  HWND combo = Item(id);
  ::SendMessageA(combo, CB_RESETCONTENT, 0, 0);
  for (const std::string& entry : entries) {
    ::SendMessageA(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entry.c_str()));
  }
  ::SendMessageA(combo, CB_SETCURSEL, static_cast<WPARAM>(selection), 0);
}

int Win32Dialog::ListSelection(int id) const {
  return static_cast<int>(::SendMessageA(Item(id), LB_GETCURSEL, 0, 0));
}

void Win32Dialog::FocusEdit(int id) const {
  ::SendMessageA(hwnd_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Item(id)), TRUE);
  ::SendMessageA(Item(id), EM_SETSEL, 0, -1);
}

}  // namespace quillon
