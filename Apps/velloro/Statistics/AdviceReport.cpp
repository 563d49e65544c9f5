#include "velloro/Statistics/AdviceReport.h"

#include "Foundation/Process/Terminal.h"
#include "Foundation/Text/String.h"
#include "Host/HostStore.h"
#include "Host/LogWriter.h"
#include "Host/PeriodCloser.h"
#include "Host/TaskWriter.h"
#include "OxCheckableTasks/Icons/IconDisplayRepresentation.h"
#include "Tasks/Log/StoredTemporalData.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskTemporalDataEntity.h"
#include "Tasks/Status/StoredTaskStatus.h"
#include "Tasks/Status/TaskSnapshot.h"
#include "VelloroCore/Log/TaskRecentHistory.h"
#include "velloro/Output/AmountText.h"
#include "velloro/Output/Output.h"
#include "velloro/Tasks/TaskReport.h"

namespace velloro {
namespace {

using Calculator = ChangeDifficultyCalculator;
using Direction = Calculator::Direction;
using Reason = Calculator::DoNotAdjustReason;
using Temporal = TaskTemporalDataEntity;
using Type = ChangeDifficultyType;

Calculator calculatorOf(const TaskSnapshot& task) {
  const TaskStanding& standing = task.standing;
  const auto& type = standing.automaticTaskType;
  const auto icon = task.entity->visualRepresentation();
  const auto* named = icon ? std::get_if<IconManagerIcon>(&icon->value) : nullptr;
  return {
      .automaticTaskType = type,
      .isNegative = standing.isNegative,
      .frequency = standing.frequency,
      .durationPerCompletion =
          type && type->isTimed()
              ? type->timerDurationPerCompletion(standing.frequency.numPartialCompletions)
              : std::nullopt,
      .titleIntent = titleIntent(task.entity->title()),
      .iconIntent = named != nullptr ? iconIntent(*named) : VisualRepresentationIntent::unknown};
}

std::optional<ChangeDifficultyStatus> lastAnswer(const TaskEntity& task) {
  const auto row = task.value(TaskAttributes::taskTemporalData);
  const auto text =
      row ? row->value(Temporal::lastChangedDifficultyStatus) : std::optional<std::string>();
  return text ? fromRawValue<ChangeDifficultyStatus>(*text) : std::nullopt;
}

Calculator::AdjustmentResult directionOf(const TaskSnapshot& task, const Calculator& calculator) {
  const YYYYMMDD today = task.standing.today();
  const auto history = recentHistory(task, today, today);
  const auto current = streakedCompletionStatus(task, task.standing.currentPeriod().period);
  return calculator.recommendedDifficultyDirection(
      {.lastDifficultyStatus = lastAnswer(*task.entity),
       .currentCompletionStatus = current.completionStatus.status,
       .shortTermResult = history.shortTerm,
       .longTermResult = history.longTerm});
}

ChangeDifficultyStatus answerTo(Direction direction, bool isAccepted) {
  using enum ChangeDifficultyStatus;
  if (direction == Direction::makeItEasier) return isAccepted ? easierConfirm : easierCancel;
  return isAccepted ? harderConfirm : harderCancel;
}

/// A task's properties with a change made.
struct Change {
  TaskFrequency frequency;
  std::optional<AutomaticTaskType> type;

  void operator()(const Type::TypeQuantity& change) { type->quantity = change.value; }
  void operator()(const Type::DurationPerCompletion& change) { setDuration(change.value); }
  /// What is timed keeps the duration of a step.
  void operator()(const Type::NumPartialCompletions& change) {
    const bool isTimed = type && type->isTimed();
    const auto seconds =
        isTimed ? type->timerDurationPerCompletion(frequency.numPartialCompletions) : std::nullopt;
    frequency.numPartialCompletions = change.value;
    if (seconds) setDuration(*seconds);
  }
  void operator()(const Type::QuantityAndPartials& change) {
    type->quantity = change.first;
    frequency.numPartialCompletions = change.second;
  }
  void operator()(const Type::DayInterval& change) { frequency.dayInterval = change.value; }
  /// The days in a week, a fortnight, a month or a year.
  void operator()(const auto& times) { frequency.numCompletions = times.value; }

