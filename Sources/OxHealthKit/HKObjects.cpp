#include "OxHealthKit/HKObjects.h"

#include <future>
#include <type_traits>
#include <utility>

namespace velloro {
namespace {

using Type = OxHKSampleType;

/// "HKQuantityTypeIdentifier" + "StepCount".
std::string identifier(const char* kind, std::string_view name) {
  std::string text = kind + std::string(name);
  char& first = text[text.size() - name.size()];
  if ('a' <= first && first <= 'z') first = static_cast<char>(first - 'a' + 'A');
  return text;
}

std::string identifierOf(Type::CategoryType type) {
  return identifier("HKCategoryTypeIdentifier", rawValue(type));
}
std::string identifierOf(Type::QuantityType type) {
  return identifier("HKQuantityTypeIdentifier", rawValue(type));
}
std::string identifierOf(Type::CorrelationType type) {
  return identifier("HKCorrelationTypeIdentifier", rawValue(type));
}
std::string identifierOf(Type::Audiogram) {
  return "HKDataTypeIdentifierAudiogram";
}
std::string identifierOf(Type::Electrocardiogram) {
  return "HKDataTypeIdentifierElectrocardiogram";
}
std::string identifierOf(Type::Workout) {
  return HKObjectType::workoutType().identifier;
}

std::vector<Type> allTypes() {
  std::vector<Type> types = {Type::audiogram(), Type::electrocardiogram(), Type::workout()};
  for (const auto type : allCases<Type::CategoryType>()) types.push_back(Type::category(type));
  for (const auto type : allCases<Type::QuantityType>()) types.push_back(Type::quantity(type));
  for (const auto type : allCases<Type::CorrelationType>()) {
    types.push_back(Type::correlation(type));
  }
  return types;
}

using ByText = std::map<std::string, Type, std::less<>>;

template <typename TextOf>
ByText typesBy(TextOf textOf) {
  ByText types;
  for (const Type& type : allTypes()) types.emplace(textOf(type), type);
  return types;
}

std::optional<Type> find(const ByText& types, std::string_view text) {
  const auto found = types.find(text);
  return found != types.end() ? std::optional(found->second) : std::nullopt;
}

std::optional<HKQuantity> hkQuantity(const std::optional<OxHKQuantity>& quantity) {
  auto unit = quantity ? hkUnit(quantity->unit) : std::nullopt;
  return unit ? std::optional(HKQuantity{*std::move(unit), quantity->doubleValue}) : std::nullopt;
}

HKWorkout hkWorkout(const OxHKWorkout& workout, double duration) {
  HKWorkout made{.activityType = std::string(rawValue(workout.activityType)),
                 .totalEnergyBurned = hkQuantity(workout.totalEnergyBurned),
                 .totalDistance = hkQuantity(workout.totalDistance),
                 .duration = duration};
  for (const auto& event : workout.events.value_or(std::vector<OxHKWorkoutEvent>())) {
    made.events.push_back({std::string(rawValue(event.type)), event.dateInterval});
  }
  return made;
}

std::string deviceText(const OxHKDevice& device) {
  std::string text;
  const auto add = [&](const char* name, const std::optional<std::string>& value) {
    if (value) text += (text.empty() ? "" : ", ") + std::string(name) + ":" + *value;
  };
  add("name", device.name);
  add("manufacturer", device.manufacturer);
  add("model", device.model);
  add("hardware", device.hardwareVersion);
  add("firmware", device.firmwareVersion);
  add("software", device.softwareVersion);
  add("localIdentifier", device.localIdentifier);
  add("UDI", device.udiDeviceIdentifier);
  return text;
}

}  // namespace

HKObjectType hkObjectType(const OxHKSampleType& type) {
  return {std::visit([](auto one) { return identifierOf(one); }, type.value)};
}

HKObjectType hkObjectType(const OxHKObjectType& type) {
  const auto* sample = std::get_if<OxHKSampleType>(&type.value);
  return sample != nullptr ? hkObjectType(*sample) : HKObjectType::activitySummaryType();
}

std::optional<OxHKSampleType> sampleTypeOfIdentifier(std::string_view identifier) {
  static const auto* const types =
      new ByText(typesBy([](const Type& type) { return hkObjectType(type).identifier; }));
  return find(*types, identifier);
}

std::optional<OxHKSampleType> sampleTypeNamed(std::string_view name) {
  static const auto* const types =
      new ByText(typesBy([](const Type& type) { return std::string(sampleTypeName(type)); }));
  return find(*types, name);
}

std::string_view sampleTypeName(const OxHKSampleType& type) {
  return std::visit(
      [](auto one) -> std::string_view {
        using One = decltype(one);
        if constexpr (std::is_same_v<One, Type::Audiogram>)
          return "audiogram";
        else if constexpr (std::is_same_v<One, Type::Electrocardiogram>)
          return "electrocardiogram";
        else if constexpr (std::is_same_v<One, Type::Workout>)
          return "workout";
        else
          return rawValue(one);
      },
      type.value);
}

std::optional<HKUnit> hkUnit(const OxHKUnit& unit) {
  return HKUnit::fromString(unit.unitString);
}

HKSample hkSample(const OxHKSample& sample, const OxHKSampleType& type) {
  HKSample made{.sampleType = hkObjectType(type), .start = sample.start, .end = sample.end};
  if (sample.value) {
    const auto& value = sample.value->value;
    if (const auto* quantity = std::get_if<OxHKQuantity>(&value)) {
      if (auto one = hkQuantity(*quantity)) made.value = *std::move(one);
    } else if (const auto* state = std::get_if<std::int64_t>(&value)) {
      made.value = HKSample::Category{*state};
    } else if (const auto* workout = std::get_if<OxHKWorkout>(&value)) {
      made.value = hkWorkout(*workout, sample.end.timeIntervalSince(sample.start));
    }
  }
  if (sample.device) made.device = deviceText(*sample.device);
  if (sample.metadata) made.metadata = sample.metadata->hkMetadata();
  return made;
}

Result<std::vector<HKSample>> samplesOf(const HKHealthStore& store, const OxHKSampleType& type,
                                        HKPredicate predicate) {
  std::promise<Result<std::vector<HKSample>>> answer;
  auto query = std::make_shared<HKSampleQuery>();
  query->sampleType = hkObjectType(type);
  query->predicate = std::move(predicate);
  query->resultsHandler = [&](Result<std::vector<HKSample>> found) {
    answer.set_value(std::move(found));
  };
  store.execute(query);
  return answer.get_future().get();
}

namespace {

/// On the queue of the store, so that no two answers come at once.
struct Answers {
  HKMultiStatisticsCollectionQuery::Collections collections;
  std::size_t awaited = 0;
  std::function<void(Result<HKMultiStatisticsCollectionQuery::Collections>)> completion;

