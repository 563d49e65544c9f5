#include "DataManager/PersistentHistoryFetcher.h"
#include "DataManager/PersistentHistoryObserver.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/VelloroModel.h"

#include <gmock/gmock.h>

namespace velloro {
namespace {

using testing::IsEmpty;
using testing::SizeIs;
using Container = VelloroNSPersistentCloudKitContainer;

class PersistentHistoryObserverTest : public testing::Test {
 protected:
  /// As another process opens the same file.
  [[nodiscard]] std::shared_ptr<Container> open() const {
    auto container = std::make_shared<Container>(velloroModelName, velloroModel());
    auto description = NSPersistentStoreDescription::initWithURL(
        environment_.directories().temporary / "tasks.sqlite");
    description.setOption(true, NSPersistentStoreRemoteChangeNotificationPostOptionKey);
    container->setPersistentStoreDescriptions({description});
    container->loadPersistentStores(
        [](const auto&, const ErrorPtr& error) { EXPECT_FALSE(error); });
    return container;
  }
  static void saveTask(Container& container, const char* title) {
    TaskEntity::create(*container.viewContext())->setValue(TaskAttributes::title, title);
    EXPECT_TRUE(container.viewContext()->save());
  }
  [[nodiscard]] std::optional<Date> bookmark(Author author) const {
    const auto kept = defaults_.objectForKey(PersistentHistoryObserver::bookmarkKey(author));
    return kept ? kept->date() : std::nullopt;
  }
  [[nodiscard]] static std::vector<NSPersistentHistoryTransaction> history(Container& container,
                                                                           Date after) {
    return PersistentHistoryFetcher{container.newBackgroundContext(), after}
        .fetch()
        .value()
        .transactions;
  }

  /// How many transactions reach the view.
  [[nodiscard]] int mergesByNewObserver(const std::shared_ptr<Container>& container,
                                        Author author) const {
    int merges = 0;
    const auto token = NSNotificationCenter::defaultCenter().addObserver(
        NSManagedObjectContext::didMergeChangesObjectIDsNotification,
        container->viewContext().get(), std::nullopt, [&](const Notification&) { ++merges; });
    PersistentHistoryObserver::make(author, container, defaults_)->processPersistentHistory();
    environment_.settle();
    return merges;
  }

