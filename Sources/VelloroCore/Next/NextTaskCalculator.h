#pragma once

#include "Foundation/Coding/Coding.h"
#include "Foundation/Time/Date.h"
#include "Foundation/Time/TimeZone.h"
#include "OxDateTime/HHMMSS.h"
#include "OxKit/UniqueID.h"
#include "VelloroCore/Reminders/TaskNotificationSettings.h"
#include "VelloroCore/Status/CompletionStatus.h"
#include "VelloroCore/Status/TaskStatus.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <type_traits>
#include <vector>

namespace velloro {

/// What the calculator knows of a task.
struct NextTaskCalculatorTask {
  TaskStatus status = defaultStatus;
  CompletionStatus::Status completionStatus = {};  ///< At `Request::after`.
  TaskNotificationSettings notificationSettings = {};
  bool isAutomatic = false;
  std::optional<UniqueID> uniqueId = {};
  HHMMSS startOfDay = HHMMSS::midnight;
  TimeZone timeZone = TimeZone::gmt();
};

/// Puts tasks in the order in which a user should do them: what is due about now, what was relevant
/// just before, what is coming, and then what has no time. A time of a task is one at which it
/// reminds or, without reminders, is likely to matter.
///
///     const std::vector<NextTaskCalculatorTask> tasks{{.uniqueId = UniqueID::create()},
///                                                     {.status = TaskStatus::paused}};
///     NextTaskCalculator::next(tasks, {.after = now}, now, berlin).tasks.size();    // 1
struct NextTaskCalculator {
  enum class NextTaskOrder : std::uint8_t { automatic, displayOrder };
  /// Where tasks stand that are to be avoided.
  enum class NegativeTaskMode : std::uint8_t {
    exclude,
    inline_,        ///< Among the others, by their times.
    afterPositive,  ///< After all others; left out in display order.
  };

  struct Request {
    Date after;  ///< For which the status of each task was read.
    NextTaskOrder order = NextTaskOrder::automatic;
    std::optional<HHMMSS> from = {};  ///< To be taken for the present time, when it next comes.
    double completionAllowance = 0;   ///< Seconds before and after, which count as now.
    NegativeTaskMode negativeTaskMode = NegativeTaskMode::exclude;

    bool operator==(const Request&) const = default;
    static constexpr auto codingKeys =
        keys(key("after", &Request::after), key("order", &Request::order, initialWhenUnknown),
             key("from", &Request::from), key("completionAllowance", &Request::completionAllowance),
             key("negativeTaskMode", &Request::negativeTaskMode, initialWhenUnknown));
  };

  /// A task by its place among those given, and the time by which it was placed.
  struct TaskWithTime {
    std::size_t task = 0;
    std::optional<Date> time = {};

    bool operator==(const TaskWithTime&) const = default;
  };
  struct Response {
    std::vector<TaskWithTime> tasks;
    Request request;
    /// When the order must be worked out again; absent while it lasts.
    std::optional<Date> expiryDate = {};
  };

  using Tasks = std::span<const NextTaskCalculatorTask>;

  /// The open tasks. A time lies less than two days ahead; of equal times, and without one, tasks
  /// stay in the given order, those of an automatic type last.
  /// \param deviceTimeZone In which `Request::from` is a time of day.
  [[nodiscard]] static Response next(Tasks tasks, const Request& request, Date now,
                                     TimeZone deviceTimeZone);
  /// What has passed: the tasks that are done, by the times that they have yet; where there are
  /// none, those that are not due.
  [[nodiscard]] static Response previous(Tasks tasks, const Request& request, Date now,
                                         TimeZone deviceTimeZone);
};

constexpr auto rawValues(std::type_identity<NextTaskCalculator::NextTaskOrder>) {
  using enum NextTaskCalculator::NextTaskOrder;
  return rawTexts<NextTaskCalculator::NextTaskOrder>({{automatic, "auto"}, {displayOrder, "do"}});
}

constexpr auto rawValues(std::type_identity<NextTaskCalculator::NegativeTaskMode>) {
  using enum NextTaskCalculator::NegativeTaskMode;
  return rawTexts<NextTaskCalculator::NegativeTaskMode>(
      {{exclude, "ex"}, {inline_, "in"}, {afterPositive, "ap"}});
}

}  // namespace velloro