  void take(HKMultiStatisticsCollectionQuery::QuantityType type,
            Result<HKStatisticsCollection> answer) {
    if (completion == nullptr) return;
    if (!answer) return std::exchange(completion, nullptr)(std::unexpected(answer.error()));
    collections.emplace(type, *std::move(answer));
    if (collections.size() == awaited) std::exchange(completion, nullptr)(std::move(collections));
  }
};

}  // namespace

void execute(
    const HKHealthStore& store,
    const std::shared_ptr<const HKMultiStatisticsCollectionQuery>& query,
    std::function<void(Result<HKMultiStatisticsCollectionQuery::Collections>)> completion) {
  auto answers = std::make_shared<Answers>();
  answers->awaited = query->quantityTypes.size();
  answers->completion = std::move(completion);
  if (query->quantityTypes.empty()) {
    store.queue().async([answers] { answers->completion(answers->collections); });
    return;
  }
  for (const auto type : query->quantityTypes) {
    auto one = std::make_shared<HKStatisticsCollectionQuery>();
    one->quantityType = hkObjectType(OxHKSampleType::quantity(type));
    one->quantitySamplePredicate = query->quantitySamplePredicate;
    one->options = query->options;
    one->anchorDate = query->anchorDate;
    one->intervalComponents = query->intervalComponents;
    one->initialResultsHandler = [answers, type](Result<HKStatisticsCollection> answer) {
      answers->take(type, std::move(answer));
    };
    store.execute(one);
  }
}

}  // namespace velloro
