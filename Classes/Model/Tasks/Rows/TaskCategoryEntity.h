#pragma once

#include "CoreData/Model/EntityClass.h"
#include "OxCheckableTasks/Icons/IconDisplayRepresentation.h"
#include "OxKit/OxCodableColor.h"

namespace velloro {

class TaskEntity;

/// A category, of which a task may have several.
class TaskCategoryEntity : public EntityClass<TaskCategoryEntity> {
 public:
  inline static auto description = NSEntityDescription::of<TaskCategoryEntity>();
  inline static const IdentifierAttribute uniqueId{description, "uniqueId"};
  inline static const Attribute<std::optional<std::string>> title{description, "title"};
  inline static const Attribute<std::optional<std::string>> iconName{description, "iconName"};
  inline static const Attribute<std::optional<std::string>> colorInfo{description, "colorInfo"};
  inline static const ToMany<TaskEntity> tasks{description, "tasks", "taskCategories"};

  [[nodiscard]] std::optional<IconDisplayRepresentation> displayRepresentation() const;
  [[nodiscard]] std::optional<OxCodableColor> color() const;
};

}  // namespace velloro
