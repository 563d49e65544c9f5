#include "VelloroCore/Advice/GrandSlam.h"

#include <algorithm>
#include <iterator>

namespace velloro {
namespace {

using Status = CompletionStatus::Status;

bool isMissed(const Status& status) {
  return status.kind == Status::Kind::positiveMiss || status.kind == Status::Kind::negativeMiss;
}

bool willMiss(const Status& status) {
  return status.kind == Status::Kind::positiveIncomplete && status.skipMode &&
         !isSkip(*status.skipMode);
}

bool isComplete(const Status& status) {
  return status.kind == Status::Kind::positiveComplete ||
         status.kind == Status::Kind::negativeComplete;
}

}  // namespace

bool GrandSlam::QualifySettings::qualifies(std::span<const Status> statuses) const {
  return (!minTasks || std::ssize(statuses) >= *minTasks) &&
         (!maxMissed || std::ranges::count_if(statuses, isMissed) <= *maxMissed) &&
         (!maxWillMiss || std::ranges::count_if(statuses, willMiss) <= *maxWillMiss) &&
         (!minComplete || std::ranges::count_if(statuses, isComplete) >= *minComplete);
}

}  // namespace velloro
