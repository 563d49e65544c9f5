#pragma once

#include "Foundation/Time/Date.h"
#include "Foundation/Values/Data.h"
#include "OxKit/AppVersion.h"
#include "OxKit/OxCodableColor.h"
#include "VelloroBackup/VelloroJSONBackupNotificationSettings.h"
#include "VelloroBackup/VelloroJSONBackupTaskExtra.h"
#include "VelloroBackup/VelloroJSONBackupValues.h"
#include "VelloroCore/Appearance/TaskDisplayOrder.h"
#include "VelloroCore/Frequency/DayMode.h"
#include "VelloroCore/Frequency/DaysOfMonth.h"
#include "VelloroCore/Log/TaskLogEntryPeriod.h"
#include "VelloroCore/Log/TaskLogEntryType.h"
#include "VelloroCore/Status/TaskStatus.h"
#include "VelloroCore/Types/AutomaticTaskType.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace velloro {

/// The forms of a backup's file.
enum class VelloroBackupFormat : std::uint8_t { json, csv };

struct VelloroBackupFormatRow {
  VelloroBackupFormat value;
  std::string_view raw;  ///< The extension of its files.
  std::string_view typeIdentifier;
};

inline constexpr VelloroBackupFormatRow velloroBackupFormatRows[] = {
    {VelloroBackupFormat::json, "velloro", "velloro.app.data"},
    {VelloroBackupFormat::csv, "csv", "public.comma-separated-values-text"},
};

constexpr auto rawValues(std::type_identity<VelloroBackupFormat>) {
  return rawColumn(velloroBackupFormatRows);
}

[[nodiscard]] constexpr std::string_view fileExtension(VelloroBackupFormat format) {
  return rowOf(velloroBackupFormatRows, format).raw;
}
[[nodiscard]] constexpr std::string_view typeIdentifier(VelloroBackupFormat format) {
  return rowOf(velloroBackupFormatRows, format).typeIdentifier;
}
/// By exactly that extension, without a dot.
[[nodiscard]] constexpr std::optional<VelloroBackupFormat> backupFormat(
    std::string_view fileExtension) {
  return fromRawValue<VelloroBackupFormat>(fileExtension);
}

/// One entry of a task's log.
struct VelloroJSONBackupTaskEntry {
  std::optional<UniqueID> uniqueId = {};
  TaskLogEntryType entryType = TaskLogEntryType::unknown;
  YYYYMMDD entryDate = {};
  std::optional<double> progress = {};
  std::optional<Date> createdTimestamp = {};
  std::optional<YYYYMMDD> entryPeriodFrom = {}, entryPeriodTo = {};
  std::optional<TaskFrequencyPeriodType> entryPeriodType = {};

  /// That of the stored fields; without them the day of the entry.
  [[nodiscard]] TaskLogEntryPeriod period() const;

  bool operator==(const VelloroJSONBackupTaskEntry&) const = default;
  static constexpr auto codingKeys = [] {
    using E = VelloroJSONBackupTaskEntry;
    return keys(
        key("uniqueId", &E::uniqueId), key("entryType", &E::entryType),
        key("entryDate", &E::entryDate), key("progress", &E::progress),
        key("createdTimestamp", &E::createdTimestamp), key("entryPeriodFrom", &E::entryPeriodFrom),
        key("entryPeriodTo", &E::entryPeriodTo), key("entryPeriodType", &E::entryPeriodType));
  }();
};

struct VelloroJSONBackupNote {
  enum class Status : std::uint8_t { normal, pinned, trashed };
  struct Content {
    std::string body;

    bool operator==(const Content&) const = default;
    static constexpr auto codingKeys = keys(key("body", &Content::body));
  };

  std::optional<UniqueID> uniqueID = {};
  Status status = Status::normal;
  std::optional<YYYYMMDD> date = {};
  std::optional<Date> createdDate = {};
  std::optional<CodableTimeZone> createdTimeZone = {};
  Content content = {};

  bool operator==(const VelloroJSONBackupNote&) const = default;
  static constexpr auto codingKeys =
      keys(key("uniqueID", &VelloroJSONBackupNote::uniqueID),
           key("status", &VelloroJSONBackupNote::status), key("date", &VelloroJSONBackupNote::date),
           key("createdDate", &VelloroJSONBackupNote::createdDate),
           key("createdTimeZone", &VelloroJSONBackupNote::createdTimeZone),
           key("content", &VelloroJSONBackupNote::content));
};

