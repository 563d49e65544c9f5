#include "OxKit/Localization.h"
#include "OxKit/Numbers.h"
#include "VelloroCore/Titles/ExactAmount.h"
#include "VelloroCore/Titles/FormatManager.h"
#include "VelloroCore/Titles/TaskDisplayTitle.h"
#include "VelloroCore/Titles/TitleTextKeys.h"

#include <algorithm>
#include <cmath>

namespace velloro {
namespace {

using Context = TaskDisplayTitle::Context;
using F = FormatManager;
using Measure = NSMeasurementFormatter::Unit;

// How the amounts of a unit are written, with the unit and as the bare number.

/// By a formatter that knows the unit.
struct Measured {
  NSMeasurementFormatter F::*formatter;
  Measure unit;
};

/// By a text that takes the number for its plural, cut to a whole one where the text is so.
struct Counted {
  LocalizedKey key;
  NSNumberFormatter F::*number = &F::integerFormatter;
  bool isCut = false;
};

/// By a text around the written number.
struct Enclosed {
  LocalizedKey key;
  NSNumberFormatter F::*number;
};

struct Mass {
  std::string (F::*text)(double quantity, bool includeUnit) const;
};

struct Duration {};
struct TimeOfDay {};

struct UnitRow {
  TypeUnit value;
  std::variant<Measured, Counted, Enclosed, Mass, Duration, TimeOfDay> form;
};

constexpr UnitRow unitRows[] = {
    {TypeUnit::distanceKm, Measured{&F::taskQuantityTenthFormatter, Measure::kilometers}},
    {TypeUnit::distanceMeters, Measured{&F::taskQuantityWholeFormatter, Measure::meters}},
    {TypeUnit::distanceMiles, Measured{&F::taskQuantityTenthFormatter, Measure::miles}},
    {TypeUnit::distanceYards, Measured{&F::taskQuantityWholeFormatter, Measure::yards}},
    {TypeUnit::steps, Counted{title_text::steps}},
    {TypeUnit::pushes, Counted{title_text::pushes}},
    {TypeUnit::drinks, Counted{title_text::drinks}},
    {TypeUnit::fluidOuncesUS, Enclosed{title_text::ounces, &F::taskQuantityVolumeOunces}},
    {TypeUnit::litres, Enclosed{title_text::litres, &F::taskQuantityVolumeLitres}},
    {TypeUnit::millilitres, Enclosed{title_text::millilitres, &F::taskQuantityVolumeMillilitres}},
    {TypeUnit::cupsUS, Counted{title_text::cups, &F::taskQuantityVolumeCups, true}},
    {TypeUnit::calories, Measured{&F::taskQuantityEnergyFormatter, Measure::kilocalories}},
    {TypeUnit::kilojoules, Measured{&F::taskQuantityEnergyFormatter, Measure::kilojoules}},
    {TypeUnit::durationSeconds, Duration{}},
    {TypeUnit::durationMinutes, Duration{}},
    {TypeUnit::durationHours, Duration{}},
    {TypeUnit::flights, Counted{title_text::flights}},
    {TypeUnit::milligrams, Mass{&F::formattedMilligrams}},
    {TypeUnit::micrograms, Mass{&F::formattedMicrograms}},
    {TypeUnit::grams, Mass{&F::formattedGrams}},
    {TypeUnit::timeOfDay, TimeOfDay{}},
};

bool isNumberOnly(Context context) {
  return context == Context::appleWatchComplicationNumerator ||
         context == Context::notificationBracket;
}

double shownAmount(double amount, TypeUnit unit) {
  const double exact = wholeUnlessFractional(amount);
  if (isVolume(unit)) return normalizeWaterValue(exact, unit);
  if (!isDistance(unit) || exact == 0) return exact;
  return std::max(normalizeDistanceValue(exact), 0.1);
}

std::optional<std::string> timeOfDay(double amount, const FormatManager& formats) {
  constexpr double day = 86400;
  if (!(amount >= 0 && amount < day)) return std::nullopt;
  const auto time = HHMMSS::fromIntValue(static_cast<std::int64_t>(amount));
  return time ? std::optional(formats.formattedTimeOfDay(*time)) : std::nullopt;
}

/// Writes one amount on one surface, by the form of its unit.
struct Writer {
  using Text = std::optional<std::string>;

  const TaskDisplayTitle::Quantity& quantity;
  Context context;
  double amount;
  const Locale& locale;
  const FormatManager& formats = FormatManager::shared(locale);

