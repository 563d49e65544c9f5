#include "Agent/Agent.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/SlowPoll.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Host/LogWriter.h"
#include "Host/NotificationUpdates.h"
#include "Host/TaskWriter.h"
#include "Notifications/NotificationCategory.h"
#include "Settings/Settings.h"
#include "Tasks/Requests/TaskLogFetchRequest.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskWriting.h"

#include <gmock/gmock.h>

namespace velloro {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// What a desktop shows, by the title of its task.
class FakeVoice : public AgentVoice {
 public:
  void setHandlers(Handlers handlers) override { handlers_ = std::move(handlers); }
  bool isReady() const override { return ready; }
  bool staysVisible() const override { return stays; }
  bool isInhibited() const override { return inhibited; }
  std::string server() const override { return "bus :1." + std::to_string(servers); }
  void show(const OpenReminder& reminder, bool isQuiet) override {
    heard.push_back((isQuiet ? "~" : "") + reminder.content().title);
    seen[reminder.key] = reminder.content().title;
    handlers_.shown(reminder.key, ++lastId);
  }
  void showSummary(const std::vector<OpenReminder>& missed, bool isQuiet) override {
    heard.push_back((isQuiet ? "~" : "") + std::to_string(missed.size()) + " missed");
    seen["summary"] = heard.back();
  }
  void withdraw(const std::string& key) override {
    if (seen.erase(key) > 0) heard.emplace_back("withdrawn");
  }
  void closeLeftover(std::uint32_t id) override { leftovers.push_back(id); }
  void withdrawAll() override { seen.clear(); }

  void answer(VoiceAnswer::Kind kind, const std::string& key, const std::string& text = "") {
    handlers_.answered({.kind = kind, .key = key, .text = text});
  }
  void restart() {
    seen.clear();
    ready = false;
    handlers_.changed();
    ready = true;
    ++servers;
    handlers_.changed();
  }

  bool ready = true, stays = true, inhibited = false;
  int servers = 1;
  std::uint32_t lastId = 0;
  std::vector<std::string> heard;
  std::map<std::string, std::string> seen;
  std::vector<std::uint32_t> leftovers;

 private:
  Handlers handlers_;
};

/// The program has one store and one centre, in one time, which goes on from test to test.
VirtualEnvironment& environment() {
  static auto& environment = *[] {
    auto* made = new VirtualEnvironment;
    made->setResources(VELLORO_RESOURCES);
    made->setTimeZone(TimeZone::gmt());
    SlowPoll::makeCommon();  // as the agent does
    return made;
  }();
  return environment;
}

class AgentTest : public testing::Test {
 protected:
  AgentTest() {
    static int day = 0;
    environment();
    store_ = std::make_unique<HostStore>();
    const YYYYMMDD date = YYYYMMDD{2024, 3, 1}.add(10 * ++day, TimeZone::gmt());
    environment().setTimeZone(TimeZone::gmt());
    environment().setNow(date.dateAt(HHMMSS::midnight, {.h = 12}, TimeZone::gmt()));
  }
  ~AgentTest() override {
    endAgent();
    store_->write([&] {
      for (const auto& task : store_->tasks(activeStatuses)) {
        task->setValue(TaskAttributes::status, TaskStatus::trashed);
      }
    });
    environment().settle();
    auto center = UNUserNotificationCenter::currentNotificationCenter();
    center.removeAllPendingNotificationRequests();
    center.removeAllDeliveredNotifications();
    environment().settle();
    std::error_code ignored;
    std::filesystem::remove(Agent::recordFile(), ignored);
  }

  std::shared_ptr<TaskEntity> add(const std::string& title, std::vector<HHMMSS> times) {
    return store_->write([&] {
      const auto task = addTask(*store_, {.title = title}, Date::now());
      TaskNotificationSettings settings{.reminderType = ReminderType::custom};
      for (const HHMMSS time : times) {
        settings.reminders.push_back({.uniqueId = UniqueID::create(),
                                      .trigger = TaskReminder::Trigger::fromTimeOfDay(time),
                                      .daysOfWeek = everyDay()});
      }
      setNotificationSettings(*task, settings);
      return task;
    });
  }
  void startAgent(Agent::Options options = {}) {
    agent_ = Agent::make(*store_, voice_, std::move(options));
    agent_->start();
    environment().settle();
  }
  void endAgent() {
    if (agent_ != nullptr) agent_->endSoon([] {});
    environment().settle();
    agent_.reset();
  }
  /// As a process does that is killed.
  void killAgent() {
    agent_.reset();
    environment().settle();
  }
  void advance(TimeInterval seconds) { environment().advance(seconds); }
  std::vector<std::string> heard() {
    environment().settle();
    return std::exchange(voice_.heard, {});
  }
  void answer(const TaskEntity& task, VoiceAnswer::Kind kind, const std::string& text = "") {
    voice_.answer(kind, task.uniqueId().stringValue(), text);
    environment().settle();
  }
  void press(const TaskEntity& task, NotificationAction action) {
    answer(task, VoiceAnswer::Kind::action, std::string(rawValue(action)));
  }
  /// "20240311 completed_manually"
  std::vector<std::string> log(const TaskEntity& task) {
    std::vector<std::string> lines;
    const auto entries = task.taskLog({}).value();
    for (const auto& entry : entries) {
      lines.push_back(entry->value(TaskLogEntryEntity::entryDate)->debugDescription() + " " +
                      std::string(description(*entry->value(TaskLogEntryEntity::entryType))));
    }
    return lines;
  }
  std::string today() {
    return YYYYMMDD::today(HHMMSS::midnight, TimeZone::gmt(), Date::now()).debugDescription();
  }

