#include "CoreDataTests/FailingDisk.h"
#include "SQLite/StoreError.h"
#include "Support/Library.h"
#include "Support/Processes.h"

#include <fstream>
#include <iterator>
#include <map>

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
  Shell() {
    sqlite3_open(libraryPath().c_str(), &handle_);
    sqlite3_busy_timeout(handle_, 5000);
  }
  Shell(const Shell&) = delete;
  Shell& operator=(const Shell&) = delete;
  ~Shell() { sqlite3_close(handle_); }

  void run(const char* sql) {
    EXPECT_EQ(sqlite3_exec(handle_, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sql;
  }
  std::string text(const char* sql) {
    std::string value;
    const auto keep = [](void* into, int, char** values, char**) {
      *static_cast<std::string*>(into) = values[0];
      return 0;
    };
    EXPECT_EQ(sqlite3_exec(handle_, sql, keep, &value, nullptr), SQLITE_OK) << sql;
    return value;
  }

 private:
  sqlite3* handle_ = nullptr;
};

using Files = std::map<std::string, std::size_t>;

/// What lies in the library's folder, by hashes of the bytes.
Files files() {
  Files all;
  std::error_code ignored;
  for (const auto& entry :
       std::filesystem::directory_iterator(libraryPath().parent_path(), ignored)) {
    if (!entry.is_regular_file()) continue;
    std::ifstream file(entry.path());
    all[entry.path().filename()] =
        std::hash<std::string>{}(std::string(std::istreambuf_iterator<char>(file), {}));
  }
  return all;
}

/// The library as it lies there when a program with the file open is killed.
template <typename Program>
void leaveWithLog(Program program) {
  const auto kept = libraryPath().parent_path() / "kept";
  program([&] {
    for (const char* suffix : {"", "-wal"}) {
      std::filesystem::copy_file(libraryPath().string() + suffix, kept.string() + suffix);
    }
  });
  for (const char* suffix : {"", "-wal"}) {
    std::filesystem::rename(kept.string() + suffix, libraryPath().string() + suffix);
  }
}

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
  VirtualEnvironment environment;
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
      {[] { Shell().run("PRAGMA application_id = 7"); }, notADatabase},
      {[] {
         leaveWithLog([](auto leave) {
           Shell other;
           other.run("PRAGMA journal_mode = WAL");
           other.run("CREATE TABLE other (a)");
           leave();
         });
       },
       notADatabase},
      {[] { Shell().run("PRAGMA user_version = 99"); }, incompatible},
      {[] { std::filesystem::create_directory(libraryPath()); }, cannotOpen},
      {[] { std::filesystem::remove(libraryPath().parent_path()); }, cannotOpen},
  };
  for (const auto& [prepare, kind] : cases) {
    VirtualEnvironment environment;
    prepare();
    const Files before = files();
    Library library;
    EXPECT_EQ(files(), before);
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
  VirtualEnvironment environment;
  asStranger([&] { EXPECT_EQ(Library(unwatched()).error->code(), code(cannotOpen)); });
  saveBook("Emma");
  asStranger([&] {
    const Library library(unwatched());
    ASSERT_NE(library.error, nullptr);
    EXPECT_THAT(library.error->code(), AnyOf(code(cannotOpen), code(readOnly)));
  });
  EXPECT_EQ(titles(*Library(unwatched()).viewContext()), "Emma");
}

