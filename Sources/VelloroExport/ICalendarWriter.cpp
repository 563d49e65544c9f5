#include "VelloroExport/ICalendarWriter.h"

#include "Foundation/Text/String.h"

#include <algorithm>
#include <set>

namespace velloro {
namespace {

using Task = VelloroJSONBackupTask;
using Times = std::set<std::int64_t>;  ///< Seconds from the midnight of a day's name.

constexpr std::int64_t secondsOfDay = 86400;
constexpr std::string_view weekdayNames[] = {"SU", "MO", "TU", "WE", "TH", "FR", "SA"};

std::string escaped(std::string_view text) {
  std::string escaped;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char each = text[i];
    const bool isBreak = each == '\n' || each == '\r';
    if (each == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
    if (isBreak) {
      escaped += "\\n";
    } else if (each == '\\' || each == ',' || each == ';') {
      escaped += {'\\', each};
    } else if (static_cast<unsigned char>(each) >= 0x20 || each == '\t') {
      escaped += each == 0x7F ? ' ' : each;
    }
  }
  return escaped;
}

/// "20240307".
std::string dayText(YYYYMMDD day) {
  return stringWithFormat("%04lld%02lld%02lld", static_cast<long long>(day.y),
                          static_cast<long long>(day.m), static_cast<long long>(day.d));
}

std::string clockText(std::int64_t seconds) {
  return stringWithFormat("T%02lld%02lld%02lld", static_cast<long long>(seconds / 3600),
                          static_cast<long long>(seconds / 60 % 60),
                          static_cast<long long>(seconds % 60));
}

/// Of the world's clock: "20240307T120000Z".
std::string instantText(Date date) {
  const std::int64_t seconds = date.secondsSince1970();
  const std::int64_t day = dayOfSeconds(seconds);
  return dayText(YYYYMMDD::fromDayNumber(day)) + clockText(seconds - day * secondsOfDay) + "Z";
}

/// "PT12H30M", and "PT0S" for none.
std::string durationText(std::int64_t seconds) {
  std::string text = "PT";
  for (const auto& [number, unit] :
       {std::pair(seconds / 3600, 'H'), std::pair(seconds / 60 % 60, 'M'),
        std::pair(seconds % 60, 'S')}) {
    if (number != 0) text += std::to_string(number) + unit;
  }
  return text == "PT" ? "PT0S" : text;
}

/// A day that begins late has its early times on the next date, or its late ones on the one before.
std::int64_t secondsIn(HHMMSS startOfDay, HHMMSS time) {
  constexpr YYYYMMDD any{2001, 1, 1};
  return any.dateAt(startOfDay, time, TimeZone::gmt()).secondsSince1970() -
         any.dayNumber() * secondsOfDay;
}

/// One event, for days that have the same times.
struct Series {
  std::string uid;
  YYYYMMDD start;    ///< The first day.
  std::string rule;  ///< Without the weekdays.
  EnumSet<DayOfWeek> weekdays = {};
  Times times = {};
};

class ICalendarWriter {
 public:
  ICalendarWriter(const VelloroJSONBackup& backup, const ICalendarOptions& options)
      : backup_(backup), options_(options) {
    if (!backup.categories) return;
    for (const auto& category : *backup.categories) {
      categories_.emplace(category.uniqueID, escaped(category.title));
    }
  }

  ICalendar calendar() && {
    for (const char* each :
         {"BEGIN:VCALENDAR", "VERSION:2.0", "PRODID:-//velloro//velloro//EN", "CALSCALE:GREGORIAN"})
      line(each);
    for (const Task& task : backup_.tasks) {
      addEvents(task);
      if (options_.withLog) addJournal(task);
    }
    line("END:VCALENDAR");
    return std::move(calendar_);
  }

 private:
  void line(const std::string& text) { calendar_.text += foldedLine(text); }
  void remark(const Task& task, std::string why) {
    calendar_.remarks.push_back({inQuotes(task.title.value_or("")), std::move(why)});
  }

