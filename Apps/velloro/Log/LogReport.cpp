#include "velloro/Log/LogReport.h"

#include "Foundation/Process/Terminal.h"
#include "Foundation/Text/String.h"
#include "Tasks/Log/TaskOutlook.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Output/Output.h"
#include "velloro/Output/StateText.h"
#include "velloro/Tasks/TaskReport.h"

#include <algorithm>

namespace velloro {

namespace {

/// What the entries of a task have in common.
LogReport commonOf(const TaskEntity& task) {
  LogReport report;
  report.taskId = textOf(task.text(TaskAttributes::uniqueId));
  report.title = textOf(task.text(TaskAttributes::title));
  report.timeZone = task.taskCurrentTimeZone().identifier();
  report.amounts = AmountText(task.automaticTaskType());
  return report;
}

void setType(LogReport& report, TaskLogEntryType type) {
  report.type = description(type);
  report.state = stateText(type);
}

void setPeriod(LogReport& report, const std::optional<TaskLogEntryPeriod>& period) {
  report.period = period;
  if (period) report.periodType = periodName(period->type);
}

LogReport with(LogReport report, const TaskLogEntryEntity& entry) {
  using Entry = TaskLogEntryEntity;
  const std::string* id = entry.text(Entry::uniqueId);
  report.uniqueId = id != nullptr ? repairedUTF8(*id) : "";
  setType(report, entry.value(Entry::entryType).value_or(TaskLogEntryType::unknown));
  report.date = entry.value(Entry::entryDate).value_or(YYYYMMDD{});
  setPeriod(report, entry.period());
  report.progress = entry.value(Entry::progress);
  report.progressTotal = entry.value(Entry::progressTotal);
  report.created = entry.value(Entry::createdTimestamp);
  report.timeZone = entry.timeZone().identifier();
  return report;
}

LogReport with(LogReport report, const PeriodClosing& closing, const TaskEntity& task, Date now) {
  const auto& [period, date, type, total] = closing;
  const auto id = task.taskUniqueId();
  report.uniqueId = id ? closingEntryID(*id, period.startDate).stringValue() : "";
  setType(report, type);
  report.date = date;
  setPeriod(report,
            TaskLogEntryPeriod(period.periodType, period.startDate, period.finishDate, date));
  report.progressTotal = total;
  report.created = now;
  return report;
}

}  // namespace

LogReport LogReport::of(const TaskLogEntryEntity& entry, const TaskEntity& task) {
  return with(commonOf(task), entry);
}

std::vector<LogReport> LogReport::ofLog(const TaskEntity& task, const TaskEntity::Entries& entries,
                                        const std::vector<PeriodClosing>& closings, Date now) {
  const LogReport common = commonOf(task);
  std::vector<LogReport> reports;
  for (const auto& entry : entries) {
    const bool isGone = task.outlook() != nullptr && task.outlook()->withdraws(entry->objectID());
    if (!isGone) reports.push_back(with(common, *entry));
  }
  for (const PeriodClosing& closing : closings) {
    auto report = with(common, closing, task, now);
    // Another process may have closed the period since.
    const bool isThere =
        std::ranges::find(reports, report.uniqueId, &LogReport::uniqueId) != reports.end();
    if (!isThere) reports.push_back(std::move(report));
  }
  std::ranges::stable_sort(reports, {}, &LogReport::date);
  return reports;
}

std::string table(const std::vector<LogReport>& reports, bool hasTitles) {
  if (reports.empty()) return "No entries.\n";
  std::vector<std::vector<std::string>> rows = {
      {"date", "task", "entry", "amount", "total", "made"}};
  for (const LogReport& report : reports) {
    rows.push_back({report.date.debugDescription(), terminalText(report.title), report.type,
                    report.amounts.amount(report.progress),
                    report.amounts.amount(report.progressTotal),
                    report.created ? report.created->iso8601() : ""});
  }
  if (!hasTitles) {
    for (auto& row : rows) row.erase(row.begin() + 1);
  }
  return aligned(rows);
}

}  // namespace velloro
