#pragma once

#include "HealthKit/HKHealthStore.h"
#include "OxDateTime/YYYYMMDD.h"
#include "OxKit/UniqueID.h"
#include "Tasks/Rows/TaskEntity.h"
#include "VelloroCore/Types/AutomaticTaskType.h"

#include <memory>
#include <optional>
#include <vector>

namespace velloro {

/// The samples that the program writes for amounts entered by hand.
class OwnSamples {
 public:
  /// Absent for a type whose entries can't become samples: a night, a workout, a weight.
  [[nodiscard]] static std::optional<OwnSamples> of(const TaskEntity& task,
                                                    const HKHealthStore& store);

  /// Makes the samples of these days those of the entries. Only what differs is written.
  [[nodiscard]] Result<void> bringUpToDate(const TaskEntity::Entries& entries,
                                           const YYYYMMDD::Range& days) const;

 private:
  struct Kept {
    double amount = 0;
    std::int64_t version = 0;
  };
  using KeptByEntry = std::map<UniqueID, Kept>;

  OwnSamples(const TaskEntity& task, const HKHealthStore& store, AutomaticTaskType type,
             UniqueID id)
      : task_(task), store_(store), type_(std::move(type)), id_(id) {}
  [[nodiscard]] Result<KeptByEntry> kept(const YYYYMMDD::Range& days) const;
  [[nodiscard]] HKSample sample(const TaskLogEntryEntity& entry, YYYYMMDD day, double amount,
                                std::vector<HKSample>& others, std::int64_t version) const;

  const TaskEntity& task_;
  const HKHealthStore& store_;
  AutomaticTaskType type_;
  UniqueID id_;
};

/// What an entry made by hand counts; 0 for any other.
[[nodiscard]] double amountByHand(const TaskLogEntryEntity& entry, bool isNegative);

}  // namespace velloro
