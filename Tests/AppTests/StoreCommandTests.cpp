#include "AppTests/Program.h"
#include "Foundation/Coding/PropertyList.h"
#include "Support/TaskStore.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"
#include "Tasks/Rows/TaskWriting.h"

#include <map>
#include <tuple>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using testing::HasSubstr;

/// A store of two saves: a task with a log of eight, then its colour.
struct StoreCommand : ::testing::Test {
  void make(const char* color) {
    const TaskStore store(NSPersistentStoreDescription::initWithURL(file));
    NSManagedObjectContext& context = *store.viewContext();
    context.setTransactionAuthor("app");
    environment.setNow(Date::fromISO8601("2024-03-07T02:00:00Z").value());
    const auto task = TaskEntity::create(context);
    setTaskStatus(*task, TaskStatus::normal, Date::now());
    for (int day = 20240301; day < 20240309; ++day) {
      const auto entry = TaskLogEntryEntity::create(context);
      entry->setValue(TaskLogEntryEntity::task, task);
      entry->setStored(TaskLogEntryEntity::entryDate, day);
    }
    EXPECT_TRUE(context.save());
    environment.setNow(Date::fromISO8601("2024-03-08T02:00:00Z").value());
    task->setStored(TaskAttributes::colorInfo, color);
    EXPECT_TRUE(context.save());
  }

  [[nodiscard]] ProgramResult run(const std::string& part, const std::string& options = "") const {
    return runProgram("store " + part + " " + file.string() + " " + options);
  }

  VirtualEnvironment environment;
  std::filesystem::path file = environment.directories().temporary / "tasks.sqlite";
};

/// Every text of every row that the program reads has a meaning, but for what a person or another
/// system has written.
TEST_F(StoreCommand, FindsEveryTextThatCantBeRead) {
  const std::string_view free =
      " title content ckRecordIdRecordName ckRecordIdZoneName ckShareIdRecordName "
      "ckShareIdZoneName ckRecordIdZoneOwnerName ckShareIdZoneOwnerName ckError "
      "ckUserDisplayName cnFormattedName cnIdentifier cnPropertyIdentifier "
      "cnPropertyLabel cnPropertyType cnPropertyValue settingKey stringValue "
      "sentiment ";
  const std::string_view unread =
      ",Task cloudStatus,Task lastChangedDifficultyStatus,"
      "TaskTemporalData lastChangedDifficultyStatus,TaskShareOwner cloudStatus,"
      "TaskNotificationReminders icon,"
      "TaskNotificationSettings difficultyNotificationStatus,"
      "TaskCounter status,HealthKitRequest type,HealthKitRequest status,";
  const std::map<std::string, std::string> readableInParts{
      {"imageName", R"({"vr":{"icon":"mug"},"dp":{"orientation":8}})"},
      {"customReminderType", R"({"uncheckedActionButton":{"type":99}})"}};
  make("red");
  const auto one = run("check");
  EXPECT_EQ(one.exitCode, 1);
  EXPECT_EQ(one.output, "can't be read: Task 1 colorInfo\n");
  EXPECT_THAT(one.errors, HasSubstr("is not sound: findings 1"));
  std::vector<std::string> expected;
  {
    const TaskStore store(NSPersistentStoreDescription::initWithURL(file));
    NSManagedObjectContext& context = *store.viewContext();
    for (const NSEntityDescription* entity : velloroModel().entities()) {
      const auto object = context.insert(entity->name());
      EXPECT_TRUE(context.save());
      for (std::size_t slot = 0; slot < entity->attributes().size(); ++slot) {
        const auto& [name, type] =
            std::tie(entity->attributes()[slot].name, entity->attributes()[slot].type);
        if (type != NSAttributeType::string) continue;
        const auto inParts = readableInParts.find(name);
        const bool isWhole = inParts == readableInParts.end();
        object->setSlotValue(slot, isWhole ? "no word, no number" : inParts->second);
        if (free.contains(" " + name + " ")) continue;
        if (unread.contains("," + entity->name() + " " + name + ",")) continue;
        expected.push_back("can't be read: " + entity->name() + " " +
                           std::to_string(object->objectID().key) + " " + name + "\n");
      }
    }
    EXPECT_TRUE(context.save());
  }
  const std::string output = run("check").output;
  for (const std::string& line : expected) EXPECT_THAT(output, HasSubstr(line));
  EXPECT_GT(expected.size(), 30U);
}

TEST_F(StoreCommand, CountsRowsAndListsSaves) {
  make("0.2 0.4 0.6 1");
  const std::string stats = run("stats").output;
  EXPECT_THAT(stats, HasSubstr("Task                                1\n"));
  EXPECT_THAT(stats, HasSubstr("TaskLogEntry                        8\n"));
  EXPECT_THAT(stats, HasSubstr("saves                               2\n"));
  EXPECT_EQ(run("check", "--json").exitCode, 0);
  EXPECT_THAT(run("check").output, HasSubstr("is sound"));
  const char* second = "     2  2024-03-08T02:00:00Z  app (-)  ~Task 1\n";
  EXPECT_EQ(run("history").output,
            "     1  2024-03-07T02:00:00Z  app (-)  +Task 1  +TaskLogEntry 1 2 3 4 5 and 3 more\n" +
                std::string(second));
  EXPECT_EQ(run("history", "--since 2024-03-07T12:00:00Z").output, second);
  EXPECT_EQ(run("history", "--json --since 2024-03-07T12:00:00Z").output,
            R"([{"number":2,"timestamp":"2024-03-08T02:00:00Z","author":"app",)"
            R"("inserted":[],"updated":[{"entity":"Task","keys":[1]}],"deleted":[]}])"
            "\n");
}

TEST_F(StoreCommand, MakesNoStore) {
  const auto result = run("stats");
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.errors, HasSubstr("there is no store"));
  EXPECT_FALSE(std::filesystem::exists(file));
  expectRefusal("store history --since yesterday", "--since");
}

}  // namespace
}  // namespace velloro
