#include "Foundation/Coding/JSON.h"
#include "VelloroBackup/BackupOptions.h"
#include "VelloroBackup/VelloroJSONBackup.h"

#include <string>

#include <gmock/gmock.h>

namespace velloro {
namespace {

const std::string start = R"({"version":7,"timestamp":"2024-03-07T03:00:00Z","tasks":[)";

VelloroJSONBackupTask taskOf(const std::string& fields) {
  return VelloroJSONBackup::fromJSON(start + "{" + fields + "}]}").tasks.front();
}

/// What `typeSpeed` reads as, written again.
std::string speedsOf(const std::string& json) {
  return JSONEncoder{}.encode(
      JSONDecoder{.isStrict = true}.decode<VelloroJSONBackupTaskSpeedContainer>(json));
}

TEST(VelloroJSONBackup, ReadsWhatIsThereAlone) {
  const auto backup = VelloroJSONBackup::fromJSON(start + R"(],"later":{}})");
  EXPECT_EQ(backup.version, 7);
  EXPECT_EQ(backup.jsonData(), start + "]}");
  EXPECT_EQ(taskOf(R"("status":"N")"), VelloroJSONBackupTask{.status = TaskStatus::normal});
}

TEST(VelloroJSONBackup, FailsWithThePathToWhatIsWrong) {
  for (const auto& [json, complaint] :
       {std::pair(R"({"version":1,"timestamp":"2024-03-07T03:00:00Z"})",
                  "The key \"tasks\" is missing."),
        {R"({"version":1,"timestamp":"2024-03-07T03:00:00Z","tasks":[{}]})",
         "tasks[0]: The key \"status\" is missing."},
        {R"({"version":1,"timestamp":"2024-03-07T03:00:00Z","tasks":[{"status":"N"},)"
         R"({"status":"N","log":[{"entryDate":20240307}]}]})",
         "tasks[1].log[0]: The key \"entryType\" is missing."},
        {R"({"version":1,"timestamp":"2024-03-07T03:00:00Z","tasks":[{"status":"N",)"
         R"("visualRepresentation":"ic_none"}]})",
         "tasks[0].visualRepresentation: Unable to decode enum"},
        {R"({"version":1,"timestamp":"2024-03-07T03:00:00Z","tasks":[{"status":"N",)"
         R"("createdTimeZone":"Europe/Atlantis"}]})",
         "tasks[0].createdTimeZone: Unable to decode timeZone with value Europe/Atlantis"},
        {R"({"version":1,"timestamp":"2024-03-07T03:00:00Z","tasks":[{"status":"N",)"
         R"("typeSpeed":"fly"}]})",
         "tasks[0].typeSpeed: Unable to decode enum"}}) {
    try {
      (void)VelloroJSONBackup::fromJSON(json);
      ADD_FAILURE() << json;
    } catch (const DecodingError& error) {
      EXPECT_THAT(error.localizedDescription(), ::testing::StartsWith(complaint));
    }
  }
  EXPECT_THROW((void)taskOf(R"("status":"N","daysMode":"moon")"), DecodingError)
      << "an unknown text is no damage that could be passed over";
}

TEST(VelloroJSONBackup, ReadsSpeedsInFiveForms) {
  for (const auto& [json, written] :
       {std::pair(R"("run")", R"(["run"])"),
        {R"(["run","walk"])", R"(["walk","run"])"},
        {R"(["yoga"])", R"(["yoga"])"},
        {"[]", "[]"},
        {R"({"_familyActivitySelection":[1]})", R"({"_familyActivitySelection":[1]})"},
        {R"("run,walk,fly")", R"(["walk","run"])"},
        {R"("fly,yoga")", R"(["yoga"])"},
        {R"("yoga,run")", R"(["run"])"}}) {
    EXPECT_EQ(speedsOf(json), written) << json;
  }
  for (const char* json : {R"("")", R"("fly")", R"(["fly"])", R"(["run","fly"])", "3", "null"}) {
    EXPECT_THROW((void)speedsOf(json), DecodingError) << json;
  }
}

TEST(VelloroJSONBackup, ReadsIconsWithAndWithoutPrefix) {
  for (const auto& [text, written] : {std::pair("ic_book", "ic_book"),
                                      {"book", "ic_book"},
                                      {"sf_star", "sf_star"},
                                      {"sf_", "sf_"},
                                      {"ic_star.none", ""},
                                      {"", ""}}) {
    const auto visual = VelloroJSONBackupVisualRepresentation::fromText(text);
    EXPECT_EQ(visual ? visual->text() : "", written) << text;
  }
  EXPECT_FALSE(VelloroJSONBackupVisualRepresentation::of(IconVisualRepresentation::emoji("🚲")));
}

TEST(VelloroJSONBackup, HasThePeriodOfAnEntry) {
  VelloroJSONBackupTaskEntry entry{.entryDate = {2024, 3, 12},
                                   .entryPeriodFrom = YYYYMMDD{2024, 3, 3},
                                   .entryPeriodType = TaskFrequencyPeriodType::week};
  EXPECT_EQ(entry.period(), TaskLogEntryPeriod(TaskFrequencyPeriodType::day, {2024, 3, 12},
                                               {2024, 3, 12}, {2024, 3, 12}));
  entry.entryPeriodTo = YYYYMMDD{2024, 3, 9};
  EXPECT_EQ(entry.period().date, (YYYYMMDD{2024, 3, 9}));
}

TEST(VelloroJSONBackup, ConvertsRemindersThatAreWhole) {
  using Reminder = VelloroJSONBackupTaskNotificationSettingsReminder;
  using enum TaskReminder::TriggerType;
  const VelloroJSONBackupTaskNotificationSettingsTriggerRegion region{.latitude = 52};
  EXPECT_FALSE(Reminder{}.taskReminder());
  for (const auto type :
       {timeOfDay, timeOfDayMuted, location, durationAfterStart, durationBeforeFinish}) {
    EXPECT_FALSE(Reminder{.triggerType = type}.taskReminder());
    const Reminder whole{.triggerType = type,
                         .timeOfDay = HHMMSS{.h = 8},
                         .days = DaysOfWeek::monday,
                         .region = region,
                         .duration = 60};
    const auto reminder = whole.taskReminder();
    ASSERT_TRUE(reminder);
    EXPECT_EQ(reminder->trigger.type, type);
    const Reminder again = codableTaskReminder(*reminder);
    EXPECT_EQ(again.identifier, reminder->uniqueId);
    EXPECT_EQ(again.region.has_value(), type == location);
    EXPECT_EQ(again.taskReminder(), reminder);
  }
}

TEST(VelloroJSONBackup, NamesItsFormats) {
  EXPECT_EQ(backupFormat("velloro"), VelloroBackupFormat::json);
  EXPECT_EQ(backupFormat("CSV"), std::nullopt);
  EXPECT_EQ(typeIdentifier(VelloroBackupFormat::csv), "public.comma-separated-values-text");
  const VelloroJSONBackupCategory category{
      .title = "Home", .displayProperties = IconVisualRepresentation::DisplayProperties{}};
  EXPECT_THAT(JSONEncoder{}.encode(category), ::testing::Not(::testing::HasSubstr("display")));
}

}  // namespace
}  // namespace velloro
