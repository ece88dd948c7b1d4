// Work posted to run later, outside the code that asked for it.
#pragma once

#include <memory>
#include <vector>

// A piece of deferred work; shared, so that whoever posts it may keep a handle.
class Callback {
 public:
  virtual ~Callback() = default;
  virtual void run() = 0;
};

class PendingCallbacks {
 public:
  void post(std::shared_ptr<Callback> callback) { pending_.push_back(std::move(callback)); }

  // Runs every posted callback in order; callbacks posted while they run are
  // run in a further pass. Returns 0 when nothing was pending, else 1.
  int flush();

  std::size_t size() const { return pending_.size(); }

 private:
  std::vector<std::shared_ptr<Callback>> pending_;
};
