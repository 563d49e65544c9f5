#include "Foundation/Process/VirtualEnvironment.h"
#include "VelloroCore/Appearance/CaptionIcons.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace velloro {
namespace {

using Status = CompletionStatus::Status;

constexpr auto week = TaskFrequencyPeriodType::week;
constexpr auto day = TaskFrequencyPeriodType::day;
const auto shared = SharedWithStatus::shared;

std::string ids(const std::vector<CaptionIcon>& icons) {
  std::string text;
  for (const CaptionIcon& icon : icons) text += (text.empty() ? "" : " ") + icon.id();
  return text;
}

struct Case {
  Status status;
  StreakRecord streak;
  TaskFrequencyPeriodType period = day;
  int date = 20240307;  // a Thursday
  SharedWithStatus sharing = {};
  bool hasNotes = false;
  bool canShowWillBreakStreak = true;
  std::string icons;  // top leading | top trailing | bottom trailing
};

TEST(CaptionIcons, TellOfTheStreak) {
  const VirtualEnvironment environment;
  const auto open = Status::positiveIncomplete(SkipMode::willMissWithoutIndicator);
  const auto last = Status::positiveIncomplete(SkipMode::willMissWithIndicator);
  const auto lastClean = Status::negativeComplete(SkipMode::willMissWithIndicator);
  const Case cases[] = {
      {.status = open, .streak = {}, .icons = "||"},
      {.status = open, .streak = {3, 9}, .icons = "||"},
      {.status = open, .streak = {8, 9}, .icons = "||almostBestStreak"},
      {.status = open, .streak = {9, 9}, .icons = "||bestStreak"},
      {.status = last, .streak = {1, 9}, .icons = "willBreakStreak||"},
      {.status = lastClean, .streak = {1, 9}, .icons = "willBreakStreak||"},
      {.status = last, .streak = {0, 9}, .icons = "||"},
      {.status = last, .streak = {1, 9}, .canShowWillBreakStreak = false, .icons = "||"},
      {.status = Status::negativeAllowedMiss, .streak = {}, .icons = "allowableMiss||"},
      {.status = open, .streak = {}, .period = week, .icons = "multiDay_duration7||"},
      {.status = open,
       .streak = {},
       .period = week,
       .date = 20240309,  // its last day
       .icons = "multiDay_duration7 willBreakStreak||"},
      {.status = last,
       .streak = {2, 9},
       .period = week,
       .date = 20240309,
       .icons = "multiDay_duration7 willBreakStreak||"},
      {.status = Status::negativeMiss,
       .streak = {},
       .period = week,
       .date = 20240309,
       .icons = "multiDay_duration7||"},
      {.status = open, .streak = {}, .sharing = shared(1), .icons = "isSharingSingle||"},
      {.status = open,
       .streak = {},
       .sharing = shared(2),
       .hasNotes = true,
       .icons = "isSharingMulti|hasNotes|"},
      {.status = last,
       .streak = {1, 1},
       .sharing = shared(2),
       .hasNotes = true,
       .icons = "willBreakStreak|isSharingMulti hasNotes|bestStreak"}};
  const TimeZone zone = TimeZone::fromIdentifier("Europe/Berlin").value();
  for (const Case& each : cases) {
    const auto date = YYYYMMDD::fromIntValue(each.date).value();
    const TodayStatus today{
        .completionStatus = {each.status, TaskProgressSimple{}},
        .period = DatedPeriod::fromDate(date, each.period, DayOfWeek::sunday, {})};
    const CaptionIcons icons =
        iconsForStreakNumber({.todayStatus = today,
                              .streak = each.streak,
                              .sharedWithStatus = each.sharing,
                              .canShowWillBreakStreak = each.canShowWillBreakStreak,
                              .hasNotes = each.hasNotes,
                              .timeZone = zone,
                              .now = environment.now()});
    EXPECT_EQ(
        ids(icons.topLeading) + "|" + ids(icons.topTrailing) + "|" + ids(icons.bottomTrailing),
        each.icons);
    EXPECT_TRUE(icons.bottomLeading.empty());
  }
}

}  // namespace
}  // namespace velloro
