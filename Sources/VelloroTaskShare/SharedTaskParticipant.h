#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Coding/RawValue.h"
#include "OxKit/Platform.h"

#include <cstdint>
#include <optional>
#include <string>
#include <type_traits>

namespace velloro {

/// The name of a zone of records in the cloud, and of its owner.
struct CodableCKRecordZoneID {
  std::string zoneName;
  std::string ownerName;

  bool operator==(const CodableCKRecordZoneID&) const = default;
  static constexpr auto codingKeys = keys(key("zoneName", &CodableCKRecordZoneID::zoneName),
                                          key("ownerName", &CodableCKRecordZoneID::ownerName));
};

/// The name of a record in the cloud.
struct CodableCKRecordID {
  std::string recordName;
  CodableCKRecordZoneID zoneID;

  bool operator==(const CodableCKRecordID&) const = default;
  static constexpr auto codingKeys = keys(key("recordName", &CodableCKRecordID::recordName),
                                          key("zoneID", &CodableCKRecordID::zoneID));
};

/// A person with whom a task is shared.
struct SharedTaskParticipant {
  enum class AcceptanceStatus : std::uint8_t { unknown, pending, accepted, removed };

  std::optional<std::string> displayTitle = {};
  AcceptanceStatus acceptanceStatus = AcceptanceStatus::unknown;
  std::optional<CodableCKRecordID> userRecordID = {};

  bool operator==(const SharedTaskParticipant&) const = default;
  static constexpr auto codingKeys =
      keys(key("displayTitle", &SharedTaskParticipant::displayTitle),
           key("acceptanceStatus", &SharedTaskParticipant::acceptanceStatus, initialWhenUnknown),
           key("userRecordID", &SharedTaskParticipant::userRecordID));
};

constexpr auto rawValues(std::type_identity<SharedTaskParticipant::AcceptanceStatus>) {
  return caseNames<SharedTaskParticipant::AcceptanceStatus::removed>();
}

}  // namespace velloro
