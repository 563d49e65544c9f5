#include "Support/Fixtures.h"
#include "Support/TaskStore.h"
#include "Tasks/Columns/TaskCloudSummaryValueTransformer.h"
#include "Tasks/Rows/TaskShareEntity.h"
#include "VelloroTaskShare/SharedTaskParticipant.h"

namespace velloro {
namespace {

TaskCloudSummary summary() {
  const TimeZone berlin = TimeZone::fromIdentifier("Europe/Berlin").value();
  const TaskCloudSummary::Entry full{.type = TaskLogEntryType::completedManuallyFull,
                                     .time = {.h = 8}};
  return {
      .taskDescriptor = {.created = Date::since1970(1709809200),
                         .createdTimeZone = berlin,
                         .currentTimeZone = berlin,
                         .title = "Read",
                         .automaticTaskType = AutomaticTaskType(HealthType::mindfulMinutes)},
      .history = {.firstDayOfWeek = DayOfWeek::monday,
                  .single = {{{2024, 3, 5}, full}, {{2024, 3, 4}, full}},
                  .multi = {{.period = TaskLogEntryPeriod(TaskFrequencyPeriodType::week,
                                                          {2024, 3, 3}, {2024, 3, 9}, {2024, 3, 7}),
                             .progressValue = 2.5,
                             .progressPct = 0.5,
                             .timeZone = TimeZone::gmt()}}},
      .progress = TaskCloudSummary::Progress{.date = {2024, 3, 7}, .value = 1},
      .notificationSettings = TaskCloudSummary::NotificationSettings{
          .automaticTimes = {{.days = EnumSet(DayOfWeek::monday), .times = {{.h = 9}, {.h = 7}}},
                             {.dayIndexesFromStart = std::set<std::int64_t>{0}}}}};
}

TEST(TaskCloudSummary, HasItsFormAndAHashThatIsTheSameEverywhere) {
  expectFixture("TaskCloudSummary", summary());
  EXPECT_EQ(summary().summaryHash(), -8501377808294770662);  // others hold it
  EXPECT_EQ(summary().history.unsortedPeriods().size(), 3U);
  EXPECT_EQ(summary().history.unsortedPeriods()[0].progressPct, 0.5);
  auto other = summary();
  other.notificationSettings->automaticTimes[1].times.insert({.h = 1});
  EXPECT_NE(other.summaryHash(), summary().summaryHash());
  expectRawValues<SharedTaskParticipant::AcceptanceStatus>(
      {"unknown", "pending", "accepted", "removed"});
}

TEST_F(TasksTest, ASummaryIsKeptAsJSONUnderOneKey) {
  const auto share = make<TaskShareEntity>();
  share->setValue(TaskShareEntity::summaryJson, {{summary()}});
  const auto slot = TaskShareEntity::summaryJson.slot();
  const auto& stored = std::get<Data>(share->slotValue(slot));
  EXPECT_EQ(stored.text(), "{\"summary\":" + JSONEncoder{}.encode(summary()) + "}");
  EXPECT_EQ(share->value(TaskShareEntity::summaryJson)->summary, summary());
  EXPECT_TRUE(share->canRead(slot));
  std::string json = stored.text();
  json.replace(json.find("\"dayMode\":0"), 11, "\"dayMode\":99");
  share->setSlotValue(slot, Data(json));
  EXPECT_TRUE(share->value(TaskShareEntity::summaryJson)) << "all but the unknown value";
  EXPECT_FALSE(share->canRead(slot));
  share->setSlotValue(slot, Data(R"({"summary":{}})"));
  EXPECT_FALSE(share->value(TaskShareEntity::summaryJson));
  EXPECT_FALSE(TaskCloudSummaryValueTransformer().transformedValue(summary()));
}

}  // namespace
}  // namespace velloro
