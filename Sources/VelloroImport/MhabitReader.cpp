#include "Foundation/Text/String.h"
#include "Foundation/Values/Try.h"
#include "VelloroImport/ImportBuilder.h"
#include "VelloroImport/JSONReaders.h"
#include "VelloroImport/JSONValues.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace velloro {
namespace {

constexpr std::string_view program = "mhabit";
constexpr std::int64_t mostDays = 3660;
constexpr std::int64_t mostSeconds = 253'402'128'000;  // 9999-12-30
constexpr double mostAmount = 1e12;

enum Type : std::int64_t { normal = 1, negative = 2 };
enum Status : std::int64_t { active = 1, deleted = 2, archived = 3 };
enum FrequencyType : std::int64_t { weekly = 1, monthly = 2, custom = 3 };
enum ReminderKind : std::int64_t { noReminder = 0, daily = 2, weekdays = 3, monthDays = 4 };
enum RecordType : std::int64_t { done = 1, skip = 2 };

/// Several members hold JSON in a text; null for one that can't be read.
PropertyList nested(const PropertyList& value) {
  if (value.text() == nullptr) return value;
  return jsonIn(*value.text()).value_or(PropertyList());
}

class MhabitReader {
 public:
  MhabitReader(const PropertyList& document, const TimeZone& zone, Date now)
      : document_(document), builder_(program, zone, now) {}

  ImportedBackup read() && {
    for (const PropertyList& habit : elementsOf(document_["habits"])) addHabit(habit);
    const std::size_t groups = elementsOf(document_["groups"]).size();
    if (groups > 0) builder_.decide(std::to_string(groups) + " groups", "are left out");
    return std::move(builder_).finish();
  }

 private:
  void addHabit(const PropertyList& habit) {
    const std::string name = textOf(habit["name"]);
    if (name.empty()) return builder_.decide("a habit without a name", "is left out");
    VelloroJSONBackupTask& task = builder_.addTask(keyOf(habit, name), name);
    setStatus(habit, task);
    setCreation(habit, task);
    setRhythm(habit, task);
    const double goal = habit["daily_goal"].real().value_or(1);
    task.negativeTask = wholeNumber(habit["type"], normal, negative).value_or(normal) == negative;
    const auto most = habit["daily_goal_extra"].real();
    const double target = *task.negativeTask ? most.value_or(goal) : goal;
    builder_.setTarget(task, std::clamp(target, 0.0, mostAmount));
    addNotes(habit, task);
    addReminder(nested(habit["reminder"]), task);
    addRecords(elementsOf(habit["records"]), target, task);
  }

  /// Without an identifier, the same name and first day are the same habit.
  std::string keyOf(const PropertyList& habit, const std::string& name) {
    const std::string uuid = textOf(habit["uuid"]);
    const std::int64_t start = wholeNumber(habit["start_date"], 0, mostSeconds).value_or(0);
    const std::string own = uuid.empty() ? name + " " + std::to_string(start) : uuid;
    std::string key = own;
    for (int n = 2; !keys_.insert(key).second; ++n) key = own + " " + std::to_string(n);
    return key;
  }

  static void setStatus(const PropertyList& habit, VelloroJSONBackupTask& task) {
    const std::int64_t status = wholeNumber(habit["status"], active, archived).value_or(active);
    if (status == deleted) task.status = TaskStatus::trashed;
    if (status == archived) task.status = TaskStatus::archived;
  }

  void setCreation(const PropertyList& habit, VelloroJSONBackupTask& task) {
    const auto start = dayOfNumber(wholeNumber(habit["start_date"], 0, mostSeconds).value_or(-1));
    const auto created = wholeNumber(habit["create_t"], 0, mostSeconds);
    if (start) {
      task.createdTimestamp = start->startOfDay({}, builder_.zone());
    } else if (created) {
      task.createdTimestamp = Date::since1970(static_cast<double>(*created));
    }
  }

