#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/Environment.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Foundation/Values/Try.h"
#include "Support/Fixtures.h"
#include "Support/Processes.h"
#include "UserNotifications/NotificationStore.h"
#include "UserNotifications/UNUserNotificationCenter.h"

#include <cmath>
#include <csignal>
#include <fstream>
#include <future>

#include <gmock/gmock.h>
#include <sqlite3.h>
#include <sys/resource.h>

namespace platform {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::StartsWith;
using ::testing::UnorderedElementsAre;
namespace fs = std::filesystem;

constexpr auto everyOption =
    UNAuthorizationOptions::alert | UNAuthorizationOptions::sound | UNAuthorizationOptions::badge;

/// "pending | delivered", as a centre of another process reads them.
std::string keptIn(const fs::path& folder) {
  NotificationStore store(folder);
  const NotificationRecords records = store.records();
  std::string text;
  for (const auto& pending : records.pending) text += pending.identifier + " ";
  text += "|";
  for (const auto& done : records.delivered) text += " " + done.request.identifier;
  return text;
}

void runSql(const fs::path& folder, const std::string& sql) {
  const auto connection = SqliteConnection::open({.path = folder / "notifications.sqlite"});
  ASSERT_TRUE((*connection)->run(sql)) << sql;
}

Result<void> addTo(const fs::path& folder, const std::string& identifier, int count = 1,
                   const std::string& body = "x") {
  return NotificationStore(folder).change([&](NotificationRows& rows) -> Result<void> {
    rows.authorize(everyOption);
    for (int i = 0; i < count; ++i) {
      const std::string number = count == 1 ? "" : std::to_string(i);
      TRY(rows.add({.identifier = identifier + number, .content = {.body = body}}, Date::now()));
    }
    return {};
  });
}

/// Notes what is shown as "seconds after the start: identifier".
struct Shower : UNUserNotificationCenterDelegate {
  void willPresent(const UNNotification& notification) override {
    note(notification.request.identifier);
  }
  void badgeDidChange(std::int64_t badge) override { note("badge " + std::to_string(badge)); }
  void note(const std::string& what) {
    const double seconds = Environment::current().mediaTime() - start;
    shown.push_back(std::to_string(std::lround(seconds)) + ": " + what);
  }

  const double start = Environment::current().mediaTime();
  std::vector<std::string> shown;
};

class UserNotificationCenterTest : public ::testing::Test {
 protected:
  UserNotificationCenterTest() {
    center_.requestAuthorizationWithOptions(everyOption);
    center_.setDelegate(shower_);
    environment_.settle();
    shower_->shown.clear();  // the badge at the start
  }

  /// \param seconds From now; at once when it is not above 0.
  UNNotificationRequest request(const std::string& identifier, double seconds) {
    return {.identifier = identifier,
            .content = {.title = "Drink"},
            .trigger = UNCalendarNotificationTrigger::fromDate(Date::now() + seconds)};
  }
  UNNotificationRequest badge(const std::string& identifier, std::int64_t number) {
    return {.identifier = identifier, .content = {.badge = number}};
  }
  std::string kept() { return keptIn(folder_); }
  std::vector<std::string> shownAfter(double seconds) {
    environment_.advance(seconds);
    return std::exchange(shower_->shown, {});
  }

