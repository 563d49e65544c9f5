#pragma once

#include "Foundation/Values/Error.h"
#include "HealthKit/HKSample.h"
#include "HealthKit/HKStatistics.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform {

/// Which samples a query asks for. An empty one asks for all of its type.
///
///     const Date now = Date::now();
///     const auto day = HKPredicate::samples(now, now + 86400);
///     const auto own = HKPredicate::all({day, HKPredicate::ownSource("velloro.app")});
///     own.window()->first == now;    // true: read by an index
class HKPredicate {
 public:
  enum class Comparison : std::uint8_t { equal = 4, notEqual = 5 };
  using Window = std::pair<Date, Date>;

  HKPredicate() = default;
  /// Samples that overlap the time from `start` to `end`: one that only touches it does not, but a
  /// moment at its start does.
  [[nodiscard]] static HKPredicate samples(Date start, Date end);
  /// Those that this program has written. An imported sample never is.
  [[nodiscard]] static HKPredicate ownSource(std::string bundleIdentifier);
  /// Those of a source, written or imported.
  [[nodiscard]] static HKPredicate source(std::string bundleIdentifier);
  /// Samples that carry the value under the key, or don't.
  [[nodiscard]] static HKPredicate metadata(std::string key, Comparison comparison,
                                            std::string value);
  [[nodiscard]] static HKPredicate workouts(std::string activityType);
  [[nodiscard]] static HKPredicate all(std::vector<HKPredicate> parts);
  /// Of no parts: nothing.
  [[nodiscard]] static HKPredicate any(std::vector<HKPredicate> parts);

  [[nodiscard]] bool matches(const HKSample& sample) const;
  /// The time outside of which no sample matches; absent for all time.
  [[nodiscard]] std::optional<Window> window() const;
  /// Whether the window says all that there is to say.
  [[nodiscard]] bool isWindowAlone() const { return kind_ == Kind::window || kind_ == Kind::none; }

 private:
  enum class Kind : std::uint8_t { none, window, ownSource, source, metadata, workouts, all, any };

  Kind kind_ = Kind::none;
  Window window_ = {};
  std::string key_, value_;
  Comparison comparison_ = Comparison::equal;
  std::vector<HKPredicate> parts_;
};

/// What is asked of a health store. Its handler runs once, on the queue of the store, unless the
/// query was stopped before.
class HKQuery {
 public:
  HKQuery() = default;
  HKQuery(const HKQuery&) = delete;
  HKQuery& operator=(const HKQuery&) = delete;
  virtual ~HKQuery() = default;

 private:
  friend class HKHealthStore;
  std::atomic<bool> isStopped_ = false;
};

enum class HKSampleSortIdentifier : std::uint8_t { startDate, endDate };

struct HKSortDescriptor {
  HKSampleSortIdentifier key = HKSampleSortIdentifier::startDate;
  bool isAscending = true;
};

/// The samples of a type. Where sort descriptors leave an order open it is that of the store: by
/// start, end, source and value.
class HKSampleQuery : public HKQuery {
 public:
  using ResultsHandler = std::function<void(Result<std::vector<HKSample>>)>;

  HKObjectType sampleType;
  HKPredicate predicate = {};
  std::optional<std::size_t> limit = {};
  std::vector<HKSortDescriptor> sortDescriptors = {};
  ResultsHandler resultsHandler;
};

/// The samples of a quantity type, summed up in intervals.
class HKStatisticsCollectionQuery : public HKQuery {
 public:
  using ResultsHandler = std::function<void(Result<HKStatisticsCollection>)>;

  HKObjectType quantityType;
  HKPredicate quantitySamplePredicate = {};
  HKStatisticsOptions options = HKStatisticsOptions::cumulativeSum;
  Date anchorDate = {};
  HKStatisticsInterval intervalComponents = {};
  ResultsHandler initialResultsHandler;
};

/// The activity summaries of a day.
class HKActivitySummaryQuery : public HKQuery {
 public:
  using ResultsHandler = std::function<void(Result<std::vector<HKActivitySummary>>)>;

  std::int64_t day = 0;  ///< 20240307
  ResultsHandler resultsHandler;
};

}  // namespace platform
