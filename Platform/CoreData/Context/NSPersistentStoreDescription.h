#pragma once

#include "Foundation/Coding/PropertyList.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>

namespace platform {

/// Which cloud container a store is mirrored to.
struct NSPersistentCloudKitContainerOptions {
  std::string containerIdentifier;

  bool operator==(const NSPersistentCloudKitContainerOptions&) const = default;
};

inline constexpr const char* NSSQLiteStoreType = "SQLite";
inline constexpr const char* NSInMemoryStoreType = "InMemory";

/// A Boolean option. History is kept in any case: it is part of each save.
inline constexpr const char* NSPersistentHistoryTrackingKey = "NSPersistentHistoryTrackingKey";
/// A Boolean option: whether `NSPersistentStoreRemoteChangeNotification` is posted.
inline constexpr const char* NSPersistentStoreRemoteChangeNotificationPostOptionKey =
    "NSPersistentStoreRemoteChangeNotificationOptionKey";

/// How a store's file is opened.
enum class StoreAccess {
  readWrite,  ///< The file is made when it is missing, and completed when it is older.
  readOnly,   ///< With locks, as one of several programs. What an older file lacks reads as empty.
  /// The same without locks, and without a byte changed in the file's folder, which may be
  /// read-only. What is read fits together only as long as nobody writes the file: see
  /// `NSPersistentStoreCoordinator::hasBeenWritten`.
  atRest,
};

/// Which store to open, and how. A value.
struct NSPersistentStoreDescription {
  std::string type = NSSQLiteStoreType;
  std::filesystem::path url =
      {};  ///< The file, made when it is missing; not for a store in memory.
  /// \name Whether an older file is completed. Both must be set for that.
  /// @{
  bool shouldMigrateStoreAutomatically = true;
  bool shouldInferMappingModelAutomatically = true;
  /// @}
  std::map<std::string, PropertyList> options = {};
  std::optional<NSPersistentCloudKitContainerOptions> cloudKitContainerOptions = std::nullopt;
  double timeout = 5;  ///< How long a save waits for other writers, in seconds.
  StoreAccess access = StoreAccess::readWrite;

  [[nodiscard]] static NSPersistentStoreDescription initWithURL(std::filesystem::path url) {
    return {.url = std::move(url)};
  }
  [[nodiscard]] static NSPersistentStoreDescription inMemory() {
    return {.type = NSInMemoryStoreType};
  }

  void setOption(PropertyList value, const std::string& key) {
    options.insert_or_assign(key, std::move(value));
  }
  /// False when it is not set.
  [[nodiscard]] bool option(const std::string& key) const {
    const auto found = options.find(key);
    return found != options.end() && found->second.boolean().value_or(false);
  }
};

}  // namespace platform
