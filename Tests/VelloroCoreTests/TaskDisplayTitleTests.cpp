#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Foundation/Text/Locale.h"
#include "Support/Fixtures.h"
#include "Support/VisibleText.h"
#include "VelloroCore/Titles/HealthTitle.h"
#include "VelloroCore/Titles/TaskTitleAttributedString.h"
#include "VelloroCore/Titles/TaskTitleFormatter.h"
#include "VelloroCore/Titles/TaskTitleSource.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <vector>

#include <gtest/gtest.h>

namespace velloro {
namespace {

using enum HealthType;
using enum TypeUnit;
using enum TaskDisplayTitle::Context;
using Context = TaskDisplayTitle::Context;
using Quantity = TaskDisplayTitle::Quantity;

/// Has texts of its own, so that the wording of the program's is free.
class TaskDisplayTitleTest : public testing::Test {
 protected:
  TaskDisplayTitleTest() {
    const auto resources = environment_.directories().temporary / "resources";
    std::filesystem::create_directories(resources / "en");
    EXPECT_TRUE(NSFileManager::write(texts, resources / "en" / "Localizable.json"));
    environment_.setResources(resources);
  }

  static constexpr std::string_view texts = R"({
    "TaskTitle.WithQuantity": "{0}: {1}",
    "distance.steps": "{0, plural, one {# step} other {# steps}}",
    "distance.pushes": "{0, plural, one {# push} other {# pushes}}",
    "distance.flights": "{0, plural, one {# flight} other {# flights}}",
    "quantity.drinks": "{0, plural, one {# drink} other {# drinks}}",
    "quantityformatter.volume.ounces": "{0} oz",
    "quantityformatter.volume.litres": "{0} L",
    "quantityformatter.volume.mls": "{0} mL",
    "quantityformatter.mass.mass_mcg": "{0} mcg",
    "volume.cups": "{0, plural, one {# cup} other {# cups}}",
    "distance.km": "Walk or run",
    "DietarySugarLess": "Sugar less than",
    "DietarySugarMore": "Sugar more than",
    "speed.in_bed_before": "In bed before",
    "workout.minutes": "Work out for",
    "PredefinedHealthTaskWorkout": "Workout",
    "healthcategory.subcategory.golf": "Golf",
    "healthcategory.subcategory.yoga": "Yoga"
  })";

  VirtualEnvironment environment_;
  const Locale locale = Locale::fromIdentifier("en_US");
};

std::string text(const std::optional<std::string>& of) {
  return of ? platform::visible(*of) : "absent";
}

AutomaticTaskType typeOf(TaskType type, double quantity, TypeUnit unit, TypeSpeeds speeds = {}) {
  return AutomaticTaskType(type, TaskTarget{quantity, unit, speeds});
}

TaskProgressTimer timerOf(double target, double done, std::int64_t parts = 1,
                          TaskProgressTimer::Unit unit = TaskProgressTimer::Unit::seconds) {
  return {.period = {},
          .unit = unit,
          .expectedCompletions = parts,
          .totalTargetDuration = target,
          .currentCompletionDuration = done};
}

TaskProgressContinuous amountOf(double target, double current, std::int64_t parts = 1) {
  return {
      .period = {}, .expectedCompletions = parts, .targetValue = target, .currentValue = current};
}

