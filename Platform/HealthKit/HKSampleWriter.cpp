#include "HealthKit/HKSampleWriter.h"

#include "Foundation/Values/Try.h"
#include "HealthKit/HealthTables.h"
#include "SQLite/Sqlite.h"

#include <cmath>
#include <span>

namespace platform {
namespace {

std::span<const std::byte> bytesOf(std::string_view text) {
  return std::as_bytes(std::span(text));
}

/// Beyond it a date is damage, and its arithmetic overflows.
bool isDate(Date date) {
  return Date::distantPast() < date && date < Date::distantFuture();
}

}  // namespace

HKSampleWriter::HKSampleWriter(SqliteConnection& connection) : connection_(connection) {}

HKSampleWriter::~HKSampleWriter() = default;

Result<void> HKSampleWriter::begin() {
  if (transaction_) return {};
  transaction_ = std::make_unique<SqliteTransaction>(TRY(SqliteTransaction::begin(connection_)));
  return {};
}

Result<std::int64_t> HKSampleWriter::number(Numbers& known, const char* table,
                                            std::string_view name) {
  if (name.data() == nullptr) name = "";  // SQLite takes what has no address for NULL
  const auto found = known.find(name);
  if (found != known.end()) return found->second;
  TRY(connection_.run("INSERT OR IGNORE INTO " + std::string(table) + "(name) VALUES(?)", name));
  const auto id =
      TRY(connection_.integer("SELECT id FROM " + std::string(table) + " WHERE name=?", name));
  return known.emplace(name, id.value_or(0)).first->second;
}

Result<std::int64_t> HKSampleWriter::sourceNumber(const HKSampleRow& sample) {
  const std::pair key(std::string(sample.source), sample.isImported);
  const auto found = sources_.find(key);
  if (found != sources_.end()) return found->second;
  const std::int64_t isImported = sample.isImported ? 1 : 0;
  TRY(connection_.run("INSERT OR IGNORE INTO sources(name, imported) VALUES(?,?)", sample.source,
                      isImported));
  const auto id = TRY(connection_.integer("SELECT id FROM sources WHERE name=? AND imported=?",
                                          sample.source, isImported));
  return sources_.emplace(key, id.value_or(0)).first->second;
}

/// False where there is one of the same version or a higher one.
Result<bool> HKSampleWriter::replacesOlder(const HKSampleRow& sample, std::int64_t source) {
  auto found = TRY(connection_.prepare(
      "SELECT version, start FROM samples WHERE sync=? AND source=? AND sync IS NOT NULL"));
  found.bindAll(sample.syncIdentifier, source);
  if (!TRY(found.step())) return true;
  if (found.integer(0) >= sample.syncVersion) return false;
  noteChange(Date::sinceReferenceDate(found.real(1)));
  TRY(connection_.run("DELETE FROM samples WHERE sync=? AND source=? AND sync IS NOT NULL",
                      sample.syncIdentifier, source));
  return true;
}

void HKSampleWriter::noteChange(Date date) {
  oldest_ = std::min(oldest_.value_or(date), date);
}

Result<void> HKSampleWriter::add(const HKSampleRow& sample) {
  if (!isDate(sample.start) || !isDate(sample.end) || sample.end < sample.start ||
      !std::isfinite(sample.value)) {
    return failure<Error>("velloro.health", 1, "the times or the value of a sample can't be kept");
  }
  TRY(begin());
  const auto type = TRY(number(types_, "types", sample.type));
  const auto source = TRY(sourceNumber(sample));
  if (!sample.syncIdentifier.empty() && !TRY(replacesOlder(sample, source))) {
    ++pending_.known;
    return {};
  }
  const auto span = spanOf(sample.end.timeIntervalSince(sample.start));
  auto insert = TRY(connection_.prepare(
      "INSERT OR IGNORE INTO samples(type,span,start,end,source,value,mark,unit,device,metadata,"
      "details,sync,version) VALUES(?,?,?,?,?,?,?,?,?,?,?,?,?)"));
  insert.bind(1, type);
  insert.bind(2, span);
  insert.bind(3, sample.start.timeIntervalSinceReferenceDate());
  insert.bind(4, sample.end.timeIntervalSinceReferenceDate());
  insert.bind(5, source);
  insert.bind(6, sample.value + 0.0);
  insert.bind(7, bytesOf(sample.mark));
  insert.bind(8, TRY(number(units_, "units", sample.unit)));
  insert.bind(9, TRY(number(devices_, "devices", sample.device)));
  const auto bindText = [&](int parameter, std::string_view text) {
    if (text.empty()) return insert.bindNull(parameter);
    insert.bind(parameter, text);
  };
  bindText(10, sample.metadata);
  bindText(11, sample.details);
  bindText(12, sample.syncIdentifier);
  insert.bind(13, sample.syncVersion);
  TRY(insert.run());
  if (connection_.changes() == 0) {
    ++pending_.known;
    return {};
  }
  ++pending_.added;
  noteChange(sample.start);
  if (spans_.emplace(type, span).second) {
    TRY(connection_.run("INSERT OR IGNORE INTO spans(type, span, length) VALUES(?,?,?)", type, span,
                        longestOf(span)));
  }
  return {};
}

Result<void> HKSampleWriter::add(const HKSample& sample) {
  const auto& bytes = sample.uuid.bytes();
  HKSampleRow row{.type = sample.sampleType.identifier,
                  .start = sample.start,
                  .end = sample.end,
                  .source = sample.source.bundleIdentifier,
                  .isImported = sample.source.isImported,
                  .device = sample.device,
                  .mark = {reinterpret_cast<const char*>(bytes.data()), bytes.size()}};
  std::string details;
  if (const HKQuantity* quantity = sample.quantity()) {
    row.value = quantity->value;
    row.unit = quantity->unit.unitString();
  } else if (const HKWorkout* workout = sample.workout()) {
    row.value = workout->duration;
    details = detailsText(*workout);
    row.details = details;
  } else if (sample.category()) {
    row.value = static_cast<double>(*sample.category());
    row.unit = categoryUnit;
  }
  std::string metadata;
  if (!sample.metadata.empty()) metadata = PropertyList(sample.metadata).fileText();
  row.metadata = metadata;
  const auto sync = sample.metadata.find(syncIdentifierKey);
  if (sync != sample.metadata.end() && sync->second.text() != nullptr) {
    row.syncIdentifier = *sync->second.text();
    const auto version = sample.metadata.find(syncVersionKey);
    if (version != sample.metadata.end()) row.syncVersion = version->second.integer().value_or(0);
  }
  return add(row);
}

Result<void> HKSampleWriter::add(const HKActivitySummary& summary) {
  TRY(begin());
  auto write = TRY(connection_.prepare(
      "INSERT INTO summaries(day,energy,energyGoal,exercise,exerciseGoal,stand,standGoal) "
      "VALUES(?1,?2,?3,?4,?5,?6,?7) ON CONFLICT(day) DO UPDATE SET energy=?2,energyGoal=?3,"
      "exercise=?4,exerciseGoal=?5,stand=?6,standGoal=?7 WHERE energy<>?2 OR energyGoal<>?3 OR "
      "exercise<>?4 OR exerciseGoal<>?5 OR stand<>?6 OR standGoal<>?7"));
  write.bindAll(summary.day, summary.activeEnergyBurned, summary.activeEnergyBurnedGoal,
                summary.appleExerciseTime, summary.appleExerciseTimeGoal, summary.appleStandHours,
                summary.appleStandHoursGoal);
  TRY(write.run());
  if (connection_.changes() == 0) return {};
  ++pending_.summaries;
  const auto day = civilDayOf(summary.day);
  noteChange(Date::since1970(static_cast<double>(daysFromCivil(day)) * 86400));
  return {};
}

Result<void> HKSampleWriter::commit() {
  if (!transaction_) return {};
  if (oldest_) TRY(noteOldestChange(connection_, *oldest_));
  TRY(transaction_->commit());
  transaction_.reset();
  committed_.added += pending_.added;
  committed_.known += pending_.known;
  committed_.summaries += pending_.summaries;
  pending_ = {};
  oldest_.reset();
  return {};
}

}  // namespace platform
