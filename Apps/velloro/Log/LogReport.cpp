#include "velloro/Log/LogReport.h"

#include "Foundation/Text/String.h"
#include "velloro/Output/Output.h"

#include <algorithm>

namespace velloro {

LogReport LogReport::of(const TaskLogEntryEntity& entry) {
  using Entry = TaskLogEntryEntity;
  const std::string* id = entry.text(Entry::uniqueId);
  return {.uniqueId = id != nullptr ? repairedUTF8(*id) : "",
          .type = std::string(
              description(entry.value(Entry::entryType).value_or(TaskLogEntryType::unknown))),
          .date = entry.value(Entry::entryDate).value_or(YYYYMMDD{}),
          .period = entry.period(),
          .progress = entry.value(Entry::progress),
          .progressTotal = entry.value(Entry::progressTotal),
          .created = entry.value(Entry::createdTimestamp),
          .timeZone = std::string(entry.timeZone().identifier())};
}

LogReport LogReport::of(const PeriodClosing& closing, const TaskEntity& task) {
  const auto& [period, date, type, total] = closing;
  const auto id = task.taskUniqueId();
  return {
      .uniqueId = id ? closingEntryID(*id, period.startDate).stringValue() : "",
      .type = std::string(description(type)),
      .date = date,
      .period = TaskLogEntryPeriod(period.periodType, period.startDate, period.finishDate, date),
      .progressTotal = total,
      .created = Date::now(),
      .timeZone = std::string(task.taskCurrentTimeZone().identifier())};
}

std::vector<LogReport> LogReport::ofLog(const TaskEntity& task, const TaskEntity::Entries& entries,
                                        const std::vector<PeriodClosing>& closings,
                                        const YYYYMMDD::Range& dates) {
  std::vector<LogReport> reports;
  for (const auto& entry : entries) {
    const bool isGone = task.outlook() != nullptr && task.outlook()->withdraws(*entry);
    if (!isGone) reports.push_back(of(*entry));
  }
  for (const PeriodClosing& closing : closings) {
    const bool isWithin = (!dates.minDate || *dates.minDate <= closing.date) &&
                          (!dates.maxDate || closing.date <= *dates.maxDate);
    if (!isWithin) continue;
    auto report = of(closing, task);
    // Another process may have closed the period since.
    const bool isThere =
        std::ranges::find(reports, report.uniqueId, &LogReport::uniqueId) != reports.end();
    if (!isThere) reports.push_back(std::move(report));
  }
  std::ranges::stable_sort(reports, {}, &LogReport::date);
  return reports;
}

std::string table(const std::vector<LogReport>& reports, const AmountText& amounts) {
  if (reports.empty()) return "No entries.\n";
  constexpr std::size_t typeWidth = 26;
  struct Line {
    std::string progress, total;
  };
  std::vector<Line> lines;
  std::size_t width = 0;
  std::size_t totalWidth = 0;
  for (const LogReport& report : reports) {
    lines.push_back({amounts.amount(report.progress), amounts.amount(report.progressTotal)});
    width = std::max(width, columns(lines.back().progress));
    totalWidth = std::max(totalWidth, columns(lines.back().total));
  }
  std::string text;
  for (std::size_t i = 0; i < reports.size(); ++i) {
    const LogReport& report = reports[i];
    text += report.date.debugDescription() + "  " + padded(report.type, typeWidth) + " " +
            padded(lines[i].progress, width) + "  " + padded(lines[i].total, totalWidth) + "  " +
            (report.created ? report.created->iso8601() : "") + "\n";
  }
  return text;
}

}  // namespace velloro
