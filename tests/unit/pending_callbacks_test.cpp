#include "script/pending_callbacks.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class Recorder : public Callback {
 public:
  Recorder(std::string& log, char mark, PendingCallbacks* queue = nullptr)
      : log_(log), mark_(mark), queue_(queue) {}
  void run() override {
    log_ += mark_;
    // Posting from inside a callback defers the new one to the next pass.
    if (queue_ != nullptr) queue_->post(std::make_shared<Recorder>(log_, '+'));
  }

 private:
  std::string& log_;
  char mark_;
  PendingCallbacks* queue_;
};

TEST(PendingCallbacks, EmptyQueueFlushesToZero) {
  PendingCallbacks queue;
  EXPECT_EQ(queue.flush(), 0);
}

TEST(PendingCallbacks, RunsInOrderAndPostedOnesInALaterPass) {
  PendingCallbacks queue;
  std::string log;
  queue.post(std::make_shared<Recorder>(log, 'a', &queue));
  queue.post(std::make_shared<Recorder>(log, 'b'));
  EXPECT_EQ(queue.size(), 2U);
  EXPECT_EQ(queue.flush(), 1);
  EXPECT_EQ(log, "ab+");
  EXPECT_EQ(queue.size(), 0U);
}

TEST(PendingCallbacks, QueueSharesTheCallbackWithItsPoster) {
  PendingCallbacks queue;
  std::string log;
  auto callback = std::make_shared<Recorder>(log, 'x');
  queue.post(callback);
  EXPECT_EQ(callback.use_count(), 2);
  queue.flush();
  EXPECT_EQ(callback.use_count(), 1);
}

}  // namespace
