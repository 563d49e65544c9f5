#pragma once

#include "VelloroCharts/LineGraph.h"
#include "VelloroCharts/TaskChartsTimePeriod.h"

#include <string>
#include <vector>

namespace velloro {

// Each reads one argument's text; see Arguments.h. All throw UsageError.

/// "2026-03" or "202603".
[[nodiscard]] YYYYMM monthArgument(const std::string& name, const std::string& text);
/// A year from 1 to 9999.
[[nodiscard]] std::int64_t yearArgument(const std::string& name, const std::string& text);
/// "allTime", "thisYear", "thisMonth", a year or a month.
[[nodiscard]] TaskChartsTimePeriod timePeriodArgument(const std::string& name,
                                                      const std::string& text);
/// Numbers with commas between them; none for an empty text.
[[nodiscard]] std::vector<double> amountsArgument(const std::string& name, const std::string& text);
/// One length for all sides, or four: top, left, bottom and right.
[[nodiscard]] LineGraph::EdgeInsets insetsArgument(const std::string& name,
                                                   const std::string& text);

}  // namespace velloro