  /// A task always has an identifier in a store.
  [[nodiscard]] static std::string uidOf(const Task& task) {
    return task.uniqueId ? task.uniqueId->stringValue() : escaped(task.title.value_or(""));
  }
  [[nodiscard]] HHMMSS startOfDay(const Task& task) const {
    const auto found =
        task.uniqueId ? options_.startsOfDay.find(*task.uniqueId) : options_.startsOfDay.end();
    return found == options_.startsOfDay.end() ? HHMMSS::midnight : found->second;
  }
  [[nodiscard]] YYYYMMDD dayOf(const Task& task, Date date) const {
    return YYYYMMDD::fromDate(startOfDay(task), date, options_.timeZone);
  }

  void addEvents(const Task& task) {
    if (task.status == TaskStatus::paused) return remark(task, "is paused; it is left out");
    if (task.status != TaskStatus::normal) return remark(task, "is not active; it is left out");
    switch (task.daysMode.value_or(DayMode::specificDaysOfWeek)) {
      case DayMode::specificDaysOfWeek:
        return addWeekdays(task);
      case DayMode::dayInterval:
        return addInterval(task);
      default:
        remark(task, isAggregate(*task.daysMode)
                         ? "no calendar's rule says a total for a period; it is left out"
                         : "no calendar's rule says a number of days in a period; it is left out");
    }
  }

  void addWeekdays(const Task& task) {
    std::map<Times, EnumSet<DayOfWeek>> daysByTimes;
    const auto due = task.daysOfWeek.value_or(DaysOfWeek::everyDay).daysOfWeek();
    if (due.isEmpty()) return remark(task, "is due on no day; it is left out");
    noteOtherReminders(task);
    for (const DayOfWeek day : due) daysByTimes[timesOn(task, day)].insert(day);
    for (const auto& [times, days] : daysByTimes) {
      YYYYMMDD start = dayOf(task, task.createdTimestamp.value_or(backup_.timestamp));
      while (!days.contains(start.dayOfWeek({}))) start = start.nextDay({});
      std::string uid = uidOf(task);
      if (daysByTimes.size() > 1) uid += "-" + namesOf(days, 0, "");
      addEvent(task, {uid, start, days == everyDay() ? "FREQ=DAILY" : "FREQ=WEEKLY", days, times});
    }
  }

  void addInterval(const Task& task) {
    const std::int64_t interval = std::max<std::int64_t>(task.dayInterval.value_or(1), 1);
    std::optional<YYYYMMDD> last;
    for (const auto& entry : task.log.value_or(std::vector<VelloroJSONBackupTaskEntry>())) {
      if (isCompletedFull(entry.entryType))
        last = std::max(last.value_or(YYYYMMDD()), entry.entryDate);
    }
    const YYYYMMDD created = dayOf(task, task.createdTimestamp.value_or(backup_.timestamp));
    const YYYYMMDD next = last ? last->add(interval, {}) : created;
    const YYYYMMDD start = std::max(next, dayOf(task, backup_.timestamp));
    noteOtherReminders(task);
    Times times;
    for (const DayOfWeek day : everyDay()) times.merge(timesOn(task, day));
    addEvent(task,
             {uidOf(task), start, "FREQ=DAILY;INTERVAL=" + std::to_string(interval), {}, times});
    remark(task,
           "counts from each completion; the calendar counts on from " + start.debugDescription());
  }

  [[nodiscard]] Times timesOn(const Task& task, DayOfWeek day) const {
    Times times;
    if (!task.notificationSettings) return times;
    const auto settings = task.notificationSettings->notificationSettings();
    if (settings.reminderType != ReminderType::custom) return times;
    for (const TaskReminder& reminder : settings.reminders) {
      const bool isSent = reminder.trigger.type == TaskReminder::TriggerType::timeOfDay;
      if (!isSent || !reminder.trigger.timeOfDay || !reminder.daysOfWeek.contains(day)) continue;
      times.insert(secondsIn(startOfDay(task), *reminder.trigger.timeOfDay));
    }
    return times;
  }

