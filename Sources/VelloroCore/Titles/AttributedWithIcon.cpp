#include "VelloroCore/Titles/AttributedWithIcon.h"

namespace velloro {

NSAttributedString attributed(std::string_view text,
                              const std::optional<IconVisualRepresentation>& icon,
                              const AttributedWithIconRequest& request) {
  return attributed(NSAttributedString(text, request.textAttributes()), icon, request);
}

NSAttributedString attributed(const NSAttributedString& text,
                              const std::optional<IconVisualRepresentation>& icon,
                              const AttributedWithIconRequest& request) {
  if (!icon) return text;
  const auto image =
      icon->inlineAttributedString(request.font, request.iconColor, request.writingDirection, {});
  const bool leads = request.iconPosition == AttributedWithIconRequest::IconPosition::leading;
  return joinedBySpace(leads ? image : text, leads ? text : image, request.textAttributes());
}

NSAttributedString joinedBySpace(const NSAttributedString& first, const NSAttributedString& second,
                                 const NSAttributedString::Attributes& spaceAttributes) {
  NSAttributedString line = first;
  if (!first.isEmpty() && !second.isEmpty()) line.append(" ", spaceAttributes);
  line.append(second);
  return line;
}

}  // namespace velloro
