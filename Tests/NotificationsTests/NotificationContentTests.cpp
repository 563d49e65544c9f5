#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Notifications/NotificationContentBuilder.h"
#include "Support/SampleTasks.h"

#include <filesystem>
#include <string>
#include <vector>

namespace velloro {
namespace {

using Status = CompletionStatus::Status;

ComplicationSnapshotDisplayRepresentation look(std::string storedIcon) {
  return {.visualRepresentation = {std::move(storedIcon)}, .displayProperties = {}};
}

struct NotificationContentBuilding : testing::Test {
  NotificationContentBuilding() {
    environment.setResources(VELLORO_RESOURCES);
    data.task = fullSampleTask();
    data.task.shareStatus = TaskShareStatus::notShared;
    data.task.externalUrl.reset();
    data.task.titleIcon.reset();
    data.task.displayRepresentation = look("ic_book");
    data.task.streak = StreakRecord(1200, 1300);
    data.task.completionStatus =
        CompletionStatus(Status::positiveIncomplete(SkipMode::willMissWithIndicator),
                         TaskProgressDiscrete{.period = DatedPeriod::fromDate(
                                                  {2024, 3, 7}, TaskFrequencyPeriodType::day,
                                                  DayOfWeek::monday, {})});
  }

  [[nodiscard]] NotificationContent reminder() const {
    return builder.reminder({.id = NotificationID::reminder({2024, 3, 7}, data.task.taskId, 0),
                             .displayTitle = title,
                             .body = "Time to read.",
                             .data = data,
                             .sound = SoundEffect::glow,
                             .trigger = trigger});
  }

