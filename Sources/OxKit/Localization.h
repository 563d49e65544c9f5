#pragma once

#include "Foundation/Text/LocalizedStrings.h"
#include "OxKit/LocalizedKey.h"
#include "OxKit/Platform.h"

#include <string>
#include <string_view>
#include <vector>

namespace platform {
class NSDateFormatter;
}

namespace velloro {

/// The program's text for a key in the user's language, with arguments for its placeholders. A key
/// without a text shows itself.
///
///     localized(LocalizedKey{"distance.steps", "n"}, {1200});     // "1,200 steps"
[[nodiscard]] std::string localized(std::string_view key,
                                    const std::vector<LocalizedArgument>& arguments = {});
/// The same for a key that says what its text takes; the arguments must be that.
[[nodiscard]] std::string localized(const LocalizedKey& key,
                                    const std::vector<LocalizedArgument>& arguments = {});

/// Whether the readers of a formatter's texts count hours 0 to 23, whatever its own pattern does.
[[nodiscard]] bool uses24HourTime(const NSDateFormatter& formatter);

}  // namespace velloro
