#include "Foundation/Process/VirtualEnvironment.h"
#include "Support/Fixtures.h"
#include "Support/SampleTasks.h"
#include "VelloroCore/Types/TaskExtra.h"

namespace velloro {
namespace {

using TitleIcon = TaskDisplayTitle::TitleIcon;

ComplicationTaskSnapshot sampleSnapshot() {
  const NotificationTask task = fullSampleTask();
  const ComplicationTaskNoteSnapshot note{
      .uniqueID = sampleID(3), .date = YYYYMMDD{2024, 3, 7}, .content = {"Twice"}};
  ComplicationTaskSnapshot snapshot;
  snapshot.date = Date::fromISO8601("2024-03-07T12:00:00Z").value();
  snapshot.statusDate = snapshot.date;
  snapshot.taskUniqueId = task.taskId;
  snapshot.createdDate = {2024, 1, 1};
  snapshot.startOfDay = task.startOfDay;
  snapshot.taskCurrentTimeZone = task.timeZone;
  snapshot.title = "Drink";
  snapshot.snapshotDisplayRepresentation = task.displayRepresentation;
  snapshot.automaticTaskType = AutomaticTaskType(
      HealthType::dietaryDrinkWater, TaskTarget{.quantity = 8, .unit = TypeUnit::cupsUS});
  snapshot.taskDisplayOrder = task.displayOrder;
  snapshot.frequency = task.frequency;
  snapshot.codableColor = task.color;
  snapshot.taskExtra = {.uncheckedActionButton = {.type = TaskExtra::ActionButtonType::counter,
                                                  .incrementAmount = 1}};
  snapshot.categoryIDs = {sampleID(4), sampleID(5)};
  snapshot.completionStatus = task.completionStatus;
  snapshot.streak = task.streak;
  snapshot.notificationSettings.reminders = {};
  snapshot.periodOfLastCompletionBeforeToday = sampleDay().period;
  snapshot.numUniqueCompletions = ComplicationTaskSnapshot::UniqueCompletions{
      .start = {2024, 3, 4}, .end = {2024, 3, 10}, .count = 2};
  snapshot.notes = {note};
  snapshot.snapshotPinnedNote =
      ComplicationTaskNoteSnapshot{.uniqueID = sampleID(6), .content = {"Always"}};
  return snapshot;
}

WatchTaskActions sampleActions() {
  const Date date = Date::fromISO8601("2024-03-07T12:00:00Z").value();
  const UUID id = UUID::fromString("00000000-0000-4000-8000-00000000000A").value();
  const WatchTaskAction::Context fromShortcut{WatchTaskAction::Context::FromShortcut{}};
  const WatchTaskAction::Context fromMainApp{WatchTaskAction::Context::FromMainApp{}};
  const auto note = [](auto day, std::optional<std::string> content) {
    return WatchTaskAction::NoteInfo{
        .taskID = sampleID(1), .date = {day}, .content = std::move(content)};
  };
  const TimedTaskManagerEntry run{.entryId = sampleID(2),
                                  .taskIdentifier = sampleID(1),
                                  .period = sampleDay(),
                                  .start = date,
                                  .end = date + 60};
  const auto action = [&](auto payload) {
    return WatchTaskAction{.actionID = id, .actionType = {std::move(payload)}, .date = date};
  };
  return {
      {action(WatchTaskAction::CompletionInfo{.taskID = sampleID(1),
                                              .entryID = sampleID(2),
                                              .entryType = TaskLogEntryType::completedManuallyFull,
                                              .period = sampleDay(),
                                              .healthKitDevice = {.name = "Watch"},
                                              .context = fromShortcut,
                                              .didRecordToLocalStore = true}),
       action(WatchTaskAction::TimingInfo{
           .summary = run, .timerDidExpire = true, .context = fromMainApp}),
       action(note(YYYYMMDD{2024, 3, 7}, "Twice")),
       action(note(WatchTaskAction::NoteInfo::DateType::Pinned{}, std::nullopt))}};
}

TEST(Snapshots, KeepTheirForms) {
  const VirtualEnvironment environment;
  expectFixture("NotificationTask", sampleTask(), DateForm::iso8601);
  expectFixture("NotificationTaskWithOptionals", fullSampleTask(), DateForm::iso8601);
  expectFixture("ComplicationTaskSnapshot", sampleSnapshot());
  expectFixture("WatchTaskActions", sampleActions());
  expectFixture("TaskCategorySnapshot",
                TaskCategorySnapshot{.uniqueID = sampleID(1), .title = "Health"});
  expectRawValues<TaskStatus>({"N", "P", "A", "T"});
  expectRawValues<TaskShareStatus>({"notShared", "isSharedWithOthers", "isSharedWithMe"});
  expectRawValues<TaskExtra::ActionButtonType>({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
}

TEST(Snapshots, RefuseAnActionOfTwoKinds) {
  using Context = WatchTaskAction::Context;
  const std::string unknown = "Unable to decode enum";
  EXPECT_EQ(decodingFailure<Context>(R"({"fromShortcut":{},"fromMainApp":{}})"), unknown);
  EXPECT_EQ(decodingFailure<Context>("{}"), unknown);
  EXPECT_EQ(decodingFailure<WatchTaskNote::DateType>(R"({"fromTV":{}})"), unknown);
  EXPECT_EQ(decodingFailure<WatchTaskAction::ActionType>(R"({"note":{},"timer":{}})"), unknown);
  const std::string id = sampleID(1).stringValue();
  EXPECT_EQ(decodingFailure<WatchTaskActions>(R"({"actions":[{"actionID":")" + id +
                                              R"(","actionType":{"cat":{}},"date":0}]})"),
            "actions[0].actionType: " + unknown);
}

TEST(Snapshots, SayWhatCompletesTheTask) {
  struct Case {
    std::optional<AutomaticTaskType> type;
    bool isNegative;
    bool isTimed;
    std::optional<TitleIcon> icon;
  };
  const auto of = [](TaskType type) { return AutomaticTaskType(type); };
  for (const auto& [type, isNegative, isTimed, icon] :
       {Case{of(TaskType::timer()), false, true, TitleIcon::timed},
        Case{of(TaskType::screenTime()), true, false, TitleIcon::hourGlass},
        Case{of(HealthType::mindfulMinutes), false, true, TitleIcon::health},
        Case{of(HealthType::dietaryDrinkWater), true, false, TitleIcon::health},
        Case{{}, true, false, TitleIcon::negative}, Case{{}, false, false, std::nullopt}}) {
    ComplicationTaskSnapshot snapshot = sampleSnapshot();
    snapshot.automaticTaskType = type;
    snapshot.isNegative = isNegative;
    EXPECT_EQ(snapshot.isTimed(), isTimed);
    EXPECT_EQ(snapshot.titleIcon(), icon);
  }
}

TEST(Snapshots, ShowNoIconThatIsNotKnown) {
  const auto icon = fullSampleTask().displayRepresentation.value();
  const auto shown = icon.displayRepresentation().value();
  EXPECT_EQ(ComplicationSnapshotDisplayRepresentation::of(shown), icon);
  const ComplicationSnapshotDisplayRepresentation unknown{.visualRepresentation = {"ic_from_2030"},
                                                          .displayProperties = {}};
  EXPECT_FALSE(unknown.displayRepresentation());
}

}  // namespace
}  // namespace velloro
