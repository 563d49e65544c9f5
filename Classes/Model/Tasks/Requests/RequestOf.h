#pragma once

#include "CoreData/Fetch/NSFetchRequest.h"
#include "OxKit/Platform.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace velloro {

/// For what all of the parts hold; no limit where none is given, and for one below 1.
template <typename Entity>
[[nodiscard]] NSFetchRequest requestOf(const std::vector<Predicate<Entity>>& parts,
                                       const std::vector<SortDescriptor<Entity>>& order,
                                       std::optional<std::int64_t> limit) {
  auto request =
      NSFetchRequest::of<Entity>(parts.empty() ? std::nullopt : std::optional(allOf(parts)), order);
  if (limit && *limit > 0) request.setFetchLimit(static_cast<std::size_t>(*limit));
  return request;
}

}  // namespace velloro
