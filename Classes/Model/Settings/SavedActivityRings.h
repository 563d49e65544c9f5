#pragma once

#include "OxDateTime/YYYYMMDD.h"
#include "Settings/SettingsStorageContainer.h"
#include "VelloroCore/Progress/TaskProgressActivityRings.h"

#include <memory>
#include <mutex>
#include <optional>

namespace velloro {

/// The rings of a task of the daily activity, kept where the extensions find them too. Safe from
/// any thread.
///
///     SavedActivityRings saved(localStorage);
///     saved.save({.period = today, .energy = 0.5}, {2024, 3, 7});
class SavedActivityRings {
 public:
  /// The process's own, over the shared tier of the settings, or the plain local one where that
  /// can't be opened.
  [[nodiscard]] static const std::shared_ptr<SavedActivityRings>& shared();
  explicit SavedActivityRings(std::shared_ptr<SettingsStorageContainer> storage)
      : storage_(std::move(storage)) {}

  /// Rings that stand as the kept ones do, and those of an earlier period, change nothing, unless
  /// the kept ones are of a period that begins after `today`: a clock that was ahead kept those.
  void save(const TaskProgressActivityRings& progress, YYYYMMDD today);
  /// The rings kept last; absent when their period does not hold the date.
  [[nodiscard]] std::optional<TaskProgressActivityRings> saved(YYYYMMDD date) const;

 private:
  std::shared_ptr<SettingsStorageContainer> storage_;
  std::mutex mutex_;  // guards what follows
  std::optional<TaskProgressActivityRings> held_;
};

}  // namespace velloro
