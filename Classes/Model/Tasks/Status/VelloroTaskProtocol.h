#pragma once

#include "Foundation/Time/Date.h"
#include "Foundation/Time/TimeZone.h"
#include "OxDateTime/YYYYMMDD.h"
#include "OxKit/OxCodableColor.h"
#include "OxKit/UniqueID.h"
#include "VelloroCore/Status/TaskStatus.h"
#include "VelloroCore/Titles/TaskDisplayTitle.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace velloro {

struct AutomaticTaskType;
struct ComplicationSnapshotDisplayRepresentation;
struct ComplicationTaskNoteSnapshot;
struct StreakedCompletionStatus;
struct TaskDisplayOrder;
struct TaskExtra;
struct TaskFrequency;
struct TaskFrequencyPeriod;
struct TaskProgress;
enum class SkipMode : std::int8_t;

/// A task as everybody sees it, wherever it comes from. To be read on the queue of its source. What
/// depends on the present instant is given it last; the clock is read where none is given.
class VelloroTaskProtocol {
 public:
  virtual ~VelloroTaskProtocol() = default;

  /// The zero UUID for a task without an identifier.
  [[nodiscard]] virtual UniqueID uniqueId() const = 0;
  [[nodiscard]] virtual std::string title() const = 0;
  [[nodiscard]] virtual HHMMSS startOfDay() const = 0;
  [[nodiscard]] virtual DayOfWeek firstDayOfWeek() const = 0;
  [[nodiscard]] virtual TaskDisplayOrder taskDisplayOrder() const = 0;
  [[nodiscard]] virtual TaskShareStatus taskShareStatus() const = 0;
  /// Whether a timer can run for it.
  [[nodiscard]] virtual bool isTimed() const = 0;
  /// Something to avoid.
  [[nodiscard]] virtual bool isNegative() const = 0;
  [[nodiscard]] virtual TaskFrequency frequency() const = 0;
  /// Absent for the theme's.
  [[nodiscard]] virtual std::optional<OxCodableColor> taskColor() const = 0;
  [[nodiscard]] virtual std::optional<TaskDisplayTitle::TitleIcon> titleIcon() const = 0;
  /// Absent for a task that is ticked off by hand.
  [[nodiscard]] virtual std::optional<AutomaticTaskType> automaticTaskType() const = 0;
  [[nodiscard]] virtual TaskStatus status() const = 0;
  [[nodiscard]] virtual std::optional<ComplicationSnapshotDisplayRepresentation>
  shareOwnerDisplayRepresentation() const = 0;
  /// Those who have accepted.
  [[nodiscard]] virtual std::int64_t shareParticipantCount() const = 0;
  /// In the period that holds an instant's logical day.
  [[nodiscard]] virtual StreakedCompletionStatus streakedCompletionStatus(
      Date date, Date now = Date::now()) const = 0;
  /// With the progress of the period that holds an instant's logical day, or with a given one.
  [[nodiscard]] virtual TaskDisplayTitle displayTitle(Date date, Date now = Date::now()) const = 0;
  [[nodiscard]] virtual TaskDisplayTitle displayTitle(const TaskProgress& progress,
                                                      Date now = Date::now()) const = 0;
  [[nodiscard]] virtual TimeZone timeZone() const = 0;
  [[nodiscard]] virtual TaskExtra taskExtra() const = 0;
  /// What the period turns into if it ends as it stands.
  [[nodiscard]] virtual SkipMode willSkip(const TaskFrequencyPeriod& period,
                                          Date now = Date::now()) const = 0;
  /// The newest entry that the user made in the period, or at all when none is given; absent when
  /// there is none.
  [[nodiscard]] virtual std::optional<UniqueID> currentUndoableEntry(
      const std::optional<TaskFrequencyPeriod>& period) const = 0;
  /// When its status or what follows from its log last changed; now when that is not known.
  [[nodiscard]] virtual Date lastUpdated() const = 0;
  /// Whether it changed later than another.
  [[nodiscard]] virtual bool isNewer(const VelloroTaskProtocol& other) const {
    return lastUpdated() > other.lastUpdated();
  }
  [[nodiscard]] virtual std::optional<UniqueID> userProfileID() const = 0;
  /// The notes of a day, the oldest first.
  [[nodiscard]] virtual std::vector<ComplicationTaskNoteSnapshot> notes(YYYYMMDD date) const = 0;
  /// The newest of those that are pinned.
  [[nodiscard]] virtual std::optional<ComplicationTaskNoteSnapshot> pinnedNote() const = 0;

 protected:
  VelloroTaskProtocol() = default;
  VelloroTaskProtocol(const VelloroTaskProtocol&) = default;
  VelloroTaskProtocol& operator=(const VelloroTaskProtocol&) = default;
};

}  // namespace velloro
