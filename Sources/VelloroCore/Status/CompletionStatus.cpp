#include "VelloroCore/Status/CompletionStatus.h"

#include "Foundation/Text/String.h"
#include "OxKit/Numbers.h"
#include "VelloroCore/Status/CompletionStatusRow.h"
#include "VelloroCore/Status/StreakRecord.h"

#include <algorithm>
#include <array>
#include <span>

namespace velloro {
namespace {

using Status = CompletionStatus::Status;
using Types = EnumSet<TaskLogEntryType>;

enum class ProgressChange : std::int8_t { same, zero, next, complete };

enum class When : std::int8_t {
  always,
  stepFillsProgress,  ///< The progress changes anyway, status and run only when it becomes full.
  isNotClean,
};

struct EntryRule {
  Types types;
  ProgressChange progress;
  Status status;
  RunChange run;  ///< No increment where the status stood already.
  When when = When::always;
};

// What entries do to a period, of a positive and of a negative task. A type without a rule does
// nothing.
namespace entry_rules {
using completion_status_detail::clean;
using enum TaskLogEntryType;
using enum ProgressChange;
using enum RunChange;
using enum When;

constexpr Types completions = {completedManuallyFull, completedAutomaticallyFull};
constexpr Types partialCompletions = {completedManuallyPartial, completedAutomaticallyPartial};
constexpr Types skips = {skippedManuallyFull, skippedAutomaticallyFull};
constexpr Types allowedMisses = {allowableMissManuallyFull, allowableMissAutomaticallyFull};
constexpr Types misses = {missedManuallyFull, missedAutomaticallyFull};
constexpr Types partialMisses = {missedManuallyPartial, missedAutomaticallyPartial};

constexpr EntryRule positive[] = {
    {completions, complete, Status::positiveComplete, increment},
    {partialCompletions, next, Status::positiveComplete, increment, stepFillsProgress},
    {skips, same, Status::positiveSkip, unchanged},
    {misses, zero, Status::positiveMiss, reset},
};

constexpr EntryRule negative[] = {
    {completions, zero, clean, increment, isNotClean},
    {allowedMisses, zero, Status::negativeAllowedMiss, unchanged},
    {misses, complete, Status::negativeMiss, reset},
    {partialMisses, next, Status::negativeMiss, reset, stepFillsProgress},
};
}  // namespace entry_rules

const EntryRule* ruleFor(const Status& status, TaskLogEntryType type) {
  const std::span rules(status.isNegative() ? entry_rules::negative : entry_rules::positive);
  const auto rule = std::ranges::find_if(
      rules, [&](const EntryRule& candidate) { return candidate.types.contains(type); });
  return rule == rules.end() ? nullptr : &*rule;
}

TaskProgress changed(const TaskProgress& progress, ProgressChange change) {
  switch (change) {
    case ProgressChange::same:
      break;
    case ProgressChange::zero:
      return progress.zeroProgress();
    case ProgressChange::next:
      return progress.nextProgress();
    case ProgressChange::complete:
      return progress.completeProgress();
  }
  return progress;
}

constexpr auto statuses = [] {
  std::array<Status, 5 + 2 * allCases<SkipMode>().size()> all = {
      Status::positiveComplete, Status::positiveMiss, Status::positiveSkip, Status::negativeMiss,
      Status::negativeAllowedMiss};
  auto* next = all.begin() + 5;
  for (const auto mode : allCases<SkipMode>()) *next++ = Status::positiveIncomplete(mode);
  for (const auto mode : allCases<SkipMode>()) *next++ = Status::negativeComplete(mode);
  return all;
}();

}  // namespace

std::span<const Status> Status::allCases() {
  return statuses;
}

std::string Status::stringValue() const {
  std::string text(rawValue(kind));
  if (skipMode) text.append("_").append(rawValue(*skipMode));
  return text;
}

std::optional<Status> Status::fromStringValue(std::string_view text) {
  const auto* status = std::ranges::find(statuses, text, &Status::stringValue);
  return status == statuses.end() ? std::nullopt : std::optional(*status);
}

Status Status::decode(const Decoder& from) {
  const std::string_view text = from.text();
  if (const auto status = fromStringValue(text)) return *status;
  throw from.dataCorrupted("Unable to decode enum with value " + excerpt(text));
}

bool Status::isNegative() const {
  return kind == Kind::negativeComplete || kind == Kind::negativeMiss ||
         kind == Kind::negativeAllowedMiss;
}

Status Status::uncheckedStatus() const {
  return completion_status_detail::rowOf(*this).uncheckedStatus.value_or(*this);
}

Status Status::completedStatus() const {
  return completion_status_detail::rowOf(*this).completedStatus.value_or(*this);
}

StreakedCompletionStatus CompletionStatus::applyEntryType(const StreakRecord& streak,
                                                          TaskLogEntryType type, Date now) const {
  const EntryRule* rule = ruleFor(status, type);
  if (!rule) return {*this, streak};
  if (rule->when == When::isNotClean && status.kind == rule->status.kind) return {*this, streak};

  const TaskProgress newProgress = changed(progress(), rule->progress);
  const bool fills = !(progress().progressPct(now) >= 1) && newProgress.progressPct(now) >= 1;
  if (rule->when == When::stepFillsProgress && !fills) return {{status, newProgress}, streak};

  const bool counts = rule->run != RunChange::increment || status != rule->status;
  return {{rule->status, newProgress}, counts ? streak.changed(rule->run) : streak};
}

StreakedCompletionStatus CompletionStatus::nextCompletionStatus(const StreakRecord& streak,
                                                                bool isPartialCompletion,
                                                                Date now) const {
  using enum TaskLogEntryType;
  const auto full = isNegative() ? missedManuallyFull : completedManuallyFull;
  const auto partial = isNegative() ? missedManuallyPartial : completedManuallyPartial;
  return applyEntryType(streak, isPartialCompletion ? partial : full, now);
}

StreakedCompletionStatus CompletionStatus::nextCompletionStatus(const StreakRecord& streak,
                                                                TimeInterval pendingTimerDuration,
                                                                Date now) const {
  const auto* timer = progress().as<TaskProgressTimer>();
  if (!timer || !(pendingTimerDuration > 0)) return {*this, streak};
  TaskProgressTimer running = *timer;
  running.currentCompletionDuration += pendingTimerDuration;
  const double behind =
      difference(running.currentCompletionDuration, running.durationPerCompletion());
  if (behind < 0) return {{status, running}, streak};
  return nextCompletionStatus(streak, /*isPartialCompletion=*/true, now);
}

}  // namespace velloro
