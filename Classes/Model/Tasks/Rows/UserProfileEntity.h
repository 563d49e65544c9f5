#pragma once

#include "CoreData/Model/EntityClass.h"
#include "OxCheckableTasks/Icons/IconDisplayRepresentation.h"

namespace velloro {

class TaskEntity;

/// One of several people who keep their tasks on one device.
class UserProfileEntity : public EntityClass<UserProfileEntity> {
 public:
  inline static auto description = NSEntityDescription::of<UserProfileEntity>();
  inline static const IdentifierAttribute uniqueId{description, "uniqueId"};
  inline static const Attribute<std::optional<std::string>> title{description, "title"};
  inline static const Attribute<std::optional<std::string>> iconName{description, "iconName"};
  inline static const Attribute<std::int16_t> displayOrder{description, "displayOrder"};
  inline static const ToMany<TaskEntity> task{description, "task", "userProfile"};

  [[nodiscard]] std::optional<IconDisplayRepresentation> displayRepresentation() const;
};

}  // namespace velloro