  VirtualEnvironment environment_;
  fs::path folder_ = notificationFolder();
  UNUserNotificationCenter center_ = UNUserNotificationCenter::currentNotificationCenter();
  std::shared_ptr<Shower> shower_ = std::make_shared<Shower>();
};

TEST_F(UserNotificationCenterTest, DeliversOnTimeReplacesAndRemovesInTheOrderOfTheCalls) {
  center_.addNotificationRequest(request("late", 3600.25));
  center_.addNotificationRequest(request("moved", 10));
  center_.addNotificationRequest(request("removed", 10));
  center_.addNotificationRequest(request("now", -1));
  center_.addNotificationRequest(request("moved", 20));
  center_.addNotificationRequest(request("early", 20));
  center_.removePendingNotificationRequestsWithIdentifiers({"removed", "late", "unknown"});
  center_.addNotificationRequest(request("late", 3600.25));
  EXPECT_THAT(shownAfter(0), ElementsAre("0: now"));
  EXPECT_EQ(kept(), "moved early late | now");
  EXPECT_THAT(shownAfter(4000), ElementsAre("20: moved", "20: early", "3600: late"));

  center_.addNotificationRequest(request("now", 0));
  EXPECT_THAT(shownAfter(0), ElementsAre("4000: now"));
  EXPECT_EQ(kept(), "| moved early late now") << "the newer one takes the place of the older";
  center_.removeDeliveredNotificationsWithIdentifiers({"moved", "unknown"});
  center_.addNotificationRequest(request("left", 9));
  center_.flush();
  EXPECT_EQ(kept(), "left | early late now");
  center_.removeAllPendingNotificationRequests();
  center_.removeAllDeliveredNotifications();
  EXPECT_THAT(shownAfter(60), IsEmpty());
  EXPECT_EQ(kept(), "|");
}

TEST_F(UserNotificationCenterTest, TheWallClockInTheDevicesZoneDecides) {
  center_.addNotificationRequest(request("set", 7200));
  center_.addNotificationRequest(request("travelled", 86400));
  environment_.settle();
  environment_.setNow(Date::now() - 7200);
  EXPECT_THAT(shownAfter(10000), IsEmpty());
  environment_.setNow(Date::now() + 7200);
  EXPECT_THAT(shownAfter(5), ElementsAre("10005: set")) << "noticed at the next look";
  environment_.setTimeZone(TimeZone::fromIdentifier("Asia/Kathmandu").value());  // 4:45 ahead
  EXPECT_THAT(shownAfter(86400 - 10005 - 4.75 * 3600 - 1), IsEmpty());
  EXPECT_THAT(shownAfter(1), ElementsAre("69300: travelled"));
}

TEST_F(UserNotificationCenterTest, AClockChangeMovesWhatItSkips) {
  environment_.setTimeZone(TimeZone::fromIdentifier("Europe/Berlin").value());
  const auto at = [&](const std::string& identifier, const DateComponents& time) {
    auto timed = request(identifier, 0);
    timed.trigger = UNCalendarNotificationTrigger::triggerWithDateMatchingComponents(time);
    center_.addNotificationRequest(timed);
  };
  at("skipped", {.year = 2024, .month = 3, .day = 31, .hour = 2, .minute = 30});
  at("before", {.year = 2024, .month = 3, .day = 31, .hour = 3, .minute = 10});
  at("repeated", {.year = 2024, .month = 10, .day = 27, .hour = 2, .minute = 45});
  at("after", {.year = 2024, .month = 10, .day = 26, .hour = 27});
  center_.flush();
  environment_.setNow(Date::fromISO8601("2024-03-31T01:09:50Z").value());
  EXPECT_THAT(shownAfter(1300), ElementsAre("10: before", "1210: skipped"));
  environment_.setNow(Date::fromISO8601("2024-10-27T01:10:00Z").value());
  EXPECT_THAT(shownAfter(5), ElementsAre("1305: repeated")) << "02:10, for the second time";
  environment_.setNow(Date::fromISO8601("2024-10-27T02:00:00Z").value());
  EXPECT_THAT(shownAfter(5), ElementsAre("1310: after"));
}

TEST_F(UserNotificationCenterTest, WhatIsDueIsRemovedAsIfItHadBeenDelivered) {
  shower_.reset();
  const auto refill = [&] {
    for (const char* due : {"a", "b", "c"}) center_.addNotificationRequest(request(due, 10));
    center_.addNotificationRequest(request("now", 0));
    center_.addNotificationRequest(request("later", 100));
    environment_.advance(20);
  };
  refill();
  center_.removeAllPendingNotificationRequests();
  center_.flush();
  EXPECT_EQ(kept(), "a b c now |");
  refill();
  center_.removeDeliveredNotificationsWithIdentifiers({"b", "now", "later"});
  center_.removePendingNotificationRequestsWithIdentifiers({"c"});
  center_.addNotificationRequest(request("a", 3600));
  center_.flush();
  EXPECT_EQ(kept(), "later a |");
  refill();
  center_.removeAllDeliveredNotifications();
  center_.flush();
  EXPECT_EQ(kept(), "later |");
}

TEST_F(UserNotificationCenterTest, WhatFellDueWithoutAProcessIsDeliveredOnceByOneOfThem) {
  shower_.reset();
  center_.addNotificationRequest(request("b", 20));
  center_.addNotificationRequest(request("a", 10));
  environment_.advance(100);
  EXPECT_EQ(kept(), "b a |") << "no one is there to show it";

  UNUserNotificationCenter one(folder_);
  UNUserNotificationCenter two(folder_);
  shower_ = std::make_shared<Shower>();
  one.setDelegate(shower_);
  two.setDelegate(shower_);
  EXPECT_THAT(shownAfter(10), UnorderedElementsAre("0: badge 0", "0: a", "0: b", "0: badge 0"));
  center_.addNotificationRequest(request("c", 0));
  EXPECT_THAT(shownAfter(UNUserNotificationCenter::recheckInterval), ElementsAre(HasSubstr("c")));
  EXPECT_EQ(kept(), "| a b c");
}

TEST_F(UserNotificationCenterTest, WhatIsHeldLosesNothing) {
  for (const char* each : {"dropped", "kept", "changed"}) {
    center_.addNotificationRequest(request(each, 50));
  }
  center_.addNotificationRequest(request("due", 5));
  environment_.settle();
  auto held = center_.holdChanges();
  center_.removeAllPendingNotificationRequests();
  center_.addNotificationRequest(request("kept", 70));
  EXPECT_THAT(shownAfter(10), ElementsAre("5: due")) << "removed by nobody yet";
  EXPECT_EQ(kept(), "dropped kept changed | due") << "so it stays if the process ends now";

  UNUserNotificationCenter other(folder_);
  other.addNotificationRequest(request("changed", 60));
  other.addNotificationRequest(request("new", 60));
  other.flush();
  center_.addNotificationRequest(request("changed", 45));
  center_.removePendingNotificationRequestsWithIdentifiers({"new"});
  center_.addNotificationRequest(request("twice", 30));
  center_.addNotificationRequest(request("twice", 40));
  held.reset();
  center_.flush();
  EXPECT_EQ(kept(), "changed new kept twice | due");
  EXPECT_THAT(shownAfter(80), ElementsAre("50: twice", "70: changed", "70: new", "70: kept"));
  center_.addNotificationRequest(request("later", 60));
  center_.removeAllPendingNotificationRequests();
  EXPECT_THAT(shownAfter(80), IsEmpty()) << "what is not held spares nothing";
}

TEST_F(UserNotificationCenterTest, ABadgeIsSetWithoutBeingShown) {
  center_.addNotificationRequest(badge("b.0", 3));
  EXPECT_THAT(shownAfter(0), ElementsAre("0: badge 3"));
  center_.addNotificationRequest(badge("b.0", 3));
  center_.addNotificationRequest(request("text", 0));
  EXPECT_THAT(shownAfter(0), ElementsAre("0: text"));
  center_.addNotificationRequest(badge("b.0", -1));
  EXPECT_THAT(shownAfter(0), ElementsAre("0: badge 0"));
  EXPECT_EQ(kept(), "| text");
}

TEST_F(UserNotificationCenterTest, AsksOnceAndRefusesWhatTheUserHasDenied) {
  std::vector<std::string> answers;
  const auto answer = [&](const auto& result) {
    answers.push_back(result ? "yes" : result.error()->localizedDescription());
  };
  const auto note = [&](const UNNotificationSettings& settings) {
    answers.push_back(JSONEncoder{}.encode(settings));
  };
  center_.addNotificationRequest(request("allowed", 5), answer);
  center_.setNotificationSettings({.authorizationStatus = UNAuthorizationStatus::denied});
  center_.requestAuthorizationWithOptions(everyOption, [&](const Result<bool>& granted) {
    answers.push_back(*granted ? "granted" : "denied");
  });
  center_.addNotificationRequest(request("denied", 0), answer);
  EXPECT_THAT(shownAfter(60), IsEmpty());
  EXPECT_EQ(kept(), "|");
  EXPECT_THAT(std::exchange(answers, {}),
              ElementsAre("yes", "denied", "The user does not allow notifications."));

  center_.setNotificationSettings({});
  center_.requestAuthorizationWithOptions(UNAuthorizationOptions::badge);
  center_.getNotificationSettingsWithCompletionHandler(note);
  center_.setNotificationCategories({{.identifier = "\xff"}});
  center_.addNotificationRequest(request("\xff", 0), answer);
  center_.addNotificationRequest(request("written", 0), answer);
  EXPECT_THAT(shownAfter(0), ElementsAre("60: written"));
  EXPECT_THAT(answers, UnorderedElementsAre(HasSubstr(R"(:2,"alertSetting":1,)"),
                                            HasSubstr("request.identifier"), "yes"));
  EXPECT_THAT(environment_.reports(),
              ElementsAre(HasSubstr("not allow"), HasSubstr("categories[0].identifier"),
                          HasSubstr("request.identifier")));
}

TEST_F(UserNotificationCenterTest, KeepsTheCopyOfAnAttachmentAsLongAsARequestHasIt) {
  const auto original = environment_.directories().temporary / "ring.png";
  std::ofstream(original) << "PNG";
  const auto attachment = UNNotificationAttachment::attachmentWithIdentifier("a", original).value();
  fs::remove(original);
  EXPECT_FALSE(UNNotificationAttachment::attachmentWithIdentifier("a", original));
  EXPECT_FALSE(UNNotificationAttachment::attachmentWithIdentifier("a", original.parent_path()));

  auto attached = request("a", 5);
  attached.content.attachments = {attachment};
  auto hostile = request("hostile", 3600);
  hostile.content.attachments = {{"x", (folder_ / "attachments" / "..").string()},
                                 {"y", (folder_ / "notifications.sqlite").string()}};
  center_.addNotificationRequest(attached);
  center_.addNotificationRequest(hostile);
  environment_.advance(10);
  center_.removePendingNotificationRequestsWithIdentifiers({"hostile"});
  center_.flush();
  EXPECT_EQ(kept(), "| a");
  EXPECT_EQ(NSFileManager::contents(attachment.url).value(), "PNG");
  center_.removeAllDeliveredNotifications();
  center_.flush();
  EXPECT_FALSE(NSFileManager::exists(attachment.url));
}

TEST_F(UserNotificationCenterTest, DamageCostsNoMoreThanWhatItHit) {
  const std::string ofHit =
      " WHERE number = (SELECT number FROM notifications WHERE identifier = 'hit')";
  const std::pair<std::string, std::string> damages[] = {
      {"UPDATE contents SET request = replace(request, 'Level\":1', 'Level\":9')", "hit whole |"},
      {"UPDATE contents SET request = '{\"identifier\":\"x\"}'" + ofHit, "whole |"},
      {"DELETE FROM contents" + ofHit, "whole |"},
      {"UPDATE records SET text = replace(text, '\"badge\":0', '\"badge\":[]')", "hit whole |"},
      {"DELETE FROM records", "hit whole |"}};
  std::size_t told = 0;
  for (const auto& [sql, left] : damages) {
    center_.removeAllDeliveredNotifications();
    center_.addNotificationRequest(request("hit", 30));
    center_.addNotificationRequest(request("whole", 40));
    center_.flush();
    runSql(folder_, sql);
    EXPECT_EQ(kept(), left) << sql;
    center_.requestAuthorizationWithOptions(everyOption);
    EXPECT_THAT(shownAfter(60), SizeIs(left == "whole |" ? 1 : 2)) << sql;
    EXPECT_GT(environment_.reports().size(), std::exchange(told, environment_.reports().size()));
  }

  fs::remove(folder_ / "notifications.sqlite");
  fs::create_directory(folder_ / "notifications.sqlite");
  center_.addNotificationRequest(request("lost", 0), [](const Result<void>& done) {
    EXPECT_THAT(done.error()->localizedDescription(), HasSubstr("notifications.sqlite"));
  });
  EXPECT_THAT(shownAfter(60), IsEmpty());
  EXPECT_THAT(environment_.reports(), SizeIs(told + 1)) << "once, not at each look";
}

TEST_F(UserNotificationCenterTest, OlderDeliveredOnesGiveWay) {
  ASSERT_TRUE(addTo(folder_, "", 150));
  EXPECT_THAT(shownAfter(5), SizeIs(150));
  EXPECT_THAT(NotificationStore(folder_).records().delivered, SizeIs(100));
  EXPECT_THAT(kept(), StartsWith("| 50 51 "));
}

TEST(NotificationStore, ProcessesLoseNothingOfEachOther) {
  const VirtualEnvironment environment;
  const auto folder = notificationFolder();
  workInProcesses(3, 2, [&](int worker) {
    for (int i = 0; i < 10; ++i) {
      EXPECT_TRUE(addTo(folder, std::to_string(worker) + "." + std::to_string(i)));
    }
  });
  EXPECT_THAT(NotificationStore(folder).records().pending, SizeIs(60));
  EXPECT_THAT(environment.reports(), IsEmpty());
}

TEST(NotificationStore, AProcessThatEndsLeavesAllOrNothingOfABatch) {
  const VirtualEnvironment environment;
  const auto folder = notificationFolder();
  EXPECT_TRUE(endedWell(startProcess([&] {
    EXPECT_TRUE(addTo(folder, "whole"));
    (void)NotificationStore(folder).change([&](NotificationRows& rows) -> Result<void> {
      TRY(rows.removePending({"whole"}));
      TRY(rows.add({.identifier = "half"}, Date::now()));
      _exit(0);
    });
  })));
  EXPECT_EQ(keptIn(folder), "whole |");
  EXPECT_TRUE(endedWell(startProcess([&] {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit full{.rlim_cur = 100'000, .rlim_max = RLIM_INFINITY};
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &full), 0);
    EXPECT_FALSE(addTo(folder, "large", 100, std::string(5000, 'x')));
    EXPECT_EQ(keptIn(folder), "whole |");
    EXPECT_TRUE(addTo(folder, "small"));
  })));
  EXPECT_EQ(keptIn(folder), "whole small |");
}

