#include "HealthKit/HealthTables.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Values/Try.h"
#include "SQLite/LogOwner.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>

namespace platform {
namespace {

/// What SQLite's `application_id` is in a file of health data: "vlhe".
constexpr std::int64_t healthApplicationID = 0x766C6865;
constexpr std::int64_t layout = 1;

constexpr const char* tableTexts[] = {
    "CREATE TABLE types(id INTEGER PRIMARY KEY, name TEXT NOT NULL UNIQUE)",
    "CREATE TABLE units(id INTEGER PRIMARY KEY, name TEXT NOT NULL UNIQUE)",
    "CREATE TABLE devices(id INTEGER PRIMARY KEY, name TEXT NOT NULL UNIQUE)",
    "CREATE TABLE sources(id INTEGER PRIMARY KEY, name TEXT NOT NULL, imported INTEGER NOT NULL, "
    "position INTEGER, UNIQUE(name, imported))",
    "CREATE TABLE samples(type INTEGER NOT NULL, span INTEGER NOT NULL, start REAL NOT NULL, "
    "end REAL NOT NULL, source INTEGER NOT NULL, value REAL NOT NULL, mark BLOB NOT NULL, "
    "unit INTEGER NOT NULL, device INTEGER NOT NULL, metadata TEXT, details TEXT, sync TEXT, "
    "version INTEGER NOT NULL, PRIMARY KEY(type,span,start,end,source,value,mark)) WITHOUT ROWID",
    "CREATE INDEX samples_sync ON samples(sync, source) WHERE sync IS NOT NULL",
    "CREATE TABLE spans(type INTEGER NOT NULL, span INTEGER NOT NULL, length REAL NOT NULL, "
    "PRIMARY KEY(type, span)) WITHOUT ROWID",
    "CREATE TABLE summaries(day INTEGER PRIMARY KEY, energy REAL NOT NULL, energyGoal REAL NOT "
    "NULL, exercise REAL NOT NULL, exerciseGoal REAL NOT NULL, stand REAL NOT NULL, standGoal REAL "
    "NOT NULL)",
    "CREATE TABLE changes(id INTEGER PRIMARY KEY, oldest REAL NOT NULL)"};

/// A sample without an identifier of its own has one that follows from what it is.
UUID derivedUUID(std::string_view key) {
  UUID::Bytes bytes;
  for (std::uint64_t half = 0; half < 2; ++half) {
    std::uint64_t hash = 0xCBF29CE484222325U ^ (half * 0x9E3779B97F4A7C15U);  // FNV-1a
    for (const char c : key) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
    for (std::size_t i = 0; i < 8; ++i) {
      bytes[half * 8 + i] = static_cast<std::uint8_t>(hash >> (8 * i));
    }
  }
  bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x80);
  bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);
  return UUID(bytes);
}

UUID uuidOf(std::span<const std::byte> mark, const HKSample& sample, double value) {
  UUID::Bytes bytes;
  if (mark.size() == bytes.size() && !sample.source.isImported) {
    std::ranges::transform(mark, bytes.begin(),
                           [](std::byte one) { return static_cast<std::uint8_t>(one); });
    return UUID(bytes);
  }
  const std::string text(reinterpret_cast<const char*>(mark.data()), mark.size());
  return derivedUUID(
      sample.sampleType.identifier + "\n" + sample.source.bundleIdentifier + "\n" +
      PropertyList(PropertyList::Array{sample.start.timeIntervalSinceReferenceDate(),
                                       sample.end.timeIntervalSinceReferenceDate(), value, text})
          .json());
}

PropertyList quantityList(const std::optional<HKQuantity>& quantity) {
  if (!quantity) return {};
  return PropertyList::Dictionary{{"unit", quantity->unit.unitString()},
                                  {"value", quantity->value}};
}

std::optional<HKQuantity> quantityIn(const PropertyList& list) {
  const auto* text = list["unit"].text();
  auto unit = text != nullptr ? HKUnit::fromString(*text) : std::nullopt;
  const auto value = list["value"].real();
  if (!unit || !value) return std::nullopt;
  return HKQuantity{*std::move(unit), *value};
}

