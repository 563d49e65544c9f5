#include "AppTests/Program.h"

#include <tuple>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using testing::HasSubstr;

TEST(DayCommand, PrintsOneObject) {
  const auto result = runProgram(
      "day --at 2024-03-07T01:59:59Z --start-of-day 03:00:00 --zone Europe/Berlin "
      "--first-day-of-week mon --json");
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.errors, "");
  EXPECT_EQ(result.output, R"({"day":20240306,"dayOfWeek":3,"start":"2024-03-06T02:00:00Z",)"
                           R"("end":"2024-03-07T02:00:00Z","week":[20240304,20240310],)"
                           R"("fortnight":[20240226,20240310],"month":[20240301,20240331],)"
                           R"("year":[20240101,20241231],)"
                           R"("daysRemaining":{"week":4,"fortnight":4,"month":25,"year":300}})"
                           "\n");
}

TEST(DayCommand, TakesPlaceAndTimeFromItsOptions) {
  const auto result =
      runProgram("--now 2024-03-31T12:00:00Z day --zone Europe/Berlin --locale de_DE");
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.output, HasSubstr("Sonntag, 2024-03-31"));
  EXPECT_THAT(result.output, HasSubstr("23 hours"));
  EXPECT_THAT(result.output, HasSubstr("2024-03-25  to  2024-03-31"));
}

TEST(DayCommand, TellsWhenItsOutputIsLost) {
  for (const char* arguments : {"day >/dev/full", "--help >/dev/full", "day >&-"}) {
    const auto result = runProgram(arguments);
    EXPECT_EQ(result.exitCode, 1) << arguments;
    EXPECT_THAT(result.errors, HasSubstr("cannot write the output")) << arguments;
  }
}

TEST(DayCommand, NamesWhatItCannotUse) {
  const std::tuple<const char*, const char*> cases[] = {
      {"day 20230229", "YYYYMMDD \"20230229\": not a day of the calendar"},
      {"day --at yesterday", "--at \"yesterday\": not an instant"},
      {"day --start-of-day 24:00:00", "--start-of-day \"24:00:00\": not a time of day"},
      {"day --first-day-of-week Monda", "--first-day-of-week \"Monda\": not a weekday"},
      {"day --locale garbage", "--locale \"garbage\": not a locale"},
      {"day --store ''", "--store \"\": not a folder"},
      {"day --at 0000-01-01T00:00:00Z", "lies before the year 1"},
      {"day --zone ../../etc/passwd", "--zone \"../../etc/passwd\": not a time zone"},
      {"day --now 2024-03-07", "--now \"2024-03-07\": not an instant"},
      {"day 20240307 --at 2024-03-07T00:00:00Z", "day excludes --at"},
      {"dayy", "COMMAND \"dayy\": not a command of \"velloro\"; did you mean \"day\"?"},
      {"log", "a command is needed; write one of add, list, undo"},
      {"log night", "\"night\": not a command of \"velloro log\"; write one of add"},
      {"log add --nigh", "--nigh: not expected here; see \"velloro log add --help\""},
      {"log --nigh", "--nigh: not expected here; see \"velloro log --help\""},
      {"day 20240307 --json=5", "json was given"},
      {"", "a command is needed"}};
  for (const auto& [arguments, complaint] : cases) expectRefusal(arguments, complaint);
}

}  // namespace
}  // namespace velloro
