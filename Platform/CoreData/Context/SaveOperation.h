#pragma once

#include "CoreData/Context/NSManagedObjectContext.h"
#include "CoreData/Store/SqliteStore.h"
#include "CoreData/Store/StoreHistory.h"

namespace platform {

/// One save of a context: `write` puts its changes into the file, within a SQL transaction, and
/// leaves the context as it is; `apply`, after the commit, makes the context agree with the file.
///
/// Others may have saved in between, and the rules that settle it make no difference between an
/// order of saves and another:
/// - A deletion wins over changes, whichever came first.
/// - What an object owns goes with it: what the context knows, and what others have added since. So
///   does what is added or moved to an object that has gone.
/// - A relation to an object that has gone, and that doesn't own, is empty.
/// - Otherwise each changed property is written, and the others are left as they are.
class SaveOperation {
 public:
  SaveOperation(NSManagedObjectContext& context, SqliteStore& store, SqliteConnection& connection)
      : context_(context), store_(store), connection_(connection) {}

  [[nodiscard]] Result<void> write();
  void apply();
  [[nodiscard]] const StoreChanges& changes() const { return changes_; }

 private:
  using Keys = std::vector<std::int64_t>;
  using Storage = NSRelationshipDescription::Storage;
  using SlotOf = std::pair<NSManagedObjectID, std::size_t>;

  Result<void> deleteRows();
  Result<void> deleteRow(NSManagedObjectID id);
  Result<void> releaseMembers(NSManagedObjectID id, const NSRelationshipDescription& relationship);
  Result<Keys> keys(const std::string& sql, std::int64_t key);
  Result<bool> hasRow(NSManagedObjectID id);

  Result<void> settleOrphans();
  Result<bool> settleOrphan(const NSManagedObject& object);
  Result<bool> hasGone(NSManagedObjectID id);

  Result<void> insertRows();
  Result<void> reserveKeys();
  Result<void> updateRows();
  Result<void> updateRow(NSManagedObject& object);
  Result<void> writeLinks();
  void bind(SqliteStatement& statement, int parameter, const NSManagedObject& object,
            std::size_t slot) const;
  [[nodiscard]] NSManagedObjectID permanent(NSManagedObjectID id) const;

  void applyInserted();
  void applyUpdated();
  void makeSaved(NSManagedObject& object, std::int64_t version);

  NSManagedObjectContext& context_;
  SqliteStore& store_;
  SqliteConnection& connection_;
  StoreChanges changes_;
  std::vector<NSManagedObjectID> toDelete_;
  std::set<NSManagedObjectID> gone_;     // rows that this save found or made missing
  std::set<NSManagedObjectID> dropped_;  // new objects that are not written
  std::set<SlotOf> emptied_;             // relations whose object has gone
  std::map<NSManagedObjectID, bool> hasRow_;
  std::map<NSManagedObjectID, NSManagedObjectID> permanent_;
  std::map<NSManagedObjectID, std::int64_t> ownWrites_;  // that a deletion did to other rows
  std::map<NSManagedObjectID, std::int64_t>
      versions_;  // of updated rows; 0 where others changed it
};

}  // namespace platform
