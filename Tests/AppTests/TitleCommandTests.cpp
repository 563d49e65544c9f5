#include "AppTests/Program.h"
#include "Support/VisibleText.h"

#include <algorithm>
#include <tuple>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using testing::HasSubstr;

TEST(TitleCommand, TellsATitleInEveryContext) {
  const auto result =
      runProgram("title --type hk_water --target 8 --unit cups_us --title Drink --locale en_US");
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.errors, "");
  EXPECT_EQ(std::ranges::count(result.output, '\n'), 28);
  EXPECT_THAT(result.output, HasSubstr("iPhoneEditPicker                       8 cups\n"));
  EXPECT_THAT(result.output, HasSubstr("notificationWithoutQuantity            Drink\n"));
}

TEST(TitleCommand, TellsWhatIsLeft) {
  const std::tuple<const char*, const char*> cases[] = {
      {"--title Read", "Read"},
      {"--title Drink --type hk_water --partial 8 --locale en_US", "Drink 1 cup"},
      {"--title Run --type hk_distance --unit km --target 5 --progress 0.9", "Run 0.5 km"},
      {"--title Laufen --type hk_distance --unit km --progress 0.1 --locale de_DE",
       "Laufen 4,5 km"},
      {"--title Read --type timer --unit minutes --target 10 --progress 0.5 --partial 3",
       "Read 1:40"},
      {"--title Read --type timer --target 600 --unit seconds --progress 0.98", "Read 00:12"},
      {"--title Bed --type hk_bedtime --target 22:30:00 --locale de_DE", "Bed 22:30"},
      {"--title Web --type screenTime --unit hours --target 1.5 --progress 0.5", "Web 1:30:00"},
      {"--type hk_activity", ""}};
  for (const auto& [arguments, text] : cases) {
    const auto result = runProgram("title " + std::string(arguments) + " --context iPhoneWidget");
    EXPECT_EQ(platform::visible(result.output), text + std::string("\n")) << result.errors;
  }
  EXPECT_EQ(
      runProgram("title --title Nap --type hk_sleep --target 7.5 --context voiceOver --json")
          .output,
      R"({"title":{"localizedPrimary":"Nap","quantity":{"type":"hk_sleep","quantity":)"
      R"({"quantity":7.5,"unit":"hours","speeds":["sleep","sleep_core","sleep_deep","sleep_rem"]}}},)"
      R"("texts":[{"context":"voiceOver","text":"Nap 7 Hr, 30 Min"}]})"
      "\n");
}

TEST(TitleCommand, NamesWhatItCannotUse) {
  const std::tuple<const char*, const char*> cases[] = {
      {"title", "a --type or a --title is needed"},
      {"title --title Read --target 5", "--target \"5\": only with a --type"},
      {"title --type hk_watr", "did you mean \"hk_water\"?"},
      {"title --type hk_water --unit cups",
       "--unit \"cups\": not a unit of hk_water; write floz_us, litres, mls or cups_us"},
      {"title --type hk_activity --unit km", "not a unit of hk_activity, which has none"},
      {"title --type hk_activity --target 5", "--target \"5\": hk_activity has no amount"},
      {"title --type timer --target 5", "--target \"5\": timer needs a --unit"},
      {"title --type hk_water --target 8x", "--target \"8x\": not a number"},
      {"title --type hk_water --target -3", "--target \"-3\": not above 0"},
      {"title --type hk_water --partial 0", "--partial \"0\": not from 1 on"},
      {"title --type hk_bedtime --target 79200", "not a time of day; write one as 03:00:00"},
      {"title --type hk_water --progress 1.5", "not a share; write a number from 0 to 1"},
      {"title --title Read --context voiceover", "did you mean \"voiceOver\"?"}};
  for (const auto& [arguments, complaint] : cases) expectRefusal(arguments, complaint);
}

}  // namespace
}  // namespace velloro
