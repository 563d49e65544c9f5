#pragma once

#include "Foundation/Text/Locale.h"

#include <memory>
#include <span>
#include <string>

namespace platform {

/// Joins texts as a locale lists things. Settings are fixed at construction; formatting is safe
/// from any thread; what it needs is loaded at first use and shared by copies.
///
///     const NSListFormatter list({.locale = Locale::fromIdentifier("en_US")});
///     list.string(std::vector<std::string>{"yoga", "rowing", "golf"});
///         // "yoga, rowing, and golf"
class NSListFormatter {
 public:
  enum class Kind {
    conjunction,  ///< Things that all count: "yoga and golf".
    units,        ///< Parts of one amount: "1 hr, 5 min".
  };
  enum class Width { narrow, short_, wide };

  struct Settings {
    Locale locale = Locale::current();
    Kind kind = Kind::conjunction;
    Width width = Width::wide;
  };

  NSListFormatter() : NSListFormatter(Settings{}) {}
  explicit NSListFormatter(Settings settings);

  /// Empty for no items.
  [[nodiscard]] std::string string(std::span<const std::string> items) const;

 private:
  struct Implementation;

  std::shared_ptr<const Implementation> implementation_;
};

}  // namespace platform
