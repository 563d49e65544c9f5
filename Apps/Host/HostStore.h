#pragma once

#include "DataManager/DataManager.h"
#include "OxKit/Platform.h"
#include "OxKit/UniqueID.h"
#include "Tasks/TaskEntity.h"

#include <memory>
#include <stdexcept>
#include <vector>

namespace velloro {

/// What a person wanted of the store and can't have; the text says why.
class HostError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The process's active store, for one command of a person: what the data manager leaves unsaid is
/// told. Everything happens on the main thread.
///
///     HostStore store;
///     for (const auto& task : store.tasks()) …
///     store.save();
class HostStore {
 public:
  /// \throws HostError, which names the file, where it can't be opened.
  HostStore();

  /// The same where it is there already: looking at a store makes none. \throws HostError
  [[nodiscard]] static HostStore existing();

  [[nodiscard]] NSManagedObjectContext& context() const { return *container_->viewContext(); }

  /// In the order of their pages. \throws HostError
  [[nodiscard]] std::vector<std::shared_ptr<TaskEntity>> tasks(
      const EnumSet<TaskStatus>& statuses) const;
  /// \throws HostError where it can't be written; nothing is, then.
  void save() const;

 private:
  std::shared_ptr<DataManager::Container> container_;
};

}  // namespace velloro
