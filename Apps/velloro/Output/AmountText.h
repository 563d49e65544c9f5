#pragma once

#include "VelloroCore/Types/AutomaticTaskType.h"

#include <optional>
#include <string>

namespace velloro {

/// The amounts of a task as a person reads them, in its unit and by the device's locale.
///
///     const TaskTarget target{.quantity = 8, .unit = TypeUnit::cupsUS};
///     const AmountText water(AutomaticTaskType(HealthType::dietaryDrinkWater, target));
///     water.amount(2);                           // "2 cups"
///     water.share(0.4, 8);                       // "0.4 of 8 cups"
///     AmountText(std::nullopt).share(2, 8);      // "2 of 8": a task without a unit counts steps
class AmountText {
 public:
  /// \param type The task's; absent for one that is ticked off.
  explicit AmountText(const std::optional<AutomaticTaskType>& type);

  [[nodiscard]] std::string amount(double value) const;
  /// A time of day is no sum: where none was entered, or that of the target, it stands alone.
  [[nodiscard]] std::string share(double done, double target) const;

 private:
  [[nodiscard]] std::string written(double value) const;

  std::optional<HealthType> type_;
  std::optional<TypeUnit> unit_;
};

}  // namespace velloro
