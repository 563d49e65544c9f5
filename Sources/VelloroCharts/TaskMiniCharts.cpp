#include "VelloroCharts/TaskMiniCharts.h"

#include "OxKit/AccessibilityLabel.h"
#include "OxKit/Numbers.h"
#include "VelloroCore/Titles/FormatManager.h"

#include <algorithm>

namespace velloro {

std::string TaskMiniChartStatistic::Value::localizedValue(const Locale& locale) const {
  const auto& integers = FormatManager::shared(locale).integerFormatter;
  if (stringValue) return *stringValue;
  if (intValue) return integers.string(static_cast<double>(*intValue));
  return percentageValue ? integers.string(roundToPlaces(*percentageValue * 100, 0)) + "%" : "";
}

std::string TaskMiniChartStatistic::accessibilityLabel(const Locale& locale) const {
  return AccessibilityLabel({title, value.localizedValue(locale)}).text();
}

TaskMiniChart TaskMiniChart::currentBestStreak(const std::string& currentLabel,
                                               std::int64_t current, const std::string& bestLabel,
                                               std::int64_t best) {
  best = std::max(best, current);
  return {.progress = best < 1 ? 0 : static_cast<double>(current) / static_cast<double>(best),
          .primaryStatistic = {.title = currentLabel, .value = {.intValue = current}},
          .secondaryStatistic =
              TaskMiniChartStatistic{.title = bestLabel, .value = {.intValue = best}}};
}

std::string TaskMiniChart::accessibilityLabel(const Locale& locale) const {
  return AccessibilityLabel(
             {primaryStatistic.accessibilityLabel(locale),
              secondaryStatistic ? secondaryStatistic->accessibilityLabel(locale) : ""})
      .text();
}

std::string TaskMiniCharts::accessibilityLabel(const Locale& locale) const {
  return AccessibilityLabel({top.accessibilityLabel(locale), middle.accessibilityLabel(locale),
                             bottom.accessibilityLabel(locale)})
      .text();
}

}  // namespace velloro
