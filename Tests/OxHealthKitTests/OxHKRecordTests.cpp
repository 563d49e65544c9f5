#include "OxHealthKit/OxHKCategoryValueSleepAnalysis.h"
#include "OxHealthKit/OxHKObjectType.h"
#include "OxHealthKit/OxHKRecordRequest.h"
#include "Support/Fixtures.h"

#include <gmock/gmock.h>

namespace velloro {
namespace {

using testing::ElementsAre;
using enum OxHKSampleType::QuantityType;
using SampleValue = OxHKSample::SampleValue;
using Samples = OxHKRecordRequest::Samples;

const Date morning = Date::sinceReferenceDate(731'490'000.5);
const auto bloodPressure =
    OxHKSampleType::correlation(OxHKSampleType::CorrelationType::bloodPressure);

TEST(OxHKRecord, TypesKeepTheirForms) {
  expectFixture("OxHKCategoryType", everyCase<OxHKSampleType::CategoryType>());
  expectFixture("OxHKQuantityType", everyCase<OxHKSampleType::QuantityType>());
  expectFixture(
      "OxHKSampleType",
      std::vector{OxHKSampleType::category(OxHKSampleType::CategoryType::sleepAnalysis),
                  OxHKSampleType::quantity(stepCount), OxHKSampleType::audiogram(), bloodPressure,
                  OxHKSampleType::electrocardiogram(), OxHKSampleType::workout()});
  expectFixture("OxHKObjectType", std::vector{OxHKObjectType::sample(OxHKSampleType::workout()),
                                              OxHKObjectType::activitySummary()});
  expectRawValues<OxHKCategoryValueSleepAnalysis>({0, 2, 1, 3, 4, 5});
  expectRawValues<OxHKWorkoutEventType>({"pause", "resume", "lap", "marker", "motionPaused",
                                         "motionResumed", "segment", "pauseOrResumeRequest"});
}

TEST(OxHKRecord, SamplesKeepTheirForms) {
  const OxHKWorkout run{
      .activityType = OxHKWorkoutActivityType::runningOutdoor,
      .totalEnergyBurned = OxHKQuantity{OxHKUnit::kilocalorie(), 320.5},
      .totalDistance = OxHKQuantity{OxHKUnit::kilometre(), 5},
      .events = std::vector{OxHKWorkoutEvent{.type = OxHKWorkoutEventType::motionPaused,
                                             .dateInterval = {morning + 60, 12.5}}}};
  const OxHKDevice watch{.name = "Watch",
                         .manufacturer = "Maker",
                         .model = "W",
                         .hardwareVersion = "2",
                         .firmwareVersion = "3.1",
                         .softwareVersion = "9.0",
                         .localIdentifier = "local",
                         .udiDeviceIdentifier = "udi"};
  const OxHKQuantity glucose{OxHKUnit::millimolesOfGlucosePerLitre(), 5.4};
  expectFixture("OxHKSample",
                std::vector{OxHKSample{.start = morning,
                                       .end = morning + 1800,
                                       .value = SampleValue::workout(run),
                                       .device = watch,
                                       .metadata = OxHKSampleMetadata{.indoorWorkout = false}},
                            OxHKSample{morning, morning, SampleValue::quantity(glucose)},
                            OxHKSample{morning, morning + 60, SampleValue::category(-3)},
                            OxHKSample{morning, morning + 60}});
}

TEST(OxHKRecord, RequestsKeepTheirFormsAndNameWhatTheyWrite) {
  const OxHKSample systolic{morning, morning, SampleValue::quantity({{"mmHg"}, 120})};
  const OxHKSample diastolic{morning, morning, SampleValue::quantity({{"mmHg"}, 80})};
  const auto weight = OxHKSampleType::quantity(bodyMass);
  const auto measured = Samples::bloodPressure(systolic, diastolic);
  const auto weighed = Samples::uncorrelated(weight, {OxHKSample{morning, morning}});
  expectFixture("OxHKRecordRequest",
                std::vector{OxHKRecordRequest{measured}, OxHKRecordRequest{weighed}});

  const auto partsOfBloodPressure = ElementsAre(OxHKSampleType::quantity(bloodPressureSystolic),
                                                OxHKSampleType::quantity(bloodPressureDiastolic));
  EXPECT_THAT(measured.sampleTypes(), partsOfBloodPressure);
  EXPECT_THAT(Samples::uncorrelated(bloodPressure, {}).sampleTypes(), partsOfBloodPressure);
  EXPECT_THAT(weighed.sampleTypes(), ElementsAre(weight));
}

TEST(OxHKRecord, ReadingNamesWhatIsWrongAndWhere) {
  const std::string wrongCount = "Invalid number of keys found, expected one.";
  EXPECT_EQ(decodingFailure<OxHKObjectType>("{}"), wrongCount);
  EXPECT_EQ(decodingFailure<OxHKObjectType>(R"({"sample":{"workout":{}},"activitySummary":{}})"),
            wrongCount);
  EXPECT_EQ(decodingFailure<OxHKObjectType>(R"({"sample":{"workout":{},"audiogram":{}}})"),
            "sample: " + wrongCount);
  EXPECT_EQ(decodingFailure<OxHKSample>(R"({"start":0,"end":0,"value":{}})"),
            "value: " + wrongCount);
  EXPECT_EQ(decodingFailure<OxHKSampleMetadata>(R"({"entries":[{"key":"k","value":{}}]})"),
            "entries[0].value: " + wrongCount);
  EXPECT_EQ(decodingFailure<OxHKRecordRequest>(R"({"samples":{}})"), "samples: " + wrongCount);
  EXPECT_EQ(decodingFailure<OxHKSampleType>(R"({"quantity":"steps"})"),
            R"(quantity: No case of OxHKSampleType::QuantityType is the text "steps".)");
  EXPECT_EQ(decodingFailure<OxHKSampleType>(R"({"nap":{}})"),
            R"(No case of OxHKSampleType is named "nap".)");
}

}  // namespace
}  // namespace velloro