HKWorkout workoutIn(std::string_view details, double duration) {
  const auto list = PropertyList::fromFileText(details);
  HKWorkout workout{.activityType = {},
                    .totalEnergyBurned = quantityIn(list["energy"]),
                    .totalDistance = quantityIn(list["distance"]),
                    .duration = duration};
  if (const auto* activity = list["activity"].text()) workout.activityType = *activity;
  if (const auto* events = list["events"].array()) {
    for (const PropertyList& event : *events) {
      const auto* type = event["type"].text();
      workout.events.push_back(
          {.type = type != nullptr ? *type : "",
           .dateInterval = {.start = Date::sinceReferenceDate(event["start"].real().value_or(0)),
                            .duration = event["duration"].real().value_or(0)}});
    }
  }
  return workout;
}

/// A watch is nearer to the person than a phone, and a phone than anything else.
enum class Nearness { watch, phone, other };

Nearness nearnessOf(std::string_view device) {
  if (device.contains("model:Watch")) return Nearness::watch;
  if (device.contains("model:iPhone")) return Nearness::phone;
  return Nearness::other;
}

constexpr const char* nearnessNames[] = {"watch", "phone", "other"};

}  // namespace

std::int64_t spanOf(double seconds) {
  return seconds > 0 ? std::max(0, std::ilogb(seconds) + 1) + 1 : 0;
}

double longestOf(std::int64_t span) {
  return span == 0 ? 0 : std::ldexp(1, static_cast<int>(span) - 1);
}

std::string detailsText(const HKWorkout& workout) {
  PropertyList::Array events;
  for (const auto& event : workout.events) {
    events.push_back(PropertyList::Dictionary{
        {"type", event.type},
        {"start", event.dateInterval.start.timeIntervalSinceReferenceDate()},
        {"duration", event.dateInterval.duration}});
  }
  return PropertyList(PropertyList::Dictionary{{"activity", workout.activityType},
                                               {"energy", quantityList(workout.totalEnergyBurned)},
                                               {"distance", quantityList(workout.totalDistance)},
                                               {"events", std::move(events)}})
      .fileText();
}

CivilDay civilDayOf(std::int64_t day) {
  return {.y = day / 10000, .m = day / 100 % 100, .d = day % 100};
}

Result<void> noteOldestChange(SqliteConnection& connection, Date oldest) {
  return connection.run(
      "INSERT INTO changes(id, oldest) VALUES(1,?1) ON CONFLICT(id) DO UPDATE SET "
      "oldest=min(oldest,?1)",
      oldest.timeIntervalSinceReferenceDate());
}

HealthTables::HealthTables(std::unique_ptr<SqliteConnection> connection, std::filesystem::path file)
    : connection_(std::move(connection)),
      path_(std::move(file)),
      identity_(NSFileManager::identity(path_)) {}

HealthTables::~HealthTables() {
  if (!isCurrent()) connection_->abandon();
}

bool HealthTables::isCurrent() const {
  return connection_->writeError() == nullptr && NSFileManager::identity(path_) == identity_;
}

Result<std::unique_ptr<HealthTables>> HealthTables::open(const std::filesystem::path& file) {
  TRY(NSFileManager::createDirectory(file.parent_path()));
  dropForeignLog(file);
  auto connection =
      TRY(SqliteConnection::open({.path = file, .applicationID = healthApplicationID}));
  std::unique_ptr<HealthTables> tables(new HealthTables(std::move(connection), file));
  TRY(tables->makeTables());
  markLog(file);
  return tables;
}

Result<void> HealthTables::makeTables() {
  const auto version = [&] { return connection_->integer("PRAGMA user_version"); };
  if (TRY(version()).value_or(0) == 0) {
    auto transaction = TRY(SqliteTransaction::begin(*connection_));
    if (TRY(version()).value_or(0) == 0) {
      for (const char* text : tableTexts) TRY(connection_->run(text));
      TRY(connection_->run("PRAGMA user_version=" + std::to_string(layout)));
    }
    TRY(transaction.commit());
  }
  if (TRY(version()).value_or(0) <= layout) return {};
  return failure<StoreError>(StoreError::Kind::incompatible,
                             "\"" + path_.string() + "\" is of a newer version");
}

