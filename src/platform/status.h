// Success, or what failed: a kind that callers can branch on and a message
// that names the file concerned.
#ifndef QUILLON_PLATFORM_STATUS_H
#define QUILLON_PLATFORM_STATUS_H

#include <string>
#include <utility>

namespace quillon {

class Status {
 public:
  enum class Kind {
    kOk,
    kNotFound,  // the file, directory or program is not there
    kIoError,   // the OS refused or failed the operation
    kBadData,   // the bytes were read but make no sense
  };

  Status() = default;
  static Status OK() { return Status(); }
  static Status NotFound(std::string message) { return Status(Kind::kNotFound, std::move(message)); }
  static Status IoError(std::string message) { return Status(Kind::kIoError, std::move(message)); }
  static Status BadData(std::string message) { return Status(Kind::kBadData, std::move(message)); }
  // An I/O error; kept for callers that have no finer kind to give.
  static Status Error(std::string message) { return IoError(std::move(message)); }

  bool ok() const { return kind_ == Kind::kOk; }
  Kind kind() const { return kind_; }
  bool IsNotFound() const { return kind_ == Kind::kNotFound; }
  const std::string& message() const { return message_; }

 private:
  Status(Kind kind, std::string message) : kind_(kind), message_(std::move(message)) {}

  Kind kind_ = Kind::kOk;
  std::string message_;
};

}  // namespace quillon

#endif  // QUILLON_PLATFORM_STATUS_H