  FakeVoice voice_;
  std::unique_ptr<HostStore> store_;
  std::shared_ptr<Agent> agent_;
};

constexpr TimeInterval hour = 3600;
constexpr auto action = VoiceAnswer::Kind::action;

TEST_F(AgentTest, OneTapIsOneEntryAndEndsTheReminder) {
  const auto read = add("Read", {{.h = 13}, {.h = 14}});
  startAgent();
  EXPECT_THAT(heard(), IsEmpty());
  advance(hour);
  EXPECT_THAT(heard(), ElementsAre("Read"));
  press(*read, NotificationAction::markAsDone);
  press(*read, NotificationAction::markAsDone);
  EXPECT_THAT(log(*read), ElementsAre(today() + " completed_manually"));
  EXPECT_THAT(heard(), ElementsAre("withdrawn"));
  advance(2 * hour);
  EXPECT_THAT(heard(), IsEmpty()) << "the one at two is not needed any more";
}

TEST_F(AgentTest, WithdrawsWhatWasDoneElsewhere) {
  const auto read = add("Read", {{.h = 13}});
  startAgent();
  advance(hour);
  store_->write([&] {
    addLogEntry(*read,
                {.date = YYYYMMDD::today(HHMMSS::midnight, TimeZone::gmt(), Date::now()),
                 .at = Date::now()},
                Date::now());
    updateDerivedData(*read, Date::now());
  });
  agent_->centreDidChange();
  EXPECT_THAT(heard(), ElementsAre("Read", "withdrawn"));
  EXPECT_THAT(voice_.seen, IsEmpty());
}

TEST_F(AgentTest, SkipsSnoozesAndDismisses) {
  const auto read = add("Read", {{.h = 13}});
  const auto run = add("Run", {{.h = 13}});
  const auto swim = add("Swim", {{.h = 13}});
  startAgent();
  advance(hour);
  EXPECT_THAT(heard(), testing::UnorderedElementsAre("Read", "Run", "Swim"))
      << "those that come in time are shown one by one";
  answer(*read, action, VoiceAnswer::skipAction);
  EXPECT_THAT(log(*read), ElementsAre(today() + " skipped_manually"));
  answer(*run, action, std::string(rawValue(NotificationAction::snooze)) + "-600");
  answer(*swim, VoiceAnswer::Kind::dismissed);
  voice_.heard.clear();
  advance(601);
  EXPECT_THAT(heard(), ElementsAre("Run"));
  press(*run, NotificationAction::markAsDone);
  EXPECT_THAT(log(*run), ElementsAre(today() + " completed_manually"));
  EXPECT_THAT(log(*swim), IsEmpty());
  voice_.heard.clear();
  voice_.restart();
  EXPECT_THAT(heard(), IsEmpty()) << "what was dismissed stays away";
}

TEST_F(AgentTest, ShowsAgainWhatIsOpenAfterARestart) {
  const auto read = add("Read", {{.h = 13}});
  startAgent();
  advance(hour);
  heard();
  voice_.restart();
  EXPECT_THAT(heard(), ElementsAre("~Read"));
  killAgent();
  advance(60);
  startAgent();
  EXPECT_THAT(heard(), ElementsAre("~Read"));
  EXPECT_THAT(voice_.leftovers, testing::Not(IsEmpty())) << "its buttons were dead";
  press(*read, NotificationAction::markAsDone);
  endAgent();
  startAgent();
  EXPECT_THAT(heard(), ElementsAre("withdrawn")) << "answered is answered";
}

TEST_F(AgentTest, ShowsWhatWasMissedOnce) {
  for (const char* title : {"Read", "Run", "Swim"}) add(title, {{.h = 13}, {.h = 14}});
  startAgent();
  endAgent();
  advance(4 * hour);
  EXPECT_THAT(heard(), IsEmpty());
  startAgent();
  EXPECT_THAT(heard(), ElementsAre("3 missed"));
  voice_.answer(VoiceAnswer::Kind::dismissed, AgentPlan::summaryKey);
  environment().settle();
  endAgent();
  startAgent();
  EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(AgentTest, LeavesItsUserInPeace) {
  const auto read = add("Read", {{.h = 13}, {.h = 15}, {.h = 22, .m = 30}});
  startAgent({.quietHours = QuietHours{{.h = 22}, {.h = 23}}});
  AgentPause::begin(Date::now() + 2 * hour);
  advance(1.5 * hour);
  EXPECT_THAT(heard(), IsEmpty());
  advance(0.5 * hour + 1);
  agent_->minute();
  EXPECT_THAT(heard(), ElementsAre("Read")) << "what the pause has held back comes at its end";
  answer(*read, VoiceAnswer::Kind::unseen);
  voice_.inhibited = true;
  advance(60);
  agent_->centreDidChange();
  EXPECT_THAT(heard(), IsEmpty());
  voice_.inhibited = false;
  agent_->centreDidChange();
  EXPECT_THAT(heard(), ElementsAre("Read")) << "offered once";
  answer(*read, VoiceAnswer::Kind::unseen);
  agent_->centreDidChange();
  EXPECT_THAT(heard(), IsEmpty());
  advance(8.6 * hour);
  EXPECT_THAT(heard(), ElementsAre("Read")) << "the one at three";
  advance(0.5 * hour);
  agent_->minute();
  EXPECT_THAT(heard(), ElementsAre("Read"));
}

TEST_F(AgentTest, GoesByTheClockHoweverItMoves) {
  const auto read = add("Read", {{.h = 13}});
  startAgent();
  advance(hour);
  EXPECT_THAT(heard(), ElementsAre("Read"));
  const Date shown = Date::now();
  environment().setNow(shown - 600);  // set back across the reminder
  agent_->clockWasSet();
  advance(700);
  EXPECT_THAT(heard(), IsEmpty()) << "one occurrence is shown once";
  press(*read, NotificationAction::markAsDone);
  heard();

  add("Run", {{.h = 16}});
  NotificationUpdates::shared().bringUpToDate();
  agent_->machineWillSleep();
  environment().setNow(shown + 4 * hour);  // asleep meanwhile
  agent_->machineDidWake();
  environment().settle();
  EXPECT_THAT(heard(), IsEmpty()) << "the desktop wakes up first";
  advance(Agent::settleTime);
  EXPECT_THAT(heard(), ElementsAre("Run"));
}

TEST_F(AgentTest, CountsALateAnswerForTheReminderDay) {
  const auto read = add("Read", {{.h = 23}});
  startAgent();
  advance(11.5 * hour);
  EXPECT_THAT(heard(), ElementsAre("Read"));
  const std::string day = today();
  // After midnight, before the new day was noticed.
  environment().setNow(Date::now() + hour);
  press(*read, NotificationAction::markAsDone);
  EXPECT_THAT(log(*read), testing::Contains(day + " completed_manually"));
  EXPECT_THAT(log(*read), testing::Not(testing::Contains(today() + " completed_manually")));
  heard();
  advance(24 * hour);
  EXPECT_THAT(heard(), testing::Contains("Read")) << "the next day has its own";
}

TEST_F(AgentTest, FollowsTheZone) {
  const auto read = add("Read", {{.h = 18}});
  startAgent();
  advance(hour);
  environment().setTimeZone(TimeZone::fromIdentifier("Africa/Lagos").value());
  agent_->zoneDidChange();
  advance(3 * hour);
  EXPECT_THAT(heard(), IsEmpty());
  advance(hour);
  EXPECT_THAT(heard(), ElementsAre("Read")) << "at six by the new clock";
  advance(2 * hour);
  EXPECT_THAT(heard(), IsEmpty()) << "not again at six by the old one";
}

TEST_F(AgentTest, EndsADayWhenItEnds) {
  const auto read = add("Read", {{.h = 23}});
  const auto late = add("Late", {{.h = 1}});
  store_->write([&] { late->setValue(TaskAttributes::startOfDayValue, HHMMSS{.h = 4}); });
  const std::string day = today();
  startAgent();
  advance(11.5 * hour);
  EXPECT_THAT(heard(), ElementsAre("Read"));
  advance(hour);
  EXPECT_THAT(heard(), ElementsAre("withdrawn")) << "at midnight the day of the task is over";
  advance(hour);
  EXPECT_THAT(heard(), ElementsAre("Late"));
  advance(2 * hour);
  EXPECT_THAT(heard(), IsEmpty()) << "its day goes on until four";
  press(*late, NotificationAction::markAsDone);
  EXPECT_THAT(log(*late), ElementsAre(day + " completed_manually"));
  heard();
  advance(24 * hour);
  EXPECT_THAT(heard(), ElementsAre("Read", "withdrawn", "Late")) << "and so on each day";
  advance(hour);
  EXPECT_THAT(heard(), ElementsAre("withdrawn")) << "the day that ends at four";
  EXPECT_THAT(log(*read), testing::Contains(day + " missed_auto"));
}

}  // namespace
}  // namespace velloro
