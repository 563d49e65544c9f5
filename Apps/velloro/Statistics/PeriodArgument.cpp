#include "velloro/Statistics/PeriodArgument.h"

#include "velloro/Options/Arguments.h"

#include <algorithm>
#include <optional>

namespace velloro {
namespace {

std::optional<YYYYMM> monthIn(const std::string& text) {
  const bool hasHyphen = text.size() == 7 && text[4] == '-';
  const auto month = YYYYMM::fromString(hasHyphen ? text.substr(0, 4) + text.substr(5) : text);
  return month && month->y >= 1 && month->m >= 1 && month->m <= 12 ? month : std::nullopt;
}

std::optional<std::int64_t> yearIn(const std::string& text) {
  const bool isNumber =
      text.size() == 4 && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
  return isNumber && text != "0000" ? std::optional(std::stoll(text)) : std::nullopt;
}

}  // namespace

YYYYMM monthArgument(const std::string& name, const std::string& text) {
  if (const auto month = monthIn(text)) return *month;
  throw UsageError(name, text, "not a month; write one as 2026-03");
}

std::int64_t yearArgument(const std::string& name, const std::string& text) {
  if (const auto year = yearIn(text)) return *year;
  throw UsageError(name, text, "not a year; write one as 2026");
}

TaskChartsTimePeriod timePeriodArgument(const std::string& name, const std::string& text) {
  if (text == "allTime") return TaskChartsTimePeriod::allTime();
  if (text == "thisYear") return TaskChartsTimePeriod::thisYear();
  if (text == "thisMonth") return TaskChartsTimePeriod::thisMonth();
  if (const auto year = yearIn(text)) return TaskChartsTimePeriod::year(*year);
  if (const auto month = monthIn(text)) return TaskChartsTimePeriod::month(*month);
  throw UsageError(name, text,
                   "not a period; write allTime, thisYear, thisMonth, a year as 2026 or a month as "
                   "2026-03");
}

std::vector<double> amountsArgument(const std::string& name, const std::string& text) {
  std::vector<double> amounts;
  for (std::size_t at = 0; !text.empty() && at <= text.size();) {
    const std::size_t end = std::min(text.find(',', at), text.size());
    amounts.push_back(amountArgument(name, text.substr(at, end - at)));
    at = end + 1;
  }
  return amounts;
}

LineGraph::EdgeInsets insetsArgument(const std::string& name, const std::string& text) {
  const auto sides = amountsArgument(name, text);
  if (sides.size() == 1) return {sides[0], sides[0], sides[0], sides[0]};
  if (sides.size() == 4) return {sides[0], sides[1], sides[2], sides[3]};
  throw UsageError(name, text, "write one length, or four as TOP,LEFT,BOTTOM,RIGHT");
}

}  // namespace velloro
