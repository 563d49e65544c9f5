#include "VelloroCore/Status/StreakRecord.h"

#include "Foundation/Coding/Coding.h"
#include "OxKit/Localization.h"
#include "VelloroCore/Status/CompletionStatusRow.h"
#include "VelloroCore/Status/StreakTextKeys.h"
#include "VelloroCore/Titles/FormatManager.h"

#include <algorithm>
#include <iterator>

namespace velloro {
namespace {

/// The length whose multiples are milestones of a run; 0 for a run that has none yet.
std::int64_t milestoneUnit(std::int64_t run) {
  constexpr std::int64_t lengths[] = {7, 14, 30, 60, 100, 150, 200, 250, 300, 365};
  if (run >= 400) return 100;
  const auto* above = std::ranges::upper_bound(lengths, run);
  return above == std::begin(lengths) ? 0 : *std::prev(above);
}

}  // namespace

StreakRecord::StreakRecord(std::int64_t currentRun, std::int64_t bestRun)
    : current(currentRun), best(std::max(currentRun, bestRun)) {}

StreakRecord StreakRecord::decode(const Decoder& from) {
  const auto stored = decodeKeyed<StreakRecord>(from);
  return {stored.current, stored.best};
}

std::string StreakRecord::debugDescription() const {
  return "current=" + std::to_string(current) + " best=" + std::to_string(best);
}

StreakRecord StreakRecord::increment(std::uint64_t count) const {
  // Unsigned, since a stored run may be of any size.
  return {static_cast<std::int64_t>(static_cast<std::uint64_t>(current) + count), best};
}

StreakRecord StreakRecord::changed(RunChange change) const {
  switch (change) {
    case RunChange::unchanged:
      break;
    case RunChange::increment:
      return increment();
    case RunChange::reset:
      return reset();
    case RunChange::startAgain:
      return {1, best};
  }
  return *this;
}

std::optional<StreakRecord::Milestone> StreakRecord::currentMilestone() const {
  const std::int64_t unit = milestoneUnit(current);
  if (unit == 0) return std::nullopt;
  const std::int64_t length = current / unit * unit;
  return length == current ? Milestone::exact(length) : Milestone::mostRecent(length);
}

StreakRecord StreakRecord::adjust(const TaskFrequencyPeriod& from, const TaskFrequencyPeriod& to,
                                  const CompletionStatus::Status& finalCompletionStatus) const {
  if (to < from || to == from) return *this;
  return changed(completion_status_detail::rowOf(finalCompletionStatus).whenPeriodEnds);
}

std::optional<std::string> StreakRecord::localizedCurrent(const Locale& locale) const {
  return current < 1 ? std::nullopt : std::optional(localizedCurrentWithZero(locale));
}

std::string StreakRecord::localizedCurrentWithZero(const Locale& locale) const {
  return FormatManager::shared(locale).integerFormatter.string(current);
}

std::string StreakRecord::localizedWithMeasurementDuration(
    TaskFrequencyPeriodType measurementDuration) const {
  return localized(rowOf(streakLengthKeys, measurementDuration).key, {current});
}

}  // namespace velloro
