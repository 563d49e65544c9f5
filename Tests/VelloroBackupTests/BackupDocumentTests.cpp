#include "Foundation/Coding/JSON.h"
#include "VelloroBackup/BackupDocument.h"

#include <string>

#include <gmock/gmock.h>

namespace velloro {
namespace {

std::string outcome(VelloroJSONBackup (*read)(const std::string&), const std::string& json) {
  try {
    return read(json).jsonData();
  } catch (const DecodingError& error) {
    return error.localizedDescription();
  }
}

VelloroJSONBackup taskByTask(const std::string& json) {
  const BackupDocument document(json);
  VelloroJSONBackup whole = document.frame();
  document.forEachTask([&](const VelloroJSONBackupTask& task) { whole.tasks.push_back(task); });
  return whole;
}

/// However a document is built, the tasks, and where there is one the error, are those of the
/// whole.
TEST(BackupDocument, ReadsTaskByTaskWhatTheWholeIs) {
  const std::string head = R"({"version":1,"timestamp":"2024-03-07T03:00:00Z",)";
  std::size_t failures = 0;
  for (const char* rest :
       {R"("tasks":[]})",
        R"("tasks":[{"status":"N","title":"a]}\"["},{"status":"A"}]})",
        R"( "categories" : [ ] , "tasks" : [ { "status" : "N" , "notes" : [ ] } ] })",
        R"("tasks":[{"status":"N","x":[[{}],"]",1.5e3]}],"later":{"tasks":[1]},"n":-1e400})",
        R"("t\u0061sks":[{"status":"N"}]})",
        R"("tasks":[],"tasks":[{"status":"N"}]})",
        R"("tasks":null})",
        R"("tasks":{}})",
        R"("tasks":[1]})",
        R"("tasks":["a",null]})",
        R"("tasks":[{"status":"N"},{"status":"N","log":[{}]}]})",
        R"("tasks":[{"status":"N"}{}]})",
        R"("tasks":[{"status":"N"},]})",
        R"("tasks":[,]})",
        R"("tasks":[{"status":"N"]}})",
        R"("tasks":[{"status":"N"}]}{})",
        R"("tasks":[{"status":"N"}])",
        R"("tasks":[{"status":"N)",
        R"("tasks":[{"status":"N"}],"categories":[{}]})",
        R"("tasks":[}]})",
        R"("tasks":[)",
        "\"tasks\":[{\"status\":\"N\",\"title\":\"\xFF\"}]}",
        R"("tasks":[tru]})",
        "}",
        "\"tasks\"",
        ""}) {
    const std::string wanted = outcome(
        [](const std::string& json) { return VelloroJSONBackup::fromJSON(json); }, head + rest);
    EXPECT_EQ(outcome(taskByTask, head + rest), wanted) << rest;
    failures += wanted.starts_with('{') ? 0 : 1;
  }
  EXPECT_EQ(failures, 20U);
}

}  // namespace
}  // namespace velloro
