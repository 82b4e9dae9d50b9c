// What the library shows a person: message boxes, beeps, file dialogs and the
// wait cursor. The real one uses the desktop where there is one; on POSIX
// message boxes go to standard error and answer with their default button.
// Tests use FakeUiServices, which records and answers as scripted.
#ifndef QUILLON_PLATFORM_UI_SERVICES_H
#define QUILLON_PLATFORM_UI_SERVICES_H

#include <string>

namespace quillon {

enum class MessageBoxKind {
  kOk,            // information, one OK button
  kYesNoQuestion  // question icon, Yes and No; No is the default
};

enum class MessageBoxAnswer { kOk, kYes, kNo };

class UiServices {
 public:
  virtual ~UiServices() = default;
  // Title is always "Quillon".
  virtual MessageBoxAnswer ShowMessage(const std::string& text, MessageBoxKind kind) = 0;
  virtual void Beep(int frequency_hz, int duration_ms) = 0;
  // False when the user cancelled; `path` holds the proposal on entry.
  // `filter` is "Description|pattern" pairs joined by '|', e.g.
  // "Projects (*.qpj)|*.qpj|All files (*.*)|*.*"; `extension` (no dot) is
  // added to a name typed without one. An existing file is replaced only
  // after the user agreed.
  virtual bool AskSaveFileName(const std::string& extension, const std::string& filter,
                               std::string* path) = 0;
  // For hosts without a desktop (qpm): the path the next save dialog
  // answers with, as if the user had chosen it. A desktop asks the user
  // and ignores this.
  virtual void AnswerNextSaveWith(const std::string& path) { (void)path; }
  // Nests: the cursor returns after the last EndWaitCursor.
  virtual void BeginWaitCursor() = 0;
  virtual void EndWaitCursor() = 0;

  static UiServices& Default();
};

// Shows the wait cursor for the life of the object.
class WaitCursor {
 public:
  explicit WaitCursor(UiServices& ui) : ui_(ui) { ui_.BeginWaitCursor(); }
  ~WaitCursor() { ui_.EndWaitCursor(); }
  WaitCursor(const WaitCursor&) = delete;
  WaitCursor& operator=(const WaitCursor&) = delete;

 private:
  UiServices& ui_;
};

}  // namespace quillon

#endif  // QUILLON_PLATFORM_UI_SERVICES_H