TEST(NotificationStore, TakesTheFileOfAnOlderVersionOverOnce) {
  VirtualEnvironment environment;
  const auto folder = notificationFolder();
  fs::create_directories(folder);
  NotificationRecords older{.badge = 3};
  older.authorize(everyOption);
  older.pending = {{.identifier = "b", .content = {.body = "x"}}, {.identifier = "a"}};
  older.delivered = {{.date = Date::now() - 60, .request = {.identifier = "d"}}};
  const std::string json = JSONEncoder{}.encode(older);
  const auto write = [&](const std::string& text) {
    std::ofstream(folder / "notifications.json") << text;
  };
  write(json);
  EXPECT_EQ(NotificationStore(folder).records(), older);
  EXPECT_EQ(NSFileManager::contents(folder / "notifications.json.old").value(), json);
  ASSERT_TRUE(addTo(folder, "c"));
  write(json);  // as a process leaves it that ends before it has renamed the file
  EXPECT_EQ(keptIn(folder), "b a c | d");
  EXPECT_FALSE(fs::exists(folder / "notifications.json"));
  EXPECT_EQ(fs::status(folder / "notifications.sqlite").permissions(),
            fs::perms::owner_read | fs::perms::owner_write);

  fs::remove(folder / "notifications.sqlite");
  write(R"({"pending":[5,{"identifier":"x"},{"identifier":"e","content":{}}],"delivered":{}})");
  EXPECT_EQ(keptIn(folder), "e |");
  EXPECT_TRUE(fs::exists(folder / "notifications.json.corrupt"));
  EXPECT_THAT(environment.reports(), ElementsAre(HasSubstr("pending[0]")));
}

