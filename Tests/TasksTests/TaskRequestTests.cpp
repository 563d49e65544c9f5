#include "Containers/SaveIfChanged.h"
#include "Support/TaskStore.h"
#include "Tasks/Log/TemporaryEntries.h"
#include "Tasks/Requests/TaskFetchRequest.h"
#include "Tasks/Requests/TaskLogFetchRequest.h"
#include "Tasks/Requests/TaskNoteRequest.h"
#include "Tasks/Rows/TaskCategoryEntity.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"
#include "Tasks/Rows/TaskShareEntity.h"
#include "Tasks/Rows/TaskWriting.h"
#include "Tasks/Rows/UserProfileEntity.h"
#include "Tasks/Status/StoredTaskStatus.h"

#include <gmock/gmock.h>

namespace velloro {
namespace {

using ::testing::ElementsAre;
using ::testing::SizeIs;
using ::testing::StartsWith;
using ::testing::UnorderedElementsAre;
using Columns = TaskAttributes;
using Entry = TaskLogEntryEntity;
using Filter = TaskFetchRequest::TaskTypeFilter;

/// What a fetch asks for, as one text: the format, and then what its places stand for.
std::string printed(const NSFetchRequest& request) {
  if (!request.predicate()) return "";
  const auto format = request.predicate()->format();
  std::string text = format.text;
  for (const std::string& argument : format.arguments) text += " | " + argument;
  return text;
}

class TaskRequestTest : public TasksTest {
 protected:
  TaskRequestTest() { context_.deleteObject(*task_); }

  std::shared_ptr<TaskEntity> task(const char* title, std::int16_t displayOrder = 0) {
    auto task = make<TaskEntity>();
    task->setValue(Columns::title, title);
    task->setValue(Columns::displayOrder, displayOrder);
    task->setValue(Columns::uniqueId, UniqueID::create());
    return task;
  }
  /// The titles of what a request finds, first among unsaved rows and then among saved ones.
  std::string titles(const TaskFetchRequest& request) {
    const std::string unsaved = fetchedTitles(request);
    save();
    EXPECT_EQ(fetchedTitles(request), unsaved);
    return unsaved;
  }
  std::shared_ptr<Entry> entry(const std::shared_ptr<TaskEntity>& of, std::int32_t day,
                               TimeInterval made = 0, const UniqueID& id = UniqueID::create()) {
    auto entry = make<Entry>();
    entry->setValue(Entry::task, of);
    entry->setStored(Entry::entryDate, day);
    entry->setValue(Entry::createdTimestamp, Date::now() + made);
    entry->setValue(Entry::uniqueId, id);
    return entry;
  }
  std::shared_ptr<Entry> temporary(const std::shared_ptr<TaskEntity>& of, const UniqueID& id) {
    auto provisional = entry(of, 20240307, 0, id);
    provisional->setValue(Entry::cloudStatus, Entry::temporaryRecordIdentifier);
    return provisional;
  }