Result<bool> HealthTables::isAnyKept() {
  const auto kept = TRY(connection_->integer(
      "SELECT EXISTS(SELECT 1 FROM samples) OR EXISTS(SELECT 1 FROM summaries)"));
  return kept.value_or(0) != 0;
}

Result<SqliteStatement> HealthTables::rows(std::string_view columns, const HKObjectType& type,
                                           const HKPredicate& predicate) {
  const auto window = predicate.window();
  auto statement = TRY(connection_->prepare(
      "SELECT " + std::string(columns) +
      " FROM spans JOIN samples ON samples.type=spans.type AND samples.span=spans.span "
      "JOIN sources ON sources.id=samples.source JOIN devices ON devices.id=samples.device "
      "JOIN units ON units.id=samples.unit "
      "WHERE spans.type=(SELECT id FROM types WHERE name=?1) AND samples.start<?3 AND "
      "samples.start>=?2-spans.length AND (samples.end>?2 OR samples.start>=?2)"));
  statement.bind(1, std::string_view(type.identifier));
  statement.bind(2,
                 (window ? window->first : Date::distantPast()).timeIntervalSinceReferenceDate());
  statement.bind(
      3, (window ? window->second : Date::distantFuture()).timeIntervalSinceReferenceDate());
  return statement;
}

Result<std::vector<HKSample>> HealthTables::samples(const HKObjectType& type,
                                                    const HKPredicate& predicate) {
  std::vector<std::tuple<HKSample, double>> found;
  auto row =
      TRY(rows("samples.start, samples.end, samples.value, units.name, sources.name, "
               "sources.imported, devices.name, samples.mark, samples.metadata, "
               "samples.details",
               type, predicate));
  while (TRY(row.step())) {
    HKSample sample{.sampleType = type,
                    .start = Date::sinceReferenceDate(row.real(0)),
                    .end = Date::sinceReferenceDate(row.real(1)),
                    .source = {.name = std::string(row.text(4)),
                               .bundleIdentifier = std::string(row.text(4)),
                               .isImported = row.integer(5) != 0},
                    .device = std::string(row.text(6))};
    const double value = row.real(2);
    if (!row.isNull(9)) {
      sample.value = workoutIn(row.text(9), value);
    } else if (row.text(3) == categoryUnit) {
      sample.value = static_cast<HKSample::Category>(value);
    } else if (auto unit = HKUnit::fromString(row.text(3))) {
      sample.value = HKQuantity{*std::move(unit), value};
    }
    if (!row.isNull(8)) {
      const auto metadata = PropertyList::fromFileText(row.text(8));
      if (metadata.dictionary() != nullptr) sample.metadata = *metadata.dictionary();
    }
    if (!predicate.matches(sample)) continue;
    sample.uuid = uuidOf(row.bytes(7), sample, value);
    found.emplace_back(std::move(sample), value);
  }
  std::ranges::stable_sort(found, {}, [](const auto& one) {
    const auto& [sample, value] = one;
    return std::tuple(sample.start, sample.end, std::string_view(sample.source.name), value);
  });
  std::vector<HKSample> samples;
  samples.reserve(found.size());
  for (auto& [sample, value] : found) samples.push_back(std::move(sample));
  return samples;
}

namespace {

/// A source that the user has put in order comes before all others.
std::int64_t rank(std::optional<std::int64_t> position, std::int64_t source, Nearness nearness) {
  constexpr std::int64_t behindOrdered = std::int64_t{1} << 40;
  constexpr std::int64_t behindNearer = std::int64_t{1} << 30;
  if (position) return *position;
  return behindOrdered + behindNearer * static_cast<std::int64_t>(nearness) + source;
}

}  // namespace

