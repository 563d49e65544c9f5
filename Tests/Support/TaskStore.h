#pragma once

#include "CoreData/Context/NSPersistentContainer.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/VelloroModel.h"

#include <memory>

#include <gtest/gtest.h>

namespace velloro {

/// A container with an open store, in memory unless a file is named.
class TaskStore : public NSPersistentContainer {
 public:
  explicit TaskStore(
      NSPersistentStoreDescription description = NSPersistentStoreDescription::inMemory(),
      const NSManagedObjectModel& model = velloroModel())
      : NSPersistentContainer(velloroModelName, model) {
    setPersistentStoreDescriptions({std::move(description)});
    loadPersistentStores([](const auto&, const ErrorPtr& error) {
      if (error) ADD_FAILURE() << error->localizedDescription();
    });
  }
};

/// An environment, a store in memory, and a task in it.
class TasksTest : public ::testing::Test {
 protected:
  template <typename T>
  std::shared_ptr<T> make() {
    return T::create(context_);
  }
  void save() {
    const auto saved = context_.save();
    ASSERT_TRUE(saved) << saved.error()->localizedDescription();
  }

  VirtualEnvironment environment_;
  TaskStore store_;
  NSManagedObjectContext& context_ = *store_.viewContext();
  std::shared_ptr<TaskEntity> task_ = make<TaskEntity>();
};

}  // namespace velloro
