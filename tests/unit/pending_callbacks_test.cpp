#include "script/pending_callbacks.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// Notes its mark when run; posts a '+' callback from inside its run when given the queue.
struct Recorder : Callback {
  Recorder(std::string& log, char mark, PendingCallbacks* queue = nullptr)
      : log(log), mark(mark), queue(queue) {}
  void run() override {
    log += mark;
    if (queue != nullptr) queue->post(std::make_shared<Recorder>(log, '+'));
  }
  std::string& log;
  char mark;
  PendingCallbacks* queue;
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
  EXPECT_EQ(log + " " + std::to_string(queue.size()) + " " + std::to_string(first.use_count()),
            "ab+ 0 1");
}

}  // namespace
