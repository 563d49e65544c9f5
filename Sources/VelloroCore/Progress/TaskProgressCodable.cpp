#include "VelloroCore/Progress/TaskProgressCodable.h"

#include "Foundation/Coding/Coding.h"

#include <algorithm>
#include <limits>
#include <type_traits>

namespace velloro {
namespace {

template <typename... Record>
TaskProgress decodeBase(TaskProgressType type, const Decoder& from,
                        std::type_identity<std::variant<Record...>>) {
  TaskProgress progress;
  ((type == Record::type && (progress = from.decode<Record>("base"), true)) || ...);
  return progress;
}

}  // namespace

ExpectedCompletions expectedCompletionsStandIn(const Decoder& record) {
  const auto none = [] { return std::int64_t{0}; };
  const auto stored = record.find("numCompletions");
  const auto done = stored ? stored->firstOf([&] { return stored->integer(); }, none) : 0;
  constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
  return std::max<std::int64_t>(2, done < most ? done + 1 : most);
}

bool TaskProgressCodable::operator==(const TaskProgressCodable& other) const {
  return hashValue(*this) == hashValue(other);
}

void TaskProgressCodable::encode(Encoder& to) const {
  to.object([&](ObjectEncoder& object) {
    object.encode("type", base.type());
    std::visit([&](const auto& record) { object.encode("base", record); }, base.record);
  });
}

TaskProgressCodable TaskProgressCodable::decode(const Decoder& from) {
  const auto type = from.decode<TaskProgressType>("type");
  return {.base = decodeBase(type, from, std::type_identity<decltype(TaskProgress::record)>())};
}

}  // namespace velloro
