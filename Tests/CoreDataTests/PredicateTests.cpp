#include "CoreData/Store/StoreError.h"
#include "CoreDataTests/Library.h"

namespace platform {
namespace {

/// Four books, in files and in memory:
///
///     title  year  day  isLent  rating  bought  author  cover  tags     sequel  isbn
///     a      1811  1    no      -       1       Jane    red    x, y     b       AB-1
///     b      1813  2    yes     4       2.5     Jane    -      x        -       ab-2
///     c      1900  3    no      5       -       Mary    -      -        -       AB-2
///     -      1900  0    no      -       -       -       -      -        -       -
struct Shelf {
  explicit Shelf(Context& context) {
    const auto author = [&](const char* name) {
      auto one = context.insert<AuthorEntity>();
      one->setValue(AuthorEntity::name, name);
      return one;
    };
    jane = author("Jane");
    mary = author("Mary");
    x = context.insert<TagEntity>();
    y = context.insert<TagEntity>();
    a = newBook(context, "a", 1);
    b = newBook(context, "b", 2);
    c = newBook(context, "c", 3);
    none = context.insert<BookEntity>();
    a->setValue(BookEntity::isbn, "AB-1");
    b->setValue(BookEntity::isbn, "ab-2");
    c->setValue(BookEntity::isbn, "AB-2");
    a->setValue(BookEntity::year, 1811);
    b->setValue(BookEntity::year, 1813);
    b->setValue(BookEntity::isLent, true);
    b->setValue(BookEntity::rating, 4);
    c->setValue(BookEntity::rating, 5);
    a->setValue(BookEntity::bought, Date::sinceReferenceDate(1));
    b->setValue(BookEntity::bought, Date::sinceReferenceDate(2.5));
    a->setValue(BookEntity::author, jane);
    b->setValue(BookEntity::author, jane);
    c->setValue(BookEntity::author, mary);
    a->setValue(BookEntity::sequel, b);
    red = context.insert<CoverEntity>();
    red->setValue(CoverEntity::color, "red");
    red->setValue(CoverEntity::book, a);
    a->add(BookEntity::tags, x);
    a->add(BookEntity::tags, y);
    b->add(BookEntity::tags, x);
  }

