#include "build/thread.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace quillon {
namespace {

TEST(ThreadTest, ExitCodeIsTheBodysOrZeroWhenItThrows) {
  CThread returns([] { return 7; });
  CThread wrapper_failure([]() -> int { throw CMT_Exception(CMT_Exception::kWaitFailed, 5); });
  CThread other_failure([]() -> int { throw std::runtime_error("x"); });
  for (CThread* thread : {&returns, &wrapper_failure, &other_failure}) {
    ASSERT_TRUE(thread->Start());
    EXPECT_EQ(thread->Wait(), CThread::WaitResult::kSignalled);
  }
  EXPECT_EQ(returns.exit_code(), 7);
  EXPECT_EQ(wrapper_failure.exit_code(), 0);
  EXPECT_EQ(other_failure.exit_code(), 0);
}

TEST(ThreadTest, WaitTimesOutUntilTheBodyEnds) {
  CEvent release;
  CThread thread([&] { return release.Wait() ? 1 : 2; });
  ASSERT_TRUE(thread.Start());
  EXPECT_EQ(thread.Wait(0), CThread::WaitResult::kTimedOut);
  release.Set();
  EXPECT_EQ(thread.Wait(), CThread::WaitResult::kSignalled);
  EXPECT_EQ(thread.exit_code(), 1);
}

TEST(ThreadTest, MisuseGivesCodes) {
  CThread thread([] { return 0; });
  EXPECT_EQ(thread.Wait(), CThread::WaitResult::kFailed);
  ASSERT_TRUE(thread.error().has_value());
  EXPECT_EQ(thread.error()->code(), CMT_Exception::kWaitFailed);

  ASSERT_TRUE(thread.Start());
  EXPECT_FALSE(thread.Start());
  EXPECT_EQ(thread.error()->code(), CMT_Exception::kResumeFailed);
  EXPECT_EQ(thread.Wait(), CThread::WaitResult::kSignalled);
}

TEST(EventTest, AutoResetLetsOneWaiterThrough) {
  CEvent event(/*manual_reset=*/false, /*initially_set=*/true);
  EXPECT_TRUE(event.Wait(0));
  EXPECT_FALSE(event.Wait(0));
  CEvent manual(/*manual_reset=*/true);
  manual.Set();
  EXPECT_TRUE(manual.Wait(0));
  EXPECT_TRUE(manual.Wait(0));
  manual.Reset();
  EXPECT_FALSE(manual.Wait(0));
}

}  // namespace
}  // namespace quillon
