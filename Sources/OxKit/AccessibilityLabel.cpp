#include "OxKit/AccessibilityLabel.h"

namespace velloro {

std::string AccessibilityLabel::text() const {
  std::string joined;
  for (const Item& part : parts) {
    const std::string text = part.text();
    if (text.empty()) continue;
    if (!joined.empty()) joined += ".\n";
    joined += text;
  }
  return joined;
}

std::string AccessibilityLabel::Item::text() const {
  if (const auto* text = std::get_if<std::string>(&value_)) return *text;
  const auto& label = std::get<std::shared_ptr<const AccessibilityLabel>>(value_);
  return label != nullptr ? label->text() : "";
}

}  // namespace velloro
