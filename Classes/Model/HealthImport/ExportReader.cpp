#include "HealthImport/ExportReader.h"

#include "Foundation/Text/String.h"
#include "Foundation/Values/Try.h"
#include "Health/HealthManager.h"
#include "HealthKit/HealthDetails.h"
#include "OxHealthKit/HKObjects.h"

#include <algorithm>

namespace velloro {
namespace {

constexpr std::string_view root = "<HealthData";

auto noExport() {
  return failure<Error>("velloro.health", 2, "the file holds no health export");
}

/// Without the declarations; line breaks stay, so that lines can be named.
void blankDeclarations(std::string& head, std::size_t rootAt) {
  const auto from = head.find("<!DOCTYPE");
  if (from == std::string::npos || from > rootAt) return;
  for (std::size_t i = from; i < rootAt; ++i) {
    if (head[i] != '\n') head[i] = ' ';
  }
}

/// How many bytes at the end begin a character that goes on in the next piece.
std::size_t openCharacter(std::string_view bytes) {
  for (std::size_t back = 1; back <= std::min<std::size_t>(3, bytes.size()); ++back) {
    const auto byte = static_cast<unsigned char>(bytes[bytes.size() - back]);
    if ((byte & 0xC0) == 0x80) continue;
    const std::size_t length = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
    return length > back ? back : 0;
  }
  return 0;
}

/// What is no character of XML becomes a blank, and what is no UTF-8 a replacement character.
void clean(std::string& bytes) {
  for (char& c : bytes) {
    if (static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r') c = ' ';
  }
  if (!isUTF8(bytes)) bytes = repairedUTF8(bytes);
}

}  // namespace

/// Reads on to the root element, which stands behind the declarations.
Result<bool> ExportReader::fillHead(const ByteSource& source, std::string& head) {
  constexpr std::size_t longest = std::size_t{4} << 20;
  char piece[65536];
  while (head.find(root) == std::string::npos) {
    if (head.size() > longest) return false;
    const auto got = TRY(source(piece));
    if (got == 0) return false;
    head.append(piece, got);
  }
  return true;
}

Result<void> ExportReader::read(const ByteSource& source) {
  std::string bytes;
  if (!TRY(fillHead(source, bytes))) return noExport();
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.erase(0, 3);
  blankDeclarations(bytes, bytes.find(root));
  char piece[65536];
  bool isLast = false;
  while (!isLast) {
    const auto open = openCharacter(bytes);
    const std::string kept = bytes.substr(bytes.size() - open);
    bytes.resize(bytes.size() - open);
    clean(bytes);
    TRY(stream_.feed(bytes, false));
    if (sink_.error() != nullptr) return std::unexpected(sink_.error());
    const auto got = TRY(source(piece));
    isLast = got == 0;
    bytes.assign(kept);
    bytes.append(piece, got);
  }
  clean(bytes);
  TRY(stream_.feed(bytes, true));
  return isExport_ ? Result<void>() : noExport();
}

void ExportReader::start(std::string_view name, const XMLAttributes& attributes) {
  if (depth_++ == 0) isExport_ = name == "HealthData";
  if (!isExport_) return;
  if (name == "Record") {
    if (correlations_ == 0) startRecord(attributes);
  } else if (name == "MetadataEntry") {
    if (isPending_) addMetadata(attributes);
  } else if (name == "Correlation") {
    ++correlations_;
  } else if (name == "Workout") {
    startWorkout(attributes);
  } else if (name == "WorkoutStatistics") {
    if (isPending_ && pending_.workout) addStatistics(attributes);
  } else if (name == "WorkoutEvent") {
    if (isPending_ && pending_.workout) addEvent(attributes);
  } else if (name == "ActivitySummary") {
    addSummary(attributes);
  }
}

void ExportReader::end(std::string_view name) {
  --depth_;
  if (name == "Correlation" && correlations_ > 0) --correlations_;
  if (isPending_ && (name == "Workout" || name == "Record")) finish();
}

namespace {

std::string_view textOf(const XMLAttributes& attributes, std::string_view name) {
  return attributes.value(name).value_or(std::string_view());
}

/// Without the address in memory that stands in it.
std::string_view withoutAddress(std::string_view device) {
  const auto address = device.find("0x");
  const auto end = address != std::string_view::npos ? device.find_first_of(",>", address)
                                                     : std::string_view::npos;
  if (end == std::string_view::npos || end + 1 >= device.size()) return device;
  device.remove_prefix(end + 1);
  while (device.starts_with(' ')) device.remove_prefix(1);
  if (device.ends_with('>')) device.remove_suffix(1);
  return device;
}

}  // namespace

/// False where the element is to be left out.
bool ExportReader::takeTimes(const XMLAttributes& attributes) {
  const auto start = dateIn(textOf(attributes, "startDate"));
  const auto end = dateIn(textOf(attributes, "endDate"));
  if (!start || !end) {
    const char* which = start ? "endDate" : "startDate";
    sink_.skip(pending_.line, std::string("its ") + which + " is no date");
    return false;
  }
  if (*end < *start) {
    sink_.skip(pending_.line, "it ends before it starts");
    return false;
  }
  pending_.start = *start;
  pending_.end = *end;
  pending_.source = textOf(attributes, "sourceName");
  pending_.device = withoutAddress(textOf(attributes, "device"));
  return true;
}

void ExportReader::startRecord(const XMLAttributes& attributes) {
  pending_.line = stream_.line();
  const auto identifier = textOf(attributes, "type");
  if (!pending_.type || pending_.identifier != identifier) {  // records come sorted by type
    pending_.identifier = identifier;
    pending_.type = sampleTypeOfIdentifier(identifier);
  }
  if (!pending_.type) return sink_.ignore();
  const auto read = sampleValue(
      *pending_.type, {.value = textOf(attributes, "value"), .unit = textOf(attributes, "unit")});
  if (!read) return sink_.skip(pending_.line, read.error());
  if (!takeTimes(attributes)) return;
  pending_.value = read->value;
  pending_.unit = read->unit;
  pending_.workout.reset();
  isPending_ = true;
}

namespace {

std::optional<HKQuantity> quantityOf(std::string_view value, std::string_view unit) {
  const auto number = numberIn(value);
  auto in = HKUnit::fromString(unit);
  return number && in ? std::optional(HKQuantity{*std::move(in), *number}) : std::nullopt;
}

/// Seconds.
std::optional<double> durationOf(const XMLAttributes& attributes) {
  const auto unit = attributes.value("durationUnit").value_or("min");
  const auto duration = quantityOf(textOf(attributes, "duration"), unit);
  return duration ? duration->doubleValueForUnit(*HKUnit::fromString("s")) : std::nullopt;
}

}  // namespace

void ExportReader::startWorkout(const XMLAttributes& attributes) {
  pending_.line = stream_.line();
  pending_.identifier = HKObjectType::workoutType().identifier;
  pending_.type = OxHKSampleType::workout();
  if (!takeTimes(attributes)) return;
  pending_.unit.clear();
  const auto duration = durationOf(attributes);
  if (attributes.value("duration") && !duration) {
    return sink_.skip(pending_.line, "its duration is no number, or in an unknown unit");
  }
  pending_.workout =
      HKWorkout{.activityType = activityNamed(textOf(attributes, "workoutActivityType")),
                .totalEnergyBurned = quantityOf(textOf(attributes, "totalEnergyBurned"),
                                                textOf(attributes, "totalEnergyBurnedUnit")),
                .totalDistance = quantityOf(textOf(attributes, "totalDistance"),
                                            textOf(attributes, "totalDistanceUnit")),
                .duration = duration.value_or(pending_.end.timeIntervalSince(pending_.start))};
  pending_.value = pending_.workout->duration;
  pending_.isStatisticsDistance = !pending_.workout->totalDistance;
  pending_.isStatisticsEnergy = !pending_.workout->totalEnergyBurned;
  isPending_ = true;
}

void ExportReader::addMetadata(const XMLAttributes& attributes) {
  const std::string key(textOf(attributes, "key"));
  const std::string_view value = textOf(attributes, "value");
  if (key.starts_with("VWMetadataKey") && pending_.workout) {
    pending_.source = workoutBundleIdentifier;
  }
  if (key.starts_with("velloro_")) {  // the program's own marks tell samples apart
    pending_.mark += key;
    pending_.mark += '=';
    pending_.mark += value;
    pending_.mark += '\n';
  }
  if (key == syncIdentifierKey) pending_.syncIdentifier = value;
  if (key == syncVersionKey) {
    pending_.syncVersion = static_cast<std::int64_t>(numberIn(value).value_or(0));
  }
  pending_.metadata.insert_or_assign(key, PropertyList(value));
}

/// Newer exports have totals in elements of their own.
void ExportReader::addStatistics(const XMLAttributes& attributes) {
  const auto type = textOf(attributes, "type");
  const auto sum = quantityOf(textOf(attributes, "sum"), textOf(attributes, "unit"));
  if (!sum) return;
  HKWorkout& workout = *pending_.workout;
  const auto add = [&](std::optional<HKQuantity>& total) {
    const auto more = total ? sum->doubleValueForUnit(total->unit) : std::nullopt;
    if (!total) {
      total = *sum;
    } else if (more) {
      total->value += *more;
    }
  };
  if (pending_.isStatisticsDistance && type.starts_with("HKQuantityTypeIdentifierDistance")) {
    add(workout.totalDistance);
  } else if (pending_.isStatisticsEnergy && type == "HKQuantityTypeIdentifierActiveEnergyBurned") {
    add(workout.totalEnergyBurned);
  }
}

void ExportReader::addEvent(const XMLAttributes& attributes) {
  constexpr std::string_view prefix = "HKWorkoutEventType";
  std::string_view type = textOf(attributes, "type");
  if (type.starts_with(prefix)) type.remove_prefix(prefix.size());
  const auto date = dateIn(textOf(attributes, "date"));
  constexpr std::size_t mostEvents = 10000;
  if (!date || type.empty() || pending_.workout->events.size() >= mostEvents) return;
  std::string name(type);
  name[0] = static_cast<char>(name[0] | 0x20);
  pending_.workout->events.push_back(
      {std::move(name), {.start = *date, .duration = durationOf(attributes).value_or(0)}});
}

void ExportReader::addSummary(const XMLAttributes& attributes) {
  const std::string_view day = textOf(attributes, "dateComponents");
  std::string text;
  std::ranges::copy_if(day, std::back_inserter(text), [](char c) { return c != '-'; });
  const auto date = YYYYMMDD::fromString(text);
  if (!date) return sink_.skip(stream_.line(), "its day is no date");
  const auto number = [&](const char* name) {
    return numberIn(textOf(attributes, name)).value_or(0);
  };
  const auto energy = [&](const char* name) {
    const auto unit = attributes.value("activeEnergyBurnedUnit").value_or("kcal");
    const auto quantity = quantityOf(textOf(attributes, name), unit);
    const auto value =
        quantity ? quantity->doubleValueForUnit(*HKUnit::fromString("kcal")) : std::nullopt;
    return value.value_or(0);
  };
  sink_.add(HKActivitySummary{.day = date->intValue(),
                              .activeEnergyBurned = energy("activeEnergyBurned"),
                              .activeEnergyBurnedGoal = energy("activeEnergyBurnedGoal"),
                              .appleExerciseTime = number("appleExerciseTime"),
                              .appleExerciseTimeGoal = number("appleExerciseTimeGoal"),
                              .appleStandHours = number("appleStandHours"),
                              .appleStandHoursGoal = number("appleStandHoursGoal")});
}

void ExportReader::finish() {
  isPending_ = false;
  std::string metadata;
  if (!pending_.metadata.empty()) metadata = PropertyList(pending_.metadata).fileText();
  if (pending_.workout) pending_.details = detailsText(*pending_.workout);
  sink_.add(HKSampleRow{.type = pending_.identifier,
                        .start = pending_.start,
                        .end = pending_.end,
                        .value = pending_.value,
                        .unit = pending_.unit,
                        .source = pending_.source,
                        .device = pending_.device,
                        .mark = pending_.mark,
                        .metadata = metadata,
                        .details = pending_.details,
                        .syncIdentifier = pending_.syncIdentifier,
                        .syncVersion = pending_.syncVersion});
  pending_.metadata.clear();
  pending_.mark.clear();
  pending_.details.clear();
  pending_.syncIdentifier.clear();
  pending_.syncVersion = 0;
  pending_.workout.reset();
}

}  // namespace velloro
