// UiServices on Windows: MessageBoxA, Beep, the common save dialog and the
// hourglass cursor.
#include <windows.h>
// After windows.h, which it needs.
#include <commdlg.h>

#include <vector>

#include "platform/ui_services.h"

namespace quillon {
namespace {

constexpr char kTitle[] = "Quillon";

// "Text (*.txt)|*.txt|All (*.*)|*.*" -> the NUL-separated, doubly
// terminated list the common dialog wants.
std::vector<char> DialogFilter(const std::string& filter) {
  std::vector<char> out(filter.begin(), filter.end());
  for (char& c : out) {
    if (c == '|') c = '\0';
  }
  out.push_back('\0');
  out.push_back('\0');
  return out;
}

// Called from the IDE's UI thread, except ShowMessage and Beep, which the
// build thread may call too.
class Win32UiServices : public UiServices {
 public:
  MessageBoxAnswer ShowMessage(const std::string& text, MessageBoxKind kind) override {
    if (kind == MessageBoxKind::kOk) {
      ::MessageBoxA(::GetActiveWindow(), text.c_str(), kTitle, MB_OK | MB_ICONINFORMATION);
      return MessageBoxAnswer::kOk;
    }
    const int answer = ::MessageBoxA(::GetActiveWindow(), text.c_str(), kTitle,
                                     MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2);
    return answer == IDYES ? MessageBoxAnswer::kYes : MessageBoxAnswer::kNo;
  }

  void Beep(int frequency_hz, int duration_ms) override {
    ::Beep(static_cast<DWORD>(frequency_hz), static_cast<DWORD>(duration_ms));
  }

  bool AskSaveFileName(const std::string& extension, const std::string& filter,
                       std::string* path) override {
    std::vector<char> name(32 * 1024, '\0');
    path->copy(name.data(), name.size() - 1);
    const std::vector<char> filters = DialogFilter(filter);
    OPENFILENAMEA ofn = {};
    ofn.lStructSize = sizeof ofn;
    ofn.hwndOwner = ::GetActiveWindow();
    ofn.lpstrFilter = filter.empty() ? nullptr : filters.data();
    ofn.lpstrFile = name.data();
    ofn.nMaxFile = static_cast<DWORD>(name.size());
    ofn.lpstrDefExt = extension.empty() ? nullptr : extension.c_str();
    ofn.Flags = OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
    if (!::GetSaveFileNameA(&ofn)) return false;
    *path = name.data();
    return true;
  }

  // Nested waits show one hourglass; the outermost end restores the cursor.
  void BeginWaitCursor() override {
    if (wait_depth_++ == 0) previous_cursor_ = ::SetCursor(::LoadCursor(nullptr, IDC_WAIT));
  }

  void EndWaitCursor() override {
    if (wait_depth_ == 0) return;
    if (--wait_depth_ == 0) ::SetCursor(previous_cursor_);
  }

 private:
  int wait_depth_ = 0;
  HCURSOR previous_cursor_ = nullptr;
};

}  // namespace

UiServices& UiServices::Default() {
  static Win32UiServices ui;
  return ui;
}

}  // namespace quillon
