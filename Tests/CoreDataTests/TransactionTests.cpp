#include "CoreData/StoreError.h"
#include "CoreDataTests/FailingDisk.h"
#include "CoreDataTests/Library.h"

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

TEST(StoreTransaction, AFailureWithinTakesAllBackAndIsTold) {
  TestEnvironment environment;
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
  TestEnvironment environment;
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

}  // namespace
}  // namespace platform
