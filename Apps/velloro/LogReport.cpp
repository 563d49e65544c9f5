#include "velloro/LogReport.h"

#include "Foundation/String.h"

namespace velloro {

LogReport LogReport::of(const TaskLogEntryEntity& entry) {
  using Entry = TaskLogEntryEntity;
  const std::string* id = entry.text(Entry::uniqueId);
  return {
      .uniqueId = id != nullptr ? *id : "",
      .type = std::string(description(entry.logEntryType().value_or(TaskLogEntryType::unknown))),
      .date = YYYYMMDD::fromIntValue(entry.value(Entry::entryDate)).value_or(YYYYMMDD{}),
      .period = entry.period(),
      .progress = entry.value(Entry::progress),
      .progressTotal = entry.value(Entry::progressTotal),
      .created = entry.value(Entry::createdTimestamp),
      .timeZone = std::string(entry.timeZone().identifier())};
}

std::string table(const std::vector<LogReport>& reports) {
  if (reports.empty()) return "No entries.\n";
  std::string text;
  for (const LogReport& report : reports) {
    text += stringWithFormat("%s  %-26s %8g %8g  %s\n", report.date.debugDescription().c_str(),
                             report.type.c_str(), report.progress, report.progressTotal,
                             report.created ? report.created->iso8601().c_str() : "");
  }
  return text;
}

}  // namespace velloro
