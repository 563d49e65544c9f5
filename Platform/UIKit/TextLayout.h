#pragma once

#include "CoreGraphics/CGContext.h"
#include "Foundation/Values/Geometry.h"
#include "UIKit/NSAttributedString.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace platform {

enum class NSTextAlignment : std::uint8_t { natural, center };

struct TextLayoutOptions {
  /// Lines break where they would be wider, in points; absent: only where the text says so.
  std::optional<double> maximumWidth = {};
  NSTextAlignment alignment = NSTextAlignment::natural;
  /// For which the images in the text are made, in pixels per point.
  double scale = 1;
};

/// A text whose glyphs have found their places: made once, drawn many times. What no font of the
/// text has is taken from the other installed ones, emoji from a font with colours. The text runs
/// in the direction of its first run that names one, else in that of its first letter that has one.
///
///     const auto layout = TextLayout::make({"Read\nWrite", {}}, {.scale = 2});
///     if (layout) layout->lineCount();    // 2
///
/// For the thread that made it alone.
class TextLayout {
 public:
  virtual ~TextLayout() = default;
  TextLayout() = default;
  TextLayout(const TextLayout&) = delete;
  TextLayout& operator=(const TextLayout&) = delete;

  /// None where the drawing module is missing.
  [[nodiscard]] static std::shared_ptr<TextLayout> make(const NSAttributedString& text,
                                                        const TextLayoutOptions& options = {});

  /// In points: as wide as the widest line, as high as all lines together. A text without runs is
  /// empty, 0 by 0.
  [[nodiscard]] virtual CGSize size() const = 0;
  /// How far below the top the first line stands.
  [[nodiscard]] virtual double baseline() const = 0;
  [[nodiscard]] virtual std::size_t lineCount() const = 0;
  /// Draws with the left upper corner at `origin`, one point to a unit of the context.
  virtual void draw(CGContext& context, CGPoint origin) = 0;

  void drawCentered(CGContext& context, CGPoint center) {
    const auto [width, height] = size();
    draw(context, {center.x - width / 2, center.y - height / 2});
  }
};

}  // namespace platform
