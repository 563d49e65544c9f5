#include "VelloroImport/ImportBuilder.h"

#include "Foundation/Text/String.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

namespace velloro {
namespace {

constexpr HHMMSS midnight = {};
constexpr HHMMSS noon = {.h = 12, .m = 0, .s = 0};

/// Of a task whose log is kept in periods, that of the day.
void setPeriod(VelloroJSONBackupTaskEntry& entry, DayMode mode) {
  const YYYYMMDD day = entry.entryDate;
  if (mode == DayMode::aggregateOverWeek) {
    entry.entryPeriodType = TaskFrequencyPeriodType::week;
    entry.entryPeriodFrom = day.startOfWeek(DayOfWeek::monday, {});
    entry.entryPeriodTo = day.endOfWeek(DayOfWeek::monday, {});
  } else if (mode == DayMode::aggregateOverMonth) {
    const YYYYMMDD first = {.y = day.y, .m = day.m, .d = 1};
    YYYYMMDD next = first.advanced(31);
    next.d = 1;
    entry.entryPeriodType = TaskFrequencyPeriodType::month;
    entry.entryPeriodFrom = first;
    entry.entryPeriodTo = next.advanced(-1);
  }
}

}  // namespace

YYYYMMDD ImportBuilder::today() const {
  return YYYYMMDD::today(midnight, zone_, now_);
}

UniqueID ImportBuilder::id(std::string_view kind, std::string_view key) const {
  return importedID({program_, kind, key});
}

void ImportBuilder::decide(std::string what, std::string why) {
  decisions_.push_back({std::move(what), std::move(why)});
}

void ImportBuilder::decide(const VelloroJSONBackupTask& task, std::string why) {
  decide(inQuotes(*task.title), std::move(why));
}

VelloroJSONBackupTask& ImportBuilder::addTask(std::string_view key, std::string_view title) {
  auto& task =
      tasks_.emplace_back(VelloroJSONBackupTask{.uniqueId = id("habit", key),
                                                .title = std::string(title),
                                                .createdTimeZone = CodableTimeZone{zone_},
                                                .status = TaskStatus::normal,
                                                .pageNumber = TaskPageNumber::first,
                                                .log = std::vector<VelloroJSONBackupTaskEntry>(),
                                                .notes = std::vector<VelloroJSONBackupNote>()});
  setWeekdays(task, DaysOfWeek::everyDay);
  return task;
}

void ImportBuilder::setFrequency(VelloroJSONBackupTask& task, std::int64_t count,
                                 std::int64_t days) {
  task.daysOfWeek.reset();
  setRollingFrequency(count, days, task, decisions_);
}

void ImportBuilder::setDaysIn(VelloroJSONBackupTask& task, DayMode mode, std::int64_t days) {
  task.daysOfWeek.reset();
  task.daysMode = mode;
  task.numCompletions = days;
}

void ImportBuilder::setWeekdays(VelloroJSONBackupTask& task, DaysOfWeek days) {
  task.daysMode = DayMode::specificDaysOfWeek;
  task.daysOfWeek = days;
  task.timesPerDay = 1;
}

void ImportBuilder::setTarget(VelloroJSONBackupTask& task, double target) {
  constexpr double most = 100'000;
  const double times = std::clamp(std::round(target), 1.0, most);
  task.timesPerDay = static_cast<std::int64_t>(times);
  if (times == target) return;
  decide(task, "the target " + stringWithFormat("%g", target) + " became " +
                   std::to_string(*task.timesPerDay));
}

void ImportBuilder::addEntry(VelloroJSONBackupTask& task, YYYYMMDD day, TaskLogEntryType type,
                             double progress) {
  VelloroJSONBackupTaskEntry entry{
      .uniqueId =
          importedID({program_, "mark", task.uniqueId->stringValue(), day.debugDescription()}),
      .entryType = type,
      .entryDate = day,
      .progress = progress,
      .createdTimestamp = day.dateAt(midnight, noon, zone_)};
  setPeriod(entry, task.daysMode.value_or(DayMode::specificDaysOfWeek));
  task.log->push_back(std::move(entry));
}

void ImportBuilder::addAmount(VelloroJSONBackupTask& task, YYYYMMDD day, double amount,
                              double target) {
  using enum TaskLogEntryType;
  if (task.negativeTask.value_or(false)) {
    const bool isMissed = amount > target;
    addEntry(task, day,
             isMissed      ? missedManuallyFull
             : amount <= 0 ? completedManuallyFull
                           : missedManuallyPartial,
             amount);
    return;
  }
  const bool isDone = amount > 0 && amount >= target;
  addEntry(task, day,
           isDone        ? completedManuallyFull
           : amount <= 0 ? missedManuallyFull
                         : completedManuallyPartial,
           amount);
}

void ImportBuilder::addNote(VelloroJSONBackupTask& task, std::optional<YYYYMMDD> day,
                            std::string_view key, std::string_view text) {
  if (trimmed(text).empty()) return;
  const std::string place = day ? day->debugDescription() : "";
  task.notes->push_back(
      {.uniqueID = importedID({program_, "note", task.uniqueId->stringValue(), place, key}),
       .date = day,
       .createdDate = day ? day->startOfDay(midnight, zone_) : now_,
       .createdTimeZone = CodableTimeZone{zone_},
       .content = {std::string(text)}});
}

void ImportBuilder::addReminder(VelloroJSONBackupTask& task, HHMMSS time, DaysOfWeek days) {
  if (!task.notificationSettings) {
    task.notificationSettings =
        codableNotificationSettings(TaskNotificationSettings{.reminderType = ReminderType::custom});
    task.notificationSettings->reminders.emplace();
  }
  auto& reminders = *task.notificationSettings->reminders;
  reminders.push_back({.identifier = importedID({program_, "reminder", task.uniqueId->stringValue(),
                                                 std::to_string(reminders.size())}),
                       .timeZone = NotificationTimeZone::taskViewer,
                       .triggerType = TaskReminder::TriggerType::timeOfDay,
                       .timeOfDay = time,
                       .days = days});
}

void ImportBuilder::addCategory(std::string_view title) {
  const UniqueID known = id("heading", title);
  const auto isKnown = [&](const auto& category) { return category.uniqueID == known; };
  if (std::ranges::any_of(categories_, isKnown)) return;
  categories_.push_back({.uniqueID = known, .title = std::string(title)});
}

void ImportBuilder::addToCategory(VelloroJSONBackupTask& task, std::string_view title) {
  addCategory(title);
  task.categoryIDs = std::set{id("heading", title)};
}

ImportedBackup ImportBuilder::finish() && {
  for (VelloroJSONBackupTask& task : tasks_) {
    if (task.createdTimestamp || task.log->empty()) continue;
    const auto first = std::ranges::min(*task.log, {}, &VelloroJSONBackupTaskEntry::entryDate);
    task.createdTimestamp = first.entryDate.startOfDay(midnight, zone_);
    decide(task, "made on the day of its first mark");
  }
  if (!tasks_.empty()) {
    decide("every task", "in the time zone " + zone_.identifier() +
                             ", with the icon of a new task; the file names neither");
  }
  return {.backup = {.timestamp = now_,
                     .tasks = {std::make_move_iterator(tasks_.begin()),
                               std::make_move_iterator(tasks_.end())},
                     .categories = std::move(categories_)},
          .decisions = std::move(decisions_)};
}

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(" \t\r");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

std::optional<YYYYMMDD> isoDay(std::string_view text) {
  std::string day(trimmed(text));
  if (day.size() != 10 || day[4] != '-' || day[7] != '-') return std::nullopt;
  std::erase(day, '-');
  return YYYYMMDD::fromString(day);
}

std::optional<YYYYMMDD> dayOf(Date date, const TimeZone& zone, HHMMSS startOfDay) {
  constexpr TimeInterval latest = 253'402'128'000;  // 9999-12-30
  const TimeInterval seconds = date.timeIntervalSince1970();
  if (!(seconds >= 0 && seconds < latest)) return std::nullopt;
  return YYYYMMDD::fromDate(startOfDay, date, zone);
}

std::optional<YYYYMMDD> dayOfNumber(std::int64_t number) {
  constexpr std::int64_t latest = 2'932'895;  // 9999-12-30
  if (number < 0 || number > latest) return std::nullopt;
  return YYYYMMDD::fromDayNumber(number);
}

template <typename Number>
std::optional<Number> numberIn(std::string_view text, Number most) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool isAll = error == std::errc() && end == text.data() + text.size();
  return isAll && number >= 0 && number <= most ? std::optional(number) : std::nullopt;
}
template std::optional<double> numberIn(std::string_view, double);
template std::optional<std::int64_t> numberIn(std::string_view, std::int64_t);

}  // namespace velloro
