#pragma once

#include "Containers/VelloroNSPersistentContainer.h"
#include "DataManager/Author.h"
#include "Foundation/Dispatch/NSOperationQueue.h"
#include "Foundation/Files/NSUserDefaults.h"
#include "OxKit/Platform.h"

#include <memory>
#include <mutex>
#include <string>

namespace velloro {

/// Brings what other processes, and other devices through the mirror, have saved into the contexts
/// of this one. It reads the store's history from where a process of the same author stopped the
/// last time, the bookmark, which outlives the process. After that, each observer uses its own
/// position, so that two at the same time, in one process or in two, do not affect each other.
///
///     const auto observer = PersistentHistoryObserver::make(
///         Author::app, container, NSUserDefaults::standardUserDefaults());
///     observer->startObserving();
///
/// A bookmark is valid for the file for which it was made (`storeKey` identifies it), and not while
/// it lies in the future, as after a clock was wrong, since history would be missed until then.
/// Without a valid bookmark, as at the first time, the whole history is merged. History is never
/// deleted here. If the history since the bookmark is incomplete, because old rows have been
/// deleted or because a row is damaged, the view context reads all its objects again. May be used
/// from any thread.
class PersistentHistoryObserver : public std::enable_shared_from_this<PersistentHistoryObserver> {
 public:
  using Container = VelloroNSPersistentCloudKitContainer;

  /// \param target Whose bookmark it is.
  /// \param userDefaults Where it is kept.
  [[nodiscard]] static std::shared_ptr<PersistentHistoryObserver> make(
      Author target, std::shared_ptr<Container> persistentContainer, NSUserDefaults userDefaults);

  /// From now on every change of the store by others is merged. Once.
  void startObserving();

  /// Merges all that is new since the bookmark, and moves the bookmark. Returns when a background
  /// context has it; the view context follows on its queue. No two merge at once in a
  /// process. A failure is logged, and the bookmark stays: the next time tries again.
  void processPersistentHistory();

  [[nodiscard]] static std::string bookmarkKey(Author target);
  /// Of the identity of the bookmark's file (`NSFileManager::identity`).
  [[nodiscard]] static std::string storeKey(Author target);

 private:
  PersistentHistoryObserver(Author target, std::shared_ptr<Container> container,
                            NSUserDefaults defaults);
  void processStoreRemoteChanges();
  Result<void> merge(const std::shared_ptr<NSManagedObjectContext>& background,
                     const std::shared_ptr<NSManagedObjectContext>& view);
  [[nodiscard]] std::string storeIdentity() const;
  [[nodiscard]] Date bookmark() const;
  void moveTo(Date position);

  const Author target_;
  const std::shared_ptr<Container> persistentContainer_;
  NSUserDefaults userDefaults_;
  std::string store_;  // the file that `position_` is of
  Date position_;      // of the last transaction merged, or where it begins
  std::once_flag queueMade_;
  std::unique_ptr<NSOperationQueue> historyQueue_;
  NSNotificationCenter::Token token_;
};

}  // namespace velloro
