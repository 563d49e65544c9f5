#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "HealthImport/ExportReader.h"
#include "HealthImport/HealthImport.h"
#include "HealthImport/ImportSink.h"
#include "OxHealthKit/HKObjects.h"
#include "SQLite/Sqlite.h"

#include <fstream>

#include <gmock/gmock.h>
namespace velloro {
namespace {

using testing::HasSubstr;

constexpr const char* doctype = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE HealthData [
<!ELEMENT HealthData (ExportDate,Me,Record*)>
<!ATTLIST HealthData
  locale CDATA #REQUIRED
<!ATTLIST Record never closed
]>
<HealthData locale="de_DE">
 <ExportDate value="2024-03-08 08:00:00 +0100"/>
)";

std::string record(const std::string& type, const std::string& attributes) {
  return " <Record type=\"" + type + "\" sourceName=\"Anna\xE2\x80\x99s\" " + attributes + "/>\n";
}

constexpr const char* morning =
    R"(startDate="2024-03-07 08:00:00 +0100" endDate="2024-03-07 08:10:00 +0100")";

class HealthImports : public testing::Test {
 protected:
  [[nodiscard]] HealthImport imported(const std::string& bytes,
                                      std::optional<HealthImportForm> form = {}) const {
    std::ofstream(file_, std::ios::binary) << bytes;
    return importHealthData(*store_, file_, form, {});
  }
  [[nodiscard]] std::string counts(const HealthImport& of) const {
    const auto& [added, known, skipped, ignored, summaries, skips] = of.report;
    return std::to_string(added) + " " + std::to_string(known) + " " + std::to_string(skipped) +
           " " + std::to_string(ignored) + " " + std::to_string(summaries) +
           (of.error ? " " + of.error->localizedDescription() : "");
  }
  [[nodiscard]] std::vector<HKSample> samples(const OxHKSampleType& type) const {
    return samplesOf(*store_, type, {}).value();
  }
  static std::string number(std::uint64_t value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i, value >>= 8U) text += static_cast<char>(value);
    return text;
  }
  static std::uint32_t checksum(const std::string& content) {
    std::uint32_t sum = ~0U;
    for (const char byte : content) {
      sum ^= static_cast<unsigned char>(byte);
      for (int bit = 0; bit < 8; ++bit) sum = sum >> 1U ^ (sum & 1U ? 0xEDB88320U : 0U);
    }
    return ~sum;
  }
  /// A zip archive of one entry, whose content is deflated into blocks that are not compressed.
  [[nodiscard]] static std::string zipped(const std::string& name, const std::string& content,
                                          std::optional<std::uint64_t> claimed = {}) {
    std::string packed;
    constexpr std::size_t block = 65535;
    for (std::size_t at = 0; at < content.size(); at += block) {
      const std::string piece = content.substr(at, block);
      packed += at + block < content.size() ? '\0' : '\1';
      packed += number(piece.size(), 2) + number(~piece.size(), 2) + piece;
    }
    const std::string common = number(20, 2) + number(0, 2) + number(8, 2) + number(0, 4) +
                               number(checksum(content), 4) + number(packed.size(), 4) +
                               number(claimed.value_or(content.size()), 4) +
                               number(name.size(), 2) + number(0, 2);
    const std::string local = "PK\x03\x04" + common + name + packed;
    const std::string central =
        "PK\x01\x02" + number(20, 2) + common + number(0, 10) + number(0, 4) + name;
    return local + central + "PK\x05\x06" + number(0, 4) + number(1, 2) + number(1, 2) +
           number(central.size(), 4) + number(local.size(), 4) + number(0, 2);
  }

  const VirtualEnvironment environment_;
  const std::filesystem::path file_ = environment_.directories().temporary / "in";
  const std::shared_ptr<HKHealthStore> store_ = std::make_shared<HKHealthStore>(
      environment_.directories().temporary / "health.sqlite", "velloro.app");
};

