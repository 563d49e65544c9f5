#pragma once

#include "CoreData/Context/IdentityMap.h"
#include "CoreData/Context/NSManagedObject.h"
#include "CoreData/Context/NSPersistentHistory.h"
#include "CoreData/Fetch/NSFetchRequest.h"
#include "Foundation/Dispatch/DispatchQueue.h"
#include "Foundation/Dispatch/NSNotificationCenter.h"
#include "Foundation/Values/Error.h"

#include <atomic>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <set>

namespace platform {

class FetchPlan;
class NSManagedRow;
class NSPersistentStoreCoordinator;
class SqliteStore;
class StoreTransaction;
struct SqlText;
struct StoreChanges;

/// What a save does when another has meanwhile saved the same object.
enum class NSMergePolicy {
  error,  ///< The save fails (`StoreError::Kind::conflict`).
  /// Property by property: what was changed here is saved, everything else stays as the other has
  /// it. An object that the other has deleted stays deleted.
  mergeByPropertyObjectTrump,
};

/// The objects that were fetched, or why they could not be. What is taken out of a passing result
/// is a value of its own, so that a loop over `*context->fetch<TaskEntity>(request)` is sound.
template <typename T>
class FetchResult : public Result<std::vector<std::shared_ptr<T>>> {
 public:
  using Objects = std::vector<std::shared_ptr<T>>;
  using Base = Result<Objects>;
  using Base::Base;

  [[nodiscard]] Objects& operator*() & { return Base::operator*(); }
  [[nodiscard]] const Objects& operator*() const& { return Base::operator*(); }
  [[nodiscard]] Objects operator*() && { return std::move(Base::operator*()); }
  [[nodiscard]] Objects& value() & { return Base::value(); }
  [[nodiscard]] const Objects& value() const& { return Base::value(); }
  [[nodiscard]] Objects value() && { return std::move(Base::value()); }
};

/// A view of the store with changes of its own, which others see once they are saved. It holds the
/// objects that it has handed out, at most one for an ID, for as long as someone uses them or they
/// have unsaved changes. Everything happens on the context's queue; only `perform`,
/// `performAndWait` and the merge may be called from elsewhere.
///
///     context->performAndWait([&] {
///       const auto isLent = BookEntity::isLent == true;
///       const auto books = context->fetch<BookEntity>(NSFetchRequest::of<BookEntity>(isLent));
///       for (const auto& each : *books) {
///         each->setValue(BookEntity::copies, 0);
///       }
///       const auto saved = context->save();        // all of it, or an error and nothing
///     });
///
/// A fetch sees the unsaved changes. An object without unsaved changes gets newer values of the
/// file when a fetch reads them, or when a merge is notified of them.
class NSManagedObjectContext : public std::enable_shared_from_this<NSManagedObjectContext> {
 public:
  using Objects = NSManagedObject::Objects;
  using UserInfo = decltype(Notification::userInfo);
  enum class ConcurrencyType { mainQueue, privateQueue };

  /// Posted on the merging context's queue, with the context as the object; its user info has a
  /// `std::vector<NSManagedObjectID>` under each of the keys below.
  static constexpr const char* didMergeChangesObjectIDsNotification =
      "NSManagedObjectContextDidMergeChangesObjectIDsNotification";

  [[nodiscard]] static std::shared_ptr<NSManagedObjectContext> make(
      std::shared_ptr<NSPersistentStoreCoordinator> coordinator, ConcurrencyType concurrencyType);
  ~NSManagedObjectContext();
  NSManagedObjectContext(const NSManagedObjectContext&) = delete;
  NSManagedObjectContext& operator=(const NSManagedObjectContext&) = delete;

  /// Runs the block later, on the queue. The context lives at least until then.
  void perform(Block block);
  /// Runs `work` on the queue, at once when the caller is there already, and returns its result.
  template <std::invocable Work>
  auto performAndWait(Work&& work) {
    return isOnQueue() ? work() : queue_.sync(std::forward<Work>(work));
  }
  [[nodiscard]] bool isOnQueue() const { return queue_.isCurrent(); }

  void setName(std::string name) { name_ = std::move(name); }
  [[nodiscard]] const std::string& name() const { return name_; }
  /// Who writes: history has it with each save.
  void setTransactionAuthor(std::string author) { transactionAuthor_ = std::move(author); }
  [[nodiscard]] const std::string& transactionAuthor() const { return transactionAuthor_; }
  void setMergePolicy(NSMergePolicy policy) { mergePolicy_ = policy; }
  /// Whether it automatically merges what other contexts of its container save.
  void setAutomaticallyMergesChangesFromParent(bool merges) { mergesAutomatically_ = merges; }
  [[nodiscard]] bool automaticallyMergesChangesFromParent() const { return mergesAutomatically_; }
  [[nodiscard]] const std::shared_ptr<NSPersistentStoreCoordinator>& persistentStoreCoordinator()
      const {
    return coordinator_;
  }