TEST(NotificationStore, ADatabaseThatIsNoneIsKeptAside) {
  const VirtualEnvironment environment;
  const auto file = (notificationFolder() / "notifications.sqlite").string();
  ASSERT_TRUE(addTo(notificationFolder(), "lost", 100));
  const std::string good = NSFileManager::contents(file).value();
  const std::string second = good.substr(0, 4096) + std::string(good.size() - 4096, 'x');
  std::string mark = ".corrupt";
  for (const std::string& damaged : {std::string(9000, 'x'), second}) {
    std::ofstream(file) << damaged;
    EXPECT_EQ(keptIn(notificationFolder()), "|");
    EXPECT_TRUE(addTo(notificationFolder(), "added"));
    EXPECT_EQ(keptIn(notificationFolder()), "added |");
    EXPECT_EQ(NSFileManager::contents(file + std::exchange(mark, ".corrupt.2")).value(), damaged);
  }
  EXPECT_FALSE(environment.reports().empty());
  runSql(notificationFolder(), "PRAGMA user_version = 99");
  EXPECT_FALSE(addTo(notificationFolder(), "lost"));
  EXPECT_THAT(environment.reports().back(), HasSubstr("newer version"));
}

std::atomic<std::int64_t> steps = 0;
std::atomic<int> commits = 0;

