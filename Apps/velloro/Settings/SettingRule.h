#pragma once

#include "Settings/Setting.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velloro {

/// Which values of a setting its readers understand, as a text that a person types. Settings with a
/// rule of their own are listed in one table; the others go by their kind.
///
///     const SettingRule& rule = SettingRule::of(Setting::selectedTaskPage);
///     rule.expect("3");
///     rule.expect("4");    // throws UsageError; VALUE "4": not a page; write 0 to 3
struct SettingRule {
  std::string_view what = {};     ///< "a page"
  std::string_view example = {};  ///< "0 to 3": what to write instead.
  /// Null for a setting that no program reads yet. \throws DecodingError, which says why not.
  bool (*accepts)(const std::string& text) = nullptr;
  /// The accepted texts where they are few; near ones are suggested. May be null.
  std::vector<std::string_view> (*words)() = nullptr;

  [[nodiscard]] static const SettingRule& of(Setting::Case setting);

  /// \throws UsageError for a text that no reader of the setting understands.
  void expect(const std::string& text) const;
};

/// The seconds of a start of day, which is written as 4:00, 04:00, 04:00:00 or as its seconds;
/// absent for any other text. A number of seconds below 2400, other than 0, is refused: 4 or 1800
/// may well be meant as a time.
[[nodiscard]] std::optional<std::int64_t> startOfDayNumber(const std::string& text);

}  // namespace velloro
