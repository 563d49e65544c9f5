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

LogReport with(LogReport report, const PeriodClosing& closing, const TaskEntity& task) {
  const auto& [period, date, type, total] = closing;
  const auto id = task.taskUniqueId();
  report.uniqueId = id ? closingEntryID(*id, period.startDate).stringValue() : "";
  setType(report, type);
  report.date = date;
  setPeriod(report,
            TaskLogEntryPeriod(period.periodType, period.startDate, period.finishDate, date));
  report.progressTotal = total;
  report.created = Date::now();
  return report;
}

/// One column of a table; its first text is the heading.
struct Column {
  std::vector<std::string> texts;

  [[nodiscard]] std::size_t width() const {
    std::size_t most = 0;
    for (const std::string& text : texts) most = std::max(most, columns(text));
    return most;
  }
};

std::string joined(const std::vector<Column>& table) {
  std::vector<std::size_t> widths;
  for (const Column& column : table) widths.push_back(column.width());
  std::string text;
  for (std::size_t row = 0; row < table.front().texts.size(); ++row) {
    for (std::size_t i = 0; i + 1 < table.size(); ++i) {
      text += padded(table[i].texts[row], widths[i]) + "  ";
    }
    text += table.back().texts[row] + "\n";
  }
  return text;
}

}  // namespace

LogReport LogReport::of(const TaskLogEntryEntity& entry, const TaskEntity& task) {
  return with(commonOf(task), entry);
}

std::vector<LogReport> LogReport::ofLog(const TaskEntity& task, const TaskEntity::Entries& entries,
                                        const std::vector<PeriodClosing>& closings,
                                        const YYYYMMDD::Range& dates) {
  const LogReport common = commonOf(task);
  std::vector<LogReport> reports;
  for (const auto& entry : entries) {
    const bool isGone = task.outlook() != nullptr && task.outlook()->withdraws(*entry);
    if (!isGone) reports.push_back(with(common, *entry));
  }
  for (const PeriodClosing& closing : closings) {
    const bool isWithin = (!dates.minDate || *dates.minDate <= closing.date) &&
                          (!dates.maxDate || closing.date <= *dates.maxDate);
    if (!isWithin) continue;
    auto report = with(common, closing, task);
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
  Column date{{"date"}}, title{{"task"}}, type{{"entry"}};
  Column amount{{"amount"}}, total{{"total"}}, made{{"made"}};
  for (const LogReport& report : reports) {
    date.texts.push_back(report.date.debugDescription());
    title.texts.push_back(terminalText(report.title));
    type.texts.push_back(report.type);
    amount.texts.push_back(report.amounts.amount(report.progress));
    total.texts.push_back(report.amounts.amount(report.progressTotal));
    made.texts.push_back(report.created ? report.created->iso8601() : "");
  }
  return hasTitles ? joined({date, title, type, amount, total, made})
                   : joined({date, type, amount, total, made});
}

}  // namespace velloro
