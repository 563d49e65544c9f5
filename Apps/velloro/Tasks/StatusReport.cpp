#include "velloro/Tasks/StatusReport.h"

#include "Foundation/Process/Terminal.h"
#include "Foundation/Text/String.h"
#include "Host/Snooze.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Status/StoredTaskStatus.h"
#include "VelloroCore/Advice/GrandSlam.h"
#include "velloro/Output/AmountText.h"
#include "velloro/Output/Output.h"
#include "velloro/Output/StateText.h"
#include "velloro/Tasks/TaskReport.h"

#include <algorithm>

namespace velloro {
namespace {

using Status = CompletionStatus::Status;

std::optional<std::string> snoozeText(const TaskEntity& task, Date now) {
  const auto id = task.taskUniqueId();
  const auto until = id ? velloro::snoozedUntil(*id, now) : std::nullopt;
  return until ? std::optional(until->iso8601()) : std::nullopt;
}

/// Empty where the status says it all.
std::string amountText(const StatusReport::Progress& progress,
                       const std::optional<AutomaticTaskType>& type) {
  switch (progress.type) {
    case TaskProgressType::continuous:
    case TaskProgressType::timer:
      return AmountText(type).share(progress.currentValue, progress.targetValue);
    case TaskProgressType::activity:
      return AmountText(type).amount(progress.currentValue);
    default:
      break;
  }
  if (progress.targetValue == 1) return "";
  return AmountText(std::nullopt).share(progress.currentValue, progress.targetValue);
}

std::string statusText(const StatusReport& report) {
  if (report.willSkip == SkipMode::willMissWithIndicator && report.state == "due") {
    return "due, streak at risk";
  }
  return report.state == "allowed" ? "happened, allowed" : report.state;
}

}  // namespace

StatusReport StatusReport::of(const TaskEntity& task, std::optional<YYYYMMDD> date, Date now) {
  const auto snapshot = TaskSnapshot::of(task, now);
  const TaskLogRules rules = snapshot.standing.rules();
  const TaskFrequencyPeriod period = rules.period(date.value_or(rules.today()));
  const auto [standing, streak] = streakedCompletionStatus(snapshot, period);
  const TaskProgress& progress = standing.progress();
  const SkipMode willSkip = velloro::willSkip(snapshot, period);
  const TaskTemporalData& kept = snapshot.standing.temporal;
  return {.uniqueId = textOf(task.text(TaskAttributes::uniqueId)),
          .title = textOf(task.text(TaskAttributes::title)),
          .status = standing.status,
          .state = std::string(stateText(standing.status)),
          .willSkip = willSkip,
          .outcome = std::string(outcomeText(willSkip)),
          .progress = {.type = progress.type(),
                       .numCompletions = progress.numCompletions(now),
                       .expectedCompletions = progress.expectedCompletions(),
                       .currentValue = progress.currentValue(now),
                       .targetValue = progress.targetValue(),
                       .progressPct = progress.progressPct(now)},
          .streak = streak,
          .period = PeriodStretch::of(period),
          .lastCompleted = kept.lastCompleted,
          .lastMissed = kept.lastMissed,
          .lastSkipped = kept.lastSkipped,
          .snoozedUntil = snoozeText(task, now),
          .color = task.taskColor(),
          .automaticTaskType = snapshot.standing.automaticTaskType};
}

std::string StatusReport::glyph() const {
  constexpr const char* rings[] = {"○", "◔", "◑", "◕", "●"};
  switch (status.kind) {
    case Status::Kind::positiveMiss:
    case Status::Kind::negativeMiss:
      return "✗";
    case Status::Kind::positiveSkip:
      return "–";
    case Status::Kind::negativeAllowedMiss:
      return "◌";
    case Status::Kind::positiveComplete:
      return rings[4];
    default:
      break;
  }
  const double quarters = std::clamp(progress.progressPct, 0.0, 1.0) * 4;
  const bool isBegun = progress.progressPct > 0;
  return rings[isBegun ? std::max(1, static_cast<int>(quarters)) : 0];
}

std::string StatusReport::line() const {
  std::string text = statusText(*this);
  if (const std::string amount = amountText(progress, automaticTaskType); !amount.empty()) {
    text += ", " + amount;
  }
  text += stringWithFormat(", streak %lld", static_cast<long long>(streak.current));
  if (streak.best > streak.current) {
    text += stringWithFormat(" (best %lld)", static_cast<long long>(streak.best));
  }
  if (const auto until = snoozedUntil ? Date::fromISO8601(*snoozedUntil) : std::nullopt) {
    text += ", snoozed until " + HHMMSS::fromDate(*until, TimeZone::current()).debugDescription();
  }
  return text;
}

bool isGrandSlam(const std::vector<StatusReport>& reports) {
  std::vector<Status> statuses;
  for (const StatusReport& report : reports) statuses.push_back(report.status);
  return GrandSlam::QualifySettings::defaultSettings.qualifies(statuses);
}

std::string table(const std::vector<StatusReport>& reports) {
  if (reports.empty()) return "No tasks yet; \"velloro task add TITLE\" adds one.\n";
  std::size_t width = 0;
  for (const StatusReport& report : reports) {
    width = std::max(width, columns(terminalText(report.title)));
  }
  std::string text;
  for (const StatusReport& report : reports) {
    text += colored(report.glyph(), report.color) + " " +
            padded(terminalText(report.title), std::min<std::size_t>(width, 40)) + "  " +
            report.line() + "\n";
  }
  return reports.front().grandSlam ? text + "\nA grand slam: all went well.\n" : text;
}

}  // namespace velloro
