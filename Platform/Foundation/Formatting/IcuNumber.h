#pragma once

// Number formatting that the formatters of this folder share. Private, as IcuSupport.h.

#include "Foundation/Formatting/NSNumberFormatter.h"
#include "Foundation/Text/IcuSupport.h"

#include <unicode/numberformatter.h>

namespace platform {

/// Digits, grouping, rounding and signs by the settings, without their style's percent sign, so
/// that a unit can be added before the locale is.
[[nodiscard]] icu::number::UnlocalizedNumberFormatter icuNumberFormatter(
    const NSNumberFormatter::Settings& settings);

/// The formatter for the settings' locale. Throws where ICU can't make it, as for a digit count
/// beyond 999.
[[nodiscard]] icu::number::LocalizedNumberFormatter localized(
    const icu::number::UnlocalizedNumberFormatter& formatter,
    const NSNumberFormatter::Settings& settings);

/// The text of a number formatted with the settings, their prefixes put in.
[[nodiscard]] std::string numberText(const icu::number::FormattedNumber& number,
                                     const NSNumberFormatter::Settings& settings);

}  // namespace platform
