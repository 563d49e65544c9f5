#pragma once

#include "CoreData/Model/EntityClass.h"
#include "Tasks/Columns/StoredForms.h"

namespace velloro {

class TaskShareEntity;

/// Another person, who shares tasks with this user.
class TaskShareOwnerEntity : public EntityClass<TaskShareOwnerEntity> {
 public:
  using Text = std::optional<std::string>;

  inline static auto description = NSEntityDescription::of<TaskShareOwnerEntity>();
  // The person's user record in the cloud.
  inline static const Attribute<Text> ckRecordIdRecordName{description, "ckRecordIdRecordName"};
  inline static const Attribute<Text> ckRecordIdZoneName{description, "ckRecordIdZoneName"};
  inline static const Attribute<Text> ckRecordIdZoneOwnerName{description,
                                                              "ckRecordIdZoneOwnerName"};
  inline static const Attribute<Text> ckUserDisplayName{description, "ckUserDisplayName"};
  // The contact in the address book, and the one of its addresses that was used.
  inline static const Attribute<Text> cnFormattedName{description, "cnFormattedName"};
  inline static const Attribute<Text> cnIdentifier{description, "cnIdentifier"};
  inline static const Attribute<Text> cnPropertyIdentifier{description, "cnPropertyIdentifier"};
  inline static const Attribute<Text> cnPropertyLabel{description, "cnPropertyLabel"};
  inline static const Attribute<Text> cnPropertyType{description, "cnPropertyType"};
  inline static const Attribute<Text> cnPropertyValue{description, "cnPropertyValue"};
  inline static const Attribute<std::optional<IconDisplayRepresentation>> imageName{description,
                                                                                    "imageName"};
  inline static const Attribute<Text> cloudStatus{description, "cloudStatus"};
  inline static const Attribute<std::optional<Date>> cloudStatusDate{description,
                                                                     "cloudStatusDate"};
  inline static const ToMany<TaskShareEntity> taskShare{description, "taskShare", "owner"};

  /// The contact's name, else the one that the cloud knows; absent when there is neither.
  [[nodiscard]] std::optional<std::string> displayName() const;
};

}  // namespace velloro