  void setRhythm(const PropertyList& habit, VelloroJSONBackupTask& task) {
    const auto type = wholeNumber(habit["freq_type"], weekly, custom);
    const PropertyList numbers = nested(habit["freq_custom"]);
    const auto number = [&](std::size_t i) {
      const auto& all = elementsOf(numbers);
      return i < all.size() ? wholeNumber(all[i], 1, mostDays) : std::nullopt;
    };
    const auto count = number(0), days = number(1);
    if (!type && habit["freq_type"].isNull()) return;
    if (!type || !count || (type == custom && !days)) {
      return builder_.decide(task, "its frequency can't be read; it is due every day");
    }
    if (type == custom) return builder_.setFrequency(task, *count, *days);
    const bool isWeek = type == weekly;
    if (isWeek && *count >= 7) return;
    ImportBuilder::setDaysIn(task,
                             isWeek ? DayMode::numberOfDaysInWeek : DayMode::numberOfDaysInMonth,
                             std::min<std::int64_t>(*count, 31));
  }

  void addNotes(const PropertyList& habit, VelloroJSONBackupTask& task) {
    builder_.addNote(task, {}, "desc", textOf(habit["desc"]));
    const std::string unit = textOf(habit["daily_goal_unit"]);
    if (!unit.empty()) {
      builder_.addNote(task, {}, "unit", "Unit: " + unit);
      builder_.decide(task, "the unit " + inQuotes(unit) + " stands in a note");
    }
    if (!task.negativeTask.value_or(false) && habit["daily_goal_extra"].real().value_or(0) > 0) {
      builder_.decide(task, "the higher goal beside the daily one is left out");
    }
    if (!habit["color"].isNull()) builder_.decide(task, "its colour of a palette is left out");
  }

  void addReminder(const PropertyList& reminder, VelloroJSONBackupTask& task) {
    if (reminder.isNull()) return;
    const auto kind = wholeNumber(reminder["type"], noReminder, monthDays);
    if (kind == noReminder) return;
    const auto hour = wholeNumber(reminder["time"]["hour"], 0, 23);
    const auto minute = wholeNumber(reminder["time"]["minute"], 0, 59);
    const PropertyList::Array& extra = elementsOf(reminder["extra"]);
    if (!kind || (*kind != daily && *kind != weekdays && *kind != monthDays) || !hour || !minute) {
      return builder_.decide(task, "its reminder can't be carried; it is left out");
    }
    const auto isNamed = [&](int day) {
      return std::ranges::any_of(extra, [&](const auto& one) { return one.integer() == day; });
    };
    if (kind == monthDays) {
      builder_.decide(task, "the reminder on days of the month comes on every day that is due");
    }
    builder_.addReminder(task, {.h = *hour, .m = *minute, .s = 0},
                         kind == weekdays ? daysOfWeekWhere(isNamed) : DaysOfWeek::everyDay);
  }

  void addRecords(const PropertyList::Array& records, double target, VelloroJSONBackupTask& task) {
    std::map<YYYYMMDD, const PropertyList*> days;
    std::int64_t leftOut = 0;
    for (const PropertyList& record : records) {
      const auto day = dayOfNumber(record["record_date"].integer().value_or(-1));
      const bool isKnown = wholeNumber(record["record_type"], done, skip).has_value();
      if (day && isKnown) {
        days[*day] = &record;
      } else {
        ++leftOut;
      }
    }
    for (const auto& [day, record] : days) {
      builder_.addNote(task, day, "", textOf((*record)["reason"]));
      if ((*record)["record_type"].integer() == skip) {
        builder_.addEntry(task, day, TaskLogEntryType::skippedManuallyFull, 0);
      } else {
        const double value = (*record)["record_value"].real().value_or(target);
        builder_.addAmount(task, day, std::clamp(value, 0.0, mostAmount), target);
      }
    }
    if (leftOut > 0) {
      builder_.decide(task, std::to_string(leftOut) + " records can't be read; they are left out");
    }
  }

  const PropertyList& document_;
  ImportBuilder builder_;
  std::set<std::string> keys_;
};

}  // namespace

Result<ImportedBackup> readMhabit(std::string_view json, const TimeZone& zone, Date now) {
  const PropertyList document = TRY(jsonIn(json));
  if (document["habits"].array() == nullptr) {
    return failure<Error>("velloro.import", 1, "The document has no list \"habits\".");
  }
  return MhabitReader(document, zone, now).read();
}

}  // namespace velloro
