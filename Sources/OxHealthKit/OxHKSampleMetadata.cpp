#include "OxHealthKit/OxHKSampleMetadata.h"

#include <algorithm>
#include <ranges>

namespace velloro {

OxHKSampleMetadata OxHKSampleMetadata::from(const LogEntry& logEntry) {
  const std::string entryText = logEntry.entryID.stringValue();
  const auto entry = [](std::string_view key, MetadataValue value) {
    return Entry{std::string(key), std::move(value)};
  };
  return {.externalUUID = logEntry.entryID.uuid,
          .entries = {entry(taskIDKey, MetadataValue::string(logEntry.taskID.stringValue())),
                      entry(dateKey, MetadataValue::int_(logEntry.date.intValue())),
                      entry(entryIDKey, MetadataValue::string(entryText))},
          .syncInfo = SyncInfo{.identifier = entryText, .version = logEntry.syncVersion},
          .wasUserEntered = logEntry.wasUserEntered};
}

std::optional<UniqueID> OxHKSampleMetadata::entryID() const {
  return uniqueIDAt(entryIDKey);
}

std::optional<UniqueID> OxHKSampleMetadata::taskID() const {
  return uniqueIDAt(taskIDKey);
}

std::optional<UniqueID> OxHKSampleMetadata::uniqueIDAt(std::string_view key) const {
  const auto lastFirst = entries | std::views::reverse;
  const auto entry = std::ranges::find(lastFirst, key, &Entry::key);
  if (entry == lastFirst.end()) return std::nullopt;
  const auto* text = std::get_if<std::string>(&entry->value.value);
  return text != nullptr ? UniqueID::fromString(*text) : std::nullopt;
}

PropertyList::Dictionary OxHKSampleMetadata::hkMetadata() const {
  PropertyList::Dictionary metadata;
  const auto set = [&](std::string_view key, PropertyList value) {
    metadata.insert_or_assign(std::string(key), std::move(value));
  };
  for (const auto& [key, value] : entries) {
    set(key, std::visit([](const auto& held) { return PropertyList(held); }, value.value));
  }
  if (externalUUID) set(HKMetadataKeyExternalUUID, externalUUID->uuidString());
  if (syncInfo) {
    set(HKMetadataKeySyncIdentifier, syncInfo->identifier);
    set(HKMetadataKeySyncVersion, syncInfo->version);
  }
  if (wasUserEntered) set(HKMetadataKeyWasUserEntered, *wasUserEntered);
  if (indoorWorkout) set(HKMetadataKeyIndoorWorkout, *indoorWorkout);
  return metadata;
}

}  // namespace velloro
