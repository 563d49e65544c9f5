#include "VelloroExport/HarshWriter.h"

#include "Foundation/Text/String.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <set>

namespace velloro {
namespace {

using Task = VelloroJSONBackupTask;

/// A colon beside a blank, or at an end, could be taken for the end of a field.
std::string inOneField(std::string text) {
  for (char& each : text) {
    if (static_cast<unsigned char>(each) < 0x20) each = ' ';
  }
  const auto first = text.find_first_not_of(' ');
  if (first == std::string::npos) return "";
  text = text.substr(first, text.find_last_not_of(' ') - first + 1);
  const auto isBlank = [&](std::size_t i) { return i >= text.size() || text[i] == ' '; };
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == ':' && (isBlank(i + 1) || i == 0 || isBlank(i - 1))) text[i] = '-';
  }
  return text;
}

std::string numberText(double number) {
  char buffer[32];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, number).ptr;
  return {buffer, end};
}

struct Goal {
  std::string frequency;
  std::string remark = {};  ///< What it does not say.
};

std::string perWindow(std::int64_t count, std::int64_t days) {
  return std::to_string(std::clamp<std::int64_t>(count, 1, days)) + "/" + std::to_string(days);
}

Goal goalOf(const Task& task) {
  using enum DayMode;
  const std::int64_t count = task.numCompletions.value_or(1);
  switch (task.daysMode.value_or(specificDaysOfWeek)) {
    case specificDaysOfWeek: {
      const auto days = task.daysOfWeek.value_or(DaysOfWeek::everyDay).daysOfWeek();
      if (days == everyDay()) return {"1"};
      if (days.isEmpty()) return {"0", "is due on no day; there it has no goal"};
      const std::string number = perWindow(static_cast<std::int64_t>(days.size()), 7);
      return {number, "its weekdays became " + number + " days"};
    }
    case dayInterval:
      return {std::to_string(std::max<std::int64_t>(task.dayInterval.value_or(1), 1))};
    case numberOfDaysInWeek:
      return {perWindow(count, 7)};
    case numberOfDaysInFortnight:
      return {perWindow(count, 14)};
    case numberOfDaysInMonth:
      return {perWindow(count, 30)};
    case numberOfDaysInYear:
      return {perWindow(count, 365)};
    case specificDaysOfMonth:
      return {"0", "its days of the month can't be said; there it has no goal"};
    case aggregateOverWeek:
    case aggregateOverMonth:
    case aggregateOverFortnight:
    case aggregateOverYear:
      break;
  }
  return {"0", "its total for a period can't be said; there it has no goal"};
}

struct Day {
  bool isDone = false, isSkipped = false;
  double amount = 0;
  std::string comment = {};
};

void addEntry(Day& day, const VelloroJSONBackupTaskEntry& entry) {
  day.isDone |= isCompletedFull(entry.entryType);
  day.isSkipped |= isSkipped(entry.entryType);
  day.amount += entry.progress.value_or(0);
}

class HarshWriter {
 public:
  explicit HarshWriter(const VelloroJSONBackup& backup) : backup_(backup) {
    if (!backup.categories) return;
    for (const auto& category : *backup.categories) {
      headings_.emplace(category.uniqueID, inOneField(category.title));
    }
  }

  HarshFiles files() && {
    for (const Task& task : backup_.tasks) add(task);
    HarshFiles files{std::move(sections_[""]), {}, std::move(remarks_)};
    sections_.erase("");
    for (const auto& [heading, lines] : sections_) files.habits += "! " + heading + "\n" + lines;
    for (const auto& [day, lines] : log_) files.log += lines;
    return files;
  }

 private:
  void add(const Task& task) {
    const std::string title = inQuotes(task.title.value_or(""));
    const auto remark = [&](const std::string& why) { remarks_.push_back({title, why}); };
    if (task.status == TaskStatus::trashed) return remark("is trashed; it is left out");
    const std::string name = newName(task.title.value_or(""));
    if (inQuotes(name) != title) remark("is named " + inQuotes(name) + " there");
    const Goal goal = goalOf(task);
    if (!goal.remark.empty()) remark(goal.remark);
    if (task.negativeTask == true) remark("is a habit to avoid; there it is one to keep");
    if (task.status == TaskStatus::paused) remark("is paused; there it goes on");
    if (task.categoryIDs && task.categoryIDs->size() > 1) remark("stands in one category alone");
    std::map<YYYYMMDD, Day> days = daysOf(task, remark);
    std::string line = name + ": " + goal.frequency;
    if (task.status == TaskStatus::archived) line += ": " + lastDay(days).debugDescription();
    sections_[headingOf(task)] += line + "\n";
    for (const auto& [day, mark] : days) log_[day] += lineOf(day, name, mark);
  }

  /// Marks are joined with their habit by its name.
  std::string newName(const std::string& title) {
    std::string wanted = inOneField(title);
    // Such a line of the file is a comment or a heading.
    if (wanted.starts_with('#') || wanted.starts_with('!')) wanted.front() = '-';
    if (wanted.empty()) wanted = "-";
    std::string name = wanted;
    for (int n = 2; !names_.insert(name).second; ++n) name = wanted + " " + std::to_string(n);
    return name;
  }

  template <typename Remark>
  std::map<YYYYMMDD, Day> daysOf(const Task& task, const Remark& remark) const {
    std::map<YYYYMMDD, Day> days;
    if (task.log) {
      for (const auto& entry : *task.log) addEntry(days[entry.entryDate], entry);
    }
    std::size_t leftOut = 0;
    for (const auto& note : task.notes.value_or(std::vector<VelloroJSONBackupNote>())) {
      if (note.status == VelloroJSONBackupNote::Status::trashed) continue;
      const auto day = note.date ? days.find(*note.date) : days.end();
      if (day == days.end()) {
        ++leftOut;
        continue;
      }
      std::string& comment = day->second.comment;
      comment += (comment.empty() ? "" : "; ") + note.content.body;
    }
    if (leftOut > 0) {
      remark(std::to_string(leftOut) + " notes stand on no day of the log; they are left out");
    }
    return days;
  }

  /// Before today, so that it has ended.
  [[nodiscard]] YYYYMMDD lastDay(const std::map<YYYYMMDD, Day>& days) const {
    const auto yesterday =
        YYYYMMDD::fromDate(HHMMSS::midnight, backup_.timestamp, TimeZone::gmt()).add(-2, {});
    return days.empty() ? yesterday : std::min(days.rbegin()->first, yesterday);
  }

  [[nodiscard]] std::string headingOf(const Task& task) const {
    for (const UniqueID& id : task.categoryIDs.value_or(std::set<UniqueID>())) {
      if (const auto found = headings_.find(id); found != headings_.end()) return found->second;
    }
    return "";
  }

  static std::string lineOf(YYYYMMDD day, const std::string& name, const Day& mark) {
    const char* result = mark.isDone ? "y" : mark.isSkipped ? "s" : "n";
    return day.debugDescription() + " : " + name + " : " + result + " : " +
           inOneField(mark.comment) + " : " + numberText(mark.amount) + "\n";
  }

  const VelloroJSONBackup& backup_;
  std::map<UniqueID, std::string> headings_;
  std::set<std::string> names_;
  std::map<std::string, std::string> sections_;  ///< Lines by heading; those without come first.
  std::map<YYYYMMDD, std::string> log_;
  std::vector<ExportRemark> remarks_;
};

}  // namespace

HarshFiles harshFiles(const VelloroJSONBackup& backup) {
  return HarshWriter(backup).files();
}

}  // namespace velloro
