#include "VelloroCharts/TaskChartsTimePeriod.h"

namespace velloro {

std::optional<YYYYMM> TaskChartsTimePeriod::asMonth(YYYYMMDD today) const {
  if (const auto* month = std::get_if<YYYYMM>(&value)) return *month;
  return std::holds_alternative<ThisMonth>(value) ? std::optional(today.yyyymm()) : std::nullopt;
}

std::optional<std::int64_t> TaskChartsTimePeriod::asYear(YYYYMMDD today) const {
  if (const auto* year = std::get_if<std::int64_t>(&value)) return *year;
  return std::holds_alternative<ThisYear>(value) ? std::optional(today.y) : std::nullopt;
}

YYYYMMDD::Range TaskChartsTimePeriod::days(YYYYMMDD today) const {
  if (const auto month = asMonth(today)) {
    return {.minDate = month->firstDay(), .maxDate = month->lastDay()};
  }
  if (const auto year = asYear(today)) {
    return {.minDate = YYYYMMDD{*year, 1, 1}, .maxDate = YYYYMMDD{*year, 12, 31}};
  }
  return {};
}

}  // namespace velloro
