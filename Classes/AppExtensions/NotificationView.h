#pragma once

#include "CheckableTasks/CheckableTaskView.h"
#include "UIKit/NSAttributedString.h"
#include "UIKit/TextLayout.h"
#include "UIKit/UIView.h"
#include "VelloroCore/Appearance/ThemeBackground.h"

#include <memory>
#include <optional>
#include <string>

namespace velloro {

/// The font of the program's own texts.
[[nodiscard]] inline UIFont appFont(double size) {
  return UIFont::system(size);
}

/// An expanded notification: a task's ring with its title and a text beside it. Where there is no
/// room beside the ring the texts stand below it, and the view grows with them, so that nothing is
/// cut off.
///
///     NotificationView view(320, 2);                  // 320 points wide, 2 pixels per point
///     view.setContents({.titleLabel = {{"Read", {.font = appFont(17)}}}});
///     view.bounds().size.height;                      // 128: or more for long texts
///     view.draw(*CGContext::bitmap(640, 256));
class NotificationView : public UIView {
 public:
  /// In points.
  struct Constraints {
    double height = 96;    ///< Of the ring.
    double leading = 16;   ///< Between the ring and the edge, and the same above and below it.
    double trailing = 16;  ///< Between the texts and the edges; the same to the ring.
  };

  struct Label {
    NSAttributedString text = {};
    NSTextAlignment textAlignment = NSTextAlignment::natural;

    bool operator==(const Label&) const = default;
  };

  struct Contents {
    Label titleLabel = {};
    Label bodyLabel = {};
    bool ringIsHidden = false;

    bool operator==(const Contents&) const = default;
  };

  struct Background {
    ThemeBackgroundType type;
    TaskPageContext page;

    bool operator==(const Background&) const = default;
  };

  /// A label shows at most this many bytes of its text, and at most this many points of its height;
  /// an ellipsis marks what is cut off.
  static constexpr std::size_t maximumTextLength = 1000;
  static constexpr double maximumTextHeight = 2000;

  /// Reads as the current locale does, from left to right or from right to left.
  NotificationView(double width, double scale);

  [[nodiscard]] const std::shared_ptr<CheckableTaskView>& checkableTaskView() const {
    return checkableTaskView_;
  }
  [[nodiscard]] const Constraints& constraints() const { return constraints_; }
  [[nodiscard]] NSWritingDirection effectiveUserInterfaceLayoutDirection() const {
    return direction_;
  }
  [[nodiscard]] const Label& titleLabel() const { return contents_.titleLabel; }
  [[nodiscard]] const Label& bodyLabel() const { return contents_.bodyLabel; }
  [[nodiscard]] bool ringIsHidden() const { return contents_.ringIsHidden; }

  void setContents(Contents contents);
  void setBackground(const Background& background);

  void draw(CGContext& context) override;

 private:
  struct Placed {
    std::shared_ptr<TextLayout> text;
    CGPoint origin;
  };

  void layoutSubviews();
  [[nodiscard]] std::shared_ptr<TextLayout> layOut(const Label& label, double width) const;
  /// Both texts, one below the other from `y` on, in a column.
  void placeTexts(double x, double width, double y);

  Constraints constraints_;
  NSWritingDirection direction_;
  std::shared_ptr<CheckableTaskView> checkableTaskView_;
  Contents contents_;
  std::optional<Background> background_;
  CGPoint ringOrigin_;
  Placed title_;
  Placed body_;
};

}  // namespace velloro
