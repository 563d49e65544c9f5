#include "Foundation/Text/String.h"
#include "Foundation/Values/Try.h"
#include "VelloroImport/ImportBuilder.h"
#include "VelloroImport/JSONReaders.h"
#include "VelloroImport/JSONValues.h"

#include <algorithm>
#include <cctype>
#include <map>

namespace velloro {
namespace {

constexpr std::string_view program = "taskwarrior";

enum class Unit : std::uint8_t { partOfDay, day, week, month, year };

/// A stretch of time, after which a task recurs.
struct Recurrence {
  std::int64_t count = 1;
  Unit unit = Unit::day;
  bool isWeekdays = false;
};

struct NamedRecurrence {
  std::string_view name;
  Recurrence recurrence;
};
constexpr NamedRecurrence named[] = {
    {"daily", {1, Unit::day}},          {"day", {1, Unit::day}},
    {"weekdays", {1, Unit::day, true}}, {"weekly", {1, Unit::week}},
    {"sennight", {1, Unit::week}},      {"biweekly", {2, Unit::week}},
    {"fortnight", {2, Unit::week}},     {"monthly", {1, Unit::month}},
    {"bimonthly", {2, Unit::month}},    {"quarterly", {3, Unit::month}},
    {"semiannual", {6, Unit::month}},   {"annual", {1, Unit::year}},
    {"yearly", {1, Unit::year}},        {"biannual", {2, Unit::year}},
    {"biyearly", {2, Unit::year}}};

struct NamedUnit {
  std::string_view name;
  Unit unit;
  std::int64_t factor = 1;
};
constexpr NamedUnit units[] = {{"s", Unit::partOfDay},
                               {"sec", Unit::partOfDay},
                               {"secs", Unit::partOfDay},
                               {"second", Unit::partOfDay},
                               {"seconds", Unit::partOfDay},
                               {"min", Unit::partOfDay},
                               {"mins", Unit::partOfDay},
                               {"minute", Unit::partOfDay},
                               {"minutes", Unit::partOfDay},
                               {"h", Unit::partOfDay},
                               {"hr", Unit::partOfDay},
                               {"hrs", Unit::partOfDay},
                               {"hour", Unit::partOfDay},
                               {"hours", Unit::partOfDay},
                               {"d", Unit::day},
                               {"day", Unit::day},
                               {"days", Unit::day},
                               {"w", Unit::week},
                               {"wk", Unit::week},
                               {"wks", Unit::week},
                               {"week", Unit::week},
                               {"weeks", Unit::week},
                               {"m", Unit::month},
                               {"mo", Unit::month},
                               {"mos", Unit::month},
                               {"mth", Unit::month},
                               {"mths", Unit::month},
                               {"mnths", Unit::month},
                               {"month", Unit::month},
                               {"months", Unit::month},
                               {"q", Unit::month, 3},
                               {"qtr", Unit::month, 3},
                               {"qtrs", Unit::month, 3},
                               {"qrtr", Unit::month, 3},
                               {"qrtrs", Unit::month, 3},
                               {"quarter", Unit::month, 3},
                               {"quarters", Unit::month, 3},
                               {"y", Unit::year},
                               {"yr", Unit::year},
                               {"yrs", Unit::year},
                               {"year", Unit::year},
                               {"years", Unit::year}};

std::optional<Recurrence> recurrenceOf(std::int64_t count, std::string_view unit) {
  const auto row = std::ranges::find(units, unit, &NamedUnit::name);
  if (row == std::end(units) || count < 1) return std::nullopt;
  return Recurrence{count * row->factor, row->unit};
}

/// "weekly", "2wks", "P1M", "PT12H".
std::optional<Recurrence> recurrenceIn(std::string_view text) {
  constexpr std::int64_t most = 1000;
  const auto known = std::ranges::find(named, text, &NamedRecurrence::name);
  if (known != std::end(named)) return known->recurrence;
  if (text.starts_with("PT")) return Recurrence{1, Unit::partOfDay};
  const bool isISO = text.starts_with('P');
  if (isISO) text.remove_prefix(1);
  const auto digits = std::min(text.find_first_not_of("0123456789"), text.size());
  const auto count = digits == 0 ? std::optional<std::int64_t>(1)
                                 : numberIn<std::int64_t>(text.substr(0, digits), most);
  if (!count || (isISO && digits == 0)) return std::nullopt;
  std::string unit(text.substr(digits));
  if (isISO && unit.size() == 1) unit = static_cast<char>(std::tolower(unit.front()));
  return recurrenceOf(*count, unit);
}

/// `20240307T110000Z`.
std::optional<Date> instantIn(const PropertyList& value) {
  const std::string text = textOf(value);
  if (text.size() != 16 || text[8] != 'T' || text[15] != 'Z') return std::nullopt;
  return Date::fromISO8601(text.substr(0, 4) + "-" + text.substr(4, 2) + "-" + text.substr(6, 5) +
                           ":" + text.substr(11, 2) + ":" + text.substr(13));
}

class TaskwarriorReader {
 public:
  TaskwarriorReader(const PropertyList::Array& tasks, const TimeZone& zone, Date now)
      : tasks_(tasks), builder_(program, zone, now) {}

