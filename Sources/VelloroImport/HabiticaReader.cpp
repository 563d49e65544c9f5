#include "Foundation/Text/String.h"
#include "Foundation/Values/Try.h"
#include "VelloroImport/ImportBuilder.h"
#include "VelloroImport/JSONReaders.h"
#include "VelloroImport/JSONValues.h"

#include <algorithm>
#include <cmath>

namespace velloro {
namespace {

constexpr std::string_view program = "habitica";
constexpr std::int64_t mostDays = 3660;

/// The user's own zone, where it is known: only its offset at the last login is. The present zone
/// serves when it has the same one, for it knows of summer time.
TimeZone userZone(const PropertyList& preferences, const TimeZone& zone, Date now) {
  constexpr std::int64_t most = 18 * 60;
  const auto west = wholeNumber(preferences["timezoneOffset"], -most, most);
  if (!west || zone.secondsFromGMT(now) == -*west * 60) return zone;
  return TimeZone::fromSecondsFromGMT(-*west * 60).value_or(zone);
}

class HabiticaReader {
 public:
  HabiticaReader(const PropertyList& user, const TimeZone& zone, Date now)
      : user_(user),
        builder_(program, userZone(user["preferences"], zone, now), now),
        dayStart_{.h = wholeNumber(user["preferences"]["dayStart"], 0, 23).value_or(0)} {}

  ImportedBackup read() && {
    const PropertyList& tasks = user_["tasks"];
    for (const PropertyList& daily : elementsOf(tasks["dailys"])) addDaily(daily);
    for (const PropertyList& habit : elementsOf(tasks["habits"])) addHabit(habit);
    leaveOut(tasks["todos"], "to-dos");
    leaveOut(tasks["rewards"], "rewards");
    leaveOut(user_["tags"], "tags");
    if (hasValues_) builder_.decide("values and streaks", "are left out");
    return std::move(builder_).finish();
  }

 private:
  void leaveOut(const PropertyList& list, const char* what) {
    const std::size_t count = elementsOf(list).size();
    if (count > 0) builder_.decide(std::to_string(count) + " " + what, "are left out");
  }

  /// Null without an identifier or a text.
  VelloroJSONBackupTask* addTask(const PropertyList& from, const std::string& part = "") {
    const std::string id = textOf(from["_id"]), title = textOf(from["text"]);
    if (id.empty() || title.empty()) {
      if (!from.isNull()) builder_.decide("a task without identifier or text", "is left out");
      return nullptr;
    }
    const std::string sign = part.empty() ? "" : " (" + part + ")";
    VelloroJSONBackupTask& task = builder_.addTask(id + part, title + sign);
    task.createdTimestamp = Date::fromISO8601(textOf(from["createdAt"]));
    builder_.addNote(task, {}, "notes", textOf(from["notes"]));
    hasValues_ = hasValues_ || !from["value"].isNull() || !from["streak"].isNull();
    return &task;
  }

  void addDaily(const PropertyList& daily) {
    VelloroJSONBackupTask* task = addTask(daily);
    if (task == nullptr) return;
    setRhythm(daily, *task);
    setSteps(elementsOf(daily["checklist"]), *task);
    addReminders(elementsOf(daily["reminders"]), *task);
    addDailyHistory(elementsOf(daily["history"]), *task);
  }

  void setRhythm(const PropertyList& daily, VelloroJSONBackupTask& task) {
    const std::int64_t every = wholeNumber(daily["everyX"], 0, mostDays).value_or(1);
    const std::string frequency = textOf(daily["frequency"]);
    if (every == 0) {
      task.status = TaskStatus::paused;
    } else if (frequency == "weekly") {
      setWeekly(daily["repeat"], every, task);
    } else if (frequency == "monthly") {
      setMonthly(daily, every, task);
    } else if (frequency == "yearly") {
      ImportBuilder::setDaysIn(task, DayMode::numberOfDaysInYear, 1);
      builder_.decide(task, every > 1 ? "is due every year here, and on any one day of it"
                                      : "is due on any one day of a year here");
    } else if (every > 1) {
      setInterval(daily, every, task);
    }
    if (!frequency.empty() && frequency != "daily" && frequency != "weekly" &&
        frequency != "monthly" && frequency != "yearly") {
      builder_.decide(task, "the frequency " + inQuotes(frequency) + " is taken for daily");
    }
  }

  /// The first day is that from which the days are counted.
  void setInterval(const PropertyList& daily, std::int64_t days, VelloroJSONBackupTask& task) {
    builder_.setFrequency(task, 1, days);
    const auto start = Date::fromISO8601(textOf(daily["startDate"]));
    if (start) task.createdTimestamp = start;
  }

  void setWeekly(const PropertyList& repeat, std::int64_t every, VelloroJSONBackupTask& task) {
    constexpr const char* names[] = {"m", "t", "w", "th", "f", "s", "su"};
    const auto isOn = [&](int day) { return isTrue(repeat[names[day - 1]]); };
    int count = 0;
    for (int day = 1; day <= 7; ++day) count += isOn(day) ? 1 : 0;
    if (count == 0) {
      task.status = TaskStatus::paused;
      builder_.decide(task, "has no day of the week; it is paused");
    } else if (every > 1 && count == 1) {
      builder_.setFrequency(task, 1, every * 7);
    } else {
      ImportBuilder::setWeekdays(task, daysOfWeekWhere(isOn));
      if (every > 1) {
        builder_.decide(task, "is due every week here, not every " + std::to_string(every));
      }
    }
  }

