#include "AppTests/Program.h"
#include "Foundation/Process/VirtualEnvironment.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

class SettingsCommand : public testing::Test {
 protected:
  [[nodiscard]] std::string here(const std::string& arguments) const {
    return "settings " + arguments + " --store '" + folder_.string() + "'";
  }
  /// What it prints when it goes well.
  [[nodiscard]] std::string told(const std::string& arguments) const {
    const auto result = runProgram(here(arguments));
    EXPECT_EQ(result.exitCode, 0) << arguments << ": " << result.errors;
    return result.output;
  }

  const platform::VirtualEnvironment environment_;
  const std::filesystem::path folder_ = environment_.directories().temporary / "store";
};

TEST_F(SettingsCommand, SetsReadsAndTakesAway) {
  EXPECT_EQ(told("set cloudSyncTasksEnabled false"), "cloudSyncTasksEnabled  local   false\n");
  const std::vector<std::tuple<std::string, std::string, std::string>> cases = {
      {"selectedTheme.2 blue.white", "UITheme_2",
       R"("kind":"StringSetting",)"
       R"("tier":"local","value":"blue.white"})"},
      {"UITheme_Filter_Empty red", "selectedFilterTheme", R"("value":"red"})"},
      {"selectedFilterTheme.f_1 red.black", "UITheme_Filter_f_1", R"("value":"red.black"})"},
      {"ck.errors '[{\"date\":0,\"str\":\"x\"}]'", "cloudKitErrors",
       R"("value":[{"date":0,"str":"x"}]})"},
      {"startOfDay 4:00", "Settings_StartOfDay", R"("value":14400})"},
      {"imageCacheVersion 3", "imageCacheVersion", R"("value":3})"},
      {"nmSnoozeDuration 0.1", "nmSnoozeDuration", R"("value":0.1})"},
      {"grandSlamDisabled true", "grandSlamDisabled", R"("value":true})"}};
  for (const auto& [set, get, expected] : cases) {
    (void)told("set " + set);
    EXPECT_THAT(told("get " + get + " --json"), EndsWith(expected + "\n")) << set;
  }
  EXPECT_THAT(
      told("list"),
      HasSubstr("  local   14400 (04:00:00)\n    When a day begins, in seconds since midnight."
                " Default: 0.\n"));
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
  EXPECT_EQ(told("get startOfDay"), "startOfDay  local   10800 (03:00:00)\n");
  EXPECT_EQ(told("get startOfDay --process widget"), "startOfDay  shared  10800 (03:00:00)\n");
}

// Each ends while its observer may be merging what the others save.
TEST_F(SettingsCommand, CommandsAtOnceSucceedAndEndByThemselves) {
  const std::string set = "'" VELLORO_PROGRAM "' " + here("set startOfDay");
  const std::string loop =
      "failures=0; for round in 1 2 3 4 5 6 7 8 9; do pids=; for hour in 1 2 3 4 5 6 7 8; do " +
      set + " 0$hour:00:00 >/dev/null & pids=\"$pids $!\"; done; " +
      "for pid in $pids; do wait $pid || failures=$((failures+1)); done; done; exit $failures";
  EXPECT_EQ(std::system(loop.c_str()), 0);
  const auto value = [&](const char* process) {
    const std::string line = told(std::string("get startOfDay --process ") + process);
    return line.substr(line.find_last_of(' '));
  };
  EXPECT_EQ(value("app"), value("widget"));
}

TEST_F(SettingsCommand, ChoosesWhatIsLogged) {
  EXPECT_THAT(told("list --all"), HasSubstr("debugLog"));
  EXPECT_EQ(told("set debugLog info:settings,database"),
            "debugLog  local   info:settings,database\n");
  EXPECT_EQ(told("set debugLog debug"), "debugLog  local   debug\n");
  (void)told("set startOfDay 04:00:00");
  std::ifstream log(folder_ / "caches" / "debug.log");
  EXPECT_THAT(std::string(std::istreambuf_iterator<char>(log), {}),
              HasSubstr("[Data Manager, DEBUG]"));
  EXPECT_EQ(told("unset debugLog"), "debugLog  local   none\n");
  expectRefusal(here("set debugLog loud"), "VALUE \"loud\": not a level of log lines");
  expectRefusal(here("set debugLog info:sun"), "VALUE \"sun\": not a category of log lines");
}

