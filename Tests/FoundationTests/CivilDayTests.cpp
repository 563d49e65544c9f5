#include "Foundation/Time/CivilDay.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

TEST(CivilDay, EpochAndCycleEndsRoundTrip) {
  EXPECT_EQ(daysFromCivil({.y = 1970, .m = 1, .d = 1}), 0);
  // Days around the ends of the range that needs no cycle arithmetic, and far beyond it.
  for (const std::int64_t far : {536000000LL, -537000000LL, 1000000000LL, -1000000000000LL}) {
    for (std::int64_t days = far - 400; days <= far + 400; ++days) {
      ASSERT_EQ(daysFromCivil(civilFromDays(days)), days);
    }
  }
}

TEST(CivilDay, CountsOnFromUnrealDates) {
  EXPECT_EQ(civilFromDays(daysFromCivil({.y = 2024, .m = 13, .d = 45})),
            (CivilDay{.y = 2025, .m = 2, .d = 14}));
  EXPECT_EQ(civilFromDays(daysFromCivil({.y = 2024, .m = 0, .d = 0})),
            (CivilDay{.y = 2023, .m = 11, .d = 30}));
  EXPECT_EQ(civilFromDays(daysFromCivil({.y = 2023, .m = 2, .d = 29})),
            (CivilDay{.y = 2023, .m = 3, .d = 1}));
}

}  // namespace
}  // namespace platform
