#include "Support/Fixtures.h"
#include "VelloroCore/Advice/ChangeDifficultyCalculator.h"
#include "VelloroCore/Advice/GrandSlam.h"

#include <gtest/gtest.h>

namespace velloro {
namespace {

using Calculator = ChangeDifficultyCalculator;
using Status = CompletionStatus::Status;
using enum VisualRepresentationIntent;

std::string jsonOf(const std::optional<ChangeDifficultyType>& type) {
  return type ? JSONEncoder{}.encode(*type) : "";
}

TEST(GrandSlam, IsADayWithinItsLimits) {
  struct Case {
    const char* statuses;
    GrandSlam::QualifySettings settings;
    bool qualifies;
  };
  const auto usual = GrandSlam::QualifySettings::defaultSettings;
  const Case cases[] = {
      {"c c c s s s", usual, true},
      {"c c c c c", usual, false},
      {"c c c c c m", usual, false},
      {"c c c c c nm", usual, false},
      {"c c c c c a", usual, true},
      {"c c nc_mwi s s s", usual, true},
      {"c c s s s s", usual, false},
      {"c c c c c i_mwi", usual, false},
      {"c c c c c i_mwoi", usual, false},
      {"c c c c c i_swoi", usual, true},
      {"", {}, true},
      {"m nm", {.maxMissed = 2}, true},
      {"i_mwi m", {.maxWillMiss = 0}, false},
      {"i_swi s", {.minComplete = 1}, false},
  };
  for (const auto& [text, settings, qualifies] : cases) {
    std::vector<Status> statuses;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
      statuses.push_back(Status::fromStringValue(word).value());
    }
    EXPECT_EQ(settings.qualifies(statuses), qualifies) << text;
  }
}

TEST(DifficultyAdvice, GoesByTheRecentRate) {
  using enum ChangeDifficultyStatus;
  struct Case {
    std::optional<ChangeDifficultyStatus> last;
    const char* status;
    std::pair<int, double> shortTerm, longTerm;
    const char* result;
  };
  const Case cases[] = {
      {{}, "i_mwi", {6, 1}, {30, 1}, R"({"notEnoughSamples":{"_0":6,"_1":7}})"},
      {harderConfirm, "i_mwi", {7, 0.4}, {0, 0}, "easier"},
      {harderCancel, "i_mwi", {7, 1}, {20, 1}, R"({"notEnoughSamples":{"_0":20,"_1":21}})"},
      {easierCancel, "m", {7, 1}, {21, 0.2}, "easier"},
      {{}, "s", {7, 0.85}, {0, 0}, "harder"},
      {{}, "nc_swi", {7, 0.9}, {0, 0}, "harder"},
      {{}, "c", {7, 0.84}, {0, 0}, R"({"goodProgress":{}})"},
      {{}, "c", {7, 0.9}, {0, 0}, R"({"preventedByCurrentStatus":{}})"},
      {{}, "a", {7, 0.3}, {0, 0}, R"({"preventedByCurrentStatus":{}})"},
      {{}, "i_swi", {7, 0.41}, {0, 0}, R"({"goodProgress":{}})"},
  };
  for (const auto& [last, status, shortTerm, longTerm, result] : cases) {
    const Calculator::Question question{
        last,
        Status::fromStringValue(status).value(),
        {PreviousSuccessType::last7, shortTerm.first, shortTerm.second},
        {PreviousSuccessType::last30, longTerm.first, longTerm.second}};
    const auto answer = Calculator{}.recommendedDifficultyDirection(question);
    const auto* way = std::get_if<Calculator::Direction>(&answer.value);
    const bool isEasier = way != nullptr && *way == Calculator::Direction::makeItEasier;
    EXPECT_EQ(way != nullptr
                  ? isEasier ? "easier" : "harder"
                  : JSONEncoder{}.encode(std::get<Calculator::DoNotAdjustReason>(answer.value)),
              result);
    const Calculator interval{.frequency = {.dayMode = DayMode::dayInterval}};
    EXPECT_EQ(interval.recommendedDifficultyDirection(question).value.index(), 1u);
  }
}

TEST(DifficultyAdvice, StepsAlongTheOptions) {
  const auto in = [](DayMode mode, std::int64_t count, std::int64_t steps = 1) {
    return TaskFrequency{.dayMode = mode,
                         .numPartialCompletions = steps,
                         .numCompletions = count,
                         .dayInterval = count};
  };
  const auto water = [](double quantity, TypeUnit unit) {
    return AutomaticTaskType(HealthType::dietaryDrinkWater,
                             TaskTarget{.quantity = quantity, .unit = unit});
  };
  const auto timer = AutomaticTaskType::timer(600, 1, TypeUnit::durationMinutes);
  const AutomaticTaskType standing(HealthType::standHours,
                                   TaskTarget{.quantity = 12, .unit = TypeUnit::durationHours});
  const auto day = [&](std::int64_t steps) { return in(DayMode::specificDaysOfWeek, 7, steps); };
  const auto week = [&](std::int64_t steps) { return in(DayMode::aggregateOverWeek, 7, steps); };
  struct Case {
    Calculator calculator;
    const char* easier;
    const char* harder;
  };
  const Case cases[] = {
      {{.frequency = day(1)}, "", ""},
      {{.frequency = day(3)}, "", ""},
      {{.frequency = day(4)},
       R"({"numPartialCompletions":{"_0":3}})",
       R"({"numPartialCompletions":{"_0":5}})"},
      {{.frequency = day(18)}, R"({"numPartialCompletions":{"_0":17}})", ""},
      {{.frequency = week(18)},
       R"({"numPartialCompletions":{"_0":17}})",
       R"({"numPartialCompletions":{"_0":19}})"},
      {{.frequency = in(DayMode::numberOfDaysInWeek, 1)}, "", R"({"timesPerWeek":{"_0":2}})"},
      {{.frequency = in(DayMode::numberOfDaysInWeek, 7)}, R"({"timesPerWeek":{"_0":6}})", ""},
      {{.frequency = in(DayMode::numberOfDaysInWeek, 7, 4)},
       R"({"timesPerWeek":{"_0":6}})",
       R"({"numPartialCompletions":{"_0":5}})"},
      {{.frequency = in(DayMode::numberOfDaysInFortnight, 14)},
       R"({"timesPerFortnight":{"_0":13}})",
       ""},
      {{.frequency = in(DayMode::numberOfDaysInMonth, 30)},
       R"({"timesPerMonth":{"_0":29}})",
       R"({"timesPerMonth":{"_0":31}})"},
      {{.frequency = in(DayMode::numberOfDaysInYear, 366)}, R"({"timesPerYear":{"_0":365}})", ""},
      {{.frequency = in(DayMode::dayInterval, 30)}, "", R"({"dayInterval":{"_0":29}})"},
      {{.frequency = in(DayMode::dayInterval, 2)}, R"({"dayInterval":{"_0":3}})", ""},
      {{.isNegative = true, .frequency = day(4)}, "", ""},
      {{.frequency = day(4), .titleIntent = hygiene}, "", ""},
      {{.frequency = day(4), .iconIntent = medical}, "", ""},
      {{.automaticTaskType = standing, .frequency = day(4)}, "", ""},
      {{.automaticTaskType = timer, .frequency = day(1), .durationPerCompletion = 600},
       R"({"durationPerCompletion":{"_0":540}})",
       R"({"durationPerCompletion":{"_0":660}})"},
      {{.automaticTaskType = timer, .frequency = day(1), .durationPerCompletion = 5},
       "",
       R"({"durationPerCompletion":{"_0":20}})"},
      {{.automaticTaskType = timer, .frequency = day(4), .durationPerCompletion = 600},
       R"({"numPartialCompletions":{"_0":3}})",
       R"({"numPartialCompletions":{"_0":5}})"},
      {{.automaticTaskType = water(8, TypeUnit::cupsUS),
        .frequency = day(8),
        .iconIntent = dietary},
       R"({"typeQuantityAndNumPartialCompletions":{"_0":7,"_1":7}})",
       R"({"typeQuantityAndNumPartialCompletions":{"_0":9,"_1":9}})"},
      {{.automaticTaskType = water(18, TypeUnit::cupsUS), .frequency = day(18)},
       R"({"typeQuantityAndNumPartialCompletions":{"_0":17,"_1":17}})",
       R"({"typeQuantityAndNumPartialCompletions":{"_0":19,"_1":18}})"},
      {{.automaticTaskType = water(8, TypeUnit::cupsUS), .frequency = day(4)},
       R"({"typeQuantity":{"_0":7}})",
       R"({"typeQuantity":{"_0":9}})"},
      {{.automaticTaskType = water(2, TypeUnit::litres), .frequency = day(2)},
       R"({"typeQuantity":{"_0":1.9}})",
       R"({"typeQuantity":{"_0":2.1}})"},
  };
  for (const auto& [calculator, easier, harder] : cases) {
    EXPECT_EQ(jsonOf(calculator.easierDifficulty()), easier);
    EXPECT_EQ(jsonOf(calculator.harderDifficulty()), harder);
  }
  expectFixture(
      "ChangeDifficultyRecommendation",
      ChangeDifficultyRecommendation{
          ChangeDifficultySource::external(ChangeDifficultySource::ExternalSource::activityMove),
          {ChangeDifficultyType::TypeQuantity{250}}});
  expectRawValues<ChangeDifficultyStatus>(
      {"harder_yes", "harder_no", "easier_yes", "easier_no", "external_yes", "external_no"});
}

}  // namespace
}  // namespace velloro
