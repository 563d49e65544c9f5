#include "velloro/Options/TaskArgument.h"

#include "Foundation/Text/String.h"
#include "Host/PeriodCloser.h"
#include "Tasks/Rows/TaskEntity.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/NearMatches.h"

#include <string_view>
#include <vector>

namespace velloro {
namespace {

/// Written as a part of a sentence: "\"Read\" (5A0F6C1E…)".
std::string mention(const TaskEntity& task) {
  const std::string* title = task.text(TaskAttributes::title);
  const std::string* id = task.text(TaskAttributes::uniqueId);
  return cited(title != nullptr ? *title : "") + " (" +
         (id != nullptr ? id->substr(0, 8) : "without id") + ")";
}

bool hasTitle(const TaskEntity& task, const std::string& name) {
  const std::string* title = task.text(TaskAttributes::title);
  return title != nullptr && (*title == name || lowercased(*title) == lowercased(name));
}

bool hasIdWith(const TaskEntity& task, const std::string& beginning) {
  const std::string* id = task.text(TaskAttributes::uniqueId);
  return id != nullptr && !beginning.empty() && lowercased(*id).starts_with(lowercased(beginning));
}

UsageError unknownTask(const std::string& name,
                       const std::vector<std::shared_ptr<TaskEntity>>& tasks) {
  std::vector<std::string_view> titles;
  for (const auto& task : tasks) {
    const std::string* title = task->text(TaskAttributes::title);
    if (title != nullptr) titles.emplace_back(*title);
  }
  const std::string hint = suggestion(name, titles);
  return UsageError("no task is called " + cited(name) + "; " +
                    (hint.empty() ? "\"velloro task list\" lists them" : hint));
}

}  // namespace

void addTaskArgument(const Command& command, std::string& text) {
  command.option("task", text, "TASK", "Its title, its id, or the beginning of its id").required();
}

std::shared_ptr<TaskEntity> taskArgument(const HostStore& store, const std::string& name) {
  const auto all = store.tasks({});
  std::vector<std::shared_ptr<TaskEntity>> meant;
  for (const auto& task : all) {
    if (hasTitle(*task, name)) meant.push_back(task);
  }
  if (meant.empty()) {
    for (const auto& task : all) {
      if (hasIdWith(*task, name)) meant.push_back(task);
    }
  }
  if (meant.size() == 1) return meant.front();
  if (meant.empty()) throw unknownTask(name, all);
  std::string which;
  for (const auto& task : meant) which += (which.empty() ? "" : ", ") + mention(*task);
  throw UsageError(cited(name) + " may be " + which + "; write more of the id");
}

std::shared_ptr<TaskEntity> currentTaskArgument(const HostStore& store, const std::string& name,
                                                Date now) {
  auto task = taskArgument(store, name);
  PeriodCloser(store.context(), now).foresee(*task);
  return task;
}

}  // namespace velloro
