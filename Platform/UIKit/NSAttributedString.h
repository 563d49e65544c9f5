#pragma once

#include "CoreGraphics/CGColor.h"
#include "Foundation/Values/Geometry.h"
#include "UIKit/NSTextAttachment.h"
#include "UIKit/UIFont.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// The direction in which a text is laid out; `natural` goes by the text's own letters.
enum class NSWritingDirection : std::uint8_t { natural, leftToRight, rightToLeft };

/// A text in runs, each with its own look, or an image in the place of a run's text.
///
///     NSAttributedString title;
///     title.append("Drink water ", {.font = UIFont::system(17)});
///     title.append("8 cups", {.font = UIFont::system(14), .baselineOffset = 1});
///     title.string();    // "Drink water 8 cups"
class NSAttributedString {
 public:
  struct Attributes {
    UIFont font = {};
    CGColor color = {};
    double baselineOffset = 0;  ///< Points above the line on which the text stands.
    NSWritingDirection writingDirection = NSWritingDirection::natural;

    bool operator==(const Attributes&) const = default;
  };

  struct Run {
    std::string text;  ///< UTF-8. Empty where an image stands.
    Attributes attributes;
    std::shared_ptr<const NSTextAttachment> attachment = {};

    /// Two attachments are equal when they show the same in the same size.
    bool operator==(const Run& other) const;
  };

  NSAttributedString() = default;
  NSAttributedString(std::string_view text, const Attributes& attributes) {
    append(text, attributes);
  }

  /// Nothing happens for an empty text; a text that looks as the end does joins its run.
  void append(std::string_view text, const Attributes& attributes);
  void append(std::shared_ptr<const NSTextAttachment> attachment, const Attributes& attributes);
  void append(const NSAttributedString& other);

  [[nodiscard]] const std::vector<Run>& runs() const { return runs_; }
  [[nodiscard]] bool isEmpty() const { return runs_.empty(); }
  /// The text alone, with U+FFFC in the place of each image.
  [[nodiscard]] std::string string() const;

  bool operator==(const NSAttributedString&) const = default;

 private:
  void append(const Run& run);

  std::vector<Run> runs_;
};

}  // namespace platform
