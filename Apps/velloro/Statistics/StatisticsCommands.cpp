#include "velloro/Statistics/StatisticsCommands.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Process/Terminal.h"
#include "Host/HostStore.h"
#include "Host/PeriodCloser.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Status/TaskSnapshot.h"
#include "VelloroPictures/CalendarDrawing.h"
#include "VelloroPictures/GraphPicture.h"
#include "VelloroPictures/ReportPage.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/Command.h"
#include "velloro/Options/TaskArgument.h"
#include "velloro/Output/GrowingFile.h"
#include "velloro/Output/Output.h"
#include "velloro/Statistics/Blocks.h"
#include "velloro/Statistics/CalendarReport.h"
#include "velloro/Statistics/GraphReport.h"
#include "velloro/Statistics/PeriodArgument.h"
#include "velloro/Statistics/StatsPictures.h"
#include "velloro/Statistics/StatsReport.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace velloro {
namespace {

void printJSON(const auto& value) {
  print(JSONEncoder{}.encode(value) + "\n");
}

struct StatsOptions {
  std::vector<std::string> tasks;
  std::optional<std::string> period, points;
  PictureOptions picture;
  bool json = false;

  [[nodiscard]] StatsRequest request() const {
    StatsRequest request;
    if (period) request.timePeriod = timePeriodArgument("--period", *period);
    if (points) request.maxNumPoints = countBetween("--points", *points, 1, 1000);
    return request;
  }
};

void printAllTasks(const HostStore& store, const StatsOptions& options, Date now) {
  const StatsRequest request = options.request();
  GlobalChartData data;
  OverviewPicture overview;
  PeriodCloser closer(store.context(), now);
  for (const auto& task : store.tasks(activeStatuses)) {
    closer.foresee(*task);
    const auto snapshot = TaskSnapshot::of(*task, now);
    if (!isCountedWithOthers(snapshot)) continue;
    if (options.picture.isWanted()) {
      overview.rows.push_back(overviewRowOf(snapshot, request));
    } else {
      data.add(tallyOf(snapshot, request.timePeriod));
    }
  }
  if (options.picture.isWanted()) {
    return options.picture.write(overview, usualStyle(options.picture.isDark));
  }
  if (options.json) return printJSON(data);
  print(textOf(data));
}

/// A card of one task, a row for each of several.
void drawTasks(const HostStore& store, const StatsOptions& options, Date now) {
  const StatsRequest request = options.request();
  const bool isDark = options.picture.isDark;
  OverviewPicture overview;
  for (const std::string& name : options.tasks) {
    const auto task = currentTaskArgument(store, name, now);
    const auto snapshot = TaskSnapshot::of(*task, now);
    if (options.tasks.size() == 1) {
      return options.picture.write(cardOf(snapshot, request), styleOf(*task, isDark));
    }
    overview.rows.push_back(overviewRowOf(snapshot, request));
  }
  options.picture.write(overview, usualStyle(isDark));
}

void runStats(const StatsOptions& options) {
  StatsRequest request = options.request();
  const Date now = Date::now();
  const HostStore store;
  if (options.tasks.empty()) return printAllTasks(store, options, now);
  if (options.picture.isWanted()) return drawTasks(store, options, now);
  if (!options.json) {  // the line of all time has a character for each point
    const auto columns = static_cast<std::int64_t>(standardOutputColumns());
    request.maxNumPoints = std::min(request.maxNumPoints, columns);
  }
  std::vector<TrophyRoomTaskStats> stats;
  std::string text;
  for (const std::string& name : options.tasks) {
    const auto task = currentTaskArgument(store, name, now);
    stats.push_back(statsOf(TaskSnapshot::of(*task, now), request));
    text +=
        (text.empty() ? "" : "\n") + textOf(stats.back(), task->title(), task->taskColor(), now);
  }
  if (!options.json) return print(text);
  if (stats.size() == 1) return printJSON(stats.front());
  printJSON(stats);
}

struct CalendarOptions {
  std::string task;
  std::optional<std::string> month, year;
  PictureOptions picture;
  bool json = false;
};

void runCalendar(const CalendarOptions& options) {
  const auto month =
      options.month ? std::optional(monthArgument("--month", *options.month)) : std::nullopt;
  const auto year =
      options.year ? std::optional(yearArgument("--year", *options.year)) : std::nullopt;
  const HostStore store;
  const Date now = Date::now();
  const auto task = currentTaskArgument(store, options.task, now);
  const auto snapshot = TaskSnapshot::of(*task, now);
  const PictureStyle style = styleOf(*task, options.picture.isDark);
  if (year && options.picture.isWanted()) {
    return options.picture.write(yearOf(snapshot, *year), style);
  }
  if (!year) {
    const YYYYMM shown = month.value_or(snapshot.standing.today().yyyymm());
    const auto report = CalendarReport::of(snapshot, shown);
    if (options.picture.isWanted()) {
      return options.picture.write(
          MonthPicture(task->title(), {report.month, report.sortedPeriods}), style);
    }
    if (options.json) return printJSON(report);
    return print(report.text());
  }
  std::vector<CalendarReport> reports;
  for (std::int64_t m = 1; m <= 12; ++m) {
    reports.push_back(CalendarReport::of(snapshot, {*year, m}));
  }
  if (options.json) return printJSON(reports);
  print(textOf(reports, standardOutputColumns()));
}

struct GraphOptions {
  std::string values;
  std::string width = "320", height = "160";
  std::optional<std::string> max;
  std::string pointDiameter = "6", lineThickness = "2", padding = "0", spacingAbove = "0",
              spacingBelow = "0", markerWidth = "0", markerHeight = "0", labelHeight = "0",
              fontSize = "12";
  bool isRightToLeft = false;
  PictureOptions picture;
  bool json = false;

