#include "velloro/Timers/TimerReport.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Process/Environment.h"
#include "Foundation/Process/Terminal.h"
#include "Foundation/Text/Locale.h"
#include "Tasks/Rows/TaskEntity.h"
#include "VelloroCore/Titles/FormatManager.h"
#include "velloro/Output/Output.h"

#include <algorithm>
#include <cmath>

namespace velloro {

TimerReport TimerReport::of(const TaskEntity& task, const TimedTaskManagerEntry& run, State state,
                            double remaining) {
  const double duration = run.end.timeIntervalSince(run.start);
  const double left = std::clamp(remaining, 0.0, duration);
  return {.taskId = run.taskIdentifier.stringValue(),
          .title = task.title(),
          .entryId = run.entryId.stringValue(),
          .state = state,
          .date = run.period.date,
          .period = PeriodStretch::of(run.period.period),
          .start = run.start,
          .end = run.end,
          .duration = duration,
          .ran = duration - left,
          .remaining = left};
}

std::string TimerReport::json() const {
  return JSONEncoder{.dateForm = DateForm::iso8601}.encode(*this) + "\n";
}

std::string TimerReport::endText() const {
  return FormatManager::shared(Locale::current())
      .timerFinishFormatter.string(end, Environment::current().timeZone());
}

std::string clockText(double seconds) {
  // A second that has begun is still to come.
  return FormatManager::shared(Locale::current())
      .formattedDurationForComplication(std::ceil(seconds - 0.001));
}

std::string table(const std::vector<TimerReport>& reports) {
  if (reports.empty()) return "No timer is running; \"velloro timer start TASK\" starts one.\n";
  constexpr std::size_t widest = 40;
  std::size_t width = 0;
  for (const TimerReport& report : reports) {
    width = std::max(width, columns(terminalText(report.title)));
  }
  std::string text;
  for (const TimerReport& report : reports) {
    text += padded(terminalText(report.title), std::min(width, widest)) + "  " +
            clockText(report.remaining) + " of " + clockText(report.duration) + " left, ends at " +
            report.endText() + "\n";
  }
  return text;
}

}  // namespace velloro
