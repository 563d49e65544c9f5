#include "Tasks/Rows/TaskNoteEntity.h"

#include "Tasks/Columns/StoredValues.h"

namespace velloro {

std::optional<UniqueID> TaskNoteEntity::noteUniqueId() const {
  return storedUniqueID(text(uniqueId));
}

std::optional<std::string> TaskNoteEntity::noteContent() const {
  const std::string* stored = text(content);
  return stored != nullptr && !stored->empty() ? std::optional(*stored) : std::nullopt;
}

std::optional<TaskNoteStatus> TaskNoteEntity::noteStatus() const {
  return enumValue<TaskNoteStatus>(status);
}

std::optional<ComplicationTaskNoteSnapshot> TaskNoteEntity::snapshot() const {
  const auto id = noteUniqueId();
  auto body = noteContent();
  if (!id || !body) return std::nullopt;
  return ComplicationTaskNoteSnapshot{
      .uniqueID = *id, .date = storedDay(value(noteDate)), .content = {.body = *std::move(body)}};
}

}  // namespace velloro
