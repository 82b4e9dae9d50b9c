#include "support/fake_ui_services.h"

#include <utility>

namespace quillon {

MessageBoxAnswer FakeUiServices::ShowMessage(const std::string& text, MessageBoxKind kind) {
  std::lock_guard<std::mutex> lock(mutex_);
  messages_.push_back({text, kind});
  if (answers_.empty()) {
    return kind == MessageBoxKind::kYesNoQuestion ? MessageBoxAnswer::kNo : MessageBoxAnswer::kOk;
  }
  const MessageBoxAnswer answer = answers_.front();
  answers_.pop_front();
  return answer;
}

void FakeUiServices::Beep(int frequency_hz, int duration_ms) {
  std::lock_guard<std::mutex> lock(mutex_);
  beeps_.push_back({frequency_hz, duration_ms});
}

bool FakeUiServices::AskSaveFileName(const std::string& extension, const std::string& filter,
                                     std::string* path) {
  std::lock_guard<std::mutex> lock(mutex_);
  save_requests_.push_back({extension, filter, *path});
  if (save_answers_.empty()) return false;
  std::optional<std::string> answer = std::move(save_answers_.front());
  save_answers_.pop_front();
  if (!answer) return false;
  *path = std::move(*answer);
  return true;
}

void FakeUiServices::BeginWaitCursor() {
  std::lock_guard<std::mutex> lock(mutex_);
  ++wait_cursor_depth_;
  ++wait_cursor_begins_;
}

void FakeUiServices::EndWaitCursor() {
  std::lock_guard<std::mutex> lock(mutex_);
  --wait_cursor_depth_;
}

void FakeUiServices::QueueAnswer(MessageBoxAnswer answer) {
  std::lock_guard<std::mutex> lock(mutex_);
  answers_.push_back(answer);
}

void FakeUiServices::QueueSaveAnswer(std::optional<std::string> path) {
  std::lock_guard<std::mutex> lock(mutex_);
  save_answers_.push_back(std::move(path));
}

std::vector<FakeUiServices::Message> FakeUiServices::messages() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return messages_;
}

std::vector<std::string> FakeUiServices::message_texts() const {
  std::lock_guard<std::mutex> lock(mutex_);
  std::vector<std::string> texts;
  for (const Message& message : messages_) texts.push_back(message.text);
  return texts;
}

std::vector<FakeUiServices::BeepCall> FakeUiServices::beeps() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return beeps_;
}

std::vector<FakeUiServices::SaveRequest> FakeUiServices::save_requests() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return save_requests_;
}

int FakeUiServices::wait_cursor_depth() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return wait_cursor_depth_;
}

int FakeUiServices::wait_cursor_begins() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return wait_cursor_begins_;
}

}  // namespace quillon
