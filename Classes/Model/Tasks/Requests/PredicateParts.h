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

/// The parts of a predicate that are gathered one by one and must all hold.
class PredicateParts {
 public:
  void add(NSPredicate part) { parts_.push_back(std::move(part)); }
  void add(std::string_view format, const std::vector<PredicateArgument>& arguments) {
    add(NSPredicate::format(format, arguments));
  }
  void addAnyOf(std::vector<NSPredicate> alternatives) {
    add(NSCompoundPredicate::orPredicateWithSubpredicates(std::move(alternatives)));
  }

  /// Absent without parts.
  [[nodiscard]] std::optional<NSPredicate> all() && {
    if (parts_.empty()) return std::nullopt;
    return NSCompoundPredicate::andPredicateWithSubpredicates(std::move(parts_));
  }

 private:
  std::vector<NSPredicate> parts_;
};

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

/// No limit where none is given, and for one below 1.
inline void setFetchLimit(NSFetchRequest& request, std::optional<std::int64_t> limit) {
  if (limit && *limit > 0) request.setFetchLimit(static_cast<std::size_t>(*limit));
}

}  // namespace velloro
