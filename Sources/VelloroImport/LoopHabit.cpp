#include "VelloroImport/LoopHabit.h"

#include "Foundation/Text/String.h"

#include <algorithm>

namespace velloro {
namespace {

constexpr double thousand = 1000;

/// Numbers of a habit are totals of their window.
void setTotals(const LoopHabit& habit, VelloroJSONBackupTask& task, ImportBuilder& builder) {
  task.negativeTask = habit.isAtMost;
  if (habit.days > 1) {
    const bool isWeek = habit.days < 15;
    task.daysOfWeek.reset();
    task.daysMode = isWeek ? DayMode::aggregateOverWeek : DayMode::aggregateOverMonth;
    task.firstDayOfWeek = CalendarDayOfWeek::monday;
    builder.decide(task, "a total of " + std::to_string(habit.days) + " days became that of a " +
                             (isWeek ? "calendar week, which begins on Monday" : "calendar month"));
  }
  builder.setTarget(task, habit.target);
  if (!habit.unit.empty()) {
    builder.decide(task, "the unit " + inQuotes(habit.unit) + " stands in a note");
    builder.addNote(task, {}, "unit", "Unit: " + habit.unit);
  }
}

void setRhythm(const LoopHabit& habit, VelloroJSONBackupTask& task, ImportBuilder& builder) {
  builder.setFrequency(task, habit.count, habit.days);
  constexpr std::int64_t known[] = {7, 14, 30, 31, 365, 366};
  if (habit.count == 1 || habit.count >= habit.days) return;
  if (std::ranges::find(known, habit.days) != std::end(known)) return;
  builder.addNote(
      task, {}, "frequency",
      std::to_string(habit.count) + " times in " + std::to_string(habit.days) + " days");
}

void addReminder(const LoopHabit& habit, VelloroJSONBackupTask& task, ImportBuilder& builder) {
  if (!habit.reminder) return;
  const auto isMember = [&](int day) { return (habit.reminderDays >> ((day + 1) % 7) & 1) != 0; };
  builder.addReminder(task, *habit.reminder, daysOfWeekWhere(isMember));
}

void addMark(const LoopHabit& habit, YYYYMMDD day, const LoopHabit::Mark& mark,
             VelloroJSONBackupTask& task, ImportBuilder& builder) {
  using enum TaskLogEntryType;
  builder.addNote(task, day, "", mark.note);
  if (mark.value == LoopHabit::skip) {
    builder.addEntry(task, day, skippedManuallyFull, 0);
  } else if (mark.value < 0) {
    return;
  } else if (habit.isNumerical) {
    builder.addAmount(task, day, static_cast<double>(mark.value) / thousand, habit.target);
  } else if (mark.value == LoopHabit::yes) {
    builder.addEntry(task, day, completedManuallyFull, 1);
  } else if (mark.value == LoopHabit::no) {
    builder.addEntry(task, day, missedManuallyFull, 0);
  }
}

}  // namespace

void addLoopHabit(const LoopHabit& habit, ImportBuilder& builder) {
  VelloroJSONBackupTask& task = builder.addTask(habit.key, habit.name);
  if (habit.isArchived) task.status = TaskStatus::archived;
  task.taskColor = habit.color;
  if (habit.isNumerical) {
    setTotals(habit, task, builder);
  } else {
    setRhythm(habit, task, builder);
  }
  builder.addNote(task, {}, "question", habit.question);
  builder.addNote(task, {}, "description", habit.description);
  addReminder(habit, task, builder);
  for (const auto& [day, mark] : habit.marks) addMark(habit, day, mark, task, builder);
}

}  // namespace velloro
