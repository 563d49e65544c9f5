// The commands that answer from their arguments alone, without a store.

#include "AppTests/Program.h"
#include "Support/VisibleText.h"

#include <algorithm>
#include <utility>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using testing::HasSubstr;
using testing::Not;

/// What the program prints when all goes well.
std::string told(const std::string& arguments) {
  const auto result = runProgram(arguments);
  EXPECT_EQ(result.exitCode, 0) << arguments;
  EXPECT_EQ(result.errors, "") << arguments;
  return result.output;
}

std::ptrdiff_t numLines(const std::string& output) {
  return std::ranges::count(output, '\n');
}

TEST(QueryCommands, PrintOneObject) {
  const std::pair<const char*, const char*> cases[] = {
      {"day --at 2024-03-07T01:59:59Z --start-of-day 03:00:00 --zone Europe/Berlin "
       "--first-day-of-week mon",
       R"({"day":20240306,"dayOfWeek":3,"weekday":"wednesday","start":"2024-03-06T02:00:00Z",)"
       R"("end":"2024-03-07T02:00:00Z","week":[20240304,20240310],)"
       R"("fortnight":[20240226,20240310],"month":[20240301,20240331],)"
       R"("year":[20240101,20241231],)"
       R"("daysRemaining":{"week":4,"fortnight":4,"month":25,"year":300}})"},
      {"period --mode aggregateOverFortnight --date 20000108 --first-day-of-week sunday",
       R"({"mode":"aggregateOverFortnight","date":20000108,)"
       R"("period":{"type":"fortnight","start":19991226,"finish":20000108},)"
       R"("previous":{"type":"fortnight","start":19991219,"finish":20000101},)"
       R"("next":{"type":"fortnight","start":20000102,"finish":20000115},)"
       R"("numberOfDays":14,"remainingDays":0,"expectedCompletions":7,)"
       R"("countedOver":"fortnight","isEmpty":false})"},
      {"types hk_energy_deficit --period week",
       R"({"type":"hk_energy_deficit","period":"week","unitOptions":["kcal","kj"],)"
       R"("speedOptions":["greater_than","less_than"],"defaultTarget":{"quantity":-50000,)"
       R"("unit":"kcal","speeds":["greater_than"]},"ranges":[{"unit":"kcal","first":-50000,)"
       R"("last":50000,"count":1451,"default":-50000}],"partialCompletions":{"minimum":1,)"
       R"("maximum":1,"default":1,"suggested":1},"frequencyModes":["specificDaysOfWeek",)"
       R"("dayInterval","numberOfDaysInWeek","numberOfDaysInFortnight","numberOfDaysInMonth",)"
       R"("aggregateOverWeek"]})"},
      {"title --title Nap --type hk_sleep --target 7.5 --context voiceOver",
       R"({"title":{"localizedPrimary":"Nap","quantity":{"type":"hk_sleep","quantity":)"
       R"({"quantity":7.5,"unit":"hours","speeds":["sleep","sleep_core","sleep_deep",)"
       R"("sleep_rem"]}}},"texts":[{"context":"voiceOver","text":"Nap 7 Hr, 30 Min"}]})"},
      {"icons water_g", R"([{"name":"water_glass","category":"drink"}])"}};
  for (const auto& [arguments, object] : cases) {
    EXPECT_EQ(told(arguments + std::string(" --json")), object + std::string("\n"));
  }
}

TEST(QueryCommands, TellWhatIsAskedFor) {
  const std::pair<std::string, const char*> cases[] = {
      {"day --zone Europe/Berlin --locale de_DE --now 2024-03-31T12:00:00Z", "Sonntag, 2024-03-31"},
      {"day --zone Europe/Berlin --now 2024-03-31T12:00:00Z", "23 hours"},
      {"day --locale de_DE --now 2024-03-31T12:00:00Z", "2024-03-25  to  2024-03-31"},
      {"period --mode numberOfDaysInWeek --times 3", "expected   3 times in the week"},
      {"period --times 3 --per fortnight", "expected   3 times in the fortnight"},
      {"period --mode numberOfDaysInMonth --times 31 --date 20240229",
       "expected   31 times in the month"},
      {"period --mode dayInterval --interval 31", "No day can ever be due."},
      {"types hk_bedtime", "22:00:00"},
      {"types timer --period year", "360000"},
      {"types --json", R"("type":"screenTime")"},
      {"themes", "redBlue        Red and blue       normal alternate white black"},
      {"themes blue --context widget", "Blue (White): text 1C1C1C on FFFFFF"},
      {"themes orange --json", R"("colors":["FF704C"],"modes":[{"mode":"normal",)"
                               R"("title":"Orange","background":"FF704C")"},
      {"icons WATER_G", "water_glass                      drink\n"}};
  for (const auto& [arguments, text] : cases) EXPECT_THAT(told(arguments), HasSubstr(text));
  EXPECT_THAT(told("period --mode dayInterval"), Not(HasSubstr("expected")));
  EXPECT_EQ(numLines(told("types")), 1 + 82);
  EXPECT_EQ(numLines(told("themes")), 1 + 25);
  EXPECT_EQ(numLines(told("themes blue --context widget")), 3 * (1 + 1 + 13) + 2);
  EXPECT_EQ(numLines(told("icons")), 725);
}

