#include "VelloroImport/HarshReader.h"

#include "Foundation/Text/String.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <functional>
#include <map>
#include <utility>

namespace velloro {
namespace {

constexpr std::string_view program = "harsh";
constexpr HHMMSS midnight = {};

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(" \t\r");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

std::vector<std::string_view> split(std::string_view line, std::string_view separator) {
  std::vector<std::string_view> fields;
  for (;;) {
    const auto at = line.find(separator);
    fields.push_back(line.substr(0, at));
    if (at == std::string_view::npos) return fields;
    line.remove_prefix(at + separator.size());
  }
}

/// All of the text, which is a number from 0 to `most`.
template <typename Number>
std::optional<Number> numberIn(std::string_view text, Number most) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool isAll = error == std::errc() && end == text.data() + text.size();
  return isAll && number >= 0 && number <= most ? std::optional(number) : std::nullopt;
}

/// `2024-03-07`.
std::optional<YYYYMMDD> dayIn(std::string_view text) {
  std::string day(trimmed(text));
  if (day.size() != 10 || day[4] != '-' || day[7] != '-') return std::nullopt;
  std::erase(day, '-');
  return YYYYMMDD::fromString(day);
}

/// `7` or `1w`, in days; 0 is a habit without a goal.
std::optional<std::int64_t> daysIn(std::string_view text) {
  constexpr std::int64_t most = 3660;
  const bool isInWeeks = text.ends_with('w');
  if (isInWeeks) text.remove_suffix(1);
  const auto number = numberIn<std::int64_t>(text, most);
  if (!number) return std::nullopt;
  return isInWeeks ? *number * 7 : *number;
}

/// `3/7`, or `2` for once in two days.
std::optional<std::pair<std::int64_t, std::int64_t>> frequencyIn(std::string_view text) {
  const auto parts = split(trimmed(text), "/");
  if (parts.size() > 2) return std::nullopt;
  const auto first = daysIn(parts.front()), last = daysIn(parts.back());
  if (!first || !last) return std::nullopt;
  if (parts.size() == 1) return std::pair(std::min<std::int64_t>(*first, 1), *first);
  if (*first == 0 || *last == 0) return std::nullopt;
  return std::pair(*first, *last);
}

class HarshReader {
 public:
  HarshReader(const TimeZone& zone, Date now)
      : zone_(zone), now_(now), read_{.backup = {.timestamp = now}} {}

  ImportedBackup read(std::string_view habits, std::string_view log) && {
    forEachLine("habits", habits, [&](std::string_view line) { return addHabit(line); });
    forEachLine("log", log, [&](std::string_view line) { return addMark(line); });
    for (auto& [title, marks] : marks_) addLog(title, marks);
    for (auto& task : tasks_) {
      if (task.createdTimestamp) decide(inQuotes(*task.title), "made on the day of its first mark");
      read_.backup.tasks.push_back(std::move(task));
    }
    read_.backup.categories = std::move(categories_);
    return std::move(read_);
  }

 private:
  struct Mark {
    char result = 'n';
    std::string comment;
    double amount = 0;
  };
  using Marks = std::map<YYYYMMDD, Mark>;

  void decide(std::string what, std::string why) {
    read_.decisions.push_back({std::move(what), std::move(why)});
  }

  /// \param add Returns what is wrong with the line; empty for nothing.
  void forEachLine(const char* file, std::string_view text,
                   const std::function<std::string(std::string_view)>& add) {
    if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
    std::int64_t number = 0;
    for (std::string_view line : split(text, "\n")) {
      ++number;
      if (line.ends_with('\r')) line.remove_suffix(1);
      if (trimmed(line).empty() || line.front() == '#') continue;
      const std::string wrong = isUTF8(line) ? add(line) : "is not UTF-8";
      if (wrong.empty()) continue;
      decide(std::string(file) + ", line " + std::to_string(number), wrong + "; it is left out");
    }
  }

  std::string addHabit(std::string_view line) {
    if (line.front() == '!') {
      addHeading(trimmed(line.substr(1)));
      return "";
    }
    const auto fields = split(line, ": ");
    if (fields.size() < 2) return "has no frequency";
    const auto frequency = frequencyIn(fields[1]);
    if (!frequency) return "the frequency " + inQuotes(fields[1]) + " can't be read";
    const auto end = fields.size() > 2 ? dayIn(fields[2]) : std::nullopt;
    if (fields.size() > 2 && !end) return "the end " + inQuotes(fields[2]) + " is no day";
    if (places_.contains(std::string(fields[0]))) return "the habit stands there already";
    VelloroJSONBackupTask& task = newTask(fields[0]);
    if (category_) task.categoryIDs = std::set{*category_};
    if (frequency->second == 0) {
      setRollingFrequency(1, 1, task, read_.decisions);
      decide(inQuotes(fields[0]), "has no goal there; here it is due every day");
    } else {
      setRollingFrequency(frequency->first, frequency->second, task, read_.decisions);
    }
    if (end && *end < YYYYMMDD::today(midnight, zone_, now_)) {
      task.status = TaskStatus::archived;
    } else if (end) {
      decide(inQuotes(fields[0]), "its end, " + std::string(trimmed(fields[2])) + ", is left out");
    }
    return "";
  }

