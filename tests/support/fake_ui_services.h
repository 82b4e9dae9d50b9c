// UiServices for tests: records what the library showed and answers message
// boxes and save dialogs from scripts.
#ifndef QUILLON_TESTS_SUPPORT_FAKE_UI_SERVICES_H
#define QUILLON_TESTS_SUPPORT_FAKE_UI_SERVICES_H

#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/ui_services.h"

namespace quillon {

// Every method may be called from any thread (the build thread shows
// messages too); accessors return copies.
class FakeUiServices : public UiServices {
 public:
  struct Message {
    std::string text;
    MessageBoxKind kind;
  };
  struct BeepCall {
    int frequency_hz;
    int duration_ms;
  };
  struct SaveRequest {
    std::string extension;
    std::string filter;
    std::string proposal;
  };

  MessageBoxAnswer ShowMessage(const std::string& text, MessageBoxKind kind) override;
  void Beep(int frequency_hz, int duration_ms) override;
  bool AskSaveFileName(const std::string& extension, const std::string& filter,
                       std::string* path) override;
  void BeginWaitCursor() override;
  void EndWaitCursor() override;

  // Answers for the coming message boxes, in order; when none is queued a
  // box gets its default button (OK, or No for a question).
  void QueueAnswer(MessageBoxAnswer answer);
  // Answers for the coming save dialogs: a path, or nullopt to cancel. When
  // none is queued the dialog is cancelled.
  void QueueSaveAnswer(std::optional<std::string> path);

  std::vector<Message> messages() const;
  std::vector<std::string> message_texts() const;
  std::vector<BeepCall> beeps() const;
  std::vector<SaveRequest> save_requests() const;
  // Begins minus ends so far; 0 when balanced.
  int wait_cursor_depth() const;
  // Number of BeginWaitCursor calls.
  int wait_cursor_begins() const;

 private:
  mutable std::mutex mutex_;
  std::deque<MessageBoxAnswer> answers_;
  std::deque<std::optional<std::string>> save_answers_;
  std::vector<Message> messages_;
  std::vector<BeepCall> beeps_;
  std::vector<SaveRequest> save_requests_;
  int wait_cursor_depth_ = 0;
  int wait_cursor_begins_ = 0;
};

}  // namespace quillon

#endif  // QUILLON_TESTS_SUPPORT_FAKE_UI_SERVICES_H
