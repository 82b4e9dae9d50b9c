// Drives another thread's dialogs as a person would, by title and control
// id: finds them, types, clicks, presses keys, answers message boxes, and
// asks for a picture of the screen. Windows only; runs on a thread of its
// own while the dialog's thread sits in its modal loop.
#ifndef QUILLON_TESTS_HOST_WINDOW_DRIVER_H
#define QUILLON_TESTS_HOST_WINDOW_DRIVER_H

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

namespace quillon {

// The top-level dialog with this title, once it is shown; null when none
// appears within a generous bound (a dialog that never opens).
HWND WaitForDialog(const char* title);
// Whether the dialog went away (closed) within the same bound.
bool WaitUntilClosed(HWND dialog);
// A control of `dialog` or of any window inside it (a child template's).
HWND Control(HWND dialog, int id);

std::string TextOf(HWND window);
void Type(HWND dialog, int id, const std::string& text);
// WM_COMMAND as a click of button `id` sends it: posted, for buttons that
// open a dialog or a message box; Press waits until it was handled.
void Click(HWND dialog, int id);
void Press(HWND dialog, int id);
// Whether `done` comes true within the bound, asked again and again.
bool Eventually(const std::function<bool()>& done);
void SelectInList(HWND dialog, int id, int index);
void SelectInCombo(HWND dialog, int id, int index);
std::vector<std::string> ListEntries(HWND dialog, int id);
std::vector<std::string> ComboEntries(HWND dialog, int id);
int ListSelection(HWND dialog, int id);
// A key pressed where the dialog has its focus (Escape, Return).
void PressKey(HWND dialog, UINT key);
// A mouse click on the upper or lower arrow of an up-down control.
void ClickArrow(HWND dialog, int id, bool upper);

// Answers the next "Quillon" message box with `button` (IDOK, IDYES, IDNO)
// and gives its text; empty when none came.
std::string AnswerMessageBox(int button);

// A picture of the whole screen as `name`.png in the screenshot folder,
// taken by the script that runs this program (see dialogs_wine_test.sh).
void Screenshot(const std::string& name);
void SetScreenshotFolder(const std::string& folder);

}  // namespace quillon

#endif  // QUILLON_TESTS_HOST_WINDOW_DRIVER_H
