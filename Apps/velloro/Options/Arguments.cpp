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

std::optional<DayOfWeek> weekdayIn(const std::string& text) {
  const std::string wanted = lowercased(text);
  for (std::size_t i = 0; i < weekdayNames.size(); ++i) {
    if (wanted == weekdayNames[i] || wanted == weekdayNames[i].substr(0, 3)) {
      return everyDay(DayOfWeek::sunday)[i];
    }
  }
  return std::nullopt;
}

/// With a comma between the words, however they are separated.
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

}  // namespace

std::string cited(std::string_view text) {
  constexpr std::size_t most = 60;
  const auto characters = graphemes(text);
  if (characters.size() <= most) return inQuotes(text);
  const auto end = static_cast<std::size_t>(characters[most].data() - text.data());
  return '"' + excerpt(text.substr(0, end)) + "…\"";
}

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
  throw UsageError(name, text,
                   "not an instant; write one as 2024-03-07T01:59:59Z or with an offset");
}

YYYYMMDD dayArgument(const std::string& name, const std::string& text) {
  // As the tables print it, too.
  const bool hasHyphens = text.size() == 10 && text[4] == '-' && text[7] == '-';
  const auto day = YYYYMMDD::fromString(
      hasHyphens ? text.substr(0, 4) + text.substr(5, 2) + text.substr(8) : text);
  if (day && day->y >= 1) return *day;
  throw UsageError(name, text, "not a day of the calendar; write one as 20240307 or 2024-03-07");
}

std::optional<HHMMSS> timeIn(const std::string& text) {
  constexpr std::size_t mostDigits = 2;
  std::vector<std::int64_t> numbers;
  for (const auto piece : std::views::split(text, ':')) {
    const std::string_view digits(piece.begin(), piece.end());
    const bool isWhole = !digits.empty() && digits.size() <= mostDigits &&
                         (digits.size() == mostDigits || numbers.empty());
    const auto number = isWhole ? wholeNumber(digits) : std::nullopt;
    if (!number || *number >= (numbers.empty() ? 24 : 60)) return std::nullopt;
    numbers.push_back(*number);
  }
  if (numbers.size() < 2 || numbers.size() > 3) return std::nullopt;
  return HHMMSS{.h = numbers[0], .m = numbers[1], .s = numbers.size() == 3 ? numbers[2] : 0};
}

HHMMSS timeArgument(const std::string& name, const std::string& text) {
  if (const auto time = timeIn(text)) return *time;
  throw UsageError(name, text, "not a time of day; write one as 4:00 or 04:00:00");
}

DayOfWeek weekdayArgument(const std::string& name, const std::string& text) {
  if (const auto day = weekdayIn(text)) return *day;
  throw UsageError(name, text, "not a weekday; write one as monday");
}

EnumSet<DayOfWeek> weekdaysArgument(const std::string& name, const std::string& text,
                                    const std::string& otherForms) {
  const std::string list = withCommas(text);
  EnumSet<DayOfWeek> days;
  for (const auto piece : std::views::split(list, ',')) {
    const std::string word(piece.begin(), piece.end());
    const auto day = weekdayIn(word);
    if (!day) {
      throw UsageError(name, text,
                       (word == list ? "" : cited(word) + " is ") +
                           "not a day of the week; write days as mon,wed,fri" + otherForms);
    }
    days.insert(*day);
  }
  if (!days.isEmpty()) return days;
  throw UsageError(name, text, "no days; write some as mon,wed,fri" + otherForms);
}

TimeInterval durationArgument(const std::string& name, const std::string& text) {
  constexpr std::string_view units = "dhms";
  constexpr std::int64_t seconds[] = {86400, 3600, 60, 1};
  constexpr std::int64_t most = 7 * 86400;
  const auto unusableText = [&] {
    return UsageError(name, text, "not a duration of up to a week; write 90s, 30m, 2h or 1h30m");
  };
  std::int64_t total = 0;
  std::string digits;
  std::size_t nextUnit = 0;  // each unit once, the longer before the shorter
  for (const char each : text) {
    if (each >= '0' && each <= '9') {
      digits += each;
      continue;
    }
    const auto unit = units.find(each, nextUnit);
    if (unit == std::string_view::npos || digits.empty() || digits.size() > 6) throw unusableText();
    total += *wholeNumber(digits) * seconds[unit];
    digits.clear();
    nextUnit = unit + 1;
  }
  if (!digits.empty() || total < 1 || total > most) throw unusableText();
  return static_cast<TimeInterval>(total);
}