  mutable VirtualEnvironment environment_;
  NSUserDefaults defaults_ = NSUserDefaults::standardUserDefaults();
};

TEST_F(PersistentHistoryObserverTest, BringsWhatOthersSaveIntoTheView) {
  const auto here = open();
  const auto there = open();
  saveTask(*there, "Read");
  const auto copy = here->viewContext()->fetch<TaskEntity>(NSFetchRequest("Task")).value().front();
  const auto observer = PersistentHistoryObserver::make(Author::widget, here, defaults_);
  observer->startObserving();

  const auto original =
      there->viewContext()->fetch<TaskEntity>(NSFetchRequest("Task")).value().front();
  original->setValue(TaskAttributes::title, "Write");
  ASSERT_TRUE(there->viewContext()->save());
  here->persistentStoreCoordinator()->checkForRemoteChanges();
  environment_.settle();
  EXPECT_EQ(copy->value(TaskAttributes::title), "Write");
  EXPECT_EQ(bookmark(Author::widget), history(*here, Date::distantPast()).back().timestamp);
  EXPECT_EQ(bookmark(Author::app), std::nullopt);
}

TEST_F(PersistentHistoryObserverTest, ReadsOnlyWhatIsNewSinceItsOwnBookmark) {
  const auto here = open();
  saveTask(*here, "Read");
  EXPECT_EQ(mergesByNewObserver(here, Author::app), 1);
  const auto after = bookmark(Author::app);
  EXPECT_EQ(mergesByNewObserver(here, Author::app), 0) << "nothing new";
  EXPECT_EQ(bookmark(Author::app), after);
  saveTask(*here, "Write");
  saveTask(*here, "Walk");
  EXPECT_EQ(mergesByNewObserver(here, Author::app), 2) << "it goes on from the bookmark";
  EXPECT_EQ(mergesByNewObserver(here, Author::siri), 3);
  const std::string key = PersistentHistoryObserver::bookmarkKey(Author::siri);
  for (const PropertyList& damaged : {PropertyList("yesterday"), PropertyList(Date::now() + 1e6)}) {
    defaults_.setObject(damaged, key);
    EXPECT_EQ(mergesByNewObserver(here, Author::siri), 3) << damaged.json();
    EXPECT_EQ(mergesByNewObserver(here, Author::siri), 0) << "it was mended";
  }
}

TEST_F(PersistentHistoryObserverTest, ABookmarkCountsForItsFile) {
  const auto file = environment_.directories().temporary / "tasks.sqlite";
  const auto copy = environment_.directories().temporary / "copy.sqlite";
  auto here = open();
  saveTask(*here, "Read");
  EXPECT_EQ(mergesByNewObserver(here, Author::app), 1);
  here.reset();
  ASSERT_TRUE(NSFileManager::copyItem(file, copy));
  ASSERT_TRUE(NSFileManager::replaceItem(file, copy));
  here = open();
  EXPECT_EQ(mergesByNewObserver(here, Author::app), 1);
  EXPECT_EQ(mergesByNewObserver(here, Author::app), 0);
  defaults_.removeObjectForKey(PersistentHistoryObserver::storeKey(Author::app));
  EXPECT_EQ(mergesByNewObserver(here, Author::app), 0) << "one of an older program counts";
}

TEST_F(PersistentHistoryObserverTest, TwoOfOneAuthorTakeNothingFromEachOther) {
  const auto here = open();
  const auto there = open();
  const auto first = PersistentHistoryObserver::make(Author::app, here, defaults_);
  const auto second = PersistentHistoryObserver::make(Author::app, there, defaults_);
  saveTask(*here, "Read");
  first->processPersistentHistory();
  const auto moved = bookmark(Author::app);
  const auto copy = std::static_pointer_cast<TaskEntity>(
      there->viewContext()->fetch<TaskEntity>(NSFetchRequest("Task")).value().front());
  const auto original =
      here->viewContext()->fetch<TaskEntity>(NSFetchRequest("Task")).value().front();
  original->setValue(TaskAttributes::title, "Write");
  ASSERT_TRUE(here->viewContext()->save());
  first->processPersistentHistory();
  second->processPersistentHistory();
  environment_.settle();
  EXPECT_EQ(copy->value(TaskAttributes::title), "Write");
  EXPECT_GT(bookmark(Author::app), moved);
}

TEST_F(PersistentHistoryObserverTest, ReadsAllAnewWhereHistoryWasDropped) {
  const auto here = open();
  const auto there = open();
  saveTask(*here, "Read");
  const auto observer = PersistentHistoryObserver::make(Author::widget, there, defaults_);
  observer->processPersistentHistory();
  environment_.settle();
  const auto copy = there->viewContext()->fetch<TaskEntity>(NSFetchRequest("Task"))->front();
  EXPECT_EQ(copy->value(TaskAttributes::title), "Read");
  const auto task = here->viewContext()->fetch<TaskEntity>(NSFetchRequest("Task"))->front();
  task->setValue(TaskAttributes::title, "Write");
  ASSERT_TRUE(here->viewContext()->save());
  environment_.setNow(Date::now() + 100 * 86400);
  saveTask(*here, "Walk");
  EXPECT_THAT(history(*here, Date::distantPast()), SizeIs(1));
  observer->processPersistentHistory();
  environment_.settle();
  EXPECT_EQ(copy->value(TaskAttributes::title), "Write");
  EXPECT_EQ(bookmark(Author::widget), history(*here, Date::distantPast()).back().timestamp);
}

TEST_F(PersistentHistoryObserverTest, AFailureLeavesTheBookmark) {
  const auto closed = std::make_shared<Container>(velloroModelName, velloroModel());
  const Date before = Date::now();
  defaults_.setObject(before, PersistentHistoryObserver::bookmarkKey(Author::app));
  PersistentHistoryObserver::make(Author::app, closed, defaults_)->processPersistentHistory();
  EXPECT_EQ(bookmark(Author::app), before);
}

TEST_F(PersistentHistoryObserverTest, AContextWithAnIdentityDoesntGetItsOwnSaves) {
  const auto container = open();
  container->viewContext()->setTransactionAuthor("app");
  saveTask(*container, "Read");
  const auto context = container->newBackgroundContext();
  const auto fetched = [&] {
    return PersistentHistoryFetcher{context, Date::distantPast()}.fetch().value().transactions;
  };
  EXPECT_THAT(fetched(), SizeIs(1));
  context->setTransactionAuthor("ext_widget");
  EXPECT_THAT(fetched(), SizeIs(1));
  context->setTransactionAuthor("app");
  EXPECT_THAT(fetched(), IsEmpty());
  const auto format = [&] {
    return PersistentHistoryFetcher{context, Date::now()}.fetchRequest().predicate()->format();
  };
  EXPECT_EQ(format(), (NSPredicate::Format{"%K != %@", {"author", "\"app\""}}));
  context->setName("view");
  EXPECT_EQ(format().text, "%K != %@ AND %K != %@");
  EXPECT_EQ(format().arguments.at(2), "contextName");
}

}  // namespace
}  // namespace velloro
