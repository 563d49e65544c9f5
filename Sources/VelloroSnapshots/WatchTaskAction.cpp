#include "VelloroSnapshots/WatchTaskAction.h"

#include <algorithm>

namespace velloro {
namespace {

struct TaskOf {
  UniqueID operator()(const WatchTaskAction::CompletionInfo& info) const { return info.taskID; }
  UniqueID operator()(const WatchTaskAction::TimingInfo& info) const {
    return info.summary.taskIdentifier;
  }
  UniqueID operator()(const WatchTaskAction::NoteInfo& info) const { return info.taskID; }
};

template <typename Variant>
Variant decodeCase(const Decoder& from) {
  const auto isKnown = [&](std::string_view name) {
    return std::ranges::count(Variant::codingCases.entries, name, &CodingCase::name) > 0;
  };
  const bool isObject = from.kind() == Decoder::Kind::object;
  if (isObject && (from.count() != 1 || !isKnown(from.onlyField().first))) {
    throw from.dataCorrupted("Unable to decode enum");
  }
  return coding_detail::VariantCoding<Variant>::decode(from);
}

}  // namespace

WatchTaskContext WatchTaskContext::decode(const Decoder& from) {
  return decodeCase<WatchTaskContext>(from);
}

WatchTaskNote::DateType WatchTaskNote::DateType::decode(const Decoder& from) {
  return decodeCase<DateType>(from);
}

WatchTaskAction::ActionType WatchTaskAction::ActionType::decode(const Decoder& from) {
  return decodeCase<ActionType>(from);
}

UniqueID WatchTaskAction::taskID() const {
  return std::visit(TaskOf{}, actionType.value);
}

}  // namespace velloro
