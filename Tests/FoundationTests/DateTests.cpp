#include "Foundation/Time/Date.h"

#include <cmath>
#include <utility>

#include <gtest/gtest.h>

namespace platform {
namespace {

TEST(Date, ReadsISO8601) {
  const std::string tinyFraction = "1970-01-01T00:00:00." + std::string(400, '0') + "1Z";
  const std::pair<const char*, double> cases[] = {{"1970-01-01T00:00:00Z", 0},
                                                  {"2024-03-07T01:59:59Z", 1709776799},
                                                  {"2024-03-07T02:59:59+01:00", 1709776799},
                                                  {"2024-03-06T20:59:59-0500", 1709776799},
                                                  {"2024-03-07T03:59:59+02", 1709776799},
                                                  {"2024-03-07T01:59:59.25Z", 1709776799.25},
                                                  {tinyFraction.c_str(), 0},
                                                  {"0001-01-01T00:00:00Z", -62135596800},
                                                  {"2024-02-29T00:00:00Z", 1709164800}};
  for (const auto& [text, expected] : cases) {
    EXPECT_DOUBLE_EQ(Date::fromISO8601(text).value().timeIntervalSince1970(), expected) << text;
  }
  for (const char* bad : {"2023-02-29T00:00:00Z", "2024-03-07T24:00:00Z", "2024-03-07T01:59:59",
                          "2024-03-07T01:59:59+19:00", "2024-03-07T01:59:59.Z",
                          "2024-03-07T01:59:59ZZ", "2024-3-7T01:59:59Z", ""}) {
    EXPECT_FALSE(Date::fromISO8601(bad)) << bad;
  }
}

TEST(Date, WritesWholeSecondsRoundedDown) {
  EXPECT_EQ(Date::since1970(-0.5).iso8601(), "1969-12-31T23:59:59Z");
  EXPECT_EQ(Date::since1970(0.999).iso8601(), "1970-01-01T00:00:00Z");
  EXPECT_EQ(Date::distantPast().iso8601(), "0001-01-01T00:00:00Z");
  EXPECT_EQ(Date::distantFuture().iso8601(), "4001-01-01T00:00:00Z");
}

TEST(Date, SurvivesValuesBeyondTheCalendar) {
  const auto far = static_cast<double>(Date::sinceReferenceDate(1e300).secondsSince1970());
  EXPECT_DOUBLE_EQ(far, 1e15);
  EXPECT_FALSE(Date::sinceReferenceDate(std::nan("")).iso8601().empty());
}

}  // namespace
}  // namespace platform
