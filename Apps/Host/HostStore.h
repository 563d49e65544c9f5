#pragma once

#include "CoreData/Context/NSManagedObjectContext.h"
#include "DataManager/DataManager.h"
#include "DataManager/StoreUse.h"
#include "Foundation/Process/Terminal.h"
#include "Foundation/Values/Error.h"
#include "OxKit/EnumSet.h"
#include "OxKit/Platform.h"
#include "OxKit/UniqueID.h"
#include "VelloroCore/Status/TaskStatus.h"

#include <concepts>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace velloro {

class TaskEntity;

/// A request that the store can't fulfil; the text gives the reason.
class HostError : public Error {
 public:
  explicit HostError(const std::string& text) : Error("velloro.host", 1, terminalText(text)) {}
};

/// The process's active store, for one command: errors that the data manager does not report are
/// thrown here. To be used on the main thread.
///
///     HostStore store;
///     store.write([&] {
///       for (const auto& task : store.tasks({})) bringUpToDate(*task, now);
///     });
class HostStore {
 public:
  /// \throws HostError, which names the file, where it can't be opened.
  HostStore();

  /// The file of the active store, for code that only inspects it: opening a store may make one.
  /// \throws HostError where there is none.
  [[nodiscard]] static std::filesystem::path existingFile();

  [[nodiscard]] NSManagedObjectContext& context() const { return *container_->viewContext(); }

  /// In the order of their pages. \throws HostError
  [[nodiscard]] std::vector<std::shared_ptr<TaskEntity>> tasks(
      const EnumSet<TaskStatus>& statuses) const;
  /// Null where there is none, or none any more. \throws HostError
  [[nodiscard]] std::shared_ptr<TaskEntity> task(const UniqueID& id) const;
  /// Logs the timers whose time is up, runs `work`, saves what it has changed, and returns what it
  /// returns. All of it is one transaction of the file
  /// (`NSManagedObjectContext::performTransaction`), so that whatever `work` reads is true when it
  /// is written: tasks, entries and settings are looked up within it. \throws What `work` throws,
  /// and HostError where something can't be read or can't be written. Nothing is written then.
  template <std::invocable Work>
  auto write(Work&& work) const {
    const StoreUse access = beginWriting();
    const auto settings = holdSettings();
    using Value = std::invoke_result_t<Work&>;
    auto written = context().performTransaction([&]() -> Result<Value> {
      readSettings();
      if constexpr (std::is_void_v<Value>) {
        work();
        noteChanges();
        return {};
      } else {
        Result<Value> result = work();
        noteChanges();
        return result;
      }
    });
    if (!written) throwUnsaved(written.error());
    if constexpr (!std::is_void_v<Value>) return *std::move(written);
  }

 private:
  /// From now on, the store that is then active is read and written.
  [[nodiscard]] StoreUse beginWriting() const;
  void openActiveStore() const;
  [[nodiscard]] static std::unique_lock<std::recursive_mutex> holdSettings();
  /// Reads the settings as other processes have left them. \throws HostError if they can't be read,
  /// since defaults would be used instead.
  static void readSettings();
  /// Of which tasks the notifications are to be planned again.
  void noteChanges() const;
  [[noreturn]] static void throwUnsaved(const ErrorPtr& error);

  mutable std::shared_ptr<DataManager::Container> container_;
};

}  // namespace velloro
