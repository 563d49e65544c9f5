#include "Foundation/Formatting/NSDateComponentsFormatter.h"
#include "Support/VisibleText.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace platform {
namespace {

using Formatter = NSDateComponentsFormatter;
using enum NSDateComponentsFormatter::Unit;
using enum NSDateComponentsFormatter::UnitsStyle;
using enum NSDateComponentsFormatter::ZeroFormattingBehavior;
using Units = std::set<Formatter::Unit>;

const Locale english = Locale::fromIdentifier("en_US");
const Units all = {days, hours, minutes, seconds};
const Units clock = {hours, minutes, seconds};

TEST(NSDateComponentsFormatter, FollowsItsSettings) {
  const std::tuple<Units, Formatter::UnitsStyle, int, Formatter::ZeroFormattingBehavior, double,
                   const char*>
      cases[] = {{clock, positional, 0, default_, 3909, "1:05:09"},
                 {clock, abbreviated, 0, default_, 3909, "1h 5m 9s"},
                 {clock, short_, 0, default_, 3909, "1 hr, 5 min, 9 sec"},
                 {clock, full, 0, default_, 3909, "1 hour, 5 minutes, 9 seconds"},
                 {all, positional, 0, default_, 90061, "1d 1:01:01"},
                 {all, positional, 0, pad, 61, "0d 00:01:01"},
                 {{minutes, seconds}, positional, 0, default_, 5400, "90:00"},
                 {clock, short_, 0, dropLeading, 300, "5 min, 0 sec"},
                 {clock, short_, 0, dropMiddle, 3609, "1 hr, 9 sec"},
                 {clock, short_, 0, dropMiddle, 300, "0 hr, 5 min, 0 sec"},
                 {clock, short_, 0, dropTrailing, 300, "0 hr, 5 min"},
                 {clock, positional, 0, dropAll, 600, "10:00"},
                 {clock, positional, 0, dropLeading, 9, "0:09"},
                 {{minutes, seconds}, positional, 0, pad, 9, "00:09"},
                 {{seconds}, positional, 0, default_, 9, "9"},
                 {clock, full, 0, dropAll, 0, "0 seconds"},
                 {{hours, minutes}, full, 2, dropLeading, 0, "0 minutes"},
                 {clock, short_, 0, dropTrailing, 0, "0 hr, 0 min, 0 sec"},
                 {clock, short_, 2, dropLeading, 3930, "1 hr, 6 min"},
                 {clock, short_, 2, pad, 309, "0 hr, 5 min"},
                 {clock, short_, 1, dropAll, 3580, "1 hr"},
                 {clock, full, 2, dropLeading, 3599.6, "1 hour, 0 minutes"},
                 {clock, positional, 0, default_, 0.7 * 3600, "42:00"},
                 {{hours}, abbreviated, 0, pad, 5399, "1h"},
                 {{hours}, abbreviated, 0, pad, 5400, "2h"},
                 {clock, positional, 0, default_, -3909, "-1:05:09"},
                 {clock, full, 0, default_, -0.4, "0 seconds"}};
  for (const auto& [units, style, limit, zeros, duration, text] : cases) {
    EXPECT_EQ(Formatter({english, units, style, limit, zeros}).string(duration), text) << duration;
  }
}

TEST(NSDateComponentsFormatter, WritesAsTheLocaleDoes) {
  const std::tuple<const char*, Formatter::UnitsStyle, const char*> cases[] = {
      {"de_DE", abbreviated, "-1 Std., 5 Min. und 9 Sek."},
      {"fr_FR", short_, "-1 h, 5 min et 9 s"},
      {"ru_RU", full, "-1 час 5 минут 9 секунд"},
      {"ja_JP", full, "-1 時間 5 分 9 秒"},
      {"da_DK", positional, "-1.05.09"},
      {"ar_EG", positional, "-١:٠٥:٠٩"},
      {"ar_EG", full, "-ساعة، و٥ دقائق، و٩ ثوان"}};
  for (const auto& [identifier, style, text] : cases) {
    const Formatter local({.locale = Locale::fromIdentifier(identifier), .unitsStyle = style});
    EXPECT_EQ(visible(local.string(-3909).value()), text);
  }
}

TEST(NSDateComponentsFormatter, GivesNothingForWhatIsNoDuration) {
  const Formatter formatter({.locale = english});
  for (const double duration : {std::nan(""), std::numeric_limits<double>::infinity(), -1e18}) {
    EXPECT_EQ(formatter.string(duration), std::nullopt);
  }
  EXPECT_EQ(Formatter({.locale = english, .allowedUnits = {}}).string(5), std::nullopt);
}

}  // namespace
}  // namespace platform
