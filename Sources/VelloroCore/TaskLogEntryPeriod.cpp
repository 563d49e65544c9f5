#include "VelloroCore/TaskLogEntryPeriod.h"

#include "Foundation/Coding.h"

#include <algorithm>

namespace velloro {

// No std::clamp: it has no answer for a stored period that ends before it begins.
TaskLogEntryPeriod::TaskLogEntryPeriod(TaskFrequencyPeriodType periodType, YYYYMMDD firstDay,
                                       YYYYMMDD lastDay, YYYYMMDD day)
    : type(periodType),
      from(firstDay),
      to(lastDay),
      date(std::min(std::max(day, firstDay), lastDay)) {}

std::optional<TaskLogEntryPeriod> TaskLogEntryPeriod::fromStored(
    std::optional<TaskFrequencyPeriodType> type, std::optional<YYYYMMDD> date,
    std::optional<YYYYMMDD> from, std::optional<YYYYMMDD> to) {
  const TaskFrequencyPeriodType known = type.value_or(TaskFrequencyPeriodType::day);
  if (known != TaskFrequencyPeriodType::day && from && to) {
    return TaskLogEntryPeriod(known, *from, *to, date.value_or(*to));
  }
  if (!date) return std::nullopt;
  return TaskLogEntryPeriod(known, *date, *date, *date);
}

TaskLogEntryPeriod TaskLogEntryPeriod::decode(const Decoder& from) {
  const auto stored = decodeKeyed<TaskLogEntryPeriod>(from);
  return {stored.type, stored.from, stored.to, stored.date};
}

bool TaskLogEntryPeriod::hasOverlap(const TaskLogEntryPeriod& with) const {
  return to >= with.from && with.to >= from;
}

TaskFrequencyPeriod TaskLogEntryPeriod::frequencyPeriod(DayOfWeek firstDayOfWeek) const {
  return {
      .periodType = type, .startDate = from, .finishDate = to, .firstDayOfWeek = firstDayOfWeek};
}

bool TaskLogEntryPeriod::isBefore(const TaskLogEntryPeriod& other) const {
  return type < other.type || from < other.from || to < other.to;
}

}  // namespace velloro
