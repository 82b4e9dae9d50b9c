// Success or a message saying what failed, with the file concerned.
#ifndef QUILLON_PLATFORM_STATUS_H
#define QUILLON_PLATFORM_STATUS_H

#include <string>
#include <utility>

namespace quillon {

class Status {
 public:
  Status() = default;
  static Status OK() { return Status(); }
  static Status Error(std::string message) { return Status(std::move(message)); }

  bool ok() const { return !failed_; }
  const std::string& message() const { return message_; }

 private:
  explicit Status(std::string message) : failed_(true), message_(std::move(message)) {}
  bool failed_ = false;
  std::string message_;
};

}  // namespace quillon

#endif  // QUILLON_PLATFORM_STATUS_H
