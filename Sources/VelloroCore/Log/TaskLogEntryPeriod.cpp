#include "VelloroCore/Log/TaskLogEntryPeriod.h"

#include "Foundation/Coding/Coding.h"

namespace velloro {

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