 private:
  void setDuration(double seconds) {
    type->quantity = convertFromTimeInterval(
        seconds * static_cast<double>(frequency.numPartialCompletions), *type->unit);
  }
};

void makeChange(const HostStore& store, TaskEntity& task, const Type& type) {
  Change change{.frequency = task.frequency(), .type = task.automaticTaskType()};
  std::visit(change, type.value);
  changeTask(store, task, {.frequency = change.frequency, .automaticTaskType = change.type});
}

void keepAnswer(TaskEntity& task, ChangeDifficultyStatus answer, Date now) {
  const auto row = task.value(TaskAttributes::taskTemporalData);
  row->setValue(Temporal::lastChangedDifficulty, now);
  row->setValue(Temporal::lastChangedDifficultyStatus, std::string(rawValue(answer)));
  row->setValue(Temporal::lastChangedDifficultyTimeZone, TimeZone::current());
}

std::string wordsOf(const Reason& reason) {
  const auto number = [](std::int64_t n) { return static_cast<long long>(n); };
  if (const auto* samples = std::get_if<Reason::NotEnoughSamples>(&reason.value)) {
    return stringWithFormat("too early to say: %lld of %lld periods", number(samples->first),
                            number(samples->second));
  }
  if (std::holds_alternative<Reason::GoodProgress>(reason.value)) return "good as it is";
  const bool isSettled = std::holds_alternative<Reason::PreventedByCurrentStatus>(reason.value);
  return isSettled ? "nothing to change today" : "no advice for an interval of days";
}

struct ChangeWords {
  static std::string of(std::int64_t count, const char* what) {
    return stringWithFormat("%lld %s", static_cast<long long>(count), what);
  }
  std::string operator()(const Type::TypeQuantity& change) const {
    return stringWithFormat("a target of %g", change.value);
  }
  std::string operator()(const Type::DurationPerCompletion& change) const {
    return stringWithFormat("%g seconds", change.value);
  }
  std::string operator()(const Type::NumPartialCompletions& change) const {
    return of(change.value, "steps");
  }
  std::string operator()(const Type::QuantityAndPartials& change) const {
    return stringWithFormat("a target of %g in ", change.first) + of(change.second, "steps");
  }
  std::string operator()(const Type::TimesPerWeek& change) const {
    return of(change.value, "days a week");
  }
  std::string operator()(const Type::TimesPerFortnight& change) const {
    return of(change.value, "days a fortnight");
  }
  std::string operator()(const Type::TimesPerMonth& change) const {
    return of(change.value, "days a month");
  }
  std::string operator()(const Type::TimesPerYear& change) const {
    return of(change.value, "days a year");
  }
  std::string operator()(const Type::DayInterval& change) const {
    return "every " + of(change.value, "days");
  }
};

}  // namespace

AdviceReport AdviceReport::of(const TaskEntity& task, Date now) {
  const auto snapshot = TaskSnapshot::of(task, now);
  const Calculator calculator = calculatorOf(snapshot);
  const auto result = directionOf(snapshot, calculator);
  AdviceReport report{.uniqueId = textOf(task.text(TaskAttributes::uniqueId)),
                      .title = textOf(task.text(TaskAttributes::title)),
                      .adjust = {},
                      .doNotAdjust = {},
                      .recommendation = {},
                      .direction = {}};
  if (const auto* reason = std::get_if<Reason>(&result.value)) {
    report.doNotAdjust = *reason;
    return report;
  }
  const Direction direction = std::get<Direction>(result.value);
  report.direction = direction;
  report.adjust = rawValue(direction);
  if (const auto change = calculator.difficulty(direction)) {
    report.recommendation = {ChangeDifficultySource::app(direction), *change};
  }
  return report;
}

std::string AdviceReport::line() const {
  if (doNotAdjust) return wordsOf(*doNotAdjust);
  const bool isEasier = direction == Direction::makeItEasier;
  const std::string way = isEasier ? "make it easier" : "make it harder";
  return recommendation ? way + ": " + std::visit(ChangeWords(), recommendation->type.value) : way;
}

std::string table(const std::vector<AdviceReport>& reports) {
  std::vector<std::vector<std::string>> rows;
  for (const AdviceReport& report : reports) {
    rows.push_back({terminalText(report.title), report.line()});
  }
  return aligned(rows);
}

AdviceReport answerAdvice(const HostStore& store, TaskEntity& task, bool isAccepted, Date now) {
  bringUpToDate(task, now);
  const AdviceReport report = AdviceReport::of(task, now);
  const std::string name = inQuotes(report.title);
  if (!report.direction) throw HostError("there is no advice for " + name + ": " + report.line());
  if (isAccepted && !report.recommendation) {
    throw HostError("there is no step to take for " + name + ", only the advice to " +
                    report.line());
  }
  if (isAccepted) makeChange(store, task, report.recommendation->type);
  updateDerivedData(task, now);
  keepAnswer(task, answerTo(*report.direction, isAccepted), now);
  return report;
}

}  // namespace velloro
