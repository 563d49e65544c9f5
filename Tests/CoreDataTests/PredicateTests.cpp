#include "SQLite/StoreError.h"
#include "Support/Library.h"

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
  Predicate<BookEntity> predicate;
  const char* titles;
};

using Author = AuthorEntity;
using B = BookEntity;
using Cover = CoverEntity;
using Texts = std::vector<std::string>;

std::vector<Case> cases(const Shelf& shelf) {
  const auto authorName = B::author / Author::name;
  const auto coverColor = B::cover / Cover::color;
  const Texts redOnly{"red"};
  return {
      {B::title.in(Texts{"a", "c", "z"}), "a c"},
      {B::title.in(Texts{}), ""},
      {!B::title.in(Texts{"a"}), "- b c"},
      {B::year.in(std::vector{1811, 1813}), "a b"},
      {B::title == std::nullopt, "-"},
      {B::title != std::nullopt && B::title != "b", "a c"},
      {B::rating != 4, "- a c"},
      {!(B::rating > 4), "- a b"},
      {!(B::rating > 4 || B::day == 0), "a b"},
      {B::isLent == true, "b"},
      {B::isLent == false && B::day != 3, "- a"},
      {B::day >= 1 && B::day < 3, "a b"},
      {B::day <= constant(2), "- a b"},
      {B::bought <= Date::sinceReferenceDate(2.5), "a b"},
      {B::weight > -1 && B::weight < 0.5, "- a b c"},
      {authorName.beginsWith("Ja"), "a b"},
      {authorName.beginsWith(""), "a b c"},
      {B::title.beginsWith("A"), ""},
      {B::isbn == "AB-2", "b c"},
      {!(B::isbn != "aB-1"), "a"},
      {B::isbn.in(Texts{"Ab-1", "z"}), "a"},
      {B::isbn > "ab-1", "b c"},
      {B::isbn.beginsWith("aB-2"), "b c"},
      {B::sequel / B::isbn == "AB-2" || B::author / any(Author::books) / B::isbn == "Ab-1", "a b"},
      {B::author == shelf.jane, "a b"},
      {B::author.in(std::vector{shelf.jane, shelf.mary}), "a b c"},
      {B::author.in(std::vector{shelf.mary, std::shared_ptr<Author>()}), "- c"},
      {B::author == nullptr, "-"},
      {B::cover != nullptr && coverColor.in(redOnly), "a"},
      {B::cover == *shelf.red, "a"},
      {coverColor == std::nullopt, "- b c"},
      {B::sequel / B::author / Author::name == "Jane", "a"},
      {any(B::tags).in(std::vector{shelf.y}), "a"},
      {any(B::tags) == shelf.x, "a b"},
      {!(any(B::tags) == shelf.y), "- b c"},
      {any(B::prequels) / B::day < 2, "b"},
      {B::author / any(Author::books) / B::rating == 4, "a b"},
      {anyOf<B>({}), ""},
      {allOf<B>({B::day > 0, B::day < 3}), "a b"},
      {!(coverColor == "red"), "- b c"},
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
  const auto check = [&](const std::vector<SortDescriptor<B>>& order, std::size_t limit,
                         const char* expected) {
    auto request = bookRequest(std::nullopt, order);
    request.setFetchLimit(limit);
    EXPECT_EQ(titles(context, request), expected);
    EXPECT_EQ(context.count(request), context.fetch(request)->size());
    request.setReturnsObjectsAsFaults(true);
    EXPECT_EQ(titles(context, request), expected);
  };
  const auto byDay = B::day.descending();
  const auto checkAll = [&] {
    check({byDay}, 0, "c b a -");
    check({(B::author / Author::name).ascending(), byDay}, 3, "- b a");
    check({B::rating.ascending(), B::title.descending()}, 2, "a -");
    check({B::bought.descending()}, 1, "b");
    check({B::isbn.descending(), B::title.ascending()}, 3, "b c a");
  };
  checkAll();
  expectSaved(context);
  checkAll();
  const auto d = newBook(context, "d", 4);
  check({byDay}, 2, "d c");
  context.deleteObject(*shelf.c);
  shelf.none->setValue(BookEntity::day, 9);
  check({byDay}, 2, "- d");
  check({byDay}, 3, "- d b");
}

template <typename Path, typename Value>
concept Compares = requires(const Path& path, const Value& value) {
  path == value;
  path >= value;
};

TEST(Predicate, DoesNotCompileForAnotherTypeOrEntity) {
  const auto compares = []<typename Path, typename Value>(const Path&, const Value&) {
    return Compares<Path, Value>;
  };
  EXPECT_TRUE(compares(B::title, "a") && compares(B::title, std::nullopt));
  EXPECT_TRUE(compares(B::weight, 1) && compares(B::rating, 4) && compares(B::isLent, true));
  EXPECT_FALSE(compares(B::title, 1) || compares(B::day, "1") || compares(B::day, 1.5));
  EXPECT_FALSE(compares(B::isLent, 1) || compares(B::copies, true));
  EXPECT_FALSE(compares(B::day, std::nullopt) || compares(B::title, nullptr));
  EXPECT_FALSE(compares(B::author, Book()) || compares(B::tags, std::shared_ptr<TagEntity>()));
  EXPECT_FALSE(compares(B::day, B::copies));
  const auto joins = [](const auto& one, const auto& other) {
    return requires {
      one&& other;
    };
  };
  const auto leads = [](const auto& one, const auto& other) {
    return requires {
      one / other;
    };
  };
  EXPECT_TRUE(joins(B::day == 1, B::day == 2) && leads(B::author, Author::name));
  EXPECT_FALSE(joins(B::day == 1, Author::name == "Jane") || leads(B::author, Cover::color));
  EXPECT_FALSE(leads(B::tags, TagEntity::word) ||
               leads(B::author / any(Author::books), any(B::tags)));
}

TEST(Predicate, RefusesNamesThatAnotherModelDoesNotHave) {
  VirtualEnvironment environment;
  Library library;
  NSEntityDescription elsewhere{"Elsewhere"};
  const DeclaredBy<BookEntity>::Attribute<std::int32_t> pages{elsewhere, "pages"};
  const auto found = library.viewContext()->fetch(bookRequest(pages == 1));
  ASSERT_FALSE(found);
  EXPECT_EQ(found.error()->code(), 134060);
  EXPECT_FALSE(library.viewContext()->fetch(NSFetchRequest("Shelf")));
}

}  // namespace
}  // namespace platform
