// UiServices on POSIX, where the library has no desktop to talk to: messages
// go to standard error and are answered with their default button.
#include <cstdio>

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

  bool AskSaveFileName(const std::string&, const std::string&, std::string*) override {
    return false;
  }

  void BeginWaitCursor() override {}
  void EndWaitCursor() override {}
};

}  // namespace

UiServices& UiServices::Default() {
  static PosixUiServices ui;
  return ui;
}

}  // namespace quillon
