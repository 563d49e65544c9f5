#include "Foundation/Formatting/NSDateComponentsFormatter.h"

#include "Foundation/Formatting/NSListFormatter.h"
#include "Foundation/Formatting/NSMeasurementFormatter.h"
#include "Foundation/Text/IcuSupport.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include <unicode/measfmt.h>
#include <unicode/measure.h>
#include <unicode/uchar.h>

namespace platform {
namespace {

using Unit = NSDateComponentsFormatter::Unit;
using UnitsStyle = NSDateComponentsFormatter::UnitsStyle;
using ZeroFormattingBehavior = NSDateComponentsFormatter::ZeroFormattingBehavior;
using Settings = NSDateComponentsFormatter::Settings;
using MeasurementUnit = NSMeasurementFormatter::Unit;
using UnitStyle = NSMeasurementFormatter::UnitStyle;

struct UnitEntry {
  std::int64_t seconds;
  MeasurementUnit unit;
};

const UnitEntry& entry(Unit unit) {
  static constexpr UnitEntry units[] = {{86400, MeasurementUnit::days},
                                        {3600, MeasurementUnit::hours},
                                        {60, MeasurementUnit::minutes},
                                        {1, MeasurementUnit::seconds}};
  return units[static_cast<std::size_t>(unit)];
}

struct StyleEntry {
  UnitStyle unitStyle;
  NSListFormatter::Width listWidth;
};

/// The positional style writes its days as the abbreviated one does.
const StyleEntry& entry(UnitsStyle style) {
  static constexpr StyleEntry styles[] = {{UnitStyle::short_, NSListFormatter::Width::narrow},
                                          {UnitStyle::short_, NSListFormatter::Width::narrow},
                                          {UnitStyle::medium, NSListFormatter::Width::short_},
                                          {UnitStyle::long_, NSListFormatter::Width::wide}};
  return styles[static_cast<std::size_t>(style)];
}

struct Part {
  Unit unit;
  std::int64_t value;
};
using Parts = std::vector<Part>;

bool isZero(const Part& part) {
  return part.value == 0;
}

Parts split(double duration, Unit smallest, const std::set<Unit>& allowed) {
  const std::int64_t step = entry(smallest).seconds;
  auto rest =
      step * static_cast<std::int64_t>(std::floor(duration / static_cast<double>(step) + 0.5));
  Parts parts;
  for (const Unit unit : allowed) {
    parts.push_back({unit, rest / entry(unit).seconds});
    rest %= entry(unit).seconds;
  }
  return parts;
}

/// Which zeros are left out.
struct Drops {
  bool leading, middle, trailing;
};

Drops dropsOf(const Settings& settings) {
  using enum ZeroFormattingBehavior;
  const ZeroFormattingBehavior behavior = settings.zeroFormattingBehavior;
  const bool all = behavior == default_ || behavior == dropAll;
  const bool positional = settings.unitsStyle == UnitsStyle::positional;
  return {.leading = all || behavior == dropLeading,
          .middle = !positional && (all || behavior == dropMiddle),
          .trailing = !positional && (all || behavior == dropTrailing)};
}

/// How many parts stay even as leading zeros.
std::ptrdiff_t leastParts(const Parts& parts, const Settings& settings) {
  if (settings.unitsStyle != UnitsStyle::positional || settings.maximumUnitCount == 1) return 1;
  const bool hasDays = parts.front().unit == Unit::days;
  return std::clamp<std::ptrdiff_t>(std::ssize(parts) - (hasDays ? 1 : 0), 1, 2);
}

Parts partsDownTo(Unit smallest, double duration, const Settings& settings) {
  Parts parts = split(duration, smallest, settings.allowedUnits);
  if (!dropsOf(settings).leading) return parts;
  const auto first = std::ranges::find_if_not(parts, isZero);
  parts.erase(parts.begin(), std::min(first, parts.end() - leastParts(parts, settings)));
  return parts;
}

void dropZerosBehindFirst(Parts& parts, Drops drops) {
  if (std::ranges::all_of(parts, isZero)) return;
  auto end = std::find_if_not(parts.rbegin(), parts.rend(), isZero).base();
  if (drops.trailing) end = parts.erase(end, parts.end());
  const auto first = std::ranges::find_if_not(parts, isZero);
  if (drops.middle) parts.erase(std::remove_if(first, end, isZero), end);
}

Parts shownParts(double duration, const Settings& settings) {
  Parts parts = partsDownTo(*settings.allowedUnits.rbegin(), duration, settings);
  const auto limit = static_cast<std::size_t>(std::max(settings.maximumUnitCount, 0));
  if (limit > 0 && parts.size() > limit) {
    // Rounding can carry into a larger unit, which then comes first.
    parts = partsDownTo(parts[limit - 1].unit, duration, settings);
    parts.resize(limit);
  }
  dropZerosBehindFirst(parts, dropsOf(settings));
  return parts;
}

using ClockMarks = std::array<std::string, 2>;

/// What stands between the first three numbers of a text.
ClockMarks marksBetweenNumbers(const icu::UnicodeString& text) {
  std::array<icu::UnicodeString, 2> marks;
  std::size_t numbers = 0;
  bool inNumber = false;
  for (std::int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
    const UChar32 character = text.char32At(i);
    const bool isDigit = u_isdigit(character) != 0;
    if (isDigit && !inNumber) ++numbers;
    if (!isDigit && numbers > 0 && numbers <= marks.size()) marks[numbers - 1] += character;
    inNumber = isDigit;
  }
  return {utf8(marks[0]), utf8(marks[1])};
}

/// The marks between hours and minutes and between minutes and seconds. ICU tells them only within
/// a text, so they are read off one.
ClockMarks clockMarks(const icu::Locale& locale) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::MeasureFormat format(locale, UMEASFMT_WIDTH_NUMERIC, status);
  const icu::Measure measures[] = {{1, icu::MeasureUnit::createHour(status), status},
                                   {23, icu::MeasureUnit::createMinute(status), status},
                                   {45, icu::MeasureUnit::createSecond(status), status}};
  icu::UnicodeString text;
  icu::FieldPosition ignored;
  format.formatMeasures(measures, 3, text, ignored, status);
  checkIcu(status, "cannot load the form of durations");
  return marksBetweenNumbers(text);
}

}  // namespace