TEST(QueryCommands, TellATitle) {
  const std::pair<const char*, const char*> cases[] = {
      {"--title Drink --type hk_water --partial 8 --locale en_US", "Drink 1 cup"},
      {"--title Run --type hk_distance --unit km --target 5 --progress 0.9", "Run 0.5 km"},
      {"--title Laufen --type hk_distance --unit km --progress 0.1 --locale de_DE",
       "Laufen 4,5 km"},
      {"--title Read --type timer --unit minutes --target 10 --progress 0.5 --partial 3",
       "Read 1:40"},
      {"--title Bed --type hk_bedtime --target 22:30:00 --locale de_DE", "Bed 22:30"},
      {"--title Web --type screenTime --unit hours --target 1.5 --progress 0.5", "Web 1:30:00"},
      {"--type hk_activity", ""}};
  for (const auto& [arguments, text] : cases) {
    const auto output = told("title " + std::string(arguments) + " --context iPhoneWidget");
    EXPECT_EQ(platform::visible(output), text + std::string("\n"));
  }
  const auto all =
      told("title --type hk_water --target 8 --unit cups_us --title Drink --locale en_US");
  EXPECT_EQ(numLines(all), 28);
  EXPECT_THAT(all, HasSubstr("iPhoneEditPicker                       8 cups\n"));
  EXPECT_THAT(all, HasSubstr("notificationWithoutQuantity            Drink\n"));
}

TEST(QueryCommands, TellWhenTheirOutputIsLost) {
  for (const char* arguments : {"day >/dev/full", "--help >/dev/full", "day >&-"}) {
    const auto result = runProgram(arguments);
    EXPECT_EQ(result.exitCode, 1) << arguments;
    EXPECT_THAT(result.errors, HasSubstr("cannot write the output")) << arguments;
  }
}

TEST(QueryCommands, NameWhatTheyCannotUse) {
  const std::pair<const char*, const char*> cases[] = {
      {"day 20230229", "YYYYMMDD \"20230229\": not a day of the calendar"},
      {"day --at yesterday", "--at \"yesterday\": not an instant"},
      {"day --start-of-day 24:00:00", "--start-of-day \"24:00:00\": not a time of day"},
      {"day --locale garbage", "--locale \"garbage\": not a locale"},
      {"day --store ''", "--store \"\": not a folder"},
      {"day --at 0000-01-01T00:00:00Z", "lies before the year 1"},
      {"day --zone ../../etc/passwd", "--zone \"../../etc/passwd\": not a time zone"},
      {"day 20240307 --at 2024-03-07T00:00:00Z", "day excludes --at"},
      {"dayy", "COMMAND \"dayy\": not a command of \"velloro\"; did you mean \"day\"?"},
      {"log", "a command is needed; write one of add, list, undo"},
      {"log add --nigh", "\"--nigh\": not expected here; see \"velloro log add --help\""},
      {"day 20240307 --json=5", "json was given"},
      {"", "a command is needed"},
      {"period ", "--mode is required, or --every"},
      {"period --mode weekly", "--mode \"weekly\": not a mode; write one of specificDaysOfWeek, "},
      {"period --mode specificDaysOfWeek --days mon,sol", "\"sol\" is not a day of the week"},
      {"period --mode dayInterval --days mon", "--days \"mon\": has no meaning with --mode"},
      {"period --mode numberOfDaysInWeek --first-day-of-week monday",
       "has no meaning with --mode \"numberOfDaysInWeek\""},
      {"period --times 3 --total 4 --per week", "--times excludes --total"},
      {"period --total 3", "--total \"3\": needs --per"},
      {"period --per week", "--per \"week\": needs --times or --total"},
      {"period --times 3 --per decade", "--per \"decade\": not a period"},
      {"period --times 3 --per day --partial 2", "--partial \"2\": --times says the steps"},
      {"period --every day --mode dayInterval", "--every excludes --mode"},
      {"period --every 0d", "--every \"0d\": an interval is at least one day"},
      {"period --every 'other month'", "write --times 1 --per month"},
      {"period --every d", "--every \"d\": not a day of the week"},
      {"period --every 1.5d", "write days as mon,wed,fri, or day"},
      {"title", "a --type or a --title is needed"},
      {"title --title Read --target 5", "--target \"5\": only with a --type"},
      {"title --type hk_water --unit cups",
       "--unit \"cups\": not a unit of hk_water; write floz_us, litres, mls or cups_us"},
      {"title --type hk_activity --target 5", "--target \"5\": hk_activity has no amount"},
      {"title --type timer --target 5", "--target \"5\": timer needs a --unit"},
      {"title --type hk_water --target 8x", "--target \"8x\": not a number"},
      {"title --type hk_water --target -3", "--target \"-3\": not above 0"},
      {"title --type hk_water --partial 0", "--partial \"0\": not from 1 on"},
      {"title --type hk_bedtime --target 79200", "not a time of day; write one as 4:00"},
      {"title --type hk_water --progress 1.5", "not a share; write a number from 0 to 1"},
      {"title --title Read --context voiceover", "did you mean \"voiceOver\"?"},
      {"types vitaminb", "\"hk_dietary_vitaminb6\", \"hk_dietary_vitaminb12\"?"},
      {"themes ornge", "SCHEME \"ornge\": not a colour scheme; did you mean \"orange\""},
      {"icons watre_glass", "PATTERN \"watre_glass\": in the name of no icon"},
      {"icons qqqqqq", "\"velloro icons\" lists them"}};
  for (const auto& [arguments, complaint] : cases) expectRefusal(arguments, complaint);
}

}  // namespace
}  // namespace velloro