Result<std::vector<std::pair<HKMeasured, HKUnit>>> HealthTables::measured(
    const HKObjectType& type, const HKPredicate& predicate) {
  std::vector<std::pair<HKMeasured, HKUnit>> found;
  std::map<std::string, std::optional<HKUnit>, std::less<>> units;
  std::map<std::pair<std::int64_t, std::int64_t>, std::int64_t> ranks;
  auto row =
      TRY(rows("samples.start, samples.end, samples.value, units.name, samples.source, "
               "samples.device, sources.position, devices.name",
               type, predicate));
  while (TRY(row.step())) {
    auto unit = units.find(row.text(3));
    if (unit == units.end()) {
      unit = units.emplace(row.text(3), HKUnit::fromString(row.text(3))).first;
    }
    if (!unit->second) continue;
    const auto [place, isNew] = ranks.try_emplace(std::pair(row.integer(4), row.integer(5)));
    if (isNew) {
      place->second = rank(row.isNull(6) ? std::nullopt : std::optional(row.integer(6)),
                           row.integer(4), nearnessOf(row.text(7)));
    }
    found.emplace_back(
        HKMeasured{Date::sinceReferenceDate(row.real(0)), Date::sinceReferenceDate(row.real(1)),
                   row.real(2), place->second},
        *unit->second);
  }
  return found;
}

namespace {

/// For a predicate that asks for more than a time.
std::vector<std::pair<HKMeasured, HKUnit>> measuredOf(const std::vector<HKSample>& samples) {
  std::vector<std::pair<HKMeasured, HKUnit>> found;
  std::map<std::pair<std::string, bool>, std::int64_t> sources;
  for (const HKSample& sample : samples) {
    if (sample.quantity() == nullptr) continue;
    const std::pair key(sample.source.name, sample.source.isImported);
    const auto number = std::ssize(sources);
    const auto source = sources.try_emplace(key, number).first->second;
    found.emplace_back(HKMeasured{sample.start, sample.end, sample.quantity()->value,
                                  rank(std::nullopt, source, nearnessOf(sample.device))},
                       sample.quantity()->unit);
  }
  return found;
}

HKStatistics statisticsOf(const std::vector<HKMeasured>& samples, HKStatisticsOptions options,
                          const HKUnit& unit, Date start, Date end,
                          const HKPredicate::Window& window) {
  HKStatistics made{start, end};
  if (options == HKStatisticsOptions::cumulativeSum) {
    made.sumQuantity = HKQuantity{
        unit, sumOnce(samples, std::max(start, window.first), std::min(end, window.second))};
    return made;
  }
  double sum = 0;
  for (const HKMeasured& sample : samples) sum += sample.value;
  made.averageQuantity = HKQuantity{unit, sum / static_cast<double>(samples.size())};
  return made;
}

}  // namespace

Result<HKStatisticsCollection> HealthTables::statistics(const HKStatisticsCollectionQuery& query) {
  const auto& predicate = query.quantitySamplePredicate;
  std::vector<std::pair<HKMeasured, HKUnit>> found;
  if (predicate.isWindowAlone()) {
    found = TRY(measured(query.quantityType, predicate));
  } else {
    found = measuredOf(TRY(samples(query.quantityType, predicate)));
  }
  if (found.empty()) return HKStatisticsCollection{};
  const HKUnit unit = found.front().second;
  const auto window =
      predicate.window().value_or(HKPredicate::Window(Date::distantPast(), Date::distantFuture()));
  const auto& interval = query.intervalComponents;
  std::map<std::int64_t, std::vector<HKMeasured>> buckets;
  std::optional<std::pair<std::int64_t, HKPredicate::Window>> last;
  const auto bucketOf = [&](Date date) {
    if (!last || date < last->second.first || date >= last->second.second) {
      const auto index = interval.indexOf(query.anchorDate, date);
      last = {index,
              {interval.boundary(query.anchorDate, index),
               interval.boundary(query.anchorDate, index + 1)}};
    }
    return *last;
  };
  for (const auto& [sample, in] : found) {
    const auto value = in.convert(sample.value, unit);
    if (!value) continue;
    HKMeasured one = sample;
    one.value = *value;
    const Date from = std::max(one.start, window.first);
    const Date to = std::min(one.end, window.second);
    auto bucket = bucketOf(from);
    buckets[bucket.first].push_back(one);
    while (bucket.second.second < to) {
      bucket = bucketOf(bucket.second.second);
      buckets[bucket.first].push_back(one);
    }
  }
  HKStatisticsCollection collection;
  for (const auto& [index, samples] : buckets) {
    collection.statistics.push_back(
        statisticsOf(samples, query.options, unit, interval.boundary(query.anchorDate, index),
                     interval.boundary(query.anchorDate, index + 1), window));
  }
  return collection;
}

