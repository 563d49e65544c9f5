#pragma once

#include "VelloroCore/Log/PreviousDaysSuccess.h"
#include "VelloroCore/Status/StreakRecord.h"
#include "VelloroPictures/PicturePainter.h"

#include <optional>
#include <string>
#include <vector>

namespace velloro {

/// All tasks at the width of a phone, a row each: ring, title, run, recent rate and how it went.
struct OverviewPicture final : Picture {
  struct Row {
    std::string title;
    std::optional<OxCodableColor> color = {};                    ///< Absent for the theme's.
    std::shared_ptr<const IconDisplayRepresentation> icon = {};  ///< Within the ring.
    double progress = 0;                                         ///< Of the current period, 0 to 1.
    std::string streak = {};                                     ///< In words: "12 days".
    PreviousDaysSuccess success = PreviousDaysSuccess::defaultLongTerm;
    TaskFrequencyPeriodType measurementDuration = TaskFrequencyPeriodType::day;
    std::vector<double> data = {};  ///< Of all time.
  };

  std::vector<Row> rows = {};

  [[nodiscard]] CGSize size() const override;
  void draw(CGContext& context, const PictureStyle& style) const override;

 private:
  static void drawRow(CGContext& context, const PictureStyle& style, const Row& row, double top);
};

}  // namespace velloro
