#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Coding/PropertyList.h"
#include "Foundation/Values/UUID.h"
#include "OxDateTime/YYYYMMDD.h"
#include "OxKit/UniqueID.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace velloro {

// The keys under which a health store knows what it reads itself in a sample's metadata.
inline constexpr std::string_view HKMetadataKeyExternalUUID = "HKExternalUUID";
inline constexpr std::string_view HKMetadataKeySyncIdentifier = "HKMetadataKeySyncIdentifier";
inline constexpr std::string_view HKMetadataKeySyncVersion = "HKMetadataKeySyncVersion";
inline constexpr std::string_view HKMetadataKeyWasUserEntered = "HKWasUserEntered";
inline constexpr std::string_view HKMetadataKeyIndoorWorkout = "HKIndoorWorkout";

/// What a sample says of its origin.
///
///     const auto metadata = OxHKSampleMetadata::from({.date = {2024, 3, 7}, .syncVersion = 2});
///     metadata.hkMetadata().at("HKMetadataKeySyncVersion").integer();  // 2
struct OxHKSampleMetadata {
  // The keys of the entries in a sample that the program writes for a log entry.
  static constexpr std::string_view taskIDKey = "velloro_task_id";
  static constexpr std::string_view dateKey = "velloro_date";
  static constexpr std::string_view entryIDKey = "velloro_entry_id";

  /// In JSON {"int": 5}.
  struct MetadataValue {
    std::variant<std::string, std::int64_t, double, bool, Date> value;

    [[nodiscard]] static MetadataValue string(std::string text) { return {std::move(text)}; }
    [[nodiscard]] static MetadataValue int_(std::int64_t number) { return {number}; }
    [[nodiscard]] static MetadataValue double_(double number) { return {number}; }
    [[nodiscard]] static MetadataValue bool_(bool flag) { return {flag}; }
    [[nodiscard]] static MetadataValue date(Date date) { return {date}; }

    bool operator==(const MetadataValue&) const = default;
    static constexpr auto codingCases =
        cases(&MetadataValue::value, payload("string"), payload("int"), payload("double"),
              payload("bool"), payload("date"));
  };

  struct Entry {
    std::string key;
    MetadataValue value;

    bool operator==(const Entry&) const = default;
    static constexpr auto codingKeys =
        keys(platform::key("key", &Entry::key), platform::key("value", &Entry::value));
  };

  /// A sample replaces the one in the store with the same identifier and a lower version.
  struct SyncInfo {
    std::string identifier;
    std::int64_t version = 0;

    bool operator==(const SyncInfo&) const = default;
    static constexpr auto codingKeys =
        keys(key("identifier", &SyncInfo::identifier), key("version", &SyncInfo::version));
  };

  std::optional<UUID> externalUUID = {};
  std::vector<Entry> entries = {};
  std::optional<SyncInfo> syncInfo = {};
  /// Whether a person typed the sample in, rather than a device measured it.
  std::optional<bool> wasUserEntered = {};
  std::optional<bool> indoorWorkout = {};

  /// The log entry that the program writes a sample for. Every write of it takes a higher
  /// `syncVersion` than the one before, so that the store keeps one sample per log entry.
  struct LogEntry {
    YYYYMMDD date;
    UniqueID taskID;
    UniqueID entryID;
    std::int64_t syncVersion = 0;
    std::optional<bool> wasUserEntered = {};
  };
  /// Names the task, the day and the log entry in `entries`; the log entry is the external UUID and
  /// the sync identifier as well.
  [[nodiscard]] static OxHKSampleMetadata from(const LogEntry& logEntry);

  /// The log entry and the task that the program wrote the sample for. Absent in others, and when
  /// the text under the key is no identifier.
  [[nodiscard]] std::optional<UniqueID> entryID() const;
  [[nodiscard]] std::optional<UniqueID> taskID() const;

  /// The dictionary that goes with the sample into the store. Of entries with the same key the last
  /// counts; the members count before entries with their keys. The UUID is a text.
  [[nodiscard]] PropertyList::Dictionary hkMetadata() const;

  bool operator==(const OxHKSampleMetadata&) const = default;
  static constexpr auto codingKeys = keys(
      key("externalUUID", &OxHKSampleMetadata::externalUUID),
      key("entries", &OxHKSampleMetadata::entries), key("syncInfo", &OxHKSampleMetadata::syncInfo),
      key("wasUserEntered", &OxHKSampleMetadata::wasUserEntered),
      key("indoorWorkout", &OxHKSampleMetadata::indoorWorkout));

 private:
  [[nodiscard]] std::optional<UniqueID> uniqueIDAt(std::string_view key) const;
};

}  // namespace velloro
