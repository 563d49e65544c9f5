#include "VelloroCore/Appearance/CaptionIcons.h"

#include "OxCheckableTasks/Icons/IconManagerIconCases.h"
#include "OxCheckableTasks/Ring/CheckableTaskTextKeys.h"
#include "OxKit/Localization.h"

#include <algorithm>
#include <array>

namespace velloro {
namespace {

using Kind = CaptionIcon::Kind;
using Status = CompletionStatus::Status;

/// What each kind shows but `multiDay`, whose page shows the number of days.
struct Sign {
  Kind kind;
  std::optional<IconManagerIcon> icon = {};
};

constexpr std::array signs = {
    Sign{Kind::bestStreak, IconManagerIcon::trophy},
    Sign{Kind::almostBestStreak, IconManagerIcon::star_half_empty},
    Sign{Kind::willBreakStreak, IconManagerIcon::exclamation},
    Sign{Kind::allowableMiss, IconManagerIcon::missed},
    Sign{Kind::isSharingSingle, IconManagerIcon::person},
    Sign{Kind::isSharingMulti, IconManagerIcon::people},
};

bool endsTheStreakIfNothingHappens(const Status& status) {
  return status.skipMode == SkipMode::willMissWithIndicator;
}

bool isMissed(const Status& status) {
  return status == Status::positiveMiss || status == Status::negativeMiss ||
         status == Status::negativeAllowedMiss;
}

class Signs {
 public:
  explicit Signs(const StreakIconsRequest& request) : request_(request) {}

  [[nodiscard]] CaptionIcons make() {
    addLengthOfPeriod();
    addEndOfStreak();
    addRecord();
    addSharing();
    if (request_.hasNotes) addAtTop({Kind::hasNotes});
    return icons_;
  }

 private:
  void addLengthOfPeriod() {
    const TaskFrequencyPeriod& period = request_.todayStatus.period.period;
    if (period.numberOfDays(request_.timeZone) < 2) return;
    const auto count = multiDayCountTypeForCurrentPeriod(period.periodType, request_.startOfDay,
                                                         request_.timeZone, request_.now);
    if (count != MultiDayCount::duration1) {
      icons_.topLeading.push_back(CaptionIcon::multiDay(count));
    }
  }

  void addEndOfStreak() {
    const Status& status = request_.todayStatus.completionStatus.status;
    if (request_.canShowWillBreakStreak && endsTheStreakIfNothingHappens(status) &&
        request_.streak.current >= 1) {
      icons_.topLeading.push_back({Kind::willBreakStreak});
    }
    if (status == Status::negativeAllowedMiss) icons_.topLeading.push_back({Kind::allowableMiss});
    if (isLastDayOfLongPeriod() && !isMissed(status) && !icons_.has({Kind::willBreakStreak})) {
      icons_.topLeading.push_back({Kind::willBreakStreak});
    }
  }

  [[nodiscard]] bool isLastDayOfLongPeriod() const {
    const DatedPeriod& dated = request_.todayStatus.period;
    return request_.canShowWillBreakStreak && dated.isLastDay() &&
           dated.period.numberOfDays(request_.timeZone) >= 2;
  }

  void addRecord() {
    const StreakRecord& streak = request_.streak;
    if (streak.current < 1) return;
    if (streak.isBest()) icons_.bottomTrailing.push_back({Kind::bestStreak});
    if (streak.nearlyBest()) icons_.bottomTrailing.push_back({Kind::almostBestStreak});
  }

  void addSharing() {
    if (const auto participants = request_.sharedWithStatus.participants) {
      addAtTop({*participants < 2 ? Kind::isSharingSingle : Kind::isSharingMulti});
    }
  }

  void addAtTop(CaptionIcon icon) {
    (icons_.topLeading.empty() ? icons_.topLeading : icons_.topTrailing).push_back(icon);
  }

  const StreakIconsRequest& request_;
  CaptionIcons icons_;
};

}  // namespace

std::optional<std::string> CaptionIcon::accessibilityLabel() const {
  if (kind != Kind::bestStreak) return std::nullopt;
  return localized(checkable_task_text::bestStreak);
}

std::string CaptionIcon::id() const {
  const std::string name(rawValue(kind));
  if (kind != Kind::multiDay) return name;
  return name + "_duration" + std::to_string(numDays(count));
}

std::optional<IconManagerIcon> CaptionIcon::icon() const {
  if (kind == Kind::multiDay) return velloro::icon(count);
  const auto sign = std::ranges::find(signs, kind, &Sign::kind);
  return sign == signs.end() ? std::nullopt : sign->icon;
}

std::optional<OxSymbol> CaptionIcon::symbol() const {
  if (kind != Kind::hasNotes) return std::nullopt;
  return OxSymbol{"note.text"};
}

std::optional<IconVisualRepresentation> CaptionIcon::visualRepresentation() const {
  if (const auto shown = icon()) return IconVisualRepresentation::icon(*shown);
  if (const auto shown = symbol()) return IconVisualRepresentation{*shown};
  return std::nullopt;
}

std::set<CaptionIcon> CaptionIcons::allIcons() const {
  std::set<CaptionIcon> icons;
  for (const auto* list : {&topLeading, &topTrailing, &bottomLeading, &bottomTrailing}) {
    icons.insert(list->begin(), list->end());
  }
  return icons;
}

bool CaptionIcons::has(CaptionIcon icon) const {
  return allIcons().contains(icon);
}

const CaptionIcons& CaptionIcons::noIcons() {
  static const CaptionIcons none;
  return none;
}

CaptionIcons iconsForStreakNumber(const StreakIconsRequest& request) {
  return Signs(request).make();
}

}  // namespace velloro
