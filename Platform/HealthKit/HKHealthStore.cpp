#include "HealthKit/HKHealthStore.h"

#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/Environment.h"
#include "Foundation/Values/Try.h"
#include "HealthKit/HealthTables.h"

#include <algorithm>

namespace platform {

HKHealthStore::HKHealthStore(std::filesystem::path file, std::string program)
    : file_(std::move(file)), program_(std::move(program)), queue_("velloro.health") {}

HKHealthStore::~HKHealthStore() = default;

/// Another file may have taken the name since, as when a backup was put in its place.
Result<HealthTables*> HKHealthStore::tables(bool makes) const {
  if (tables_ && tables_->isCurrent()) return tables_.get();
  tables_.reset();
  if (!makes && !NSFileManager::exists(file_)) return nullptr;
  tables_ = TRY(HealthTables::open(file_));
  return tables_.get();
}

bool HKHealthStore::isHealthDataAvailable() const {
  return queue_.sync([&] {
    const auto kept = [&]() -> Result<bool> {
      auto* const found = TRY(tables(false));
      if (found == nullptr) return false;
      return found->isAnyKept();
    }();
    if (!kept) Environment::current().report(kept.error()->localizedDescription());
    return kept.value_or(false);
  });
}

namespace {

void sort(std::vector<HKSample>& samples, const std::vector<HKSortDescriptor>& descriptors) {
  const auto key = [](const HKSample& sample, HKSampleSortIdentifier by) {
    return by == HKSampleSortIdentifier::startDate ? sample.start : sample.end;
  };
  std::ranges::stable_sort(samples, [&](const HKSample& one, const HKSample& other) {
    for (const auto& [by, isAscending] : descriptors) {
      if (key(one, by) != key(other, by)) {
        return (key(one, by) < key(other, by)) == isAscending;
      }
    }
    return false;
  });
}

}  // namespace

void HKHealthStore::execute(std::shared_ptr<HKSampleQuery> query) const {
  queue_.async([this, query] {
    if (query->isStopped_) return;
    const auto found = [&]() -> Result<std::vector<HKSample>> {
      auto* const kept = TRY(tables(false));
      if (kept == nullptr) return std::vector<HKSample>();
      auto samples = TRY(kept->samples(query->sampleType, query->predicate));
      sort(samples, query->sortDescriptors);
      if (query->limit && *query->limit < samples.size()) {
        samples.erase(samples.begin() + static_cast<std::ptrdiff_t>(*query->limit), samples.end());
      }
      return samples;
    };
    query->resultsHandler(found());
  });
}

void HKHealthStore::execute(std::shared_ptr<HKStatisticsCollectionQuery> query) const {
  queue_.async([this, query] {
    if (query->isStopped_) return;
    const auto found = [&]() -> Result<HKStatisticsCollection> {
      auto* const kept = TRY(tables(false));
      if (kept == nullptr) return HKStatisticsCollection();
      return kept->statistics(*query);
    };
    query->initialResultsHandler(found());
  });
}

void HKHealthStore::execute(std::shared_ptr<HKActivitySummaryQuery> query) const {
  queue_.async([this, query] {
    if (query->isStopped_) return;
    const auto found = [&]() -> Result<std::vector<HKActivitySummary>> {
      auto* const kept = TRY(tables(false));
      if (kept == nullptr) return std::vector<HKActivitySummary>();
      return kept->summaries(query->day);
    };
    query->resultsHandler(found());
  });
}

Result<HKWritten> HKHealthStore::save(const std::vector<HKSample>& samples) const {
  HKWritten written;
  const auto saved = write([&](HKSampleWriter& writer) -> Result<void> {
    for (HKSample sample : samples) {
      if (!sample.source.isImported && sample.source.bundleIdentifier.empty()) {
        sample.source.bundleIdentifier = program_;
      }
      if (sample.uuid == UUID()) sample.uuid = UUID::random();
      TRY(writer.add(sample));
    }
    TRY(writer.commit());
    written = writer.written();
    return {};
  });
  TRY(saved);
  return written;
}

Result<std::int64_t> HKHealthStore::deleteSamples(const std::string& syncIdentifier) const {
  return queue_.sync([&]() -> Result<std::int64_t> {
    auto* const kept = TRY(tables(false));
    if (kept == nullptr) return 0;
    auto& connection = kept->connection();
    auto transaction = TRY(SqliteTransaction::begin(connection));
    constexpr std::string_view ofProgram =
        " FROM samples WHERE sync=? AND sync IS NOT NULL AND source=(SELECT id FROM sources WHERE "
        "name=? AND imported=0)";
    std::int64_t removed = 0;
    {
      auto row = TRY(connection.prepare("SELECT start" + std::string(ofProgram)));
      row.bindAll(std::string_view(syncIdentifier), std::string_view(program_));
      while (TRY(row.step())) {
        TRY(noteOldestChange(connection, Date::sinceReferenceDate(row.real(0))));
        ++removed;
      }
    }
    TRY(connection.run("DELETE" + std::string(ofProgram), std::string_view(syncIdentifier),
                       std::string_view(program_)));
    TRY(transaction.commit());
    return removed;
  });
}

Result<void> HKHealthStore::write(const std::function<Result<void>(HKSampleWriter&)>& work) const {
  return queue_.sync([&]() -> Result<void> {
    HKSampleWriter writer(TRY(tables(true))->connection());
    return work(writer);
  });
}

Result<std::optional<Date>> HKHealthStore::oldestChange() const {
  return queue_.sync([&]() -> Result<std::optional<Date>> {
    auto* const kept = TRY(tables(false));
    if (kept == nullptr) return std::nullopt;
    auto row = TRY(kept->connection().prepare("SELECT oldest FROM changes WHERE id=1"));
    if (!TRY(row.step())) return std::nullopt;
    return Date::sinceReferenceDate(row.real(0));
  });
}

Result<void> HKHealthStore::forgetChanges(Date oldest) const {
  return queue_.sync([&]() -> Result<void> {
    auto* const kept = TRY(tables(false));
    if (kept == nullptr) return {};
    return kept->connection().run("DELETE FROM changes WHERE id=1 AND oldest>=?",
                                  oldest.timeIntervalSinceReferenceDate());
  });
}

Result<std::vector<HKHealthStore::SourceRow>> HKHealthStore::sources() const {
  return queue_.sync([&]() -> Result<std::vector<SourceRow>> {
    auto* const kept = TRY(tables(false));
    if (kept == nullptr) return std::vector<SourceRow>();
    return kept->sources();
  });
}

Result<std::vector<std::string>> HKHealthStore::setSourceOrder(
    const std::vector<std::string>& names) const {
  return queue_.sync([&]() -> Result<std::vector<std::string>> {
    auto* const kept = TRY(tables(false));
    if (kept == nullptr) return names;
    return kept->setSourceOrder(names);
  });
}

}  // namespace platform
