#pragma once

#include "VelloroPictures/TaskCardPicture.h"
#include "VelloroPictures/YearPicture.h"

#include <optional>
#include <string>
#include <vector>

namespace velloro {

/// One page about all tasks, for who would rather look than read: a file of HTML that needs no
/// other one. It is light or dark as its reader's screen is, fits a phone and paper, runs from
/// right to left where the language does, and has words for whoever can't see its charts.
struct ReportPage {
  struct Task {
    TaskCardPicture card;
    YearPicture year;
    std::optional<OxCodableColor> color = {};  ///< Absent for that of the styles.
  };

  std::vector<Task> tasks = {};
  PictureStyle light, dark;  ///< Of one locale.

  [[nodiscard]] std::string html() const;
};

}  // namespace velloro
