#include "Host/BackupImport.h"

#include "CoreData/Context/NSManagedObjectContext.h"
#include "Foundation/Text/String.h"
#include "Host/HostStore.h"
#include "Host/LogWriter.h"
#include "Host/NotificationUpdates.h"
#include "OxCheckableTasks/Icons/IconDisplayRepresentation.h"
#include "Settings/SettingEntity.h"
#include "Tasks/Log/StoredEntries.h"
#include "Tasks/Requests/TaskLogFetchRequest.h"
#include "Tasks/Rows/TaskCategoryEntity.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/TaskNoteEntity.h"
#include "Tasks/Rows/TaskShareEntity.h"
#include "Tasks/Rows/TaskWriting.h"
#include "Tasks/Status/StoredTaskStatus.h"
#include "VelloroCore/Log/LogEntryRules.h"
#include "VelloroCore/Types/TaskExtra.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <map>
#include <set>
#include <tuple>

namespace velloro {
namespace {

using Columns = TaskAttributes;
using Entry = TaskLogEntryEntity;
using Strategy = BackupImportOptions::DuplicateInBackupStrategy;
using TaskPtr = std::shared_ptr<TaskEntity>;

template <typename Entity>
std::vector<std::shared_ptr<Entity>> all(const HostStore& store) {
  auto objects = store.context().fetch<Entity>(NSFetchRequest::of<Entity>());
  if (!objects) throw HostError(objects.error()->localizedDescription());
  return *std::move(objects);
}

std::int16_t inColumn(std::optional<std::int64_t> number) {
  constexpr std::int64_t most = std::numeric_limits<std::int16_t>::max();
  return static_cast<std::int16_t>(std::clamp<std::int64_t>(number.value_or(0), 0, most));
}

/// A document has no parts of a second.
template <typename Row, typename Attribute>
void writeInstant(Row& row, const Attribute& attribute, const std::optional<Date>& date) {
  const auto stored = row.value(attribute);
  const bool isSame = stored && date && stored->secondsSince1970() == date->secondsSince1970();
  if (!isSame) row.replaceValue(attribute, date);
}

std::optional<AutomaticTaskType> typeOf(const VelloroJSONBackupTask& record) {
  AutomaticTaskType type;
  using Speeds = VelloroJSONBackupTaskSpeedContainer;
  const auto* speeds =
      record.typeSpeed ? std::get_if<TypeSpeeds>(&record.typeSpeed->value) : nullptr;
  if (record.typeName) {
    const auto* health = std::get_if<HealthType>(&record.typeName->value);
    type.type = health != nullptr ? TaskType(*health) : TaskType::screenTime();
  } else if (speeds != nullptr && speeds->contains(TypeSpeed::timed)) {
    type.type = TaskType::timer();
  } else {
    return std::nullopt;
  }
  type.unit = record.typeUnit;
  type.quantity = record.typeTarget.value_or(0);
  type.dataSource = record.dataSource;
  if (speeds != nullptr) type.speeds = *speeds;
  if (!record.typeSpeed) return type;
  if (const auto* workouts = std::get_if<Speeds::WorkoutTypes>(&record.typeSpeed->value)) {
    type.extra.emplace().workoutTypes = *workouts;
  }
  if (const auto* screen = std::get_if<ScreenTimeSettings>(&record.typeSpeed->value)) {
    type.extra.emplace().screenTimeSettings = *screen;
  }
  return type;
}

/// Adds one backup to the store.
class Import {
 public:
  Import(const HostStore& store, const BackupImportOptions& options, Date now)
      : store_(store), options_(options), now_(now), tasks_(store.tasks({})) {}

  void add(const BackupDocument& document) {
    const VelloroJSONBackup& frame = document.frame();
    if (frame.categories) addCategories(*frame.categories);
    for (const auto& row : all<TaskCategoryEntity>(store_)) {
      if (const auto id = row->value(TaskCategoryEntity::uniqueId)) categories_.emplace(*id, row);
    }
    document.forEachTask([&](const VelloroJSONBackupTask& record) { addTask(record); });
    if (frame.settings) addSettings(frame.settings->settings);
  }

