#include "build/thread.h"

#include <gtest/gtest.h>

#include <stdexcept>

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

}  // namespace
}  // namespace quillon
