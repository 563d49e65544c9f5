#include "AppTests/Program.h"

#include <algorithm>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using testing::HasSubstr;

TEST(ThemesCommand, TellsOfSchemesAndRings) {
  const auto all = runProgram("themes");
  EXPECT_EQ(all.exitCode, 0);
  EXPECT_EQ(std::ranges::count(all.output, '\n'), 1 + 25);
  EXPECT_THAT(all.output,
              HasSubstr("redBlue        Red and blue       normal alternate white black"));
  const auto one = runProgram("themes blue --context widget").output;
  EXPECT_EQ(std::ranges::count(one, '\n'), 3 * (1 + 1 + 13) + 2);
  EXPECT_THAT(one, HasSubstr("Blue (White): text 1C1C1C on FFFFFF"));
  EXPECT_THAT(runProgram("themes green --context appleWatchSiri").output,
              HasSubstr("Green: text F2F2F2 on 111114"));
  EXPECT_THAT(runProgram("themes green --context appleWatch --json").output,
              HasSubstr(R"("colors":["C0D37A"])"));
  EXPECT_THAT(runProgram("themes orange --json").output,
              HasSubstr(R"("colors":["FF704C"],"modes":[{"mode":"normal","title":"Orange",)"
                        R"("background":"FF704C")"));
}

TEST(ThemesCommand, NamesWhatItCannotUse) {
  expectRefusal("themes ornge", "SCHEME \"ornge\": not a colour scheme; did you mean \"orange\"");
  expectRefusal("themes blue --context moon", "--context \"moon\": not a place; write one of main");
}

}  // namespace
}  // namespace velloro
