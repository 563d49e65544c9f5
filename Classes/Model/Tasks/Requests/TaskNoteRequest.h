#pragma once

#include "CoreData/Fetch/NSFetchRequest.h"
#include "OxDateTime/YYYYMMDD.h"
#include "OxKit/EnumSet.h"
#include "Tasks/Rows/TaskNoteEntity.h"

#include <cstdint>
#include <optional>
#include <variant>

namespace velloro {

/// Which notes are wanted, and in which order. What is empty or absent asks for nothing in
/// particular; all that is asked for must hold.
struct TaskNoteEntity::Request {
  /// Days in a range, or none at all.
  struct NoteDate {
    struct Empty {};
    std::variant<YYYYMMDD::Range, Empty> value;

    [[nodiscard]] static NoteDate range(YYYYMMDD::Range range) { return {range}; }
    [[nodiscard]] static NoteDate empty() { return {Empty{}}; }
  };
  enum class SortDirection : std::uint8_t {
    none,
    newestToOldest,  ///< By day, and within a day by the instant at which they were made.
    oldestToNewest,
  };

  const TaskEntity* task = nullptr;
  std::optional<NoteDate> date = {};
  EnumSet<TaskNoteStatus> includeStatuses = {}, excludeStatuses = {};
  SortDirection sortDirection = SortDirection::none;
  std::optional<std::int64_t> limit = {};

  [[nodiscard]] NSFetchRequest fetchRequest() const;
};

}  // namespace velloro
