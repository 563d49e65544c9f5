#include "VelloroCore/Titles/TaskTitleFormatter.h"

#include "OxKit/Numbers.h"
#include "VelloroCore/Titles/HealthTitle.h"

#include <algorithm>

namespace velloro {

double TaskTitleDynamicFormatter::currentValue(double progress) const {
  const auto target = type ? type->taskTarget() : std::nullopt;
  if (!target) return 0;
  const auto parts = static_cast<double>(std::max<std::int64_t>(numPartialCompletions, 1));
  const double each = target->quantity / parts;
  return std::max(difference(each, each * progress), 0.0);
}

std::optional<TaskDisplayTitle> TaskTitleDynamicFormatter::displayTitle(
    double quantity, const Locale& locale) const {
  if (type && type->unit) {
    return displayTitleForTargetQuantity(
        *type,
        {.customTitle = customTitle, .quantity = quantity, .form = {.isNegative = isNegative}},
        locale);
  }
  return customTitle ? std::optional(TaskDisplayTitle{.localizedPrimary = customTitle})
                     : std::nullopt;
}

double TaskTitleStaticFormatter::currentValue(double) const {
  return displayTitle.quantity ? displayTitle.quantity->quantity.quantity : 0;
}

std::optional<std::string> TaskTitleFormatter::formattedTitle(double quantity,
                                                              const Locale& locale) const {
  const auto title = displayTitle(quantity, locale);
  return title ? title->localizedPrimary : std::nullopt;
}

std::optional<std::string> TaskTitleFormatter::formattedSubtitle(double quantity,
                                                                 const Locale& locale) const {
  const auto title = displayTitle(quantity, locale);
  if (!title) return std::nullopt;
  if (title->localizedSecondary || !title->quantity) return title->localizedSecondary;
  const auto context = std::visit([](const auto& it) { return it.context; }, formatter);
  return title->quantity->localizedFormatted(context, locale);
}

double TaskTitleFormatter::currentValue(double progress) const {
  return std::visit([&](const auto& it) { return it.currentValue(progress); }, formatter);
}

std::optional<TaskDisplayTitle> TaskTitleFormatter::displayTitle(double quantity,
                                                                 const Locale& locale) const {
  return std::visit(
      [&](const auto& it) -> std::optional<TaskDisplayTitle> {
        if constexpr (requires { it.displayTitle(quantity, locale); }) {
          return it.displayTitle(quantity, locale);
        } else {
          return it.displayTitle;
        }
      },
      formatter);
}

}  // namespace velloro
