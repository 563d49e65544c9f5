#include "Foundation/Coding/JSON.h"
#include "Foundation/Dispatch/NSNotificationCenter.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Settings/SettingsStorageLocal.h"
#include "Support/Processes.h"
#include "TimedTasks/TimedTaskLiveActivityManager.h"
#include "TimedTasks/TimedTaskManager.h"

#include <gmock/gmock.h>

namespace velloro {
namespace {

using Entry = TimedTaskManagerEntry;
using Reason = TimedTaskManager::Error::Reason;
using testing::ElementsAre;

struct Host : TimedTaskManagerDelegate {
  [[nodiscard]] bool mayRunTimers() const override { return mayRun; }
  void timerExpired(const Entry& entry, const UniqueID& task) override {
    EXPECT_EQ(entry.taskIdentifier, task);
    if (isFull) throw Error("test", 28, "the disk is full");
    expired.push_back(entry.entryId);
    if (next) manager->start(*std::exchange(next, std::nullopt));
    EXPECT_TRUE(manager->processCurrentTimers().empty()) << "it is processing already";
  }
  [[nodiscard]] LiveActivityDisplayMode liveActivityDisplayMode(const UniqueID&) const override {
    return LiveActivityDisplayMode::automatic;
  }

  TimedTaskManager* manager = nullptr;
  bool mayRun = true;
  bool isFull = false;
  std::optional<Entry> next = {};
  std::vector<UniqueID> expired = {};
};

class TimedTaskManagerTest : public testing::Test {
 protected:
  TimedTaskManagerTest() {
    manager_.delegate = host_;
    host_->manager = &manager_;
  }

  /// A run of another task each, which begins now.
  static Entry runOf(double seconds) {
    const Date now = Date::now();
    return {.entryId = UniqueID::create(),
            .taskIdentifier = UniqueID::create(),
            .period = DatedPeriod::fromDate({2024, 3, 7}, TaskFrequencyPeriodType::day,
                                            DayOfWeek::monday, TimeZone::gmt()),
            .start = now,
            .end = now + seconds};
  }
  Entry start(double seconds) {
    const Entry entry = runOf(seconds);
    manager_.start(entry);
    return entry;
  }
  std::optional<Reason> failure(const std::function<void()>& work) {
    try {
      work();
    } catch (const TimedTaskManager::Error& error) {
      return error.reason();
    }
    return std::nullopt;
  }

