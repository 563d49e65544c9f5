#pragma once

#include "CoreData/Model/EntityClass.h"
#include "Tasks/Columns/StoredForms.h"

namespace velloro {

class TaskEntity;

/// A category, of which a task may have several.
class TaskCategoryEntity : public EntityClass<TaskCategoryEntity> {
 public:
  inline static auto description = NSEntityDescription::of<TaskCategoryEntity>();
  inline static const Attribute<std::optional<UniqueID>> uniqueId{description, "uniqueId"};
  inline static const Attribute<std::optional<std::string>> title{description, "title"};
  inline static const Attribute<std::optional<IconDisplayRepresentation>> iconName{description,
                                                                                   "iconName"};
  inline static const Attribute<std::optional<OxCodableColor>> colorInfo{description, "colorInfo"};
  inline static const ToMany<TaskEntity> tasks{description, "tasks", "taskCategories"};
};

}  // namespace velloro