Result<std::vector<HKActivitySummary>> HealthTables::summaries(std::int64_t day) {
  std::vector<HKActivitySummary> found;
  auto row = TRY(connection_->prepare(
      "SELECT energy, energyGoal, exercise, exerciseGoal, stand, standGoal FROM summaries "
      "WHERE day=?"));
  row.bind(1, day);
  while (TRY(row.step())) {
    found.push_back({.day = day,
                     .activeEnergyBurned = row.real(0),
                     .activeEnergyBurnedGoal = row.real(1),
                     .appleExerciseTime = row.real(2),
                     .appleExerciseTimeGoal = row.real(3),
                     .appleStandHours = row.real(4),
                     .appleStandHoursGoal = row.real(5)});
  }
  return found;
}

Result<std::vector<HKHealthStore::SourceRow>> HealthTables::sources() {
  struct Found {
    HKHealthStore::SourceRow row;
    std::int64_t rank;
  };
  std::map<std::int64_t, Found> bySource;
  auto row = TRY(connection_->prepare(
      "SELECT sources.id, sources.name, sources.imported, sources.position, devices.name, count(*) "
      "FROM samples JOIN sources ON sources.id=samples.source JOIN devices ON "
      "devices.id=samples.device GROUP BY sources.id, devices.id"));
  while (TRY(row.step())) {
    const auto nearness = nearnessOf(row.text(4));
    const auto own = rank(row.isNull(3) ? std::nullopt : std::optional(row.integer(3)),
                          row.integer(0), nearness);
    auto& found = bySource
                      .try_emplace(row.integer(0),
                                   Found{{.source = {.name = std::string(row.text(1)),
                                                     .bundleIdentifier = std::string(row.text(1)),
                                                     .isImported = row.integer(2) != 0},
                                          .device = nearnessNames[static_cast<int>(nearness)]},
                                         own})
                      .first->second;
    found.row.numSamples += row.integer(5);
    if (own < found.rank) {
      found.rank = own;
      found.row.device = nearnessNames[static_cast<int>(nearness)];
    }
  }
  std::vector<Found> all;
  for (auto& [id, one] : bySource) all.push_back(std::move(one));
  std::ranges::stable_sort(all, {}, &Found::rank);
  std::vector<HKHealthStore::SourceRow> sources;
  for (auto& one : all) sources.push_back(std::move(one.row));
  return sources;
}

Result<std::vector<std::string>> HealthTables::setSourceOrder(
    const std::vector<std::string>& names) {
  auto transaction = TRY(SqliteTransaction::begin(*connection_));
  std::vector<std::string> unknown;
  TRY(connection_->run("UPDATE sources SET position=NULL WHERE position IS NOT NULL"));
  std::int64_t position = 0;
  for (const std::string& name : names) {
    TRY(connection_->run("UPDATE sources SET position=? WHERE name=? AND position IS NULL",
                         position++, std::string_view(name)));
    const bool isKnown =
        TRY(connection_->integer("SELECT 1 FROM sources WHERE name=?", std::string_view(name)))
            .has_value();
    if (!isKnown) unknown.push_back(name);
  }
  if (!unknown.empty()) return unknown;
  {
    auto row = TRY(connection_->prepare("SELECT min(start) FROM samples"));
    const bool isAny = TRY(row.step());
    if (isAny && !row.isNull(0)) {
      TRY(noteOldestChange(*connection_, Date::sinceReferenceDate(row.real(0))));
    }
  }
  TRY(transaction.commit());
  return unknown;
}

}  // namespace platform
