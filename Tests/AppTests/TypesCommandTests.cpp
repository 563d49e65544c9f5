#include "AppTests/Program.h"

#include <algorithm>
#include <tuple>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using testing::HasSubstr;

TEST(TypesCommand, TellsOfOneType) {
  const auto result = runProgram("types hk_energy_deficit --period week --json");
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.errors, "");
  EXPECT_EQ(result.output,
            R"({"type":"hk_energy_deficit","period":"week","unitOptions":["kcal","kj"],)"
            R"("speedOptions":["greater_than","less_than"],"defaultTarget":{"quantity":-50000,)"
            R"("unit":"kcal","speeds":["greater_than"]},"ranges":[{"unit":"kcal","first":-50000,)"
            R"("last":50000,"count":1451,"default":-50000}],"partialCompletions":{"minimum":1,)"
            R"("maximum":1,"default":1,"suggested":1},"frequencyModes":["specificDaysOfWeek",)"
            R"("dayInterval","numberOfDaysInWeek","numberOfDaysInFortnight","numberOfDaysInMonth",)"
            R"("aggregateOverWeek"]})"
            "\n");
  EXPECT_THAT(runProgram("types hk_bedtime").output, HasSubstr("22:00:00"));
  EXPECT_THAT(runProgram("types timer --period year").output, HasSubstr("360000"));
}

TEST(TypesCommand, ListsAllTypes) {
  const auto result = runProgram("types");
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(std::ranges::count(result.output, '\n'), 1 + 82);
  EXPECT_THAT(runProgram("types --json").output, HasSubstr(R"("type":"screenTime")"));
}

TEST(TypesCommand, NamesWhatItCannotUse) {
  const std::tuple<const char*, const char*> cases[] = {
      {"types hk_watr", "TYPE \"hk_watr\": not an automatic type; did you mean \"hk_water\"?"},
      {"types vitaminb", "\"hk_dietary_vitaminb6\", \"hk_dietary_vitaminb12\"?"},
      {"types xyz", "not an automatic type; \"velloro types\" lists them"},
      {"types ''", "TYPE \"\": not an automatic type"},
      {"types hk_water --period decade", "--period \"decade\": not a period"}};
  for (const auto& [arguments, complaint] : cases) expectRefusal(arguments, complaint);
}

}  // namespace
}  // namespace velloro
