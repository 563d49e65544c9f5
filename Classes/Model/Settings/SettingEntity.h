#pragma once

#include "CoreData/Model/EntityClass.h"
#include "OxKit/Platform.h"

namespace velloro {

/// One setting in the store that all of a person's devices share. The column of the setting's kind
/// has the value, the others are empty.
class SettingEntity : public EntityClass<SettingEntity> {
 public:
  inline static auto description = NSEntityDescription::of<SettingEntity>();
  inline static const Attribute<std::optional<std::string>> settingKey{description, "settingKey"};
  /// Of several rows with one key the oldest counts.
  inline static const Attribute<std::optional<Date>> dateCreated{description, "dateCreated"};
  inline static const Attribute<std::optional<std::string>> stringValue{description, "stringValue"};
  inline static const Attribute<std::optional<Date>> dateValue{description, "dateValue"};
  inline static const Attribute<std::int64_t> intValue{description, "intValue"};
  inline static const Attribute<bool> booleanValue{description, "booleanValue"};
  inline static const Attribute<std::optional<Data>> dataValue{description, "dataValue"};
  inline static const Attribute<double> doubleValue{description, "doubleValue"};
};

}  // namespace velloro
