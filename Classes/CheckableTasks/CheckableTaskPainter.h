#pragma once

#include "CheckableTasks/CheckableTaskView.h"
#include "CoreGraphics/CGImage.h"
#include "OxCheckableTasks/StaticImages/CaptionText.h"

#include <memory>
#include <optional>

namespace velloro {

/// Draws a view's ring. What stays as it is while the ring moves is drawn but once: the disc below
/// the track; captions, badges and icon above it. So a frame of an animation costs two copies and
/// the strokes of the track.
class CheckableTaskView::Painter {
 public:
  explicit Painter(const CheckableTaskView& view) : view_(view) {}

  void draw(CGContext& context);
  /// What is kept no longer shows what the view is.
  void dropImages() { still_.reset(); }

 private:
  struct Still {
    CGSize size;
    double scale = 1;
    std::shared_ptr<const CGImage> below;
    std::shared_ptr<const CGImage> above;  // none where it is drawn anew each time
  };

  const Still& still();
  template <typename Draw>
  [[nodiscard]] std::shared_ptr<const CGImage> picture(const Draw& draw) const;
  void drawDisc(CGContext& context) const;
  void drawRing(CGContext& context) const;
  /// What is cut out of a badge is cut out of the track below, too; so is a badge that lets the
  /// page through.
  [[nodiscard]] bool cutsThrough() const;
  void drawAbove(CGContext& context) const;
  void drawCaptions(CGContext& context) const;
  /// Empty without a font.
  [[nodiscard]] CaptionLine line(const Caption& caption, const OxCodableColor& color) const;
  [[nodiscard]] OxCodableColor badgeCircle() const;
  void drawBadges(CGContext& context) const;
  void drawIcon(CGContext& context) const;
  [[nodiscard]] const std::optional<IconDisplayRepresentation>& shownIcon() const;
  [[nodiscard]] const ColorProfile& profile() const;
  [[nodiscard]] const ColorProfile& profileWhenChecked() const;
  [[nodiscard]] double trackWidth() const;

  const CheckableTaskView& view_;
  std::optional<Still> still_;
};

}  // namespace velloro
