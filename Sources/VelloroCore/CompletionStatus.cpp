#include "VelloroCore/CompletionStatus.h"

#include <algorithm>
#include <array>

namespace velloro {
namespace {

using Status = CompletionStatus::Status;

constexpr auto statuses = [] {
  std::array<Status, 5 + 2 * allCases<SkipMode>().size()> all = {
      Status::positiveComplete, Status::positiveMiss, Status::positiveSkip, Status::negativeMiss,
      Status::negativeAllowedMiss};
  auto* next = all.begin() + 5;
  for (const auto mode : allCases<SkipMode>()) *next++ = Status::positiveIncomplete(mode);
  for (const auto mode : allCases<SkipMode>()) *next++ = Status::negativeComplete(mode);
  return all;
}();

}  // namespace

std::span<const Status> Status::allCases() {
  return statuses;
}

std::string Status::stringValue() const {
  std::string text(rawValue(kind));
  if (skipMode) text.append("_").append(rawValue(*skipMode));
  return text;
}

std::optional<Status> Status::fromStringValue(std::string_view text) {
  const auto* status = std::ranges::find(statuses, text, &Status::stringValue);
  return status == statuses.end() ? std::nullopt : std::optional(*status);
}

Status Status::decode(const Decoder& from) {
  const std::string_view text = from.text();
  if (const auto status = fromStringValue(text)) return *status;
  throw from.dataCorrupted("Unable to decode enum with value " + std::string(text));
}

bool Status::isNegative() const {
  return kind == Kind::negativeComplete || kind == Kind::negativeMiss ||
         kind == Kind::negativeAllowedMiss;
}

}  // namespace velloro
