#include "velloro/Output/AmountText.h"

#include "Foundation/Text/Locale.h"
#include "VelloroCore/Progress/TaskProgressActivityRings.h"
#include "VelloroCore/Titles/ExactAmount.h"
#include "VelloroCore/Titles/FormatManager.h"

namespace velloro {
namespace {

/// A timer counts seconds unless its unit is another duration.
std::optional<TypeUnit> unitOf(const AutomaticTaskType& type) {
  const bool isSpan = type.unit && isDuration(*type.unit);
  return type.isTimed() && !isSpan ? TypeUnit::durationSeconds : type.unit;
}

std::string number(double value) {
  return FormatManager::shared(Locale::current()).decimalFormatter.string(value);
}

std::string ringsText(double encoded) {
  const auto rings = TaskProgressActivityRings::fromEncoded({}, encoded);
  const auto& percent = FormatManager::shared(Locale::current()).percentageWholeFormatter;
  return percent.string(rings.energy) + " " + percent.string(rings.exercise) + " " +
         percent.string(rings.stand);
}

}  // namespace

AmountText::AmountText(const std::optional<AutomaticTaskType>& type) {
  if (!type) return;
  type_ = type->type.healthType();
  unit_ = unitOf(*type);
}

std::string AmountText::amount(double value) const {
  return type_ == HealthType::activity ? ringsText(value) : written(value);
}

std::string AmountText::share(double done, double target) const {
  const bool isTime = unit_ == TypeUnit::timeOfDay;
  if (isTime && (done == 0 || done == target)) return amount(target);
  const bool isBare = unit_ && !isTime && !isDuration(*unit_);
  return (isBare ? number(done) : written(done)) + " of " + amount(target);
}

std::string AmountText::written(double value) const {
  const auto text =
      unit_ ? exactAmount(value, *unit_, Locale::current()) : std::optional<std::string>();
  return text ? *text : number(value);
}

}  // namespace velloro
