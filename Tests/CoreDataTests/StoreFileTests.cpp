#include "CoreData/StoreError.h"
#include "CoreDataTests/FailingDisk.h"
#include "CoreDataTests/Library.h"
#include "Support/Processes.h"

#include <fstream>

#include <gmock/gmock.h>
#include <sqlite3.h>

namespace platform {
namespace {

using ::testing::AnyOf;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;
using enum StoreError::Kind;

/// SQLite's own view of the file, as another program has it.
class Shell {
 public:
  Shell() { sqlite3_open(libraryPath().c_str(), &handle_); }
  Shell(const Shell&) = delete;
  Shell& operator=(const Shell&) = delete;
  ~Shell() { sqlite3_close(handle_); }

  void run(const char* sql) {
    EXPECT_EQ(sqlite3_exec(handle_, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sql;
  }

 private:
  sqlite3* handle_ = nullptr;
};

std::vector<std::string> findings(Library& library) {
  return library.persistentStoreCoordinator()->check().value_or(
      std::vector<std::string>{"can't be read"});
}

template <typename R>
int codeOf(const R& result) {
  return result ? 0 : result.error()->code();
}
int code(StoreError::Kind kind) {
  return static_cast<int>(rawValue(kind));
}

// An older model of the library: fewer entities and attributes, and one that was given up since.
namespace older {

class BookEntity;

class AuthorEntity : public NSManagedObject {
 public:
  inline static auto description = NSEntityDescription::of<AuthorEntity>();
  inline static const Attribute<std::optional<std::string>> name{description, "name"};
  inline static const ToMany<BookEntity> books{description, "books", "author"};
};

class BookEntity : public NSManagedObject {
 public:
  inline static auto description = NSEntityDescription::of<BookEntity>();
  inline static const Attribute<std::optional<std::string>> title{description, "title"};
  inline static const Attribute<std::optional<std::string>> shelf{description, "shelf"};
  inline static const ToOne<AuthorEntity> author{description, "author", "books"};
};

const NSManagedObjectModel& model() {
  static const NSManagedObjectModel instance(
      {&BookEntity::description, &AuthorEntity::description});
  return instance;
}

}  // namespace older

TEST(StoreFile, AnOlderFileIsCompletedAndBothVersionsGoOn) {
  TestEnvironment environment;
  {
    Library old(Library::fileDescription(), older::model());
    const auto book = old.viewContext()->insert<older::BookEntity>();
    book->setValue(older::BookEntity::title, "Emma");
    book->setValue(older::BookEntity::shelf, "top");
    expectSaved(*old.viewContext());
  }
  auto description = Library::fileDescription();
  description.shouldInferMappingModelAutomatically = false;
  EXPECT_EQ(Library(description).error->code(), code(incompatible));
  {
    Library now;
    Context& context = *now.viewContext();
    const auto book = context.fetch<BookEntity>(bookRequest())->front();
    EXPECT_EQ(book->value(BookEntity::year), 1900);
    book->setValue(BookEntity::day, 7);
    book->add(BookEntity::tags, context.insert<TagEntity>());
    newBook(context, "Persuasion");
    expectSaved(context);
  }
  {
    Library old(Library::fileDescription(), older::model());
    Context& context = *old.viewContext();
    const auto books = context.fetch<older::BookEntity>(bookRequest()).value();
    ASSERT_EQ(books.size(), 2U);
    EXPECT_EQ(books[0]->value(older::BookEntity::shelf), "top");
    books[0]->setValue(older::BookEntity::title, "Emma II");
    expectSaved(context);
    const auto history = context.execute({.after = Date::distantPast()});
    EXPECT_THAT(history->transactions[1].inserted.size(), 1U);  // of the entities it knows
  }
  Library now;
  const auto book = now.viewContext()->fetch<BookEntity>(bookRequest())->front();
  EXPECT_EQ(book->value(BookEntity::title), "Emma II");
  EXPECT_EQ(book->value(BookEntity::day), 7);
  EXPECT_EQ(book->value(BookEntity::tags).size(), 1U);
  EXPECT_THAT(findings(now), IsEmpty());
}

TEST(StoreFile, WhatCantBeOpenedIsToldAndLeftAlone) {
  const struct {
    void (*prepare)();
    StoreError::Kind kind;
  } cases[] = {
      {[] { std::ofstream(libraryPath()) << std::string(5000, 'x'); }, notADatabase},
      {[] { Shell().run("CREATE TABLE other (a)"); }, notADatabase},
      {[] { Shell().run("PRAGMA user_version = 99"); }, incompatible},
      {[] { std::filesystem::create_directory(libraryPath()); }, cannotOpen},
      {[] { std::filesystem::remove(libraryPath().parent_path()); }, cannotOpen},
  };
  for (const auto& [prepare, kind] : cases) {
    TestEnvironment environment;
    prepare();
    Library library;
    ASSERT_NE(library.error, nullptr);
    EXPECT_EQ(library.error->code(), code(kind)) << library.error->localizedDescription();
    EXPECT_THAT(library.persistentStoreCoordinator()->persistentStores(), IsEmpty());
    Context& context = *library.viewContext();
    EXPECT_EQ(codeOf(context.fetch(bookRequest())), code(notOpen));
    newBook(context, "Emma");
    EXPECT_EQ(codeOf(context.save()), code(notOpen));
    EXPECT_TRUE(context.hasChanges());
  }
}

/// The work of somebody who may write neither the folder nor the file.
template <typename Work>
void asStranger(Work work) {
  namespace fs = std::filesystem;
  const auto folder = libraryPath().parent_path();
  const auto mode = [](int bits) { return static_cast<fs::perms>(bits); };
  fs::permissions(folder.parent_path(), mode(0755));
  fs::permissions(folder, mode(0555));
  if (fs::exists(libraryPath())) fs::permissions(libraryPath(), mode(0444));
  EXPECT_TRUE(endedWell(startProcess([&] {
    // Permissions don't bind the root user.
    EXPECT_TRUE(geteuid() != 0 || seteuid(65534) == 0);
    work();
  })));
  fs::permissions(folder, mode(0755));
}

TEST(StoreFile, AFolderThatCantBeWrittenIsAnError) {
  TestEnvironment environment;
  // Without a watch, whose thread would be there when processes are started.
  const auto unwatched = NSPersistentStoreDescription::initWithURL(libraryPath());
  asStranger([&] { EXPECT_EQ(Library(unwatched).error->code(), code(cannotOpen)); });
  {
    Library library(unwatched);
    newBook(*library.viewContext(), "Emma");
    expectSaved(*library.viewContext());
  }
  asStranger([&] {
    const Library library(unwatched);
    ASSERT_NE(library.error, nullptr);
    EXPECT_THAT(library.error->code(), AnyOf(code(cannotOpen), code(readOnly)));
  });
  EXPECT_EQ(titles(*Library(unwatched).viewContext()), "Emma");
}

TEST(StoreFile, ABusyWriterIsAnError) {
  TestEnvironment environment;
  auto description = Library::fileDescription();
  description.timeout = 0;
  Library library(description);
  Context& context = *library.viewContext();
  newBook(context, "Emma");
  Shell other;
  other.run("BEGIN IMMEDIATE");
  EXPECT_EQ(codeOf(context.save()), code(busy));
  EXPECT_EQ(titles(context), "Emma");
  other.run("ROLLBACK");
  expectSaved(context);
}

TEST(StoreFile, ChecksFindWhatIsWrong) {
  TestEnvironment environment;
  Library library;
  Context& context = *library.viewContext();
  for (const char* title : {"One", "Two", "Three"}) {
    newBook(context, title);
    expectSaved(context);
  }
  EXPECT_THAT(findings(library), IsEmpty());
  Shell shell;
  shell.run("UPDATE Book SET author = 99 WHERE pk = 2");
  shell.run("DELETE FROM _history WHERE pk = 2");
  shell.run("INSERT INTO Tag (pk) VALUES (5)");
  EXPECT_THAT(
      findings(library),
      UnorderedElementsAre("a relation leads nowhere: Book 2 → Author",
                           "a relation leads nowhere: _change  → _history",
                           "history has a gap before 3", "Tag has a row beyond its last key: 5"));
}

/// A store with one change of every kind to be saved.
struct Scene {
  Library library;
  Context& context = *library.viewContext();

  explicit Scene(NSPersistentStoreDescription description = Library::fileDescription())
      : library(std::move(description)) {
    const auto author = context.insert<AuthorEntity>();
    newBook(context, "Old")->setValue(BookEntity::author, author);
    newBook(context, "Kept");
    expectSaved(context);
    context.deleteObject(*author);
    context.fetch<BookEntity>(bookRequest())->front()->setValue(BookEntity::title, "Changed");
    for (int i = 0; i < 20; ++i) newBook(context, "New")->setValue(BookEntity::scan, page);
    newBook(context, "New")->add(BookEntity::tags, context.insert<TagEntity>());
  }

  static std::string seenElsewhere() {
    Library other;
    EXPECT_THAT(findings(other), IsEmpty());
    const auto count = other.viewContext()->count(bookRequest()).value();
    const auto first =
        titles(*other.viewContext(), bookRequest(NSPredicate::format("title != 'New'")));
    const auto history = other.viewContext()->execute({.after = Date::distantPast()});
    return first + " " + std::to_string(count) + " in " +
           std::to_string(history->transactions.size());
  }

  static constexpr const char* before = "Kept Old 2 in 1";
  static constexpr const char* after = "Changed 22 in 2";
  inline static const Data page{std::string(3000, 'p')};
};

TEST(StoreFile, ADiskThatIsFullAtAnyWriteLeavesAllAsItWas) {
  for (int failAt = 1;; ++failAt) {
    TestEnvironment environment;
    Scene scene;
    bool failed = false;
    {
      FailingDisk disk(FailingDisk::Mode::full, failAt);
      const auto saved = scene.context.save();
      failed = disk.hasFailed();
      EXPECT_EQ(saved.has_value(), !failed);
    }
    if (!failed) {
      EXPECT_GT(failAt, 20);
      break;
    }
    EXPECT_TRUE(scene.context.hasChanges());
    EXPECT_EQ(scene.context.count(bookRequest()), 22U);
    EXPECT_EQ(Scene::seenElsewhere(), Scene::before) << failAt;
    expectSaved(scene.context);
    EXPECT_EQ(Scene::seenElsewhere(), Scene::after) << failAt;
  }
}

TEST(StoreFile, APowerCutAtAnyWriteLeavesAllOrNothing) {
  for (int failAt = 1;; ++failAt) {
    TestEnvironment environment;
    bool failed = false;
    bool wasSaved = false;
    {
      Scene scene;
      FailingDisk disk(FailingDisk::Mode::powerCut, failAt);
      wasSaved = scene.context.save().has_value();
      failed = disk.hasFailed();
      const auto copy = libraryPath().parent_path() / "copy";  // what is on the disk at that moment
      for (const char* suffix : {"", "-wal"}) {
        std::filesystem::copy_file(libraryPath().string() + suffix, copy.string() + suffix);
      }
    }
    const auto copy = libraryPath().parent_path() / "copy";
    std::filesystem::rename(copy, libraryPath());
    std::filesystem::rename(copy.string() + "-wal", libraryPath().string() + "-wal");
    std::filesystem::remove(libraryPath().string() + "-shm");
    // A commit whose last sync failed is no promise, but may have reached the disk.
    const char* otherwise = wasSaved ? Scene::after : Scene::before;
    EXPECT_THAT(Scene::seenElsewhere(), AnyOf(Scene::after, otherwise)) << failAt;
    if (!failed) break;
  }
}

}  // namespace
}  // namespace platform
