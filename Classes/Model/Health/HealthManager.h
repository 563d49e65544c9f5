#pragma once

#include "HealthKit/HKHealthStore.h"
#include "OxKit/Platform.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>

namespace velloro {

/// The bundle identifiers by which samples are recognised: the program's own, and those of the
/// companion for workouts.
inline constexpr const char* ownBundleIdentifier = "velloro.app";
inline constexpr const char* workoutBundleIdentifier = "velloro.workout";

/// The process's health store. It lies beside the active store of tasks. May be used from any
/// thread.
///
/// ```
/// HealthManager::shared().setFile([] { return std::filesystem::path("/tmp/health.sqlite"); });
/// HealthManager::shared().store()->isHealthDataAvailable();    // false
/// ```
class HealthManager {
 public:
  [[nodiscard]] static HealthManager& shared();

  /// Where the file is; asked whenever the store is, since the active store may change. Without it
  /// there is no health data.
  void setFile(std::function<std::filesystem::path()> file);
  /// Never null. The store of a file is made when it is first asked for, and lives as long as the
  /// process.
  [[nodiscard]] std::shared_ptr<HKHealthStore> store();

 private:
  std::mutex mutex_;  // guards what follows
  std::function<std::filesystem::path()> file_;
  std::map<std::filesystem::path, std::shared_ptr<HKHealthStore>> stores_;
};

}  // namespace velloro
