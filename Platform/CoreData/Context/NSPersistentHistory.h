#pragma once

#include "CoreData/Fetch/KeyPath.h"
#include "Foundation/Dispatch/NSNotificationCenter.h"
#include "Foundation/Values/Error.h"

namespace platform {

/// One save, by whichever process. Transactions are numbered without gaps (from 1; the store drops
/// the oldest ones in time), and each has a later timestamp than the one before, even where a clock
/// was set back: so a reader that remembers the last timestamp it has seen misses none.
struct NSPersistentHistoryTransaction {
  std::int64_t transactionNumber = 0;
  Date timestamp;
  std::optional<std::string> author;       ///< The saving context's `transactionAuthor`.
  std::optional<std::string> contextName;  ///< Its `name`.
  std::vector<NSManagedObjectID> inserted = {};
  std::vector<NSManagedObjectID> updated = {};
  std::vector<NSManagedObjectID> deleted = {};

  /// What `NSManagedObjectContext::mergeChangesFromRemoteContextSave` takes: the three lists under
  /// their keys.
  [[nodiscard]] Notification objectIDNotification() const;

  /// What the predicate of a history request compares:
  ///
  ///     (NSPersistentHistoryTransaction::Attributes::author != "app").format().text; // "%K != %@"
  struct Attributes : DeclaredBy<NSPersistentHistoryTransaction> {
    inline static NSEntityDescription description{"_history"};
    inline static const Attribute<Date> timestamp{description, "timestamp"};
    inline static const Attribute<std::optional<std::string>> author{description, "author"};
    inline static const Attribute<std::optional<std::string>> contextName{description,
                                                                          "contextName"};
  };
  /// A request to narrow a history request with.
  [[nodiscard]] static NSFetchRequest fetchRequest();
};

/// Asks a context for history:
///
///     auto request = NSPersistentHistoryChangeRequest::fetchHistoryAfterDate(Date::now());
///     context->execute(request)->transactions.size();    // 0: nothing has been saved since
struct NSPersistentHistoryChangeRequest {
  Date after;
  std::optional<NSFetchRequest> fetchRequest = std::nullopt;

  /// The transactions with a later timestamp.
  [[nodiscard]] static NSPersistentHistoryChangeRequest fetchHistoryAfterDate(Date date) {
    return {.after = date};
  }
  void setFetchRequest(NSFetchRequest request) { fetchRequest = std::move(request); }
};

struct NSPersistentHistoryResult {
  std::vector<NSPersistentHistoryTransaction> transactions;  ///< Oldest first.
  /// False where the store has dropped transactions that are later than the date asked for, or
  /// where a part of one is left out since it is damaged: then anything may have changed.
  bool isComplete = true;
  ErrorPtr damage = nullptr;  ///< What is wrong with the first part that is left out.
};

}  // namespace platform
