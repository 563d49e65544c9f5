#include "Tasks/Rows/TaskNoteEntity.h"

namespace velloro {

std::optional<std::string> TaskNoteEntity::noteContent() const {
  const std::string* stored = text(content);
  return stored != nullptr && !stored->empty() ? std::optional(*stored) : std::nullopt;
}

std::optional<ComplicationTaskNoteSnapshot> TaskNoteEntity::snapshot() const {
  const auto id = value(uniqueId);
  auto body = noteContent();
  if (!id || !body) return std::nullopt;
  return ComplicationTaskNoteSnapshot{
      .uniqueID = *id, .date = value(noteDate), .content = {.body = *std::move(body)}};
}

}  // namespace velloro
