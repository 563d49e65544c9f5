#include "velloro/Output/AmountText.h"

#include "VelloroCore/Progress/TaskProgressActivityRings.h"
#include "VelloroCore/Titles/FormatManager.h"

namespace velloro {
namespace {

using Context = TaskDisplayTitle::Context;

constexpr auto withUnit = Context::iPhoneEditPicker;
constexpr auto bareNumber = Context::notificationBracket;

/// A timer counts seconds unless its unit is another duration.
std::optional<TypeUnit> unitOf(const AutomaticTaskType& type) {
  const bool isSpan = type.unit && isDuration(*type.unit);
  return type.isTimed() && !isSpan ? TypeUnit::durationSeconds : type.unit;
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
  return type_ == HealthType::activity ? ringsText(value) : written(value, withUnit);
}

std::string AmountText::share(double done, double target) const {
  const bool isTime = unit_ == TypeUnit::timeOfDay;
  if (isTime && (done == 0 || done == target)) return amount(target);
  const bool isBare = unit_ && !isTime && !isDuration(*unit_);
  return written(done, isBare ? bareNumber : withUnit) + " of " + amount(target);
}

std::string AmountText::written(double value, Context context) const {
  std::optional<std::string> text;
  if (unit_) {
    const TaskDisplayTitle::Quantity quantity{.type = type_,
                                              .quantity = {.quantity = value, .unit = *unit_}};
    text = quantity.localizedFormatted(context, Locale::current());
  }
  return text ? *text : FormatManager::shared(Locale::current()).decimalFormatter.string(value);
}

}  // namespace velloro
