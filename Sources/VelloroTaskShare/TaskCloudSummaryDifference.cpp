#include "VelloroTaskShare/TaskCloudSummaryDifference.h"

namespace velloro {
namespace {

using ActionType = TaskCloudSummaryDifference::ActionType;
using Recency = TaskCloudSummaryDifference::Recency;

/// Absent for a status that leaves the period open, or that was skipped.
std::optional<ActionType> actionOf(const CompletionStatus::Status& status) {
  switch (status.kind) {
    using enum CompletionStatus::Status::Kind;
    case positiveComplete:
      return ActionType::fullCompletion;
    case positiveMiss:
    case negativeMiss:
      return ActionType::missed;
    case negativeAllowedMiss:
      return ActionType::allowedMiss;
    case positiveIncomplete:
    case negativeComplete:
    case positiveSkip:
      break;
  }
  return std::nullopt;
}

/// Whether the status itself is news, and not only the progress behind it.
bool statusIsNews(const SummaryChange& change) {
  if (change.old == nullptr || change.oldStatus == nullptr) return true;
  return change.oldStatus->progress().period().period == change.status.progress().period().period &&
         change.oldStatus->status != change.status.status;
}

ActionType actionOfProgress(const SummaryChange& change, Date now) {
  const double before =
      change.oldStatus != nullptr ? change.oldStatus->progress().currentValue(now) : 0;
  return change.status.progress().currentValue(now) > before ? ActionType::partialCompletion
                                                             : ActionType::noAction;
}

}  // namespace

Recency recency(const TaskCloudSummary& summary, YYYYMMDD relativeTo, Date now) {
  const auto& task = summary.taskDescriptor;
  const TaskFrequencyPeriod period =
      task.frequency.currentPeriod(task.startOfDay, task.firstDayOfWeek, task.createdTimeZone, now)
          .period;
  if (period.startsAfter(relativeTo)) return Recency::future;
  return period.endsBefore(relativeTo) ? Recency::old : Recency::current;
}

ActionType difference(const SummaryChange& change, Date now) {
  const bool hasOld = change.old != nullptr && change.oldStatus != nullptr;
  if (hasOld && change.old->taskDescriptor != change.summary.taskDescriptor) {
    return ActionType::noAction;
  }
  if (statusIsNews(change)) {
    if (const auto action = actionOf(change.status.status)) return *action;
  }
  return actionOfProgress(change, now);
}

}  // namespace velloro