  std::shared_ptr<AuthorEntity> jane, mary;
  std::shared_ptr<TagEntity> x, y;
  Book a, b, c, none;
  std::shared_ptr<CoverEntity> red;
};

struct Case {
  NSPredicate predicate;
  const char* titles;
};

std::vector<Case> cases(const Shelf& shelf) {
  const auto is = [](const char* format, const std::vector<PredicateArgument>& arguments = {}) {
    return NSPredicate::format(format, arguments);
  };
  using Texts = std::vector<std::string>;
  return {
      {is("%K IN %@", {"title", Texts{"a", "c", "z"}}), "a c"},
      {is("%K IN %@", {"title", std::vector<PredicateArgument>{"a", nullptr}}), "- a"},
      {is("%K IN %@", {"title", Texts{}}), ""},
      {is("NOT (%K IN %@)", {"title", Texts{"a"}}), "- b c"},
      {is("year IN {1811, 1813}"), "a b"},
      {is("%K = nil", {"title"}), "-"},
      {is("%K != nil AND %K != %@", {"title", "title", "b"}), "a c"},
      {is("rating != 4"), "- a c"},
      {is("NOT rating > 4"), "- a b"},
      {is("not (rating > 4 or day == 0)"), "a b"},
      {is("%K = %@", {"isLent", true}), "b"},
      {is("isLent = NO && day <> 3"), "- a"},
      {is("%K >= %@ AND %K < %@", {"day", 1, "day", 3}), "a b"},
      {is("%K <= 2", {"day"}), "- a b"},
      {is("%K <= %@", {"bought", Date::sinceReferenceDate(2.5)}), "a b"},
      {is("bought > 1.25"), "b"},
      {is("%K BEGINSWITH %@", {"author.name", "Ja"}), "a b"},
      {is("author.name endswith 'ry'"), "c"},
      {is("author.name ENDSWITH ''"), "a b c"},
      {is("author.name CONTAINS \"an\""), "a b"},
      {is("title BEGINSWITH 'A'"), ""},
      {is("isbn = 'AB-2'"), "b c"},
      {is("NOT isbn != 'aB-1'"), "a"},
      {is("%K IN %@", {"isbn", Texts{"Ab-1", "z"}}), "a"},
      {is("isbn > 'ab-1'"), "b c"},
      {is("isbn BEGINSWITH 'aB' AND isbn ENDSWITH 'B-2' AND isbn CONTAINS 'b-'"), "b c"},
      {is("sequel.isbn = 'AB-2' OR ANY author.books.isbn = 'Ab-1'"), "a b"},
      {is("%K = %@", {"author", shelf.jane}), "a b"},
      {is("author IN %@", {std::vector{shelf.jane, shelf.mary}}), "a b c"},
      {is("author = NULL"), "-"},
      {is("cover != nil AND cover.color IN %@", {Texts{"red"}}), "a"},
      {is("cover = %@", {shelf.red}), "a"},
      {is("cover.color = nil"), "- b c"},
      {is("sequel.author.name = author.name"), "- a"},
      {is("sequel.title > title"), "a"},
      {is("ANY tags IN %@", {std::vector{shelf.y}}), "a"},
      {is("ANY tags = %@", {shelf.x}), "a b"},
      {is("NOT (ANY tags = %@)", {shelf.y}), "- b c"},
      {is("ANY prequels.day < 2"), "b"},
      {is("ANY author.books.rating = 4"), "a b"},
      {is("tags.@count > 1 OR prequels.@count = 1"), "a b"},
      {is("author.books.@count = 2"), "a b"},
      {is("SELF = %@", {shelf.c}), "c"},
      {is("TRUEPREDICATE"), "- a b c"},
      {NSCompoundPredicate::orPredicateWithSubpredicates({}), ""},
      {NSCompoundPredicate::andPredicateWithSubpredicates({is("day > 0"), is("day < 3")}), "a b"},
      {NSCompoundPredicate::notPredicateWithSubpredicate(is("cover.color = 'red'")), "- b c"},
  };
}

/// A predicate says the same of rows and of objects in memory.
TEST(Predicate, FindsTheSameInTheFileAndInMemory) {
  VirtualEnvironment environment;
  Library library;
  Context& context = *library.viewContext();
  const Shelf shelf(context);
  const auto check = [&](const char* where) {
    for (std::size_t i = 0; const auto& [predicate, expected] : cases(shelf)) {
      const auto request = bookRequest(predicate);
      EXPECT_EQ(titles(context, request), expected) << where << ", case " << i++;
      EXPECT_EQ(context.count(request).value(), context.fetch(request)->size());
    }
  };
  check("unsaved");
  expectSaved(context);
  check("saved");
  for (const auto& book : {shelf.a, shelf.none}) book->setValue(BookEntity::copies, 1);
  check("partly changed");
  shelf.red->setValue(CoverEntity::color, "blue");
  expectSaved(context);
  shelf.red->setValue(CoverEntity::color, "red");
  shelf.b->remove(BookEntity::tags, shelf.x);
  shelf.b->add(BookEntity::tags, shelf.x);
  const auto other = context.insert<TagEntity>();
  shelf.b->add(BookEntity::tags, other);
  shelf.b->remove(BookEntity::tags, other);
  check("changed at the other end");
}

TEST(Predicate, SortsAndLimitsAcrossUnsavedChanges) {
  VirtualEnvironment environment;
  Library library;
  Context& context = *library.viewContext();
  const Shelf shelf(context);
  const auto check = [&](std::vector<NSSortDescriptor> order, std::size_t limit,
                         const char* expected) {
    auto request = bookRequest(std::nullopt, std::move(order));
    request.setFetchLimit(limit);
    EXPECT_EQ(titles(context, request), expected);
    EXPECT_EQ(context.count(request), context.fetch(request)->size());
    request.setReturnsObjectsAsFaults(true);
    EXPECT_EQ(titles(context, request), expected);
  };
  const auto checkAll = [&] {
    check({{"day", false}}, 0, "c b a -");
    check({{"author.name"}, {"day", false}}, 3, "- b a");
    check({{"rating"}, {"title", false}}, 2, "a -");
    check({{"bought", false}}, 1, "b");
    check({{"isbn", false}, {"title"}}, 3, "b c a");
  };
  checkAll();
  expectSaved(context);
  checkAll();
  const auto d = newBook(context, "d", 4);
  check({{"day", false}}, 2, "d c");
  context.deleteObject(*shelf.c);
  shelf.none->setValue(BookEntity::day, 9);
  check({{"day", false}}, 2, "- d");
  check({{"day", false}}, 3, "- d b");
}

TEST(Predicate, RefusesWhatItCantRead) {
  VirtualEnvironment environment;
  Library library;
  for (const char* format : {"", "day", "day =", "day ~ 3", "day = 3 day = 4", "(day = 3",
                             "day = 'x", "%K = %@", "NOT", "day IN {1, 2", "3 = day", "day = 1x"}) {
    EXPECT_THROW((void)NSPredicate::format(format), StoreError) << format;
  }
  EXPECT_THROW((void)NSPredicate::format("day = 1", {1}), StoreError);
  for (const char* format : {"pages = 1", "day.year = 1", "tags = nil", "ANY author = nil",
                             "ANY author.books.tags = nil", "author.@count = 1"}) {
    const auto found = library.viewContext()->fetch(bookRequest(NSPredicate::format(format)));
    ASSERT_FALSE(found) << format;
    EXPECT_EQ(found.error()->code(), 134060) << format;
  }
  EXPECT_FALSE(library.viewContext()->fetch(NSFetchRequest("Shelf")));
}

}  // namespace
}  // namespace platform
