#include "Foundation/Process/VirtualEnvironment.h"
#include "OxCheckableTasks/Icons/IconDisplayRepresentation.h"
#include "OxKit/Platform.h"
#include "Support/Golden.h"
#include "VelloroPictures/OverviewPicture.h"
#include "VelloroPictures/ReportPage.h"

#include <gmock/gmock.h>

namespace velloro {
namespace {

using testing::HasSubstr;
using testing::Not;
using Status = TaskCalendarPeriodStatus;

/// A task with one day of every kind, on the 7th of March 2024.
class Pictures : public testing::Test {
 protected:
  Pictures() {
    environment_.setResources(VELLORO_RESOURCES);
    card_.title = "Read <b>\"&\"";
    card_.progress = 0.4;
    card_.icon = std::make_shared<const IconDisplayRepresentation>(
        IconDisplayRepresentation::fromCoreDataStringRepresentation("ic_book").value());
    card_.now = Date::now();
    card_.stats.streak = {3, 12};
    card_.stats.pct = 0.75;
    card_.stats.allTimeChart = AllTimeChart::empty({}, TimeZone::gmt(), Date::now());
    card_.stats.allTimeChart.data = {0.5, 1, 0.25, 0.75};
    card_.stats.daysOfWeekChart.values = {{DayOfWeek::monday, 1.0}, {DayOfWeek::friday, 0.5}};
    card_.stats.timeOfDayChart.values = {{7, 1.0}, {22, 0.5}};
    card_.shortTerm = {PreviousSuccessType::last7, 7, 0.75};
    constexpr Status kinds[] = {Status::completed, Status::missed, Status::skipped, Status::past};
    std::vector<TaskCalendarPeriodInfo> infos;
    year_.title = card_.title;
    year_.year = 2024;
    year_.firstDayOfWeek = DayOfWeek::monday;
    for (std::int64_t d = 1; d <= 7; ++d) {
      const YYYYMMDD day{2024, 3, d};
      const Status status = d == 7 ? Status::current : kinds[d % 4];
      infos.push_back(
          {TaskFrequencyPeriod::fromDate(TaskFrequencyPeriodType::day, day, DayOfWeek::monday, {}),
           status});
      year_.days.emplace(day, status);
    }
    const TaskRecentHistory history(DayOfWeek::monday, infos, {}, {});
    card_.month = TaskCalendarMonthSnapshot::of({.history = history,
                                                 .month = {2024, 3},
                                                 .frequency = TaskFrequency::defaultFrequency,
                                                 .today = {2024, 3, 7},
                                                 .firstDayOfWeek = DayOfWeek::monday});
  }

  static PictureStyle style(const char* locale, bool isDark) {
    return PictureStyle::of(Theme::hero, {}, isDark, Locale::fromIdentifier(locale));
  }
  /// Texts may differ by their edges.
  void expectPicture(const char* name, const Picture& picture, const PictureStyle& look) {
    const std::string bytes = picture.png(look, 1);
    const auto drawn = CGImage::fromPNG(std::as_bytes(std::span(bytes))).value();
    expectGolden(name, drawn, static_cast<int>(drawn->pixels().size() / 1000), 255);
    EXPECT_THAT(picture.svg(look), HasSubstr("<svg"));
  }

  VirtualEnvironment environment_;
  TaskCardPicture card_;
  YearPicture year_;
};

TEST_F(Pictures, AreTheGoldenOnes) {
  expectPicture("card", card_, style("en_US", false));
  expectPicture("year-rtl", year_, style("ar", true));
  OverviewPicture overview;
  overview.rows = {{.title = "A title that is far too long for its row", .progress = 1},
                   {.title = "Run", .color = OxCodableColor{.r = 0.9}, .data = {0, 1}}};
  expectPicture("overview", overview, style("en_US", true));
}

TEST_F(Pictures, HaveAColumnForEachWeekOfTheYear) {
  // 2000 began on a Saturday and was a leap year; 2023 began on a Sunday.
  struct Case {
    std::int64_t year;
    DayOfWeek first;
    std::int64_t weeks;
  };
  for (const auto& [year, first, weeks] : {Case{2000, DayOfWeek::sunday, 54},
                                           {2000, DayOfWeek::monday, 53},
                                           {2023, DayOfWeek::sunday, 53},
                                           {2023, DayOfWeek::monday, 53}}) {
    year_.year = year;
    year_.firstDayOfWeek = first;
    EXPECT_EQ(year_.numWeeks(), weeks) << year;
  }
}

TEST_F(Pictures, MakeAPageOfTheirOwn) {
  const auto page = [&](const char* locale) {
    return ReportPage{.tasks = {{card_, year_, {}}, {card_, year_, OxCodableColor{.b = 1}}},
                      .light = style(locale, false),
                      .dark = style(locale, true)}
        .html();
  };
  const std::string html = page("en_US");
  EXPECT_THAT(html, HasSubstr("<html lang=\"en\" dir=\"ltr\">"));
  EXPECT_THAT(html, HasSubstr("<h2>Read &lt;b&gt;&quot;&amp;&quot;</h2>"));
  EXPECT_THAT(html, HasSubstr("prefers-color-scheme:dark"));
  EXPECT_THAT(html, HasSubstr("aria-label=\"40%\""));
  for (const char* outside : {"http", "<script", "url(", "<b>", "nan"}) {
    EXPECT_THAT(html, Not(HasSubstr(outside)));
  }
  EXPECT_THAT(page("ar"), HasSubstr("<html lang=\"ar\" dir=\"rtl\">"));
}

}  // namespace
}  // namespace velloro
