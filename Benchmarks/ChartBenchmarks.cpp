// The statistics of ten years of a daily task beside a plain pass that counts the same rows by day,
// weekday and hour; and a task's card as a PNG.

#include "Foundation/Process/ProcessEnvironment.h"
#include "VelloroCharts/TrophyRoomTaskStats.h"
#include "VelloroPictures/TaskCardPicture.h"

#include <benchmark/benchmark.h>

namespace velloro {
namespace {

using benchmark::DoNotOptimize;
using benchmark::State;

constexpr std::int64_t numRows = 3650;
constexpr YYYYMMDD lastDay{2024, 3, 7};

TaskLogRules rules() {
  const TimeZone zone = TimeZone::fromIdentifier("Europe/Berlin").value();
  return {.timeZone = zone, .now = lastDay.dateAt({}, HHMMSS::midday, zone)};
}

const std::vector<TaskLogRow>& rows() {
  static const auto list = [] {
    std::vector<TaskLogRow> made;
    for (std::int64_t i = 0; i < numRows; ++i) {
      const YYYYMMDD day = lastDay.add(-i, {});
      const auto type = i % 10 == 3 ? TaskLogEntryType::missedAutomaticallyFull
                                    : TaskLogEntryType::completedManuallyFull;
      made.push_back({.entryDate = static_cast<std::int32_t>(day.intValue()),
                      .entryType = static_cast<std::int16_t>(rawValue(type)),
                      .createdTimestamp = day.dateAt({}, {.h = i % 24}, rules().timeZone),
                      .createdTimeZone = "Europe/Berlin"});
    }
    return made;
  }();
  return list;
}

void statistics(State& state) {
  const TaskLogRules own = rules();
  for (auto _ : state) {
    DoNotOptimize(TrophyRoomTaskStats::fromLog(
        rows(), {.rules = own, .timePeriod = TaskChartsTimePeriod::allTime()}));
  }
}

void plainPass(State& state) {
  const TaskLogRules own = rules();
  for (auto _ : state) {
    std::int64_t hours[24] = {}, weekdays[7] = {};
    std::vector<std::pair<std::int32_t, bool>> days;
    for (const TaskLogRow& row : rows()) {
      const bool isCompleted = isCompletedFull(row.type());
      const auto time = HHMMSS::fromDate(*row.createdTimestamp, row.timeZone(own.timeZone));
      hours[time.h] += isCompleted;
      weekdays[static_cast<int>(row.date()->dayOfWeek({}))] += isCompleted;
      days.emplace_back(row.entryDate, isCompleted);
    }
    DoNotOptimize(hours);
    DoNotOptimize(weekdays);
    DoNotOptimize(days);
  }
}

void cardAsPNG(State& state) {
  TaskCardPicture card;
  card.title = "Read a chapter";
  card.progress = 0.5;
  card.stats = TrophyRoomTaskStats::fromLog(
      rows(), {.rules = rules(), .timePeriod = TaskChartsTimePeriod::allTime()});
  card.now = rules().now;
  const TaskRecentHistory history;
  card.month = TaskCalendarMonthSnapshot::of({.history = history,
                                              .month = lastDay.yyyymm(),
                                              .frequency = TaskFrequency::defaultFrequency,
                                              .today = lastDay});
  const auto style = PictureStyle::of(Theme::hero, {}, false, Locale::fromIdentifier("en_US"));
  for (auto _ : state) DoNotOptimize(card.png(style, 3));
  state.SetLabel("1080 pixels wide");
}

BENCHMARK(statistics)->Name("statistics_of_ten_years/velloro")->Unit(benchmark::kMicrosecond);
BENCHMARK(plainPass)->Name("statistics_of_ten_years/plain_pass")->Unit(benchmark::kMicrosecond);
BENCHMARK(cardAsPNG)->Name("task_card_png/velloro")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace velloro