  ImportedBackup read() && {
    for (const PropertyList& task : tasks_) addParent(task);
    for (const PropertyList& task : tasks_) addChild(task);
    for (auto& [key, parent] : parents_) addLog(parent);
    if (single_ > 0) {
      builder_.decide(std::to_string(single_) + " tasks that do not recur", "are left out");
    }
    if (damaged_ > 0) {
      builder_.decide(std::to_string(damaged_) + " tasks without uuid or description",
                      "are left out");
    }
    return std::move(builder_).finish();
  }

 private:
  struct Parent {
    VelloroJSONBackupTask* task = nullptr;
    std::map<YYYYMMDD, bool> days = {};  ///< Done, or else deleted.
  };

  void addParent(const PropertyList& task) {
    if (textOf(task["uuid"]).empty() || textOf(task["description"]).empty()) {
      ++damaged_;
    } else if (!textOf(task["parent"]).empty()) {
      return;
    } else if (textOf(task["recur"]).empty()) {
      ++single_;
    } else {
      makeTask(task, textOf(task["uuid"]), textOf(task["status"]) != "recurring");
    }
  }

  Parent& makeTask(const PropertyList& from, const std::string& key, bool isOver) {
    const auto known = parents_.find(key);
    if (known != parents_.end()) return known->second;
    VelloroJSONBackupTask& task = builder_.addTask(key, textOf(from["description"]));
    if (isOver) task.status = TaskStatus::archived;
    task.createdTimestamp = instantIn(from["entry"]);
    setRhythm(from, task);
    if (!textOf(from["project"]).empty()) builder_.addToCategory(task, textOf(from["project"]));
    addAnnotations(from, task);
    sayLeftOut(from, task);
    return parents_.emplace(key, Parent{&task}).first->second;
  }

  void setRhythm(const PropertyList& from, VelloroJSONBackupTask& task) {
    const std::string text = textOf(from["recur"]);
    const auto recurrence = recurrenceIn(text);
    if (!recurrence) {
      return builder_.decide(
          task, "the recurrence " + inQuotes(text) + " can't be read; it is due every day");
    }
    const auto due = instantIn(from["due"]);
    const auto day = due ? dayOf(*due, builder_.zone()) : std::nullopt;
    const std::int64_t count = recurrence->count;
    if (recurrence->isWeekdays) {
      return ImportBuilder::setWeekdays(task, daysOfWeekWhere([](int d) { return d <= 5; }));
    }
    switch (recurrence->unit) {
      case Unit::partOfDay:
        return builder_.decide(task, "recurs within a day; here it is due once a day");
      case Unit::day:
        return builder_.setFrequency(task, 1, count);
      case Unit::week:
        return setWeeks(count, day, task);
      case Unit::month:
        return setMonths(count, task);
      case Unit::year:
        ImportBuilder::setDaysIn(task, DayMode::numberOfDaysInYear, 1);
        builder_.decide(task, count > 1 ? "is due on any one day of every year here"
                                        : "is due on any one day of a year here");
    }
  }

  void setWeeks(std::int64_t count, std::optional<YYYYMMDD> due, VelloroJSONBackupTask& task) {
    if (count > 1 || !due) return builder_.setFrequency(task, 1, count * 7);
    const DayOfWeek weekday = due->dayOfWeek({});
    ImportBuilder::setWeekdays(
        task, daysOfWeekWhere([&](int day) { return static_cast<DayOfWeek>(day % 7) == weekday; }));
  }

