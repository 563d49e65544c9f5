#pragma once

#include "VelloroCore/Titles/AttributedWithIcon.h"
#include "VelloroCore/Titles/TaskDisplayTitle.h"

#include <string_view>

namespace velloro {

/// How a title's rich form looks. Whatever the order of the language's plain form, the amount
/// stands at `quantityPosition`.
///
///     using Config = TaskDisplayTitle::AttributedStringConfig;
///     auto config = Config::create({}, {}, TaskDisplayTitle::Context::iPhoneNotificationUI);
///     config.quantityFont = UIFont::system(14);
///     task.displayTitle
///         .buildAttributedString(visualRepresentation(*task.titleIcon), config, locale);
struct TaskDisplayTitle::AttributedStringConfig {
  Context context = Context::voiceOver;
  AttributedWithIconRequest request = {};
  QuantityPosition quantityPosition = QuantityPosition::trailing;
  UIFont quantityFont = {};
  CGColor quantityColor = {};
  double quantityBaselineOffset = 0;  ///< Points above the line.

  /// The amount behind the text, on its line and in its font.
  [[nodiscard]] static AttributedStringConfig create(const AttributedWithIconRequest& request,
                                                     const CGColor& quantityColor, Context context);

  bool operator==(const AttributedStringConfig&) const = default;
};

/// What is drawn for the icon beside a title.
[[nodiscard]] IconVisualRepresentation visualRepresentation(TaskDisplayTitle::TitleIcon icon);

/// The sign that stands for it where there are only letters: "♥", "⏱", "⊘", "⏸" or "⌛".
[[nodiscard]] std::string_view textVersion(TaskDisplayTitle::TitleIcon icon);

}  // namespace velloro
