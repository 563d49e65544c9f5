#include "CoreData/Context/NSPersistentCloudKitContainer.h"
#include "Support/Library.h"

#include <thread>

#include <gmock/gmock.h>

namespace platform {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct SummaryTransformer : NSValueTransformer {
  std::optional<Data> transformedValue(const std::any& value) const override {
    return Data(std::to_string(std::any_cast<Summary>(value).pages));
  }
  std::any reverseTransformedValue(const Data& data) const override {
    return data.text() == "?" ? std::any() : Summary{std::stoi(data.text())};
  }
};

class ContextTest : public ::testing::Test {
 protected:
  Context& view() { return *library_->viewContext(); }
  /// The same store seen by a context that knows nothing yet.
  template <typename Look>
  void elsewhere(Look look) {
    const auto context = library_->newBackgroundContext();
    context->performAndWait([&] { look(*context); });
  }

  VirtualEnvironment environment_;
  std::unique_ptr<Library> library_ = std::make_unique<Library>();
};

TEST_F(ContextTest, KeepsEveryKindOfAttribute) {
  NSValueTransformer::setValueTransformer(std::make_shared<SummaryTransformer>(), "Summary");
  const UUID id = UUID::random();
  const auto written = newBook(view(), "Emma");
  EXPECT_EQ(written->value(BookEntity::year), 1900);
  EXPECT_TRUE(written->objectID().isTemporaryID());
  written->setValue(BookEntity::year, -3);
  written->setValue(BookEntity::copies, std::int64_t{1} << 40);
  written->setValue(BookEntity::isLent, true);
  written->setValue(BookEntity::weight, 0.1);
  written->setValue(BookEntity::bought, Date::sinceReferenceDate(1.5));
  written->setValue(BookEntity::scan, Data(std::string("a\0b", 3)));
  written->setValue(BookEntity::id, id);
  written->setValue(BookEntity::summary, Summary{474});
  newBook(view(), "Nothing")->setValue(BookEntity::scan, Data());
  expectSaved(view());
  EXPECT_FALSE(written->objectID().isTemporaryID());
  library_ = std::make_unique<Library>();
  EXPECT_EQ(written->managedObjectContext(), nullptr);
  const auto read = find(view(), "Emma");
  EXPECT_EQ(read->value(BookEntity::year), -3);
  EXPECT_EQ(read->value(BookEntity::copies), std::int64_t{1} << 40);
  EXPECT_TRUE(read->value(BookEntity::isLent));
  EXPECT_EQ(read->value(BookEntity::weight), 0.1);
  EXPECT_EQ(read->value(BookEntity::rating), std::nullopt);
  EXPECT_EQ(read->value(BookEntity::bought), Date::sinceReferenceDate(1.5));
  EXPECT_EQ(read->value(BookEntity::scan), Data(std::string("a\0b", 3)));
  EXPECT_EQ(read->value(BookEntity::id), id);
  EXPECT_EQ(read->value(BookEntity::summary)->pages, 474);
  const auto empty = find(view(), "Nothing");
  EXPECT_EQ(empty->value(BookEntity::scan), Data());
  EXPECT_FALSE(empty->value(BookEntity::summary));
  read->setSlotValue(BookEntity::summary.slot(), Data("?"));
  EXPECT_FALSE(read->value(BookEntity::summary));
  NSValueTransformer::setValueTransformer(nullptr, "Summary");
  empty->setValue(BookEntity::summary, Summary{1});
  EXPECT_FALSE(empty->isUpdated());
}

TEST_F(ContextTest, TracksWhatChanged) {
  const auto book = newBook(view(), "Emma");
  expectSaved(view());
  EXPECT_FALSE(view().hasChanges());
  book->setValue(BookEntity::day, 5);
  book->setValue(BookEntity::title, "Emma");
  EXPECT_THAT(book->changedValues(), ElementsAre(std::pair("day", PropertyValue(std::int64_t{5}))));
  EXPECT_TRUE(book->isUpdated());
  book->setValue(BookEntity::day, 0);
  EXPECT_FALSE(view().hasChanges());
  book->setValue(BookEntity::day, 6);
  view().rollback();
  EXPECT_EQ(book->value(BookEntity::day), 0);
  const auto never = newBook(view(), "Never");
  view().deleteObject(*never);
  EXPECT_FALSE(view().hasChanges());
  EXPECT_EQ(never->value(BookEntity::title), "Never");
}

TEST_F(ContextTest, RelationsKeepBothSides) {
  const auto jane = view().insert<AuthorEntity>();
  const auto mary = view().insert<AuthorEntity>();
  const auto emma = newBook(view(), "Emma");
  const auto tag = view().insert<TagEntity>();
  const auto check = [&] {
    EXPECT_EQ(emma->value(BookEntity::author), jane);
    EXPECT_THAT(jane->value(AuthorEntity::books), ElementsAre(emma));
    EXPECT_THAT(mary->value(AuthorEntity::books), IsEmpty());
    EXPECT_THAT(emma->value(BookEntity::tags), ElementsAre(tag));
    EXPECT_THAT(tag->value(TagEntity::books), ElementsAre(emma));
  };
  mary->add(AuthorEntity::books, emma);
  emma->setValue(BookEntity::author, jane);
  emma->add(BookEntity::tags, tag);
  check();
  expectSaved(view());
  check();
  // Of two that claim the one place, the later gets it.
  const auto red = view().insert<CoverEntity>();
  const auto blue = view().insert<CoverEntity>();
  red->setValue(CoverEntity::book, emma);
  emma->setValue(BookEntity::cover, blue);
  EXPECT_EQ(red->value(CoverEntity::book), nullptr);
  expectSaved(view());
  EXPECT_EQ(emma->value(BookEntity::cover), blue);
  jane->remove(AuthorEntity::books, emma);
  emma->remove(BookEntity::tags, tag);
  EXPECT_EQ(emma->value(BookEntity::author), nullptr);
  EXPECT_THAT(tag->value(TagEntity::books), IsEmpty());
  expectSaved(view());
  EXPECT_THAT(emma->value(BookEntity::tags), IsEmpty());
}

TEST_F(ContextTest, ARelationIsRememberedUntilSomethingMayHaveChangedIt) {
  const auto cover = [](Context& context, const Book& book, const char* color) {
    const auto made = context.insert<CoverEntity>();
    made->setValue(CoverEntity::color, color);
    made->setValue(CoverEntity::book, book);
    return made;
  };
  const auto emma = newBook(view(), "Emma");
  const auto late = newBook(view(), "Late");
  cover(view(), emma, "red");
  expectSaved(view());
  elsewhere([&](Context& context) {
    auto books = context.fetch<BookEntity>(bookRequest()).value();
    const auto colors = [&] {
      std::string all;
      for (const auto& book : books) {
        const auto its = book->value(BookEntity::cover);
        all += its ? its->value(CoverEntity::color).value() + " " : "- ";
      }
      return all;
    };
    EXPECT_EQ(colors(), "red - ");
    const auto blue = cover(view(), late, "blue");
    expectSaved(view());
    EXPECT_EQ(colors(), "red - ");
    books = context.fetch<BookEntity>(bookRequest()).value();
    EXPECT_EQ(colors(), "red blue ");
    blue->setValue(CoverEntity::book, emma);
    expectSaved(view());
    EXPECT_EQ(colors(), "red blue ");
    const auto covers = context.fetch<CoverEntity>(NSFetchRequest("Cover")).value();
    EXPECT_EQ(colors(), "blue - ");
    cover(context, books[1], "green");
    context.deleteObject(*covers[1]);
    EXPECT_EQ(colors(), "- green ");
    context.rollback();
    EXPECT_EQ(colors(), "blue - ");
    cover(view(), late, "pink");
    expectSaved(view());
    Context::mergeChangesFromRemoteContextSave(
        {{NSInsertedObjectIDsKey, std::vector{late->value(BookEntity::cover)->objectID()}}},
        {context.shared_from_this()});
    EXPECT_EQ(colors(), "blue pink ");
    books[1]->setValue(BookEntity::cover, covers[0]);
    expectSaved(context);
    EXPECT_EQ(colors(), "blue red ");
  });
}

TEST_F(ContextTest, ADeletionTakesWhatIsOwnedAndReleasesTheRest) {
  const auto jane = view().insert<AuthorEntity>();
  const auto emma = newBook(view(), "Emma");
  const auto cover = view().insert<CoverEntity>();
  const auto tag = view().insert<TagEntity>();
  const auto early = newBook(view(), "Early");
  emma->setValue(BookEntity::author, jane);
  emma->setValue(BookEntity::cover, cover);
  emma->add(BookEntity::tags, tag);
  early->setValue(BookEntity::sequel, emma);
  expectSaved(view());
  elsewhere([&](Context& context) {  // what the deleting context doesn't know
    const auto late = newBook(context, "Late");
    late->setValue(BookEntity::author,
                   std::static_pointer_cast<AuthorEntity>(context.objectWithID(jane->objectID())));
    expectSaved(context);
  });
  view().deleteObject(*jane);
  EXPECT_TRUE(emma->isDeleted());
  EXPECT_TRUE(cover->isDeleted());
  EXPECT_EQ(early->value(BookEntity::sequel), nullptr);
  EXPECT_EQ(titles(view()), "Early");
  EXPECT_THAT(tag->value(TagEntity::books), IsEmpty());
  expectSaved(view());
  EXPECT_EQ(emma->managedObjectContext(), nullptr);
  EXPECT_EQ(emma->value(BookEntity::title), "Emma");
  EXPECT_EQ(emma->value(BookEntity::author), nullptr);
  elsewhere([&](Context& context) {
    EXPECT_EQ(titles(context), "Early");
    EXPECT_EQ(context.count(NSFetchRequest("Cover")), 0U);
  });
}

TEST_F(ContextTest, MergesWhatOthersSaved) {
  const auto changed = newBook(view(), "Changed");
  const auto untouched = newBook(view(), "Untouched");
  const auto deleted = newBook(view(), "Deleted");
  expectSaved(view());
  std::vector<NSManagedObjectID> refreshed;
  const auto token = NSNotificationCenter::defaultCenter().addObserver(
      Context::didMergeChangesObjectIDsNotification, &view(), std::nullopt,
      [&](const Notification& notification) {
        refreshed = *notification.value<std::vector<NSManagedObjectID>>(NSRefreshedObjectIDsKey);
      });
  view().setAutomaticallyMergesChangesFromParent(true);
  changed->setValue(BookEntity::day, 1);
  deleted->setValue(BookEntity::day, 1);
  elsewhere([&](Context& context) {
    for (const char* title : {"Changed", "Untouched"}) {
      const auto book = find(context, title);
      book->setValue(BookEntity::day, 2);
      book->setValue(BookEntity::copies, 2);
    }
    context.deleteObject(*find(context, "Deleted"));
    expectSaved(context);
  });
  EXPECT_EQ(untouched->value(BookEntity::day), 0);
  environment_.settle();
  EXPECT_THAT(refreshed, ElementsAre(changed->objectID(), untouched->objectID()));
  EXPECT_EQ(untouched->value(BookEntity::day), 2);
  EXPECT_EQ(changed->value(BookEntity::day), 1);
  EXPECT_EQ(changed->value(BookEntity::copies), 2);
  EXPECT_EQ(deleted->managedObjectContext(), nullptr);
  EXPECT_EQ(deleted->value(BookEntity::title), "Deleted");
  expectSaved(view());
  elsewhere([&](Context& context) {
    EXPECT_EQ(find(context, "Changed")->value(BookEntity::day), 1);
    EXPECT_EQ(find(context, "Changed")->value(BookEntity::copies), 2);
    EXPECT_EQ(titles(context), "Changed Untouched");
  });
}

TEST_F(ContextTest, ThreadsChangeOneRowAtATime) {
  const auto shared = newBook(view(), "Shared");
  expectSaved(view());
  view().setAutomaticallyMergesChangesFromParent(true);
  constexpr int saves = 40;
  const auto work = [&](const auto& attribute) {
    const auto context = library_->newBackgroundContext();
    context->performAndWait([&] {
      for (int i = 1; i <= saves; ++i) {
        const auto book = find(*context, "Shared");
        book->setValue(attribute, i);
        newBook(*context, "Own")->setValue(BookEntity::sequel, book);
        expectSaved(*context);
      }
    });
  };
  {
    const std::jthread one([&] { work(BookEntity::copies); });
    const std::jthread other([&] { work(BookEntity::weight); });
  }
  environment_.settle();
  EXPECT_EQ(shared->value(BookEntity::copies), saves);
  EXPECT_EQ(shared->value(BookEntity::weight), saves);
  EXPECT_EQ(shared->value(BookEntity::prequels).size(), 2U * saves);
}

TEST_F(ContextTest, AnObjectThatHasGoneReadsAsDetached) {
  const auto book = newBook(view(), "Gone");
  expectSaved(view());
  const auto other = library_->newBackgroundContext();
  const auto fault = other->performAndWait([&] { return other->objectWithID(book->objectID()); });
  view().deleteObject(*book);
  expectSaved(view());
  other->performAndWait([&] {
    const auto unread = std::static_pointer_cast<BookEntity>(fault);
    EXPECT_EQ(unread->value(BookEntity::year), 1900);
    EXPECT_EQ(unread->managedObjectContext(), nullptr);
    unread->setValue(BookEntity::day, 3);
    EXPECT_FALSE(other->hasChanges());
  });
}

TEST_F(ContextTest, TheErrorPolicyRefusesAConflict) {
  const auto book = newBook(view(), "Emma");
  expectSaved(view());
  view().setMergePolicy(NSMergePolicy::error);
  book->setValue(BookEntity::day, 1);
  elsewhere([&](Context& context) {
    find(context, "Emma")->setValue(BookEntity::copies, 7);
    expectSaved(context);
  });
  const auto saved = view().save();
  ASSERT_FALSE(saved);
  EXPECT_EQ(saved.error()->code(), 133020);
  EXPECT_TRUE(book->isUpdated());
  view().setMergePolicy(NSMergePolicy::mergeByPropertyObjectTrump);
  expectSaved(view());
  EXPECT_EQ(book->value(BookEntity::copies), 7);
}

TEST_F(ContextTest, HistoryTellsEachSaveOnce) {
  view().setName("viewContext");
  view().setTransactionAuthor("app");
  const auto one = newBook(view(), "One");
  const auto two = newBook(view(), "Two");
  expectSaved(view());
  two->setValue(BookEntity::day, 1);
  view().deleteObject(*one);
  const auto oneID = one->objectID();
  expectSaved(view());
  expectSaved(view());
  environment_.setNow(Date::distantPast() + 1);
  elsewhere([](Context& context) {
    newBook(context, "Three");
    expectSaved(context);
  });
  auto request = NSPersistentHistoryChangeRequest::fetchHistoryAfterDate(Date::distantPast());
  const auto all = view().execute(request)->transactions;
  ASSERT_EQ(all.size(), 3U);
  EXPECT_THAT(all[0].inserted, ElementsAre(oneID, two->objectID()));
  EXPECT_THAT(all[1].updated, ElementsAre(two->objectID()));
  EXPECT_THAT(all[1].deleted, ElementsAre(oneID));
  EXPECT_EQ(all[1].author, "app");
  EXPECT_EQ(all[1].contextName, "viewContext");
  EXPECT_EQ(all[2].author, std::nullopt);
  EXPECT_LT(all[1].timestamp, all[2].timestamp);
  auto others = NSPersistentHistoryTransaction::fetchRequest();
  using Saves = NSPersistentHistoryTransaction::Attributes;
  others.setPredicate(Saves::author != "app" && Saves::contextName != "viewContext");
  request = NSPersistentHistoryChangeRequest::fetchHistoryAfterDate(all[0].timestamp);
  EXPECT_EQ(view().execute(request)->transactions.size(), 2U);
  request.setFetchRequest(others);
  EXPECT_EQ(view().execute(request)->transactions.front().transactionNumber, 3);
}

TEST_F(ContextTest, AnotherContainerHearsOfASaveAndMergesItsHistory) {
  Library other;
  const auto book = newBook(view(), "Emma");
  expectSaved(view());
  auto& otherView = *other.viewContext();
  const auto copy = find(otherView, "Emma");
  int heard = 0;
  const auto count = [&](const Notification&) { ++heard; };
  auto& center = NSNotificationCenter::defaultCenter();
  environment_.settle();
  other.persistentStoreCoordinator()->checkForRemoteChanges();
  const auto token =
      center.addObserver(NSPersistentStoreRemoteChangeNotification,
                         other.persistentStoreCoordinator().get(), DispatchQueue::main(), count);
  newBook(otherView, "Own");
  expectSaved(otherView);
  other.persistentStoreCoordinator()->checkForRemoteChanges();
  environment_.settle();
  EXPECT_EQ(heard, 0);
  book->setValue(BookEntity::day, 9);
  expectSaved(view());
  environment_.settle();
  EXPECT_EQ(heard, 1);
  EXPECT_EQ(copy->value(BookEntity::day), 0);
  const auto request = NSPersistentHistoryChangeRequest::fetchHistoryAfterDate(Date::distantPast());
  const auto history = otherView.execute(request);
  for (const auto& transaction : history->transactions) {
    Context::mergeChangesFromRemoteContextSave(transaction.objectIDNotification().userInfo,
                                               {other.viewContext()});
  }
  EXPECT_EQ(copy->value(BookEntity::day), 9);
}

TEST_F(ContextTest, AMirrorIsMadeForCloudStoresAndTellsOfItsWork) {
  using Container = NSPersistentCloudKitContainer;
  std::vector<std::string> mirrored;
  std::vector<std::optional<Date>> ends;
  Container::setMirrorFactory([&](Container& container, const auto& options) {
    mirrored.push_back(options.containerIdentifier);
    const auto now = Date::sinceReferenceDate(5);
    NSPersistentCloudKitContainerEvent event{.identifier = UUID::random(), .startDate = now};
    container.post(event);
    event.endDate = now + 1;
    container.post(event);
    return std::make_unique<StoreMirror>();
  });
  const auto token = NSNotificationCenter::defaultCenter().addObserver(
      NSPersistentCloudKitContainerEventChangedNotification, nullptr, std::nullopt,
      [&](const Notification& notification) {
        ends.push_back(notification
                           .value<NSPersistentCloudKitContainerEvent>(
                               NSPersistentCloudKitContainerEventUserInfoKey)
                           ->endDate);
      });
  for (const bool isCloud : {true, false}) {
    Container container("Library", libraryModel());
    auto description = NSPersistentStoreDescription::inMemory();
    if (isCloud) description.cloudKitContainerOptions = {"iCloud.library"};
    container.setPersistentStoreDescriptions({description});
    container.loadPersistentStores([](const auto&, const ErrorPtr& error) { EXPECT_FALSE(error); });
    EXPECT_EQ(container.isMirrored(), isCloud);
  }
  Container::setMirrorFactory(nullptr);
  EXPECT_THAT(mirrored, ElementsAre("iCloud.library"));
  EXPECT_THAT(ends, ElementsAre(std::nullopt, Date::sinceReferenceDate(6)));
}

}  // namespace
}  // namespace platform