TEST_F(TaskDisplayTitleTest, HasATextForEverySurface) {
  struct Case {
    const char* name;
    TaskTitleSource task;
    const char* usual;
    std::vector<std::pair<std::vector<Context>, const char*>> others;
  };
  const std::vector<Context> withoutQuantity = {appleWatchComplicationTimedTaskTitle,
                                                appleWatchComplicationWithoutQuantity,
                                                iPhoneSiriVocabulary, notificationWithoutQuantity};
  const std::vector<Context> numberOnly = {appleWatchComplicationNumerator, notificationBracket};
  const std::vector<Context> picker = {iPhoneEditPicker};
  const std::vector<Context> brief = {iPhoneSiriIntent, iPhoneEditPickerSubTitle};
  const Case cases[] = {
      {"plain", {.title = "Read"}, "Read", {}},
      {"timer",
       {.title = "Read",
        .automaticTaskType = typeOf(TaskType::timer(), 600, durationSeconds),
        .isTimed = true,
        .progress = timerOf(600, 590)},
       "Read: 00:10",
       {{withoutQuantity, "Read"},
        {picker, "10 sec"},
        {brief, "Read: 10s"},
        {{voiceOver}, "Read: 10 sec"},
        {{notificationWithQuantity}, "Read: 10 seconds"}}},
      {"5 km",
       {.automaticTaskType = typeOf(runOrWalk, 5, distanceKm)},
       "Walk or run: 5.0 km",
       {{withoutQuantity, "Walk or run"}, {numberOnly, "Walk or run: 5.0"}, {picker, "5.0 km"}}},
      {"0.04 km",
       {.automaticTaskType = typeOf(runOrWalk, 5, distanceKm), .progress = amountOf(5, 4.96)},
       "Walk or run: 0.1 km",
       {{withoutQuantity, "Walk or run"}, {numberOnly, "Walk or run: 0.1"}, {picker, "0.1 km"}}},
      {"8 cups",
       {.title = "Drink", .automaticTaskType = typeOf(dietaryDrinkWater, 8, cupsUS)},
       "Drink: 8 cups",
       {{withoutQuantity, "Drink"}, {numberOnly, "Drink: 8"}, {picker, "8 cups"}}},
      {"sleep",
       {.title = "Sleep", .automaticTaskType = typeOf(sleep, 7.5, durationHours)},
       "Sleep: 7 Hr, 30 Min",
       {{withoutQuantity, "Sleep"}, {picker, "7 Hr, 30 Min"}}},
      {"sugar",
       {.automaticTaskType = typeOf(dietarySugar, 40, grams), .isNegative = true},
       "Sugar less than: 40 g",
       {{withoutQuantity, "Sugar less than"},
        {numberOnly, "Sugar less than: 40"},
        {picker, "40 g"}}},
      {"bedtime",
       {.automaticTaskType = typeOf(bedtime, 79200, timeOfDay, {TypeSpeed::inBedBefore})},
       "In bed before: 10:00 PM",
       {{withoutQuantity, "In bed before"}, {picker, "10:00 PM"}}},
      {"screen time",
       {.title = "Social media",
        .automaticTaskType = typeOf(TaskType::screenTime(), 90, durationMinutes),
        .isTimed = true,
        .progress = timerOf(5400, 600)},
       "Social media: 1:30:00",
       {{withoutQuantity, "Social media"},
        {picker, "1 hr, 30 min"},
        {brief, "Social media: 1h 30m"},
        {{voiceOver}, "Social media: 1 hr, 30 min"},
        {{notificationWithQuantity}, "Social media: 1 hour, 30 minutes"}}}};
  for (const Case& each : cases) {
    const auto title = TaskDisplayTitle::build(each.task, locale);
    for (const Context context : allCases<Context>()) {
      const char* wanted = each.usual;
      for (const auto& [contexts, other] : each.others) {
        if (std::ranges::find(contexts, context) != contexts.end()) wanted = other;
      }
      EXPECT_EQ(text(title.localizedTitle(context, locale)), wanted)
          << each.name << ", " << rawValue(context);
    }
  }
}