constexpr auto rawValues(std::type_identity<VelloroJSONBackupNote::Status>) {
  return caseNames<VelloroJSONBackupNote::Status::trashed>();
}

struct VelloroJSONBackupCategory {
  UniqueID uniqueID = {};
  std::string title = {};
  std::optional<VelloroJSONBackupVisualRepresentation> visualRepresentation = {};
  std::optional<OxCodableColor> color = {};
  /// No document carries it.
  std::optional<IconVisualRepresentation::DisplayProperties> displayProperties = {};

  bool operator==(const VelloroJSONBackupCategory&) const = default;
  static constexpr auto codingKeys =
      keys(key("uniqueID", &VelloroJSONBackupCategory::uniqueID),
           key("title", &VelloroJSONBackupCategory::title),
           key("visualRepresentation", &VelloroJSONBackupCategory::visualRepresentation),
           key("color", &VelloroJSONBackupCategory::color));
};

/// One value of the settings that all devices share.
struct VelloroJSONBackupSettingsSetting {
  std::string key = {};
  std::optional<Date> dateCreated = {}, dateUpdated = {}, dateValue = {};
  std::optional<bool> booleanValue = {};
  std::optional<Data> codableValue = {};
  std::optional<double> doubleValue = {};
  std::optional<std::int64_t> intValue = {};
  std::optional<std::string> stringValue = {};

  bool operator==(const VelloroJSONBackupSettingsSetting&) const = default;
  static constexpr auto codingKeys = [] {
    using S = VelloroJSONBackupSettingsSetting;
    using platform::key;
    return keys(key("key", &S::key), key("dateCreated", &S::dateCreated),
                key("dateUpdated", &S::dateUpdated), key("dateValue", &S::dateValue),
                key("booleanValue", &S::booleanValue), key("codableValue", &S::codableValue),
                key("doubleValue", &S::doubleValue), key("intValue", &S::intValue),
                key("stringValue", &S::stringValue));
  }();
};

struct VelloroJSONBackupSettingsContainer {
  std::vector<VelloroJSONBackupSettingsSetting> settings = {};

  bool operator==(const VelloroJSONBackupSettingsContainer&) const = default;
  static constexpr auto codingKeys =
      keys(key("settings", &VelloroJSONBackupSettingsContainer::settings));
};

/// Names the record of a shared task.
struct VelloroJSONBackupTaskShareInfoEntry {
  std::string recordName = {};
  std::optional<std::string> zoneName = {};
  std::string zoneOwnerName = {};

  bool operator==(const VelloroJSONBackupTaskShareInfoEntry&) const = default;
  static constexpr auto codingKeys =
      keys(key("recordName", &VelloroJSONBackupTaskShareInfoEntry::recordName),
           key("zoneName", &VelloroJSONBackupTaskShareInfoEntry::zoneName),
           key("zoneOwnerName", &VelloroJSONBackupTaskShareInfoEntry::zoneOwnerName));
};

/// A task with its log and notes. Only its status is needed.
struct VelloroJSONBackupTask {
  std::optional<UniqueID> uniqueId = {};
  std::optional<std::string> title = {};
  std::optional<std::string> titleFormatted = {};
  std::optional<VelloroJSONBackupVisualRepresentation> visualRepresentation = {};
  std::optional<IconVisualRepresentation::DisplayProperties> displayProperties = {};
  std::optional<Date> createdTimestamp = {};
  std::optional<CodableTimeZone> createdTimeZone = {};
  TaskStatus status = defaultStatus;
  std::optional<VelloroJSONBackupTaskTypeNameContainer> typeName = {};
  std::optional<AutomaticTaskType::TypeUnit> typeUnit = {};
  std::optional<VelloroJSONBackupTaskSpeedContainer> typeSpeed = {};
  std::optional<double> typeProgress = {}, typeTarget = {};
  std::optional<std::int64_t> typeProgressDate = {};  ///< `YYYYMMDD::intValue`.
  std::optional<AutomaticTaskType::DataSource> dataSource = {};
  std::optional<VelloroJSONBackupTaskNotificationSettings> notificationSettings = {};
  std::optional<DayMode> daysMode = {};
  std::optional<DaysOfWeek> daysOfWeek = {};
  std::optional<DaysOfMonth> daysOfMonth = {};
  std::optional<std::int64_t> numCompletions = {}, dayInterval = {}, timesPerDay = {};
  std::optional<TaskPageNumber> pageNumber = {};
  std::optional<bool> negativeTask = {};
  std::optional<VelloroJSONBackupTaskExtra> taskExtra = {};
  std::optional<CalendarDayOfWeek> firstDayOfWeek = {};
  std::optional<OxCodableColor> taskColor = {};
  std::optional<std::vector<VelloroJSONBackupTaskEntry>> log = {};
  std::optional<VelloroJSONBackupTaskShareInfoEntry> shareInfo = {};
  std::optional<std::set<UniqueID>> categoryIDs = {};
  std::optional<std::vector<VelloroJSONBackupNote>> notes = {};

