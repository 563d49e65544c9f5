#pragma once

#include "CoreData/Model/EntityClass.h"
#include "Tasks/Columns/StoredForms.h"

namespace velloro {

class TaskEntity;

/// One of several people who keep their tasks on one device.
class UserProfileEntity : public EntityClass<UserProfileEntity> {
 public:
  inline static auto description = NSEntityDescription::of<UserProfileEntity>();
  inline static const Attribute<std::optional<UniqueID>> uniqueId{description, "uniqueId"};
  inline static const Attribute<std::optional<std::string>> title{description, "title"};
  inline static const Attribute<std::optional<IconDisplayRepresentation>> iconName{description,
                                                                                   "iconName"};
  inline static const Attribute<std::int16_t> displayOrder{description, "displayOrder"};
  inline static const ToMany<TaskEntity> task{description, "task", "userProfile"};
};

}  // namespace velloro
