#include "Tasks/Columns/StoredForms.h"

#include "Foundation/Values/NSCache.h"
#include "OxCheckableTasks/Icons/IconDisplayRepresentation.h"
#include "Tasks/Columns/StoredJSON.h"
#include "Tasks/Columns/TextParts.h"
#include "VelloroBackup/VelloroJSONBackupTaskExtra.h"
#include "VelloroCore/Reminders/TriggerRegion.h"
#include "VelloroTaskShare/SharedTaskParticipant.h"

#include <algorithm>
#include <charconv>

namespace velloro {
namespace {

constexpr std::int64_t secondsPerDay = 86400;

/// A decimal integer and nothing else.
std::optional<std::int64_t> integer(std::string_view text) {
  std::int64_t number = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  return error == std::errc{} && stop == end ? std::optional(number) : std::nullopt;
}

}  // namespace

std::optional<HHMMSS> StoredStartOfDay::decode(std::int64_t seconds) {
  return seconds >= 1 ? HHMMSS::fromIntValue(seconds % secondsPerDay) : std::nullopt;
}

std::int32_t StoredStartOfDay::encode(const HHMMSS& time) {
  return static_cast<std::int32_t>(time.isMidnight() ? secondsPerDay : time.intValue());
}

std::optional<std::set<std::int64_t>> StoredDayIndexes::decode(const std::string& text) {
  std::set<std::int64_t> indexes;
  for (const std::string_view part : nonEmptyParts(text, ',')) {
    if (const auto index = integer(part)) indexes.insert(*index);
  }
  return indexes;
}

std::string StoredDayIndexes::encode(const std::set<std::int64_t>& indexes) {
  std::string joined;
  for (const std::int64_t index : indexes) {
    joined += (joined.empty() ? "" : ",") + std::to_string(index);
  }
  return joined;
}

bool StoredDayIndexes::isWhole(const std::string& text) {
  return std::ranges::all_of(nonEmptyParts(text, ','),
                             [](std::string_view part) { return integer(part).has_value(); });
}

}  // namespace velloro

namespace platform {

using namespace velloro;

std::optional<OxCodableColor> StoredForm<OxCodableColor>::decode(const std::string& text) {
  using Colors = NSCache<std::string, std::optional<OxCodableColor>>;
  static auto* colors = new Colors({.count = 256});
  if (text.empty()) return std::nullopt;
  if (const auto known = colors->object(text)) return *known;
  const auto color = OxCodableColor::fromSpaceSeparated(text);
  colors->setObject(text, color);
  return color;
}

std::string StoredForm<OxCodableColor>::encode(const OxCodableColor& color) {
  return color.toSpaceSeparated();
}

using Icon = IconDisplayRepresentation;

std::optional<Icon> StoredForm<Icon>::decode(const std::string& text) {
  if (text.empty()) return std::nullopt;
  return Icon::fromCoreDataStringRepresentation(text);
}

std::string StoredForm<Icon>::encode(const Icon& icon) {
  return icon.coreDataStringRepresentation();
}

bool StoredForm<Icon>::isWhole(const std::string& text) {
  if (text.starts_with('{')) return isWholeJSON<Icon::CoreDataRepresentation>(text);
  return decode(text).has_value();
}

std::optional<TaskExtra> StoredForm<TaskExtra>::decode(const std::string& json) {
  const auto record = json.empty() ? std::nullopt
                                   : fromStoredJSON<VelloroJSONBackupTaskExtra>(json, "TaskExtra",
                                                                                DateForm::iso8601);
  return record ? std::optional(record->taskExtra()) : std::nullopt;
}

std::string StoredForm<TaskExtra>::encode(const TaskExtra& extra) {
  return JSONEncoder{.dateForm = DateForm::iso8601}.encode(codableTaskExtra(extra));
}

bool StoredForm<TaskExtra>::isWhole(const std::string& json) {
  return isWholeJSON<VelloroJSONBackupTaskExtra>(json, DateForm::iso8601);
}

std::optional<TriggerRegion> StoredForm<TriggerRegion>::decode(const Data& json) {
  return fromStoredJSON<TriggerRegion>(json.text(), "TriggerRegion");
}

Data StoredForm<TriggerRegion>::encode(const TriggerRegion& region) {
  return Data(JSONEncoder{}.encode(region));
}

bool StoredForm<TriggerRegion>::isWhole(const Data& json) {
  return isWholeJSON<TriggerRegion>(json.text());
}

using Participants = std::vector<SharedTaskParticipant>;

std::optional<Participants> StoredForm<Participants>::decode(const Data& json) {
  return fromStoredJSON<Participants>(json.text(), "SharedTaskParticipant");
}

Data StoredForm<Participants>::encode(const Participants& participants) {
  return Data(JSONEncoder{}.encode(participants));
}

bool StoredForm<Participants>::isWhole(const Data& json) {
  return isWholeJSON<Participants>(json.text());
}

}  // namespace platform
