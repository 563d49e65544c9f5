#include "velloro/Options/Arguments.h"

#include "Foundation/Text/Locale.h"
#include "Foundation/Text/String.h"
#include "OxDateTime/Digits.h"
#include "velloro/Options/NearMatches.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <ranges>
#include <string_view>
#include <vector>

namespace velloro {
namespace {

constexpr std::array<std::string_view, 7> weekdayNames = {
    "sunday", "monday", "tuesday", "wednesday", "thursday", "friday", "saturday"};

constexpr auto modeNames = caseNames<DayMode::specificDaysOfMonth>();
constexpr auto periodNames = caseNames<TaskFrequencyPeriodType::year>();

UsageError unusable(const std::string& name, const std::string& text, const std::string& reason) {
  return UsageError(name + " " + inQuotes(text) + ": " + reason);
}

}  // namespace

std::string lowercased(std::string text) {
  std::ranges::transform(text, text.begin(), [](unsigned char c) { return std::tolower(c); });
  return text;
}

std::string listed(const std::vector<std::string_view>& names, const char* lastGap) {
  std::string text;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0) text += i + 1 < names.size() ? ", " : lastGap;
    text += names[i];
  }
  return text;
}

Date instantArgument(const std::string& name, const std::string& text) {
  if (const auto date = Date::fromISO8601(text)) return *date;
  throw unusable(name, text, "not an instant; write one as 2024-03-07T01:59:59Z or with an offset");
}

YYYYMMDD dayArgument(const std::string& name, const std::string& text) {
  const auto day = YYYYMMDD::fromString(text);
  if (day && day->y >= 1) return *day;
  throw unusable(name, text, "not a day of the calendar; write one as 20240307");
}

std::optional<HHMMSS> timeIn(const std::string& text) {
  const bool hasForm = text.size() == 8 && text[2] == ':' && text[5] == ':';
  const auto hour = hasForm ? wholeNumber(text.substr(0, 2)) : std::nullopt;
  const auto minute = hasForm ? wholeNumber(text.substr(3, 2)) : std::nullopt;
  const auto second = hasForm ? wholeNumber(text.substr(6, 2)) : std::nullopt;
  if (hour && minute && second && *hour < 24 && *minute < 60 && *second < 60) {
    return HHMMSS{.h = *hour, .m = *minute, .s = *second};
  }
  return std::nullopt;
}

HHMMSS timeArgument(const std::string& name, const std::string& text) {
  if (const auto time = timeIn(text)) return *time;
  throw unusable(name, text, "not a time of day; write one as 03:00:00");
}

DayOfWeek weekdayArgument(const std::string& name, const std::string& text) {
  const std::string wanted = lowercased(text);
  for (std::size_t i = 0; i < weekdayNames.size(); ++i) {
    if (wanted == weekdayNames[i] || wanted == weekdayNames[i].substr(0, 3)) {
      return everyDay(DayOfWeek::sunday)[i];
    }
  }
  throw unusable(name, text, "not a weekday; write one as monday");
}

EnumSet<DayOfWeek> weekdaysArgument(const std::string& name, const std::string& text) {
  EnumSet<DayOfWeek> days;
  for (const auto piece : std::views::split(text, ',')) {
    days.insert(weekdayArgument(name, std::string(piece.begin(), piece.end())));
  }
  return days;
}

std::int64_t countArgument(const std::string& name, const std::string& text) {
  const auto count = text.empty() || text.size() > 9 ? std::nullopt : wholeNumber(text);
  if (count) return *count;
  throw unusable(name, text, "not a whole number from 0 to 999999999");
}

DayMode modeArgument(const std::string& name, const std::string& text) {
  if (const auto mode = modeNames.fromRawValue(text)) return *mode;
  std::vector<std::string_view> names;
  for (const DayMode mode : modeNames.cases()) names.push_back(modeNames.rawValue(mode));
  throw unusable(name, text, "not a mode; write one of " + listed(names));
}

TimeZone zoneArgument(const std::string& name, const std::string& text) {
  if (const auto zone = TimeZone::fromIdentifier(text)) return *zone;
  throw unusable(name, text, "not a time zone of this system; write one as Europe/Berlin");
}

std::string localeArgument(const std::string& name, const std::string& text) {
  // An unknown language counts as English.
  const bool isEnglish = text.starts_with("en");
  if (isEnglish || Locale::fromIdentifier(text).languageCode() != "en") return text;
  throw unusable(name, text, "not a locale of a known language; write one as de_DE");
}

std::filesystem::path folderArgument(const std::string& name, const std::string& text) {
  std::error_code failure;
  auto folder = std::filesystem::absolute(text, failure);
  if (!failure && !text.empty()) return folder;
  throw unusable(name, text, "not a folder");
}

