#pragma once

#include <cstddef>
#include <functional>
#include <list>
#include <mutex>
#include <optional>
#include <unordered_map>
#include <utility>

namespace platform {

/// Keeps values by key as long as there is room; the value unused for longest goes first. An entry
/// may be gone at any time, so a value must always be obtainable in another way. Safe from any
/// thread. `Value` is copied on the way out: let it be something small, or a shared pointer.
///
///     NSCache<std::int64_t, std::string> texts({.totalCost = 20'000'000});
///     texts.setObject(7, "seven", 5);
///     texts.object(7);    // "seven"
template <typename Key, typename Value, typename Hash = std::hash<Key>>
class NSCache {
 public:
  /// 0 stands for no limit.
  struct Limits {
    std::size_t totalCost = 0;  ///< In whatever unit the costs of the entries have.
    std::size_t count = 0;
  };

  NSCache() = default;
  explicit NSCache(Limits limits) : limits_(limits) {}

  void setLimits(Limits limits) {
    Order evicted;
    const std::scoped_lock lock(mutex_);
    limits_ = limits;
    evict(evicted);
  }

  /// The value under `key`, which thereby becomes the one used last; absent when it is not held.
  [[nodiscard]] std::optional<Value> object(const Key& key) {
    const std::scoped_lock lock(mutex_);
    const auto found = entries_.find(key);
    if (found == entries_.end()) return std::nullopt;
    order_.splice(order_.begin(), order_, found->second);
    return found->second->value;
  }

  /// Holds `value` under `key` in place of one held before. A value that costs more than all may
  /// cost together is not held, and drives out no other.
  void setObject(const Key& key, Value value, std::size_t cost = 0) {
    Order evicted;
    const std::scoped_lock lock(mutex_);
    take(key, evicted);
    if (limits_.totalCost != 0 && cost > limits_.totalCost) return;
    order_.push_front({.key = key, .value = std::move(value), .cost = cost});
    entries_.emplace(key, order_.begin());
    totalCost_ += cost;
    evict(evicted);
  }

  void removeObject(const Key& key) {
    Order removed;
    const std::scoped_lock lock(mutex_);
    take(key, removed);
  }

  void removeAllObjects() {
    Order removed;
    const std::scoped_lock lock(mutex_);
    removed.swap(order_);
    entries_.clear();
    totalCost_ = 0;
  }

  /// How many values are held.
  [[nodiscard]] std::size_t count() const {
    const std::scoped_lock lock(mutex_);
    return entries_.size();
  }

 private:
  struct Entry {
    Key key;
    Value value;
    std::size_t cost;
  };
  /// The entry used last comes first. Entries that go are moved to a list that outlives the lock: a
  /// value's destructor may call back.
  using Order = std::list<Entry>;

  void take(const Key& key, Order& taken) {
    const auto found = entries_.find(key);
    if (found == entries_.end()) return;
    totalCost_ -= found->second->cost;
    taken.splice(taken.end(), order_, found->second);
    entries_.erase(found);
  }

  void evict(Order& evicted) {
    const auto isOver = [](std::size_t amount, std::size_t limit) {
      return limit != 0 && amount > limit;
    };
    while (isOver(totalCost_, limits_.totalCost) || isOver(entries_.size(), limits_.count)) {
      take(order_.back().key, evicted);
    }
  }

  mutable std::mutex mutex_;
  Limits limits_;
  Order order_;
  std::unordered_map<Key, typename Order::iterator, Hash> entries_;
  std::size_t totalCost_ = 0;
};

}  // namespace platform
