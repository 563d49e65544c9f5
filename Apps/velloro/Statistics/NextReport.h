#pragma once

#include "VelloroCore/Next/NextTaskCalculator.h"

#include <memory>
#include <string>
#include <vector>

namespace velloro {

class TaskEntity;

/// What to do next, as `velloro next` prints it.
struct NextReport {
  struct Task {
    std::string uniqueId;
    std::string title;
    std::optional<Date> time;

    static constexpr auto codingKeys = keys(key("uniqueId", &Task::uniqueId),
                                            key("title", &Task::title), key("time", &Task::time));
  };

  std::vector<Task> tasks;
  std::optional<Date> expiryDate;
  NextTaskCalculator::Request request;

  static constexpr auto codingKeys =
      keys(key("tasks", &NextReport::tasks), key("expiryDate", &NextReport::expiryDate),
           key("request", &NextReport::request));

  /// \param tasks In the order in which they are displayed.
  [[nodiscard]] static NextReport of(const std::vector<std::shared_ptr<TaskEntity>>& tasks,
                                     const NextTaskCalculator::Request& request, bool isPrevious);

  [[nodiscard]] std::string json() const;
  [[nodiscard]] std::string text() const;
};

}  // namespace velloro
