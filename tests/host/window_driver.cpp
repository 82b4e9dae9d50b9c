#include "window_driver.h"

#include <commctrl.h>

#include <chrono>
#include <fstream>
#include <thread>

namespace quillon {
namespace {

// Bounds for what must happen on the other thread; a run that reaches one
// fails its check, it never waits longer.
constexpr int kPolls = 400;
constexpr std::chrono::milliseconds kPollStep(25);

std::string& Folder() {
  static std::string folder;
  return folder;
}

template <typename Ready>
bool PollUntil(Ready ready) {
  for (int i = 0; i < kPolls; ++i) {
    if (ready()) return true;
    std::this_thread::sleep_for(kPollStep);
  }
  return false;
}

struct Search {
  int id;
  HWND found;
};

BOOL CALLBACK MatchId(HWND window, LPARAM data) {
  auto* search = reinterpret_cast<Search*>(data);
  if (::GetDlgCtrlID(window) != search->id) return TRUE;
  search->found = window;
  return FALSE;
}

// Lets the dialog's thread handle what was sent before the next look.
void Settle(HWND dialog) { ::SendMessageA(dialog, WM_NULL, 0, 0); }

// Wine without a window manager can leave a window opened over its owner
// below the owner on the X display, so that it shows as a black hole in the
// owner; moving it makes Wine stack it again. It moves down and to the
// right of where it opened, as a cascade; the pictures show both windows.
void Restack(HWND window) {
  RECT rect;
  ::GetWindowRect(window, &rect);
  ::SetWindowPos(window, nullptr, rect.left + 24, rect.top + 24, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace

HWND WaitForDialog(const char* title) {
  HWND found = nullptr;
  PollUntil([&] {
    found = ::FindWindowA("#32770", title);
    return found != nullptr && ::IsWindowVisible(found) && ::IsWindowEnabled(found);
  });
  if (found != nullptr && ::GetWindow(found, GW_OWNER) != nullptr) Restack(found);
  if (found != nullptr) Settle(found);
  return found;
}

bool WaitUntilClosed(HWND dialog) {
  return PollUntil([&] { return !::IsWindow(dialog); });
}

HWND Control(HWND dialog, int id) {
  if (HWND own = ::GetDlgItem(dialog, id)) return own;
  Search search{id, nullptr};
  ::EnumChildWindows(dialog, &MatchId, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

std::string TextOf(HWND window) {
  char text[1024] = "";
  ::SendMessageA(window, WM_GETTEXT, sizeof text, reinterpret_cast<LPARAM>(text));
  return text;
}

void Type(HWND dialog, int id, const std::string& text) {
  ::SendMessageA(Control(dialog, id), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
  Settle(dialog);
}

void Click(HWND dialog, int id) {
  HWND button = Control(dialog, id);
  HWND parent = button ? ::GetParent(button) : dialog;
  // Posted: a click that opens a modal dialog or a message box must not
  // hold this thread until it closes.
  ::PostMessageA(parent, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), reinterpret_cast<LPARAM>(button));
}

void Press(HWND dialog, int id) {
  HWND button = Control(dialog, id);
  HWND parent = button ? ::GetParent(button) : dialog;
  ::SendMessageA(parent, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), reinterpret_cast<LPARAM>(button));
}

bool Eventually(const std::function<bool()>& done) { return PollUntil(done); }

void SelectInList(HWND dialog, int id, int index) {
  HWND list = Control(dialog, id);
  ::SendMessageA(list, LB_SETCURSEL, static_cast<WPARAM>(index), 0);
  ::SendMessageA(::GetParent(list), WM_COMMAND, MAKEWPARAM(id, LBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(list));
}

void SelectInCombo(HWND dialog, int id, int index) {
  HWND combo = Control(dialog, id);
  ::SendMessageA(combo, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
  ::SendMessageA(::GetParent(combo), WM_COMMAND, MAKEWPARAM(id, CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(combo));
}

std::vector<std::string> ListEntries(HWND dialog, int id) {
  HWND list = Control(dialog, id);
  std::vector<std::string> entries;
  const LRESULT count = ::SendMessageA(list, LB_GETCOUNT, 0, 0);
  for (LRESULT i = 0; i < count; ++i) {
    char text[1024] = "";
    ::SendMessageA(list, LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
    entries.push_back(text);
  }
  return entries;
}

std::vector<std::string> ComboEntries(HWND dialog, int id) {
  HWND combo = Control(dialog, id);
  std::vector<std::string> entries;
  const LRESULT count = ::SendMessageA(combo, CB_GETCOUNT, 0, 0);
  for (LRESULT i = 0; i < count; ++i) {
    char text[1024] = "";
    ::SendMessageA(combo, CB_GETLBTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
    entries.push_back(text);
  }
  return entries;
}

int ListSelection(HWND dialog, int id) {
  return static_cast<int>(::SendMessageA(Control(dialog, id), LB_GETCURSEL, 0, 0));
}

void PressKey(HWND dialog, UINT key) {
  GUITHREADINFO info = {};
  info.cbSize = sizeof info;
  ::GetGUIThreadInfo(::GetWindowThreadProcessId(dialog, nullptr), &info);
  HWND target = info.hwndFocus != nullptr ? info.hwndFocus : dialog;
  ::PostMessageA(target, WM_KEYDOWN, key, 1);
  ::PostMessageA(target, WM_KEYUP, key, 0xC0000001);
}

void ClickArrow(HWND dialog, int id, bool upper) {
  HWND arrows = Control(dialog, id);
  RECT rect;
  ::GetClientRect(arrows, &rect);
  const int y = upper ? rect.bottom / 4 : rect.bottom * 3 / 4;
  const LPARAM at = MAKELPARAM(rect.right / 2, y);
  ::SendMessageA(arrows, WM_LBUTTONDOWN, MK_LBUTTON, at);
  ::SendMessageA(arrows, WM_LBUTTONUP, 0, at);
  Settle(dialog);
}

std::string AnswerMessageBox(int button) {
  HWND box = WaitForDialog("Quillon");
  if (box == nullptr) return std::string();
  const std::string text = TextOf(::GetDlgItem(box, 0xFFFF));
  ::PostMessageA(box, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED), 0);
  WaitUntilClosed(box);
  return text;
}

void SetScreenshotFolder(const std::string& folder) { Folder() = folder; }

void Screenshot(const std::string& name) {
  if (Folder().empty()) return;
  // Let the screen finish painting, then hand over to the script.
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  const std::string request = Folder() + "\\" + name + ".request";
  const std::string done = Folder() + "\\" + name + ".png";
  ::DeleteFileA(done.c_str());
  std::ofstream(request) << name << '\n';
  PollUntil([&] { return ::GetFileAttributesA(done.c_str()) != INVALID_FILE_ATTRIBUTES; });
}

}  // namespace quillon
