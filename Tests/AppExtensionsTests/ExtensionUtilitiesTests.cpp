#include "AppExtensions/ExtensionUtilities.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Settings/SettingsStorageLocal.h"
#include "Support/SampleTasks.h"

#include <gtest/gtest.h>

namespace velloro {
namespace {

TaskProgressActivityRings ringsOn(YYYYMMDD day, double energy) {
  return {.period = DatedPeriod::fromDate(day, TaskFrequencyPeriodType::day, DayOfWeek::monday, {}),
          .energy = energy,
          .exercise = 0.5,
          .stand = 1};
}

TEST(ExtensionUtilities, KeepsTheNewestRings) {
  const VirtualEnvironment environment;
  const std::shared_ptr<SettingsStorageContainer> storage = SettingsStorageLocalShared::open();
  const YYYYMMDD today{2024, 3, 7};
  const YYYYMMDD yesterday{2024, 3, 6}, tomorrow{2024, 3, 8};
  const auto read = [&](YYYYMMDD day) {
    // As another process reads it, with nothing in its memory.
    const auto saved = ExtensionUtilities(storage).savedActivityRingsProgress(day);
    return saved ? saved->energy : -1;
  };
  EXPECT_EQ(read(today), -1);
  ExtensionUtilities(storage).saveActivityRingsProgress(ringsOn(today, 0.25), today);
  EXPECT_EQ(read(today), 0.25);
  EXPECT_EQ(read(yesterday), -1);
  ExtensionUtilities(storage).saveActivityRingsProgress(ringsOn(yesterday, 0.75), today);
  EXPECT_EQ(read(today), 0.25);
  // Tomorrow's rings that stand as today's do are no news.
  ExtensionUtilities(storage).saveActivityRingsProgress(ringsOn(tomorrow, 0.25), tomorrow);
  EXPECT_EQ(read(today), 0.25);
  ExtensionUtilities(storage).saveActivityRingsProgress(ringsOn(tomorrow, 0.5), tomorrow);
  EXPECT_EQ(read(tomorrow), 0.5);
  // A clock that was ahead kept what is no longer to come, even where it stands the same.
  ExtensionUtilities(storage).saveActivityRingsProgress(ringsOn(today, 0.5), today);
  EXPECT_EQ(read(today), 0.5);
}

TEST(ExtensionUtilities, NamesAnIconsFile) {
  const VirtualEnvironment environment;
  const DataCacheKey key("a/b");
  const auto file = ExtensionUtilities::iconCacheFile(key).value();
  EXPECT_EQ(file.filename(), "icon_" + std::to_string(key.nsCacheKey()) + ".png");
  EXPECT_EQ(file.parent_path(), ExtensionUtilities::sharedContainer().value() / "icon-cache-v4");
}

}  // namespace
}  // namespace velloro
