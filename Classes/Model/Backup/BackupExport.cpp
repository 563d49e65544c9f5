#include "Backup/BackupExport.h"

#include "CoreData/Context/NSManagedObjectContext.h"
#include "CoreData/Context/NSManagedRow.h"
#include "Foundation/Coding/JSON.h"
#include "OxKit/RuntimeError.h"
#include "Settings/Setting.h"
#include "Settings/SettingEntity.h"
#include "Tasks/Requests/TaskLogFetchRequest.h"
#include "Tasks/Rows/TaskCategoryEntity.h"
#include "Tasks/Rows/TaskCounterEntity.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskLogEntryEntity.h"
#include "Tasks/Rows/TaskNoteEntity.h"
#include "Tasks/Rows/TaskShareEntity.h"
#include "Tasks/Rows/TaskTimerEntity.h"
#include "Tasks/Rows/UserProfileEntity.h"
#include "VelloroCore/Types/TaskExtra.h"

#include <algorithm>
#include <tuple>

namespace velloro {
namespace {

using Columns = TaskAttributes;
using Entry = TaskLogEntryEntity;

template <typename Entity>
std::vector<std::shared_ptr<Entity>> fetched(NSManagedObjectContext& context,
                                             const NSFetchRequest& request) {
  auto objects = context.fetch<Entity>(request);
  if (!objects) throw Error(*objects.error());
  return *std::move(objects);
}

/// The text is always of one length, and nothing comes first.
std::string textOf(const std::optional<UniqueID>& id) {
  return id ? id->stringValue() : std::string();
}

/// Parts of a second do not survive a document, and must not decide an order.
std::int64_t secondOf(const std::optional<Date>& date) {
  return date ? date->secondsSince1970() : 0;
}

std::optional<CodableTimeZone> codable(const std::optional<TimeZone>& zone) {
  return zone ? std::optional(CodableTimeZone{*zone}) : std::nullopt;
}

void addType(const AutomaticTaskType& type, VelloroJSONBackupTask& record) {
  using Name = VelloroJSONBackupTaskTypeNameContainer;
  if (const auto health = type.type.healthType()) record.typeName = Name{*health};
  if (type.type == TaskType::screenTime()) record.typeName = Name{Name::ScreenTime{}};
  record.typeUnit = type.unit;
  if (type.unit) record.typeTarget = type.quantity;
  record.dataSource = type.dataSource;
  using Speeds = VelloroJSONBackupTaskSpeedContainer;
  if (type.extra && type.extra->screenTimeSettings) {
    record.typeSpeed = Speeds{*type.extra->screenTimeSettings};
  } else if (type.extra && !type.extra->workoutTypes.empty()) {
    record.typeSpeed = Speeds{type.extra->workoutTypes};
  } else if (!type.speeds.isEmpty()) {
    record.typeSpeed = Speeds{type.speeds};
  }
}

void addFrequency(const TaskEntity& task, VelloroJSONBackupTask& record) {
  record.daysMode = task.value(Columns::daysMode);
  record.daysOfWeek = task.value(Columns::daysOfWeek);
  const std::int64_t count = task.value(Columns::daysPerWeek);
  if (record.daysMode == DayMode::dayInterval) {
    record.dayInterval = count;
  } else if (count != 0) {
    record.numCompletions = count;
  }
  record.timesPerDay = task.value(Columns::daysTimesPerDay);
  record.firstDayOfWeek = task.value(Columns::firstDayOfWeekValue);
}

VelloroJSONBackupNote::Status statusOf(TaskNoteStatus status) {
  return static_cast<VelloroJSONBackupNote::Status>(status);
}

/// Of several rows with a key the oldest counts.
VelloroJSONBackupSettingsSetting recordOf(const SettingEntity& row, const std::string& key) {
  VelloroJSONBackupSettingsSetting record{.key = key,
                                          .dateCreated = row.value(SettingEntity::dateCreated)};
  const auto setting = Setting::fromKey(key);
  const auto kind = setting ? std::optional(setting->row().kind) : std::nullopt;
  const auto holds = [&](SettingKind wanted, bool hasValue) {
    return kind ? *kind == wanted : hasValue;
  };
  const bool flag = row.value(SettingEntity::booleanValue);
  const auto integer = row.value(SettingEntity::intValue);
  const double real = row.value(SettingEntity::doubleValue);
  if (holds(SettingKind::bool_, flag)) record.booleanValue = flag;
  if (holds(SettingKind::int_, integer != 0)) record.intValue = integer;
  if (holds(SettingKind::double_, real != 0)) record.doubleValue = real;
  record.stringValue = row.value(SettingEntity::stringValue);
  record.dateValue = row.value(SettingEntity::dateValue);
  record.codableValue = row.value(SettingEntity::dataValue);
  return record;
}

}  // namespace

BackupExport::BackupExport(NSManagedObjectContext& context, BackupExportOptions options)
    : context_(context), options_(std::move(options)) {}

void BackupExport::leaveOut(const std::string& what, std::size_t count) {
  if (count == 0) return;
  const auto known = std::ranges::find(leftOut_, what, &LeftOut::what);
  (known != leftOut_.end() ? *known : leftOut_.emplace_back(what)).count += count;
}

void BackupExport::write(const Sink& sink, Date now) {
  // A frame without tasks, into whose empty list they are put.
  const std::string document = frame(now).jsonData();
  constexpr std::string_view noTasks = "\"tasks\":[";
  const std::size_t at = document.find(noTasks) + noTasks.size();
  sink(std::string_view(document).substr(0, at));
  bool isFirst = true;
  for (const auto& task : tasks()) {
    if (!std::exchange(isFirst, false)) sink(",");
    sink(JSONEncoder{.dateForm = DateForm::iso8601}.encode(taskOf(*task)));
  }
  sink(std::string_view(document).substr(at));
}

VelloroJSONBackup BackupExport::backup(Date now) {
  VelloroJSONBackup document = frame(now);
  for (const auto& task : tasks()) document.tasks.push_back(taskOf(*task));
  return document;
}

VelloroJSONBackup BackupExport::frame(Date now) {
  VelloroJSONBackup document{.timestamp = now,
                             .backupType = VelloroJSONBackup::BackupType::manual,
                             .appVersion = AppVersion::current()};
  if (options_.categories) document.categories = categories();
  if (options_.settings) document.settings = settings();
  return document;
}

BackupExport::Tasks BackupExport::tasks() const {
  const auto isWanted = [&](const TaskEntity& task) {
    if (const auto* page = std::get_if<BackupExportOptions::Page>(&options_.tasks.value)) {
      return task.taskDisplayOrder().pageNumber == *page;
    }
    const auto* ids = std::get_if<BackupExportOptions::Specific>(&options_.tasks.value);
    const auto id = task.taskUniqueId();
    return ids == nullptr || (id && ids->contains(*id));
  };
  Tasks tasks = fetched<TaskEntity>(context_, NSFetchRequest::of<TaskEntity>());
  std::erase_if(tasks, [&](const auto& task) { return !isWanted(*task); });
  std::ranges::sort(tasks, {}, [](const auto& task) {
    return std::tuple(task->value(Columns::displayOrder), secondOf(task->value(Columns::created)),
                      textOf(task->taskUniqueId()));
  });
  return tasks;
}

VelloroJSONBackupTask BackupExport::taskOf(const TaskEntity& task) {
  VelloroJSONBackupTask record{
      .uniqueId = task.taskUniqueId(),
      .title = task.value(Columns::title),
      .createdTimestamp = task.value(Columns::created),
      .createdTimeZone = codable(task.value(Columns::createdTimeZone)),
      .status = task.taskStatus(),
      .notificationSettings = codableNotificationSettings(task.notificationSettings()),
      .pageNumber = task.taskDisplayOrder().pageNumber,
      .negativeTask = task.value(Columns::isNegative)};
  auto& reminders = *record.notificationSettings->reminders;
  std::ranges::sort(reminders, {}, [](const auto& one) { return textOf(one.identifier); });
  if (const auto type = task.automaticTaskType()) addType(*type, record);
  addFrequency(task, record);
  addAppearance(task, record);
  addLog(task, record);
  addNotes(task, record);
  addOthers(task, record);
  noteWhatIsLeftOut(task);
  return record;
}

void BackupExport::addAppearance(const TaskEntity& task, VelloroJSONBackupTask& record) {
  record.taskColor = task.value(Columns::colorInfo);
  const auto icon = task.displayRepresentation();
  if (!icon) return;
  record.visualRepresentation =
      VelloroJSONBackupVisualRepresentation::of(icon->visualRepresentation);
  if (record.visualRepresentation) {
    record.displayProperties = icon->displayProperties;
  } else {
    leaveOut("emoji and letters of tasks");
  }
}

void BackupExport::addLog(const TaskEntity& task, VelloroJSONBackupTask& record) {
  auto& log = record.log.emplace();
  const auto read = context_.readRows(
      TaskLogFetchRequest{}.fetchRequest(&task),
      {Entry::uniqueId.slot(), Entry::entryType.slot(), Entry::entryDate.slot(),
       Entry::progress.slot(), Entry::createdTimestamp.slot(), Entry::entryPeriodFrom.slot(),
       Entry::entryPeriodTo.slot(), Entry::entryPeriodType.slot(), Entry::cloudStatus.slot()},
      [&](const NSManagedRow& row) {
        const auto day = row.value(Entry::entryDate);
        const std::string* status = row.text(Entry::cloudStatus);
        const bool isProvisional = status != nullptr && *status == Entry::temporaryRecordIdentifier;
        if (isProvisional) return;
        if (!day) return leaveOut("entries without a day");
        log.push_back({.uniqueId = row.value(Entry::uniqueId),
                       .entryType = row.value(Entry::entryType).value_or(TaskLogEntryType::unknown),
                       .entryDate = *day,
                       .progress = row.value(Entry::progress),
                       .createdTimestamp = row.value(Entry::createdTimestamp),
                       .entryPeriodFrom = row.value(Entry::entryPeriodFrom),
                       .entryPeriodTo = row.value(Entry::entryPeriodTo),
                       .entryPeriodType = row.value(Entry::entryPeriodType)});
      });
  if (!read) throw Error(*read.error());
  std::ranges::sort(log, {}, [](const VelloroJSONBackupTaskEntry& entry) {
    return std::tuple(entry.entryDate, secondOf(entry.createdTimestamp), textOf(entry.uniqueId));
  });
}

void BackupExport::addNotes(const TaskEntity& task, VelloroJSONBackupTask& record) {
  auto& notes = record.notes.emplace();
  for (const auto& note : task.value(Columns::taskNote)) {
    const auto body = note->noteContent();
    if (!body) continue;
    const auto status = note->value(TaskNoteEntity::status).value_or(TaskNoteStatus::normal);
    notes.push_back({.uniqueID = note->value(TaskNoteEntity::uniqueId),
                     .status = statusOf(status),
                     .date = note->value(TaskNoteEntity::noteDate),
                     .createdDate = note->value(TaskNoteEntity::createdTimestamp),
                     .createdTimeZone = codable(note->value(TaskNoteEntity::createdTimeZone)),
                     .content = {*body}});
  }
  std::ranges::sort(notes, {}, [](const VelloroJSONBackupNote& note) {
    return std::tuple(note.date.value_or(YYYYMMDD()), secondOf(note.createdDate),
                      textOf(note.uniqueID));
  });
}

void BackupExport::addOthers(const TaskEntity& task, VelloroJSONBackupTask& record) {
  if (const auto extra = task.value(Columns::customReminderType)) {
    record.taskExtra = codableTaskExtra(*extra);
  }
  std::set<UniqueID> ids;
  for (const auto& category : task.value(Columns::taskCategories)) {
    if (const auto id = category->value(TaskCategoryEntity::uniqueId)) ids.insert(*id);
  }
  if (!ids.empty()) record.categoryIDs = std::move(ids);
  const auto share = task.value(Columns::taskShare);
  const auto name = share ? share->value(TaskShareEntity::ckRecordIdRecordName) : std::nullopt;
  if (!name) return;
  record.shareInfo = VelloroJSONBackupTaskShareInfoEntry{
      .recordName = *name,
      .zoneName = share->value(TaskShareEntity::ckRecordIdZoneName),
      .zoneOwnerName = share->value(TaskShareEntity::ckRecordIdZoneOwnerName).value_or("")};
}

/// What a task has that no key of a backup is for.
void BackupExport::noteWhatIsLeftOut(const TaskEntity& task) {
  if (task.value(Columns::startOfDayValue)) leaveOut("starts of the day of tasks");
  if (task.value(Columns::currentTimeZoneOverride)) leaveOut("zones that tasks are pinned to");
  if (task.value(Columns::userProfile)) leaveOut("profiles of tasks");
  leaveOut("counters", task.value(Columns::taskCounter).size());
  leaveOut("running timers", task.value(Columns::taskTimer).size());
  const auto settings = task.notificationSettings();
  leaveOut("snoozes", static_cast<std::size_t>(std::ranges::count_if(
                          settings.reminders,
                          [](const TaskReminder& one) { return one.snoozeDate.has_value(); })));
}

std::vector<VelloroJSONBackupCategory> BackupExport::categories() {
  std::vector<VelloroJSONBackupCategory> records;
  for (const auto& row :
       fetched<TaskCategoryEntity>(context_, NSFetchRequest::of<TaskCategoryEntity>())) {
    const auto id = row->value(TaskCategoryEntity::uniqueId);
    if (!id) {
      leaveOut("categories without an identifier");
      continue;
    }
    VelloroJSONBackupCategory record{.uniqueID = *id,
                                     .title = row->value(TaskCategoryEntity::title).value_or(""),
                                     .color = row->value(TaskCategoryEntity::colorInfo)};
    if (const auto icon = row->value(TaskCategoryEntity::iconName)) {
      record.visualRepresentation =
          VelloroJSONBackupVisualRepresentation::of(icon->visualRepresentation);
      if (!record.visualRepresentation) leaveOut("emoji and letters of categories");
    }
    records.push_back(std::move(record));
  }
  std::ranges::sort(records, {}, [](const auto& one) { return textOf(one.uniqueID); });
  return records;
}

VelloroJSONBackupSettingsContainer BackupExport::settings() const {
  using Row = SettingEntity;
  auto rows = fetched<Row>(context_, NSFetchRequest::of<Row>());
  std::ranges::sort(rows, {}, [](const auto& row) {
    return std::tuple(row->value(Row::settingKey).value_or(""),
                      row->value(Row::dateCreated).value_or(Date::distantFuture()));
  });
  VelloroJSONBackupSettingsContainer container;
  for (const auto& row : rows) {
    const auto key = row->value(Row::settingKey);
    const bool isTwin = !container.settings.empty() && container.settings.back().key == key;
    if (key && !isTwin) container.settings.push_back(recordOf(*row, *key));
  }
  return container;
}

}  // namespace velloro
