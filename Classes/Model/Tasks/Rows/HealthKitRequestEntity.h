#pragma once

#include "CoreData/Model/EntityClass.h"
#include "OxKit/Platform.h"

namespace velloro {

class TaskLogEntryEntity;

/// A request to the health store that another program still has to send for an entry. It is never
/// changed here.
class HealthKitRequestEntity : public EntityClass<HealthKitRequestEntity> {
 public:
  inline static auto description = NSEntityDescription::of<HealthKitRequestEntity>();
  inline static const Attribute<std::optional<std::string>> type{description, "type"};
  inline static const Attribute<std::optional<std::string>> status{description, "status"};
  inline static const Attribute<std::optional<Date>> statusDate{description, "statusDate"};
  inline static const Attribute<std::optional<Date>> created{description, "created"};
  inline static const Attribute<std::optional<Data>> data{description, "data"};
  inline static const ToOne<TaskLogEntryEntity> taskLogEntry{description, "taskLogEntry",
                                                             "healthKitRequests"};
};

}  // namespace velloro
