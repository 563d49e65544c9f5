#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Time/Date.h"
#include "VelloroCore/Progress/TimedTaskManagerEntry.h"
#include "velloro/Calendar/PeriodStretch.h"

#include <string>
#include <vector>

namespace velloro {

class TaskEntity;

/// A timer, as `velloro timer` prints it.
struct TimerReport {
  enum class State { running, finished, stopped };

  std::string taskId;
  std::string title;
  std::string entryId;
  State state = State::running;
  YYYYMMDD date = {};
  PeriodStretch period;
  Date start;
  Date end;
  double duration = 0;   ///< Of the whole run, in seconds.
  double ran = 0;        ///< What has run of it.
  double remaining = 0;  ///< What is left.

  static constexpr auto codingKeys =
      keys(key("taskId", &TimerReport::taskId), key("title", &TimerReport::title),
           key("entryId", &TimerReport::entryId), key("state", &TimerReport::state),
           key("date", &TimerReport::date), key("period", &TimerReport::period),
           key("start", &TimerReport::start), key("end", &TimerReport::end),
           key("duration", &TimerReport::duration), key("ran", &TimerReport::ran),
           key("remaining", &TimerReport::remaining));

  /// \param remaining In seconds.
  [[nodiscard]] static TimerReport of(const TaskEntity& task, const TimedTaskManagerEntry& run,
                                      State state, double remaining);

  [[nodiscard]] std::string json() const;
  /// "12:20", the end by the device's clock.
  [[nodiscard]] std::string endText() const;
};

constexpr auto rawValues(std::type_identity<TimerReport::State>) {
  return caseNames<TimerReport::State::stopped>();
}

/// "4:05", "0:09".
[[nodiscard]] std::string clockText(double seconds);
/// One line per timer.
[[nodiscard]] std::string table(const std::vector<TimerReport>& reports);

}  // namespace velloro
