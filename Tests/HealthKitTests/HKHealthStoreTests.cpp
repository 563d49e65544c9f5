#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "HealthKit/HKHealthStore.h"
#include "OxHealthKit/HKObjects.h"

#include <future>
#include <random>

#include <gtest/gtest.h>

namespace velloro {
namespace {

using namespace platform;

class HealthStore : public testing::Test {
 protected:
  [[nodiscard]] std::vector<HKSample> found(const HKObjectType& type, HKPredicate predicate,
                                            std::vector<HKSortDescriptor> order = {},
                                            std::optional<std::size_t> limit = {}) const {
    auto query = std::make_shared<HKSampleQuery>();
    query->sampleType = type;
    query->predicate = std::move(predicate);
    query->sortDescriptors = std::move(order);
    query->limit = limit;
    std::promise<std::vector<HKSample>> answer;
    query->resultsHandler = [&](Result<std::vector<HKSample>> samples) {
      answer.set_value(samples.value());
    };
    store_.execute(query);
    return answer.get_future().get();
  }
  [[nodiscard]] static HKSample steps(Date start, Date end, double count,
                                      const std::string& source = "", bool isImported = false) {
    return {.sampleType = stepCount,
            .start = start,
            .end = end,
            .value = HKQuantity{*HKUnit::fromString("count"), count},
            .source = {.name = {}, .bundleIdentifier = source, .isImported = isImported}};
  }
  [[nodiscard]] HKWritten saved(const std::vector<HKSample>& samples) const {
    const auto written = store_.save(samples);
    EXPECT_TRUE(written) << written.error()->localizedDescription();
    return written.value_or(HKWritten());
  }

