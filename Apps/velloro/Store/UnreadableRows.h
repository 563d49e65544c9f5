#pragma once

#include "CoreData/Context/NSManagedObjectContext.h"
#include "OxKit/Platform.h"

#include <string>
#include <vector>

namespace velloro {

/// The rows that hold something which the program can't make out and treats as absent, a line each:
/// "can't be read: Task 17 colorInfo". A newer program may have written it; else it is damage that
/// the file's own checks don't see. Reads every row.
[[nodiscard]] Result<std::vector<std::string>> unreadableRows(NSManagedObjectContext& context);

}  // namespace velloro
