#include "build/thread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>

namespace quillon {
namespace {

// Nothing a body throws may leave its thread: that would end the host.
TEST(ThreadTest, ExitCodeIsTheBodysOrZeroWhenItThrows) {
  CThread returns([] { return 7; });
  CThread throws([]() -> int { throw std::runtime_error("x"); });
  for (CThread* thread : {&returns, &throws}) {
    ASSERT_TRUE(thread->Start());
    EXPECT_EQ(thread->Wait(), CThread::WaitResult::kSignalled);
  }
  EXPECT_EQ(returns.exit_code(), 7);
  EXPECT_EQ(throws.exit_code(), 0);
  EXPECT_FALSE(returns.Start()) << "started twice";
  EXPECT_EQ(returns.error()->code(), CMT_Exception::kResumeFailed);
}

TEST(ThreadTest, WaitTimesOutWhileTheBodyRunsAndFailsBeforeStart) {
  std::atomic<bool> release{false};
  CThread thread([&] {
    while (!release) std::this_thread::yield();
    return 1;
  });
  EXPECT_EQ(thread.Wait(), CThread::WaitResult::kFailed);
  EXPECT_EQ(thread.error()->code(), CMT_Exception::kWaitFailed);
  ASSERT_TRUE(thread.Start());
  EXPECT_EQ(thread.Wait(0), CThread::WaitResult::kTimedOut);
  release = true;
  EXPECT_EQ(thread.Wait(), CThread::WaitResult::kSignalled);
  EXPECT_EQ(thread.exit_code(), 1);
}

}  // namespace
}  // namespace quillon
