#include "velloro/Statistics/StatsPictures.h"

#include "OxCheckableTasks/Icons/IconDisplayRepresentation.h"
#include "Settings/Settings.h"
#include "Tasks/Log/StoredTemporalData.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Status/StoredTaskStatus.h"
#include "Tasks/Status/TaskSnapshot.h"
#include "VelloroCore/Log/TaskRecentHistory.h"
#include "velloro/Options/Command.h"
#include "velloro/Output/GrowingFile.h"
#include "velloro/Statistics/CalendarReport.h"

#include <algorithm>

namespace velloro {
namespace {

constexpr double pixelsPerPoint = 3;

TaskRecentHistory ratesOf(const TaskSnapshot& task) {
  const YYYYMMDD today = task.standing.today();
  return recentHistory(task, today, today);
}

/// None for one that changes with the task's state, such as rings of their own.
std::shared_ptr<const IconDisplayRepresentation> iconOf(const TaskSnapshot& task) {
  const auto icon = task.entity->displayRepresentation();
  if (!icon || icon->visualRepresentation.isDynamic()) return nullptr;
  return std::make_shared<const IconDisplayRepresentation>(*icon);
}

}  // namespace

void PictureOptions::addTo(const Command& command) {
  command.option("--png", png, "FILE", "Draws a picture into that file; - is the standard output");
  command.option("--svg", svg, "FILE", "The same as shapes, for any size");
  command.flag("--dark", isDark, "Draws on a dark ground");
}

void PictureOptions::write(const Picture& picture, const PictureStyle& style) const {
  if (png) writeFile(picture.png(style, pixelsPerPoint), *png, "--png");
  if (svg) writeFile(picture.svg(style), *svg, "--svg");
}

PictureStyle styleOf(const TaskEntity& task, bool isDark) {
  const Theme theme = Settings::shared().theme(task.taskDisplayOrder().pageNumber);
  return PictureStyle::of(theme, task.taskColor(), isDark, Locale::current());
}

PictureStyle usualStyle(bool isDark) {
  return PictureStyle::of(Theme::hero, std::nullopt, isDark, Locale::current());
}

double ringShare(const TaskSnapshot& task) {
  const auto standing = streakedCompletionStatus(task, task.standing.currentPeriod().period);
  const CompletionStatus& status = standing.completionStatus;
  if (status.status == CompletionStatus::Status::positiveComplete) return 1;
  const double share = std::clamp(status.progress().progressPct(task.standing.now), 0.0, 1.0);
  return status.isNegative() ? 1 - share : share;
}

TaskCardPicture cardOf(const TaskSnapshot& task, const StatsRequest& request) {
  TaskCardPicture card;
  const TaskRecentHistory rates = ratesOf(task);
  const auto month = CalendarReport::of(task, task.standing.today().yyyymm());
  card.title = task.entity->title();
  card.icon = iconOf(task);
  card.progress = ringShare(task);
  card.stats = statsOf(task, request);
  card.shortTerm = rates.shortTerm;
  card.longTerm = rates.longTerm;
  card.month = {month.month, month.sortedPeriods};
  card.now = task.standing.now;
  return card;
}

OverviewPicture::Row overviewRowOf(const TaskSnapshot& task, const StatsRequest& request) {
  const TrophyRoomTaskStats stats = statsOf(task, request);
  return {.title = task.entity->title(),
          .color = task.entity->taskColor(),
          .icon = iconOf(task),
          .progress = ringShare(task),
          .streak =
              stats.streak.localizedWithMeasurementDuration(stats.allTimeChart.measurementDuration),
          .success = ratesOf(task).longTerm,
          .measurementDuration = stats.allTimeChart.measurementDuration,
          .data = stats.allTimeChart.data};
}

YearPicture yearOf(const TaskSnapshot& task, std::int64_t year) {
  YearPicture picture;
  picture.title = task.entity->title();
  picture.year = year;
  picture.firstDayOfWeek = task.standing.firstDayOfWeek;
  for (std::int64_t m = 1; m <= 12; ++m) {
    const YYYYMM month{year, m};
    for (const auto& [info] : CalendarReport::of(task, month).sortedPeriods) {
      const YYYYMMDD last = std::min(info.period.finishDate, month.lastDay());
      for (YYYYMMDD day = std::max(info.period.startDate, month.firstDay()); day <= last;
           day = day.nextDay({})) {
        picture.days.insert_or_assign(day, info.status);
      }
    }
  }
  return picture;
}

}  // namespace velloro
