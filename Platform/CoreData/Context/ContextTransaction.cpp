// The writing side of NSManagedObjectContext: a save, and the transaction that reads as well.

#include "CoreData/Context/NSManagedObjectContext.h"
#include "CoreData/Context/NSPersistentStoreCoordinator.h"
#include "CoreData/Context/SaveOperation.h"
#include "CoreData/Store/StoreTransaction.h"
#include "Foundation/Process/Environment.h"
#include "Foundation/Values/Try.h"

#include <cassert>
#include <utility>

namespace platform {

Result<void> NSManagedObjectContext::save() {
  assert(isOnQueue() && "a context is used off its queue");
  if (!hasChanges() || transaction_ != nullptr) return {};
  auto transaction = TRY(StoreTransaction::begin(store()));
  return commit(std::move(transaction));
}

Result<void> NSManagedObjectContext::commit(std::unique_ptr<StoreTransaction> transaction) {
  SqliteStore& open = transaction->store();
  SaveOperation operation(*this, open, transaction->connection());
  TRY(operation.write());
  transaction->written.add(operation.changes());
  const StoreChanges changes = std::move(transaction->written);
  std::int64_t number = 0;
  if (!changes.empty()) {
    const auto appended =
        TRY(appendTransaction(transaction->connection(), changes, transactionAuthor_, name_));
    number = appended;
  }
  TRY(transaction->commit());
  const bool othersHaveSaved =
      number > 0 && std::exchange(open.knownTransaction, number) < number - 1;
  operation.apply();
  transaction.reset();  // before others are told, who may want to write as well
  if (number > 0) coordinator_->didSave(*this, changes, number, othersHaveSaved);
  return {};
}

Result<void> NSManagedObjectContext::runTransaction(const std::function<Result<void>()>& work) {
  if (transaction_ != nullptr) {
    attempt(work);
    return transaction_->outcome();
  }
  auto begun = TRY(StoreTransaction::begin(store()));
  transaction_ = std::move(begun);
  refreshAll();
  if (!transaction_->hasFailed()) attempt(work);
  auto transaction = std::exchange(transaction_, nullptr);
  const StoreChanges written = transaction->written;
  if (transaction->hasFailed()) {
    discard(written);
    return transaction->outcome();
  }
  if (!hasChanges() && written.empty()) return {};
  auto committed = commit(std::move(transaction));
  if (!committed) discard(written);
  return committed;
}

Result<void> NSManagedObjectContext::writePending() {
  assert(isOnQueue() && transaction_ != nullptr && "there is no transaction to write into");
  if (!hasChanges()) return {};
  SaveOperation operation(*this, transaction_->store(), transaction_->connection());
  if (auto written = operation.write(); !written) {
    transaction_->fail(written.error());
    return written;
  }
  transaction_->written.add(operation.changes());
  operation.apply();
  return {};
}

/// Gives up all unsaved changes, and what was written into a transaction that is not committed: the
/// keys of its new objects will be those of others.
void NSManagedObjectContext::discard(const StoreChanges& written) {
  rollback();
  if (written.empty()) return;
  for (const NSManagedObjectID id : written.inserted) {
    if (const auto object = registered(id)) detach(*object);
  }
  refreshAll();
}

/// A failure stays with the transaction, even if whoever called the work makes nothing of it: half
/// of what belongs together may have been done.
void NSManagedObjectContext::attempt(const std::function<Result<void>()>& work) {
  try {
    if (const auto done = work(); !done) transaction_->fail(done.error());
  } catch (...) {
    transaction_->fail(std::current_exception());
  }
}

/// Nothing that was read before counts any longer: it is read anew at its next use.
void NSManagedObjectContext::refreshAll() {
  forgetAll();
  objects_.forEach([](NSManagedObject& object) {
    if (object.state_ == State::saved) object.becomeFault();
  });
  for (const auto& object : updatedObjects()) mergeUpdated(*object);
}

void NSManagedObjectContext::noteFailedRead(const ErrorPtr& error) const {
  if (transaction_ != nullptr) transaction_->fail(error);
}

void NSManagedObjectContext::reportFailedRead(const char* what, const ErrorPtr& error) const {
  noteFailedRead(error);
  Environment::current().report(std::string(what) +
                                " can't be read: " + error->localizedDescription());
}

}  // namespace platform