  [[nodiscard]] const std::vector<TaskPtr>& changed() const { return changed_; }
  [[nodiscard]] BackupImportReport report() && { return std::move(report_); }

 private:
  [[nodiscard]] NSManagedObjectContext& context() const { return store_.context(); }
  [[nodiscard]] bool is(Strategy strategy) const {
    return options_.duplicateInBackupStrategy == strategy;
  }
  void decide(const std::string& what, const std::string& why) {
    report_.decisions.push_back({what, why});
  }

  void addTask(const VelloroJSONBackupTask& record);
  [[nodiscard]] bool isExcluded(const VelloroJSONBackupTask& record) const;
  [[nodiscard]] TaskPtr known(const VelloroJSONBackupTask& record);
  TaskPtr newTask(const VelloroJSONBackupTask& record, bool keepsID);
  void setFields(TaskEntity& task, const VelloroJSONBackupTask& record);
  void setRhythm(TaskEntity& task, const VelloroJSONBackupTask& record);
  bool setReminders(TaskEntity& task, const VelloroJSONBackupTask& record, bool keepsIDs);
  void setCategories(TaskEntity& task, const VelloroJSONBackupTask& record);
  void setShare(TaskEntity& task, const VelloroJSONBackupTaskShareInfoEntry& info);
  [[nodiscard]] TaskDisplayOrder placeOn(TaskPageNumber page, const std::string& title);

  using Record = VelloroJSONBackupTaskEntry;
  BackupImportReport::Rows addLog(TaskEntity& task, const std::vector<Record>& log, bool keepsIDs,
                                  bool replaces);
  void write(Entry& entry, const Record& record);
  void recountTotals(TaskEntity& task);
  using Note = VelloroJSONBackupNote;
  BackupImportReport::Rows addNotes(TaskEntity& task, const std::vector<Note>& notes, bool keepsIDs,
                                    bool replaces);
  void addCategories(const std::vector<VelloroJSONBackupCategory>& records);
  void addSettings(const std::vector<VelloroJSONBackupSettingsSetting>& records);

