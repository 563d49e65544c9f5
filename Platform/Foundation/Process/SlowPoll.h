#pragma once

namespace platform {

/// Some changes reach a process by a signal that may be lost: a commit of another process, a clock
/// that was set. Whoever depends on one also looks from time to time. In a process that ends soon
/// each has a rhythm of its own. One that stays for days does all of that at the same moments, so
/// that an idle machine is woken as rarely as possible:
///
///     SlowPoll::makeCommon();    // at its start
///     SlowPoll::look();          // each minute
struct SlowPoll {
  /// Posted on the default centre by `look`.
  static constexpr const char* looks = "SlowPoll.looks";

  /// To be called before anybody has begun to look.
  static void makeCommon();
  [[nodiscard]] static bool isCommon();
  static void look();
};

}  // namespace platform