struct NSDateComponentsFormatter::Implementation {
  explicit Implementation(Settings of)
      : settings(std::move(of)),
        measures({.unitStyle = entry(settings.unitsStyle).unitStyle,
                  .number = {.locale = settings.locale, .maximumFractionDigits = 0}}),
        oneDigit({.style = NSNumberFormatter::Style::none, .locale = settings.locale}),
        twoDigits({.style = NSNumberFormatter::Style::none,
                   .locale = settings.locale,
                   .minimumIntegerDigits = 2}),
        list({.locale = settings.locale,
              .kind = NSListFormatter::Kind::units,
              .width = entry(settings.unitsStyle).listWidth}) {}

  [[nodiscard]] std::string joined(const Parts& parts) const;
  [[nodiscard]] std::string positional(Parts parts) const;
  [[nodiscard]] std::string clock(const Parts& parts) const;
  [[nodiscard]] std::string measure(const Part& part) const {
    return measures.string(static_cast<double>(part.value), entry(part.unit).unit);
  }

  Settings settings;
  NSMeasurementFormatter measures;
  NSNumberFormatter oneDigit, twoDigits;
  NSListFormatter list;
  Lazy<ClockMarks> marks;
};

NSDateComponentsFormatter::NSDateComponentsFormatter(Settings settings)
    : implementation_(std::make_shared<const Implementation>(std::move(settings))) {}

std::optional<std::string> NSDateComponentsFormatter::string(TimeInterval duration) const {
  constexpr double limit = 3e14;  // ten million years, far within what integers hold
  const Settings& settings = implementation_->settings;
  if (settings.allowedUnits.empty() || !(std::abs(duration) <= limit)) return std::nullopt;
  const Parts parts = shownParts(std::abs(duration), settings);
  const bool isNegative = duration < 0 && !std::ranges::all_of(parts, isZero);
  const std::string sign = isNegative ? settings.locale.minusSign() : "";
  const bool isPositional = settings.unitsStyle == UnitsStyle::positional;
  return sign +
         (isPositional ? implementation_->positional(parts) : implementation_->joined(parts));
}

std::string NSDateComponentsFormatter::Implementation::joined(const Parts& parts) const {
  std::vector<std::string> texts;
  for (const Part& part : parts) texts.push_back(measure(part));
  return list.string(texts);
}

std::string NSDateComponentsFormatter::Implementation::positional(Parts parts) const {
  std::vector<std::string> texts;
  if (parts.front().unit == Unit::days) {
    texts.push_back(measure(parts.front()));
    parts.erase(parts.begin());
  }
  if (!parts.empty()) texts.push_back(clock(parts));
  return list.string(texts);
}

std::string NSDateComponentsFormatter::Implementation::clock(const Parts& parts) const {
  const auto& between = marks.get([this] { return clockMarks(settings.locale.data().icu); });
  const bool pads = settings.zeroFormattingBehavior == ZeroFormattingBehavior::pad;
  std::string text = (pads ? twoDigits : oneDigit).string(parts.front().value);
  for (std::size_t i = 1; i < parts.size(); ++i) {
    text += between[parts[i - 1].unit == Unit::hours ? 0 : 1] + twoDigits.string(parts[i].value);
  }
  return text;
}

}  // namespace platform