  [[nodiscard]] LineGraph::Request request() const;
  [[nodiscard]] std::vector<double> numbers() const;
};

constexpr double longest = 100000;

double lengthArgument(const std::string& name, const std::string& text) {
  return numberBetween(name, text, 0, longest, "0 to 100000");
}

LineGraph::Request GraphOptions::request() const {
  const auto insets = insetsArgument("--padding", padding);
  LineGraph::Request request{
      .rightToLeft = isRightToLeft,
      .frame = {{}, {lengthArgument("--width", width), lengthArgument("--height", height)}},
      .pointDiameter = lengthArgument("--point-diameter", pointDiameter),
      .lineThickness = lengthArgument("--line-thickness", lineThickness),
      .padding = insets,
      .markerSpacingAbove = lengthArgument("--marker-spacing-above", spacingAbove),
      .markerSpacingBelow = lengthArgument("--marker-spacing-below", spacingBelow),
      .markerSize = {lengthArgument("--marker-width", markerWidth),
                     lengthArgument("--marker-height", markerHeight)},
      .labelHeight = lengthArgument("--label-height", labelHeight),
      .font = UIFont::system(lengthArgument("--font-size", fontSize))};
  if (max)
    request.maxValue = LineGraph::MaxValue::relativeToConstant(amountArgument("--max", *max));
  return request;
}

std::vector<double> GraphOptions::numbers() const {
  return amountsArgument("--values", values);
}

void runGraph(const GraphOptions& options) {
  const auto values = options.numbers();
  std::vector<LineGraphDataPoint> data;
  for (const double value : values) data.push_back({.value = value});
  const LineGraph graph(data, options.request());
  if (options.picture.isWanted()) {
    return options.picture.write(GraphPicture(graph), usualStyle(options.picture.isDark));
  }
  if (options.json) return printJSON(GraphReport::of(graph));
  const double* constant = std::get_if<double>(&graph.request.maxValue.value);
  double most = constant != nullptr ? *constant : 0;
  for (const double value : values) most = std::max(most, value);
  std::vector<double> shares;
  for (const double value : values) shares.push_back(most > 0 ? value / most : 0);
  if (options.isRightToLeft) std::ranges::reverse(shares);
  print(blockColumns(shares) + "\n");
}

void addLayout(const Command& command, GraphOptions& options) {
  struct Row {
    const char* name;
    std::string& value;
    const char* help;
  };
  const Row rows[] = {
      {"--width", options.width, "The width of the graph"},
      {"--height", options.height, "The height of the graph"},
      {"--point-diameter", options.pointDiameter, "The size of a point"},
      {"--line-thickness", options.lineThickness, "The width of the line"},
      {"--marker-spacing-above", options.spacingAbove, "The space above the markers"},
      {"--marker-spacing-below", options.spacingBelow, "The space below the markers"},
      {"--marker-width", options.markerWidth, "The width of a marker"},
      {"--marker-height", options.markerHeight, "The height of a marker"},
      {"--label-height", options.labelHeight, "The height of the labels' row"},
      {"--font-size", options.fontSize, "The size of the labels"}};
  for (const auto& [name, value, help] : rows) {
    command.option(name, value, "POINTS", help).showsDefault();
  }
  command
      .option("--padding", options.padding, "POINTS",
              "The space inside the edges; one for all, or TOP,LEFT,BOTTOM,RIGHT")
      .showsDefault();
}

struct ReportOptions {
  std::string file;
};

void runReport(const ReportOptions& options) {
  const Date now = Date::now();
  const HostStore store;
  ReportPage page{.light = usualStyle(false), .dark = usualStyle(true)};
  PeriodCloser closer(store.context(), now);
  for (const auto& task : store.tasks(activeStatuses)) {
    closer.foresee(*task);
    const auto snapshot = TaskSnapshot::of(*task, now);
    page.tasks.push_back({.card = cardOf(snapshot, {}),
                          .year = yearOf(snapshot, snapshot.standing.today().y),
                          .color = styleOf(*task, false).accent});
  }
  writeFile(page.html(), options.file, "FILE");
}

}  // namespace