TEST_F(HealthImports, TakeWhatTheyKnowAndCountTheRest) {
  const std::string at = morning;
  const std::string steps = "HKQuantityTypeIdentifierStepCount";
  const std::string xml =
      doctype + record(steps, at + R"( unit="count" value="12")") +
      record(steps,
             R"(unit="count" )" + at +
                 R"( value="12" device="&lt;&lt;HKDevice: 0x1a&gt;, name:W, model:Watch&gt;")") +
      record("HKCategoryTypeIdentifierSleepAnalysis",
             at + R"( value="HKCategoryValueSleepAnalysisAsleep")") +
      record("HKCategoryTypeIdentifierMindfulSession", at) +
      record("HKQuantityTypeIdentifierVO2Max", at + R"( unit="mL/min·kg" value="40")") +
      R"( <Correlation type="HKCorrelationTypeIdentifierBloodPressure" )" + at + ">\n" +
      record("HKQuantityTypeIdentifierBloodPressureSystolic", at + R"( unit="mmHg" value="120")") +
      " </Correlation>\n" +
      record("HKQuantityTypeIdentifierBloodPressureSystolic", at + R"( unit="mmHg" value="120")") +
      R"( <Workout workoutActivityType="HKWorkoutActivityTypeRunning" duration="30.5" durationUnit="min" sourceName="R" )" +
      at + R"(>
  <MetadataEntry key="HKIndoorWorkout" value="1"/>
  <WorkoutStatistics type="HKQuantityTypeIdentifierDistanceWalkingRunning" sum="5.5" unit="km"/>
  <WorkoutStatistics type="HKQuantityTypeIdentifierActiveEnergyBurned" sum="300" unit="Cal"/>
 </Workout>
 <ActivitySummary dateComponents="2024-03-07" activeEnergyBurned="418.4" activeEnergyBurnedGoal="836.8" activeEnergyBurnedUnit="kJ" appleExerciseTime="30" appleExerciseTimeGoal="30" appleStandHours="9" appleStandHoursGoal="12"/>
)" + record(steps, at + R"( unit="count")") +
      record(steps, at + R"( unit="count" value="many")") +
      record(steps, at + R"( unit="parsec" value="1")") +
      record(steps, R"(startDate="2024-02-30 08:00:00 +0100" endDate="x" unit="count" value="1")") +
      record(
          steps,
          R"(startDate="2024-03-07 08:00:00 +0100" endDate="2024-03-07 08:00:00 +0200" unit="count" value="1")") +
      record("HKCategoryTypeIdentifierSleepAnalysis", at + R"( value="HKCategoryValueX")");
  const std::string end = "\x0B\xFF</HealthData>\n";
  const auto first = imported(xml + end);
  EXPECT_EQ(counts(first), "5 1 6 1 1");
  ASSERT_EQ(first.report.skips.size(), 6);
  EXPECT_EQ(first.report.skips[0].why, "it has no value");
  EXPECT_EQ(first.report.skips[0].line, 25) << "lines are those of the file";
  EXPECT_EQ(first.report.skips[2].why, "its unit is unknown: \"parsec\"");
  EXPECT_EQ(first.report.skips[4].why, "it ends before it starts");
  EXPECT_EQ(counts(imported(xml + end)), "0 6 6 1 0");
  const std::string newer = record(
      steps,
      R"(startDate="2024-03-08 08:00:00 +0100" endDate="2024-03-08 08:00:00 +0100" unit="count" value="3")");
  EXPECT_EQ(counts(imported(xml + newer + end)), "1 6 6 1 0");

  const auto workouts = samples(OxHKSampleType::workout());
  ASSERT_EQ(workouts.size(), 1);
  EXPECT_EQ(workouts[0].workout()->activityType, "running");
  EXPECT_EQ(workouts[0].workout()->duration, 1830);
  EXPECT_EQ(workouts[0].workout()->totalDistance->value, 5.5);
  EXPECT_EQ(workouts[0].workout()->totalEnergyBurned->unit.unitString(), "Cal");
  EXPECT_EQ(
      samples(OxHKSampleType::category(OxHKSampleType::CategoryType::sleepAnalysis))[0].category(),
      1);
  const auto counted = samples(OxHKSampleType::quantity(OxHKSampleType::QuantityType::stepCount));
  EXPECT_EQ(counted[0].source.name, "Anna\xE2\x80\x99s");
  EXPECT_TRUE(counted[0].source.isImported);
}

TEST_F(HealthImports, KeepWhatWasReadBeforeTheDamage) {
  const auto steps = [](int minute) {
    const std::string at = "2024-03-07 08:" + std::string(minute < 10 ? "0" : "") +
                           std::to_string(minute) + ":00 +0100";
    return record("HKQuantityTypeIdentifierStepCount",
                  "unit=\"count\" value=\"1\" startDate=\"" + at + "\" endDate=\"" + at + "\"");
  };
  const std::string whole = doctype + steps(1) + steps(2) + steps(3) + "</HealthData>";
  const auto broken = imported(doctype + steps(1) + "<a></b>" + steps(2) + "</HealthData>");
  EXPECT_THAT(counts(broken), HasSubstr("1 0 0 0 0 line 11: mismatched tag"));
  EXPECT_THAT(counts(imported(whole.substr(0, whole.size() - 120))), HasSubstr("1 1 0 0 0 line"));
  EXPECT_EQ(counts(imported(zipped("folder/Exportieren.xml", whole))), "1 2 0 0 0");
  const std::string archive = zipped("folder/export.xml", whole);
  EXPECT_NE(imported(archive.substr(0, archive.size() / 2)).error, nullptr);
  std::string damaged = archive;
  damaged[48] = static_cast<char>(damaged[48] ^ 0x5A);  // the length of the first block
  EXPECT_NE(imported(damaged).error, nullptr);
  EXPECT_NE(imported(zipped("folder/export.xml", whole, 100)).error, nullptr);
  EXPECT_THAT(counts(imported(zipped("f/export.xml", whole, std::uint64_t{1} << 30))),
              HasSubstr("far more"));
  EXPECT_THAT(counts(imported(zipped("f/note.txt", whole))), HasSubstr("no health export"));
  EXPECT_THAT(counts(imported("<html/>")), HasSubstr("no health export"));
  EXPECT_THAT(counts(imported(doctype + ("<Record type=\"" + std::string(6 << 20, 'x')))),
              HasSubstr("too long"));
  (void)NSFileManager::removeItem(file_);
  EXPECT_THAT(counts(importHealthData(*store_, file_, {}, {}).error
                         ? importHealthData(*store_, file_, {}, {})
                         : HealthImport()),
              HasSubstr("No such file"));
}