  /// A new object, unsaved. An entity that the model doesn't have throws a `StoreError`.
  template <typename T>
  [[nodiscard]] std::shared_ptr<T> insert() {
    return std::static_pointer_cast<T>(insert(entityName<T>()));
  }
  std::shared_ptr<NSManagedObject> insert(std::string_view entityName);
  /// Deletes the object at the next save; what it owns goes with it, what leads to it lets go.
  void deleteObject(NSManagedObject& object);

  [[nodiscard]] FetchResult<NSManagedObject> fetch(const NSFetchRequest& request);
  template <typename T>
  [[nodiscard]] FetchResult<T> fetch(const NSFetchRequest& request) {
    auto objects = fetch(request);
    if (!objects) return std::unexpected(objects.error());
    std::vector<std::shared_ptr<T>> result;
    result.reserve(objects->size());
    for (auto& object : *objects) result.push_back(std::static_pointer_cast<T>(std::move(object)));
    return result;
  }
  /// Some values of each object that `fetch` would give, in its order, without making the objects:
  /// for the one look at very many of them.
  ///
  ///     std::string titles;
  ///     const auto read = context->readRows(
  ///         NSFetchRequest::of<BookEntity>(), {BookEntity::title.slot()},
  ///         [&](const NSManagedRow& row) { titles += *row.text(BookEntity::title); });
  ///     titles;    // "Emma"
  ///
  /// \param slots Of the attributes to be read.
  /// \param visit Leaves the context alone. What it is given lives until it returns.
  [[nodiscard]] Result<void> readRows(const NSFetchRequest& request,
                                      std::initializer_list<std::size_t> slots,
                                      const std::function<void(const NSManagedRow&)>& visit);
  [[nodiscard]] Result<std::size_t> count(const NSFetchRequest& request);
  /// The object of that ID, unread if it is not here yet. One that isn't there is found out, and
  /// detached, when it is first looked at.
  [[nodiscard]] std::shared_ptr<NSManagedObject> objectWithID(NSManagedObjectID id);
  [[nodiscard]] Result<NSPersistentHistoryResult> execute(
      const NSPersistentHistoryChangeRequest& request);

  [[nodiscard]] bool hasChanges() const;
  [[nodiscard]] Objects insertedObjects() const { return objectsOf(inserted_); }
  [[nodiscard]] Objects updatedObjects() const { return objectsOf(updated_); }
  [[nodiscard]] Objects deletedObjects() const { return objectsOf(deleted_); }
  /// Writes all changes, or none and keeps them here. Without changes it does nothing, and within
  /// a transaction it leaves the writing to that.
  [[nodiscard]] Result<void> save();
  /// Gives up all unsaved changes.
  void rollback();

  /// Reads and writes in one transaction: what `work` derives from the store is still true when it
  /// is saved, since no other process or context writes to the file meanwhile. Before `work`
  /// begins, the context discards what it has read, and reads it again when it is used; unsaved
  /// changes stay, and are saved, too. All reads of the context within `work` belong to the
  /// transaction. At its end, everything is saved.
  ///
  ///     const auto added = context->performTransaction([&]() -> Result<std::int64_t> {
  ///       const std::int64_t number = book->value(BookEntity::copies) + 1;
  ///       book->setValue(BookEntity::copies, number);   // no other process has the same
  ///       return number;
  ///     });
  ///
  /// \param work Returns a `Result`. It writes to no other context of the store: that would have to
  /// wait for its end.
  ///
  /// If `work` returns an error or throws, or if a read in it failed, even if its caller ignored
  /// the failure, nothing is saved, all unsaved changes of the context are discarded, and the first
  /// failure is returned or thrown again. The same holds if the save fails. A transaction within
  /// another is part of that one, which also fails with it. Runs on the queue, as with
  /// `performAndWait`.
  template <std::invocable Work>
  std::invoke_result_t<Work&> performTransaction(Work&& work) {
    return performAndWait([&]() -> std::invoke_result_t<Work&> {
      std::optional<std::invoke_result_t<Work&>> result;
      const auto done = runTransaction([&]() -> Result<void> {
        result.emplace(work());
        if (!*result) return std::unexpected(result->error());
        return {};
      });
      if (!done) return std::unexpected(done.error());
      return *std::move(result);
    });
  }

  /// Within a transaction, for one that makes very many objects: puts the unsaved changes into the
  /// file already. What follows reads them from there, and objects that no one uses take no memory.
  /// Others see them at the end of the transaction, with all the rest, and if it fails never. The
  /// lists of unsaved objects are empty afterwards.
  ///
  ///     const auto done = context->performTransaction([&]() -> Result<void> {
  ///       for (int copies = 0; copies < 1000; ++copies) {
  ///         context->insert<BookEntity>()->setValue(BookEntity::copies, copies);
  ///         const auto written = context->writePending();
  ///         if (!written) return written;
  ///       }
  ///       return {};
  ///     });
  [[nodiscard]] Result<void> writePending();

  /// To be called if everything may have changed: objects are read again when they are next used,
  /// and unsaved changes stay. Posts the notification of a merge, with the objects in use under
  /// `NSInvalidatedAllObjectsKey`.
  void refreshAllObjects();

