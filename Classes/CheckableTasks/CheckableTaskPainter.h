#pragma once

#include "CheckableTasks/CheckableTaskView.h"
#include "UIKit/TextLayout.h"
#include "UIKit/UIImage.h"

#include <memory>
#include <optional>

namespace velloro {

/// Draws a view's ring, and keeps from one frame to the next what is dear to make: the icon in its
/// colour and the captions' glyphs.
class CheckableTaskView::Painter {
 public:
  explicit Painter(const CheckableTaskView& view) : view_(view) {}

  void draw(CGContext& context);
  /// What is kept no longer shows what the view is.
  void dropImages();

 private:
  void drawRing(CGContext& context) const;
  void drawCaptions(CGContext& context);
  void drawBadges(CGContext& context) const;
  void drawIcon(CGContext& context);
  [[nodiscard]] const std::optional<IconDisplayRepresentation>& shownIcon() const;
  [[nodiscard]] std::shared_ptr<TextLayout> layOut(const Caption& caption,
                                                   const OxCodableColor& color) const;
  [[nodiscard]] const ColorProfile& profile() const;
  [[nodiscard]] const ColorProfile& profileWhenChecked() const;

  const CheckableTaskView& view_;
  std::optional<UIImage> maskedImage_;
  std::shared_ptr<TextLayout> bottomCaption_;
  std::shared_ptr<TextLayout> topCaption_;
  bool captionsAreLaidOut_ = false;
};

}  // namespace velloro
