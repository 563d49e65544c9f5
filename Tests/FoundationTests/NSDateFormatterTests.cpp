#include "Foundation/Formatting/NSDateFormatter.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Foundation/Text/String.h"
#include "Support/VisibleText.h"

#include <cmath>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace platform {
namespace {

using ::testing::ElementsAre;
using Style = NSDateFormatter::Style;

Locale locale(const char* identifier) {
  return Locale::fromIdentifier(identifier);
}

TimeZone zone(const char* identifier) {
  return TimeZone::fromIdentifier(identifier).value();
}

const Date afternoon = Date::fromISO8601("2024-03-07T14:05:09Z").value();
const auto isoFormat =
    NSDateFormatter::withFormat("yyyy-MM-dd'T'HH:mm:ssZZZZZ", {.locale = Locale::posix()});

TEST(NSDateFormatter, FollowsTemplatesAndStylesOfTheLocale) {
  const std::pair<const char*, const char*> texts[] = {
      {"en_US", "March 2024; Mar 2024; 2024; 14:05; 2 PM; Mar 7, 2024, 2:05 PM"},
      {"de_DE", "März 2024; März 2024; 2024; 14:05; 2 Uhr PM; 07.03.2024, 14:05"},
      {"ru_RU", "март 2024 г.; март 2024 г.; 2024; 14:05; 2 PM; 7 мар. 2024 г., 14:05"},
      {"ja_JP", "2024年3月; 2024年3月; 2024年; 14:05; 午後2時; 2024/03/07 14:05"},
      {"ar_EG", "مارس ٢٠٢٤; مارس ٢٠٢٤; ٢٠٢٤; ١٤:٠٥; ٢ م; ٠٧/٠٣/٢٠٢٤، ٢:٠٥ م"},
      {"th_TH", "มีนาคม 2024; มี.ค. 2024; 2024; 14:05; 2 หลังเที่ยง; 7 มี.ค. 2024 14:05"}};
  for (const auto& [identifier, expected] : texts) {
    const NSDateFormatter::Settings settings{locale(identifier), TimeZone::gmt()};
    std::string text;
    for (const char* fields : {"MMMM yyyy", "MMM yyyy", "yyyy", "H:mm", "h a"}) {
      text += NSDateFormatter::withTemplate(fields, settings).string(afternoon) + "; ";
    }
    text += NSDateFormatter::withStyles({Style::medium, Style::short_}, settings).string(afternoon);
    EXPECT_EQ(visible(text), expected);
    EXPECT_EQ(NSDateFormatter::withStyles({}, settings).string(afternoon), "");
  }
}

TEST(NSDateFormatter, TakesOffsetsFromOurZones) {
  const std::pair<TimeZone, const char*> texts[] = {
      {TimeZone::gmt(), "2024-03-07T14:05:09Z"},
      {zone("GMT+0530"), "2024-03-07T19:35:09+05:30"},
      {zone("Asia/Kathmandu"), "2024-03-07T19:50:09+05:45"}};
  for (const auto& [where, text] : texts) {
    EXPECT_EQ(isoFormat.string(afternoon, where), text);
    EXPECT_EQ(isoFormat.date(text), afternoon) << text;
  }
  VirtualEnvironment environment;  // in Berlin
  EXPECT_EQ(isoFormat.string(afternoon), "2024-03-07T15:05:09+01:00");
}

TEST(NSDateFormatter, KeepsMillisecondsThatADoubleCannot) {
  const auto formatter = NSDateFormatter::withFormat(
      "y-MM-dd H:mm:ss.SSS", {.locale = Locale::posix(), .timeZone = TimeZone::gmt()});
  for (int milliseconds = 0; milliseconds < 1000; ++milliseconds) {
    const Date date = afternoon + milliseconds / 1000.0;
    const std::string text = stringWithFormat("2024-03-07 14:05:09.%03d", milliseconds);
    ASSERT_EQ(formatter.string(date), text);
    ASSERT_NEAR(formatter.date(text)->timeIntervalSince(date), 0, 1e-6) << text;
  }
  EXPECT_EQ(formatter.string(afternoon + 0.9996), "2024-03-07 14:05:09.999");
}

TEST(NSDateFormatter, CountsGregorianDaysThroughAllHistory) {
  const auto formatter = NSDateFormatter::withFormat(
      "yyyy-MM-dd", {.locale = Locale::posix(), .timeZone = TimeZone::gmt()});
  const Date start = Date::fromISO8601("0001-01-01T00:00:00Z").value();
  for (Date day = start; day < Date::distantFuture(); day = day + 97 * 86400) {
    const std::string text = day.iso8601().substr(0, 10);
    ASSERT_EQ(formatter.string(day), text);
    ASSERT_EQ(formatter.date(text), day);
  }
  for (const double beyond : {1e300, -1e300, std::nan("")}) {
    EXPECT_FALSE(formatter.string(Date::sinceReferenceDate(beyond)).empty());
  }
}

TEST(NSDateFormatter, ReadsOnlyWhatFollowsThePattern) {
  const NSDateFormatter::Settings berlin{Locale::posix(), zone("Europe/Berlin")};
  const auto withOffset = NSDateFormatter::withFormat("yyyy-MM-dd'T'HH:mm:ss.SSSZZZZZ", berlin);
  const auto onTheClock = NSDateFormatter::withFormat("yyyy-MM-dd 'at' H:mm", berlin);
  const std::tuple<const NSDateFormatter&, const char*, const char*> cases[] = {
      {withOffset, "2024-03-07T01:59:59.000-02:30", "2024-03-07T04:29:59Z"},
      {withOffset, "2024-02-30T01:59:59.000Z", "none"},
      {withOffset, "2024-3-7T01:59:59.000Z", "none"},
      {withOffset, "2024-03-07T01:59:59.000Z ", "none"},
      {onTheClock, "2024-07-01 at 2:30", "2024-07-01T00:30:00Z"},
      {onTheClock, "2024-03-31 at 2:30", "2024-03-31T01:30:00Z"},  // skipped: on by the gap
      {onTheClock, "2024-10-27 at 2:30", "2024-10-27T00:30:00Z"},  // repeated: the first
      {onTheClock, "2024-07-01 AT 2:30", "none"}};
  for (const auto& [formatter, text, expected] : cases) {
    const auto date = formatter.date(text);
    EXPECT_EQ(date ? date->iso8601() : "none", expected) << text;
  }
}

TEST(NSDateFormatter, ListsTheNamesOfMonthsAndDays) {
  const auto russian = NSDateFormatter::withFormat("", {.locale = locale("ru_RU")});
  EXPECT_EQ(russian.monthSymbols().at(11), "декабря");
  EXPECT_EQ(russian.standaloneMonthSymbols().at(11), "декабрь");
  EXPECT_EQ(russian.shortMonthSymbols().at(11), "дек.");
  EXPECT_EQ(russian.weekdaySymbols().at(6), "суббота");
  EXPECT_THAT(russian.shortWeekdaySymbols(), ElementsAre("вс", "пн", "вт", "ср", "чт", "пт", "сб"));
  EXPECT_THAT(russian.veryShortWeekdaySymbols(), ElementsAre("В", "П", "В", "С", "Ч", "П", "С"));
}

TEST(NSDateFormatter, ServesThreadsInDifferentZonesAtOnce) {
  const auto work = [](const char* zoneIdentifier, const char* text) {
    for (int i = 0; i < 2000; ++i) {
      ASSERT_EQ(isoFormat.string(afternoon, zone(zoneIdentifier)), text);
      ASSERT_EQ(isoFormat.date(text), afternoon);
    }
  };
  std::jthread other(work, "Asia/Kathmandu", "2024-03-07T19:50:09+05:45");
  work("America/New_York", "2024-03-07T09:05:09-05:00");
}

}  // namespace
}  // namespace platform
