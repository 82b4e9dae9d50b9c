// UiServices on POSIX, where the library has no desktop to talk to: messages
// go to standard error and are answered with their default button.
#include <cstdio>
#include <utility>

#include "platform/ui_services.h"

namespace quillon {
namespace {

class PosixUiServices : public UiServices {
 public:
  MessageBoxAnswer ShowMessage(const std::string& text, MessageBoxKind kind) override {
    std::fprintf(stderr, "Quillon: %s\n", text.c_str());
    std::fflush(stderr);
    return kind == MessageBoxKind::kYesNoQuestion ? MessageBoxAnswer::kNo : MessageBoxAnswer::kOk;
  }

  // No speaker API; a terminal bell would only end up as noise in build logs.
  void Beep(int, int) override {}

  // Without a desktop only the host can choose: it names the file first,
  // and a save it did not name is cancelled.
  bool AskSaveFileName(const std::string&, const std::string&, std::string* path) override {
    if (next_save_.empty()) return false;
    *path = std::move(next_save_);
    next_save_.clear();
    return true;
  }
  void AnswerNextSaveWith(const std::string& path) override { next_save_ = path; }

  void BeginWaitCursor() override {}
  void EndWaitCursor() override {}

 private:
  std::string next_save_;
};

}  // namespace

UiServices& UiServices::Default() {
  static PosixUiServices ui;
  return ui;
}

}  // namespace quillon
