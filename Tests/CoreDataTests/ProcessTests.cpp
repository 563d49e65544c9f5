#include "Support/Library.h"
#include "Support/Processes.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <mutex>
#include <random>
#include <set>

#include <gmock/gmock.h>

namespace platform {
namespace {

using ::testing::IsEmpty;
using Clock = std::chrono::steady_clock;

/// Each save counts the author's books in his name, adds one and tells of it.
void saveUntilKilled(Pipe& acknowledged) {
  Library library(unwatched());
  Context& context = *library.viewContext();
  const auto author = context.fetch<AuthorEntity>(NSFetchRequest("Author"))->front();
  for (int count = std::stoi(*author->value(AuthorEntity::name)) + 1;; ++count) {
    author->setValue(AuthorEntity::name, std::to_string(count));
    newBook(context, "New", count)->setValue(BookEntity::author, author);
    expectSaved(context);
    acknowledged.send(count);
  }
}

/// What the file is known to hold.
struct Saved {
  std::int64_t count = 0;
  Date newest = Date::distantPast();

  /// Takes what the file holds now, after a look at whether it agrees with itself and has a
  /// transaction for each save since.
  void update(bool thoroughly) {
    Library library(unwatched());
    Context& context = *library.viewContext();
    const auto author = context.fetch<AuthorEntity>(NSFetchRequest("Author"))->front();
    const std::int64_t now = std::stoi(*author->value(AuthorEntity::name));
    EXPECT_EQ(context.count(bookRequest()), static_cast<std::size_t>(now));
    auto last = bookRequest(std::nullopt, {BookEntity::day.descending()});
    last.setFetchLimit(1);
    for (const auto& book : *context.fetch<BookEntity>(last)) {
      EXPECT_EQ(book->value(BookEntity::day), now);
    }
    const auto history = context.execute({.after = newest});
    EXPECT_EQ(std::ssize(history->transactions), now - count);
    for (const auto& transaction : history->transactions) {
      EXPECT_EQ(transaction.inserted.size(), 1U);
      EXPECT_EQ(transaction.updated.size(), 1U);
      newest = transaction.timestamp;
    }
    count = now;
    if (!thoroughly) return;
    EXPECT_THAT(library.persistentStoreCoordinator()->check().value(), IsEmpty());
  }
};

/// A writer is killed somewhere in the opening of the store or in its next saves.
/// \return The last save that it acknowledged; absent when there was none.
std::optional<std::int64_t> killAWriter(std::mt19937& random) {
  Pipe pipe;
  std::optional<std::int64_t> acknowledged;
  const pid_t writer = startProcess([&] { saveUntilKilled(pipe); });
  pipe.closeWriting();
  for (int saves = std::uniform_int_distribution(0, 3)(random); saves > 0; --saves) {
    acknowledged = pipe.receive();
  }
  const auto end = Clock::now() + std::chrono::microseconds(random() % 4000);
  while (Clock::now() < end) {
  }
  ::kill(writer, SIGKILL);
  EXPECT_FALSE(endedWell(writer));
  while (const auto count = pipe.receive()) acknowledged = count;
  return acknowledged;
}

/// Kills writers of a store of its own, one after the other.
/// \return How many.
int killWriters(unsigned seed, int most, Clock::time_point end) {
  VirtualEnvironment environment;
  Saved saved;
  {
    Library library(unwatched());
    Context& context = *library.viewContext();
    context.insert<AuthorEntity>()->setValue(AuthorEntity::name, "0");
    expectSaved(context);
    const auto history = context.execute({.after = Date::distantPast()});
    saved.newest = history->transactions.back().timestamp;
  }
  std::mt19937 random(seed);
  int kills = 0;
  for (; kills < most && Clock::now() < end; ++kills) {
    const std::int64_t acknowledged = killAWriter(random).value_or(saved.count);
    saved.update(kills % 100 == 0);
    EXPECT_TRUE(saved.count == acknowledged || saved.count == acknowledged + 1)
        << saved.count << " saved, " << acknowledged << " acknowledged";
  }
  saved.update(true);
  EXPECT_GT(saved.count, kills);
  return kills;
}

TEST(StoreProcesses, AWriterThatIsKilledLeavesWholeSaves) {
  constexpr int lanes = 8;  // they mostly wait for the disk
  constexpr int most = 2400;
  const auto end = Clock::now() + std::chrono::seconds(55);
  Pipe done;
  std::vector<pid_t> killers;
  for (unsigned lane = 0; lane < lanes; ++lane) {
    killers.push_back(startProcess([&] { done.send(killWriters(lane, most / lanes, end)); }));
  }
  done.closeWriting();
  std::int64_t kills = 0;
  for (const pid_t killer : killers) {
    kills += done.receive().value_or(0);
    EXPECT_TRUE(endedWell(killer));
  }
  RecordProperty("kills", static_cast<int>(kills));
}

TEST(StoreProcesses, SeveralWritersMakeOneHistoryAndCountRight) {
  VirtualEnvironment environment;
  workInProcesses(3, 2, [](int writer) {
    Library library(unwatched());  // all make the file at the same time
    EXPECT_EQ(library.error, nullptr);
    const auto context = library.newBackgroundContext();
    const auto numberBook = [&]() -> Result<std::int64_t> {
      std::int64_t last = 0;
      for (const auto& book : *context->fetch<BookEntity>(bookRequest())) {
        last = std::max(last, book->value(BookEntity::copies));
      }
      newBook(*context, "New", writer)->setValue(BookEntity::copies, last + 1);
      return last + 1;
    };
    for (int i = 0; i < 25; ++i) EXPECT_TRUE(context->performTransaction(numberBook));
  });
  Library library(unwatched());
  std::set<std::int64_t> numbers;
  for (const auto& book : *library.viewContext()->fetch<BookEntity>(bookRequest())) {
    numbers.insert(book->value(BookEntity::copies));
  }
  EXPECT_EQ(numbers.size(), 150U);
  EXPECT_EQ(*numbers.rbegin(), 150);
  EXPECT_EQ(library.viewContext()->execute({.after = Date::distantPast()})->transactions.size(),
            150U);
  EXPECT_THAT(library.persistentStoreCoordinator()->check().value(), IsEmpty());
}

/// Holds the former file open, with a save in its log, and saves again once it is replaced.
void saveBeforeAndAfter(Pipe& held, Pipe& go) {
  Library library(unwatched());
  newBook(*library.viewContext(), "Before");
  expectSaved(*library.viewContext());
  held.send(1);
  ASSERT_TRUE(go.receive());
  newBook(*library.viewContext(), "After");
  expectSaved(*library.viewContext());
}

TEST(StoreProcesses, AllFollowAReplacementAtOnceAndLoseNothing) {
  constexpr int holders = 3;
  for (int round = 0; round < 20; ++round) {
    VirtualEnvironment environment;
    saveBook("Old");
    const auto backup = libraryPath().parent_path() / "backup.sqlite";
    saveBook("Backup", 0, NSPersistentStoreDescription::initWithURL(backup));
    Pipe held;
    Pipe go;
    std::vector<pid_t> processes;
    for (int i = 0; i < holders; ++i) {
      processes.push_back(startProcess([&] { saveBeforeAndAfter(held, go); }));
    }
    for (int i = 0; i < holders; ++i) EXPECT_TRUE(held.receive());
    std::filesystem::rename(backup, libraryPath());
    // One that begins now, before the others have noticed or together with them.
    const pid_t newcomer = startProcess([] { saveBook("After"); });
    if (round % 2 == 0) {
      EXPECT_TRUE(endedWell(newcomer));
    } else {
      processes.push_back(newcomer);
    }
    for (int i = 0; i < holders; ++i) go.send(1);
    for (const pid_t process : processes) EXPECT_TRUE(endedWell(process));
    Library library(unwatched());
    EXPECT_EQ(titles(*library.viewContext()), "After After After After Backup") << round;
    EXPECT_THAT(library.persistentStoreCoordinator()->check().value(), IsEmpty());
  }
}

/// Counts in the book's day, a save for each number it gets, and tells when that returned.
void saveOnDemand(Pipe& go, Pipe& committed) {
  Library library;
  const auto book = library.viewContext()->fetch<BookEntity>(bookRequest())->front();
  while (const auto number = go.receive()) {
    if (*number < 0) return;
    book->setValue(BookEntity::day, static_cast<std::int32_t>(*number));
    expectSaved(*library.viewContext());
    committed.send(Clock::now().time_since_epoch().count());
  }
}

TEST(StoreProcesses, AReaderIsWokenByEachCommitAndMergesIt) {
  VirtualEnvironment environment;
  saveBook("Shared", -1);
  constexpr int commits = 10000;
  Pipe go;
  Pipe committed;
  const pid_t writer = startProcess([&] { saveOnDemand(go, committed); });
  Library library;
  Context& view = *library.viewContext();
  const auto unchanged = library.newBackgroundContext();
  const auto copy = view.fetch<BookEntity>(bookRequest())->front();
  const auto unchangedCopy = unchanged->performAndWait(
      [&] { return unchanged->fetch<BookEntity>(bookRequest())->front(); });
  copy->setValue(BookEntity::copies, 7);
  std::mutex mutex;
  std::condition_variable changed;
  std::vector<std::int64_t> seen;  // when each look at the store found something new
  const auto token = NSNotificationCenter::defaultCenter().addObserver(
      NSPersistentStoreRemoteChangeNotification, library.persistentStoreCoordinator().get(),
      std::nullopt, [&](const Notification&) {
        const std::scoped_lock lock(mutex);
        seen.push_back(Clock::now().time_since_epoch().count());
        changed.notify_one();
      });
  std::vector<std::int64_t> delays;  // below 0 where it was seen before the save returned
  for (int number = 0; number < commits; ++number) {
    go.send(number);
    const std::int64_t at = committed.receive().value();
    std::unique_lock lock(mutex);
    const auto wasSeen = [&] { return std::ssize(seen) > number; };
    ASSERT_TRUE(changed.wait_for(lock, std::chrono::seconds(20), wasSeen)) << number;
    delays.push_back((seen.back() - at) / 1000);
  }
  go.send(-1);
  EXPECT_TRUE(endedWell(writer));
  EXPECT_EQ(seen.size(), static_cast<std::size_t>(commits));
  std::ranges::sort(delays);
  RecordProperty("medianMicroseconds", static_cast<int>(delays[commits / 2]));
  RecordProperty("p95Microseconds", static_cast<int>(delays[commits * 95 / 100]));
  EXPECT_LT(delays[commits * 99 / 100], 1000000) << "the watch fails: the slow look finds them";
  const auto history = view.execute({.after = Date::distantPast()});
  ASSERT_EQ(history->transactions.size(), static_cast<std::size_t>(commits) + 1);
  Context::mergeChangesFromRemoteContextSave(
      history->transactions.back().objectIDNotification().userInfo,
      {library.viewContext(), unchanged});
  unchanged->performAndWait([&] { EXPECT_EQ(unchangedCopy->value(BookEntity::day), commits - 1); });
  EXPECT_EQ(copy->value(BookEntity::day), commits - 1);
  EXPECT_EQ(copy->value(BookEntity::copies), 7);
  expectSaved(view);
  EXPECT_EQ(view.execute({.after = Date::distantPast()})->transactions.back().updated.size(), 1U);
}

}  // namespace
}  // namespace platform
