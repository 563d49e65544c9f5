#include "Foundation/Coding/JSON.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Fuzz.h"
#include "VelloroBackup/CSVError.h"
#include "VelloroBackup/VelloroCSVBackupRow.h"
#include "VelloroBackup/VelloroJSONBackup.h"

#include <array>
#include <cstdlib>
#include <string>

namespace {

using namespace velloro;

/// What could be read is written, and reads as the same again; a refusal says where and why.
void checkJSON(std::string_view json) {
  std::string written;
  try {
    written = VelloroJSONBackup::fromJSON(json).jsonData();
  } catch (const DecodingError& error) {
    if (error.localizedDescription().empty()) std::abort();
    return;
  }
  const auto again = VelloroJSONBackup::fromJSON(written);
  if (again.jsonData() != written) std::abort();
  for (const VelloroJSONBackupTask& task : again.tasks) {
    if (task.notificationSettings) (void)task.notificationSettings->notificationSettings();
    if (task.taskExtra) (void)task.taskExtra->taskExtra();
  }
}

void checkCSV(std::string_view bytes) {
  const Date now = Date::now();
  std::string written;
  try {
    written = csvString(loadCSV(bytes, now));
  } catch (const CSVError& error) {
    const auto& place = error.place();
    if (error.localizedDescription().empty()) std::abort();
    if (place && (place->line < 1 || place->column < 1)) std::abort();
    return;
  }
  if (csvString(loadCSV(written, now)) != written) std::abort();
}

constexpr std::array<std::string_view, 7> seeds = {
    R"({"version":1,"timestamp":"2024-03-08T11:00:00Z","tasks":[{"status":"N","title":"Read",)"
    R"("uniqueId":"FC2B5EFD-5D24-44C9-82F2-108C2A7C030E","visualRepresentation":"ic_book",)"
    R"("displayProperties":{"orientation":0},"createdTimestamp":"2024-03-08T11:00:00Z",)"
    R"("createdTimeZone":"Europe/Berlin","daysMode":0,"daysOfWeek":42,"timesPerDay":1,"pageNumber":0,)"
    R"("notificationSettings":{"reminderType":"custom","reminders":[{"triggerType":"tod","days":127,)"
    R"("identifier":"1EA5B26B-5FB8-425E-9F38-28169F5D08F2","timeOfDay":65400,"timeZone":"viewer"}]},)"
    R"("taskColor":{"r":0.25,"g":0.5,"b":0.8,"a":1},"log":[{"entryType":1,"entryDate":20240308,)"
    R"("progress":1.5,"createdTimestamp":"2024-03-08T11:00:00Z","entryPeriodFrom":20240308,)"
    R"("entryPeriodTo":20240308,"entryPeriodType":"d"}],"notes":[]}],"backupType":"manual"})",
    R"({"version":1,"timestamp":"2024-03-08T11:00:00Z","tasks":[{"status":"N","typeName":"hk_water",)"
    R"("typeUnit":"cups_us","typeTarget":8,"timesPerDay":8,"negativeTask":true,"daysMode":0}],)"
    R"("categories":[],"settings":{"settings":[{"key":"startOfDay","intValue":5}]}})",
    "task_id,title,icon,entry_type,entry_date,entry_timestamp,quantity,page,notes\n"
    "1B4E28BA-2FA1-11D2-883F-0016D3CCA427,Read,ic_book,completed_manually,20240307,"
    "2024-03-07T10:00:00.000Z,2.5,1,\"a, \"\"b\"\"\nc\"\n",
    "title,entry_type,entry_date\nRead,completed_manually,20240308\nRun,skipped,20240306\nWalk,,\n",
    "\xEF\xBB\xBFtitle,page\n\xC3\xA4,0\n",
    std::string_view("\xFF\xFEt\0i\0t\0l\0e\0\n\0a\0\n\0", 18),
    "title\r\nRead\r\n",
};

}  // namespace

std::span<const std::string_view> fuzzSeeds() {
  return seeds;
}

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static const platform::VirtualEnvironment environment;
  const std::string_view text(reinterpret_cast<const char*>(bytes), size);
  checkJSON(text);
  checkCSV(text);
  return 0;
}
