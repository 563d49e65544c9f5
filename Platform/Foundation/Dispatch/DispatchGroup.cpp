#include "Foundation/Dispatch/DispatchGroup.h"

#include <algorithm>
#include <cassert>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>
#include <vector>

namespace platform {

struct DispatchGroup::State {
  std::mutex mutex;
  std::condition_variable empty;
  std::size_t inside = 0;
  std::vector<std::pair<DispatchQueue, Block>> notifications;
};

DispatchGroup::DispatchGroup() : state_(std::make_shared<State>()) {}

void DispatchGroup::enter() const {
  const std::scoped_lock lock(state_->mutex);
  ++state_->inside;
}

void DispatchGroup::leave() const {
  std::vector<std::pair<DispatchQueue, Block>> due;
  {
    const std::scoped_lock lock(state_->mutex);
    assert(state_->inside > 0 && "a group was left more often than entered");
    if (state_->inside == 0 || --state_->inside > 0) return;
    due.swap(state_->notifications);
    state_->empty.notify_all();
  }
  for (auto& [queue, block] : due) queue.async(std::move(block));
}

void DispatchGroup::notify(const DispatchQueue& queue, Block block) const {
  {
    const std::scoped_lock lock(state_->mutex);
    if (state_->inside > 0) {
      state_->notifications.emplace_back(queue, std::move(block));
      return;
    }
  }
  queue.async(std::move(block));
}

bool DispatchGroup::wait(std::optional<TimeInterval> timeout) const {
  std::unique_lock lock(state_->mutex);
  const auto isEmpty = [this] { return state_->inside == 0; };
  constexpr TimeInterval forEver = 1e9;  // more than the clock may not be able to count
  if (timeout && *timeout < forEver) {
    const std::chrono::duration<double> seconds(std::max(*timeout, 0.0));
    return state_->empty.wait_for(lock, seconds, isEmpty);
  }
  state_->empty.wait(lock, isEmpty);
  return true;
}

}  // namespace platform
