#pragma once

#include "Foundation/Process/Terminal.h"
#include "Foundation/Time/Date.h"
#include "Foundation/Time/TimeZone.h"
#include "OxDateTime/DayOfWeek.h"
#include "OxDateTime/HHMMSS.h"
#include "OxDateTime/YYYYMMDD.h"
#include "VelloroCore/Frequency/DayMode.h"
#include "VelloroCore/Frequency/TaskFrequencyPeriodType.h"
#include "VelloroCore/Titles/TaskDisplayTitle.h"
#include "VelloroCore/Types/TaskType.h"

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace velloro {

/// What the person typed can't be used; the text names the argument and says why. Exit code 2.
class UsageError : public std::runtime_error {
 public:
  explicit UsageError(const std::string& text) : std::runtime_error(terminalText(text)) {}
};

/// ASCII letters made small.
[[nodiscard]] std::string lowercased(std::string text);

// Each reads one argument's text. `name` is what the person knows the argument by ("--at").
// All throw UsageError.

/// ISO 8601 with an offset or "Z": 2024-03-07T01:59:59Z.
[[nodiscard]] Date instantArgument(const std::string& name, const std::string& text);
/// 20240307.
[[nodiscard]] YYYYMMDD dayArgument(const std::string& name, const std::string& text);
/// 03:00:00.
[[nodiscard]] HHMMSS timeArgument(const std::string& name, const std::string& text);
/// "monday", or "mon", in any case.
[[nodiscard]] DayOfWeek weekdayArgument(const std::string& name, const std::string& text);
/// "mon,wed,fri".
[[nodiscard]] EnumSet<DayOfWeek> weekdaysArgument(const std::string& name, const std::string& text);
/// A whole number from 0 on, of nine digits at most.
[[nodiscard]] std::int64_t countArgument(const std::string& name, const std::string& text);
/// "numberOfDaysInWeek".
[[nodiscard]] DayMode modeArgument(const std::string& name, const std::string& text);
/// A zone of the system's list: Europe/Berlin.
[[nodiscard]] TimeZone zoneArgument(const std::string& name, const std::string& text);

/// A locale whose language is known: de_DE.
[[nodiscard]] std::string localeArgument(const std::string& name, const std::string& text);
/// A folder, which need not be there yet; as an absolute path.
[[nodiscard]] std::filesystem::path folderArgument(const std::string& name,
                                                   const std::string& text);
/// "week".
[[nodiscard]] TaskFrequencyPeriodType periodArgument(const std::string& name,
                                                     const std::string& text);
/// An automatic type's stored name: "hk_water", "timer".
[[nodiscard]] TaskType taskTypeArgument(const std::string& name, const std::string& text);

/// A number with or without a fraction: 7.5.
[[nodiscard]] double amountArgument(const std::string& name, const std::string& text);
/// A number from 0 to 1.
[[nodiscard]] double shareArgument(const std::string& name, const std::string& text);
/// A unit in which such a task's target can be given: "cups_us".
[[nodiscard]] TypeUnit unitArgument(const std::string& name, const std::string& text,
                                    TaskType type);
/// "voiceOver".
[[nodiscard]] TaskDisplayTitle::Context contextArgument(const std::string& name,
                                                        const std::string& text);

/// The units of `unitArgument`, by their stored names.
[[nodiscard]] std::vector<std::string_view> unitNames(TaskType type);
/// "numberOfDaysInWeek".
[[nodiscard]] std::string modeName(DayMode mode);
/// "monday".
[[nodiscard]] std::string weekdayName(DayOfWeek day);
/// "week".
[[nodiscard]] std::string periodName(TaskFrequencyPeriodType period);

}  // namespace velloro
