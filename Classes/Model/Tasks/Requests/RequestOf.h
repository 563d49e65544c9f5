#pragma once

#include "CoreData/Fetch/NSFetchRequest.h"
#include "Foundation/Coding/RawValue.h"
#include "OxKit/EnumSet.h"
#include "OxKit/UniqueID.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace velloro {

template <typename E>
[[nodiscard]] std::vector<RawValueType<E>> rawValuesOf(EnumSet<E> cases) {
  std::vector<RawValueType<E>> raws;
  for (const E one : cases) raws.push_back(rawValue(one));
  return raws;
}

template <typename Ids>
[[nodiscard]] std::vector<std::string> textsOf(const Ids& ids) {
  std::vector<std::string> texts;
  for (const UniqueID& id : ids) texts.push_back(id.stringValue());
  return texts;
}

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
