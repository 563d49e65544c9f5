#pragma once

#include "Foundation/Dispatch/DispatchQueue.h"
#include "Foundation/Values/Error.h"
#include "HealthKit/HKQuery.h"
#include "HealthKit/HKSampleWriter.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform {

class HealthTables;

/// The health data of a person, in a file of its own that the processes of a program share. Queries
/// are answered on the store's own queue; everything else returns when it is done.
///
/// ```
/// auto store = std::make_shared<HKHealthStore>(folder / "health.sqlite", "velloro.app");
/// store->isHealthDataAvailable();    // false: there is no file, and reading makes none
/// store->save({steps});              // 1 added
/// auto query = std::make_shared<HKSampleQuery>();
/// query->sampleType = steps.sampleType;
/// query->resultsHandler = [](Result<std::vector<HKSample>> found) { … };
/// store->execute(query);
/// ```
///
/// Samples are found by type and time through an index, however many there are.
class HKHealthStore {
 public:
  /// \param program The bundle identifier under which `save` writes.
  HKHealthStore(std::filesystem::path file, std::string program);
  ~HKHealthStore();
  HKHealthStore(const HKHealthStore&) = delete;
  HKHealthStore& operator=(const HKHealthStore&) = delete;

  /// Whether there is a sample or an activity summary.
  [[nodiscard]] bool isHealthDataAvailable() const;

  void execute(std::shared_ptr<HKSampleQuery> query) const;
  void execute(std::shared_ptr<HKStatisticsCollectionQuery> query) const;
  void execute(std::shared_ptr<HKActivitySummaryQuery> query) const;
  /// Its handler will not run, unless it is running.
  void stop(HKQuery& query) const { query.isStopped_ = true; }

  /// Writes samples in one transaction, as this program's own unless they are imported. A sample
  /// with a sync identifier replaces that of the same source with a lower version, and is left out
  /// where there is one of the same version or a higher one.
  [[nodiscard]] Result<HKWritten> save(const std::vector<HKSample>& samples) const;
  /// Removes this program's samples with that sync identifier; how many there were.
  [[nodiscard]] Result<std::int64_t> deleteSamples(const std::string& syncIdentifier) const;
  /// Writes many samples in transactions of their own: all of `work` runs on the queue.
  [[nodiscard]] Result<void> write(const std::function<Result<void>(HKSampleWriter&)>& work) const;

  /// The beginning of the oldest sample that was added or removed since `forgetChanges`.
  [[nodiscard]] Result<std::optional<Date>> oldestChange() const;
  /// Of the changes that were seen at that time: what has come since stays.
  [[nodiscard]] Result<void> forgetChanges(Date oldest) const;

  /// A source with the number of its samples.
  struct SourceRow {
    HKSource source;
    std::string device;  ///< "watch", "phone" or "other".
    std::int64_t numSamples = 0;
  };
  /// By their priority for totals: those that the user has put in order, then watches, phones and
  /// others.
  [[nodiscard]] Result<std::vector<SourceRow>> sources() const;
  /// Puts the sources with these names first. The rest keeps its order.
  /// Returns the names that no source has; then nothing is changed.
  [[nodiscard]] Result<std::vector<std::string>> setSourceOrder(
      const std::vector<std::string>& names) const;

  [[nodiscard]] const DispatchQueue& queue() const { return queue_; }

 private:
  /// The file as it lies now; null where there is none and `makes` is not set.
  [[nodiscard]] Result<HealthTables*> tables(bool makes) const;

  const std::filesystem::path file_;
  const std::string program_;
  const DispatchQueue queue_;
  mutable std::unique_ptr<HealthTables> tables_;  ///< Used on the queue alone.
};

}  // namespace platform
