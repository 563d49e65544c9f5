#include "Foundation/Process/VirtualEnvironment.h"
#include "Notifications/NotificationCategory.h"
#include "Notifications/NotificationData.h"
#include "Notifications/NotificationID.h"
#include "Notifications/NotificationRelevance.h"
#include "Support/Fixtures.h"
#include "Support/SampleTasks.h"

#include <string>
#include <vector>

namespace velloro {
namespace {

using Reason = NotificationData::Error::Reason;

NotificationData sampleData() {
  return {.reminderId = sampleID(7),
          .task = fullSampleTask(),
          .theme = {.theme = {.colorScheme = ColorScheme::redBlue, .mode = ThemeMode::white},
                    .order = {TaskPageNumber{1}, 2}},
          .succinctBody = "2 left"};
}

TEST(NotificationData, TravelsInUserInfo) {
  expectFixture("NotificationData", sampleData(), DateForm::iso8601);
  const PropertyList userInfo = sampleData().userInfo();
  ASSERT_EQ(userInfo.dictionary()->size(), 1U);
  EXPECT_EQ(NotificationData::fromUserInfo(userInfo), sampleData());
  // As the centre keeps it: plain JSON.
  EXPECT_EQ(NotificationData::fromUserInfo(PropertyList::fromJSON(userInfo.json())), sampleData());

  NotificationData plain = sampleData();
  plain.reminderId.reset();
  plain.succinctBody.reset();
  const PropertyList record = plain.userInfo()["velloro"];
  EXPECT_FALSE(record.dictionary()->contains("reminderId"));
  EXPECT_FALSE(record.dictionary()->contains("sb"));
}

TEST(NotificationData, FailsForAReason) {
  const VirtualEnvironment environment;
  for (const char* json : {"{}", R"({"velloro": 5})", R"({"velloro": [1]})", "[]", "null"}) {
    EXPECT_THROW((void)NotificationData::fromUserInfo(PropertyList::fromJSON(json)),
                 NotificationData::Error)
        << json;
  }
  PropertyList damaged = sampleData().userInfo();
  (*(*damaged.dictionary())["velloro"].dictionary())["task"] = "none";
  EXPECT_THROW((void)NotificationData::fromUserInfo(damaged), DecodingError);
}

TEST(NotificationCategory, HasItsButtons) {
  VirtualEnvironment environment;
  environment.setResources(VELLORO_RESOURCES);
  expectRawValues<NotificationCategory>({"nm.c.tc", "nm.c.r", "nm.c.rn", "nm.c.r.swm",
                                         "nm.c.rn.swm", "nm.c.r.u", "nm.c.rn.u", "nm.c.b",
                                         "nm.st.ao", "nm.st.ao.c", "nm.tt.pc", "nm.tt.pr"});
  std::string buttons;
  for (const UNNotificationCategory& category : notificationCategories()) {
    for (const UNNotificationAction& action : category.actions) {
      buttons += category.identifier + " " + action.identifier.substr(27) + " " +
                 std::to_string(rawValue(action.options)) + " " + action.icon->systemImageName +
                 "\n";
    }
  }
  EXPECT_EQ(buttons,
            "nm.c.r Snooze 1 moon.zzz\n"
            "nm.c.r MarkAsDone 1 checkmark.circle\n"
            "nm.c.rn Snooze 1 moon.zzz\n"
            "nm.c.rn MarkAsMissed 1 multiply.circle\n"
            "nm.c.r.u OpenExternalURL 4 arrow.up.right.square\n"
            "nm.c.r.u Snooze 1 moon.zzz\n"
            "nm.c.r.u MarkAsDone 1 checkmark.circle\n"
            "nm.c.rn.u OpenExternalURL 4 arrow.up.right.square\n"
            "nm.c.rn.u Snooze 1 moon.zzz\n"
            "nm.c.rn.u MarkAsMissed 1 multiply.circle\n"
            "nm.st.ao.c SendMessage 4 message\n");
  EXPECT_TRUE(localizedTitle(NotificationAction::openExternalUrl).ends_with(" \u2197\uFE0E"));
}

TEST(NotificationID, HasAFormForEachKind) {
  const UniqueID task = sampleID(1);
  const std::string id = task.stringValue();
  EXPECT_EQ(NotificationID::reminder({2024, 3, 7}, task, 2).str, "r7." + id + ".2");
  EXPECT_EQ(NotificationID::completion({2024, 3, 7}, task).str, "c20240307." + id);
  EXPECT_EQ(NotificationID::timedProgress(task, 0).str, "tp" + id + ".0");
  EXPECT_EQ(NotificationID::badge(3).str, "b.3");
  EXPECT_EQ(NotificationID::spoken(sampleID(2), task).str,
            "s" + sampleID(2).stringValue() + "." + id);
  const std::vector<std::size_t> counts = {4, 2, 2, 3, 20, 20};
  std::vector<std::size_t> cancelled;
  for (const std::size_t count : {0, 1, 2, 3, 20, 21}) {
    cancelled.push_back(NotificationID::numRemindersToCancel(count));
  }
  EXPECT_EQ(cancelled, counts);
}

TEST(RelevanceLevel, HasItsScore) {
  EXPECT_EQ(relevanceScore(RelevanceLevel::taskTimedCompletion), 0.95);
  EXPECT_EQ(relevanceScore(RelevanceLevel::taskMiss), 0.96);
  EXPECT_EQ(relevanceScore(RelevanceLevel::sharedTaskReminder), 0.35);
  EXPECT_EQ(relevanceScore(RelevanceLevel::reminderLowPriority), 0.3);
}

}  // namespace
}  // namespace velloro