  const HostStore& store_;
  const BackupImportOptions& options_;
  const Date now_;
  std::vector<TaskPtr> tasks_;
  std::map<UniqueID, std::shared_ptr<TaskCategoryEntity>> categories_;
  std::vector<TaskPtr> changed_;
  BackupImportReport report_;
};

void sum(BackupImportReport::Rows& into, const BackupImportReport::Rows& more) {
  into.added += more.added;
  into.changed += more.changed;
  into.removed += more.removed;
}

bool Import::isExcluded(const VelloroJSONBackupTask& record) const {
  const auto& ids = record.status == TaskStatus::archived ? options_.excludeArchivedTaskIDs
                                                          : options_.excludeActiveTaskIDs;
  return record.uniqueId && ids.contains(*record.uniqueId);
}

TaskPtr Import::known(const VelloroJSONBackupTask& record) {
  const auto found = std::ranges::find_if(tasks_, [&](const TaskPtr& task) {
    return record.uniqueId ? task->taskUniqueId() == record.uniqueId
                           : record.title && task->value(Columns::title) == record.title;
  });
  if (found == tasks_.end()) return nullptr;
  if (!record.uniqueId) {
    decide(inQuotes(*record.title), "has no identifier; taken for the task of the same title");
  }
  return *found;
}

void Import::addTask(const VelloroJSONBackupTask& record) {
  if (isExcluded(record)) {
    ++report_.tasks.skipped;
    return;
  }
  TaskPtr task = is(Strategy::importWithNewID) ? nullptr : known(record);
  const bool isNew = task == nullptr;
  if (!isNew && is(Strategy::skip)) {
    ++report_.tasks.skipped;
    return;
  }
  const bool keepsIDs = !is(Strategy::importWithNewID);
  const bool replaces = isNew || is(Strategy::overwrite);
  if (isNew) task = newTask(record, keepsIDs);
  bool hasChanged = false;
  if (replaces) {
    setFields(*task, record);
    hasChanged = setReminders(*task, record, keepsIDs);
    setCategories(*task, record);
  }
  const auto entries = addLog(*task, record.log.value_or(std::vector<Record>()), keepsIDs,
                              is(Strategy::overwrite) && !isNew);
  const auto notes = addNotes(*task, record.notes.value_or(std::vector<Note>()), keepsIDs,
                              is(Strategy::overwrite) && !isNew);
  sum(report_.entries, entries);
  sum(report_.notes, notes);
  hasChanged = hasChanged || task->isUpdated() || entries != BackupImportReport::Rows() ||
               notes != BackupImportReport::Rows();
  if (isNew) {
    ++report_.tasks.added;
  } else {
    report_.tasks.changed += hasChanged ? 1 : 0;
  }
  if (!isNew && !hasChanged) return;
  recountTotals(*task);
  updateDerivedData(*task, now_);
  changed_.push_back(task);
  // With the entries of all tasks at hand, each fetch would look at all of them.
  if (const auto written = context().writePending(); !written) {
    throw HostError(written.error()->localizedDescription());
  }
}

TaskPtr Import::newTask(const VelloroJSONBackupTask& record, bool keepsID) {
  auto task = TaskEntity::create(context());
  const bool hasID = keepsID && record.uniqueId;
  task->setValue(Columns::uniqueId, hasID ? *record.uniqueId : UniqueID::create());
  setTaskDisplayOrder(
      *task, placeOn(record.pageNumber.value_or(TaskPageNumber::first), record.title.value_or("")));
  tasks_.push_back(task);
  return task;
}

/// Behind the last task of the page, or with it where there is no place left.
TaskDisplayOrder Import::placeOn(TaskPageNumber page, const std::string& title) {
  constexpr std::int64_t lastPage = std::numeric_limits<std::int16_t>::max() / 100 - 1;
  if (page.value < 0 || page.value > lastPage) {
    decide(inQuotes(title), "there is no such page; it stands on the first one");
    page = TaskPageNumber::first;
  }
  constexpr std::int64_t lastPlace = 98;
  TaskDisplayOrder place{page, 0};
  for (const TaskPtr& task : tasks_) {
    const TaskDisplayOrder taken = task->taskDisplayOrder();
    if (taken.pageNumber == page) place.position = std::max(place.position, taken.position + 1);
  }
  if (place.position > lastPlace) {
    decide(inQuotes(title), "its page is full; it shares the last place there");
    place.position = lastPlace;
  }
  return place;
}

void Import::setFields(TaskEntity& task, const VelloroJSONBackupTask& record) {
  task.replaceValue(Columns::title, record.title);
  setTaskStatus(task, record.status, now_);
  if (record.createdTimestamp) writeInstant(task, Columns::created, record.createdTimestamp);
  if (record.createdTimeZone) {
    task.replaceValue(Columns::createdTimeZone, std::optional(record.createdTimeZone->timeZone));
  }
  task.setValue(Columns::isNegative, record.negativeTask.value_or(false));
  task.replaceValue(Columns::colorInfo, record.taskColor);
  std::optional<IconDisplayRepresentation> icon;
  if (record.visualRepresentation) {
    icon = {.visualRepresentation = record.visualRepresentation->value,
            .displayProperties =
                record.displayProperties.value_or(IconVisualRepresentation::DisplayProperties())};
  }
  task.replaceValue(Columns::imageName, icon);
  std::optional<TaskExtra> extra;
  if (record.taskExtra) extra = record.taskExtra->taskExtra();
  task.replaceValue(Columns::customReminderType, extra);
  setAutomaticTaskType(task, typeOf(record));
  setRhythm(task, record);
  if (record.shareInfo) setShare(task, *record.shareInfo);
}

void Import::setRhythm(TaskEntity& task, const VelloroJSONBackupTask& record) {
  auto mode = record.daysMode;
  auto count = record.numCompletions;
  if (mode == DayMode::dayInterval) count = record.dayInterval;
  if (mode == DayMode::specificDaysOfMonth) {
    const auto days =
        static_cast<std::uint64_t>(record.daysOfMonth.value_or(DaysOfMonth()).rawValue);
    mode = DayMode::numberOfDaysInMonth;
    count = std::max(std::popcount(days), 1);
    decide(inQuotes(record.title.value_or("")),
           "days of the month can't be kept; it is due on as many days of each month");
  }
  if (mode) task.replaceValue(Columns::daysMode, mode);
  if (record.daysOfWeek) task.replaceValue(Columns::daysOfWeek, record.daysOfWeek);
  task.setValue(Columns::daysPerWeek, inColumn(count));
  task.setValue(Columns::daysTimesPerDay, inColumn(record.timesPerDay));
  task.replaceValue(Columns::firstDayOfWeekValue, record.firstDayOfWeek);
}

bool Import::setReminders(TaskEntity& task, const VelloroJSONBackupTask& record, bool keepsIDs) {
  if (!record.notificationSettings) return false;
  auto settings = record.notificationSettings->notificationSettings();
  const std::size_t there =
      record.notificationSettings->reminders ? record.notificationSettings->reminders->size() : 0;
  if (there > settings.reminders.size()) {
    decide(inQuotes(record.title.value_or("")), "a reminder without what sets it off is left out");
  }
  if (!keepsIDs) {
    for (TaskReminder& reminder : settings.reminders) reminder.uniqueId = UniqueID::create();
  }
  return setNotificationSettings(task, settings);
}

void Import::setCategories(TaskEntity& task, const VelloroJSONBackupTask& record) {
  const auto wanted = record.categoryIDs.value_or(std::set<UniqueID>());
  for (const auto& category : task.value(Columns::taskCategories)) {
    const auto id = category->value(TaskCategoryEntity::uniqueId);
    if (!id || !wanted.contains(*id)) task.remove(Columns::taskCategories, category);
  }
  for (const UniqueID& id : wanted) {
    const auto category = categories_.find(id);
    if (category == categories_.end()) {
      decide(inQuotes(record.title.value_or("")),
             "a category that is nowhere described is left out");
    } else {
      task.add(Columns::taskCategories, category->second);
    }
  }
}

void Import::setShare(TaskEntity& task, const VelloroJSONBackupTaskShareInfoEntry& info) {
  auto share = task.value(Columns::taskShare);
  if (share == nullptr) {
    constexpr const char* ownZones = "__defaultOwner__";
    share = TaskShareEntity::create(context());
    share->setValue(TaskShareEntity::status, info.zoneOwnerName == ownZones
                                                 ? TaskShareRowStatus::localTask
                                                 : TaskShareRowStatus::externalTask);
    task.setValue(Columns::taskShare, share);
  }
  share->replaceValue(TaskShareEntity::ckRecordIdRecordName, std::optional(info.recordName));
  share->replaceValue(TaskShareEntity::ckRecordIdZoneName, info.zoneName);
  share->replaceValue(TaskShareEntity::ckRecordIdZoneOwnerName, std::optional(info.zoneOwnerName));
}

BackupImportReport::Rows Import::addLog(TaskEntity& task, const std::vector<Record>& log,
                                        bool keepsIDs, bool replaces) {
  using Place = std::pair<YYYYMMDD, TaskLogEntryType>;
  std::map<UniqueID, std::shared_ptr<Entry>> byID;
  std::map<Place, std::vector<std::shared_ptr<Entry>>> byPlace;
  auto left = entriesOrNone(task, {.direction = TaskLogFetchRequest::Direction::oldestToNewest});
  for (const auto& entry : left) {
    if (const auto id = entry->value(Entry::uniqueId)) byID.emplace(*id, entry);
    byPlace[{entry->value(Entry::entryDate).value_or(YYYYMMDD()),
             entry->value(Entry::entryType).value_or(TaskLogEntryType::unknown)}]
        .push_back(entry);
  }
  std::map<Place, std::size_t> taken;
  BackupImportReport::Rows rows;
  for (const Record& record : log) {
    std::shared_ptr<Entry> entry;
    if (keepsIDs && record.uniqueId) {
      if (const auto found = byID.find(*record.uniqueId); found != byID.end())
        entry = found->second;
    } else if (!record.uniqueId) {
      const auto found = byPlace.find({record.entryDate, record.entryType});
      const std::size_t n = taken[{record.entryDate, record.entryType}]++;
      if (found != byPlace.end() && n < found->second.size()) entry = found->second[n];
    }
    if (entry == nullptr) {
      entry = Entry::create(context());
      const bool hasID = keepsIDs && record.uniqueId;
      entry->setValue(Entry::uniqueId, hasID ? *record.uniqueId : UniqueID::create());
      entry->setValue(Entry::task, std::static_pointer_cast<TaskEntity>(task.shared_from_this()));
      write(*entry, record);
      ++rows.added;
    } else if (replaces) {
      write(*entry, record);
      rows.changed += entry->isUpdated() ? 1 : 0;
      std::erase(left, entry);
    }
  }
  if (!replaces) return rows;
  for (const auto& entry : left) context().deleteObject(*entry);
  rows.removed = std::ssize(left);
  return rows;
}

void Import::write(Entry& entry, const Record& record) {
  entry.replaceValue(Entry::entryType, std::optional(record.entryType));
  entry.replaceValue(Entry::entryDate, std::optional(record.entryDate));
  entry.setValue(Entry::progress, record.progress.value_or(0));
  writeInstant(entry, Entry::createdTimestamp, record.createdTimestamp);
  entry.replaceValue(Entry::entryPeriodFrom, record.entryPeriodFrom);
  entry.replaceValue(Entry::entryPeriodTo, record.entryPeriodTo);
  entry.replaceValue(Entry::entryPeriodType, record.entryPeriodType);
}

/// Of each period, whose entries stand next to each other.
void Import::recountTotals(TaskEntity& task) {
  const TaskLogRules rules = logRules(task, now_);
  const bool isNegative = task.isNegative();
  std::vector<std::shared_ptr<Entry>> entries;
  std::vector<LogStep> steps;
  const auto finishPeriod = [&] {
    const auto totals = runningTotals(steps, isNegative);
    for (std::size_t i = 0; i < entries.size(); ++i) {
      entries[i]->writeValue(Entry::progressTotal, totals[i]);
    }
    entries.clear();
    steps.clear();
  };
  std::optional<TaskFrequencyPeriod> period;
  for (const auto& entry :
       entriesOrNone(task, {.direction = TaskLogFetchRequest::Direction::oldestToNewest})) {
    const auto own = entry->period();
    if (!own) continue;
    if (!period || !period->contains(own->date)) {
      finishPeriod();
      period = rules.period(own->date);
    }
    entries.push_back(entry);
    steps.push_back({entry->value(Entry::entryType).value_or(TaskLogEntryType::unknown),
                     entry->value(Entry::progress)});
  }
  finishPeriod();
}

BackupImportReport::Rows Import::addNotes(TaskEntity& task, const std::vector<Note>& notes,
                                          bool keepsIDs, bool replaces) {
  using Row = TaskNoteEntity;
  auto left = task.value(Columns::taskNote);
  std::erase_if(left, [](const auto& row) { return !row->noteContent(); });
  const auto before = left;
  std::set<std::shared_ptr<Row>> taken;
  const auto known = [&](const Note& note) {
    return std::ranges::find_if(before, [&](const auto& row) {
      if (note.uniqueID) return keepsIDs && row->value(Row::uniqueId) == note.uniqueID;
      return !taken.contains(row) && row->value(Row::noteDate) == note.date &&
             row->noteContent() == note.content.body;
    });
  };
  BackupImportReport::Rows rows;
  for (const Note& note : notes) {
    const auto found = known(note);
    const bool isNew = found == before.end();
    if (!isNew && !replaces) {
      taken.insert(*found);
      continue;
    }
    const auto row = isNew ? Row::create(context()) : *found;
    if (isNew) {
      const bool hasID = keepsIDs && note.uniqueID;
      row->setValue(Row::uniqueId, hasID ? *note.uniqueID : UniqueID::create());
      row->setValue(Row::task, std::static_pointer_cast<TaskEntity>(task.shared_from_this()));
    }
    row->replaceValue(Row::status, std::optional(static_cast<TaskNoteStatus>(note.status)));
    row->replaceValue(Row::noteDate, note.date);
    row->replaceValue(Row::content, std::optional(note.content.body));
    if (note.createdDate) writeInstant(*row, Row::createdTimestamp, note.createdDate);
    if (note.createdTimeZone) {
      row->replaceValue(Row::createdTimeZone, std::optional(note.createdTimeZone->timeZone));
    }
    taken.insert(row);
    rows.added += isNew ? 1 : 0;
    rows.changed += !isNew && row->isUpdated() ? 1 : 0;
    std::erase(left, row);
  }
  if (!replaces) return rows;
  for (const auto& row : left) context().deleteObject(*row);
  rows.removed = std::ssize(left);
  return rows;
}

void Import::addCategories(const std::vector<VelloroJSONBackupCategory>& records) {
  using Row = TaskCategoryEntity;
  const auto rows = all<Row>(store_);
  for (const VelloroJSONBackupCategory& record : records) {
    const auto found = std::ranges::find_if(
        rows, [&](const auto& row) { return row->value(Row::uniqueId) == record.uniqueID; });
    const bool isNew = found == rows.end();
    if (!isNew && !is(Strategy::overwrite)) continue;
    const auto row = isNew ? Row::create(context()) : *found;
    if (isNew) row->setValue(Row::uniqueId, record.uniqueID);
    row->replaceValue(Row::title, std::optional(record.title));
    row->replaceValue(Row::colorInfo, record.color);
    std::optional<IconDisplayRepresentation> icon;
    if (record.visualRepresentation) {
      icon = {.visualRepresentation = record.visualRepresentation->value, .displayProperties = {}};
    }
    const auto stored = row->value(Row::iconName);
    const bool isSame =
        stored && icon && stored->visualRepresentation == icon->visualRepresentation;
    if (!isSame) row->replaceValue(Row::iconName, icon);
    report_.categories.added += isNew ? 1 : 0;
    report_.categories.changed += !isNew && row->isUpdated() ? 1 : 0;
  }
}

void Import::addSettings(const std::vector<VelloroJSONBackupSettingsSetting>& records) {
  using Row = SettingEntity;
  auto rows = all<Row>(store_);
  std::ranges::sort(rows, {}, [](const auto& row) {
    return row->value(Row::dateCreated).value_or(Date::distantFuture());
  });
  for (const VelloroJSONBackupSettingsSetting& record : records) {
    const auto found = std::ranges::find_if(
        rows, [&](const auto& row) { return row->value(Row::settingKey) == record.key; });
    const bool isNew = found == rows.end();
    if (!isNew && !is(Strategy::overwrite)) continue;
    const auto row = isNew ? Row::create(context()) : *found;
    if (isNew) {
      row->setValue(Row::settingKey, record.key);
      row->setValue(Row::dateCreated, record.dateCreated.value_or(now_));
    }
    row->replaceValue(Row::stringValue, record.stringValue);
    row->replaceValue(Row::dateValue, record.dateValue);
    row->setValue(Row::intValue, record.intValue.value_or(0));
    row->setValue(Row::booleanValue, record.booleanValue.value_or(false));
    row->replaceValue(Row::dataValue, record.codableValue);
    row->setValue(Row::doubleValue, record.doubleValue.value_or(0));
    report_.settings.added += isNew ? 1 : 0;
    report_.settings.changed += !isNew && row->isUpdated() ? 1 : 0;
  }
}

}  // namespace

BackupImportReport importBackup(const HostStore& store, const BackupDocument& backup,
                                const BackupImportOptions& options, bool isRehearsal, Date now) {
  struct Rehearsed {};
  BackupImportReport report;
  try {
    store.write([&] {
      Import import(store, options, now);
      import.add(backup);
      const auto changed = import.changed();
      report = std::move(import).report();
      if (isRehearsal) throw Rehearsed();
      for (const TaskPtr& task : changed) NotificationUpdates::shared().note(task);
    });
  } catch (const Rehearsed&) {  // which has ended the transaction
  }
  return report;
}

}  // namespace velloro
