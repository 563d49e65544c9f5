#pragma once

#include "Foundation/Process/MainLoop.h"

#include <atomic>
#include <limits>
#include <map>

namespace platform {

/// Scheduled blocks in the order in which they fall due. Without a lock of its own.
class TimedBlocks {
 public:
  TimedWork::Token add(double due, Block block) {
    // A token may outlive its clock and must not name a block of the next one.
    static std::atomic<std::uint64_t> sequence = 0;
    const TimedWork::Token token{.due = due, .sequence = ++sequence};
    blocks_.emplace(token, std::move(block));
    return token;
  }

  /// Removes and returns a block; empty if there is none. The caller destroys it without holding
  /// its lock, since what a block captures may call back.
  [[nodiscard]] Block take(TimedWork::Token token) {
    auto node = blocks_.extract(token);
    return node ? std::move(node.mapped()) : nullptr;
  }
  [[nodiscard]] Block takeFirst() { return std::move(blocks_.extract(blocks_.begin()).mapped()); }

  /// When the first one falls due; infinity when there is none.
  [[nodiscard]] double firstDue() const {
    return blocks_.empty() ? std::numeric_limits<double>::infinity() : blocks_.begin()->first.due;
  }

 private:
  std::map<TimedWork::Token, Block> blocks_;
};

}  // namespace platform
