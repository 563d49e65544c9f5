#pragma once

#include "CoreGraphics/CGContext.h"
#include "UIKit/UIFont.h"
#include "VelloroPictures/PictureStyle.h"

#include <memory>
#include <string>
#include <string_view>

namespace velloro {

struct IconDisplayRepresentation;

/// A size in points and what draws it, for a surface of any kind.
class Picture {
 public:
  virtual ~Picture() = default;
  Picture() = default;
  Picture(const Picture&) = default;
  Picture& operator=(const Picture&) = default;

  [[nodiscard]] virtual CGSize size() const = 0;
  virtual void draw(CGContext& context, const PictureStyle& style) const = 0;

  /// The file of a picture with so many pixels per point. \throws RuntimeError where nothing can
  /// be drawn
  [[nodiscard]] std::string png(const PictureStyle& style, double scale) const;
  /// \throws RuntimeError
  [[nodiscard]] std::string svg(const PictureStyle& style) const;
};

/// Draws shapes and texts whose places are given from left to right, and mirrors the places for
/// who reads from right to left.
class PicturePainter {
 public:
  enum class Alignment { leading, center, trailing };

  PicturePainter(CGContext& context, const PictureStyle& style, double width)
      : context_(context), style_(style), width_(width) {}

  [[nodiscard]] const PictureStyle& style() const { return style_; }

  void fillBackground(CGSize size);
  void fill(CGRect rect, const OxCodableColor& color, double radius = 0);
  void stroke(CGRect rect, const OxCodableColor& color, double lineWidth, double radius);
  /// A path that is laid out for the reader already, moved to a place.
  void fill(const CGPath& path, CGPoint origin, double width, const OxCodableColor& color);
  void stroke(const CGPath& path, CGPoint origin, double width, const OxCodableColor& color,
              double lineWidth);
  /// A circle of which a share from the top on is drawn in full, around an icon; without one, a
  /// whole circle is around a check mark.
  void ring(CGPoint center, double diameter, double share,
            const std::shared_ptr<const IconDisplayRepresentation>& icon);

  struct Text {
    double fontSize = 12;
    UIFont::Weight weight = UIFont::Weight::regular;
    OxCodableColor color = {};
    Alignment alignment = Alignment::leading;
  };
  /// One line in the middle of the rectangle's height; what is too long for it ends with "…".
  void write(std::string_view text, CGRect rect, const Text& look);

 private:
  [[nodiscard]] CGRect placed(CGRect rect) const;
  void checkMark(CGPoint middle, double diameter);
  void icon(const IconDisplayRepresentation& icon, CGPoint middle, double side);

  CGContext& context_;
  const PictureStyle& style_;
  double width_;
};

}  // namespace velloro