  /// Tells contexts what others have saved: the user info of
  /// `NSPersistentHistoryTransaction::objectIDNotification`. Returns when all have merged it, each
  /// on its queue.
  static void mergeChangesFromRemoteContextSave(
      const UserInfo& changes,
      const std::vector<std::shared_ptr<NSManagedObjectContext>>& contexts);

 private:
  friend class NSManagedObject;
  friend class NSPersistentStoreCoordinator;
  friend class SaveOperation;

  using State = NSManagedObject::State;
  using Pending = std::map<NSManagedObjectID, std::shared_ptr<NSManagedObject>>;
  struct Link {
    const NSRelationshipDescription* relationship;  // the one whose key stands first
    NSManagedObjectID first;
    NSManagedObjectID second;

    auto operator<=>(const Link&) const = default;
  };

  NSManagedObjectContext(std::shared_ptr<NSPersistentStoreCoordinator> coordinator,
                         DispatchQueue queue);
  static Objects objectsOf(const Pending& pending);
  static bool hasEntity(const Pending& pending, const NSEntityDescription& entity);
  [[nodiscard]] std::shared_ptr<SqliteStore> store() const;
  Result<FetchPlan> plan(const NSFetchRequest& request) const;
  [[nodiscard]] bool hasPending(const NSEntityDescription& entity) const;
  /// Whether unsaved changes elsewhere than in the fetched entity may change a result.
  [[nodiscard]] bool mustEvaluate(const FetchPlan& plan) const;
  FetchResult<NSManagedObject> readObjects(const NSEntityDescription& entity, const SqlText& sql,
                                           bool asFaults);
  void addPending(const NSEntityDescription& entity, const FetchPlan& plan, Objects& objects) const;
  FetchResult<NSManagedObject> fetchObjects(const NSFetchRequest& request);
  Result<std::size_t> countObjects(const NSFetchRequest& request);
  Result<void> visitRows(const NSFetchRequest& request, std::initializer_list<std::size_t> slots,
                         const std::function<void(const NSManagedRow&)>& visit);

  Result<void> commit(std::unique_ptr<StoreTransaction> transaction);
  void discard(const StoreChanges& written);
  Result<void> runTransaction(const std::function<Result<void>()>& work);
  void attempt(const std::function<Result<void>()>& work);
  void refreshAll();
  /// Of every read that fails, whatever it then passes for.
  void noteFailedRead(const ErrorPtr& error) const;
  void reportFailedRead(const char* what, const ErrorPtr& error) const;

  std::shared_ptr<NSManagedObject> registered(NSManagedObjectID id) const;
  bool load(NSManagedObject& object);
  void noteChange(NSManagedObject& object);
  Objects members(const NSManagedObject& object, const NSRelationshipDescription& relationship);
  Objects membersByFetch(const NSManagedObject& object,
                         const NSRelationshipDescription& relationship);
  /// \name To-one relations whose other end keeps them
  /// @{
  static void group(const NSEntityDescription& entity, const Objects& objects);
  [[nodiscard]] std::optional<Objects> remembered(const NSManagedObject& object,
                                                  const NSRelationshipDescription& toOne) const;
  Result<void> readForGroup(const NSManagedObject& object, const NSRelationshipDescription& toOne);
  /// Of the objects that this one's own relations lead to.
  void forgetOtherEnds(const NSManagedObject& object) const;
  void forgetAll() const;
  /// @}
  std::set<NSManagedObjectID> linked(const NSManagedObject& object,
                                     const NSRelationshipDescription& relationship);
  void setLink(const NSRelationshipDescription& relationship, const NSManagedObject& object,
               const NSManagedObject& member, bool isThere);
  void letGo(NSManagedObject& object);
  void detach(NSManagedObject& object);
  void merge(const UserInfo& changes);
  void mergeUpdated(NSManagedObject& object);

  const std::shared_ptr<NSPersistentStoreCoordinator> coordinator_;
  const DispatchQueue queue_;
  std::string name_;
  std::string transactionAuthor_;
  NSMergePolicy mergePolicy_ = NSMergePolicy::error;
  std::atomic<bool> mergesAutomatically_ = false;
  IdentityMap objects_;
  Pending inserted_;
  Pending updated_;
  Pending deleted_;
  std::map<Link, bool> links_;                     // unsaved: whether the link is to be there
  std::unique_ptr<StoreTransaction> transaction_;  // null outside `performTransaction`
};

/// \name Keys of merge notifications and of history: each a `std::vector<NSManagedObjectID>`.
/// @{
inline constexpr const char* NSInsertedObjectIDsKey = "inserted_objectIDs";
inline constexpr const char* NSUpdatedObjectIDsKey = "updated_objectIDs";
inline constexpr const char* NSDeletedObjectIDsKey = "deleted_objectIDs";
inline constexpr const char* NSRefreshedObjectIDsKey = "refreshed_objectIDs";
/// Of `NSManagedObjectContext::refreshAllObjects`: any object may have changed, not only these.
inline constexpr const char* NSInvalidatedAllObjectsKey = "invalidatedAll_objectIDs";
/// @}

}  // namespace platform
