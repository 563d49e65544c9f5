#include "VelloroCore/Titles/TaskTitleSource.h"

#include "VelloroCore/Titles/HealthTitle.h"

namespace velloro {
namespace {

/// What is left of the completion under way, or of a full one when that is done.
double shownDuration(const TaskProgressTimer& timer, const AutomaticTaskType& type) {
  const double left = timer.remainingValueForCurrentCompletion();
  const double shown = left > 0 ? left : timer.valuePerCompletion();
  const TypeUnit unit = automaticTaskTypeUnit(timer.unit);
  return type.unit ? convert(shown, unit, *type.unit).value_or(shown) : shown;
}

double shownQuantity(const AutomaticTaskType& type, const TaskTitleSource& task) {
  const auto& progress = task.progress;
  if (!progress || type.type == TaskType::screenTime()) return type.quantity;
  if (const auto* timer = progress->as<TaskProgressTimer>()) return shownDuration(*timer, type);
  if (!type.quantityCanCountdown()) return type.quantity;
  const double left = progress->remainingValueForCurrentCompletion(task.now);
  return left == 0 ? type.quantity : left;
}

std::optional<TaskDisplayTitle> titleOfAutomaticType(const TaskTitleSource& task,
                                                     const Locale& locale) {
  if (!task.automaticTaskType || task.automaticTaskType->type == TaskType::timer()) {
    return std::nullopt;
  }
  const AutomaticTaskType& type = *task.automaticTaskType;
  auto title = displayTitleForTargetQuantity(type,
                                             {.customTitle = task.title,
                                              .quantity = shownQuantity(type, task),
                                              .form = {.isNegative = task.isNegative}},
                                             locale);
  const bool isUnnamedWorkout = type.type == HealthType::workout && task.title.empty();
  if (title || !isUnnamedWorkout) return title;
  return displayTitleForWorkouts(type.extra.value_or(TypeExtra{}).workoutTypes, locale);
}

std::optional<TaskDisplayTitle> titleOfTimer(const TaskTitleSource& task) {
  const auto* timer = task.progress ? task.progress->as<TaskProgressTimer>() : nullptr;
  if (!task.isTimed || timer == nullptr) return std::nullopt;
  const double left = timer->remainingDurationCurrentCompletion();
  const double shown = left > 0 ? left : timer->durationPerCompletion();
  TaskDisplayTitle title{
      .quantity = TaskDisplayTitle::Quantity{.quantity = {shown, TypeUnit::durationSeconds}}};
  if (!task.title.empty()) title.localizedPrimary = task.title;
  return title;
}

}  // namespace

TaskDisplayTitle TaskDisplayTitle::build(const TaskTitleSource& task, const Locale& locale) {
  if (auto title = titleOfAutomaticType(task, locale)) return *std::move(title);
  if (auto title = titleOfTimer(task)) return *std::move(title);
  return task.title.empty() ? empty() : TaskDisplayTitle{.localizedPrimary = task.title};
}

}  // namespace velloro
