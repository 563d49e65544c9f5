#include "Notifications/IndividualReminder.h"
#include "Notifications/TaskNotifications.h"
#include "Support/TaskStore.h"
#include "Tasks/Rows/TaskShareEntity.h"
#include "Tasks/Rows/TaskTemporalDataEntity.h"
#include "Tasks/Rows/TaskWriting.h"
#include "Tasks/Status/StoredTaskRecords.h"

#include <regex>

namespace velloro {
namespace {

using Columns = TaskAttributes;
using Row = TaskTemporalDataEntity;

class TaskNotificationsTest : public TasksTest {
 protected:
  TaskNotificationsTest() {
    environment_.setResources(VELLORO_RESOURCES);
    for (const auto& task : {task_, shared_}) {
      task->setValue(Columns::uniqueId, UniqueID::create());
      task->setValue(Columns::title, "Run");
      make<Row>()->setValue(Row::task, task);
    }
    const auto share = make<TaskShareEntity>();
    share->setValue(TaskShareEntity::task, shared_);
    share->setValue(TaskShareEntity::status, TaskShareEntity::ShareStatus::externalTask);
  }

  /// The run of both tasks, and how far they have come on a day.
  void keep(std::int64_t streak, double progress, YYYYMMDD date) {
    for (const auto& task : {task_, shared_}) {
      const auto row = task->value(Columns::taskTemporalData);
      row->setValue(Row::activeStreak, streak);
      row->setValue(Row::bestStreak, 5);
      row->setValue(Row::progress, progress);
      row->setValue(Row::progressDate, date);
    }
  }
  static std::optional<NotificationContent> reminder(const TaskNotifications& notifications,
                                                     YYYYMMDD date) {
    TaskNotifications::Reminder reminder{.id = NotificationID::badge(0), .timeSensitive = true};
    reminder.reminderId = UniqueID();
    reminder.trigger = NotificationTrigger{Date::now() + 1e6};  // too far ahead for an image
    return notifications.reminder(notifications.day(date), reminder, [] { return 0; });
  }

  std::shared_ptr<TaskEntity> shared_ = make<TaskEntity>();
};

TEST_F(TaskNotificationsTest, HaveWhatTheTaskAndItsReminderSay) {
  const YYYYMMDD today{2024, 3, 7}, nextWeek{2024, 3, 14};
  setAutomaticTaskType(
      *task_, AutomaticTaskType(HealthType::runOrWalk, TaskTarget{10, TypeUnit::distanceKm}));
  setFrequency(*task_, {.dayMode = DayMode::aggregateOverWeek});
  keep(2, 3, today);
  auto notifications = TaskNotifications::of(*task_, {.now = Date::now()});
  notifications.settings.reminderSound = SoundEffect::glow;
  const auto content = reminder(notifications, today);
  EXPECT_EQ(content->title, "♥︎ Run 7.0 km");
  EXPECT_EQ(reminder(notifications, nextWeek)->title, "♥︎ Run 10.0 km");
  EXPECT_EQ(content->data->reminderId, UniqueID());
  EXPECT_EQ(content->data->task,
            notificationTask(notifications.task, notifications.day(today).status));
  EXPECT_EQ(content->sound, concrete(SoundEffect::glow, SoundEffectDirection::neutral));
  EXPECT_TRUE(content->timeSensitive);
  notifications.settings.reminderSound.reset();
  EXPECT_FALSE(reminder(notifications, today)->sound);
  task_->setStored(Columns::uniqueId, "damaged");
  EXPECT_FALSE(reminder(notifications, today));
}

// One locale after another, since every text is in each of them.
TEST_F(TaskNotificationsTest, HaveAWholeTextInEveryState) {
  const std::regex broken(R"([{}#]|Notif|\(\)|\( | \)|  |^ | $)"), digits("[0-9]");
  const std::optional<AutomaticTaskType> types[] = {
      {},
      AutomaticTaskType(HealthType::runOrWalk, TaskTarget{10, TypeUnit::distanceKm}),
      AutomaticTaskType(TaskType::timer(), TaskTarget{5400, TypeUnit::durationSeconds})};
  const char* const locales[] = {"en_US", "pl_PL", "ar_EG", "ar_AE"};
  std::size_t cases = 0;
  for (const DayMode mode : allCases<DayMode>()) {
    const auto counting =
        TaskFrequencyPeriod::fromDate(periodTypeForCompletionCountCalculation(mode), {2024, 3, 7},
                                      DayOfWeek::sunday, TimeZone::gmt());
    const std::int64_t last = counting.numberOfDays({}) - 1;
    for (const std::int64_t position : std::set<std::int64_t>{0, last / 2, last - 1, last}) {
      const YYYYMMDD date = counting.startDate.add(std::max(position, std::int64_t{0}), {});
      environment_.setNow(date.dateAt(HHMMSS::midnight, HHMMSS::midday, TimeZone::gmt()));
      keep(static_cast<std::int64_t>(cases % 6), static_cast<double>(cases % 3), date);
      save();
      for (std::size_t bits = 0; bits < 16; ++bits, ++cases) {
        const std::size_t kind = bits % 4;
        TaskEntity& task = bits / 8 > 0 ? *shared_ : *task_;
        setAutomaticTaskType(task, types[kind % 3]);
        setFrequency(
            task,
            {.dayMode = mode, .numPartialCompletions = kind == 3 ? 3 : 1, .numCompletions = 3});
        task.setValue(Columns::isNegative, bits / 4 % 2 > 0);
        environment_.setLocale(locales[cases % 4]);
        const auto notifications = TaskNotifications::of(task, {.now = Date::now()});
        const auto content = reminder(notifications, date);
        ASSERT_TRUE(content && content->title && content->body) << cases;
        std::vector<std::string> texts{*content->title, *content->body};
        const IndividualReminder all(notifications.task, notifications.day(date).period, date);
        for (const auto each : motivations(all.facts())) {
          if (auto text = all.message(each, {.includeTaskName = cases % 8 > 3}).text) {
            texts.push_back(*std::move(text));
          }
        }
        for (const std::string& text : texts) {
          EXPECT_FALSE(std::regex_search(text, broken)) << cases << ": " << text;
          EXPECT_FALSE(cases % 4 == 2 && std::regex_search(text, digits)) << text;
        }
      }
    }
  }
  EXPECT_TRUE(environment_.reports().empty());
}

}  // namespace
}  // namespace velloro
