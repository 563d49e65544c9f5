#pragma once

#include "CoreData/Model/EntityClass.h"
#include "Tasks/Columns/StoredForms.h"

namespace velloro {

class TaskEntity;

/// A count that another program keeps of a task. It is kept as found.
class TaskCounterEntity : public EntityClass<TaskCounterEntity> {
 public:
  inline static auto description = NSEntityDescription::of<TaskCounterEntity>();
  inline static const Attribute<std::optional<UniqueID>> uniqueId{description, "uniqueId"};
  inline static const ToOne<TaskEntity> task{description, "task", "taskCounter"};
  inline static const Attribute<std::optional<YYYYMMDD>> entryDate{description, "entryDate"};
  inline static const Attribute<std::int16_t> quantity{description, "quantity"};
  inline static const Attribute<std::optional<std::string>> status{description, "status"};
  inline static const Attribute<std::optional<Date>> createdTimestamp{description,
                                                                      "createdTimestamp"};
};

}  // namespace velloro
