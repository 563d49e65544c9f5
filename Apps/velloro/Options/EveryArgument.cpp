#include "velloro/Options/EveryArgument.h"

#include "Foundation/Text/String.h"
#include "OxDateTime/Digits.h"
#include "velloro/Options/Arguments.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <optional>
#include <string_view>

namespace velloro {
namespace {

struct UnitRow {
  std::string_view word;
  std::string_view letter;
  std::int64_t days;  ///< 0 where they differ from one to the next.
};

constexpr UnitRow units[] = {
    {"day", "d", 1}, {"week", "w", 7}, {"fortnight", "", 14}, {"month", "m", 0}, {"year", "y", 0}};

const UnitRow* unitNamed(std::string_view word) {
  const auto* found = std::ranges::find_if(units, [&](const UnitRow& unit) {
    const bool isPlural = word.ends_with('s') && word.substr(0, word.size() - 1) == unit.word;
    return word == unit.word || isPlural || (word == unit.letter && !word.empty());
  });
  return found != std::end(units) ? found : nullptr;
}

/// So many of a unit: "3d", "2 weeks", "week", "other day".
struct Span {
  std::int64_t count = 1;
  const UnitRow& unit;
};

std::optional<Span> spanOf(std::string_view text) {
  constexpr std::string_view other = "other ";
  constexpr std::size_t mostDigits = 9;
  const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
  if (digits > mostDigits) return std::nullopt;
  std::int64_t count = digits > 0 ? wholeNumber(text.substr(0, digits)).value_or(0) : 1;
  text.remove_prefix(digits);
  if (digits > 0 && text.starts_with(' ')) text.remove_prefix(1);
  if (digits == 0 && text.starts_with(other)) {
    text.remove_prefix(other.size());
    count = 2;
  }
  const UnitRow* unit = unitNamed(text);
  if (unit == nullptr || (digits == 0 && text == unit->letter)) return std::nullopt;
  return Span{count, *unit};
}

/// With a comma between the names, however they are separated.
std::string withCommas(const std::string& text) {
  std::string list;
  for (const char letter : text) {
    const bool isGap = letter == ' ' || letter == ',';
    if (isGap && (list.empty() || list.back() == ',')) continue;
    list += isGap ? ',' : letter;
  }
  if (list.ends_with(',')) list.pop_back();
  return list;
}

bool areWeekdays(const std::string& list) {
  return !list.empty() && std::ranges::all_of(list, [](unsigned char letter) {
    return letter == ',' || std::isalpha(letter) != 0;
  });
}

}  // namespace

EnumSet<DayOfWeek> daysNamed(std::string_view word) {
  const EnumSet<DayOfWeek> weekend = {DayOfWeek::saturday, DayOfWeek::sunday};
  if (word == "daily") return everyDay();
  if (word == "weekend" || word == "weekends") return weekend;
  const bool isWorking = word == "weekday" || word == "weekdays";
  return isWorking ? everyDay().subtracting(weekend) : EnumSet<DayOfWeek>();
}

void setRecurrence(TaskFrequency& frequency, const std::string& name, const std::string& text) {
  const auto refused = [&](const std::string& reason) {
    return UsageError(name + " " + inQuotes(text) + ": " + reason);
  };
  const std::string wanted = lowercased(text);
  const auto span = spanOf(wanted);
  if (span && span->count == 0) throw refused("not from 1 on");
  if (span && span->unit.days == 0) {
    throw refused("not a fixed number of days; write --times 1 --per " +
                  std::string(span->unit.word));
  }
  const std::int64_t days = span ? span->count * span->unit.days : 0;
  if (days > 1) {
    frequency.dayMode = DayMode::dayInterval;
    frequency.dayInterval = days;
    return;
  }
  frequency.dayMode = DayMode::specificDaysOfWeek;
  frequency.days = days == 1 ? everyDay() : daysNamed(wanted);
  if (!frequency.days.isEmpty()) return;
  const std::string list = withCommas(wanted);
  if (!areWeekdays(list)) {
    throw refused("write weekdays as mon,wed,fri, or an interval as day, 3d or \"2 weeks\"");
  }
  frequency.days = weekdaysArgument(name, list);
}

}  // namespace velloro
