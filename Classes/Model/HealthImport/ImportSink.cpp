#include "HealthImport/ImportSink.h"

#include "Foundation/Time/CivilDay.h"
#include "OxHealthKit/HKObjects.h"
#include "OxHealthKit/OxHKCategoryValueSleepAnalysis.h"
#include "OxHealthKit/OxHKWorkoutActivityType.h"
#include "OxHealthKit/QuantityUnits.h"

#include <charconv>
#include <cmath>
#include <map>

namespace velloro {

using Category = OxHKSampleType::CategoryType;
using Quantity = OxHKSampleType::QuantityType;

void ImportSink::count(const Result<void>& written) {
  if (!written) {
    error_ = written.error();
    return;
  }
  constexpr std::int64_t batch = 20000;
  if (++inBatch_ < batch) return;
  inBatch_ = 0;
  if (const auto committed = writer_.commit(); !committed) error_ = committed.error();
}

void ImportSink::add(const HKSampleRow& row) {
  if (error_ == nullptr) count(writer_.add(row));
}

void ImportSink::add(const HKActivitySummary& summary) {
  if (error_ == nullptr) count(writer_.add(summary));
}

void ImportSink::skip(std::int64_t line, std::string why) {
  constexpr std::size_t mostNamed = 100;
  ++report_.skipped;
  if (report_.skips.size() < mostNamed) report_.skips.push_back({line, std::move(why)});
}

HealthImportReport ImportSink::finish() {
  if (error_ == nullptr) {
    if (const auto committed = writer_.commit(); !committed) error_ = committed.error();
  }
  report_.added = writer_.written().added;
  report_.known = writer_.written().known;
  report_.summaries = writer_.written().summaries;
  return std::move(report_);
}

std::optional<double> numberIn(std::string_view text) {
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  const bool isNumber =
      error == std::errc() && end == text.data() + text.size() && std::isfinite(value);
  return isNumber ? std::optional(value) : std::nullopt;
}

namespace {

/// "AsleepCore" and "asleepCore" are the same.
std::string withSmallFirst(std::string_view name) {
  std::string text(name);
  if (!text.empty() && 'A' <= text[0] && text[0] <= 'Z') {
    text[0] = static_cast<char>(text[0] - 'A' + 'a');
  }
  return text;
}

std::optional<std::int64_t> sleepState(std::string_view text) {
  using enum OxHKCategoryValueSleepAnalysis;
  constexpr std::string_view prefix = "HKCategoryValueSleepAnalysis";
  if (text.starts_with(prefix)) text.remove_prefix(prefix.size());
  static const std::map<std::string, OxHKCategoryValueSleepAnalysis, std::less<>> names = {
      {"inBed", inBed},
      {"asleep", asleepUnspecified},
      {"asleepUnspecified", asleepUnspecified},
      {"asleepCore", asleepCore},
      {"asleepDeep", asleepDeep},
      {"asleepREM", asleepREM},
      {"awake", awake}};
  const auto found = names.find(withSmallFirst(text));
  if (found != names.end()) return rawValue(found->second);
  const auto number = numberIn(text);
  const bool isState = number && fromRawValue<OxHKCategoryValueSleepAnalysis>(
                                     static_cast<std::int64_t>(std::clamp(*number, -1.0, 9.0)));
  return isState && *number == std::floor(*number)
             ? std::optional(static_cast<std::int64_t>(*number))
             : std::nullopt;
}

std::optional<std::int64_t> standState(std::string_view text) {
  constexpr std::string_view prefix = "HKCategoryValueAppleStandHour";
  if (text.starts_with(prefix)) text.remove_prefix(prefix.size());
  const std::string name = withSmallFirst(text);
  if (name == "stood" || name == "0") return 0;
  if (name == "idle" || name == "1") return 1;
  return std::nullopt;
}

}  // namespace

std::optional<std::int64_t> categoryState(Category type, std::string_view text) {
  if (type == Category::sleepAnalysis) return sleepState(text);
  if (type == Category::appleStandHour) return standState(text);
  const auto number = numberIn(text);
  return number ? static_cast<std::int64_t>(std::clamp(*number, 0.0, 1e9)) : 0;
}

std::expected<SampleValueText, std::string> sampleValue(const OxHKSampleType& type,
                                                        const SampleText& text) {
  if (const auto* category = std::get_if<Category>(&type.value)) {
    const auto state = categoryState(*category, text.value);
    if (!state && text.value.empty()) return std::unexpected("it has no value");
    if (!state) return std::unexpected("its value is unknown: \"" + std::string(text.value) + "\"");
    return SampleValueText{static_cast<double>(*state), "state"};
  }
  const auto* quantity = std::get_if<Quantity>(&type.value);
  if (quantity == nullptr) return SampleValueText{0, ""};
  if (text.value.empty()) return std::unexpected("it has no value");
  const auto value = numberIn(text.value);
  if (!value) return std::unexpected("its value is no number: \"" + std::string(text.value) + "\"");
  const std::string_view own = usualUnit(*quantity);
  const std::string_view unit = text.unit.empty() && own == "count" ? own : text.unit;
  if (unit.empty()) return std::unexpected("it has no unit");
  if (!measures(*quantity, unit)) {
    return std::unexpected("its unit is unknown: \"" + std::string(unit) + "\"");
  }
  return SampleValueText{*value, unit};
}

std::string activityNamed(std::string_view name) {
  constexpr std::string_view prefix = "HKWorkoutActivityType";
  if (name.starts_with(prefix)) name.remove_prefix(prefix.size());
  const std::string text = withSmallFirst(name);
  const auto known = fromRawValue<OxHKWorkoutActivityType>(text);
  return std::string(rawValue(known.value_or(OxHKWorkoutActivityType::other)));
}

namespace {

/// Absent unless all characters are digits.
std::optional<int> digits(std::string_view text) {
  int value = 0;
  for (const char c : text) {
    if (c < '0' || c > '9') return std::nullopt;
    value = value * 10 + (c - '0');
  }
  return value;
}

}  // namespace

/// Files have millions of them, so they are read at fixed places.
std::optional<Date> dateIn(std::string_view text) {
  constexpr std::size_t length = 25;
  if (text.size() != length || text[10] != ' ' || text[19] != ' ') return Date::fromISO8601(text);
  const auto y = digits(text.substr(0, 4)), m = digits(text.substr(5, 2));
  const auto d = digits(text.substr(8, 2)), h = digits(text.substr(11, 2));
  const auto min = digits(text.substr(14, 2)), s = digits(text.substr(17, 2));
  const auto hours = digits(text.substr(21, 2)), minutes = digits(text.substr(23, 2));
  if (!y || !m || !d || !h || !min || !s || !hours || !minutes) return std::nullopt;
  const bool areMarks = text[4] == '-' && text[7] == '-' && text[13] == ':' && text[16] == ':' &&
                        (text[20] == '+' || text[20] == '-');
  const CivilDay day{.y = *y, .m = *m, .d = *d};
  if (!areMarks || !isRealDay(day) || *h > 23 || *min > 59 || *s > 59 || *hours > 18 ||
      *minutes > 59) {
    return std::nullopt;
  }
  const std::int64_t offset = (*hours * 3600 + *minutes * 60) * (text[20] == '-' ? -1 : 1);
  return Date::since1970(
      static_cast<double>(daysFromCivil(day) * 86400 + *h * 3600 + *min * 60 + *s - offset));
}

}  // namespace velloro