  VirtualEnvironment environment_;
  SettingsStorage storage_{{.localStorage = std::make_shared<SettingsStorageLocal>()}, false};
  bool inMaintenanceMode_ = false;
  TimedTaskManager manager_{storage_, [this] { return inMaintenanceMode_; }};
  std::shared_ptr<Host> host_ = std::make_shared<Host>();
};

TEST_F(TimedTaskManagerTest, TellsOfEachEndOnceAtItsSecond) {
  const Entry first = start(60);
  const Entry second = start(90);
  EXPECT_EQ(failure([&] { manager_.start(first); }), Reason::alreadyTiming);
  environment_.advance(59.9);
  EXPECT_TRUE(host_->expired.empty());
  environment_.advance(0.1);
  EXPECT_THAT(host_->expired, ElementsAre(first.entryId));
  EXPECT_THAT(manager_.entries(), ElementsAre(second));
  EXPECT_EQ(failure([&] { manager_.timerTriggered(first.entryId); }), Reason::taskNotFound);
  manager_.stop(second.entryId);
  EXPECT_EQ(failure([&] { manager_.stop(second.entryId); }), Reason::taskNotFound);
  environment_.advance(3600);
  EXPECT_EQ(host_->expired.size(), 1U);
  EXPECT_TRUE(manager_.timers().empty());
}

TEST_F(TimedTaskManagerTest, ProcessesWhatALaunchFinds) {
  struct Case {
    const char* what;
    bool hasHost = true, mayRun = true, isMaintained = false, isFull = false;
    double later = 60;
    std::size_t expired = 1, told = 1, kept = 1, timers = 1;
  };
  const Case cases[] = {
      {.what = "before the end", .later = 59.999, .expired = 0, .told = 0, .kept = 2, .timers = 2},
      {.what = "at the end"},
      {.what = "long after the end of both",
       .later = 1e6,
       .expired = 2,
       .told = 2,
       .kept = 0,
       .timers = 0},
      {.what = "without a delegate", .hasHost = false, .told = 0, .timers = 0},
      {.what = "where no timers may run", .mayRun = false, .timers = 0},
      {.what = "in maintenance mode",
       .isMaintained = true,
       .expired = 0,
       .told = 0,
       .kept = 2,
       .timers = 0},
      {.what = "what the delegate can't write", .isFull = true, .expired = 0, .told = 0, .kept = 2},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.what);
    environment_.setNow(Date::fromISO8601("2024-03-07T12:00:00Z").value());
    storage_.setCodable<std::vector<Entry>>(std::vector{runOf(60), runOf(3600)},
                                            Setting::timedTaskEntries);
    environment_.setNow(Date::now() + each.later);
    TimedTaskManager launched(storage_, [&] { return each.isMaintained; });
    host_->manager = &launched;
    host_->mayRun = each.mayRun;
    host_->isFull = each.isFull;
    host_->expired.clear();
    if (each.hasHost) launched.delegate = host_;
    EXPECT_EQ(launched.processCurrentTimers().size(), each.expired);
    EXPECT_EQ(host_->expired.size(), each.told);
    EXPECT_EQ(launched.entries().size(), each.kept);
    EXPECT_EQ(launched.timers().size(), each.timers);
    EXPECT_EQ(storage_.container(Setting::timedTaskEntries).dataForKey("timed_tasks").has_value(),
              each.kept > 0);
  }
}

TEST_F(TimedTaskManagerTest, KeepsWhatIsStartedWhileItTells) {
  host_->next = runOf(500);
  const Entry next = *host_->next;
  start(60);
  environment_.advance(60);
  EXPECT_THAT(manager_.entries(), ElementsAre(next));
  // One entry of the list is damaged: it alone is gone.
  const auto text = manager_.entries();
  auto& stored = storage_.container(Setting::timedTaskEntries);
  stored.setData(Data("[{\"entryId\":\"x\"}," + JSONEncoder{}.encode(text).substr(1)),
                 "timed_tasks");
  EXPECT_THAT(manager_.entries(), ElementsAre(next));
}

TEST_F(TimedTaskManagerTest, KeepsTheEntriesOfAllProcesses) {
  constexpr int entriesEach = 20;
  workInProcesses(4, 1, [&](int worker) {
    environment_.seed(static_cast<std::uint64_t>(worker) + 2);
    SettingsStorage storage({.localStorage = std::make_shared<SettingsStorageLocal>()}, false);
    TimedTaskManager manager(storage, [] { return false; });
    const Entry own = runOf(59);
    manager.start(own);
    for (int i = 0; i < entriesEach; ++i) manager.start(runOf(60 + i));
    manager.stop(own.entryId);
  });
  EXPECT_EQ(manager_.entries().size(), 4U * entriesEach);
}

TEST_F(TimedTaskManagerTest, TellsWhichTimersAreToBeSeen) {
  std::size_t shown = 99;
  const auto token = NSNotificationCenter::defaultCenter().addObserver(
      TimedTaskLiveActivityManager::activitiesChanged, [&](const Notification& changed) {
        shown = changed.value<TimedTaskLiveActivityManager::Entries>("entries")->size();
      });
  start(59);
  EXPECT_EQ(shown, 0U);
  start(60);
  EXPECT_EQ(shown, 1U);
  environment_.advance(60);
  EXPECT_EQ(shown, 0U);
  EXPECT_TRUE(TimedTaskLiveActivityManager::isShown(LiveActivityDisplayMode::yes, 1));
  EXPECT_FALSE(TimedTaskLiveActivityManager::isShown(LiveActivityDisplayMode::no, 3600));
}

}  // namespace
}  // namespace velloro