TEST_F(TaskDisplayTitleTest, WritesAmountsByUnit) {
  const std::tuple<Quantity, const char*, const char*> cases[] = {
      {{{}, {0, distanceKm}}, "0.0 km", "0.0"},
      {{{}, {4.96, distanceKm}}, "5.0 km", "5.0"},
      {{{}, {1500, distanceMeters}}, "1,500 m", "1,500"},
      {{{}, {0.3 - 0.2, distanceMiles}}, "0.1 mi", "0.1"},
      {{{}, {25, distanceYards}}, "25 yd", "25"},
      {{{}, {1, steps}}, "1 step", "1"},
      {{{}, {3 * 0.1 / 0.3, pushes}}, "1 push", "1"},
      {{{}, {1.5, drinks}}, "1.5 drinks", "2"},
      {{{}, {0.4, fluidOuncesUS}}, "1 oz", "1"},
      {{{}, {0, fluidOuncesUS}}, "0 oz", "0"},
      {{{}, {0.04, litres}}, "0.1 L", "0.1"},
      {{{}, {2, litres}}, "2.0 L", "2.0"},
      {{{}, {1250, millilitres}}, "1,250 mL", "1,250"},
      {{{}, {0.4, cupsUS}}, "1 cup", "1"},
      {{{}, {2.9, cupsUS}}, "2 cups", "3"},
      {{{}, {10 * (1 - 0.7), cupsUS}}, "3 cups", "3"},
      {{{}, {1250.4, calories}}, "1,250 kcal", "1,250"},
      {{{}, {-500, kilojoules}}, "-500 kJ", "-500"},
      {{{}, {3, flights}}, "3 flights", "3"},
      {{{}, {1.3, milligrams}}, "1.3 mg", "1.3"},
      {{{}, {2.4, micrograms}}, "2.4 mcg", "2.4"},
      {{{}, {40, grams}}, "40 g", "40"},
      {{{}, {0, timeOfDay}}, "12:00 AM", "12:00 AM"},
      {{{}, {86400, timeOfDay}}, "absent", "absent"},
      {{{}, {std::nan(""), timeOfDay}}, "absent", "absent"},
      {{{}, {1.5, durationMinutes}}, "1:30", "1:30"},
      {{{}, {9.5, durationSeconds}}, "9.5", "9.5"},
      {{inBed, {8, durationHours}}, "8 Hours", "8 Hours"},
      {{standHours, {12, durationHours}}, "12h", "12h"},
      {{mindfulMinutes, {0.1 * 3, durationHours}}, "18:00", "18:00"}};
  for (const auto& [quantity, withUnit, number] : cases) {
    EXPECT_EQ(text(quantity.localizedFormatted(iPhoneInlineTaskTitle, locale)), withUnit);
    EXPECT_EQ(text(quantity.localizedFormatted(notificationBracket, locale)), number) << withUnit;
  }
  const Quantity endless{{}, {1e17, durationHours}};
  EXPECT_EQ(text(endless.localizedFormatted(iPhoneSiriIntent, locale)),
            "360,000,000,000,000,000,000");
  EXPECT_EQ(text(endless.localizedFormatted(voiceOver, locale)), "absent");
}

TEST_F(TaskDisplayTitleTest, ShowsThePartsThatThereAre) {
  const Quantity cups{dietaryDrinkWater, {2, cupsUS}};
  const std::tuple<TaskDisplayTitle, Context, const char*> cases[] = {
      {{}, voiceOver, "absent"},
      {{.quantity = cups}, voiceOver, "2 cups"},
      {{.quantity = cups}, notificationWithoutQuantity, "absent"},
      {{.localizedSecondary = "half"}, voiceOver, "absent"},
      {{"Drink", cups, "half"}, voiceOver, "Drink: half"},
      {{"Drink", cups, "half"}, iPhoneEditPicker, "2 cups"},
      {{"Drink", {}, "half"}, iPhoneEditPicker, "Drink: half"},
      {{"Rise", Quantity{bedtime, {-1, timeOfDay}}}, iPhoneEditPicker, "Rise"},
      {TaskDisplayTitle::empty(), voiceOver, ""}};
  for (const auto& [title, context, wanted] : cases) {
    EXPECT_EQ(text(title.localizedTitle(context, locale)), wanted) << rawValue(context);
  }
}

