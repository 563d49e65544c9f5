#include "velloro/Pictures/RingPicture.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <vector>

namespace velloro {
namespace {

using Status = CompletionStatus::Status;

constexpr OxCodableColor paper{.r = 1, .g = 1, .b = 1};
constexpr OxCodableColor ink{.r = 0.2, .g = 0.2, .b = 0.22};
constexpr double cellPerDiameter = 1.3;
constexpr double namesPerDiameter = 1.9;
constexpr double headPerDiameter = 0.4;
constexpr double textPerDiameter = 0.16;

std::vector<ColorScheme> schemesWith(ThemeMode mode) {
  std::vector<ColorScheme> schemes;
  std::ranges::copy_if(allCases<ColorScheme>(), std::back_inserter(schemes),
                       [mode](ColorScheme scheme) {
                         const auto modes = validModes(scheme);
                         return std::ranges::find(modes, mode) != modes.end();
                       });
  return schemes;
}

class Sheet {
 public:
  explicit Sheet(const RingPicture& ring)
      : ring_(ring),
        schemes_(schemesWith(ring.look.theme.mode)),
        cell_(length(cellPerDiameter)),
        names_(length(namesPerDiameter)),
        head_(length(headPerDiameter)),
        size_{.width = names_ + cell_ * static_cast<double>(Status::allCases().size()),
              .height = head_ + cell_ * static_cast<double>(schemes_.size())},
        canvas_(size_, ring.scale) {}

  [[nodiscard]] std::shared_ptr<const CGImage> draw() {
    canvas_.paint({.origin = {}, .size = size_}, paper);
    double x = names_ + cell_ / 2;
    for (const Status& status : Status::allCases()) {
      canvas_.write(status.stringValue(), {x, head_ / 2}, font(UIFont::Weight::semibold), ink);
      x += cell_;
    }
    double y = head_;
    for (const ColorScheme scheme : schemes_) {
      drawRow(scheme, y);
      y += cell_;
    }
    return canvas_.image();
  }

 private:
  /// In whole pixels: rows that met within one would let the paper through.
  [[nodiscard]] double length(double perDiameter) const {
    return std::round(ring_.look.diameter * perDiameter * ring_.scale) / ring_.scale;
  }

  void drawRow(ColorScheme scheme, double y) {
    RingLook look = ring_.look;
    look.theme.colorScheme = scheme;
    look.isTransparent = false;
    canvas_.paint({.origin = {0, y}, .size = {size_.width, cell_}}, look.theme.backgroundType());
    canvas_.write(localizedTitle(scheme), {names_ / 2, y + cell_ / 2}, font(UIFont::Weight::medium),
                  look.theme.taskTextColor({look.order, {}}));
    const double margin = length((cellPerDiameter - 1) / 2);
    double x = names_ + margin;
    for (const Status& status : Status::allCases()) {
      look.status = status;
      UIWindow window(ring_.scale);
      window.setContentView(look.view());
      canvas_.show(window, {x, y + margin});
      x += cell_;
    }
  }

  [[nodiscard]] UIFont font(UIFont::Weight weight) const {
    return UIFont::system(ring_.look.diameter * textPerDiameter, weight);
  }

  const RingPicture& ring_;
  std::vector<ColorScheme> schemes_;
  double cell_;
  double names_;
  double head_;
  CGSize size_;
  Canvas canvas_;
};

}  // namespace

std::shared_ptr<const CGImage> RingPicture::sheet() const {
  return Sheet(*this).draw();
}

}  // namespace velloro