int noteStatement(unsigned, void*, void* statement, void*) {
  auto* const ended = static_cast<sqlite3_stmt*>(statement);
  steps += sqlite3_stmt_status(ended, SQLITE_STMTSTATUS_VM_STEP, 1);
  if (std::string_view(sqlite3_sql(ended)) == "COMMIT") ++commits;
  return 0;
}

TEST_F(UserNotificationCenterTest, ABatchIsOneTransactionAndItsWorkGrowsWithItAlone) {
  const auto watch = reinterpret_cast<void (*)()>(+[](sqlite3* connection) {
    return sqlite3_trace_v2(connection, SQLITE_TRACE_PROFILE, noteStatement, nullptr);
  });
  sqlite3_auto_extension(watch);
  shower_.reset();
  UNUserNotificationCenter center(folder_);
  const auto stepsForBatch = [&](int from, int count) {
    std::promise<void> asked;
    center.getNotificationSettingsWithCompletionHandler(
        [&](const auto&) { asked.get_future().wait(); });
    for (int i = from; i < from + count; ++i) {
      center.addNotificationRequest(request(std::to_string(i), 60 + i));
    }
    steps = commits = 0;
    asked.set_value();
    center.flush();
    EXPECT_EQ(commits, 1);
    return steps.load();
  };
  (void)stepsForBatch(0, 1);
  const auto small = stepsForBatch(1, 500);
  EXPECT_LT(stepsForBatch(501, 5000), 11 * small);
  EXPECT_LT(stepsForBatch(9999, 1), small / 100) << "one among many";
  EXPECT_LT(stepsForBatch(1, 500), small + small / 5) << "the same again";
  sqlite3_cancel_auto_extension(watch);
}