TEST_F(TaskDisplayTitleTest, IsBuiltFromWhatIsLeft) {
  const auto water = typeOf(dietaryDrinkWater, 2, litres);
  const auto breathing = typeOf(mindfulMinutes, 10, durationMinutes);
  AutomaticTaskType golf(workout);
  golf.extra = {.workoutTypes = {WorkoutType::healthKit(OxHKWorkoutActivityType::yoga),
                                 WorkoutType::healthKit(OxHKWorkoutActivityType::golf)}};
  auto golfInKm = golf;
  golfInKm.setTaskTarget(TaskTarget{5, distanceKm});
  using Unit = TaskProgressTimer::Unit;
  const std::tuple<TaskTitleSource, const char*> cases[] = {
      {{.title = "Water", .automaticTaskType = water}, "Water: 2.0 L"},
      {{.title = "Water", .automaticTaskType = water, .progress = amountOf(2, 0.7, 4)},
       "Water: 0.3 L"},
      {{.title = "Water", .automaticTaskType = water, .progress = TaskProgress(amountOf(0, 0))},
       "Water: 2.0 L"},
      {{.title = "Eat",
        .automaticTaskType = typeOf(energyDeficit, 500, calories),
        .progress = amountOf(500, 100)},
       "Eat: 500 kcal"},
      {{.automaticTaskType = breathing, .progress = timerOf(600, 570, 1, Unit::minutes)}, "00:30"},
      {{.automaticTaskType = breathing, .progress = timerOf(600, 90, 4, Unit::hours)}, "1:00"},
      {{.automaticTaskType = breathing, .progress = timerOf(600, 200, 4, Unit::minutes)}, "2:30"},
      {{.title = "Rest", .isTimed = true, .progress = timerOf(600, 640)}, "Rest: 10:00"},
      {{.isTimed = true, .progress = timerOf(600, 591.5)}, "8.5"},
      {{.title = "Rest", .progress = timerOf(600, 590)}, "Rest"},
      {{.automaticTaskType = AutomaticTaskType(activity)}, ""},
      {{.title = "Move", .automaticTaskType = AutomaticTaskType(activity)}, "Move"},
      {{.automaticTaskType = AutomaticTaskType(workout)}, "Workout"},
      {{.automaticTaskType = golf}, "Golf and Yoga"},
      {{.automaticTaskType = golfInKm}, "Golf and Yoga: 5.0 km"},
      {{.automaticTaskType = typeOf(workout, 30, durationMinutes)}, "Work out for: 30:00"},
      {{.title = "Fit", .automaticTaskType = golf}, "Fit"}};
  for (const auto& [task, wanted] : cases) {
    EXPECT_EQ(text(TaskDisplayTitle::build(task, locale).localizedTitle(iPhoneWidget, locale)),
              wanted);
  }
}

TEST_F(TaskDisplayTitleTest, TellsTheNumberOfADeficitWithItsSign) {
  const auto deficit = typeOf(energyDeficit, 500, calories);
  EXPECT_EQ(text(formattedQuantityNumber(deficit, 250, locale)), "+250");
  EXPECT_EQ(text(formattedQuantityNumber(typeOf(runOrWalk, 5, distanceKm), 3, locale)), "3.0");
  EXPECT_EQ(text(formattedQuantityNumber(AutomaticTaskType(activity), 3, locale)), "absent");
  EXPECT_EQ(displayTitleForQuantity(dietarySugar, {.customTitle = "Sweets", .target = {40, grams}},
                                    locale),
            DisplayTitleType::separate("Sweets"));
  EXPECT_EQ(
      displayTitleForQuantity(dietarySugar, {.customTitle = "", .target = {40, grams}}, locale),
      DisplayTitleType::integrated({.localizedPrimary = "Sugar more than",
                                    .quantity = Quantity{dietarySugar, {40, grams}}}));
}

