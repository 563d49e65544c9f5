#pragma once

#include "HealthImport/HealthImport.h"
#include "HealthKit/HKSampleWriter.h"

#include <optional>
#include <string>
#include <string_view>

namespace velloro {

/// Takes the records of a reader, and writes them in batches.
class ImportSink {
 public:
  explicit ImportSink(HKSampleWriter& writer) : writer_(writer) {}

  void add(const HKSampleRow& row);
  void add(const HKActivitySummary& summary);
  void skip(std::int64_t line, std::string why);
  void ignore() { ++report_.ignored; }

  /// The first error of the store; nothing is written after it.
  [[nodiscard]] const ErrorPtr& error() const { return error_; }
  /// Writes what is left, and says what became of all.
  [[nodiscard]] HealthImportReport finish();

 private:
  void count(const Result<void>& written);

  HKSampleWriter& writer_;
  HealthImportReport report_;
  ErrorPtr error_;
  std::int64_t inBatch_ = 0;
};

/// A quantity, state or workout as texts say it.
struct SampleText {
  std::string_view value = {};
  std::string_view unit = {};
};

/// What a sample of a type holds, and in which unit.
struct SampleValueText {
  double value = 0;
  std::string_view unit = {};
};

/// Reads value and unit of a sample. Fails with the reason: no value, no number, an unknown unit,
/// or one that measures something else.
[[nodiscard]] std::expected<SampleValueText, std::string> sampleValue(const OxHKSampleType& type,
                                                                      const SampleText& text);
/// The number of a state by its name, "asleepCore" or "HKCategoryValueSleepAnalysisAsleepCore", or
/// by the number itself. Absent for what the type does not know.
[[nodiscard]] std::optional<std::int64_t> categoryState(OxHKSampleType::CategoryType type,
                                                        std::string_view text);
/// A number in decimal notation, and nothing else.
[[nodiscard]] std::optional<double> numberIn(std::string_view text);
/// The activity of a name: "running" or "HKWorkoutActivityTypeRunning"; `other` for an unknown one.
[[nodiscard]] std::string activityNamed(std::string_view name);
/// "2019-01-01 08:00:00 +0100", or ISO 8601.
[[nodiscard]] std::optional<Date> dateIn(std::string_view text);

}  // namespace velloro
