#pragma once

#include "Foundation/Dispatch/NSNotificationCenter.h"
#include "Foundation/Dispatch/NSTimer.h"
#include "Foundation/Time/TimeZone.h"
#include "OxDateTime/HHMMSS.h"
#include "OxDateTime/YYYYMMDD.h"
#include "OxKit/Platform.h"

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace velloro {

class TaskEntity;

/// Calls a function each time that a logical day has changed: once for all days that change at the
/// same moment. For the main thread alone.
///
///     CalendarDayWatcher watcher([] { Environment::current().report("a new day"); });
///     watcher.monitor({.times = {HHMMSS::midnight, HHMMSS{.h = 4}}});
///
/// The next change is waited for by a timer, which a clock that is set does not move. Therefore the
/// watcher also looks once a minute (`SlowPoll`), and at `clockDidChange`. What counts is whether
/// the day is another one than when it last looked: a clock that is set across a day's start, forth
/// or back, is a change, and one that is set back by seconds after midnight is none.
class CalendarDayWatcher {
 public:
  /// Posted on the default centre by whoever learns that the clock or the zone was set.
  static constexpr const char* clockDidChange = "CalendarDayWatcher.clockDidChange";

  /// When days begin.
  struct DayStarts {
    std::set<HHMMSS> times = {};                           ///< By the device's clock.
    std::set<std::pair<std::string, HHMMSS>> pinned = {};  ///< By that of a zone's identifier.

    /// Those of the tasks, and the one of tasks that don't say it themselves.
    [[nodiscard]] static DayStarts of(const std::vector<std::shared_ptr<TaskEntity>>& tasks,
                                      HHMMSS usual);
    /// When the first of the days under way ends; the distant future where there is none.
    [[nodiscard]] Date nextChange(Date now) const;
    bool operator==(const DayStarts&) const = default;
  };

  explicit CalendarDayWatcher(std::function<void()> dayChanged);

  /// From now on watches these. Days that change with the choice are no change.
  void monitor(DayStarts starts);
  [[nodiscard]] const std::set<HHMMSS>& timesBeingMonitored() const { return starts_.times; }

 private:
  void look();
  [[nodiscard]] std::vector<YYYYMMDD> days(Date now) const;
  void waitForNextChange(Date now);

  std::function<void()> dayChanged_;
  DayStarts starts_;
  std::vector<YYYYMMDD> days_;  // when it last looked
  NSTimer timer_;
  NSNotificationCenter::Token observer_;
  NSNotificationCenter::Token looks_;
};

}  // namespace velloro
