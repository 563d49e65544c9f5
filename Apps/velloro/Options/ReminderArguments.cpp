#include "velloro/Options/ReminderArguments.h"

#include "Foundation/Text/String.h"
#include "OxDateTime/Digits.h"
#include "OxDateTime/YYYYMMDD.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/EveryArgument.h"

#include <algorithm>
#include <cmath>
#include <ranges>

namespace velloro {
namespace {

constexpr std::size_t mostDigits = 9;

/// Takes a number with its unit from the beginning of a text: "90s". Absent where there is none.
std::optional<TimeInterval> takeSpan(std::string_view& text, char unit, TimeInterval seconds) {
  const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
  if (digits == 0 || digits > mostDigits || digits == text.size() || text[digits] != unit) {
    return std::nullopt;
  }
  const auto number = wholeNumber(text.substr(0, digits));
  text.remove_prefix(digits + 1);
  return number ? std::optional(static_cast<TimeInterval>(*number) * seconds) : std::nullopt;
}

ReminderTime fromNow(const std::string& name, const std::string& text, const TaskClock& clock) {
  constexpr TimeInterval day = 86400;
  const auto wait = durationIn(std::string_view(text).substr(1));
  if (!wait) throw UsageError(name, text, "write a time from now on as +10m");
  if (*wait >= day) {
    throw UsageError(name, text, "the reminder comes every day; write less than a day");
  }
  const Date moment = clock.now + *wait;
  const auto logicalDay = YYYYMMDD::fromDate(clock.startOfDay, moment, clock.timeZone);
  const HHMMSS time = HHMMSS::fromDate(moment, clock.timeZone);
  const Date reached = logicalDay.dateAt(clock.startOfDay, time, clock.timeZone);
  if (std::abs(moment.timeIntervalSince(reached)) >= 1) {
    throw UsageError(name, text,
                     "the clock then shows " + time.debugDescription() +
                         " for the second time, and the reminder comes the first time");
  }
  return {.time = time, .day = logicalDay.dayOfWeek(clock.timeZone)};
}

}  // namespace

std::optional<TimeInterval> durationIn(std::string_view text) {
  constexpr TimeInterval hour = 3600, minute = 60;
  if (text.empty()) return std::nullopt;
  const auto hours = takeSpan(text, 'h', hour);
  const auto minutes = takeSpan(text, 'm', minute);
  const auto seconds = takeSpan(text, 's', 1);
  const TimeInterval total = hours.value_or(0) + minutes.value_or(0) + seconds.value_or(0);
  return text.empty() && total > 0 ? std::optional(total) : std::nullopt;
}

ReminderTime reminderTimeArgument(const std::string& name, const std::string& text,
                                  const TaskClock& clock) {
  if (text.starts_with('+')) return fromNow(name, text, clock);
  if (const auto time = timeIn(text)) return {.time = *time};
  throw UsageError(name, text,
                   "not a time; write one as 07:30, 07:30:15, or +10m for ten minutes from now");
}

EnumSet<DayOfWeek> daysArgument(const std::string& name, const std::string& text) {
  EnumSet<DayOfWeek> days;
  for (const auto piece : std::views::split(lowercased(text), ',')) {
    const std::string word(piece.begin(), piece.end());
    const auto named = daysNamed(word);
    days = days.union_(named.isEmpty() ? EnumSet<DayOfWeek>{weekdayArgument(name, word)} : named);
  }
  return days.isEmpty() ? EnumSet<DayOfWeek>{weekdayArgument(name, text)} : days;
}

}  // namespace velloro
