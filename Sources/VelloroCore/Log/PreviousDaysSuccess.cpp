#include "VelloroCore/Log/PreviousDaysSuccess.h"

#include <algorithm>
#include <ranges>

namespace velloro {
namespace {

using enum PreviousSuccessType;

struct WindowRow {
  PreviousSuccessType value;
  std::optional<std::int64_t> numPeriods;
};

constexpr WindowRow windowRows[] = {
    {last7, 7}, {last30, 30}, {pastMonth, 5}, {pastYear, 12}, {allTime, {}}};

struct TypesRow {
  TaskFrequencyPeriodType value;
  PreviousSuccessTypes types;
};

constexpr TypesRow typesRows[] = {{TaskFrequencyPeriodType::day, {last7, last30}},
                                  {TaskFrequencyPeriodType::week, {pastMonth, pastYear}},
                                  {TaskFrequencyPeriodType::fortnight, {pastMonth, pastYear}},
                                  {TaskFrequencyPeriodType::month, {pastYear, allTime}},
                                  {TaskFrequencyPeriodType::year, {pastYear, allTime}}};

struct Samples {
  std::int64_t completed = 0;
  std::int64_t missed = 0;
  std::int64_t skipped = 0;

  void add(TaskLogEntryType type) {
    if (isCompletedFull(type)) ++completed;
    if (isMissedFull(type)) ++missed;
    // An allowed miss that was found automatically is no sample.
    if (isSkipped(type) || type == TaskLogEntryType::allowableMissManuallyFull) ++skipped;
  }

  [[nodiscard]] PreviousDaysSuccess success(PreviousSuccessType type) const {
    const std::int64_t counted = completed + missed;
    return {.type = type,
            .numSamples = counted + skipped,
            .successPct =
                counted < 1 ? 0 : static_cast<double>(completed) / static_cast<double>(counted)};
  }
};

}  // namespace

std::optional<std::int64_t> numPeriods(PreviousSuccessType type) {
  return rowOf(windowRows, type).numPeriods;
}

PreviousSuccessTypes previousSuccessTypes(TaskFrequencyPeriodType measurementDuration) {
  return rowOf(typesRows, measurementDuration).types;
}

YYYYMMDD PreviousDaysSuccess::Question::firstDay(PreviousSuccessType type) const {
  return firstPeriod(type).startDate;
}

TaskFrequencyPeriod PreviousDaysSuccess::Question::lastPeriod() const {
  const TaskFrequencyPeriod last = rules.period(ref);
  const bool isOpen = !rules.isNegative && last == rules.period(rules.today());
  const bool isDone = lastCompleted && last.contains(*lastCompleted);
  return isOpen && !isDone ? last.previous(rules.timeZone) : last;
}

TaskFrequencyPeriod PreviousDaysSuccess::Question::firstPeriod(PreviousSuccessType type) const {
  const auto count = numPeriods(type);
  return count ? lastPeriod().add(1 - *count, rules.timeZone) : rules.period(createdDay);
}

PreviousDaysSuccess PreviousDaysSuccess::fromLog(PreviousSuccessType type, TaskLogRows rows,
                                                 const Question& question) {
  const TaskFrequencyPeriod first = question.firstPeriod(type);
  const TaskFrequencyPeriod last = question.lastPeriod();
  const auto entries = fullEntriesByPeriod(
      rows, question.rules, {.minDate = first.startDate, .maxDate = last.finishDate});
  Samples samples;
  bool lastHasEntry = false;
  auto walk = PeriodWalk::forwards(first, question.rules.timeZone);
  for (const PeriodEntry& entry : entries | std::views::reverse) {
    if (entry.periodStart == last.startDate.intValue()) lastHasEntry = true;
    if (entry.periodStart <= last.startDate.intValue() && walk.comesTo(entry)) {
      samples.add(entry.type);
    }
  }
  // The period of a negative task counts as clean for as long as nothing was entered.
  if (question.rules.isNegative && !lastHasEntry) ++samples.completed;
  return samples.success(type);
}

}  // namespace velloro
