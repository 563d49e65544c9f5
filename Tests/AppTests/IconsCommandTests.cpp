#include "AppTests/Program.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace velloro {
namespace {

TEST(IconsCommand, ListsIconsByNameAndGroup) {
  const auto water = runProgram("icons water_g --json");
  EXPECT_EQ(water.exitCode, 0);
  EXPECT_EQ(water.output, "[{\"name\":\"water_glass\",\"category\":\"drink\"}]\n");
  EXPECT_EQ(runProgram("icons WATER_G").output, "water_glass                      drink\n");
  EXPECT_EQ(std::ranges::count(runProgram("icons").output, '\n'), 725);
  EXPECT_EQ(std::ranges::count(runProgram("icons zodiac").output, '\n'), 12);
}

TEST(IconsCommand, NamesWhatItCannotUse) {
  expectRefusal("icons watre_glass", "PATTERN \"watre_glass\": in the name of no icon");
  expectRefusal("icons watre_glass", "did you mean \"water_glass\"");
  expectRefusal("icons qqqqqq", "\"velloro icons\" lists them");
}

}  // namespace
}  // namespace velloro
