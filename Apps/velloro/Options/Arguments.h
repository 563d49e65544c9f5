#pragma once

#include "Foundation/Process/Terminal.h"
#include "Foundation/Time/Date.h"
#include "Foundation/Time/TimeZone.h"
#include "Foundation/Values/Error.h"
#include "OxDateTime/DayOfWeek.h"
#include "OxDateTime/HHMMSS.h"
#include "OxDateTime/YYYYMMDD.h"
#include "VelloroCore/Appearance/TaskDisplayOrder.h"
#include "VelloroCore/Frequency/DayMode.h"
#include "VelloroCore/Frequency/TaskFrequencyPeriodType.h"
#include "VelloroCore/Titles/TaskDisplayTitle.h"
#include "VelloroCore/Types/TaskType.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velloro {

/// A typed text in quotes, as a message repeats it: a long one is cut after 60 characters, so that
/// the reason behind it is seen.
///
///     cited("monday");                                // "\"monday\""
///     cited(std::string(200, 'x')).substr(58);        // "xxx…\""
[[nodiscard]] std::string cited(std::string_view text);

/// What the person typed can't be used; the text names the argument and gives the reason. The
/// program ends with exit code 2.
class UsageError : public Error {
 public:
  explicit UsageError(const std::string& text) : Error("velloro.usage", 2, terminalText(text)) {}
  /// --limit "0": out of range; write 1 to 9
  UsageError(const std::string& name, std::string_view text, const std::string& reason)
      : UsageError(name + " " + cited(text) + ": " + reason) {}
};

/// With ASCII letters in lower case.
[[nodiscard]] std::string lowercased(std::string text);

/// Names with commas between them, and `lastGap` before the last: "km, m or miles".
[[nodiscard]] std::string listed(const std::vector<std::string_view>& names,
                                 const char* lastGap = ", ");

// Each reads one argument's text. `name` is what the person knows the argument by ("--at").
// All throw UsageError.

/// ISO 8601 with an offset or "Z": 2024-03-07T01:59:59Z.
[[nodiscard]] Date instantArgument(const std::string& name, const std::string& text);
/// 20240307 or 2024-03-07.
[[nodiscard]] YYYYMMDD dayArgument(const std::string& name, const std::string& text);
/// 4:00, 04:00 or 04:00:00; absent for a text that is none.
[[nodiscard]] std::optional<HHMMSS> timeIn(const std::string& text);
/// The same as an argument.
[[nodiscard]] HHMMSS timeArgument(const std::string& name, const std::string& text);
/// "monday", or "mon", in any case.
[[nodiscard]] DayOfWeek weekdayArgument(const std::string& name, const std::string& text);
/// "mon,wed,fri", or with blanks between them.
/// \param otherForms What could be written instead, for the error.
[[nodiscard]] EnumSet<DayOfWeek> weekdaysArgument(const std::string& name, const std::string& text,
                                                  const std::string& otherForms = "");
/// "90s", "30m", "2h" or "1h30m", up to a week; in seconds.
[[nodiscard]] TimeInterval durationArgument(const std::string& name, const std::string& text);
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
/// One of the four pages that have a theme: "0" to "3".
[[nodiscard]] TaskPageNumber pageArgument(const std::string& name, const std::string& text);
inline constexpr std::int64_t numberOfPages = 4;
/// "week".
[[nodiscard]] TaskFrequencyPeriodType periodArgument(const std::string& name,
                                                     const std::string& text);
/// An automatic type's stored name: "hk_water", "timer".
[[nodiscard]] TaskType taskTypeArgument(const std::string& name, const std::string& text);

/// A number with or without a fraction: 7.5.
[[nodiscard]] double amountArgument(const std::string& name, const std::string& text);
/// A number from `least` to `most`. \param example What to write instead: "1 to 100".
[[nodiscard]] double numberBetween(const std::string& name, const std::string& text, double least,
                                   double most, const std::string& example);
/// A whole one.
[[nodiscard]] std::int64_t countBetween(const std::string& name, const std::string& text,
                                        std::int64_t least, std::int64_t most);
/// A number from 0 to 1.
[[nodiscard]] double shareArgument(const std::string& name, const std::string& text);
/// A unit in which such a task's target can be given: "cups_us".
[[nodiscard]] TypeUnit unitArgument(const std::string& name, const std::string& text,
                                    TaskType type);
/// "voiceOver".
[[nodiscard]] TaskDisplayTitle::Context contextArgument(const std::string& name,
                                                        const std::string& text);

/// A line of plain text in UTF-8, of which something can be seen.
/// \param most In characters as a person counts them.
[[nodiscard]] std::string lineArgument(const std::string& name, const std::string& text,
                                       std::size_t most);
/// What a task is called: a line of 200 characters at most.
[[nodiscard]] std::string titleArgument(const std::string& name, const std::string& text);

/// The units of `unitArgument`, by their stored names.
[[nodiscard]] std::vector<std::string_view> unitNames(TaskType type);
/// "numberOfDaysInWeek".
[[nodiscard]] std::string modeName(DayMode mode);
/// "monday".
[[nodiscard]] std::string weekdayName(DayOfWeek day);
/// "week".
[[nodiscard]] std::string periodName(TaskFrequencyPeriodType period);

}  // namespace velloro
