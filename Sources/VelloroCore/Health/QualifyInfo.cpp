#include "VelloroCore/Health/QualifyInfo.h"

#include "Foundation/Coding/JSON.h"

namespace velloro {

std::string QualifyInfo::HealthRecord::debugDescription() const {
  return "HealthRecord(period=" + JSONEncoder{}.encode(period) +
         " isExternal=" + (isExternal ? "true" : "false") +
         " quantity=" + JSONEncoder{}.encode(quantity) + " unit=" + std::string(rawValue(unit)) +
         ")";
}

std::string QualifyInfo::debugDescription(Date now) const {
  std::string records;
  for (const HealthRecord& record : healthRecords) {
    records += (records.empty() ? "" : ", ") + record.debugDescription();
  }
  return "QualifyInfo(readingType=" + std::string(rawValue(readingType)) +
         " progress=" + progress.base.debugDescription(now) + " healthRecords=[" + records + "])";
}

QualifyError::QualifyError(Kind kind)
    : Error("velloro.QualifyError", static_cast<int>(kind), std::string(rawValue(kind))),
      kind_(kind) {}

SleepError::SleepError(Kind kind)
    : Error("velloro.SleepError", static_cast<int>(kind), std::string(rawValue(kind))) {}

}  // namespace velloro
