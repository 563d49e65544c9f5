// Random sets of tasks, put in order by the calculator and by the same told plainly: of the task
// that comes next, all others are asked whether they come before it.

#include "VelloroCore/Next/NextTaskCalculator.h"

#include <algorithm>
#include <random>
#include <set>

#include <gtest/gtest.h>

namespace velloro {
namespace {

using Calculator = NextTaskCalculator;
using Kind = CompletionStatus::Status::Kind;
using Mode = Calculator::NegativeTaskMode;
using Tasks = std::vector<NextTaskCalculatorTask>;

const TimeZone zone = TimeZone::fromIdentifier("Europe/Berlin").value();
const Date now = YYYYMMDD{2024, 3, 7}.dateAt({}, {.h = 9, .m = 10}, zone);

double secondsAhead(Date time) {
  return time.timeIntervalSince(now);
}

NextTaskCalculatorTask taskAt(const std::vector<HHMMSS>& times) {
  NextTaskCalculatorTask task{.uniqueId = UniqueID::create(), .timeZone = zone};
  task.notificationSettings.reminderType = ReminderType::automatic;
  for (const HHMMSS time : times) {
    TaskReminder& reminder = task.notificationSettings.reminders.emplace_back();
    reminder.trigger = TaskReminder::Trigger::fromTimeOfDay(time);
    reminder.daysOfWeek = everyDay();
  }
  return task;
}

std::string placesOf(const Calculator::Response& response) {
  std::string text;
  for (const auto& item : response.tasks) text += std::to_string(item.task) + " ";
  return text;
}

TEST(NextTaskCalculator, PutsWhatIsDueNowFirst) {
  const auto at = [](std::int64_t h, std::int64_t m = 0) { return HHMMSS{.h = h, .m = m}; };
  const auto next = [](const Tasks& tasks, Calculator::Request request) {
    return Calculator::next(tasks, request, now, zone);
  };
  Calculator::Request request{.after = now, .completionAllowance = 1800};
  // 1 and 2 are about now, 3 and 4 have just passed, 5 is coming, 0 has no time.
  const Tasks tasks{taskAt({}),          taskAt({at(9, 10)}),
                    taskAt({at(9, 40)}), taskAt({at(9), at(18)}),
                    taskAt({at(8, 40)}), taskAt({at(9, 40).add({.s = 1}, true).value()})};
  EXPECT_EQ(placesOf(next(tasks, request)), "1 2 3 4 5 0 ");
  request.completionAllowance = 0;
  EXPECT_EQ(placesOf(next(tasks, request)), "1 2 5 3 4 0 ");
  request.order = Calculator::NextTaskOrder::displayOrder;
  EXPECT_EQ(placesOf(next(tasks, request)), "0 1 2 3 4 5 ");

  // The first item can't set the expiry.
  const Tasks three{taskAt({at(10)}), taskAt({at(10, 5)}), taskAt({at(11)})};
  const auto response = next(three, {.after = now - 600});
  EXPECT_EQ(secondsAhead(*response.expiryDate), 55 * 60);
  EXPECT_FALSE(next({three.front()}, {.after = now}).expiryDate);
  // At the very end of two days: the task has a time only by its earlier occurrence.
  EXPECT_EQ(*next({taskAt({at(9, 10)})}, {.after = now}).tasks[0].time, now);
  const auto later = next({taskAt({at(7)})}, {.after = now, .from = at(6)});
  EXPECT_EQ(*later.tasks[0].time, (YYYYMMDD{2024, 3, 8}.dateAt({}, at(7), zone)));
  EXPECT_TRUE(next({}, {.after = now}).tasks.empty());
}

class Plainly {
 public:
  Plainly(const Tasks& tasks, const Calculator::Request& request)
      : tasks_(tasks), request_(request) {}

  std::string next() {
    std::vector<std::size_t> due, negative;
    for (std::size_t i = 0; i < tasks_.size(); ++i) {
      const auto& [kind, mode] = tasks_[i].completionStatus;
      if (tasks_[i].status != TaskStatus::normal) continue;
      if (mode == SkipMode::willSkipWithIndicator) continue;
      if (kind == Kind::positiveIncomplete) due.push_back(i);
      if (kind != Kind::negativeComplete) continue;
      if (request_.negativeTaskMode == Mode::inline_) due.push_back(i);
      if (request_.negativeTaskMode == Mode::afterPositive) negative.push_back(i);
    }
    std::ranges::sort(due);
    if (request_.order == Calculator::NextTaskOrder::displayOrder) return text(due);
    const double allowance = request_.completionAllowance;
    std::vector<std::pair<double, std::size_t>> ranked;  // by how soon it is to be shown
    for (const std::size_t i : due) {
      for (const Date time : times(i, -allowance)) {
        const double ahead = secondsAhead(time);
        const double rank = ahead < 0 ? 1e7 - ahead : ahead <= allowance ? ahead : 1e8 + ahead;
        ranked.emplace_back(rank, i);
      }
    }
    return inOrder(ranked, due, -allowance) + text(negative);
  }