TaskFrequencyPeriodType periodArgument(const std::string& name, const std::string& text) {
  if (const auto period = periodNames.fromRawValue(text)) return *period;
  throw unusable(name, text, "not a period; write day, week, fortnight, month or year");
}

TaskType taskTypeArgument(const std::string& name, const std::string& text) {
  if (const auto type = TaskType::fromRawValue(text)) return *type;
  std::vector<std::string_view> names;
  for (const TaskType type : TaskType::all()) names.push_back(type.rawValue());
  const std::string hint = suggestion(text, names);
  throw unusable(
      name, text,
      "not an automatic type; " + (hint.empty() ? "\"velloro types\" lists them" : hint));
}

double amountArgument(const std::string& name, const std::string& text) {
  double amount = 0;
  const char* end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, amount);
  if (read.ec == std::errc() && read.ptr == end && std::isfinite(amount)) return amount;
  throw unusable(name, text, "not a number; write one as 7.5");
}

double numberBetween(const std::string& name, const std::string& text, double least, double most,
                     const std::string& example) {
  const double number = amountArgument(name, text);
  if (number >= least && number <= most) return number;
  throw unusable(name, text, "out of range; write " + example);
}

std::int64_t countBetween(const std::string& name, const std::string& text, std::int64_t least,
                          std::int64_t most) {
  const auto count = countArgument(name, text);
  if (count >= least && count <= most) return count;
  throw unusable(name, text,
                 "out of range; write " + std::to_string(least) + " to " + std::to_string(most));
}

double shareArgument(const std::string& name, const std::string& text) {
  const double share = amountArgument(name, text);
  if (share >= 0 && share <= 1) return share;
  throw unusable(name, text, "not a share; write a number from 0 to 1");
}

std::vector<std::string_view> unitNames(TaskType type) {
  std::vector<std::string_view> names;
  for (const TypeUnit unit : allCases<TypeUnit>()) {
    // A timer is offered the units of a workout's target, but what it measures is time.
    const bool isOffered = std::ranges::find(type.unitOptions(), unit) != type.unitOptions().end();
    if (type.usesHealthKit() ? isOffered : isDuration(unit)) names.push_back(rawValue(unit));
  }
  return names;
}

TypeUnit unitArgument(const std::string& name, const std::string& text, TaskType type) {
  const auto names = unitNames(type);
  const auto unit = fromRawValue<TypeUnit>(text);
  if (unit && std::ranges::find(names, text) != names.end()) return *unit;
  const std::string ofType = "not a unit of " + std::string(type.rawValue());
  if (names.empty()) throw unusable(name, text, ofType + ", which has none");
  throw unusable(name, text, ofType + "; write " + listed(names, " or "));
}

TaskDisplayTitle::Context contextArgument(const std::string& name, const std::string& text) {
  if (const auto context = fromRawValue<TaskDisplayTitle::Context>(text)) return *context;
  std::vector<std::string_view> names;
  for (const auto context : allCases<TaskDisplayTitle::Context>()) {
    names.push_back(rawValue(context));
  }
  const std::string hint = suggestion(text, names);
  throw unusable(
      name, text,
      "not a context; " + (hint.empty() ? "\"velloro title\" without one shows them all" : hint));
}

TaskPageNumber pageArgument(const std::string& name, const std::string& text) {
  return TaskPageNumber{countBetween(name, text, 0, numberOfPages - 1)};
}

std::string lineArgument(const std::string& name, const std::string& text, std::size_t most) {
  // One character may have any number of accents.
  constexpr std::size_t mostBytesEach = 64;
  if (text.empty()) throw unusable(name, text, "empty; write a line of text");
  if (!isUTF8(text)) throw unusable(name, text, "not a text in UTF-8");
  if (hasControlCharacters(text)) {
    throw unusable(name, text,
                   "has line breaks or other control characters; write a line of plain text");
  }
  if (!isVisible(text)) throw unusable(name, text, "has nothing that can be seen");
  if (text.size() > most * mostBytesEach || graphemes(text).size() > most) {
    throw unusable(name, text, "longer than " + std::to_string(most) + " characters");
  }
  return text;
}

std::string titleArgument(const std::string& name, const std::string& text) {
  constexpr std::size_t most = 200;
  return lineArgument(name, text, most);
}

std::string modeName(DayMode mode) {
  return std::string(modeNames.rawValue(mode));
}

std::string weekdayName(DayOfWeek day) {
  return std::string(weekdayNames[static_cast<std::size_t>(calendarDayOfWeek(day)) - 1]);
}

std::string periodName(TaskFrequencyPeriodType period) {
  return std::string(periodNames.rawValue(period));
}

}  // namespace velloro
