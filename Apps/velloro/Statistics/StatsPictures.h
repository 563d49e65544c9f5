#pragma once

#include "VelloroPictures/OverviewPicture.h"
#include "VelloroPictures/TaskCardPicture.h"
#include "VelloroPictures/YearPicture.h"
#include "velloro/Statistics/StatsReport.h"

#include <optional>
#include <string>

namespace velloro {

class Command;

/// Where a picture goes, and how it looks.
struct PictureOptions {
  std::optional<std::string> png, svg;
  bool isDark = false;

  void addTo(const Command& command);
  [[nodiscard]] bool isWanted() const { return png || svg; }
  /// Writes what is wanted. \throws Error
  void write(const Picture& picture, const PictureStyle& style) const;
};

/// By the theme of the task's page.
[[nodiscard]] PictureStyle styleOf(const TaskEntity& task, bool isDark);
/// That of the program.
[[nodiscard]] PictureStyle usualStyle(bool isDark);

/// What a task's ring shows: of a habit to avoid, a whole one as long as all is well.
[[nodiscard]] double ringShare(const TaskSnapshot& task);

[[nodiscard]] TaskCardPicture cardOf(const TaskSnapshot& task, const StatsRequest& request);
[[nodiscard]] OverviewPicture::Row overviewRowOf(const TaskSnapshot& task,
                                                 const StatsRequest& request);
/// Each day with the status of its period.
[[nodiscard]] YearPicture yearOf(const TaskSnapshot& task, std::int64_t year);

}  // namespace velloro
