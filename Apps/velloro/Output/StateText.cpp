#include "velloro/Output/StateText.h"

namespace velloro {
namespace {

using Status = CompletionStatus::Status;

std::string_view openText(SkipMode willSkip) {
  if (!isSkip(willSkip)) return "due";
  return willSkip == SkipMode::willSkipWithIndicator ? "not due" : "can wait";
}

}  // namespace

std::string_view stateText(const Status& status) {
  switch (status.kind) {
    case Status::Kind::positiveIncomplete:
      return openText(status.skipMode.value_or(SkipMode::willMissWithoutIndicator));
    case Status::Kind::negativeComplete:
      return "clean";
    case Status::Kind::positiveComplete:
      return "done";
    case Status::Kind::positiveMiss:
      return "missed";
    case Status::Kind::positiveSkip:
      return "skipped";
    case Status::Kind::negativeMiss:
      return "happened";
    case Status::Kind::negativeAllowedMiss:
      return "allowed";
  }
  return "";
}

std::string_view stateText(TaskLogEntryType type) {
  if (isCompletedFullOrPartial(type)) return isPartial(type) ? "part done" : "done";
  if (isMissedFullOrPartial(type)) return isPartial(type) ? "part missed" : "missed";
  if (isSkipped(type)) return "skipped";
  if (isAllowableMissFull(type)) return "allowed";
  if (isTimer(type)) return "timed";
  return type == TaskLogEntryType::externalHealthData ? "measured" : "unknown";
}

std::string_view outcomeText(SkipMode willSkip) {
  return isSkip(willSkip) ? "skipped" : "missed";
}

}  // namespace velloro
