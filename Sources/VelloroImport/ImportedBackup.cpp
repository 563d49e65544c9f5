#include "VelloroImport/ImportedBackup.h"

#include "Foundation/Text/String.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace velloro {
namespace {

std::uint64_t sumOf(std::uint64_t sum, std::initializer_list<std::string_view> parts) {
  constexpr std::uint64_t prime = 0x100000001B3;
  for (const std::string_view part : parts) {
    for (const char byte : part) sum = (sum ^ static_cast<std::uint8_t>(byte)) * prime;
    sum = (sum ^ 0x100U) * prime;  // no byte: it ends a part
  }
  return sum;
}

struct Window {
  std::int64_t days;
  DayMode mode;
  const char* name;
};
constexpr Window windows[] = {{7, DayMode::numberOfDaysInWeek, "week"},
                              {14, DayMode::numberOfDaysInFortnight, "fortnight"},
                              {30, DayMode::numberOfDaysInMonth, "month"},
                              {365, DayMode::numberOfDaysInYear, "year"}};

/// A month of 31 days is a month; days count by their ratio.
const Window& nearestWindow(std::int64_t days) {
  return *std::ranges::min_element(windows, {}, [&](const Window& window) {
    return std::abs(std::log(static_cast<double>(window.days) / static_cast<double>(days)));
  });
}

}  // namespace

UniqueID importedID(std::initializer_list<std::string_view> parts) {
  constexpr std::uint64_t start = 0xCBF29CE484222325;
  const std::uint64_t sums[] = {sumOf(start, parts), sumOf(~start, parts)};
  UUID::Bytes bytes{};
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    bytes[i] = static_cast<std::uint8_t>(sums[i / 8] >> (8 * (7 - i % 8)));
  }
  bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x80);
  bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);
  return {UUID(bytes)};
}

void setRollingFrequency(std::int64_t count, std::int64_t days, VelloroJSONBackupTask& task,
                         std::vector<ImportDecision>& decisions) {
  const std::string title = inQuotes(task.title.value_or(""));
  task.timesPerDay = 1;
  if (count >= days) {
    task.daysMode = DayMode::specificDaysOfWeek;
    task.daysOfWeek = DaysOfWeek::everyDay;
    return;
  }
  if (count == 1) {
    task.daysMode = DayMode::dayInterval;
    task.dayInterval = days;
    return;
  }
  const Window& window = nearestWindow(days);
  const bool isSame = window.days == days || (window.days == 30 && days == 31) ||
                      (window.days == 365 && days == 366);
  const double scaled =
      static_cast<double>(count) * static_cast<double>(window.days) / static_cast<double>(days);
  const std::int64_t wanted = isSame ? count : std::llround(scaled);
  task.daysMode = window.mode;
  task.numCompletions = std::clamp<std::int64_t>(wanted, 1, window.days);
  const std::string asked = std::to_string(count) + " times in " + std::to_string(days) + " days";
  decisions.push_back({title, asked + " became " + std::to_string(*task.numCompletions) +
                                  " days in a calendar " + window.name});
}

}  // namespace velloro