  VirtualEnvironment environment;
  NotificationContentBuilder builder{.now = Date::fromISO8601("2024-03-07T12:00:00Z").value()};
  TaskDisplayTitle title{.localizedPrimary = "Read"};
  NotificationData data;
  std::optional<NotificationTrigger> trigger;
};

TEST_F(NotificationContentBuilding, RemindersTakeTheirCategoryAndTitlesFromTheTask) {
  using enum NotificationCategory;
  struct Case {
    TaskShareStatus share;
    bool isNegative, hasUrl;
    const char* ownerLook;
    const char* owner;
    NotificationCategory category;
    std::string title, subtitle;
  };
  const auto none = TaskShareStatus::notShared, mine = TaskShareStatus::isSharedWithMe;
  const std::vector<Case> cases = {
      {none, false, false, "mg_AL", "Ada", reminderPositive, "♥︎ Read", ""},
      {none, true, false, "mg_AL", "Ada", reminderNegative, "♥︎ Read", ""},
      {none, false, true, "", "", reminderPositiveWithURL, "♥︎ Read", ""},
      {none, true, true, "", "", reminderNegativeWithURL, "♥︎ Read", ""},
      {mine, false, true, "mg_AL", "Ada", reminderPositiveSharedWithMe, "(AL) Ada", "♥︎ Read"},
      {mine, true, false, "em_🚲", "Ada", reminderNegativeSharedWithMe, "🚲 Ada", "♥︎ Read"},
      {mine, false, false, "ic_book", "Ada", reminderPositiveSharedWithMe, "Ada", "♥︎ Read"},
      {mine, false, false, "mg_AL", "", reminderPositiveSharedWithMe, "(AL)", "♥︎ Read"},
      {mine, false, false, "ic_book", "", reminderPositiveSharedWithMe, "♥︎ Read", ""},
  };
  data.task.titleIcon = TaskDisplayTitle::TitleIcon::health;
  for (const Case& each : cases) {
    SCOPED_TRACE(std::string(rawValue(each.category)) + each.title);
    data.task.shareStatus = each.share;
    data.task.externalUrl = each.hasUrl ? std::optional<std::string>("a:b") : std::nullopt;
    data.task.completionStatus.status =
        each.isNegative ? Status::negativeComplete(SkipMode::willMissWithIndicator)
                        : Status::positiveIncomplete(SkipMode::willMissWithIndicator);
    data.task.shareOwnerDisplayRepresentation = look(each.ownerLook);
    data.task.shareOwnerDisplayName = each.owner;
    const UNNotificationContent content = reminder().request().content;
    EXPECT_EQ(content.categoryIdentifier, rawValue(each.category));
    EXPECT_EQ(content.title, each.title);
    EXPECT_EQ(content.subtitle, each.subtitle);
    EXPECT_EQ(content.sound->name, "Sounds/sfx_glow_neutral.caf");
    EXPECT_EQ(NotificationData::fromUserInfo(content.userInfo), data);
  }
  builder.isVoiceOverRunning = true;
  EXPECT_EQ(reminder().title, "Read");
}

TEST_F(NotificationContentBuilding, AnImageIsMadeForTheNextDayOfWhatLooksTheSameThen) {
  struct Case {
    double secondsAhead;
    const char* icon;
    bool hasImage;
  };
  for (const auto& [secondsAhead, icon, hasImage] :
       std::vector<Case>{{86400, "ic_book", true},
                         {86401, "ic_book", false},
                         {60, "mg_AL", true},
                         {60, "ic_activity_rings", false},
                         {60, "ic_no_such", false}}) {
    SCOPED_TRACE(icon);
    trigger = NotificationTrigger{builder.now + secondsAhead};
    data.task.displayRepresentation = look(icon);
    EXPECT_EQ(reminder().imageUrl.has_value(), hasImage);
  }
  trigger.reset();
  data.task.displayRepresentation = look("ic_book");
  const auto first = reminder();
  ASSERT_TRUE(first.imageUrl);
  EXPECT_EQ(reminder().imageUrl, first.imageUrl);
  EXPECT_EQ(first.request().content.attachments.size(), 1U);
  data.task.displayRepresentation = look("mg_JD");
  const auto letters = NSFileManager::contents(*reminder().imageUrl);
  data.task.displayRepresentation = look("mg_AL");
  EXPECT_NE(NSFileManager::contents(*reminder().imageUrl).value(), letters.value());
  data.task.completionStatus.status = Status::positiveComplete;
  EXPECT_NE(reminder().imageUrl, first.imageUrl);
  // An image that is gone drops only itself.
  std::filesystem::remove(*first.imageUrl);
  EXPECT_TRUE(first.request().content.attachments.empty());
  EXPECT_EQ(first.request().content.body, "Time to read.");
}

TEST_F(NotificationContentBuilding, CompletionsSayWhatWasDone) {
  using enum RelevanceLevel;
  struct Case {
    bool isTimer, isNegative, isPartial;
    RelevanceLevel level;
    const char* body;
    const char* succinct;
  };
  const std::vector<Case> cases = {
      {false, false, false, taskCompletion, "Well done! (streak: 1,200, best: 1,300)",
       "Well done!"},
      {false, false, true, taskPartialCompletion, "Well done!", ""},
      {false, true, false, taskMiss, "Not this time. Don’t give up!", ""},
      {false, true, true, taskPartialMiss, "Not this time. Don’t give up!", ""},
      {true, false, false, taskTimedCompletion,
       "Time’s up, well done! (streak: 1,200, best: 1,300)", "Time’s up, well done!"},
      {true, false, true, taskTimedPartialCompletion, "Time’s up, well done!", ""},
      {true, true, false, taskTimedCompletion, "Time’s up, well done!", ""},
  };
  data.succinctBody = "an old one";
  for (const auto& [isTimer, isNegative, isPartial, level, body, succinct] : cases) {
    SCOPED_TRACE(body);
    const auto content = builder.completion({.displayTitle = title,
                                             .data = data,
                                             .isPartial = isPartial,
                                             .isTimer = isTimer,
                                             .isNegative = isNegative,
                                             .sound = SoundEffect::system});
    EXPECT_EQ(content.notificationId.str, "c20240307." + data.task.taskId.stringValue());
    EXPECT_EQ(content.body, body);
    EXPECT_EQ(content.data->succinctBody.value_or(""), succinct);
    EXPECT_EQ(content.relevanceLevel, level);
    EXPECT_EQ(content.request().content.sound, UNNotificationSound::defaultSound());
  }
}

TEST_F(NotificationContentBuilding, TimersAndBadgesHaveFormsOfTheirOwn) {
  const NotificationContentBuilder::TimedProgress run{
      .id = NotificationID::timedProgress(data.task.taskId, 1),
      .duration = 630,
      .displayTitle = title,
      .data = data,
      .timeSensitive = true};
  const auto remaining = builder.timedProgressRemaining(run).request();
  EXPECT_EQ(remaining.content.categoryIdentifier, "nm.tt.pr");
  EXPECT_NE(remaining.content.title.find("10 minutes, 30 seconds"), std::string::npos);
  EXPECT_EQ(remaining.content.body, "Read");
  EXPECT_FALSE(remaining.content.sound);
  EXPECT_EQ(remaining.content.interruptionLevel, UNNotificationInterruptionLevel::timeSensitive);
  EXPECT_EQ(builder.timedProgressCompleted(run).request().content.categoryIdentifier, "nm.tt.pc");

  environment.setNow(builder.now);
  const auto next = builder.badge({.date = builder.now + 60, .badge = 0}, 1).request();
  EXPECT_EQ(next.identifier, "b.1");
  EXPECT_EQ(next.content.badge, -1);
  EXPECT_EQ(next.trigger->nextTriggerDate(), builder.now + 60);
  EXPECT_FALSE(next.content.hasText());
  // What is due by now goes out at once.
  EXPECT_FALSE(builder.badge({.date = builder.now, .badge = 3}, 0).request().trigger);
}

TEST(NotificationContent, NamesTheFileOfASound) {
  const auto name = [](SoundEffect effect, SoundEffectDirection direction) {
    return soundName(concrete(effect, direction)).value_or("none");
  };
  using enum SoundEffectDirection;
  EXPECT_EQ(name(SoundEffect::chora, negative), "Sounds/sfx_chora_negative.caf");
  EXPECT_EQ(name(SoundEffect::glow, superPositive), "Sounds/sfx_glow_very_positive.caf");
  EXPECT_EQ(name(SoundEffect::system, positive), "none");
  EXPECT_EQ(name(SoundEffect::nilSound, positive), "none");
}

}  // namespace
}  // namespace velloro