TEST(StoreFile, IsLookedAtWithoutATrace) {
  const struct {
    void (*prepare)();
    const char* titles;
  } cases[] = {
      {[] { saveBook("Emma"); }, "Emma"},
      {[] {
         leaveWithLog([](auto leave) {
           Library library(unwatched());
           newBook(*library.viewContext(), "Persuasion");
           expectSaved(*library.viewContext());
           leave();
         });
       },
       "Persuasion"},
      {[] {
         Library old(unwatched(), older::model());
         old.viewContext()->insert<older::BookEntity>()->setValue(older::BookEntity::title, "Old");
         expectSaved(*old.viewContext());
       },
       "Old"},
      {[] {
         saveBook("Unmarked");
         Shell().run("PRAGMA application_id = 0");
       },
       "Unmarked"},
  };
  for (const auto& [prepare, expected] : cases) {
    VirtualEnvironment environment;
    prepare();
    const Files before = files();
    {
      auto atRest = unwatched();
      atRest.access = StoreAccess::atRest;
      Library library(atRest);
      EXPECT_EQ(titles(*library.viewContext()), expected);
      EXPECT_EQ(titles(*library.viewContext(), bookRequest(BookEntity::year == 0)), "");
      EXPECT_EQ(library.viewContext()->count(NSFetchRequest("Cover")), 0U);
      EXPECT_THAT(findings(library), IsEmpty());
      newBook(*library.viewContext(), "New");
      EXPECT_EQ(codeOf(library.viewContext()->save()), code(readOnly));
      EXPECT_EQ(files(), before);
      EXPECT_FALSE(library.persistentStoreCoordinator()->hasBeenWritten());
      saveBook("Newer");
      EXPECT_TRUE(library.persistentStoreCoordinator()->hasBeenWritten());
    }
    EXPECT_EQ(Shell().text("PRAGMA application_id"), "1986818671");
    EXPECT_THAT(titles(*Library().viewContext()), testing::HasSubstr("Newer"));
  }
}

TEST(StoreFile, AnotherFileOfTheNameIsOpenedAndTheOldOneForgotten) {
  VirtualEnvironment environment;
  const auto folder = libraryPath().parent_path();
  Library library;
  Context& context = *library.viewContext();
  newBook(context, "Old");
  expectSaved(context);
  const auto backup = folder / "backup.sqlite";
  saveBook("Backup", 0, NSPersistentStoreDescription::initWithURL(backup));
  std::filesystem::rename(libraryPath(), folder / "aside");
  EXPECT_EQ(codeOf(context.fetch(bookRequest())), code(cannotOpen));
  EXPECT_FALSE(std::filesystem::exists(libraryPath()));
  std::filesystem::rename(backup, libraryPath());
  EXPECT_EQ(titles(context), "Backup");
  newBook(context, "New");
  expectSaved(context);
  EXPECT_EQ(titles(*Library().viewContext()), "Backup New");
  EXPECT_THAT(findings(library), IsEmpty());
}

/// With the log of a store in use, and the log's mark, which names the file that was copied.
TEST(StoreFile, ACopyOfTheFolderIsAStoreOfItsOwn) {
  VirtualEnvironment environment;
  Library library;
  newBook(*library.viewContext(), "Log");
  expectSaved(*library.viewContext());
  const std::string folder = libraryPath().parent_path(), copied = folder + "-copy";
  ASSERT_EQ(std::system(("cp -a '" + folder + "' '" + copied + "'").c_str()), 0);
  const auto in = NSPersistentStoreDescription::initWithURL;
  Library copy(in(copied + "/library.sqlite"));
  newBook(*copy.viewContext(), "There");
  expectSaved(*copy.viewContext());
  EXPECT_EQ(titles(*copy.viewContext()), "Log There");
  EXPECT_EQ(titles(*Library().viewContext()), "Log");
  // The mark now names the copy, so that a file in its place does without the log.
  saveBook("Backup", 0, in(copied + "/backup.sqlite"));
  std::filesystem::rename(copied + "/backup.sqlite", copied + "/library.sqlite");
  EXPECT_EQ(titles(*Library(in(copied + "/library.sqlite")).viewContext()), "Backup");
}

TEST(StoreFile, DoesWithoutTheFileOfHints) {
  VirtualEnvironment environment;
  const auto folder = libraryPath().parent_path();
  std::filesystem::create_directory(libraryPath().string() + "-changes");
  const auto link = folder / "link.sqlite";
  saveBook("Emma", 0, Library::fileDescription());
  std::filesystem::remove(libraryPath().string() + "-changes");
  std::filesystem::create_symlink(libraryPath(), link);
  auto description = Library::fileDescription();
  description.url = link;
  EXPECT_EQ(titles(*Library(description).viewContext()), "Emma");
  EXPECT_TRUE(std::filesystem::exists(libraryPath().string() + "-changes"));
  EXPECT_FALSE(std::filesystem::exists(link.string() + "-changes"));
}

