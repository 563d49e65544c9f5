#pragma once

#include "CoreData/Context/NSManagedObjectContext.h"
#include "Foundation/Coding/Coding.h"
#include "OxKit/Platform.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace velloro {

/// A row that another process has changed, as `velloro watch` prints it.
struct WatchedChange {
  Date merged;         ///< When this process took it over.
  std::string change;  ///< "inserted", "updated" or "deleted".
  std::string entity;
  std::int64_t row = 0;
  /// What a person knows it by; absent for a deleted row.
  std::optional<std::string> what = std::nullopt;

  static constexpr auto codingKeys =
      keys(key("merged", &WatchedChange::merged), key("change", &WatchedChange::change),
           key("entity", &WatchedChange::entity), key("row", &WatchedChange::row),
           key("what", &WatchedChange::what));

  /// What `NSManagedObjectContext::didMergeChangesObjectIDsNotification` of the context tells. On
  /// its queue.
  [[nodiscard]] static std::vector<WatchedChange> of(const Notification& merged,
                                                     NSManagedObjectContext& context);
  /// Each is one line.
  [[nodiscard]] std::string json() const;
  [[nodiscard]] std::string text() const;
};

}  // namespace velloro