TEST_F(SettingsCommand, KeepsWhatItMakesFromOthers) {
  namespace fs = std::filesystem;
  const std::string root = folder_.string();
  const std::string program = "'" VELLORO_PROGRAM "' ",
                    inRoot = " --store '" + root + "' >/dev/null";
  const std::string commands = program + "settings set debugLog debug" + inRoot + " 2>&1 && " +
                               program + "task add Read" + inRoot + " && " + program +
                               "ring --png '" + root + "/picture.png'" + inRoot;
  ASSERT_EQ(std::system(("umask 000 && mkdir '" + root + "' && " + commands).c_str()), 0);
  for (const auto& entry : fs::recursive_directory_iterator(folder_)) {
    const fs::perms wanted =
        entry.is_directory() ? fs::perms(0700)
        : entry.path().extension() == ".png" && entry.path().parent_path() == folder_
            ? fs::perms(0666)
            : fs::perms(0600);
    EXPECT_EQ(entry.status().permissions(), wanted) << entry.path();
  }
  EXPECT_EQ(fs::status(folder_).permissions(), fs::perms(0777));
}

TEST_F(SettingsCommand, NamesWhatItCannotUse) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"get startOfDy", "KEY \"startOfDy\": not a setting; did you mean \"startOfDay\"?"},
      {"get selectedTheme", "a page from .0 to .3 follows this name"},
      {"get UITheme_4", "KEY \"UITheme_4\": not a setting"},
      {"get startOfDay.1", "nothing follows this name"},
      {"get complicationSettings", "a point and a name follow this name"},
      {"set themeAppearance x", "nothing is stored of it"},
      {"set grandSlamDisabled yes", "VALUE \"yes\": not a Boolean; write true or false"},
      {"set imageCacheVersion 1.5", "not a version; write a whole number from 0 on"},
      {"set startOfDay 86400", "not a time of day; write one as 4:00, 04:00 or 04:00:00, or as"},
      {"set startOfDay 4", "VALUE \"4\": not a time of day"},
      {"set startOfDay 1800", "not a time of day"},
      {"set startOfDay 4:0", "not a time of day"},
      {"set startOfDay 24:00:00", "not a time of day"},
      {"set startOfDay ''", "VALUE \"\": not a time of day"},
      {"set startOfDay 040000", "not a time of day"},
      {"set nmSnoozeDuration nan", "not a number"},
      {"set nmSnoozeDuration 1e300", "not a number of seconds; write 0 to 86400"},
      {"set selectedTheme.0 blue.pink", "VALUE \"blue.pink\": not a theme; write a scheme"},
      {"set selectedTheme.0 blue.alternate", "not a theme; "},
      {"set themeAutoSwitchDarkMode blak", "not a mode of themes; did you mean \"black\"?"},
      {"set startOfWeekDateComponent 0", "not a weekday; write 1 for Sunday to 7 for Saturday"},
      {"set selectedTaskPage 4", "not a page; write 0 to 3"},
      {"set cloudKitErrors '[{}]'", "nothing reads it: "},
      {"set cloudKitErrors '{'", "VALUE \"{\": nothing reads it: "},
      {"set taskFilterAuto '{}'", "VALUE \"{}\": no program reads this setting yet"},
      {"set deviceId ' '", "VALUE \" \": has nothing that can be seen"},
      {"set appIcon \"$(printf '\\377')\"", "not a text in UTF-8"}};
  for (const auto& [arguments, complaint] : cases) expectRefusal(here(arguments), complaint);
}

}  // namespace
}  // namespace velloro
