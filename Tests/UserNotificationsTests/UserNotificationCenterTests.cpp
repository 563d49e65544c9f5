#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/Environment.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Support/Fixtures.h"
#include "Support/Processes.h"
#include "UserNotifications/NotificationStore.h"
#include "UserNotifications/UNUserNotificationCenter.h"

#include <cmath>
#include <fstream>

#include <gmock/gmock.h>

namespace platform {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::UnorderedElementsAre;
namespace fs = std::filesystem;

constexpr auto everyOption =
    UNAuthorizationOptions::alert | UNAuthorizationOptions::sound | UNAuthorizationOptions::badge;

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
  /// "pending | delivered", as a centre of another process reads them.
  std::string kept() {
    NotificationStore store(folder_);
    std::string text;
    for (const auto& pending : store.records().pending) text += pending.identifier + " ";
    text += "|";
    for (const auto& done : store.records().delivered) text += " " + done.request.identifier;
    return text;
  }
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
                          HasSubstr("delivered[0].request.identifier")));
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
                                 {"y", (folder_ / "notifications.json").string()}};
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
  struct Damage {
    std::string whole, broken;
    const char* left;
  };
  const Damage damages[] = {
      {R"("pending":[)", R"("pending":[5,{"identifier":"x"},)", "whole added |"},
      {R"("delivered":[])", R"("delivered":{})", "whole added |"},
      {R"("interruptionLevel":1)", R"("interruptionLevel":9)", "whole added |"},
      {R"("badge":0})", R"("badge":0)", "added |"}};
  const auto file = (folder_ / "notifications.json").string();
  center_.addNotificationRequest(request("whole", 3600));
  center_.flush();
  const std::string good = NSFileManager::contents(file).value();
  std::string mark = ".corrupt";
  for (const auto& [whole, broken, left] : damages) {
    std::string damaged = good;
    damaged.replace(damaged.find(whole), whole.size(), broken);
    std::ofstream(file) << damaged;
    center_.requestAuthorizationWithOptions(everyOption);
    center_.addNotificationRequest(request("added", 60));
    center_.flush();
    EXPECT_EQ(kept(), left) << damaged;
    const auto reports = environment_.reports();
    EXPECT_EQ(NSFileManager::contents(file + mark).value(), damaged);
    mark = ".corrupt." + std::to_string(reports.size() + 1);
  }

  fs::remove(file);
  fs::create_directory(file);
  std::string failure;
  center_.addNotificationRequest(request("lost", 0), [&](const Result<void>& done) {
    failure = done.error()->localizedDescription();
  });
  EXPECT_THAT(shownAfter(60), IsEmpty());
  EXPECT_THAT(failure, HasSubstr("notifications.json"));
  EXPECT_THAT(environment_.reports(), SizeIs(5)) << "each told once, not at each look";
}

TEST(NotificationRecords, OlderDeliveredOnesGiveWay) {
  const VirtualEnvironment environment;
  NotificationRecords records;
  records.authorize(everyOption);
  for (int i = 0; i < 150; ++i) {
    ASSERT_TRUE(records.add({.identifier = std::to_string(i), .content = {.body = "x"}}));
  }
  EXPECT_THAT(records.deliverDue(Date::now()), SizeIs(150));
  ASSERT_THAT(records.delivered, SizeIs(NotificationRecords::maximumDelivered));
  EXPECT_EQ(records.delivered.front().request.identifier, "50");
}

TEST(NotificationStore, ProcessesLoseNothingOfEachOther) {
  const VirtualEnvironment environment;
  const auto folder = notificationFolder();
  workInProcesses(3, 2, [&](int worker) {
    NotificationStore store(folder);
    for (int i = 0; i < 10; ++i) {
      EXPECT_TRUE(store.change([&](NotificationRecords& records) {
        records.authorize(everyOption);
        const auto identifier = std::to_string(worker) + "." + std::to_string(i);
        EXPECT_TRUE(records.add({.identifier = identifier}));
      }));
    }
  });
  EXPECT_THAT(NotificationStore(folder).records().pending, SizeIs(60));
  EXPECT_THAT(environment.reports(), IsEmpty());
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