TEST(StoreFile, HistoryIsKeptForABoundedTime) {
  VirtualEnvironment environment;
  Library library;
  Context& context = *library.viewContext();
  const Date begin = Date::now();
  const auto saveAt = [&](double day) {
    environment.setNow(begin + day * 86400);
    newBook(context, "A book");
    expectSaved(context);
  };
  for (int i = 0; i < 100; ++i) saveAt(i * 0.5);
  const auto kept = [&](double after) {
    return context.execute({.after = begin + after * 86400}).value();
  };
  EXPECT_EQ(kept(-1).transactions.size(), 100U);
  EXPECT_TRUE(kept(-1).isComplete);
  saveAt(100);
  EXPECT_EQ(kept(-1).transactions.size(), 81U);
  for (int i = 0; i < 20; ++i) saveAt(110);
  const auto left = kept(-1);
  EXPECT_EQ(left.transactions.front().timestamp, begin + 20 * 86400);
  EXPECT_FALSE(left.isComplete);
  EXPECT_TRUE(kept(20).isComplete);
  saveAt(400);  // not all at once
  EXPECT_EQ(kept(-1).transactions.size(), left.transactions.size() - 31);
  EXPECT_THAT(findings(library), IsEmpty());
}

TEST(StoreFile, ABusyWriterIsAnError) {
  VirtualEnvironment environment;
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
  VirtualEnvironment environment;
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
  for (const char* keys : {"1-99999999999", "1-4", "2-1", "3,2", "0", "-1", "x", "1,", ""}) {
    shell.run(("UPDATE _change SET keys = '" + std::string(keys) + "' WHERE history = 3").c_str());
    const auto history = context.execute({.after = Date::distantPast()}).value();
    ASSERT_NE(history.damage, nullptr) << keys;
    EXPECT_THAT(history.damage->localizedDescription(), testing::HasSubstr(keys));
    EXPECT_TRUE(history.transactions[1].inserted.empty() && !history.isComplete);
    EXPECT_THAT(findings(library),
                testing::Contains("history can't be read: 3 Book " + std::string(keys)));
  }
  shell.run("UPDATE _change SET keys = '3' WHERE history = 3");
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
    const auto first = titles(*other.viewContext(), bookRequest(BookEntity::title != "New"));
    const auto history = other.viewContext()->execute({.after = Date::distantPast()});
    return first + " " + std::to_string(count) + " in " +
           std::to_string(history->transactions.size());
  }

  static constexpr const char* before = "Kept Old 2 in 1";
  static constexpr const char* after = "Changed 22 in 2";
  inline static const Data page{std::string(3000, 'p')};
};

TEST(StoreFile, AFullDiskCanBeReadFrom) {
  VirtualEnvironment environment;
  saveBook("Emma");
  Library library;
  Context& context = *library.viewContext();
  {
    FailingDisk disk(FailingDisk::Mode::noRoomForIndex, 1);
    Library other(unwatched());
    ASSERT_EQ(other.error, nullptr);
    EXPECT_EQ(titles(*other.viewContext()), "Emma");
    newBook(*other.viewContext(), "Persuasion");
    EXPECT_EQ(codeOf(other.viewContext()->save()), code(diskFull));
  }
  EXPECT_EQ(titles(context), "Emma");
}

TEST(StoreFile, ADiskThatIsFullAtAnyWriteLeavesAllAsItWas) {
  using enum FailingDisk::Mode;
  for (int failAt = 1;; ++failAt) {
    VirtualEnvironment environment;
    Scene scene;
    bool failed = false;
    {
      FailingDisk disk(failAt % 2 == 0 ? full : overQuota, failAt);
      const auto saved = scene.context.save();
      failed = disk.hasFailed();
      EXPECT_EQ(codeOf(saved), failed ? code(diskFull) : 0);
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
    VirtualEnvironment environment;
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
