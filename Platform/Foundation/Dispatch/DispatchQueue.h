#pragma once

#include "Foundation/Dispatch/Block.h"
#include "Foundation/Time/Date.h"

#include <concepts>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

namespace platform {

/// The urgency of work, the most urgent first. If there are too few workers, the most urgent
/// waiting block runs next.
enum class QualityOfService { userInteractive, userInitiated, default_, utility, background };

/// A queue of blocks that run in the background, or on the main thread. It is a value: copies refer
/// to the same queue. All members may be called from any thread.
///
/// A serial queue runs its blocks one at a time in the order they were handed in, on whichever
/// worker thread is free; while it is empty it costs no thread. The global queues run their blocks
/// side by side. The main queue's blocks run in the environment's main loop. A queue whose last
/// handle is destroyed still runs its blocks. A block must not throw: the process would terminate.
///
///     std::string log;
///     const DispatchQueue queue("velloro.domain.log", QualityOfService::utility);
///     queue.async([&] { log += "one line\n"; });
///     queue.sync([&] { return log.size(); });    // 9: after that line was written
///
/// Workers are never joined: blocks still waiting when the process exits are lost, unless
/// `queue.sync([] {})` flushes the queue, and a running block may run until the process ends. What
/// a background block uses must therefore never be destroyed; singletons are made by a `static
/// auto* instance = new …`.
class DispatchQueue {
 public:
  /// A new serial queue. The label is for people; labels need not differ.
  explicit DispatchQueue(std::string label,
                         QualityOfService qualityOfService = QualityOfService::default_);

  [[nodiscard]] static const DispatchQueue& main();
  /// The concurrent queue of that urgency.
  [[nodiscard]] static const DispatchQueue& global(
      QualityOfService qualityOfService = QualityOfService::default_);

  [[nodiscard]] const std::string& label() const;

  /// Runs the block later and returns at once.
  void async(Block block) const;

  /// As `async`, after the given number of seconds of the media clock. It can't be cancelled: a
  /// block that may no longer be needed checks that when it runs.
  void asyncAfter(TimeInterval seconds, Block block) const;

  /// Runs `work` in its turn, waits for it and returns its result; exceptions are passed on. It
  /// runs on the calling thread, except for the main queue's. Calling it on a serial queue that is
  /// already current, or on the main queue from the main thread, would wait for ever: it asserts.
  /// On the main queue it throws `std::future_error` when the environment ends first.
  template <std::invocable Work>
  auto sync(Work&& work) const {
    using Value = std::remove_cvref_t<std::invoke_result_t<Work&>>;
    if constexpr (std::is_void_v<Value>) {
      runInTurn([&work] { work(); });
    } else {
      std::optional<Value> value;
      runInTurn([&work, &value] { value.emplace(work()); });
      return *std::move(value);
    }
  }

  /// Whether the caller runs in a block of this queue; for the main queue, whether it is the main
  /// thread. For assertions.
  [[nodiscard]] bool isCurrent() const;

  /// Whether both name the same queue.
  bool operator==(const DispatchQueue&) const = default;

  class Line;  // what differs between the kinds of queues

 private:
  explicit DispatchQueue(std::shared_ptr<Line> line);
  void runInTurn(Block block) const;

  std::shared_ptr<Line> line_;
};

}  // namespace platform
