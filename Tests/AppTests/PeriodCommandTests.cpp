#include "AppTests/Program.h"

#include <utility>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(PeriodCommand, PrintsOneObject) {
  const auto result = runProgram(
      "period --mode aggregateOverFortnight --date 20000108 --first-day-of-week sunday --json");
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.errors, "");
  EXPECT_EQ(result.output, R"({"mode":"aggregateOverFortnight","date":20000108,)"
                           R"("period":{"type":"fortnight","start":19991226,"finish":20000108},)"
                           R"("previous":{"type":"fortnight","start":19991219,"finish":20000101},)"
                           R"("next":{"type":"fortnight","start":20000102,"finish":20000115},)"
                           R"("numberOfDays":14,"remainingDays":0,"expectedCompletions":7,)"
                           R"("countedOver":"fortnight","isEmpty":false})"
                           "\n");
}

TEST(PeriodCommand, TellsWhatIsExpected) {
  const std::pair<std::string, const char*> cases[] = {
      {"--mode numberOfDaysInWeek --times 3", "expected   3 times in the week"},
      {"--mode numberOfDaysInMonth --times 31 --date 20240229", "expected   31 times in the month"},
      {"--mode dayInterval --interval 31", "No day can ever be due."},
      {"--mode specificDaysOfWeek --partial 0", "No day can ever be due."},
      {"--mode aggregateOverWeek --date 20240306", "2024-03-03  to  2024-03-09"},
      {"--mode specificDaysOfWeek --days mon,Friday", "Thursday, 2024-03-07"}};
  for (const auto& [arguments, told] : cases) {
    const auto result = runProgram("--now 2024-03-07T12:00:00Z --locale en_US period " + arguments);
    EXPECT_EQ(result.exitCode, 0) << arguments;
    EXPECT_EQ(result.errors, "") << arguments;
    EXPECT_THAT(result.output, HasSubstr(told)) << arguments;
  }
  EXPECT_THAT(runProgram("period --mode dayInterval").output, Not(HasSubstr("expected")));
}

TEST(PeriodCommand, NamesWhatItCannotUse) {
  const std::pair<std::string, const char*> cases[] = {
      {"", "--mode is required"},
      {"--mode weekly", "--mode \"weekly\": not a mode; write one of specificDaysOfWeek, "},
      {"--mode dayInterval --interval -1", "--interval \"-1\": not a whole number"},
      {"--mode numberOfDaysInWeek --times 9999999999", "--times \"9999999999\": not a whole"},
      {"--mode specificDaysOfWeek --partial ''", "--partial \"\": not a whole number"},
      {"--mode specificDaysOfWeek --days mon,", "--days \"\": not a weekday"},
      {"--mode dayInterval --days mon", "--days \"mon\": dayInterval makes no use of it"},
      {"--mode numberOfDaysInWeek --first-day-of-week monday", "numberOfDaysInWeek makes no use"},
      {"--mode specificDaysOfWeek --date 20230229", "--date \"20230229\": not a day"},
      {"--mode specificDaysOfWeek --first-day-of-week x", "--first-day-of-week \"x\": not a"}};
  for (const auto& [arguments, complaint] : cases) expectRefusal("period " + arguments, complaint);
}

}  // namespace
}  // namespace velloro
