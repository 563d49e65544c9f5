#include "SQLite/StoreError.h"
#include "Support/Fixtures.h"
#include "Support/TaskStore.h"
#include "Tasks/Rows/TaskCategoryEntity.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"
#include "Tasks/Rows/TaskNotificationSettingsEntity.h"

#include <map>
#include <string>
#include <vector>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using ::testing::SizeIs;

std::string line(const NSAttributeDescription& attribute) {
  static constexpr const char* types[] = {"bool", "i16",  "i32",    "i64",  "f64",
                                          "text", "date", "binary", "uuid", "transformable"};
  return attribute.name + ": " + types[static_cast<std::size_t>(attribute.type)] +
         (attribute.isOptional ? "?" : "") +
         (attribute.valueTransformerName.empty() ? "" : " by ") + attribute.valueTransformerName;
}

std::string line(const NSRelationshipDescription& relation) {
  return relation.name + (relation.isToMany ? ": many " : ": one ") + relation.destinationName +
         "." + relation.inverseName +
         (relation.deleteRule == NSDeleteRule::cascade ? ", owned" : "");
}

TEST(Schema, IsTheOneThatFilesWereWrittenWith) {
  std::map<std::string, std::vector<std::string>> lines;
  for (const NSEntityDescription* entity : velloroModel().entities()) {
    auto& ofEntity = lines[entity->name()];
    for (const auto& attribute : entity->attributes()) ofEntity.push_back(line(attribute));
    for (const auto& relation : entity->relationships()) ofEntity.push_back(line(relation));
  }
  const JSONEncoder encoder{.layout = JSONWriter::Layout::pretty};
  EXPECT_EQ(encoder.encode(lines) + "\n", fixtureText("VelloroModel"));
}

TEST_F(TasksTest, AnEntityIsFoundByItsClass) {
  EXPECT_EQ(TaskEntity::entity(context_), &TaskAttributes::description);
  const NSManagedObjectModel small({});
  TaskStore other(NSPersistentStoreDescription::inMemory(), small);
  EXPECT_EQ(TaskEntity::entity(*other.viewContext()), nullptr);
  EXPECT_THROW((void)TaskEntity::create(*other.viewContext()), StoreError);
}

TEST_F(TasksTest, WhatATaskOwnsGoesWithIt) {
  const auto category = make<TaskCategoryEntity>();
  task_->add(TaskAttributes::taskCategories, category);
  const auto entry = make<TaskLogEntryEntity>();
  entry->setValue(TaskLogEntryEntity::task, task_);
  const auto settings = make<TaskNotificationSettingsEntity>();
  settings->setValue(TaskNotificationSettingsEntity::task, task_);
  save();
  EXPECT_EQ(task_->value(TaskAttributes::taskNotificationSettings), settings);
  context_.deleteObject(*task_);
  save();
  EXPECT_EQ(entry->managedObjectContext(), nullptr);
  EXPECT_EQ(settings->managedObjectContext(), nullptr);
  EXPECT_THAT(category->value(TaskCategoryEntity::tasks), SizeIs(0));
}

}  // namespace
}  // namespace velloro