TEST(UserNotifications, KeepTheirForms) {
  const VirtualEnvironment environment;
  const Date date = Date::fromISO8601("2024-03-07T12:30:05.5Z").value();
  NotificationRecords records{.badge = 2};
  records.authorize(UNAuthorizationOptions::alert | UNAuthorizationOptions::sound);
  records.categories = {{.identifier = "nm.c.r",
                         .actions = {{.identifier = "Snooze",
                                      .title = "Later",
                                      .options = UNNotificationActionOptions::foreground,
                                      .icon = UNNotificationActionIcon{"moon.zzz"}}}}};
  const UNNotificationContent content{
      .categoryIdentifier = "nm.c.r",
      .title = "Drink",
      .subtitle = "Water",
      .body = "Now",
      .userInfo = PropertyList::Dictionary{{"a", 1}},
      .badge = 2,
      .sound = UNNotificationSound::soundNamed("Sounds/a.caf"),
      .attachments = {{"r7.a.0", "a.png"}},
      .interruptionLevel = UNNotificationInterruptionLevel::timeSensitive,
      .relevanceScore = 0.4};
  const auto trigger = UNCalendarNotificationTrigger::fromDate(date);
  EXPECT_EQ(trigger->nextTriggerDate(), date - 0.5);
  EXPECT_FALSE(UNCalendarNotificationTrigger::fromDate(Date::now()));
  records.pending = {{.identifier = "r7.a.0", .content = content, .trigger = trigger}};
  records.delivered = {{.date = date, .request = {.identifier = "c20240307.a"}}};
  expectFixture("NotificationRecords", records);

  const auto byHand = JSONDecoder{}.decode<UNNotificationContent>(
      R"({"categoryIdentifier":"nm.c.r","title":"Drink","userInfo":{"a":1},"later":[]})");
  EXPECT_EQ(byHand,
            (UNNotificationContent{
                .categoryIdentifier = "nm.c.r", .title = "Drink", .userInfo = content.userInfo}));
  expectRawValues<UNNotificationActionOptions>({0, 1, 4});
  expectRawValues<UNAuthorizationStatus>({0, 1, 2});
  expectRawValues<UNNotificationSetting>({0, 1, 2});
  EXPECT_EQ(everyOption.rawValue, 7);
}

}  // namespace
}  // namespace platform
