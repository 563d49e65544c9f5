#pragma once

#include "Foundation/Text/Locale.h"
#include "Foundation/Time/Date.h"

#include <memory>
#include <optional>
#include <set>
#include <string>

namespace platform {

/// Writes lengths of time as a locale does. Settings are fixed at construction; formatting is safe
/// from any thread; what it needs is loaded at first use and shared by copies.
///
///     using Formatter = NSDateComponentsFormatter;
///     const Formatter clock({.unitsStyle = Formatter::UnitsStyle::positional});
///     clock.string(3909);  // "1:05:09"
///     const Formatter words({.unitsStyle = Formatter::UnitsStyle::full, .maximumUnitCount = 2});
///     words.string(3909);  // "1 hour, 5 minutes"
///
/// The length is rounded, half up, to the smallest unit that the settings leave: 0.7 hours are
/// 42 minutes though the product of the doubles lies below, and 59 minutes 40 seconds limited to
/// one unit are "1 hr". Below zero, the locale's minus sign stands in front of the whole.
class NSDateComponentsFormatter {
 public:
  /// A day is 24 hours. The largest allowed unit takes what larger ones would: 90 minutes are "90
  /// min" where hours are not allowed.
  enum class Unit { days, hours, minutes, seconds };

  enum class UnitsStyle {
    positional,   ///< "1:05:09"; days stand in front, abbreviated.
    abbreviated,  ///< "1h 5m 9s"
    short_,       ///< "1 hr, 5 min, 9 sec"
    full,         ///< "1 hour, 5 minutes, 9 seconds"
  };

  /// Which of the allowed units are left out when they are zero: those before the first other one
  /// (leading), those between, those after the last (trailing). Of a length of zero all but the
  /// smallest are leading, and that one is shown. The positional style leaves out only leading
  /// ones, and keeps two of hours, minutes and seconds if two are allowed: what is left must still
  /// read as a time.
  enum class ZeroFormattingBehavior {
    default_,  ///< All, and leading ones in the positional style.
    dropLeading,
    dropMiddle,
    dropTrailing,
    dropAll,
    pad,  ///< None. The positional style writes two digits in the first place too: "00:09".
  };

  struct Settings {
    Locale locale = Locale::current();
    std::set<Unit> allowedUnits = {Unit::hours, Unit::minutes, Unit::seconds};
    UnitsStyle unitsStyle = UnitsStyle::positional;
    /// How many units, counted from the first one shown; 0 is no limit.
    int maximumUnitCount = 0;
    ZeroFormattingBehavior zeroFormattingBehavior = ZeroFormattingBehavior::default_;
  };

  NSDateComponentsFormatter() : NSDateComponentsFormatter(Settings{}) {}
  explicit NSDateComponentsFormatter(Settings settings);

  /// Absent for what is not a number or beyond ten million years, and without an allowed unit.
  [[nodiscard]] std::optional<std::string> string(TimeInterval duration) const;

 private:
  struct Implementation;

  std::shared_ptr<const Implementation> implementation_;
};

}  // namespace platform
