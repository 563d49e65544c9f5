#include "Foundation/Process/VirtualEnvironment.h"
#include "Notifications/Planning/BadgePlan.h"

#include <random>
#include <set>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using Status = CompletionStatus::Status;

struct BadgedTask {
  TaskStanding standing;
  TaskNotificationSettings settings;
  std::set<YYYYMMDD> done;

  [[nodiscard]] Status status(YYYYMMDD day) const {
    return done.contains(day) ? Status::positiveComplete
                              : Status::positiveIncomplete(SkipMode::willMissWithIndicator);
  }
  /// By the clock on the wall, without a plan.
  [[nodiscard]] bool counts(Date at) const {
    const TaskStanding& task = standing;
    if (settings.badgeMode == BadgeMode::doNotInclude) return false;
    const auto day = YYYYMMDD::fromDate(task.startOfDay, at, task.timeZone);
    if (done.contains(day)) return false;
    const auto moment = [&](HHMMSS time) {
      return day.dateAt(task.startOfDay, time, task.timeZone);
    };
    const bool isFrom = !settings.badgeFrom || at >= moment(*settings.badgeFrom);
    const bool isTo = !settings.badgeTo || at < moment(*settings.badgeTo);
    const bool isAcross = settings.badgeFrom && settings.badgeTo &&
                          moment(*settings.badgeFrom) >= moment(*settings.badgeTo);
    return isAcross ? isFrom || isTo : isFrom && isTo;
  }
};

/// In the night of the change to summer time, with tasks of all hours and zones.
TEST(BadgePlan, CountsAsOneWouldByHandAtEveryInstant) {
  const VirtualEnvironment environment;
  const Date now = Date::fromISO8601("2024-03-29T12:07:30Z").value();
  std::mt19937 random(20240329);
  const auto below = [&](unsigned bound) { return static_cast<std::int64_t>(random() % bound); };
  const auto anyTime = [&] { return HHMMSS{.h = below(24), .m = 15 * below(4)}; };
  const char* const zones[] = {"Europe/Berlin", "America/New_York", "Australia/Lord_Howe"};
  for (int round = 0; round < 40; ++round) {
    std::vector<BadgedTask> tasks(static_cast<std::size_t>(1 + below(6)));
    BadgePlan plan(now);
    for (BadgedTask& task : tasks) {
      task.standing.now = now;
      task.standing.timeZone = TimeZone::fromIdentifier(zones[below(3)]).value();
      task.standing.startOfDay = {.h = below(6)};
      task.settings.badgeMode =
          below(5) != 0 ? BadgeMode::includeWhenIncomplete : BadgeMode::doNotInclude;
      if (below(2) == 0) task.settings.badgeFrom = anyTime();
      if (below(2) == 0) task.settings.badgeTo = anyTime();
      for (std::int64_t i = 0; i < 6; ++i) {
        if (below(3) == 0) task.done.insert(task.standing.today().add(i, {}));
      }
      plan.add(task.standing, task.settings,
               [&](const TaskFrequencyPeriod& period) { return task.status(period.startDate); });
    }
    const auto byHand = [&](Date at) {
      return std::ranges::count_if(tasks, [&](const auto& task) { return task.counts(at); });
    };
    ASSERT_EQ(plan.count(), byHand(now));
    const auto updates = plan.updates();
    std::int64_t badge = plan.count();
    auto next = updates.begin();
    for (Date at = now; at < now + 4 * 86400.0; at = at + 450) {
      while (next != updates.end() && *next->date <= at) {
        ASSERT_NE(next->badge, badge) << "an update that changes nothing";
        badge = next++->badge;
      }
      ASSERT_EQ(badge, byHand(at)) << "round " << round << ", " << at.iso8601();
    }
  }
}

TEST(BadgePlan, CancelsWhatIsNotSetAgain) {
  const VirtualEnvironment environment;
  const Date now = Date::fromISO8601("2024-03-07T12:00:00Z").value();
  BadgePlan plan(now);
  plan.add({.now = now},
           {.badgeMode = BadgeMode::includeWhenIncomplete, .badgeFrom = HHMMSS{.h = 18}},
           [](const auto&) { return Status::positiveIncomplete(SkipMode::willMissWithIndicator); });
  const auto request = plan.request({.now = now}).at(now);
  EXPECT_EQ(request.notifications.size(), 10U);
  EXPECT_EQ(request.notifications[0].badge, -1) << "takes the number away";
  EXPECT_EQ(request.notifications[9].notificationId.str, "b.9");
  EXPECT_EQ(request.cancelPending.size(), 10U);
}

}  // namespace
}  // namespace velloro
