#include "script/pending_callbacks.h"

int PendingCallbacks::flush() {
  if (pending_.empty()) return 0;
  while (!pending_.empty()) {
    const std::vector<std::shared_ptr<Callback>> batch = std::move(pending_);
    pending_.clear();
    for (const std::shared_ptr<Callback>& callback : batch) callback->run();
  }
  return 1;
}
