#pragma once

#include "Foundation/Files/FileLock.h"
#include "OxKit/Platform.h"

#include <utility>
#include <vector>

namespace velloro {

/// How the processes of a user keep from moving the tasks to another store while somebody writes
/// some. It is a lock by way of two files beside the stores, held until the object goes or its
/// process dies.
///
///     const auto access = StoreUse::toWrite();
///     if (!access) FAIL() << access.error()->localizedDescription();
///     StoreUse::isHeldHere();    // true: the active store stays the active one
///
/// Whoever reads needs none. A thread that has access already is given it again at once, but not
/// access to maintain where it has access to write: it would wait for itself.
class StoreUse {
 public:
  /// For code that writes tasks. Look up the active store only after this call. Several may write
  /// at once; waits while the stores are maintained, or somebody waits to do so.
  [[nodiscard]] static Result<StoreUse> toWrite();
  /// For code that chooses the store and moves tasks. Waits until nobody writes.
  [[nodiscard]] static Result<StoreUse> toMaintain();
  /// Whether this thread has access of either kind.
  [[nodiscard]] static bool isHeldHere();
  /// Whether somebody maintains the stores, or waits to.
  [[nodiscard]] static bool isMaintained();

  StoreUse(StoreUse&& other) noexcept
      : locks_(std::move(other.locks_)), isHeld_(std::exchange(other.isHeld_, false)) {}
  StoreUse& operator=(StoreUse&&) = delete;
  ~StoreUse();

 private:
  explicit StoreUse(std::vector<FileLock> locks);

  std::vector<FileLock> locks_;
  bool isHeld_ = true;
};

}  // namespace velloro
