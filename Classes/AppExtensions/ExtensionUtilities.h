#pragma once

#include "OxCache/DataCacheKey.h"
#include "OxDateTime/YYYYMMDD.h"
#include "OxKit/Platform.h"
#include "Settings/SavedActivityRings.h"

#include <filesystem>
#include <memory>
#include <optional>

namespace velloro {

/// What the program and its extensions have in common on the disk. Safe from any thread.
///
///     ExtensionUtilities utilities(localStorage);
///     utilities.saveActivityRingsProgress({.period = today, .energy = 0.5}, {2024, 3, 7});
///     utilities.savedActivityRingsProgress({2024, 3, 7})->energy;    // 0.5: on their own day
class ExtensionUtilities {
 public:
  /// The process's own.
  [[nodiscard]] static ExtensionUtilities& shared();
  explicit ExtensionUtilities(std::shared_ptr<SettingsStorageContainer> storage)
      : rings_(std::make_shared<SavedActivityRings>(std::move(storage))) {}

  /// The folder of the application group; absent when there is none.
  [[nodiscard]] static std::optional<std::filesystem::path> sharedContainer();
  /// Where the image of an icon is kept in it. The folder need not be there yet.
  [[nodiscard]] static std::optional<std::filesystem::path> iconCacheFile(const DataCacheKey& icon);

  // What `SavedActivityRings` keeps.
  void saveActivityRingsProgress(const TaskProgressActivityRings& progress, YYYYMMDD today) {
    rings_->save(progress, today);
  }
  [[nodiscard]] std::optional<TaskProgressActivityRings> savedActivityRingsProgress(
      YYYYMMDD date) const {
    return rings_->saved(date);
  }

 private:
  explicit ExtensionUtilities(std::shared_ptr<SavedActivityRings> rings)
      : rings_(std::move(rings)) {}

  std::shared_ptr<SavedActivityRings> rings_;
};

}  // namespace velloro
