#include "Tasks/TaskNoteEntity.h"

#include "Tasks/StoredValues.h"

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

}  // namespace velloro