void addReportCommand(const Command& app) {
  const auto [command, options] =
      app.subcommand("report", "Draws all tasks on one page of HTML", runReport);
  command.option("file", options.file, "FILE", "The file to write; - is the standard output")
      .required();
  command.footer(
      "The page needs no other file, and is light or dark as the screen is.\n\n"
      "Example:\n"
      "  velloro report habits.html");
}

void addStatsCommand(const Command& app) {
  const auto [command, options] = app.subcommand("stats", "Shows how well tasks go", runStats);
  command.option("tasks", options.tasks, "TASK",
                 "Tasks, by title or id (default: all of them together)");
  command.option("--period", options.period, "PERIOD",
                 "allTime, thisYear, thisMonth, a year or a month (default: allTime)");
  command.option("--points", options.points, "N",
                 "The most points of the line of all time (default: 30)");
  command.json(options.json);
  options.picture.addTo(command);
  command.footer(
      "Examples:\n"
      "  velloro stats\n"
      "  velloro stats Read Run --period 2026-03\n"
      "  velloro stats Read --period thisYear --json\n"
      "  velloro stats Read --png card.png --dark");
}

void addCalendarCommand(const Command& app) {
  const auto [command, options] = app.subcommand("calendar", "Shows a task's months", runCalendar);
  addTaskArgument(command, options.task);
  command.option("--month", options.month, "YYYY-MM", "The month to show (default: this month)");
  command.option("--year", options.year, "YYYY", "Shows all months of a year")
      .excludes({"--month"});
  command.json(options.json);
  options.picture.addTo(command);
  command.footer(
      "● done  ✗ missed  – skipped  ◌ allowed  ○ open  · before the task was made\n\n"
      "Examples:\n"
      "  velloro calendar Read\n"
      "  velloro calendar Read --month 2026-03 --json\n"
      "  velloro calendar Read --year 2026 --svg year.svg");
}

void addGraphCommand(const Command& app) {
  const auto [command, options] =
      app.subcommand("graph", "Lays values out as a smooth line", runGraph);
  command.option("--values", options.values, "V,V,…", "The values, with commas between them");
  command.option("--max", options.max, "V", "What the top stands for (default: the largest value)");
  command.flag("--rtl", options.isRightToLeft, "Runs from right to left");
  addLayout(command, options);
  command.json(options.json);
  options.picture.addTo(command);
  command.footer(
      "Example:\n"
      "  velloro graph --values 0.1,0.5,0.4,0.9 --width 300 --height 120 --json");
}

}  // namespace velloro
