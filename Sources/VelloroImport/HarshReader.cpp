#include "VelloroImport/HarshReader.h"

#include "Foundation/Text/String.h"
#include "VelloroImport/ImportBuilder.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <utility>

namespace velloro {
namespace {

constexpr std::string_view program = "harsh";

std::vector<std::string_view> split(std::string_view line, std::string_view separator) {
  std::vector<std::string_view> fields;
  for (;;) {
    const auto at = line.find(separator);
    fields.push_back(line.substr(0, at));
    if (at == std::string_view::npos) return fields;
    line.remove_prefix(at + separator.size());
  }
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
  HarshReader(const TimeZone& zone, Date now) : builder_(program, zone, now) {}

  ImportedBackup read(std::string_view habits, std::string_view log) && {
    forEachLine("habits", habits, [&](std::string_view line) { return addHabit(line); });
    forEachLine("log", log, [&](std::string_view line) { return addMark(line); });
    for (auto& [title, marks] : marks_) addLog(title, marks);
    return std::move(builder_).finish();
  }

 private:
  struct Mark {
    char result = 'n';
    std::string comment;
    double amount = 0;
  };
  using Marks = std::map<YYYYMMDD, Mark>;

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
      builder_.decide(std::string(file) + ", line " + std::to_string(number),
                      wrong + "; it is left out");
    }
  }

  std::string addHabit(std::string_view line) {
    if (line.front() == '!') {
      heading_ = trimmed(line.substr(1));
      builder_.addCategory(*heading_);
      return "";
    }
    const auto fields = split(line, ": ");
    if (fields.size() < 2) return "has no frequency";
    const auto frequency = frequencyIn(fields[1]);
    if (!frequency) return "the frequency " + inQuotes(fields[1]) + " can't be read";
    const auto end = fields.size() > 2 ? isoDay(fields[2]) : std::nullopt;
    if (fields.size() > 2 && !end) return "the end " + inQuotes(fields[2]) + " is no day";
    if (tasks_.contains(std::string(fields[0]))) return "the habit stands there already";
    VelloroJSONBackupTask& task = newTask(fields[0]);
    if (heading_) builder_.addToCategory(task, *heading_);
    if (frequency->second == 0) {
      builder_.decide(task, "has no goal there; here it is due every day");
    } else {
      builder_.setFrequency(task, frequency->first, frequency->second);
    }
    if (end && *end < builder_.today()) {
      task.status = TaskStatus::archived;
    } else if (end) {
      builder_.decide(task, "its end, " + std::string(trimmed(fields[2])) + ", is left out");
    }
    return "";
  }

  VelloroJSONBackupTask& newTask(std::string_view title) {
    VelloroJSONBackupTask& task = builder_.addTask(title, title);
    tasks_.emplace(title, &task);
    return task;
  }

  std::string addMark(std::string_view line) {
    const auto fields = split(line, " : ");
    if (fields.size() < 3 || fields.size() > 5) return "has no three to five fields";
    const auto day = isoDay(fields[0]);
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
    if (!tasks_.contains(title)) {
      VelloroJSONBackupTask& task = newTask(title);
      task.status = TaskStatus::archived;
      builder_.decide(task, "stands in the log alone; it is archived");
    }
    VelloroJSONBackupTask& task = *tasks_.at(title);
    std::int64_t leftOut = 0;
    for (const auto& [day, mark] : marks) {
      builder_.addNote(task, day, "", mark.comment);
      if (mark.result == 'n' && task.daysMode != DayMode::specificDaysOfWeek) {
        ++leftOut;
      } else {
        addEntry(day, mark, task);
      }
    }
    if (leftOut == 0) return;
    builder_.decide(
        task, std::to_string(leftOut) + " days not done are no misses: it is not due every day");
  }

  void addEntry(YYYYMMDD day, const Mark& mark, VelloroJSONBackupTask& task) {
    using enum TaskLogEntryType;
    const bool isDone = mark.result == 'y';
    const auto type = isDone               ? completedManuallyFull
                      : mark.result == 's' ? skippedManuallyFull
                                           : missedManuallyFull;
    builder_.addEntry(task, day, type, !isDone ? 0 : mark.amount > 0 ? mark.amount : 1);
  }

  ImportBuilder builder_;
  std::optional<std::string> heading_;
  std::map<std::string, VelloroJSONBackupTask*, std::less<>> tasks_;  ///< By title.
  std::map<std::string, Marks> marks_;
};

}  // namespace

ImportedBackup readHarsh(std::string_view habits, std::string_view log, const TimeZone& zone,
                         Date now) {
  return HarshReader(zone, now).read(habits, log);
}

}  // namespace velloro
