#include "build/thread.h"

#include <chrono>
#include <system_error>

namespace quillon {

CThread::~CThread() {
  if (!thread_.joinable()) return;
  if (thread_.get_id() == std::this_thread::get_id()) {
    thread_.detach();  // the body ends its own wrapper; it cannot join itself
  } else {
    thread_.join();
  }
}

bool CThread::Start() {
  if (started_) {
    error_ = CMT_Exception(CMT_Exception::kResumeFailed, 0);
    return false;
  }
  try {
    thread_ = std::thread(&CThread::Main, this);
  } catch (const std::system_error&) {
    error_ = CMT_Exception(CMT_Exception::kCreateFailed, 0);
    return false;
  }
  started_ = true;
  return true;
}

void CThread::Main() {
  int code = 0;
  try {
    code = body_();
  } catch (...) {
    code = 0;
  }
  std::lock_guard<std::mutex> lock(mutex_);
  exit_code_ = code;
  finished_ = true;
  finished_cv_.notify_all();
}

CThread::WaitResult CThread::Fail(int os_error) {
  error_ = CMT_Exception(CMT_Exception::kWaitFailed, os_error);
  return WaitResult::kFailed;
}

CThread::WaitResult CThread::Wait(int timeout_ms) {
  if (!started_) return Fail(static_cast<int>(std::errc::invalid_argument));
  if (thread_.joinable() && thread_.get_id() == std::this_thread::get_id()) {
    return Fail(static_cast<int>(std::errc::resource_deadlock_would_occur));
  }
  {
    std::unique_lock<std::mutex> lock(mutex_);
    auto done = [this] { return finished_; };
    if (timeout_ms < 0) {
      finished_cv_.wait(lock, done);
    } else if (!finished_cv_.wait_for(lock, std::chrono::milliseconds(timeout_ms), done)) {
      return WaitResult::kTimedOut;
    }
  }
  if (thread_.joinable()) {
    try {
      thread_.join();
    } catch (const std::system_error& e) {
      return Fail(e.code().value());
    }
  }
  return WaitResult::kSignalled;
}

int CThread::exit_code() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return exit_code_;
}

}  // namespace quillon