  void addHeading(std::string_view title) {
    category_ = importedID({program, "heading", title});
    const auto isKnown = [&](const auto& category) { return category.uniqueID == *category_; };
    if (std::ranges::any_of(categories_, isKnown)) return;
    categories_.push_back({.uniqueID = *category_, .title = std::string(title)});
  }

  VelloroJSONBackupTask& newTask(std::string_view title) {
    places_.emplace(title, tasks_.size());
    return tasks_.emplace_back(
        VelloroJSONBackupTask{.uniqueId = importedID({program, "habit", title}),
                              .title = std::string(title),
                              .createdTimeZone = CodableTimeZone{zone_},
                              .status = TaskStatus::normal,
                              .pageNumber = TaskPageNumber::first,
                              .log = std::vector<VelloroJSONBackupTaskEntry>(),
                              .notes = std::vector<VelloroJSONBackupNote>()});
  }

  std::string addMark(std::string_view line) {
    const auto fields = split(line, " : ");
    if (fields.size() < 3 || fields.size() > 5) return "has no three to five fields";
    const auto day = dayIn(fields[0]);
    if (!day) return "the day " + inQuotes(fields[0]) + " can't be read";
    const std::string_view result = trimmed(fields[2]);
    if (result.size() != 1 || std::string_view("yYnNsS").find(result) == std::string_view::npos) {
      return "the result " + inQuotes(fields[2]) + " is none of y, n and s";
    }
    const std::string_view amount = fields.size() > 4 ? trimmed(fields[4]) : "";
    const auto number = amount.empty() ? 0.0 : numberIn<double>(amount, 1e12);
    if (!number || !std::isfinite(*number)) {
      return "the amount " + inQuotes(amount) + " can't be read";
    }
    const std::string_view comment = fields.size() > 3 ? trimmed(fields[3]) : "";
    marks_[std::string(fields[1])][*day] = {static_cast<char>(result.front() | 0x20),
                                            std::string(comment), *number};
    return "";
  }

  void addLog(const std::string& title, const Marks& marks) {
    if (!places_.contains(title)) {
      VelloroJSONBackupTask& task = newTask(title);
      setRollingFrequency(1, 1, task, read_.decisions);
      task.status = TaskStatus::archived;
      decide(inQuotes(title), "stands in the log alone; it is archived");
    }
    VelloroJSONBackupTask& task = tasks_[places_.at(title)];
    task.createdTimestamp = marks.begin()->first.startOfDay(midnight, zone_);
    std::int64_t leftOut = 0;
    for (const auto& [day, mark] : marks) {
      if (!mark.comment.empty()) task.notes->push_back(noteOf(title, day, mark));
      if (mark.result == 'n' && task.daysMode != DayMode::specificDaysOfWeek) {
        ++leftOut;
      } else {
        task.log->push_back(entryOf(title, day, mark));
      }
    }
    if (leftOut == 0) return;
    decide(inQuotes(title),
           std::to_string(leftOut) + " days not done are no misses: it is not due every day");
  }

  [[nodiscard]] VelloroJSONBackupTaskEntry entryOf(const std::string& title, YYYYMMDD day,
                                                   const Mark& mark) const {
    using enum TaskLogEntryType;
    const bool isDone = mark.result == 'y';
    constexpr HHMMSS noon = {.h = 12, .m = 0, .s = 0};
    return {.uniqueId = importedID({program, "mark", title, day.debugDescription()}),
            .entryType = isDone               ? completedManuallyFull
                         : mark.result == 's' ? skippedManuallyFull
                                              : missedManuallyFull,
            .entryDate = day,
            .progress = isDone ? (mark.amount > 0 ? mark.amount : 1) : 0,
            .createdTimestamp = day.dateAt(midnight, noon, zone_)};
  }

  [[nodiscard]] VelloroJSONBackupNote noteOf(const std::string& title, YYYYMMDD day,
                                             const Mark& mark) const {
    return {.uniqueID = importedID({program, "note", title, day.debugDescription()}),
            .date = day,
            .createdDate = day.startOfDay(midnight, zone_),
            .createdTimeZone = CodableTimeZone{zone_},
            .content = {mark.comment}};
  }

  const TimeZone zone_;
  const Date now_;
  ImportedBackup read_;
  std::optional<UniqueID> category_;
  std::vector<VelloroJSONBackupCategory> categories_;
  std::vector<VelloroJSONBackupTask> tasks_;
  std::map<std::string, std::size_t> places_;  ///< Of the tasks, by title.
  std::map<std::string, Marks> marks_;
};

}  // namespace

ImportedBackup readHarsh(std::string_view habits, std::string_view log, const TimeZone& zone,
                         Date now) {
  return HarshReader(zone, now).read(habits, log);
}

}  // namespace velloro