 private:
  std::string fetchedTitles(const TaskFetchRequest& request) {
    const auto tasks = context_.fetch<TaskEntity>(request.fetchRequest());
    std::string all;
    for (const auto& task : tasks.value()) all += *task->text(Columns::title);
    return all;
  }
};

TEST_F(TaskRequestTest, FindsTasksByWhatIsAskedFor) {
  const auto a = task("a", 1), b = task("b", 101), c = task("c", 200), d = task("d", 99);
  setTaskStatus(*b, TaskStatus::paused, Date::now());
  setTaskStatus(*c, TaskStatus::trashed, Date::now());
  setTaskStatus(*d, TaskStatus::normal, Date::now());
  d->setValue(Columns::statusDate, Date::now() + 1);
  a->setValue(Columns::typeName, "hk_water");
  b->setValue(Columns::typeName, "hk_breathe");
  c->setValue(Columns::typeSpeed, "timed");
  d->setValue(Columns::isNegative, true);
  for (const auto& [shared, status] : {std::pair(b, "L"), std::pair(c, "X"), std::pair(d, "")}) {
    const auto share = make<TaskShareEntity>();
    if (*status) share->setStored(TaskShareEntity::status, status);
    shared->setValue(Columns::taskShare, share);
  }
  const auto profile = make<UserProfileEntity>();
  c->setValue(Columns::userProfile, profile);
  const auto red = make<TaskCategoryEntity>(), green = make<TaskCategoryEntity>();
  a->add(Columns::taskCategories, red);
  a->add(Columns::taskCategories, green);
  d->add(Columns::taskCategories, green);
  const char* shared = "%K != nil AND %K IN %@ | taskShare | taskShare.status | {\"L\"}";
  const std::tuple<TaskFetchRequest, const char*, const char*> cases[] = {
      {{}, "adbc", ""},
      {{.includeStatuses = {TaskStatus::normal}},
       "ad",  // without a status, too
       R"(%K IN %@ OR %K = nil | status | {"N"} | status)"},
      {{.includeStatuses = {TaskStatus::paused}}, "b", R"(%K IN %@ | status | {"P"})"},
      {{.includeStatuses = activeStatuses}, "adb", "%K IN %@ OR %K = nil"},
      {{.pageNumbers = {TaskPageNumber{0}, TaskPageNumber{2}}},
       "adc",
       "(%K >= %@ AND %K < %@) OR (%K >= %@ AND %K < %@) | displayOrder | 0 | displayOrder | 100 "
       "|"},
      {{.pageNumbers = {TaskPageNumber{655}}}, "", "%K >= %@ AND %K < %@ | displayOrder | 65500 |"},
      {{.userProfile = profile}, "c", "%K = %@ | userProfile | UserProfile 1"},
      {{.uniqueIds = {*a->taskUniqueId(), *c->taskUniqueId()}}, "ac", "%K IN %@ | uniqueId | {\""},
      {{.fetchLimit = 2}, "ad", ""},
      {{.direction = TaskFetchRequest::SortDirection::statusDateDesc}, "dbca", ""},
      {{.maxStatusDate = Date::now()}, "bc", "%K <= %@ | statusDate | "},
      {{.includeShareStatuses = {TaskShareStatus::notShared}}, "a", "%K = nil | taskShare"},
      {{.includeShareStatuses = {TaskShareStatus::isSharedWithOthers}}, "b", shared},
      {{.includeShareStatuses = {TaskShareStatus::isSharedWithMe, TaskShareStatus::notShared}},
       "ac",
       "%K = nil OR (%K != nil AND %K IN %@) | taskShare | taskShare | taskShare.status | {\"E\", "
       "\"X\"}"},
      {{.includeCategories = {red, green}}, "ad", "ANY %K IN %@ | taskCategories | {TaskCategory "},
      {{.includeTaskTypeFilter = {Filter::eat}}, "a", "%K IN %@ | typeName | {\"hk_"},
      {{.includeTaskTypeFilter = {Filter::timed}},
       "bc",
       "%K = %@ OR %K IN %@ | typeSpeed | \"timed\" | typeName | {\"hk_"},
      {{.includeTaskTypeFilter = {Filter::negative, Filter::eat}}, "ad", "%K IN %@ OR %K = %@"},
      {{.maxStatusDate = Date::now(), .excludeTaskTypeFilter = {Filter::health, Filter::negative}},
       "c",
       "NOT (%K BEGINSWITH %@) AND NOT (%K = %@) AND %K <= %@ | typeName | \"hk_\" | isNegative | "
       "1"},
  };
  for (const auto& [request, expected, format] : cases) {
    EXPECT_EQ(titles(request), expected) << format;
    EXPECT_THAT(printed(request.fetchRequest()), StartsWith(format));
  }
}

TEST_F(TaskRequestTest, LogAndNotesPrintTheirFormats) {
  using Log = TaskLogFetchRequest;
  using Note = TaskNoteEntity::Request;
  constexpr YYYYMMDD first{2024, 3, 1}, last{2024, 3, 31};
  const auto read = task("Read");
  save();
  EXPECT_EQ(printed(Log{.minDate = first, .maxDate = first}.fetchRequest(read.get())),
            "%K = %@ AND %K = 20240301 | task | Task 1 | entryDate");
  const Log ofIds{.minDate = first, .maxDate = last, .uniqueIds = {UniqueID::create()}};
  EXPECT_THAT(printed(ofIds.fetchRequest()),
              StartsWith("%K IN %@ AND %K >= 20240301 AND %K <= 20240331 | uniqueId | {\""));
  const Log ofTypes{.includeStatuses = TaskLogEntryTypes::allSkipTypes,
                    .excludeStatuses = TaskLogEntryTypes::allSkipTypes,
                    .temporaryEntriesOnly = true};
  EXPECT_EQ(printed(ofTypes.fetchRequest()),
            "%K IN %@ AND NOT (%K IN %@) AND %K = %@ | entryType | {3, 4} | entryType | {3, 4} | "
            "cloudStatus | \"TMP\"");
  const Note ofNoDay{.task = read.get(), .date = Note::NoteDate::empty()};
  EXPECT_EQ(printed(ofNoDay.fetchRequest()), "%K = %@ AND %K = %@ | task | Task 1 | noteDate | 0");
  const Note ofDays{.date = Note::NoteDate::range({first, last}),
                    .includeStatuses = {TaskNoteStatus::pinned},
                    .excludeStatuses = {TaskNoteStatus::trashed}};
  EXPECT_EQ(printed(ofDays.fetchRequest()),
            "%K >= %@ AND %K <= %@ AND %K IN %@ AND NOT (%K IN %@) | noteDate | 20240301 | "
            "noteDate | 20240331 | status | {\"P\"} | status | {\"T\"}");
}

TEST_F(TaskRequestTest, ReadsALog) {
  using enum TaskLogFetchRequest::Direction;
  const auto read = task("Read");
  const auto first = entry(read, 20240305), second = entry(read, 20240306, 1),
             late = entry(read, 20240306, 2);
  entry(task("other"), 20240306);
  late->setStored(Entry::entryType, std::int16_t{3});
  const TaskLogFetchRequest onTheSixth{.direction = newestToOldest,
                                       .minDate = YYYYMMDD{2024, 3, 6},
                                       .maxDate = YYYYMMDD{2024, 3, 6}};
  EXPECT_THAT(read->taskLog(onTheSixth).value(), ElementsAre(late, second));
  const auto log = [&](const TaskLogFetchRequest& request) {
    return TaskEntity::taskLog(context_, request, *read);
  };
  EXPECT_THAT(log({.direction = oldestToNewest}), ElementsAre(first, second, late));
  EXPECT_THAT(log({.maxDate = YYYYMMDD{2024, 3, 5}}), ElementsAre(first));
  EXPECT_THAT(log({.includeStatuses = TaskLogEntryTypes::allSkipTypes}), ElementsAre(late));
  EXPECT_THAT(log({.excludeStatuses = TaskLogEntryTypes::allSkipTypes}),
              UnorderedElementsAre(first, second));
  EXPECT_EQ(creationDate(TaskSnapshot::of(*read, Date::now())), Date::now());
  first->setValue(Entry::createdTimestamp, Date::now() - 99);
  EXPECT_EQ(creationDate(TaskSnapshot::of(*read, Date::now())), Date::now() - 99);
  context_.deleteObject(*read);
  EXPECT_THAT(read->taskLog(onTheSixth).value(), SizeIs(0));
}

TEST_F(TaskRequestTest, ReadsNotesThatCanBeShown) {
  const auto read = task("Read");
  const auto note = [&](const char* text, std::int32_t day, const char* status, int made) {
    const auto row = make<TaskNoteEntity>();
    row->setValue(TaskNoteEntity::task, read);
    row->setValue(TaskNoteEntity::uniqueId, UniqueID::create());
    row->setValue(TaskNoteEntity::content, text);
    row->setStored(TaskNoteEntity::noteDate, day);
    row->setStored(TaskNoteEntity::status, status);
    row->setValue(TaskNoteEntity::createdTimestamp, Date::now() + made);
  };
  EXPECT_FALSE(read->pinnedNote());
  note("late", 20240307, "N", 2);
  note("early", 20240307, "?", 1);
  note("", 20240307, "N", 1);
  note(" ", 20240307, "N", 3);
  note("gone", 20240307, "T", 1);
  note("pinned", 0, "P", 1);
  note("pinned later", 0, "P", 2);
  const auto notes = read->notes({2024, 3, 7});
  ASSERT_THAT(notes, SizeIs(3));
  EXPECT_EQ(notes[0].content.body + notes[1].content.body + notes[2].content.body, "earlylate ");
  EXPECT_EQ(read->pinnedNote()->content.body, "pinned later");
  const TaskNoteEntity::Request ofNoDay{.date = TaskNoteEntity::Request::NoteDate::empty()};
  EXPECT_EQ(context_.count(ofNoDay.fetchRequest()), 2U);
}

TEST_F(TaskRequestTest, TemporaryEntriesGoWhenTheirTwinIsThere) {
  const auto read = task("Read"), run = task("Run");
  const UniqueID arrived = UniqueID::create(), twice = UniqueID::create(),
                 alone = UniqueID::create();
  temporary(read, arrived);
  const auto final = entry(read, 20240307, 0, arrived);
  temporary(read, arrived);
  temporary(run, twice);
  temporary(run, twice);
  const auto single = temporary(read, alone);
  temporary(nullptr, arrived);
  temporary(read, arrived)->setStored(Entry::uniqueId, "none");
  save();
  const auto ofRun = removeTemporaryEntries(context_, run);
  EXPECT_THAT(ofRun.value(), UnorderedElementsAre(run));
  const auto ofAll = removeTemporaryEntries(context_);
  EXPECT_THAT(ofAll.value(), UnorderedElementsAre(read));
  EXPECT_TRUE(saveIfChanged(context_));
  EXPECT_THAT(TaskEntity::taskLog(context_, {.uniqueIds = {arrived, alone}}, *read),
              UnorderedElementsAre(final, single));
  EXPECT_THAT(TaskEntity::taskLog(context_, {}, *run), SizeIs(1));
  EXPECT_EQ(context_.count(NSFetchRequest("TaskLogEntry")), 5U);
}

TEST_F(TaskRequestTest, SavesOnlyWhatChangedAndOnlyWhereThereIsAStore) {
  task("Read");
  EXPECT_TRUE(saveIfChanged(context_));
  EXPECT_FALSE(saveIfChanged(context_));
  NSPersistentContainer closed(velloroModelName, velloroModel());
  const auto unsaved = TaskEntity::create(*closed.viewContext());
  EXPECT_FALSE(saveIfChanged(*closed.viewContext()));
  EXPECT_TRUE(closed.viewContext()->hasChanges());
  EXPECT_THAT(TaskEntity::taskLog(*closed.viewContext(), {}, *unsaved), SizeIs(0));
  EXPECT_FALSE(unsaved->taskLog({}));
}

}  // namespace
}  // namespace velloro