  bool operator==(const VelloroJSONBackupTask&) const = default;
  static constexpr auto codingKeys = [] {
    using T = VelloroJSONBackupTask;
    return keys(
        key("uniqueId", &T::uniqueId), key("title", &T::title),
        key("titleFormatted", &T::titleFormatted),
        key("visualRepresentation", &T::visualRepresentation),
        key("displayProperties", &T::displayProperties),
        key("createdTimestamp", &T::createdTimestamp), key("createdTimeZone", &T::createdTimeZone),
        key("status", &T::status), key("typeName", &T::typeName), key("typeUnit", &T::typeUnit),
        key("typeSpeed", &T::typeSpeed), key("typeProgress", &T::typeProgress),
        key("typeTarget", &T::typeTarget), key("typeProgressDate", &T::typeProgressDate),
        key("dataSource", &T::dataSource), key("notificationSettings", &T::notificationSettings),
        key("daysMode", &T::daysMode), key("daysOfWeek", &T::daysOfWeek),
        key("daysOfMonth", &T::daysOfMonth), key("numCompletions", &T::numCompletions),
        key("dayInterval", &T::dayInterval), key("timesPerDay", &T::timesPerDay),
        key("pageNumber", &T::pageNumber), key("negativeTask", &T::negativeTask),
        key("taskExtra", &T::taskExtra), key("firstDayOfWeek", &T::firstDayOfWeek),
        key("taskColor", &T::taskColor), key("log", &T::log), key("shareInfo", &T::shareInfo),
        key("categoryIDs", &T::categoryIDs), key("notes", &T::notes));
  }();
};

/// A backup: one JSON document with the tasks, their logs and their notes. Dates are ISO 8601.
///
///     const auto backup = VelloroJSONBackup::fromJSON(
///         R"({"version":1,"timestamp":"2024-03-07T03:00:00Z","tasks":[{"status":"N"}]})");
///     backup.tasks.front().status == TaskStatus::normal;    // true
///     VelloroJSONBackup::fromJSON(R"({"version":1,"timestamp":"2024-03-07T03:00:00Z"})");
///         // throws DecodingError
struct VelloroJSONBackup {
  enum class BackupType : std::uint8_t { manual, migrator, scheduled, automated };

  std::int64_t version = 1;  ///< Kept, and not tested on reading.
  Date timestamp;
  std::vector<VelloroJSONBackupTask> tasks = {};
  std::optional<std::vector<VelloroJSONBackupCategory>> categories = {};
  std::optional<VelloroJSONBackupSettingsContainer> settings = {};
  std::optional<BackupType> backupType = {};
  std::optional<std::string> backupDescription = {};
  std::optional<AppVersion> appVersion = {};

  /// A document that can't be read in full, also for a text of an enumeration that is not known,
  /// fails with the path to what is wrong. Unknown keys are ignored. \throws DecodingError
  [[nodiscard]] static VelloroJSONBackup fromJSON(std::string_view json);
  [[nodiscard]] std::string jsonData() const;
  [[nodiscard]] std::string prettyJsonData() const;

  bool operator==(const VelloroJSONBackup&) const = default;
  static constexpr auto codingKeys = [] {
    using B = VelloroJSONBackup;
    return keys(key("version", &B::version), key("timestamp", &B::timestamp),
                key("tasks", &B::tasks), key("categories", &B::categories),
                key("settings", &B::settings), key("backupType", &B::backupType),
                key("backupDescription", &B::backupDescription), key("appVersion", &B::appVersion));
  }();
};

constexpr auto rawValues(std::type_identity<VelloroJSONBackup::BackupType>) {
  return caseNames<VelloroJSONBackup::BackupType::automated>();
}

}  // namespace velloro