  std::string previous() {
    std::vector<std::size_t> done, notDue;
    for (std::size_t i = 0; i < tasks_.size(); ++i) {
      const auto& [kind, mode] = tasks_[i].completionStatus;
      if (tasks_[i].status != TaskStatus::normal) continue;
      const bool isNegative = kind == Kind::negativeComplete || kind == Kind::negativeMiss ||
                              kind == Kind::negativeAllowedMiss;
      if (isNegative && request_.negativeTaskMode != Mode::exclude) done.push_back(i);
      if (kind == Kind::positiveComplete) done.push_back(i);
      if (kind == Kind::positiveMiss || kind == Kind::positiveSkip) notDue.push_back(i);
      if (kind == Kind::positiveIncomplete && mode == SkipMode::willSkipWithIndicator) {
        notDue.push_back(i);
      }
    }
    if (request_.order == Calculator::NextTaskOrder::displayOrder) return text(done) + text(notDue);
    for (const auto& list : {done, notDue}) {
      std::vector<std::pair<double, std::size_t>> ranked;
      for (const std::size_t i : list) {
        for (const Date time : times(i, 0)) ranked.emplace_back(secondsAhead(time), i);
      }
      const std::string found = inOrder(ranked, list, 0);
      if (!found.empty()) return found;
    }
    return "";
  }

 private:
  std::vector<Date> times(std::size_t i, double from) const {
    return tasks_[i].notificationSettings.sortedEstimatedRelevantTimes(
        {now + from, now + 172800, tasks_[i].startOfDay, tasks_[i].timeZone});
  }
  static std::string text(const std::vector<std::size_t>& places) {
    std::string joined;
    for (const std::size_t place : places) joined += std::to_string(place) + " ";
    return joined;
  }
  std::string inOrder(std::vector<std::pair<double, std::size_t>> ranked,
                      const std::vector<std::size_t>& all, double from) const {
    std::ranges::sort(ranked);
    std::vector<std::size_t> order;
    for (const auto& [rank, i] : ranked) {
      if (tasks_[i].uniqueId && !std::ranges::count(order, i)) order.push_back(i);
    }
    for (const bool isAutomatic : {false, true}) {
      for (const std::size_t i : all) {
        if (tasks_[i].isAutomatic == isAutomatic && times(i, from).empty()) order.push_back(i);
      }
    }
    return text(order);
  }

  const Tasks& tasks_;
  const Calculator::Request& request_;
};

TEST(NextTaskCalculator, OrdersRandomTasksAsAPlainReadingDoes) {
  std::mt19937 random(8);
  const auto number = [&](std::size_t below) { return random() % below; };
  const auto statuses = CompletionStatus::Status::allCases();
  for (int round = 0; round < 3000; ++round) {
    Tasks tasks;
    for (std::size_t rest = number(12); rest > 0; --rest) {
      std::vector<HHMMSS> times;
      for (std::size_t i = number(4); i > 0; --i) {
        times.push_back({.h = static_cast<std::int64_t>(number(24)),
                         .m = static_cast<std::int64_t>(10 * number(2))});
      }
      NextTaskCalculatorTask task = taskAt(times);
      task.completionStatus = statuses[number(statuses.size())];
      task.isAutomatic = number(2) == 0;
      if (number(9) == 0) task.uniqueId.reset();
      if (number(9) == 0) task.status = TaskStatus::paused;
      tasks.push_back(task);
    }
    const Calculator::Request request{.after = now,
                                      .order = Calculator::NextTaskOrder{number(4) == 0},
                                      .completionAllowance = static_cast<double>(number(4) * 3600),
                                      .negativeTaskMode = allCases<Mode>()[number(3)]};
    const auto next = Calculator::next(tasks, request, now, zone);
    ASSERT_EQ(placesOf(next), Plainly(tasks, request).next()) << round;
    ASSERT_EQ(placesOf(Calculator::previous(tasks, request, now, zone)),
              Plainly(tasks, request).previous())
        << round;
  }
}

}  // namespace
}  // namespace velloro
