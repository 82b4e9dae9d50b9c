// The thread wrapper the build runs its worker on, on std::thread.
//
// Failures are return values that carry a CMT_Exception (code and OS error).
// Nothing a thread body throws escapes it: the thread then ends with exit
// code 0, because an exception leaving a std::thread would end the host.
#ifndef QUILLON_BUILD_THREAD_H
#define QUILLON_BUILD_THREAD_H

#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace quillon {

class CMT_Exception : public std::exception {
 public:
  enum Code {
    kCreateFailed = 1,  // the thread could not be made; OS error 0
    kResumeFailed = 2,  // started twice: a std::thread runs from creation
    kWaitFailed = 3,    // waiting neither saw the end nor timed out
  };

  CMT_Exception(int code, int os_error) : code_(code), os_error_(os_error) {}
  int code() const { return code_; }
  int os_error() const { return os_error_; }
  const char* what() const noexcept override { return "thread wrapper failure"; }

 private:
  int code_;
  int os_error_;
};

// Runs a body once on its own thread. Start, Wait and the destructor are for
// the owning thread; the body may not wait for its own thread.
class CThread {
 public:
  using Body = std::function<int()>;
  enum class WaitResult { kSignalled, kTimedOut, kFailed };

  explicit CThread(Body body) : body_(std::move(body)) {}
  CThread(const CThread&) = delete;
  CThread& operator=(const CThread&) = delete;
  // Waits for a running body to end.
  ~CThread();

  // False when the thread cannot be started; error() tells why.
  bool Start();
  // A negative timeout waits for ever.
  WaitResult Wait(int timeout_ms = -1);

  bool started() const { return started_; }
  // The body's result once Wait gave kSignalled; 0 when the body threw.
  int exit_code() const;
  const std::optional<CMT_Exception>& error() const { return error_; }

 private:
  void Main();
  WaitResult Fail(int os_error);

  Body body_;
  std::thread thread_;
  bool started_ = false;
  std::optional<CMT_Exception> error_;

  mutable std::mutex mutex_;
  std::condition_variable finished_cv_;
  bool finished_ = false;
  int exit_code_ = 0;
};

}  // namespace quillon

#endif  // QUILLON_BUILD_THREAD_H
