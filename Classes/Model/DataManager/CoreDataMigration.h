#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "OxKit/Platform.h"
#include "Tasks/Requests/TaskCount.h"

#include <cstdint>
#include <optional>
#include <string>

namespace velloro {

// What a migration of the store tells of itself. The host application migrates, and keeps these.

/// What came of a migration.
///
///     const CoreDataMigrationReport report{.migratorVersion = 2, .preNumTasks = {3, 1},
///                                          .postNumTasks = TaskCount{}};
///     report.isSuccess();   // false: no task is left
struct CoreDataMigrationReport {
  std::int64_t migratorVersion = 0;
  TaskCount preNumTasks = {};
  std::optional<TaskCount> postNumTasks = std::nullopt;  ///< Absent when it didn't get so far.
  std::optional<std::string> errorMessage = std::nullopt;

  bool operator==(const CoreDataMigrationReport&) const = default;

  /// Without an error, and unless there was no task, tasks are left.
  [[nodiscard]] bool isSuccess() const;
  [[nodiscard]] std::string debugDescription() const;

  static constexpr auto codingKeys =
      keys(key("migratorVersion", &CoreDataMigrationReport::migratorVersion),
           key("preNumTasks", &CoreDataMigrationReport::preNumTasks),
           key("postNumTasks", &CoreDataMigrationReport::postNumTasks),
           key("errorMessage", &CoreDataMigrationReport::errorMessage));
};

/// What the data manager holds of a host that migrates.
class CoreDataMigratorProtocol {
 public:
  virtual ~CoreDataMigratorProtocol() = default;

  /// Counts up with each change of what a migration does.
  [[nodiscard]] virtual std::int64_t migratorVersion() const = 0;
};

/// What a host derives its migrator from.
class CoreDataMigrator : public CoreDataMigratorProtocol {
 public:
  explicit CoreDataMigrator(std::int64_t migratorVersion) : migratorVersion_(migratorVersion) {}

  [[nodiscard]] std::int64_t migratorVersion() const override { return migratorVersion_; }

 private:
  std::int64_t migratorVersion_;
};

}  // namespace velloro
