#include "DataManager/DataManager.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Host/LogWriter.h"
#include "Host/PeriodCloser.h"
#include "Notifications/Planning/NotificationManager.h"
#include "Settings/SiriExtensionUtilities.h"
#include "Tasks/Requests/TaskLogFetchRequest.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"
#include "Tasks/Rows/TaskWriting.h"
#include "Tasks/Status/StoredTaskStatus.h"
#include "UserNotifications/UNUserNotificationCenter.h"

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace velloro {
namespace {

struct Month {
  const char* name;
  const char* zone;
  const char* start;
};

/// Tasks of all modes through a month in which the clocks change, with answers at random. What the
/// centre has pending for each stretch between two plans is compared with what the rules ask for
/// there, reminder by reminder.
class ReminderMonth : public testing::TestWithParam<Month> {
 protected:
  ReminderMonth()
      : zone_(TimeZone::fromIdentifier(GetParam().zone).value()),
        start_(Date::fromISO8601(GetParam().start).value()) {
    environment_.setResources(VELLORO_RESOURCES);
    environment_.setTimeZone(zone_);
    environment_.setNow(start_);
    data_ = DataManager::make();
    environment_.settle();
    context_ = data_->viewContext();
    manager_ = std::make_unique<NotificationManager>(*data_, SiriExtensionUtilities::shared());
    write([&] {
      for (int i = 0; i < 20; ++i) makeTask(i);
    });
    manager_->requestAuthorization(true);
    environment_.settle();
  }
  ~ReminderMonth() override { environment_.settle(); }

  std::int64_t below(std::int64_t bound) {
    return static_cast<std::int64_t>(random_() % static_cast<std::uint64_t>(bound));
  }

  template <typename Work>
  void write(Work&& work) {
    const auto done = context_->performTransaction([&]() -> Result<void> {
      work();
      return {};
    });
    ASSERT_TRUE(done) << done.error()->localizedDescription();
  }

  void makeTask(int number) {
    const auto task = TaskEntity::create(*context_);
    task->setValue(TaskAttributes::uniqueId, UniqueID::create());
    const auto modes = allCases<DayMode>();
    TaskFrequency frequency = TaskFrequency::defaultFrequency;
    frequency.dayMode = modes[static_cast<std::size_t>(number) % modes.size()];
    if (frequency.dayMode == DayMode::specificDaysOfMonth) {
      frequency.dayMode = DayMode::specificDaysOfWeek;
      frequency.days = {DayOfWeek::monday, DayOfWeek::thursday, DayOfWeek::sunday};
    }
    if (number % 4 == 1) frequency.numPartialCompletions = 3;
    setFrequency(*task, frequency);
    task->setValue(TaskAttributes::isNegative, number % 5 == 2);
    task->setValue(TaskAttributes::startOfDayValue, HHMMSS{.h = number % 3 == 0 ? 4 : 0});
    task->setValue(TaskAttributes::created, start_ - 86400.0 * 40);
    TaskNotificationSettings settings{.reminderType = ReminderType::custom};
    for (std::int64_t i = 1 + below(3); i > 0; --i) {
      // Many lie in the hours that the clocks skip and repeat.
      const std::int64_t hour = below(3) == 0 ? below(4) : below(24);
      settings.reminders.push_back(
          {.uniqueId = UniqueID::create(),
           .trigger = TaskReminder::Trigger::fromTimeOfDay({.h = hour, .m = 15 * below(4)}),
           .daysOfWeek = below(4) == 0 ? EnumSet<DayOfWeek>{DayOfWeek::sunday, DayOfWeek::tuesday}
                                       : everyDay()});
    }
    setNotificationSettings(*task, settings);
    tasks_.push_back(task);
  }

  void rebuild() {
    write([&] {
      for (const auto& task : tasks_) bringUpToDate(*task, Date::now());
    });
    manager_->rebuildNotifications(false);
    environment_.settle();
  }

  void answer() {
    const auto& task = tasks_[static_cast<std::size_t>(below(20))];
    const Date now = Date::now();
    write([&] {
      PeriodCloser(*context_, now).close(*task);
      const auto day = YYYYMMDD::fromDate(task->startOfDay(), now, task->taskCurrentTimeZone());
      addLogEntry(*task, {.date = day, .at = now}, now);
      updateDerivedData(*task, now);
    });
    manager_->scheduleNotificationsForTasksImmediate({task->objectID()});
    environment_.settle();
  }

  using Deliveries = std::multiset<std::pair<Date, std::string>>;

  /// What the centre would deliver behind `from`, up to and with `to`.
  Deliveries pending(Date from, Date to) {
    Deliveries deliveries;
    UNUserNotificationCenter::currentNotificationCenter()
        .getPendingNotificationRequestsWithCompletionHandler([&](const auto& requests) {
          for (const auto& request : requests) {
            const auto date = request.trigger ? request.trigger->nextTriggerDate() : std::nullopt;
            const std::string& id = request.identifier;
            if (!id.starts_with("r") || !date || *date <= from || *date > to) continue;
            const auto dot = id.find('.') + 1;
            deliveries.emplace(*date, id.substr(dot, id.rfind('.') - dot));
          }
        });
    environment_.settle();
    return deliveries;
  }

  /// What the rules ask for there, of a plan that was made at `from`.
  Deliveries expected(Date from, Date to) {
    std::set<std::pair<Date, std::string>> deliveries;
    for (const auto& task : tasks_) {
      const auto snapshot = TaskSnapshot::of(*task, from);
      const TaskStanding& standing = snapshot.standing;
      for (std::int64_t i = 0; i < 2; ++i) {
        const YYYYMMDD day = standing.today().add(i, zone_);
        if (!isOpen(snapshot, day)) continue;
        for (const auto& [reminder, moment] : remaining(*task, standing, day)) {
          if (reminder.daysOfWeek.contains(day.dayOfWeek(zone_)) && moment > from && moment <= to) {
            deliveries.emplace(moment, task->uniqueId().stringValue());
          }
        }
      }
    }
    return {deliveries.begin(), deliveries.end()};
  }

  [[nodiscard]] static bool isOpen(const TaskSnapshot& task, YYYYMMDD day) {
    const auto period = task.datedPeriod(day).period;
    const std::string status =
        streakedCompletionStatus(task, period).completionStatus.status.stringValue();
    return status == "i_mwi" || status == "i_mwoi" || status == "i_swoi" || status == "nc_mwi" ||
           status == "nc_mwoi" || status == "nc_swoi";
  }

  using Moments = std::vector<std::pair<TaskReminder, Date>>;
  [[nodiscard]] Moments remaining(const TaskEntity& task, const TaskStanding& standing,
                                  YYYYMMDD day) const {
    Moments all;
    for (const auto& reminder : task.notificationSettings().timeOfDayReminders()) {
      all.emplace_back(reminder,
                       day.dateAt(standing.startOfDay, *reminder.trigger.timeOfDay, zone_));
    }
    std::optional<Date> step;
    if (day == standing.today() && standing.frequency.numPartialCompletions > 1) {
      const auto log = task.taskLog(TaskLogFetchRequest{.minDate = day, .maxDate = day});
      for (const auto& entry : *log) {
        if (!isPartial(*entry->value(TaskLogEntryEntity::entryType))) continue;
        const Date made = *entry->value(TaskLogEntryEntity::createdTimestamp);
        step = std::max(step.value_or(made),
                        Date::since1970(std::floor(made.timeIntervalSince1970())));
      }
    }
    if (!step) return all;
    const auto after = [&](double allowance) {
      Moments left;
      std::ranges::copy_if(all, std::back_inserter(left),
                           [&](const auto& each) { return each.second > *step + allowance; });
      return left;
    };
    return after(2100).empty() ? after(1200) : after(2100);
  }

  [[nodiscard]] std::string lines(const Deliveries& deliveries) const {
    std::string text;
    for (const auto& [date, id] : deliveries) {
      const auto task = std::ranges::find_if(
          tasks_, [&](const auto& each) { return each->uniqueId().stringValue() == id; });
      text += date.iso8601() + " task " + std::to_string(task - tasks_.begin()) + "\n";
    }
    return text;
  }

  void check(Date from, Date to) {
    const auto deliveries = pending(from, to);
    const auto wanted = expected(from, to);
    ASSERT_EQ(lines(deliveries), lines(wanted)) << from.iso8601() << " to " << to.iso8601();
    numDelivered_ += deliveries.size();
  }

  VirtualEnvironment environment_;
  TimeZone zone_;
  Date start_;
  std::mt19937_64 random_{20240331};
  std::shared_ptr<DataManager> data_;
  std::shared_ptr<NSManagedObjectContext> context_;
  std::unique_ptr<NotificationManager> manager_;
  std::vector<std::shared_ptr<TaskEntity>> tasks_;
  std::size_t numDelivered_ = 0;
};

TEST_P(ReminderMonth, DeliversWhatTheRulesAskForAndNothingElse) {
  YYYYMMDD day = YYYYMMDD::fromDate(HHMMSS::midnight, start_, zone_);
  for (int i = 0; i < 30; ++i, day = day.nextDay(zone_)) {
    // Each start of a logical day brings a rebuild, and the user answers in between.
    std::map<Date, bool> events;  // whether it is a rebuild
    for (int answers = 0; answers < 4; ++answers) {
      events.emplace(day.startOfDay(HHMMSS::midnight, zone_) + static_cast<double>(below(82800)),
                     false);
    }
    events[day.dateAt(HHMMSS::midnight, HHMMSS::midnight, zone_)] = true;
    events[day.dateAt(HHMMSS::midnight, {.h = 4}, zone_)] = true;
    for (const auto& [at, isRebuild] : events) {
      const Date before = Date::now();
      if (at > before) {
        ASSERT_NO_FATAL_FAILURE(check(before, at));
        environment_.advance(at.timeIntervalSince(before));
      }
      if (isRebuild) {
        rebuild();
      } else {
        answer();
      }
    }
  }
  EXPECT_GT(numDelivered_, 200U);
}

INSTANTIATE_TEST_SUITE_P(
    ClockChanges, ReminderMonth,
    testing::Values(Month{"BerlinSpring", "Europe/Berlin", "2024-03-10T10:00:00Z"},
                    Month{"BerlinAutumn", "Europe/Berlin", "2024-10-10T10:00:00Z"},
                    Month{"NewYorkSpring", "America/New_York", "2024-02-25T10:00:00Z"},
                    Month{"NewYorkAutumn", "America/New_York", "2024-10-20T10:00:00Z"},
                    Month{"LordHoweSpring", "Australia/Lord_Howe", "2024-09-20T10:00:00Z"},
                    Month{"LordHoweAutumn", "Australia/Lord_Howe", "2024-03-20T10:00:00Z"}),
    [](const auto& each) { return each.param.name; });

}  // namespace
}  // namespace velloro
