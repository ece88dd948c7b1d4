#include "script/pending_callbacks.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// Notes its mark when run; posts a '+' callback from inside its run when given the queue.
class Recorder : public Callback {
 public:
  Recorder(std::string& log, char mark, PendingCallbacks* queue = nullptr)
      : log_(log), mark_(mark), queue_(queue) {}
  void run() override {
    log_ += mark_;
    if (queue_ != nullptr) queue_->post(std::make_shared<Recorder>(log_, '+'));
  }

 private:
  std::string& log_;
  char mark_;
  PendingCallbacks* queue_;
};

TEST(PendingCallbacks, RunInOrderWithThosePostedWhileRunningAndAreReleased) {
  PendingCallbacks queue;
  EXPECT_EQ(queue.flush(), 0);
  std::string log;
  auto first = std::make_shared<Recorder>(log, 'a', &queue);
  queue.post(first);
  queue.post(std::make_shared<Recorder>(log, 'b'));
  EXPECT_EQ(queue.size(), 2U);
  EXPECT_EQ(first.use_count(), 2);
  EXPECT_EQ(queue.flush(), 1);
  EXPECT_EQ(log, "ab+");
  EXPECT_EQ(queue.size(), 0U);
  EXPECT_EQ(first.use_count(), 1);
}

}  // namespace
