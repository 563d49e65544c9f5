#include "CoreDataTests/Library.h"
#include "Support/Processes.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <mutex>
#include <random>

#include <gmock/gmock.h>

namespace platform {
namespace {

using ::testing::IsEmpty;
using Clock = std::chrono::steady_clock;

/// A line between two processes, a number at a time.
class Pipe {
 public:
  Pipe() { EXPECT_EQ(pipe(ends_), 0); }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;
  ~Pipe() { close(ends_[0]), close(ends_[1]); }

  void closeWriting() { close(std::exchange(ends_[1], -1)); }
  void send(std::int64_t number) { EXPECT_EQ(write(ends_[1], &number, sizeof number), 8); }
  /// Absent when the other has ended.
  std::optional<std::int64_t> receive() {
    std::int64_t number = 0;
    return read(ends_[0], &number, sizeof number) == 8 ? std::optional(number) : std::nullopt;
  }

 private:
  int ends_[2] = {};
};

NSPersistentStoreDescription unwatched() {
  return NSPersistentStoreDescription::initWithURL(libraryPath());
}

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

/// The count that the file has, after a look at whether it agrees with itself.
std::int64_t savedCount(bool thoroughly) {
  Library library(unwatched());
  Context& context = *library.viewContext();
  const auto author = context.fetch<AuthorEntity>(NSFetchRequest("Author"))->front();
  const std::int64_t count = std::stoi(*author->value(AuthorEntity::name));
  EXPECT_EQ(context.count(bookRequest()), static_cast<std::size_t>(count));
  const auto newest = bookRequest(std::nullopt, {{"day", false}});
  if (count > 0) {
    EXPECT_EQ(context.fetch<BookEntity>(newest)->front()->value(BookEntity::day), count);
  }
  const auto history = context.execute({.after = Date::distantPast()});
  EXPECT_EQ(history->transactions.size(), static_cast<std::size_t>(count) + 1);
  EXPECT_EQ(history->transactions.back().inserted.size(), 1U);
  if (thoroughly) {
    EXPECT_THAT(library.persistentStoreCoordinator()->check().value(), IsEmpty());
  }
  return count;
}

TEST(StoreProcesses, AWriterThatIsKilledLeavesWholeSaves) {
  TestEnvironment environment;
  {
    Library library(unwatched());
    library.viewContext()->insert<AuthorEntity>()->setValue(AuthorEntity::name, "0");
    expectSaved(*library.viewContext());
  }
  constexpr int kills = 150;
  std::mt19937 random(1);
  std::int64_t acknowledged = 0;
  for (int kill = 0; kill < kills; ++kill) {
    Pipe pipe;
    const pid_t writer = startProcess([&] { saveUntilKilled(pipe); });
    pipe.closeWriting();
    for (int saves = std::uniform_int_distribution(0, 3)(random); saves > 0; --saves) {
      acknowledged = pipe.receive().value_or(acknowledged);
    }
    // Somewhere in the opening of the store or in the next saves.
    const auto end = Clock::now() + std::chrono::microseconds(random() % 4000);
    while (Clock::now() < end) {
    }
    ::kill(writer, SIGKILL);
    EXPECT_FALSE(endedWell(writer));
    while (const auto count = pipe.receive()) acknowledged = *count;
    const std::int64_t saved = savedCount(kill % 30 == 0 || kill == kills - 1);
    EXPECT_TRUE(saved == acknowledged || saved == acknowledged + 1) << saved << acknowledged;
    acknowledged = saved;
  }
  EXPECT_GT(acknowledged, kills);
}

TEST(StoreProcesses, SeveralWritersMakeOneHistory) {
  TestEnvironment environment;
  workInProcesses(4, 1, [](int writer) {
    Library library(unwatched());  // all make the file at the same time
    EXPECT_EQ(library.error, nullptr);
    const auto context = library.newBackgroundContext();
    context->performAndWait([&] {
      for (int i = 0; i < 25; ++i) {
        newBook(*context, "New", writer * 100 + i);
        expectSaved(*context);
      }
    });
  });
  Library library(unwatched());
  EXPECT_EQ(library.viewContext()->count(bookRequest()), 100U);
  EXPECT_EQ(library.viewContext()->execute({.after = Date::distantPast()})->transactions.size(),
            100U);
  EXPECT_THAT(library.persistentStoreCoordinator()->check().value(), IsEmpty());
}

TEST(StoreProcesses, AReaderIsWokenByEachCommit) {
  TestEnvironment environment;
  constexpr int commits = 300;
  Pipe go;
  Pipe committed;
  const pid_t writer = startProcess([&] {
    Library library;
    while (const auto number = go.receive()) {
      if (*number == commits) return;
      newBook(*library.viewContext(), "New", static_cast<int>(*number));
      expectSaved(*library.viewContext());
      committed.send(Clock::now().time_since_epoch().count());
    }
  });
  Library library;
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
  std::vector<std::int64_t> delays;
  for (int number = 0; number < commits; ++number) {
    go.send(number);
    const std::int64_t at = committed.receive().value();
    std::unique_lock lock(mutex);
    const auto wasSeen = [&] { return std::ssize(seen) > number; };
    ASSERT_TRUE(changed.wait_for(lock, std::chrono::seconds(20), wasSeen)) << number;
    delays.push_back((seen.back() - at) / 1000);
  }
  go.send(commits);
  EXPECT_TRUE(endedWell(writer));
  EXPECT_EQ(seen.size(), static_cast<std::size_t>(commits));
  std::ranges::sort(delays);
  RecordProperty("medianMicroseconds", static_cast<int>(delays[commits / 2]));
  RecordProperty("p95Microseconds", static_cast<int>(delays[commits * 95 / 100]));
  EXPECT_LT(delays[commits / 2], 1000000) << "the watch doesn't work: only the slow look does";
}

}  // namespace
}  // namespace platform
