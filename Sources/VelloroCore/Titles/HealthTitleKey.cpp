#include "VelloroCore/Titles/HealthTitleKey.h"

namespace velloro {
namespace {

using health_type_detail::Title;

std::string deficitKey(std::string_view stem, const TaskTarget& target) {
  const bool isLess = target.speeds.contains(TypeSpeed::lessThan);
  return std::string(stem) + (isLess ? ".LessThan" : ".MoreThan") +
         (target.quantity == 0 ? ".Zero" : ".Long");
}

std::string speedKey(TypeSpeeds speeds) {
  if (speeds.isEmpty()) return std::string(noSpeedKey);
  return "speed." + std::string(rawValue(*speeds.begin()));
}

bool hasWordIn(HealthType type, TypeUnit unit) {
  // A workout's word speaks of minutes; steps say themselves what they are.
  if (type == HealthType::workout) return unit == TypeUnit::durationMinutes;
  return unit != TypeUnit::steps;
}

}  // namespace

std::optional<std::string> titleKey(HealthType type, const TaskTarget& target,
                                    HealthTitleForm form) {
  if (type == HealthType::bedtime) return speedKey(target.speeds);
  const Title& title = rowOf(health_type_detail::rows, type).title;
  if (!hasWordIn(type, target.unit)) return std::nullopt;
  const std::string stem(title.stem);
  const std::string unit(rawValue(target.unit));
  const std::string breaks = form.includeLineBreaks ? ".breaks" : "";
  switch (title.form) {
    case Title::none:
      return std::nullopt;
    case Title::plain:
      return stem;
    case Title::breakable:
      return stem + breaks;
    case Title::beforeUnit:
      return stem + unit;
    case Title::behindUnit:
      return unit + stem + breaks;
    case Title::behindUnitBySign:
      return unit + stem + (form.isNegative ? ".under" : ".over") + breaks;
    case Title::bySign:
      return stem + (form.isNegative ? "Less" : "More");
    case Title::deficit:
      return deficitKey(title.stem, target);
  }
  return std::nullopt;
}

std::optional<std::string_view> predefinedTitleKey(HealthType type) {
  if (type == HealthType::energyDeficit) return "PredefinedHealthTaskEnergyDeficit";
  if (type == HealthType::workout) return "PredefinedHealthTaskWorkout";
  return std::nullopt;
}

}  // namespace velloro