  inline static const HKObjectType stepCount =
      hkObjectType(OxHKSampleType::quantity(OxHKSampleType::QuantityType::stepCount));
  const VirtualEnvironment environment_;
  const std::filesystem::path file_ = environment_.directories().temporary / "health.sqlite";
  const HKHealthStore store_{file_, "velloro.app"};
  const Date day_ = Date::since1970(1709766000);
};

TEST_F(HealthStore, WindowsFindWhatOverlapsThem) {
  EXPECT_FALSE(store_.isHealthDataAvailable());
  EXPECT_TRUE(found(stepCount, {}).empty());
  EXPECT_FALSE(NSFileManager::exists(file_)) << "reading makes no file";
  std::mt19937 random(3);
  std::vector<HKSample> all;
  for (int i = 0; i < 600; ++i) {
    const Date start = day_ + static_cast<double>(random() % 100000);
    const double lengths[] = {0, 0, 1, 60, 3600, 90000, 0.25};
    all.push_back(steps(start, start + lengths[random() % 7], i));
  }
  EXPECT_EQ(saved(all).added, 600);
  for (int i = 0; i < 200; ++i) {
    const Date from = day_ + static_cast<double>(random() % 110000) - 5000;
    const Date to = from + static_cast<double>(random() % 20000);
    std::multiset<double> expected, values;
    for (const auto& one : all) {
      const bool isMoment = one.start == one.end;
      const bool overlaps =
          isMoment ? from <= one.start && one.start < to : one.start < to && from < one.end;
      if (overlaps) expected.insert(one.quantity()->value);
    }
    for (const auto& one : found(stepCount, HKPredicate::samples(from, to))) {
      values.insert(one.quantity()->value);
    }
    EXPECT_EQ(values, expected) << i;
  }
  const auto newest =
      found(stepCount, {}, {{HKSampleSortIdentifier::endDate, /*isAscending=*/false}}, 2);
  ASSERT_EQ(newest.size(), 2);
  EXPECT_GE(newest[0].end, newest[1].end);
  EXPECT_EQ(newest[0].end, std::ranges::max(all, {}, &HKSample::end).end);
}

TEST_F(HealthStore, ASyncIdentifierHasOneSampleAndItsNewestVersion) {
  const auto version = [&](std::int64_t number, double count, const std::string& source = "") {
    HKSample sample = steps(day_, day_, count, source);
    sample.metadata = {{"HKMetadataKeySyncIdentifier", "a"}, {"HKMetadataKeySyncVersion", number}};
    return sample;
  };
  EXPECT_EQ(saved({version(1, 5)}), (HKWritten{.added = 1}));
  EXPECT_EQ(saved({version(3, 7)}), (HKWritten{.added = 1}));
  EXPECT_EQ(saved({version(2, 6), version(3, 8)}), (HKWritten{.known = 2}));
  EXPECT_EQ(saved({version(1, 9, "another")}), (HKWritten{.added = 1})) << "by its source";
  const auto own = found(stepCount, HKPredicate::ownSource("velloro.app"));
  ASSERT_EQ(own.size(), 1);
  EXPECT_EQ(own[0].quantity()->value, 7);
  EXPECT_EQ(store_.deleteSamples("a"), 1);
  EXPECT_EQ(found(stepCount, {}).size(), 1) << "those of others stay";
}

TEST_F(HealthStore, ImportedSamplesAreKnownByWhatTheyAre) {
  const auto imported = [&](double count) { return steps(day_, day_ + 60, count, "Watch", true); };
  HKSample once = imported(5);
  once.uuid = UUID();
  EXPECT_EQ(saved({steps(day_, day_, 1), steps(day_, day_, 1)}).added, 2) << "own ones are two";
  const HKHealthStore other(file_, "velloro.app");
  const auto write = [&](const HKHealthStore& to) {
    HKWritten written;
    const auto done = to.write([&](HKSampleWriter& writer) -> Result<void> {
      const auto row = writer.add(HKSampleRow{.type = stepCount.identifier,
                                              .start = day_,
                                              .end = day_ + 60,
                                              .value = 5,
                                              .unit = "count",
                                              .source = "velloro.app"});
      if (!row) return row;
      const auto committed = writer.commit();
      written = writer.written();
      return committed;
    });
    EXPECT_TRUE(done);
    return written;
  };
  EXPECT_EQ(write(store_), (HKWritten{.added = 1}));
  EXPECT_EQ(write(other), (HKWritten{.known = 1}));
  EXPECT_EQ(found(stepCount, HKPredicate::ownSource("velloro.app")).size(), 2)
      << "an imported sample is no own one, whatever its source is called";
  const auto first = found(stepCount, HKPredicate::samples(day_ + 1, day_ + 60));
  ASSERT_EQ(first.size(), 1);
  EXPECT_EQ(first[0].uuid, found(stepCount, HKPredicate::samples(day_ + 1, day_ + 60))[0].uuid);
}

TEST_F(HealthStore, TotalsGoByTheOrderOfSources) {
  const auto from = [&](const std::string& name, const std::string& device, double count) {
    HKSample sample = steps(day_, day_ + 3600, count, name, true);
    sample.device = device;
    return sample;
  };
  EXPECT_EQ(saved({from("App", "", 100), from("Phone", "name:P, model:iPhone", 200),
                   from("Watch", "name:W, model:Watch", 300)})
                .added,
            3);
  const auto total = [&] {
    auto query = std::make_shared<HKStatisticsCollectionQuery>();
    query->quantityType = stepCount;
    query->quantitySamplePredicate = HKPredicate::samples(day_, day_ + 1800);
    query->anchorDate = day_;
    std::promise<double> answer;
    query->initialResultsHandler = [&](Result<HKStatisticsCollection> found) {
      answer.set_value(found->sumQuantity(day_, day_ + 1800, *HKUnit::fromString("count")).value);
    };
    store_.execute(query);
    return answer.get_future().get();
  };
  EXPECT_EQ(total(), 150);
  EXPECT_EQ(store_.setSourceOrder({"App", "nobody"}), std::vector<std::string>{"nobody"});
  EXPECT_EQ(total(), 150) << "an unknown name changes nothing";
  EXPECT_EQ(store_.setSourceOrder({"App"}), std::vector<std::string>());
  EXPECT_EQ(total(), 50);
  std::string order;
  const auto sources = store_.sources().value();
  for (const auto& row : sources) order += row.source.name + ":" + row.device + " ";
  EXPECT_EQ(order, "App:other Watch:watch Phone:phone ");
}

TEST_F(HealthStore, ChangesAreRememberedUntilTheyAreRead) {
  EXPECT_EQ(saved({steps(day_, day_, 1)}).added, 1);
  EXPECT_EQ(saved({steps(day_ - 500, day_, 1)}).added, 1);
  EXPECT_EQ(store_.oldestChange().value(), day_ - 500);
  EXPECT_EQ(saved({steps(day_ - 900, day_, 1)}).added, 1);
  EXPECT_TRUE(store_.forgetChanges(day_ - 500));
  EXPECT_EQ(store_.oldestChange().value(), day_ - 900) << "it came in between";
  EXPECT_TRUE(store_.forgetChanges(day_ - 900));
  EXPECT_EQ(store_.oldestChange().value(), std::nullopt);

  auto broken = steps(day_, day_ - 1, 1);
  EXPECT_FALSE(store_.save({steps(day_, day_, 2), broken})) << "all or nothing";
  EXPECT_EQ(store_.oldestChange().value(), std::nullopt);
  ASSERT_TRUE(NSFileManager::write("no database", file_));
  EXPECT_FALSE(store_.isHealthDataAvailable());
  EXPECT_FALSE(store_.save({steps(day_, day_, 2)}));
}

}  // namespace
}  // namespace velloro
