#include "script/pending_callbacks.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace {

struct Recorder : Callback {
  explicit Recorder(std::function<void()> action) : action(std::move(action)) {}
  void run() override { action(); }
  std::function<void()> action;
};

TEST(PendingCallbacks, RunInOrderWithThosePostedWhileRunningAndAreReleased) {
  PendingCallbacks queue;
  EXPECT_EQ(queue.flush(), 0);
  std::string log;
  auto first = std::make_shared<Recorder>([&] {
    log += 'a';
    queue.post(std::make_shared<Recorder>([&] { log += '+'; }));
  });
  queue.post(first);
  queue.post(std::make_shared<Recorder>([&] { log += 'b'; }));
  EXPECT_TRUE(queue.size() == 2 && first.use_count() == 2);
  EXPECT_EQ(queue.flush(), 1);
  EXPECT_EQ(log + " " + std::to_string(queue.size()) + " " + std::to_string(first.use_count()),
            "ab+ 0 1");
}

}  // namespace
