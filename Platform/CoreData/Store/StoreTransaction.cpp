#include "CoreData/Store/StoreTransaction.h"

#include "Foundation/Values/Try.h"

#include <utility>

namespace platform {

Result<std::unique_ptr<StoreTransaction>> StoreTransaction::begin(
    std::shared_ptr<SqliteStore> store) {
  if (store == nullptr) return failure<StoreError>(StoreError::Kind::notOpen, "no store is open");
  if (store->isWrittenByThisThread()) {
    return failure<StoreError>(StoreError::Kind::busy,
                               "another context of the same thread is writing to the store");
  }
  std::unique_lock writing(store->writing);
  auto connection = TRY(store->lease());
  auto sql = TRY(SqliteTransaction::begin(*connection));
  return std::unique_ptr<StoreTransaction>(new StoreTransaction(
      std::move(store), std::move(writing), std::move(connection), std::move(sql)));
}

StoreTransaction::StoreTransaction(std::shared_ptr<SqliteStore> store,
                                   std::unique_lock<std::mutex> writing,
                                   SqliteStore::Lease connection, SqliteTransaction sql)
    : store_(std::move(store)),
      writing_(std::move(writing)),
      connection_(std::move(connection)),
      sql_(std::move(sql)) {
  store_->setWriter(std::this_thread::get_id());
}

StoreTransaction::~StoreTransaction() {
  store_->setWriter({});
}

Result<void> StoreTransaction::outcome() const {
  if (error_ != nullptr) return std::unexpected(error_);
  if (thrown_ != nullptr) std::rethrow_exception(thrown_);
  return {};
}

}  // namespace platform
