#pragma once

#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace velloro {

/// What a screen reader says of a view, put together from parts. A part is a text or another label,
/// which is shared: what is added to it later is heard here too.
///
///     AccessibilityLabel label({"Read", "", "Done"});
///     label.parts.push_back("Streak 5");
///     label.text();    // "Read.\nDone.\nStreak 5"
class AccessibilityLabel {
 public:
  class Item {
   public:
    Item(const char* text) : value_(text) {}
    Item(std::string text) : value_(std::move(text)) {}
    /// A label must not hold itself, directly or through others.
    Item(std::shared_ptr<AccessibilityLabel> label) : value_(std::move(label)) {}

    /// The text itself, or that of the label; empty for a null label.
    [[nodiscard]] std::string text() const;

   private:
    std::variant<std::string, std::shared_ptr<const AccessibilityLabel>> value_;
  };

  std::vector<Item> parts;

  AccessibilityLabel() = default;
  explicit AccessibilityLabel(std::vector<Item> items) : parts(std::move(items)) {}

  /// The parts' texts without the empty ones, joined by ".\n", at which a reader pauses.
  [[nodiscard]] std::string text() const;
};

}  // namespace velloro
