#pragma once

#include "Foundation/Coding/RawValue.h"
#include "Foundation/Values/Error.h"
#include "Foundation/Values/UUID.h"
#include "VelloroCore/Progress/TaskProgressCodable.h"
#include "VelloroCore/Types/TypeUnit.h"

#include <string>
#include <vector>

namespace velloro {

/// How far a task has come in a period, and the samples that say so.
struct QualifyInfo {
  enum class ReadingType { fromHealthKitData, fromLogEntries };

  /// A single sample, where single samples are read.
  struct HealthRecord {
    DatedPeriod period = {};
    UUID id = {};
    bool isExternal = false;  ///< Whether another program wrote it.
    double quantity = 0;
    TypeUnit unit = TypeUnit::durationSeconds;
    Date start = {};
    Date end = {};

    bool operator==(const HealthRecord&) const = default;
    static constexpr auto codingKeys =
        keys(key("period", &HealthRecord::period), key("id", &HealthRecord::id),
             key("isExternal", &HealthRecord::isExternal), key("quantity", &HealthRecord::quantity),
             key("unit", &HealthRecord::unit, initialWhenUnknown),
             key("start", &HealthRecord::start), key("end", &HealthRecord::end));
    [[nodiscard]] std::string debugDescription() const;
  };

  ReadingType readingType = ReadingType::fromHealthKitData;
  TaskProgressCodable progress = {};
  std::vector<HealthRecord> healthRecords = {};

  static constexpr auto codingKeys = keys(
      key("readingType", &QualifyInfo::readingType, initialWhenUnknown),
      key("progress", &QualifyInfo::progress), key("healthRecords", &QualifyInfo::healthRecords));
  [[nodiscard]] std::string debugDescription(Date now) const;
};

constexpr auto rawValues(std::type_identity<QualifyInfo::ReadingType>) {
  return caseNames<QualifyInfo::ReadingType::fromLogEntries>();
}

/// Why there is no answer. The text is the reason's name.
class QualifyError : public Error {
 public:
  enum class Kind {
    noQualifyAlgorithm,
    noHealthKitReadTypes,
    healthKitNotAvailable,
    noUnit,
    unknownError
  };
  explicit QualifyError(Kind kind);

  [[nodiscard]] Kind kind() const { return kind_; }

 private:
  Kind kind_;
};

constexpr auto rawValues(std::type_identity<QualifyError::Kind>) {
  return caseNames<QualifyError::Kind::unknownError>();
}

/// Why sleep can't be read.
class SleepError : public Error {
 public:
  enum class Kind { invalidPeriodType };
  explicit SleepError(Kind kind);
};

constexpr auto rawValues(std::type_identity<SleepError::Kind>) {
  return caseNames<SleepError::Kind::invalidPeriodType>();
}

}  // namespace velloro
