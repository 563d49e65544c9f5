#include "velloro/Options/EveryArgument.h"

#include "OxDateTime/Digits.h"
#include "velloro/Options/Arguments.h"

#include <algorithm>
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

using Steps = std::optional<std::int64_t>;

/// The number that a text begins with, which is removed.
Steps takeNumber(std::string_view& text) {
  constexpr std::size_t mostDigits = 9;
  const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
  const auto number =
      digits > 0 && digits <= mostDigits ? wholeNumber(text.substr(0, digits)) : Steps();
  if (number) text.remove_prefix(digits);
  return number;
}

/// So many of a unit: "3d", "2 weeks", "week", "other day".
struct Span {
  std::int64_t count = 1;
  const UnitRow& unit;
};

std::optional<Span> spanOf(std::string_view text) {
  constexpr std::string_view other = "other ";
  const auto number = takeNumber(text);
  const bool isOther = !number && text.starts_with(other);
  if (isOther) text.remove_prefix(other.size());
  if (number && text.starts_with(' ')) text.remove_prefix(1);
  const UnitRow* unit = unitNamed(text);
  if (unit == nullptr || (!number && text == unit->letter)) return std::nullopt;
  return Span{number.value_or(isOther ? 2 : 1), *unit};
}

struct PeriodRow {
  TaskFrequencyPeriodType period;
  DayMode times;  ///< That counts days of the period.
  DayMode total;  ///< That keeps one total over the period.
};

constexpr PeriodRow periods[] = {
    {TaskFrequencyPeriodType::day, DayMode::specificDaysOfWeek, DayMode::specificDaysOfWeek},
    {TaskFrequencyPeriodType::week, DayMode::numberOfDaysInWeek, DayMode::aggregateOverWeek},
    {TaskFrequencyPeriodType::fortnight, DayMode::numberOfDaysInFortnight,
     DayMode::aggregateOverFortnight},
    {TaskFrequencyPeriodType::month, DayMode::numberOfDaysInMonth, DayMode::aggregateOverMonth},
    {TaskFrequencyPeriodType::year, DayMode::numberOfDaysInYear, DayMode::aggregateOverYear}};

/// ", in 3 steps" at the end of a text, which is removed.
Steps takeSteps(std::string_view& text) {
  constexpr std::string_view beginning = ", in ";
  const std::size_t place = text.rfind(beginning);
  if (place == text.npos) return std::nullopt;
  std::string_view rest = text.substr(place + beginning.size());
  const auto steps = takeNumber(rest);
  if (!steps || rest != " steps") return std::nullopt;
  text = text.substr(0, place);
  return steps;
}

/// "once a week", "3 times a week" or, for a total, "20 a week". Returns whether it is one of
/// these.
bool setCount(TaskFrequency& frequency, Steps& steps, std::string_view text) {
  const std::size_t gap = std::min(text.rfind(" a "), text.size());
  const auto* row = std::ranges::find_if(periods, [&](const PeriodRow& each) {
    return gap < text.size() && text.substr(gap + 3) == periodName(each.period);
  });
  std::string_view counted = text.substr(0, gap);
  const auto count = counted == "once" ? Steps(1) : takeNumber(counted);
  const bool isTotal = counted.empty();
  if (row == std::end(periods) || !count ||
      !(isTotal || counted == "once" || counted == " times")) {
    return false;
  }
  setPeriod(frequency, row->period, isTotal);
  const bool countsSteps = isTotal || row->period == TaskFrequencyPeriodType::day;
  (countsSteps ? steps.emplace() : frequency.numCompletions) = *count;
  return true;
}

}  // namespace

EnumSet<DayOfWeek> daysNamed(std::string_view word) {
  const EnumSet<DayOfWeek> weekend = {DayOfWeek::saturday, DayOfWeek::sunday};
  if (word == "daily") return everyDay();
  if (word == "weekend" || word == "weekends") return weekend;
  const bool isWorking = word == "weekday" || word == "weekdays";
  return isWorking ? everyDay().subtracting(weekend) : EnumSet<DayOfWeek>();
}

void setPeriod(TaskFrequency& frequency, TaskFrequencyPeriodType period, bool isTotal) {
  const auto& row = *std::ranges::find(periods, period, &PeriodRow::period);
  const DayMode chosen = isTotal ? row.total : row.times;
  if (chosen == DayMode::specificDaysOfWeek && frequency.dayMode != chosen) {
    frequency.days = everyDay();
  }
  frequency.dayMode = chosen;
}

std::optional<std::int64_t> setRecurrence(TaskFrequency& frequency, const std::string& name,
                                          const std::string& text) {
  constexpr std::string_view every = "every ";
  const std::string lower = lowercased(text);
  std::string_view wanted = lower;
  auto steps = takeSteps(wanted);
  if (setCount(frequency, steps, wanted)) return steps;
  if (wanted.starts_with(every)) wanted.remove_prefix(every.size());
  const auto span = spanOf(wanted);
  if (span && span->count == 0) throw UsageError(name, text, "an interval is at least one day");
  if (span && span->unit.days == 0) {
    throw UsageError(
        name, text,
        "not a fixed number of days; write --times 1 --per " + std::string(span->unit.word));
  }
  const std::int64_t days = span ? span->count * span->unit.days : 0;
  if (days > 1) {
    frequency.dayMode = DayMode::dayInterval;
    frequency.dayInterval = days;
    return steps;
  }
  frequency.dayMode = DayMode::specificDaysOfWeek;
  frequency.days = days == 1 ? everyDay() : daysNamed(wanted);
  if (frequency.days.isEmpty()) {
    const auto place = static_cast<std::size_t>(wanted.data() - lower.data());
    frequency.days = weekdaysArgument(name, text.substr(place, wanted.size()),
                                      ", or day, weekday, weekend, 3d or \"2 weeks\"");
  }
  return steps;
}

}  // namespace velloro