TEST_F(HealthImports, ReadCSVAndGadgetbridge) {
  const auto csv = imported(
      "\xEF\xBB\xBFtype,start,end,value,unit,source\r\n"
      "stepCount,2024-03-07T08:00:00Z,2024-03-07T09:00:00Z,500,count,\"My \"\"band\"\",\n2\"\r\n"
      "sleepAnalysis,2024-03-06 22:30:00 +0100,2024-03-07 06:30:00 +0100,asleepCore,,\n"
      "dietaryWater,2024-03-07T08:00:00Z,,0.25,L,x\r"
      "dietaryWater,2024-03-07T08:00:00Z,,0.25,kcal,x\r\n"
      "\n"
      "unheard,2024-03-07T08:00:00Z,,1,L,x\n"
      "workout,2024-03-07T08:00:00Z,2024-03-07T09:00:00Z,cycling");
  EXPECT_EQ(counts(csv), "4 0 1 1 0");
  ASSERT_EQ(csv.report.skips.size(), 1);
  EXPECT_EQ(csv.report.skips[0].line, 6);
  EXPECT_EQ(
      samples(OxHKSampleType::quantity(OxHKSampleType::QuantityType::stepCount))[0].source.name,
      "My \"band\",\n2");
  EXPECT_EQ(samples(OxHKSampleType::workout())[0].workout()->activityType, "cycling");
  EXPECT_THAT(counts(imported("stepCount,\"open")), HasSubstr("breaks off"));

  const auto database = environment_.directories().temporary / "Gadgetbridge";
  {
    auto connection = SqliteConnection::open({.path = database}).value();
    for (const char* sql :
         {"CREATE TABLE DEVICE(_id INTEGER, NAME TEXT)", "INSERT INTO DEVICE VALUES(1,'Band')",
          "CREATE TABLE X_ACTIVITY_SAMPLE(TIMESTAMP INTEGER, DEVICE_ID INTEGER, USER_ID INTEGER, "
          "STEPS INTEGER, RAW_KIND INTEGER, HEART_RATE INTEGER)",
          "INSERT INTO X_ACTIVITY_SAMPLE VALUES(1709766000,1,1,40,1,-1),(1709766060,1,1,0,1,72),"
          "(1709766120,1,1,-1,1,255)",
          "CREATE TABLE BASE_ACTIVITY_SUMMARY(START_TIME INTEGER, END_TIME INTEGER, ACTIVITY_KIND "
          "INTEGER, DEVICE_ID INTEGER)",
          "INSERT INTO BASE_ACTIVITY_SUMMARY VALUES(1709766000000,1709767800000,16,1)"}) {
      ASSERT_TRUE(connection->run(sql));
    }
  }
  EXPECT_EQ(counts(importHealthData(*store_, database, {}, {})), "3 0 0 0 0");
  EXPECT_EQ(counts(importHealthData(*store_, database, {}, {})), "0 3 0 0 0");
  const auto rates = samples(OxHKSampleType::quantity(OxHKSampleType::QuantityType::heartRate));
  ASSERT_EQ(rates.size(), 1);
  EXPECT_EQ(rates[0].start, Date::since1970(1709766060));
}

TEST(HealthImport, ReadsDates) {
  for (const auto& [text, seconds] :
       {std::pair("2019-01-01 08:00:00 +0100", std::optional(1546326000.0)),
        {"2019-01-01 08:00:00 -0330", 1546342200.0},
        {"2019-01-01T08:00:00+01:00", 1546326000.0},
        {"2019-02-29 08:00:00 +0100", std::nullopt},
        {"2019-01-01 24:00:00 +0100", std::nullopt},
        {"2019-01-01 08:00:00 +1x00", std::nullopt},
        {"2019-01-01 08:00:00", std::nullopt}}) {
    const auto date = dateIn(text);
    EXPECT_EQ(date ? std::optional(date->timeIntervalSince1970()) : std::nullopt, seconds) << text;
  }
}

}  // namespace
}  // namespace velloro