TEST_F(TaskDisplayTitleTest, IsWrittenForALiveAmount) {
  const auto water = typeOf(dietaryDrinkWater, 10, cupsUS);
  const TaskDisplayTitle title{"Read", {}, "a chapter"};
  struct Case {
    TaskTitleFormatter formatter;
    const char* title;
    const char* subtitle;
    double valueAt60Percent;
  };
  const Case cases[] = {
      {TaskTitlePlaceholderFormatter{}, "absent", "absent", 0},
      {TaskTitleStaticFormatter{title, voiceOver}, "Read", "a chapter", 0},
      {TaskTitleStaticFormatter{{"Run", Quantity{{}, {4, distanceKm}}}, notificationBracket}, "Run",
       "4.0", 4},
      {TaskTitleDynamicFormatter{}, "absent", "absent", 0},
      {TaskTitleDynamicFormatter{.customTitle = "Read"}, "Read", "absent", 0},
      {TaskTitleDynamicFormatter{.customTitle = "Go", .type = AutomaticTaskType(activity)}, "Go",
       "absent", 0},
      {TaskTitleDynamicFormatter{.customTitle = "Drink", .type = water, .numPartialCompletions = 2},
       "Drink", "3 cups", 2},
      {TaskTitleDynamicFormatter{.type = typeOf(dietarySugar, 0.5, grams), .isNegative = true},
       "Sugar less than", "3 g", 0.2},
      {TaskTitleDynamicFormatter{.customTitle = "Sit",
                                 .type = typeOf(TaskType::timer(), 300, durationSeconds)},
       "Sit", "3 sec", 120}};
  for (const auto& [formatter, primary, subtitle, value] : cases) {
    EXPECT_EQ(text(formatter.formattedTitle(3, locale)), primary);
    EXPECT_EQ(text(formatter.formattedSubtitle(3, locale)), subtitle);
    EXPECT_DOUBLE_EQ(formatter.currentValue(0.6), value);
  }
  EXPECT_EQ(cases[0].formatter.displayTitle(3, locale), TaskDisplayTitle{});
  EXPECT_EQ(cases[6].formatter.currentValue(1.5), 0);
}

TEST_F(TaskDisplayTitleTest, IsARichText) {
  expectRawValues<TaskDisplayTitle::TitleIcon>(
      {"health", "timed", "negative", "paused", "hourGlass"});
  using Config = TaskDisplayTitle::AttributedStringConfig;
  using enum TaskDisplayTitle::QuantityPosition;
  const CGColor white{1, 1, 1, 1}, grey{0.5, 0.5, 0.5, 1}, red{1, 0, 0, 1};
  const AttributedWithIconRequest request{
      .font = UIFont::system(18), .textColor = white, .iconColor = red};
  const TaskDisplayTitle title{"Drink", Quantity{dietaryDrinkWater, {8, cupsUS}}};
  const auto icon = visualRepresentation(TaskDisplayTitle::TitleIcon::health);

  auto config = Config::create(request, grey, iPhoneNotificationUI);
  config.quantityFont = UIFont::system(12);
  config.quantityBaselineOffset = 2;
  NSAttributedString wanted =
      icon.inlineAttributedString(request.font, red, NSWritingDirection::natural, {});
  wanted.append(" Drink ", request.textAttributes());
  wanted.append("8 cups", {.font = UIFont::system(12), .color = grey, .baselineOffset = 2});
  EXPECT_EQ(title.buildAttributedString(icon, config, locale), wanted);

  const auto half = title.titleAttributedText(icon, 72, config, locale).runs();
  EXPECT_EQ(half.front().attributes.font.pointSize, 9 * 0.75);
  EXPECT_EQ(half.back().attributes,
            (NSAttributedString::Attributes{
                .font = UIFont::system(6), .color = grey, .baselineOffset = 1}));

  config.quantityPosition = leading;
  config.request.iconPosition = AttributedWithIconRequest::IconPosition::trailing;
  EXPECT_EQ(title.buildAttributedString(icon, config, locale).string(), "8 cups Drink \uFFFC");
  config.context = notificationWithoutQuantity;
  EXPECT_EQ(title.buildAttributedString({}, config, locale).string(), "Drink");
  EXPECT_EQ(TaskDisplayTitle::empty().buildAttributedString(icon, config, locale).string(),
            "\uFFFC");
}

}  // namespace
}  // namespace velloro
