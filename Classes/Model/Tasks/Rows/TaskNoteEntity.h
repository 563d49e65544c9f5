#pragma once

#include "CoreData/Model/EntityClass.h"
#include "Foundation/Coding/RawValue.h"
#include "Tasks/Columns/StoredForms.h"
#include "VelloroSnapshots/ComplicationTaskSnapshot.h"

#include <cstdint>

namespace velloro {

class TaskEntity;

enum class TaskNoteStatus : std::uint8_t { normal, pinned, trashed };

constexpr auto rawValues(std::type_identity<TaskNoteStatus>) {
  using enum TaskNoteStatus;
  return rawTexts<TaskNoteStatus>({{normal, "N"}, {pinned, "P"}, {trashed, "T"}});
}

/// A note on a task.
class TaskNoteEntity : public EntityClass<TaskNoteEntity> {
 public:
  struct Request;

  inline static auto description = NSEntityDescription::of<TaskNoteEntity>();
  inline static const Attribute<std::optional<UniqueID>> uniqueId{description, "uniqueId"};
  inline static const ToOne<TaskEntity> task{description, "task", "taskNote"};
  /// A note with an empty text counts as none.
  inline static const Attribute<std::optional<std::string>> content{description, "content"};
  /// Absent for a note of no day.
  inline static const Attribute<std::optional<YYYYMMDD>> noteDate{description, "noteDate"};
  inline static const Attribute<std::optional<TaskNoteStatus>> status{description, "status"};
  inline static const Attribute<std::optional<Date>> createdTimestamp{description,
                                                                      "createdTimestamp"};
  inline static const Attribute<std::optional<TimeZone>> createdTimeZone{description,
                                                                         "createdTimeZone"};
  inline static const Attribute<std::int16_t> displayOrder{description, "displayOrder"};
  inline static const Attribute<std::optional<std::string>> sentiment{description, "sentiment"};
  inline static const Attribute<double> associatedValue{description, "associatedValue"};
  inline static const Attribute<std::optional<Data>> jsonExtra{description, "jsonExtra"};

  /// Absent for no text and for an empty one; a blank is a text.
  [[nodiscard]] std::optional<std::string> noteContent() const;
  /// Absent without an identifier or a text.
  [[nodiscard]] std::optional<ComplicationTaskNoteSnapshot> snapshot() const;
};

}  // namespace velloro