  Text operator()(const Measured& form) const {
    const NSMeasurementFormatter& formatter = formats.*form.formatter;
    return isNumberOnly(context) ? formatter.numberFormatter().string(amount)
                                 : formatter.string(amount, form.unit);
  }
  Text operator()(const Counted& form) const {
    if (isNumberOnly(context)) return (formats.*form.number).string(amount);
    return localized(form.key, {form.isCut ? std::trunc(amount) : amount});
  }
  Text operator()(const Enclosed& form) const {
    const std::string number = (formats.*form.number).string(amount);
    return isNumberOnly(context) ? number : localized(form.key, {number});
  }
  Text operator()(const Mass& form) const {
    return (formats.*form.text)(amount, !isNumberOnly(context));
  }
  Text operator()(const Duration&) const {
    const TimeInterval seconds = convertToTimeInterval(amount, quantity.quantity.unit);
    if (quantity.type) {
      if (const auto text = ofHours(*quantity.type, seconds)) {
        return locale.capitalized(*text);
      }
    }
    return ofDuration(seconds);
  }
  Text operator()(const TimeOfDay&) const { return timeOfDay(amount, formats); }

 private:
  /// The types that count hours write them so on every surface.
  [[nodiscard]] Text ofHours(HealthType type, TimeInterval seconds) const {
    switch (type) {
      case HealthType::sleep:
      case HealthType::inBed:
        return formats.formattedSleepDuration(seconds);
      case HealthType::standHours:
      case HealthType::rollHours:
        return formats.taskQuantityStandHoursFormatter.string(seconds);
      default:
        return std::nullopt;
    }
  }

  [[nodiscard]] Text ofDuration(TimeInterval seconds) const {
    switch (context) {
      case Context::voiceOver:
      case Context::iPhoneEditPicker:
        return formats.formattedDurationForTimedTaskConfiguration(seconds);
      case Context::iPhoneSiriIntent:
      case Context::iPhoneEditPickerSubTitle:
        return formats.formattedDurationForTimedTaskConfigurationShort(seconds).value_or(
            formats.decimalFormatter.string(seconds));
      case Context::notificationWithQuantity:
        return formats.formattedDurationForTimedTaskNotification(seconds);
      default:
        return formats.formattedDurationForTimedTaskCountdown(seconds);
    }
  }
};

/// Writes one amount as it is, by the form of its unit.
struct ExactWriter {
  using Text = std::optional<std::string>;

  TypeUnit unit;
  double amount;
  const Locale& locale;
  const FormatManager& formats = FormatManager::shared(locale);

  Text operator()(const Measured& form) const { return measured(amount, form.unit); }
  Text operator()(const Counted& form) const { return localized(form.key, {amount}); }
  Text operator()(const Enclosed& form) const { return localized(form.key, {number()}); }
  Text operator()(const Mass&) const {
    if (unit == TypeUnit::micrograms) return localized(title_text::micrograms, {number()});
    return measured(amount, unit == TypeUnit::grams ? Measure::grams : Measure::milligrams);
  }
  Text operator()(const Duration&) const {
    constexpr TimeInterval minute = 60, hour = 3600;
    const TimeInterval seconds = wholeUnlessFractional(convertToTimeInterval(amount, unit));
    // The formats of durations know whole seconds alone.
    if (seconds < minute && std::trunc(seconds) != seconds)
      return measured(seconds, Measure::seconds);
    const bool isWhole = seconds >= hour && std::fmod(seconds, hour) == 0;
    return isWhole ? formats.formattedSleepDuration(seconds)
                   : formats.formattedDurationForTimedTaskConfiguration(seconds);
  }
  Text operator()(const TimeOfDay&) const { return timeOfDay(amount, formats); }

 private:
  [[nodiscard]] std::string number() const { return formats.decimalFormatter.string(amount); }
  [[nodiscard]] std::string measured(double value, Measure in) const {
    return NSMeasurementFormatter({.number = formats.decimalFormatter.settings()})
        .string(value, in);
  }
};

}  // namespace

std::optional<std::string> exactAmount(double amount, TypeUnit unit, const Locale& locale) {
  return std::visit(ExactWriter{unit, wholeUnlessFractional(amount), locale},
                    rowOf(unitRows, unit).form);
}

std::optional<std::string> TaskDisplayTitle::Quantity::localizedFormatted(
    Context context, const Locale& locale) const {
  const TypeUnit unit = quantity.unit;
  return std::visit(Writer{*this, context, shownAmount(quantity.quantity, unit), locale},
                    rowOf(unitRows, unit).form);
}

}  // namespace velloro
