#include "OxCheckableTasks/CaptionText.h"

namespace velloro {

NSAttributedString joinedCaption(const std::vector<NSAttributedString>& items,
                                 const NSAttributedString::Attributes& attributes) {
  constexpr double spaceSize = 0.6;
  NSAttributedString::Attributes narrow = attributes;
  narrow.font = attributes.font.withSize(attributes.font.pointSize * spaceSize);
  NSAttributedString line;
  for (const NSAttributedString& item : items) {
    if (!line.isEmpty()) line.append(" ", narrow);
    line.append(item);
  }
  return line;
}

}  // namespace velloro
