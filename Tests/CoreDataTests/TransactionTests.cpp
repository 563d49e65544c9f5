#include "CoreDataTests/FailingDisk.h"
#include "SQLite/StoreError.h"
#include "Support/Library.h"

namespace platform {
namespace {

Result<void> loanAgain(const Book& book) {
  book->setValue(BookEntity::copies, book->value(BookEntity::copies) + 1);
  return {};
}

std::int64_t copiesElsewhere() {
  Library library;
  return library.viewContext()
      ->fetch<BookEntity>(bookRequest())
      ->front()
      ->value(BookEntity::copies);
}

/// A store with one object of every kind, and what a transaction makes of all that it reads.
struct Shelf {
  Library library;
  Context& context = *library.viewContext();

  static void fill() {
    Library library;
    Context& context = *library.viewContext();
    const auto book = newBook(context, "Old");
    book->setValue(BookEntity::author, context.insert<AuthorEntity>());
    book->setValue(BookEntity::cover, context.insert<CoverEntity>());
    book->add(BookEntity::tags, context.insert<TagEntity>());
    expectSaved(context);
  }

  /// By the lenient forms alone, for which what can't be read is empty.
  Result<void> count(const std::shared_ptr<AuthorEntity>& author) {
    std::size_t number = author->value(AuthorEntity::books).size();
    for (const auto& book : author->value(AuthorEntity::books)) {
      number += book->value(BookEntity::tags).size();
      const auto cover = book->value(BookEntity::cover);
      if (cover != nullptr && !cover->value(CoverEntity::color)) ++number;
    }
    number += context.count(bookRequest()).value_or(0);
    author->setValue(AuthorEntity::name, std::to_string(number));
    newBook(context, "New");
    return context.save();  // left to the transaction
  }

  static std::string seenElsewhere() {
    Library library;
    const auto authors = library.viewContext()->fetch<AuthorEntity>(NSFetchRequest("Author"));
    return titles(*library.viewContext()) + " " +
           authors->front()->value(AuthorEntity::name).value_or("-");
  }
};

TEST(StoreTransaction, NothingIsSavedWhenAnyReadInItFails) {
  VirtualEnvironment environment;
  Shelf::fill();
  bool failed = true;
  for (int failAt = 1; failed; ++failAt) {
    Shelf shelf;
    const auto author = shelf.context.fetch<AuthorEntity>(NSFetchRequest("Author"))->front();
    {
      FailingDisk disk(FailingDisk::Mode::unreadable, failAt);
      const auto done = shelf.context.performTransaction([&] { return shelf.count(author); });
      failed = disk.hasFailed();
      EXPECT_EQ(done.has_value(), !failed) << failAt;
    }
    EXPECT_FALSE(shelf.context.hasChanges());
    EXPECT_EQ(Shelf::seenElsewhere(), failed ? "Old -" : "New Old 4") << failAt;
    EXPECT_TRUE(failed || failAt > 5);
  }
}

TEST(StoreTransaction, AFailureWithinTakesAllBackAndIsTold) {
  VirtualEnvironment environment;
  Library library;
  Context& context = *library.viewContext();
  const auto book = newBook(context, "Kept");
  expectSaved(context);
  const auto fail = []() -> Result<void> { return failure<Error>("test", 7, "no"); };
  const auto code = [](const Result<void>& done) { return done ? 0 : done.error()->code(); };

  // Whoever asks for a transaction within one may overlook that it failed.
  EXPECT_EQ(code(context.performTransaction([&] {
              (void)context.performTransaction(fail);
              return loanAgain(book);
            })),
            7);
  EXPECT_THROW((void)context.performTransaction([&]() -> Result<void> {
    (void)loanAgain(book);
    throw std::out_of_range("no");
  }),
               std::out_of_range);
  EXPECT_EQ(code(context.performTransaction([&] {
              (void)loanAgain(book);
              (void)context.count(NSFetchRequest("Nothing"));
              return context.save();
            })),
            134060);
  const auto other = library.newBackgroundContext();
  EXPECT_EQ(code(context.performTransaction(
                [&] { return other->performTransaction([&] { return Result<void>(); }); })),
            134090);
  EXPECT_EQ(copiesElsewhere(), 0);
  EXPECT_EQ(book->value(BookEntity::copies), 0);

  // After all of that it works, and one within another is a part of it.
  EXPECT_TRUE(context.performTransaction([&] {
    EXPECT_TRUE(context.performTransaction([&] { return loanAgain(book); }));
    return loanAgain(book);
  }));
  EXPECT_EQ(copiesElsewhere(), 2);
  EXPECT_EQ(context.execute({.after = Date::distantPast()})->transactions.size(), 2U);
}

TEST(StoreTransaction, DefaultsThatStandForAnUnreadableRowAreNeverSaved) {
  VirtualEnvironment environment;
  const auto id = [] {
    Library library;
    const auto book = newBook(*library.viewContext(), "Kept", 5);
    book->setValue(BookEntity::copies, 3);
    expectSaved(*library.viewContext());
    return book->objectID();
  }();
  Library library;
  const auto book = std::static_pointer_cast<BookEntity>(library.viewContext()->objectWithID(id));
  const auto whileUnreadable = [](auto work) {
    const FailingDisk disk(FailingDisk::Mode::unreadable, 1);
    work();
    EXPECT_TRUE(disk.hasFailed());
  };
  whileUnreadable([&] { book->setValue(BookEntity::copies, 0); });  // what is there, as it seems
  whileUnreadable([&] { EXPECT_EQ(book->value(BookEntity::day), 0); });
  EXPECT_EQ(book->value(BookEntity::copies), 0);
  expectSaved(*library.viewContext());
  EXPECT_EQ(book->value(BookEntity::day), 5);
  EXPECT_EQ(copiesElsewhere(), 0);
}

TEST(StoreTransaction, WhatIsWrittenWithinItIsSavedWithItOrNotAtAll) {
  VirtualEnvironment environment;
  Shelf::fill();
  for (const bool fails : {true, false}) {
    Library library;
    Context& context = *library.viewContext();
    Book added;
    const auto done = context.performTransaction([&]() -> Result<void> {
      const auto old = context.fetch<BookEntity>(bookRequest())->front();
      old->setValue(BookEntity::copies, 7);
      old->setValue(BookEntity::cover, nullptr);
      added = newBook(context, "Added");
      const auto gone = newBook(context, "Gone");
      EXPECT_TRUE(context.writePending());
      EXPECT_FALSE(context.hasChanges());
      EXPECT_FALSE(added->objectID().isTemporaryID());
      context.deleteObject(*gone);
      added->setValue(BookEntity::copies, 3);
      EXPECT_TRUE(context.writePending());
      EXPECT_EQ(titles(context), "Added Old");
      EXPECT_EQ(Shelf::seenElsewhere(), "Old -");
      if (fails) return failure<StoreError>(StoreError::Kind::busy, "enough");
      added->setValue(BookEntity::title, "Last");
      return {};
    });
    EXPECT_EQ(done.has_value(), !fails);
    EXPECT_FALSE(context.hasChanges());
    EXPECT_EQ(added->managedObjectContext() == nullptr, fails);
    EXPECT_EQ(titles(context), fails ? "Old" : "Last Old");
    EXPECT_EQ(Shelf::seenElsewhere(), fails ? "Old -" : "Last Old -");
    const auto history = context.execute({.after = Date::distantPast()});
    EXPECT_EQ(history->transactions.size(), fails ? 1U : 2U);
  }
}

}  // namespace
}  // namespace platform
