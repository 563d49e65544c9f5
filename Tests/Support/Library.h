#pragma once

#include "CoreData/Context/NSManagedRow.h"
#include "CoreData/Context/NSPersistentContainer.h"
#include "CoreData/Model/EntityClass.h"
#include "Foundation/Process/VirtualEnvironment.h"

#include <gtest/gtest.h>

namespace platform {

// A small model of every kind of property and relation.

struct Summary {
  int pages = 0;
};

class AuthorEntity;
class BookEntity;
class CoverEntity;
class TagEntity;

class AuthorEntity : public EntityClass<AuthorEntity> {
 public:
  inline static auto description = NSEntityDescription::of<AuthorEntity>();
  inline static const Attribute<std::optional<std::string>> name{description, "name"};
  inline static const ToMany<BookEntity> books{description, "books", "author",
                                               NSDeleteRule::cascade};
};

class BookEntity : public EntityClass<BookEntity> {
 public:
  inline static auto description = NSEntityDescription::of<BookEntity>();
  inline static const Attribute<std::optional<std::string>> title{description, "title"};
  inline static const Attribute<std::int16_t> year{description, "year", 1900};
  inline static const Attribute<std::int32_t> day{description, "day"};
  inline static const Attribute<std::int64_t> copies{description, "copies"};
  inline static const Attribute<bool> isLent{description, "isLent"};
  inline static const Attribute<double> weight{description, "weight"};
  inline static const Attribute<std::optional<std::int64_t>> rating{description, "rating"};
  inline static const Attribute<std::optional<Date>> bought{description, "bought"};
  inline static const Attribute<std::optional<Data>> scan{description, "scan"};
  inline static const Attribute<std::optional<UUID>> id{description, "id"};
  inline static const Attribute<std::optional<std::string>> isbn{description, "isbn", std::nullopt,
                                                                 TextComparison::withoutCase};
  inline static const TransformableAttribute<Summary> summary{description, "summary", "Summary"};
  inline static const ToOne<AuthorEntity> author{description, "author", "books"};
  inline static const ToOne<CoverEntity> cover{description, "cover", "book", NSDeleteRule::cascade};
  inline static const ToMany<TagEntity> tags{description, "tags", "books"};
  inline static const ToOne<BookEntity> sequel{description, "sequel", "prequels"};
  inline static const ToMany<BookEntity> prequels{description, "prequels", "sequel"};
  inline static const FetchIndex byDay{description, {"author", "-day", "-bought"}};
};

class CoverEntity : public EntityClass<CoverEntity> {
 public:
  inline static auto description = NSEntityDescription::of<CoverEntity>();
  inline static const Attribute<std::optional<std::string>> color{description, "color"};
  inline static const ToOne<BookEntity> book{description, "book", "cover"};
};

class TagEntity : public EntityClass<TagEntity> {
 public:
  inline static auto description = NSEntityDescription::of<TagEntity>();
  inline static const Attribute<std::optional<std::string>> word{description, "word"};
  inline static const ToMany<BookEntity> books{description, "books", "tags"};
};

inline const NSManagedObjectModel& libraryModel() {
  static const NSManagedObjectModel model({&AuthorEntity::description, &BookEntity::description,
                                           &CoverEntity::description, &TagEntity::description});
  return model;
}

using Context = NSManagedObjectContext;
using Book = std::shared_ptr<BookEntity>;

inline std::filesystem::path libraryPath() {
  return Environment::current().directories().temporary / "library.sqlite";
}

/// No other thread knows of a store without a watch: it is closed when its container goes, and
/// processes may be started.
inline NSPersistentStoreDescription unwatched() {
  return NSPersistentStoreDescription::initWithURL(libraryPath());
}

/// A container on the library's file, with a view context that merges as the program's does.
class Library : public NSPersistentContainer {
 public:
  explicit Library(NSPersistentStoreDescription description = fileDescription(),
                   const NSManagedObjectModel& model = libraryModel())
      : NSPersistentContainer("Library", model) {
    setPersistentStoreDescriptions({std::move(description)});
    loadPersistentStores([this](const auto&, const ErrorPtr& problem) { error = problem; });
    viewContext()->setMergePolicy(NSMergePolicy::mergeByPropertyObjectTrump);
  }

  static NSPersistentStoreDescription fileDescription() {
    auto description = NSPersistentStoreDescription::initWithURL(libraryPath());
    description.setOption(true, NSPersistentStoreRemoteChangeNotificationPostOptionKey);
    return description;
  }

  std::shared_ptr<NSManagedObjectContext> newBackgroundContext() override {
    auto context = NSPersistentContainer::newBackgroundContext();
    context->setMergePolicy(NSMergePolicy::mergeByPropertyObjectTrump);
    return context;
  }

  ErrorPtr error;
};

inline void expectSaved(Context& context) {
  const auto saved = context.save();
  EXPECT_TRUE(saved) << saved.error()->localizedDescription();
}

inline Book newBook(Context& context, const char* title, int day = 0) {
  auto book = context.insert<BookEntity>();
  book->setValue(BookEntity::title, title);
  book->setValue(BookEntity::day, day);
  return book;
}

inline NSFetchRequest bookRequest(std::optional<Predicate<BookEntity>> predicate = std::nullopt,
                                  const std::vector<SortDescriptor<BookEntity>>& order = {
                                      BookEntity::title.ascending()}) {
  return NSFetchRequest::of<BookEntity>(std::move(predicate), order);
}

inline Book find(Context& context, const char* title) {
  return context.fetch<BookEntity>(bookRequest(BookEntity::title == title)).value().front();
}

/// Makes a store of one book.
inline void saveBook(const char* title, int day = 0,
                     NSPersistentStoreDescription description = unwatched()) {
  Library library(std::move(description));
  newBook(*library.viewContext(), title, day);
  expectSaved(*library.viewContext());
}

/// The titles of what a request finds, with blanks between them: of objects, and of rows.
inline std::string titles(Context& context, const NSFetchRequest& request) {
  const auto books = context.fetch<BookEntity>(request);
  if (!books) return books.error()->localizedDescription();
  std::string all;
  for (const auto& book : *books) {
    all += (all.empty() ? "" : " ") + book->value(BookEntity::title).value_or("-");
  }
  std::string ofRows;
  EXPECT_TRUE(context.readRows(request, {BookEntity::title.slot()}, [&](const NSManagedRow& row) {
    ofRows += (ofRows.empty() ? "" : " ") + row.value(BookEntity::title).value_or("-");
  }));
  EXPECT_EQ(ofRows, all);
  return all;
}

inline std::string titles(Context& context) {
  return titles(context, bookRequest());
}

}  // namespace platform
