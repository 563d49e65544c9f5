#pragma once

#include "Foundation/Values/Error.h"
#include "HealthKit/HKSample.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace platform {

class SqliteConnection;
class SqliteTransaction;

/// What became of samples that were written.
struct HKWritten {
  std::int64_t added = 0;
  std::int64_t known = 0;      ///< Those that were there.
  std::int64_t summaries = 0;  ///< New or changed ones.

  bool operator==(const HKWritten&) const = default;
};

/// A sample from elsewhere as it is written. Texts need to live only until `add` returns.
struct HKSampleRow {
  std::string_view type = {};
  Date start = {};
  Date end = {};
  double value = 0;  ///< An amount, a state, or the duration of a workout.
  std::string_view unit = {};
  std::string_view source = {};
  bool isImported = true;
  std::string_view device = {};
  /// Tells samples apart that are alike otherwise. Two that agree in this, type, source, times and
  /// value are one.
  std::string_view mark = {};
  std::string_view metadata = {};  ///< As `PropertyList::fileText`.
  std::string_view details = {};   ///< Of a workout.
  std::string_view syncIdentifier = {};
  std::int64_t syncVersion = 0;
};

/// Writes samples to the tables, in transactions of many. What was committed stays if a later
/// transaction fails.
class HKSampleWriter {
 public:
  explicit HKSampleWriter(SqliteConnection& connection);
  HKSampleWriter(const HKSampleWriter&) = delete;
  HKSampleWriter& operator=(const HKSampleWriter&) = delete;
  ~HKSampleWriter();

  [[nodiscard]] Result<void> add(const HKSampleRow& sample);
  [[nodiscard]] Result<void> add(const HKSample& sample);
  [[nodiscard]] Result<void> add(const HKActivitySummary& summary);
  /// Ends the transaction that the first `add` began. Otherwise, it is undone.
  [[nodiscard]] Result<void> commit();

  /// Of what is committed.
  [[nodiscard]] const HKWritten& written() const { return committed_; }

 private:
  using Numbers = std::map<std::string, std::int64_t, std::less<>>;

  [[nodiscard]] Result<void> begin();
  [[nodiscard]] Result<std::int64_t> number(Numbers& known, const char* table,
                                            std::string_view name);
  [[nodiscard]] Result<std::int64_t> sourceNumber(const HKSampleRow& sample);
  [[nodiscard]] Result<bool> replacesOlder(const HKSampleRow& sample, std::int64_t source);
  void noteChange(Date date);

  SqliteConnection& connection_;
  std::unique_ptr<SqliteTransaction> transaction_;
  Numbers types_, units_, devices_;
  std::map<std::pair<std::string, bool>, std::int64_t> sources_;
  std::set<std::pair<std::int64_t, std::int64_t>> spans_;
  std::optional<Date> oldest_;
  HKWritten committed_, pending_;
};

}  // namespace platform
