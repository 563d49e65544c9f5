#pragma once

#include "CoreData/Model/NSManagedObjectModel.h"
#include "OxKit/Platform.h"

namespace velloro {

/// The name of the model, which its stores' containers have.
inline constexpr const char* velloroModelName = "Velloro";

/// The model of the store: the fourteen entities. One for all containers of a process; the first
/// call also registers what reads and writes the transformable attribute.
///
///     NSPersistentContainer container(velloroModelName, velloroModel());
[[nodiscard]] const NSManagedObjectModel& velloroModel();

}  // namespace velloro
