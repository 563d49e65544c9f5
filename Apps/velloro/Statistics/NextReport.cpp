#include "velloro/Statistics/NextReport.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Process/Terminal.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Status/StoredTaskStatus.h"
#include "Tasks/Status/TaskSnapshot.h"
#include "velloro/Output/Output.h"
#include "velloro/Tasks/TaskReport.h"

namespace velloro {
namespace {

NextTaskCalculatorTask calculatorTask(const TaskEntity& task, Date now) {
  const auto snapshot = TaskSnapshot::of(task, now);
  const auto standing = streakedCompletionStatus(snapshot, snapshot.period(now));
  return {.status = snapshot.status,
          .completionStatus = standing.completionStatus.status,
          .notificationSettings = task.notificationSettings(),
          .isAutomatic = snapshot.standing.automaticTaskType.has_value(),
          .uniqueId = task.taskUniqueId(),
          .startOfDay = snapshot.standing.startOfDay,
          .timeZone = snapshot.standing.timeZone};
}

}  // namespace

NextReport NextReport::of(const std::vector<std::shared_ptr<TaskEntity>>& tasks,
                          const NextTaskCalculator::Request& request, bool isPrevious) {
  const Date now = request.after;
  std::vector<NextTaskCalculatorTask> read;
  read.reserve(tasks.size());
  for (const auto& task : tasks) read.push_back(calculatorTask(*task, now));
  const auto order = isPrevious ? &NextTaskCalculator::previous : &NextTaskCalculator::next;
  const auto response = order(read, request, now, TimeZone::current());
  NextReport report{.tasks = {}, .expiryDate = response.expiryDate, .request = request};
  for (const auto& [place, time] : response.tasks) {
    const TaskEntity& task = *tasks[place];
    report.tasks.push_back({textOf(task.text(TaskAttributes::uniqueId)),
                            textOf(task.text(TaskAttributes::title)), time});
  }
  return report;
}

std::string NextReport::json() const {
  return JSONEncoder{.dateForm = DateForm::iso8601}.encode(*this) + "\n";
}

std::string NextReport::text() const {
  if (tasks.empty()) return "Nothing.\n";
  std::vector<std::vector<std::string>> rows;
  for (const Task& task : tasks) {
    rows.push_back({terminalText(task.title), task.time ? instantText(*task.time) : ""});
  }
  const std::string lines = aligned(rows);
  return expiryDate ? lines + "\nThis order holds until " + instantText(*expiryDate) + ".\n"
                    : lines;
}

}  // namespace velloro