  void setMonthly(const PropertyList& daily, std::int64_t every, VelloroJSONBackupTask& task) {
    const auto days = static_cast<std::int64_t>(elementsOf(daily["daysOfMonth"]).size());
    ImportBuilder::setDaysIn(task, DayMode::numberOfDaysInMonth,
                             std::clamp<std::int64_t>(days, 1, 31));
    builder_.decide(task, days > 0 ? "the days of the month became a number of days in a month"
                                   : "the week of the month became any one day of a month");
    if (every > 1) {
      builder_.decide(task, "is due every month here, not every " + std::to_string(every));
    }
  }

  void setSteps(const PropertyList::Array& checklist, VelloroJSONBackupTask& task) {
    if (checklist.empty()) return;
    builder_.setTarget(task, static_cast<double>(checklist.size()));
    std::string items;
    for (const PropertyList& item : checklist) items += "- " + textOf(item["text"]) + "\n";
    builder_.addNote(task, {}, "checklist", items);
    builder_.decide(task, "the checklist became steps that are counted; its items stand in a note");
  }

  void addReminders(const PropertyList::Array& reminders, VelloroJSONBackupTask& task) {
    for (const PropertyList& reminder : reminders) {
      const auto time = Date::fromISO8601(textOf(reminder["time"]));
      if (!time || !dayOf(*time, builder_.zone())) {
        builder_.decide(task,
                        "the reminder at " + inQuotes(textOf(reminder["time"])) + " is left out");
        continue;
      }
      constexpr std::int64_t day = 86'400, minute = 60;
      const std::int64_t second = builder_.zone().localSecondsAt(*time) % day;
      builder_.addReminder(task, *HHMMSS::fromRawValue(second / minute * minute),
                           DaysOfWeek::everyDay);
    }
  }

  /// The day of a row of a history, which is in milliseconds.
  [[nodiscard]] std::optional<YYYYMMDD> rowDay(const PropertyList& row) const {
    const auto milliseconds = row["date"].real();
    if (!milliseconds) return std::nullopt;
    return dayOf(Date::since1970(*milliseconds / 1000), builder_.zone(), dayStart_);
  }

  /// A row that says "not completed" is written at the next login, about the day before. Rows
  /// without either word are means over a month or year.
  void addDailyHistory(const PropertyList::Array& history, VelloroJSONBackupTask& task) {
    std::map<YYYYMMDD, bool> days;
    std::int64_t means = 0;
    for (const PropertyList& row : history) {
      if (row.isNull()) continue;
      const auto completed = row["completed"].boolean();
      const auto day = rowDay(row);
      if (!completed || !day) {
        ++means;
      } else if (*completed) {
        days[*day] = true;
      } else if (row["isDue"].boolean().value_or(true)) {
        days.emplace(day->advanced(-1), false);
      }
    }
    const double whole = static_cast<double>(*task.timesPerDay);
    for (const auto& [day, isDone] : days) {
      using enum TaskLogEntryType;
      builder_.addEntry(task, day, isDone ? completedManuallyFull : missedManuallyFull,
                        isDone ? whole : 0);
    }
    sayLeftOut(means, task);
  }

  void sayLeftOut(std::int64_t rows, const VelloroJSONBackupTask& task) {
    if (rows == 0) return;
    builder_.decide(task, std::to_string(rows) +
                              " rows of its history are means or can't be read; they are left out");
  }

  void addHabit(const PropertyList& habit) {
    const bool isGood = isTrue(habit["up"]), isBad = isTrue(habit["down"]);
    const bool isBoth = isGood && isBad;
    if (isGood || !isBad) {
      VelloroJSONBackupTask* task = addTask(habit, isBoth ? "+" : "");
      if (task == nullptr) return;
      if (isBoth) builder_.decide(*task, "counts up and down; it became two tasks");
      if (!isGood) builder_.decide(*task, "counts neither up nor down; it is one to do");
      addHabitHistory(elementsOf(habit["history"]), "scoredUp", *task);
    }
    if (isBad) {
      VelloroJSONBackupTask* task = addTask(habit, isBoth ? "-" : "");
      if (task == nullptr) return;
      task->negativeTask = true;
      addHabitHistory(elementsOf(habit["history"]), "scoredDown", *task);
    }
  }

  void addHabitHistory(const PropertyList::Array& history, const char* key,
                       VelloroJSONBackupTask& task) {
    constexpr double most = 1e9;
    std::map<YYYYMMDD, double> days;
    std::int64_t means = 0;
    for (const PropertyList& row : history) {
      if (row.isNull()) continue;
      const auto day = rowDay(row);
      const bool isCount = row["scoredUp"].real() || row["scoredDown"].real();
      if (!day || !isCount) {
        ++means;
        continue;
      }
      const double count = std::clamp(row[key].real().value_or(0), 0.0, most);
      if (count > 0) days[*day] += count;
    }
    for (const auto& [day, count] : days) {
      using enum TaskLogEntryType;
      const bool isBad = task.negativeTask.value_or(false);
      builder_.addEntry(task, day, isBad ? missedManuallyFull : completedManuallyFull, count);
    }
    sayLeftOut(means, task);
  }

  const PropertyList& user_;
  ImportBuilder builder_;
  const HHMMSS dayStart_;
  bool hasValues_ = false;
};

}  // namespace

Result<ImportedBackup> readHabitica(std::string_view json, const TimeZone& zone, Date now) {
  const PropertyList user = TRY(jsonIn(json));
  if (user["tasks"].dictionary() == nullptr) {
    return failure<Error>("velloro.import", 1, "The document has no \"tasks\" by their kinds.");
  }
  return HabiticaReader(user, zone, now).read();
}

}  // namespace velloro