std::int64_t countArgument(const std::string& name, const std::string& text) {
  const auto count = text.empty() || text.size() > 9 ? std::nullopt : wholeNumber(text);
  if (count) return *count;
  throw UsageError(name, text, "not a whole number from 0 to 999999999");
}

DayMode modeArgument(const std::string& name, const std::string& text) {
  if (const auto mode = modeNames.fromRawValue(text)) return *mode;
  std::vector<std::string_view> names;
  for (const DayMode mode : modeNames.cases()) names.push_back(modeNames.rawValue(mode));
  throw UsageError(name, text, "not a mode; write one of " + listed(names));
}

TimeZone zoneArgument(const std::string& name, const std::string& text) {
  if (const auto zone = TimeZone::fromIdentifier(text)) return *zone;
  throw UsageError(name, text, "not a time zone of this system; write one as Europe/Berlin");
}

std::string localeArgument(const std::string& name, const std::string& text) {
  // An unknown language counts as English.
  const bool isEnglish = text.starts_with("en");
  if (isEnglish || Locale::fromIdentifier(text).languageCode() != "en") return text;
  throw UsageError(name, text, "not a locale of a known language; write one as de_DE");
}

std::filesystem::path folderArgument(const std::string& name, const std::string& text) {
  std::error_code failure;
  auto folder = std::filesystem::absolute(text, failure);
  if (!failure && !text.empty()) return folder;
  throw UsageError(name, text, "not a folder");
}

TaskFrequencyPeriodType periodArgument(const std::string& name, const std::string& text) {
  if (const auto period = periodNames.fromRawValue(text)) return *period;
  throw UsageError(name, text, "not a period; write day, week, fortnight, month or year");
}

TaskType taskTypeArgument(const std::string& name, const std::string& text) {
  if (const auto type = TaskType::fromRawValue(text)) return *type;
  std::vector<std::string_view> names;
  for (const TaskType type : TaskType::all()) names.push_back(type.rawValue());
  const std::string hint = suggestion(text, names);
  throw UsageError(
      name, text,
      "not an automatic type; " + (hint.empty() ? "\"velloro types\" lists them" : hint));
}

double amountArgument(const std::string& name, const std::string& text) {
  double amount = 0;
  const char* end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, amount);
  if (read.ec == std::errc() && read.ptr == end && std::isfinite(amount)) return amount;
  throw UsageError(name, text, "not a number; write one as 7.5");
}

double numberBetween(const std::string& name, const std::string& text, double least, double most,
                     const std::string& example) {
  const double number = amountArgument(name, text);
  if (number >= least && number <= most) return number;
  throw UsageError(name, text, "out of range; write " + example);
}

std::int64_t countBetween(const std::string& name, const std::string& text, std::int64_t least,
                          std::int64_t most) {
  const auto count = countArgument(name, text);
  if (count >= least && count <= most) return count;
  throw UsageError(name, text,
                   "out of range; write " + std::to_string(least) + " to " + std::to_string(most));
}

double shareArgument(const std::string& name, const std::string& text) {
  const double share = amountArgument(name, text);
  if (share >= 0 && share <= 1) return share;
  throw UsageError(name, text, "not a share; write a number from 0 to 1");
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
  if (names.empty()) throw UsageError(name, text, ofType + ", which has none");
  throw UsageError(name, text, ofType + "; write " + listed(names, " or "));
}

TaskDisplayTitle::Context contextArgument(const std::string& name, const std::string& text) {
  if (const auto context = fromRawValue<TaskDisplayTitle::Context>(text)) return *context;
  std::vector<std::string_view> names;
  for (const auto context : allCases<TaskDisplayTitle::Context>()) {
    names.push_back(rawValue(context));
  }
  const std::string hint = suggestion(text, names);
  throw UsageError(
      name, text,
      "not a context; " + (hint.empty() ? "\"velloro title\" without one shows them all" : hint));
}

TaskPageNumber pageArgument(const std::string& name, const std::string& text) {
  return TaskPageNumber{countBetween(name, text, 0, numberOfPages - 1)};
}

std::string lineArgument(const std::string& name, const std::string& text, std::size_t most) {
  // One character may have any number of accents.
  constexpr std::size_t mostBytesEach = 64;
  if (text.empty()) throw UsageError(name, text, "empty; write a line of text");
  if (!isUTF8(text)) throw UsageError(name, text, "not a text in UTF-8");
  if (hasControlCharacters(text)) {
    throw UsageError(name, text,
                     "has line breaks or other control characters; write a line of plain text");
  }
  if (!isVisible(text)) throw UsageError(name, text, "has nothing that can be seen");
  if (text.size() > most * mostBytesEach || graphemes(text).size() > most) {
    throw UsageError(name, text, "longer than " + std::to_string(most) + " characters");
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
