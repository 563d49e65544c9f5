#include "AppTests/Program.h"

#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

class SettingsCommand : public testing::Test {
 protected:
  ~SettingsCommand() override { std::filesystem::remove_all(folder_); }

  [[nodiscard]] std::string here(const std::string& arguments) const {
    return "settings " + arguments + " --store '" + folder_.string() + "'";
  }
  /// What it prints when it goes well.
  [[nodiscard]] std::string told(const std::string& arguments) const {
    const auto result = runProgram(here(arguments));
    EXPECT_EQ(result.exitCode, 0) << arguments << ": " << result.errors;
    return result.output;
  }

 private:
  std::filesystem::path folder_ = std::filesystem::path(testing::TempDir()) /
                                  (std::string("velloro-settings-") +
                                   testing::UnitTest::GetInstance()->current_test_info()->name());
};

TEST_F(SettingsCommand, SetsReadsAndTakesAway) {
  EXPECT_EQ(told("set cloudSyncTasksEnabled false"), "cloudSyncTasksEnabled  local   false\n");
  struct Case {
    std::string set, get, told;
  };
  const std::vector<Case> cases = {
      {"selectedTheme.2 blue.white", "UITheme_2",
       R"("kind":"StringSetting",)"
       R"("tier":"local","value":"blue.white"})"},
      {"UITheme_Filter_Empty x.y", "selectedFilterTheme", R"("value":"x.y"})"},
      {"selectedFilterTheme.f_1 x.y", "UITheme_Filter_f_1", R"("value":"x.y"})"},
      {"Settings.ComplicationSettings.Multi.c '[1,{\"a\":null}]'", "complicationSettings.c",
       R"("value":[1,{"a":null}]})"},
      {"startOfDay 04:00:00", "Settings_StartOfDay", R"("value":14400})"},
      {"imageCacheVersion -3", "imageCacheVersion", R"("value":-3})"},
      {"nmSnoozeDuration 0.1", "nmSnoozeDuration", R"("value":0.1})"},
      {"grandSlamDisabled true", "grandSlamDisabled", R"("value":true})"}};
  for (const auto& [set, get, expected] : cases) {
    (void)told("set " + set);
    EXPECT_THAT(told("get " + get + " --json"), EndsWith(expected + "\n")) << set;
  }
  EXPECT_THAT(told("list"), HasSubstr("  local   14400 (04:00:00)\n"));
  for (const auto& [set, get, expected] : cases) (void)told("unset " + get);
  EXPECT_THAT(told("list --all"), HasSubstr("taskPageIsHidden.3"));
}

TEST_F(SettingsCommand, TellsTheTierOfTheProcess) {
  EXPECT_EQ(told("set startOfDay 03:00:00"), "startOfDay  cloud   10800 (03:00:00)\n");
  EXPECT_EQ(told("get startOfDay --process widget"), "startOfDay  shared  10800 (03:00:00)\n");
  EXPECT_EQ(told("get grandSlamQualifySettings --process widget"),
            "grandSlamQualifySettings  cloud   none\n");
  EXPECT_EQ(told("get startOfWeekSelected --process widget"),
            "startOfWeekSelected  -       false\n");
  EXPECT_EQ(told("set cloudSyncTasksEnabled false"), "cloudSyncTasksEnabled  local   false\n");
  EXPECT_EQ(told("get startOfDay"), "startOfDay  local   0 (00:00:00)\n");
}

TEST_F(SettingsCommand, NamesWhatItCannotUse) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"get startOfDy", "KEY \"startOfDy\": not a setting; did you mean \"startOfDay\"?"},
      {"get ''", "not a setting"},
      {"get selectedTheme", "a page from .0 to .3 follows this name"},
      {"get UITheme_4", "KEY \"UITheme_4\": not a setting"},
      {"get startOfDay.1", "nothing follows this name"},
      {"get complicationSettings", "a point and a name follow this name"},
      {"set themeAppearance x", "nothing is stored of it"},
      {"set grandSlamDisabled yes", "VALUE \"yes\": not a Boolean; write true or false"},
      {"set imageCacheVersion 1.5", "not a whole number"},
      {"set startOfDay 86400", "not a time of day; write one as 03:00:00, or its seconds"},
      {"set startOfDay 24:00:00", "not a time of day; write one as 03:00:00"},
      {"set nmSnoozeDuration nan", "not a number"},
      {"set taskFilterAuto '{'", "VALUE \"{\": not JSON: "},
      {"set appIcon \"$(printf '\\377')\"", "not a text in UTF-8"}};
  for (const auto& [arguments, complaint] : cases) expectRefusal(here(arguments), complaint);
}

}  // namespace
}  // namespace velloro
