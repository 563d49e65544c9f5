#pragma once

#include "CoreData/NSPersistentContainer.h"
#include "OxKit/Platform.h"
#include "OxKit/UniqueID.h"
#include "Tasks/TaskEntity.h"

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <vector>

namespace velloro {

/// What a person wanted of the store and can't have; the text says why.
class HostError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The store in the folders of the environment, opened for one command. Everything happens on the
/// main thread.
///
///     HostStore store;
///     for (const auto& task : store.tasks()) …
///     store.save();
class HostStore {
 public:
  /// \throws HostError, which names the file, where it can't be opened.
  HostStore();

  [[nodiscard]] static std::filesystem::path file();

  [[nodiscard]] NSManagedObjectContext& context() const { return *container_.viewContext(); }

  /// In the order of their pages. \throws HostError
  [[nodiscard]] std::vector<std::shared_ptr<TaskEntity>> tasks(
      const EnumSet<TaskStatus>& statuses) const;
  /// \throws HostError where it can't be written; nothing is, then.
  void save() const;

 private:
  platform::NSPersistentContainer container_;
};

}  // namespace velloro
