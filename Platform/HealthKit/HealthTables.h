#pragma once

#include "Foundation/Time/CivilDay.h"
#include "HealthKit/HKHealthStore.h"
#include "HealthKit/HealthDetails.h"
#include "SQLite/Sqlite.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

namespace platform {

/// What stands as the unit of a state.
inline constexpr std::string_view categoryUnit = "state";

/// Samples of a type are kept by the magnitude of their length, the power of two that it lies
/// below, and then by their start. So a window is one range of the index for each magnitude, and a
/// sample of a year doesn't make every window read a year.
[[nodiscard]] std::int64_t spanOf(double seconds);
/// What no sample of the magnitude is longer than, in seconds.
[[nodiscard]] double longestOf(std::int64_t span);

[[nodiscard]] CivilDay civilDayOf(std::int64_t day);
[[nodiscard]] Result<void> noteOldestChange(SqliteConnection& connection, Date oldest);

/// The tables of a health store in a file.
class HealthTables {
 public:
  /// Makes what is missing.
  [[nodiscard]] static Result<std::unique_ptr<HealthTables>> open(
      const std::filesystem::path& file);

  [[nodiscard]] SqliteConnection& connection() { return *connection_; }
  /// Whether the file still has its name.
  [[nodiscard]] bool isCurrent() const;

  [[nodiscard]] Result<bool> isAnyKept();
  /// Those that match, by start, end, source and value.
  [[nodiscard]] Result<std::vector<HKSample>> samples(const HKObjectType& type,
                                                      const HKPredicate& predicate);
  [[nodiscard]] Result<HKStatisticsCollection> statistics(const HKStatisticsCollectionQuery& query);
  [[nodiscard]] Result<std::vector<HKActivitySummary>> summaries(std::int64_t day);
  [[nodiscard]] Result<std::vector<HKHealthStore::SourceRow>> sources();
  [[nodiscard]] Result<std::vector<std::string>> setSourceOrder(
      const std::vector<std::string>& names);

  ~HealthTables();

 private:
  HealthTables(std::unique_ptr<SqliteConnection> connection, std::filesystem::path file);
  [[nodiscard]] Result<void> makeTables();
  [[nodiscard]] Result<SqliteStatement> rows(std::string_view columns, const HKObjectType& type,
                                             const HKPredicate& predicate);
  [[nodiscard]] Result<std::vector<std::pair<HKMeasured, HKUnit>>> measured(
      const HKObjectType& type, const HKPredicate& predicate);

  std::unique_ptr<SqliteConnection> connection_;
  std::filesystem::path path_;
  std::string identity_;
};

}  // namespace platform
