#pragma once

#include "Foundation/Files/NSFileHandle.h"

#include <functional>
#include <memory>

namespace platform {

/// How the processes that have a store open wake each other: after its commit a writer touches a
/// small file beside the store ("-changes" behind its name), which all of them watch. A wake-up is
/// only a hint: it may come twice or without a reason, and may be lost. Therefore every process
/// also checks every two seconds (or at each `SlowPoll`), and a store works without the small file
/// where it can't be made. (The file "-wal" itself can't be watched: it changes before the commit
/// is visible.)
class StoreWatch {
 public:
  /// \param store The file itself, not a link to it.
  /// \param wake Called on any thread, perhaps often; hands the work to a queue.
  [[nodiscard]] static std::unique_ptr<StoreWatch> begin(const std::filesystem::path& store,
                                                         std::function<void()> wake);
  ~StoreWatch();
  StoreWatch(const StoreWatch&) = delete;
  StoreWatch& operator=(const StoreWatch&) = delete;

  /// Tells everyone else; those in this process at once.
  void touch(std::int64_t transaction);

  struct Watcher;

 private:
  StoreWatch(NSFileHandle file, std::shared_ptr<Watcher> watcher);

  NSFileHandle file_;
  std::shared_ptr<Watcher> watcher_;
};

}  // namespace platform
