#include "velloro/Health/SampleArguments.h"

#include "Health/HealthManager.h"
#include "HealthImport/ImportSink.h"
#include "OxHealthKit/QuantityUnits.h"
#include "Tasks/Rows/TaskEntity.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/CaseArgument.h"
#include "velloro/Options/TaskArgument.h"

#include <algorithm>

namespace velloro {
namespace {

HKQuantity quantityArgument(const char* name, const std::vector<std::string>& texts,
                            const char* measuredIn) {
  if (texts.size() != 2) throw UsageError(name, texts.front(), "write a value and a unit");
  const double amount = amountArgument(name, texts[0]);
  if (amount < 0) throw UsageError(name, texts[0], "below 0");
  const auto unit = HKUnit::fromString(texts[1]);
  if (!unit || !unit->isCompatible(*HKUnit::fromString(measuredIn))) {
    throw UsageError(name, texts[1], std::string("not such a unit; write one as ") + measuredIn);
  }
  return {*unit, amount};
}

}  // namespace

OxHKSampleType sampleTypeArgument(const std::string& name, const std::string& text) {
  if (const auto type = sampleTypeNamed(text)) return *type;
  std::vector<std::string_view> names = {"workout", "audiogram", "electrocardiogram"};
  for (const auto one : allCases<OxHKSampleType::QuantityType>()) names.push_back(rawValue(one));
  for (const auto one : allCases<OxHKSampleType::CategoryType>()) names.push_back(rawValue(one));
  throw unknownName(name, text, "type of samples", names);
}

HKSample SampleArguments::sample(const HostStore& store, Date now) const {
  const OxHKSampleType of = sampleTypeArgument("TYPE", type);
  HKSample made{.sampleType = hkObjectType(of)};
  made.start = start ? instantArgument("--start", *start) : now;
  made.end = end ? instantArgument("--end", *end) : made.start;
  if (made.end < made.start) throw UsageError("--end", end.value_or(""), "before the start");
  if (source && source->empty()) throw UsageError("--source", *source, "empty");
  made.source.bundleIdentifier = source ? lineArgument("--source", *source, 200) : "";
  setValue(made, of);
  setMetadata(made, store);
  return made;
}

void SampleArguments::setValue(HKSample& sample, const OxHKSampleType& of) const {
  if (const auto* quantity = std::get_if<OxHKSampleType::QuantityType>(&of.value)) {
    if (category) throw UsageError("--category", *category, type + " has an amount");
    return setQuantity(sample, *quantity);
  }
  if (value) throw UsageError("VALUE", *value, type + " has no amount");
  if (of == OxHKSampleType::workout()) return setWorkout(sample);
  const auto* state = std::get_if<OxHKSampleType::CategoryType>(&of.value);
  if (state == nullptr) {
    if (category) throw UsageError("--category", *category, type + " has no category");
    return;
  }
  const bool needsState = *state == OxHKSampleType::CategoryType::sleepAnalysis ||
                          *state == OxHKSampleType::CategoryType::appleStandHour;
  if (needsState && !category) {
    throw UsageError(
        type + " needs a --category, such as " +
        (*state == OxHKSampleType::CategoryType::sleepAnalysis ? "asleepCore" : "stood"));
  }
  if (!needsState && category && !numberIn(*category)) {
    throw UsageError("--category", *category, type + " has no categories");
  }
  const auto number = category ? categoryState(*state, *category) : 0;
  if (!number) throw UsageError("--category", *category, "not a category of " + type);
  sample.value = *number;
}

void SampleArguments::setQuantity(HKSample& sample, OxHKSampleType::QuantityType of) const {
  if (!value || !unit)
    throw UsageError(type + " needs a value and a unit, such as 1 " + std::string(usualUnit(of)));
  const double amount = amountArgument("VALUE", *value);
  if (!measures(of, *unit)) {
    throw UsageError("UNIT", *unit,
                     "not a unit of " + type + "; write one as " + std::string(usualUnit(of)));
  }
  sample.value = HKQuantity{*HKUnit::fromString(*unit), amount};
}

void SampleArguments::setWorkout(HKSample& sample) const {
  if (category) throw UsageError("--category", *category, "a workout has an --activity");
  HKWorkout workout;
  const auto of = activity
                      ? caseArgument<OxHKWorkoutActivityType>("--activity", *activity, "activity")
                      : OxHKWorkoutActivityType::other;
  workout.activityType = rawValue(withoutLocation(of));
  if (const auto place = location(of)) {
    sample.metadata.emplace(HKMetadataKeyIndoorWorkout, *place == OxHKWorkoutLocation::indoor);
  }
  workout.duration = sample.end.timeIntervalSince(sample.start);
  if (!distance.empty()) workout.totalDistance = quantityArgument("--distance", distance, "km");
  if (!energy.empty()) workout.totalEnergyBurned = quantityArgument("--energy", energy, "kcal");
  sample.value = std::move(workout);
}

void SampleArguments::setMetadata(HKSample& sample, const HostStore& store) const {
  for (const std::string& text : metadata) {
    const auto equals = text.find('=');
    if (equals == 0 || equals == std::string::npos) {
      throw UsageError("--metadata", text, "write KEY=VALUE");
    }
    const std::string key = text.substr(0, equals);
    const std::string own = text.substr(equals + 1);
    PropertyList kept(own);
    const auto number = key == syncVersionKey ? numberIn(own) : std::nullopt;
    if (number) kept = PropertyList(*number);
    sample.metadata.insert_or_assign(key, std::move(kept));
  }
  if (isIndoor || isOutdoor) {
    sample.metadata.insert_or_assign(std::string(HKMetadataKeyIndoorWorkout), isIndoor);
  }
  if (task) {
    const auto id = taskArgument(store, *task)->taskUniqueId();
    if (id) {
      sample.metadata.insert_or_assign(std::string(OxHKSampleMetadata::taskIDKey),
                                       id->stringValue());
    }
  }
}

}  // namespace velloro
