#pragma once

#include "OxCache/DataCacheKey.h"
#include "OxDateTime/YYYYMMDD.h"
#include "OxKit/Platform.h"
#include "Settings/SettingsStorageContainer.h"
#include "VelloroCore/TaskProgressActivityRings.h"

#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>

namespace velloro {

/// What the program and its extensions have in common on the disk. Safe from any thread.
///
///     ExtensionUtilities& utilities = ExtensionUtilities::shared();
///     utilities.saveActivityRingsProgress(rings);
///     utilities.savedActivityRingsProgress({2024, 3, 7});    // the rings, on their own day
class ExtensionUtilities {
 public:
  /// The process's own, over the shared tier of the settings, or the plain local one where that
  /// can't be opened.
  [[nodiscard]] static ExtensionUtilities& shared();
  explicit ExtensionUtilities(std::shared_ptr<SettingsStorageContainer> storage)
      : storage_(std::move(storage)) {}

  /// The folder of the application group; absent when there is none.
  [[nodiscard]] static std::optional<std::filesystem::path> sharedContainer();
  /// Where the image of an icon is kept in it. The folder need not be there yet.
  [[nodiscard]] static std::optional<std::filesystem::path> iconCacheFile(const DataCacheKey& icon);

  /// Keeps the rings for who can't ask for them. Rings that stand as the kept ones do, and those of
  /// an earlier period, change nothing.
  void saveActivityRingsProgress(const TaskProgressActivityRings& progress);
  /// The rings kept last; absent when their period does not hold the date.
  [[nodiscard]] std::optional<TaskProgressActivityRings> savedActivityRingsProgress(
      YYYYMMDD date) const;

 private:
  std::shared_ptr<SettingsStorageContainer> storage_;
  std::mutex mutex_;  // guards what follows
  std::optional<TaskProgressActivityRings> savedActivityRingsProgress_;
};

}  // namespace velloro
