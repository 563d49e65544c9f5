#include "VelloroBackup/VelloroJSONBackup.h"

#include "Foundation/Coding/JSON.h"

namespace velloro {

TaskLogEntryPeriod VelloroJSONBackupTaskEntry::period() const {
  using enum TaskFrequencyPeriodType;
  const bool isDated = entryPeriodType && entryPeriodFrom && entryPeriodTo;
  return isDated ? TaskLogEntryPeriod(*entryPeriodType, *entryPeriodFrom, *entryPeriodTo, entryDate)
                 : TaskLogEntryPeriod(day, entryDate, entryDate, entryDate);
}

VelloroJSONBackup VelloroJSONBackup::fromJSON(std::string_view json) {
  return JSONDecoder{.dateForm = DateForm::iso8601, .isStrict = true}.decode<VelloroJSONBackup>(
      json);
}

std::string VelloroJSONBackup::jsonData() const {
  return JSONEncoder{.dateForm = DateForm::iso8601}.encode(*this);
}

std::string VelloroJSONBackup::prettyJsonData() const {
  return JSONEncoder{.dateForm = DateForm::iso8601, .layout = JSONWriter::Layout::pretty}.encode(
      *this);
}

}  // namespace velloro
