#include "VelloroCore/Next/NextTaskCalculator.h"

#include <algorithm>
#include <set>
#include <utility>

namespace velloro {
namespace {

using Calculator = NextTaskCalculator;
using Kind = CompletionStatus::Status::Kind;
using Mode = Calculator::NegativeTaskMode;
using Places = std::vector<std::size_t>;
using Timed = std::vector<Calculator::TaskWithTime>;

constexpr TimeInterval horizon = 2 * 86400;

struct Window {
  Date from, base, nearEnd, to;

  static Window of(const Calculator::Request& request, Date now, TimeZone deviceTimeZone) {
    const Date base = request.from ? request.from->nextOccurrence(deviceTimeZone, now) : now;
    const TimeInterval allowance = request.completionAllowance;
    return {base - allowance, base, base + allowance, base + horizon};
  }
  /// What is due about now, what has just passed, and what is coming.
  [[nodiscard]] int band(Date time) const {
    if (time < base) return 1;
    return time <= nearEnd ? 0 : 2;
  }
  /// The closest to now first: what has passed in the other direction.
  [[nodiscard]] bool isBefore(Date a, Date b) const {
    if (band(a) != band(b)) return band(a) < band(b);
    return band(a) == 1 ? b < a : a < b;
  }
};

template <typename Belongs>
Places placesWhere(Calculator::Tasks tasks, Belongs belongs) {
  Places places;
  for (std::size_t i = 0; i < tasks.size(); ++i) {
    if (tasks[i].status == TaskStatus::normal && belongs(tasks[i].completionStatus)) {
      places.push_back(i);
    }
  }
  return places;
}

bool isOpen(const CompletionStatus::Status& status, Kind kind) {
  return status.kind == kind && status.skipMode != SkipMode::willSkipWithIndicator;
}

std::vector<Date> timesOf(const NextTaskCalculatorTask& task, Date from, Date to) {
  return task.notificationSettings.sortedEstimatedRelevantTimes(
      {.from = from, .to = to, .startOfDay = task.startOfDay, .timeZone = task.timeZone});
}

/// The times of tasks, and the tasks that have none, in the given order.
struct ByTime {
  Timed timed;
  Places manual, automatic;

  ByTime(Calculator::Tasks tasks, const Places& places, Date from, Date to) {
    for (const std::size_t place : places) {
      const auto times = timesOf(tasks[place], from, to);
      for (const Date time : times) timed.push_back({place, time});
      if (times.empty()) (tasks[place].isAutomatic ? automatic : manual).push_back(place);
    }
  }
};

void append(const Places& places, Timed& to) {
  for (const std::size_t place : places) to.push_back({place, std::nullopt});
}

Calculator::Response inDisplayOrder(const Places& first, const Places& second,
                                    const Calculator::Request& request) {
  Calculator::Response response{.tasks = {}, .request = request};
  append(first, response.tasks);
  append(second, response.tasks);
  return response;
}

/// Each identifier once, at its first time.
class Chosen {
 public:
  explicit Chosen(Calculator::Tasks tasks) : tasks_(tasks) {}

  [[nodiscard]] bool canTake(const Calculator::TaskWithTime& item) const {
    return tasks_[item.task].uniqueId.has_value();
  }
  void take(const Calculator::TaskWithTime& item, Timed& into) {
    if (seen_.insert(*tasks_[item.task].uniqueId).second) into.push_back(item);
  }

 private:
  Calculator::Tasks tasks_;
  std::set<UniqueID> seen_;
};

/// The tasks of one list by the times that are to come.
Timed coming(Calculator::Tasks tasks, const Places& places, const Window& window) {
  ByTime times(tasks, places, window.base, window.to);
  std::ranges::stable_sort(times.timed, {}, [](const auto& item) { return *item.time; });
  Timed found;
  Chosen chosen(tasks);
  for (const auto& item : times.timed) {
    if (chosen.canTake(item)) chosen.take(item, found);
  }
  append(times.manual, found);
  append(times.automatic, found);
  return found;
}

}  // namespace

Calculator::Response Calculator::next(Tasks tasks, const Request& request, Date now,
                                      TimeZone deviceTimeZone) {
  const Mode mode = request.negativeTaskMode;
  const Places due = placesWhere(tasks, [&](const auto& status) {
    return isOpen(status, Kind::positiveIncomplete) ||
           (mode == Mode::inline_ && isOpen(status, Kind::negativeComplete));
  });
  if (request.order == NextTaskOrder::displayOrder) return inDisplayOrder(due, {}, request);

  const Window window = Window::of(request, now, deviceTimeZone);
  ByTime times(tasks, due, window.from, window.to);
  std::ranges::stable_sort(
      times.timed, [&](const auto& a, const auto& b) { return window.isBefore(*a.time, *b.time); });
  Response response{.tasks = {}, .request = request};
  Chosen chosen(tasks);
  for (const TaskWithTime& item : times.timed) {
    if (response.tasks.size() == due.size()) break;
    if (!chosen.canTake(item)) continue;
    const bool changesOrder = !response.tasks.empty() && *item.time > request.after;
    if (!response.expiryDate && changesOrder) response.expiryDate = item.time;
    chosen.take(item, response.tasks);
  }
  append(times.manual, response.tasks);
  append(times.automatic, response.tasks);
  if (mode == Mode::afterPositive) {
    append(placesWhere(tasks,
                       [](const auto& status) { return isOpen(status, Kind::negativeComplete); }),
           response.tasks);
  }
  return response;
}

Calculator::Response Calculator::previous(Tasks tasks, const Request& request, Date now,
                                          TimeZone deviceTimeZone) {
  const bool takesNegative = request.negativeTaskMode != Mode::exclude;
  const Places done = placesWhere(tasks, [&](const auto& status) {
    return status.kind == Kind::positiveComplete || (takesNegative && status.isNegative());
  });
  const Places notDue = placesWhere(tasks, [](const auto& status) {
    return status.kind == Kind::positiveMiss || status.kind == Kind::positiveSkip ||
           (status.kind == Kind::positiveIncomplete &&
            status.skipMode == SkipMode::willSkipWithIndicator);
  });
  if (request.order == NextTaskOrder::displayOrder) return inDisplayOrder(done, notDue, request);

  const Window window = Window::of(request, now, deviceTimeZone);
  Response response{.tasks = coming(tasks, done, window), .request = request};
  if (response.tasks.empty()) response.tasks = coming(tasks, notDue, window);
  return response;
}

}  // namespace velloro