  void noteOtherReminders(const Task& task) {
    if (!task.notificationSettings) return;
    const auto settings = task.notificationSettings->notificationSettings();
    if (settings.reminderType == ReminderType::automatic) {
      remark(task, "is reminded of at times that change; its events have no alarm");
    }
    const auto others = settings.remindersOf({TaskReminder::TriggerType::location,
                                              TaskReminder::TriggerType::durationAfterStart,
                                              TaskReminder::TriggerType::durationBeforeFinish});
    if (!others.empty()) remark(task, "its reminders at places and of timers are left out");
  }

  static std::string namesOf(EnumSet<DayOfWeek> days, std::int64_t shift,
                             std::string_view between) {
    std::string names;
    for (const DayOfWeek day : days) {
      if (!names.empty()) names += between;
      names += weekdayNames[(static_cast<std::int64_t>(day) + shift + 7) % 7];
    }
    return names;
  }

  void addEvent(const Task& task, const Series& series) {
    begin("VEVENT", series.uid);
    const std::int64_t first = series.times.empty() ? 0 : *series.times.begin();
    const std::int64_t shift = dayOfSeconds(first);
    const std::string date = dayText(series.start.add(shift, {}));
    line(series.times.empty() ? "DTSTART;VALUE=DATE:" + date
                              : "DTSTART:" + date + clockText(first - shift * secondsOfDay));
    addTexts(task);
    const bool isWeekly = series.rule == "FREQ=WEEKLY";
    line("RRULE:" + series.rule +
         (isWeekly ? ";BYDAY=" + namesOf(series.weekdays, shift, ",") : ""));
    line("TRANSP:TRANSPARENT");
    for (const std::int64_t time : series.times) {
      for (const std::string& each :
           {std::string("BEGIN:VALARM"), std::string("ACTION:DISPLAY"),
            "DESCRIPTION:" + escaped(task.title.value_or("")),
            "TRIGGER:" + durationText(time - first), std::string("END:VALARM")})
        line(each);
    }
    line("END:VEVENT");
  }

  void begin(const std::string& component, const std::string& uid) {
    line("BEGIN:" + component);
    line("UID:" + uid + "@velloro");
    line("DTSTAMP:" + instantText(backup_.timestamp));
  }

  void addTexts(const Task& task) {
    line("SUMMARY:" + escaped(task.title.value_or("")));
    std::string names;
    for (const UniqueID& id : task.categoryIDs.value_or(std::set<UniqueID>())) {
      const auto found = categories_.find(id);
      if (found != categories_.end()) names += (names.empty() ? "" : ",") + found->second;
    }
    if (!names.empty()) line("CATEGORIES:" + names);
  }

  void addJournal(const Task& task) {
    std::set<YYYYMMDD> days;
    for (const auto& entry : task.log.value_or(std::vector<VelloroJSONBackupTaskEntry>())) {
      if (isCompletedFull(entry.entryType)) days.insert(entry.entryDate);
    }
    for (const YYYYMMDD day : days) {
      begin("VJOURNAL", uidOf(task) + "-" + dayText(day));
      line("DTSTART;VALUE=DATE:" + dayText(day));
      addTexts(task);
      for (const auto& note : task.notes.value_or(std::vector<VelloroJSONBackupNote>())) {
        const bool isShown = note.status != VelloroJSONBackupNote::Status::trashed;
        if (isShown && note.date == day) line("DESCRIPTION:" + escaped(note.content.body));
      }
      line("END:VJOURNAL");
    }
  }

  const VelloroJSONBackup& backup_;
  const ICalendarOptions& options_;
  std::map<UniqueID, std::string> categories_;
  ICalendar calendar_;
};

}  // namespace

ICalendar iCalendar(const VelloroJSONBackup& backup, const ICalendarOptions& options) {
  return ICalendarWriter(backup, options).calendar();
}

std::string foldedLine(std::string_view line) {
  std::string folded;
  std::size_t room = 75;
  while (line.size() > room) {
    std::size_t end = room;
    while (end > 1 && (static_cast<unsigned char>(line[end]) & 0xC0) == 0x80) --end;
    folded.append(line.substr(0, end)).append("\r\n ");
    line.remove_prefix(end);
    room = 74;  // behind the blank that continues a line
  }
  return folded.append(line).append("\r\n");
}

}  // namespace velloro