  void setMonths(std::int64_t count, VelloroJSONBackupTask& task) {
    constexpr std::int64_t daysPerYear = 365, monthsPerYear = 12;
    if (count > 1) {
      const std::int64_t days = (count * daysPerYear + monthsPerYear / 2) / monthsPerYear;
      builder_.setFrequency(task, 1, days);
      return builder_.decide(task, "every " + std::to_string(count) + " months became every " +
                                       std::to_string(days) + " days");
    }
    ImportBuilder::setDaysIn(task, DayMode::numberOfDaysInMonth, 1);
    builder_.decide(task, "the day of the month became any one day of a month");
  }

  void addAnnotations(const PropertyList& from, VelloroJSONBackupTask& task) {
    const std::string uuid = textOf(from["uuid"]);
    std::size_t number = 0;
    for (const PropertyList& annotation : elementsOf(from["annotations"])) {
      const auto instant = instantIn(annotation["entry"]);
      const auto day = instant ? dayOf(*instant, builder_.zone()) : std::nullopt;
      builder_.addNote(task, day, uuid + " " + std::to_string(number++),
                       textOf(annotation["description"]));
    }
  }

  void sayLeftOut(const PropertyList& from, const VelloroJSONBackupTask& task) {
    std::string names;
    for (const char* name : {"tags", "priority", "until", "depends", "scheduled"}) {
      if (from[name].isNull()) continue;
      names += names.empty() ? name : std::string(", ") + name;
    }
    if (!names.empty()) builder_.decide(task, names + " left out");
  }

  /// Of a day, done counts before deleted.
  void addChild(const PropertyList& task) {
    const std::string parent = textOf(task["parent"]), status = textOf(task["status"]);
    if (parent.empty() || textOf(task["uuid"]).empty() || textOf(task["description"]).empty()) {
      return;
    }
    if (!parents_.contains(parent)) {
      auto& made = makeTask(task, parent, true);
      builder_.decide(*made.task, "stands in the file by its children alone; it is archived");
    } else {
      addAnnotations(task, *parents_.at(parent).task);
    }
    const bool isDone = status == "completed";
    if (!isDone && status != "deleted") return;
    const auto due = instantIn(task["due"]), end = instantIn(task["end"]);
    const auto instant = due ? due : end;
    const auto day = instant ? dayOf(*instant, builder_.zone()) : std::nullopt;
    Parent& of = parents_.at(parent);
    if (!day) return builder_.decide(*of.task, "a child without a due day is left out");
    bool& isDayDone = of.days[*day];
    isDayDone = isDayDone || isDone;
  }

  void addLog(Parent& parent) {
    using enum TaskLogEntryType;
    for (const auto& [day, isDone] : parent.days) {
      builder_.addEntry(*parent.task, day, isDone ? completedManuallyFull : skippedManuallyFull,
                        isDone ? 1 : 0);
    }
  }

  const PropertyList::Array& tasks_;
  ImportBuilder builder_;
  std::map<std::string, Parent> parents_;
  std::int64_t single_ = 0, damaged_ = 0;
};

/// An object for each line; a comma may end it.
Result<PropertyList::Array> objectsOfLines(std::string_view text) {
  PropertyList::Array objects;
  while (!text.empty()) {
    const auto end = std::min(text.find('\n'), text.size());
    std::string_view line = trimmed(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.ends_with(',')) line.remove_suffix(1);
    if (!line.empty()) objects.push_back(TRY(jsonIn(line)));
  }
  return objects;
}

}  // namespace

Result<ImportedBackup> readTaskwarrior(std::string_view json, const TimeZone& zone, Date now) {
  auto whole = jsonIn(json);
  if (!whole) {
    auto objects = objectsOfLines(json);
    if (!objects || objects->empty()) return std::unexpected(whole.error());
    whole = PropertyList(*std::move(objects));
  } else if (whole->dictionary() != nullptr) {
    whole = PropertyList(PropertyList::Array{*std::move(whole)});
  }
  if (whole->array() == nullptr) {
    return failure<Error>("velloro.import", 1, "The document has no tasks.");
  }
  return TaskwarriorReader(*whole->array(), zone, now).read();
}

}  // namespace velloro
