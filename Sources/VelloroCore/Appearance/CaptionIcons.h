#pragma once

#include "OxCheckableTasks/Icons/IconManagerIcon.h"
#include "OxCheckableTasks/Icons/IconVisualRepresentation.h"
#include "OxCheckableTasks/Icons/OxSymbol.h"
#include "VelloroCore/Frequency/DatedPeriod.h"
#include "VelloroCore/Frequency/TaskFrequencyPeriodType.h"
#include "VelloroCore/Status/CompletionStatus.h"
#include "VelloroCore/Status/StreakRecord.h"

#include <compare>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace velloro {

/// A small sign beside a ring's caption.
struct CaptionIcon {
  enum class Kind {
    multiDay,
    bestStreak,
    almostBestStreak,
    willBreakStreak,
    allowableMiss,
    isSharingSingle,
    isSharingMulti,
    hasNotes,
  };

  Kind kind = Kind::bestStreak;
  MultiDayCount count = {};  ///< Of `multiDay` alone.

  auto operator<=>(const CaptionIcon&) const = default;

  [[nodiscard]] static CaptionIcon multiDay(MultiDayCount count) { return {Kind::multiDay, count}; }

  [[nodiscard]] double alpha() const { return kind == Kind::willBreakStreak ? 0.5 : 1.0; }
  /// What a screen reader says; absent where the caption says enough.
  [[nodiscard]] std::optional<std::string> accessibilityLabel() const;
  /// "multiDay_duration7", "bestStreak".
  [[nodiscard]] std::string id() const;
  /// Absent for `hasNotes`, which shows its symbol.
  [[nodiscard]] std::optional<IconManagerIcon> icon() const;
  [[nodiscard]] std::optional<OxSymbol> symbol() const;
  /// The icon, failing that the symbol.
  [[nodiscard]] std::optional<IconVisualRepresentation> visualRepresentation() const;
};

constexpr auto rawValues(std::type_identity<CaptionIcon::Kind>) {
  return caseNames<CaptionIcon::Kind::hasNotes>();
}

/// The signs in the four corners around a ring.
struct CaptionIcons {
  std::vector<CaptionIcon> topLeading = {};
  std::vector<CaptionIcon> topTrailing = {};
  std::vector<CaptionIcon> bottomLeading = {};
  std::vector<CaptionIcon> bottomTrailing = {};

  bool operator==(const CaptionIcons&) const = default;

  [[nodiscard]] std::set<CaptionIcon> allIcons() const;
  [[nodiscard]] bool has(CaptionIcon icon) const;
  [[nodiscard]] static const CaptionIcons& noIcons();
};

/// Whether a task is shared, and with how many participants.
struct SharedWithStatus {
  std::optional<int> participants = {};

  bool operator==(const SharedWithStatus&) const = default;
  [[nodiscard]] static SharedWithStatus shared(int participants) { return {participants}; }
  [[nodiscard]] static SharedWithStatus notShared() { return {}; }
};

/// A task's standing today: its status in a period, of which `date` is the day.
struct TodayStatus {
  CompletionStatus completionStatus;
  DatedPeriod period;
};

struct StreakIconsRequest {
  const TodayStatus& todayStatus;
  StreakRecord streak = {};
  SharedWithStatus sharedWithStatus = {};
  bool canShowWillBreakStreak = true;
  bool hasNotes = false;
  HHMMSS startOfDay = {};
  const TimeZone& timeZone;
  Date now;
};

/// The signs around a ring that describe a streak: the length of the period, what is about to end,
/// and what has been reached.
[[nodiscard]] CaptionIcons iconsForStreakNumber(const StreakIconsRequest& request);

}  // namespace velloro
