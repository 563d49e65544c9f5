#include "DataManager/CoreDataMigration.h"
#include "Foundation/Coding/JSON.h"

#include <gtest/gtest.h>

namespace velloro {
namespace {

TEST(CoreDataMigrationReportTest, SucceedsUnlessTasksWereLost) {
  using Report = CoreDataMigrationReport;
  const std::pair<Report, bool> cases[] = {
      {{.migratorVersion = 1, .postNumTasks = TaskCount{}}, true},
      {{.migratorVersion = 1, .preNumTasks = {3, 0}, .postNumTasks = TaskCount{}}, false},
      {{.migratorVersion = 1, .preNumTasks = {3, 0}, .postNumTasks = TaskCount{0, 1}}, true},
      {{.migratorVersion = 1, .preNumTasks = {0, 3}}, false},
      {{.migratorVersion = 1, .postNumTasks = TaskCount{2, 0}, .errorMessage = "full"}, false},
      {{.migratorVersion = 1, .postNumTasks = TaskCount{2, 0}, .errorMessage = ""}, true}};
  for (const auto& [report, isSuccess] : cases) {
    EXPECT_EQ(report.isSuccess(), isSuccess) << report.debugDescription();
    EXPECT_EQ(JSONDecoder{}.decode<Report>(JSONEncoder{}.encode(report)), report);
  }
  EXPECT_EQ(cases[3].first.debugDescription(),
            "migratorVersion=1 preNumTasks=TaskCount(active: 0, archived: 3) postNumTasks=nil "
            "errorMessage=nil isSuccess=false");
}

}  // namespace
}  // namespace velloro
