#pragma once

#include "CoreGraphics/CGColor.h"
#include "OxCheckableTasks/Icons/IconVisualRepresentation.h"
#include "UIKit/NSAttributedString.h"
#include "UIKit/UIFont.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace velloro {

/// How a line of text with a small icon looks.
struct AttributedWithIconRequest {
  enum class IconPosition : std::uint8_t { leading, trailing };

  UIFont font = {};
  CGColor textColor = {};
  CGColor iconColor = {};
  IconPosition iconPosition = IconPosition::leading;
  NSWritingDirection writingDirection = NSWritingDirection::natural;

  bool operator==(const AttributedWithIconRequest&) const = default;
  [[nodiscard]] NSAttributedString::Attributes textAttributes() const {
    return {.font = font, .color = textColor, .writingDirection = writingDirection};
  }
};

// A line with its icon, and a space between the two where there are both.
//
//     attributed("READ", visualRepresentation(TaskDisplayTitle::TitleIcon::timed), request);
//         // a stopwatch, " ", "READ"

[[nodiscard]] NSAttributedString attributed(std::string_view text,
                                            const std::optional<IconVisualRepresentation>& icon,
                                            const AttributedWithIconRequest& request);
[[nodiscard]] NSAttributedString attributed(const NSAttributedString& text,
                                            const std::optional<IconVisualRepresentation>& icon,
                                            const AttributedWithIconRequest& request);

/// The two texts with a space between them that has the given attributes; an empty text is left
/// out, with the space.
[[nodiscard]] NSAttributedString joinedBySpace(
    const NSAttributedString& first, const NSAttributedString& second,
    const NSAttributedString::Attributes& spaceAttributes);

}  // namespace velloro
