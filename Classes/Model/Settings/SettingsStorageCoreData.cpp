#include "Settings/SettingsStorageCoreData.h"

#include "Containers/VelloroNSPersistentContainer.h"
#include "Foundation/Values/Try.h"
#include "OxLog/Log.h"

#include <algorithm>
#include <iterator>
#include <ranges>
#include <utility>

namespace velloro {
namespace {

using Entities = std::vector<std::shared_ptr<SettingEntity>>;
using SettingValue = SettingsStorageCoreData::SettingValue;

/// Calls `visit` with each column of a row and the member that stands for it.
template <typename Visit>
void forEachColumn(const Visit& visit) {
  visit(SettingEntity::stringValue, &SettingValue::stringValue);
  visit(SettingEntity::dateValue, &SettingValue::dateValue);
  visit(SettingEntity::intValue, &SettingValue::intValue);
  visit(SettingEntity::booleanValue, &SettingValue::booleanValue);
  visit(SettingEntity::dataValue, &SettingValue::dataValue);
  visit(SettingEntity::doubleValue, &SettingValue::doubleValue);
}

SettingValue valueOf(const SettingEntity& row) {
  SettingValue value;
  forEachColumn([&](const auto& column, auto member) { value.*member = row.value(column); });
  return value;
}

SettingContent contentOf(const SettingValue& value, SettingKind kind) {
  switch (kind) {
    using enum SettingKind;
    case int_:
      return value.intValue;
    case bool_:
      return value.booleanValue;
    case double_:
      return value.doubleValue;
    case string:
      return settingContent(value.stringValue);
    case codable:
      return settingContent(value.dataValue);
    case noOp:
      break;
  }
  return {};
}

// Each kind of value has its column.
void put(SettingValue&, std::monostate) {}
void put(SettingValue& row, std::int64_t value) {
  row.intValue = value;
}
void put(SettingValue& row, bool value) {
  row.booleanValue = value;
}
void put(SettingValue& row, double value) {
  row.doubleValue = value;
}
void put(SettingValue& row, std::string value) {
  row.stringValue = std::move(value);
}
void put(SettingValue& row, Data value) {
  row.dataValue = std::move(value);
}

Result<Entities> fetched(const NSFetchRequest& request, NSManagedObjectContext& context) {
  auto rows = context.fetch<SettingEntity>(request);
  if (rows) return *std::move(rows);
  Log::database.error(rows.error());
  return std::unexpected(rows.error());
}

/// In the order in which they count: of several with one key the first does.
Result<Entities> allRows(NSManagedObjectContext& context) {
  auto request = NSFetchRequest::of<SettingEntity>();
  request.setReturnsObjectsAsFaults(false);
  return fetched(request, context);
}

/// The rows with a key, the oldest first.
Result<Entities> rowsOf(std::string_view key, NSManagedObjectContext& context) {
  return fetched(NSFetchRequest::of<SettingEntity>(SettingEntity::settingKey == key,
                                                   {SettingEntity::dateCreated.ascending()}),
                 context);
}

/// Columns that don't differ are not written, so that an unchanged value stays out of the history.
void writeRow(const SettingValue& value, std::string_view key, NSManagedObjectContext& context) {
  const auto rows = rowsOf(key, context);
  if (!rows) return;
  const auto row = rows->empty() ? SettingEntity::create(context) : rows->front();
  for (const auto& twin : *rows) {
    if (twin != row) context.deleteObject(*twin);
  }
  row->writeValue(SettingEntity::settingKey, std::string(key));
  if (!row->value(SettingEntity::dateCreated)) {
    row->setValue(SettingEntity::dateCreated, Date::now());
  }
  forEachColumn([&](const auto& column, auto member) { row->writeValue(column, value.*member); });
}

/// The settings' rows among what was merged.
std::vector<NSManagedObjectID> settingsIn(const Notification& merge,
                                          const NSManagedObjectContext& context) {
  const NSEntityDescription* entity = SettingEntity::entity(context);
  std::vector<NSManagedObjectID> settings;
  for (const char* kind : {NSInsertedObjectIDsKey, NSUpdatedObjectIDsKey, NSDeletedObjectIDsKey}) {
    if (const auto* ids = merge.value<std::vector<NSManagedObjectID>>(kind)) {
      std::ranges::copy_if(*ids, std::back_inserter(settings),
                           [&](NSManagedObjectID id) { return id.entity == entity; });
    }
  }
  return settings;
}

}  // namespace

SettingsStorageCoreData::SettingsStorageCoreData(CloudContainer container,
                                                 const SettingsStorage& settings)
    : container_(std::move(container)), settings_(settings) {
  // First the observer: nothing is merged unseen while the rows are read.
  observers_.push_back(NSNotificationCenter::defaultCenter().addObserver(
      NSManagedObjectContext::didMergeChangesObjectIDsNotification, nullptr, DispatchQueue::main(),
      [this](const Notification& notification) { didMerge(notification); }));
  updateSettings();
}

SettingContent SettingsStorageCoreData::read(std::string_view key, SettingKind kind) const {
  return queue_.sync([&] {
    const auto found = settingsByKey_.find(key);
    return contentOf(found != settingsByKey_.end() ? found->second : SettingValue(), kind);
  });
}

void SettingsStorageCoreData::write(SettingContent newValue, std::string_view key) {
  if (std::holds_alternative<std::monostate>(newValue)) return removeKey(key);
  const std::scoped_lock lock(writing_);
  const SettingValue value = queue_.sync([&] {
    SettingValue& held = settingsByKey_[std::string(key)];
    std::visit([&](auto& content) { put(held, std::move(content)); }, newValue);
    return held;
  });
  saveError_ = change([&](NSManagedObjectContext& context) { writeRow(value, key, context); });
}

void SettingsStorageCoreData::removeKey(std::string_view key) {
  const std::scoped_lock lock(writing_);
  queue_.sync([&] { settingsByKey_.erase(std::string(key)); });
  saveError_ = change([&](NSManagedObjectContext& context) {
    const auto rows = rowsOf(key, context);
    if (!rows) return;
    for (const auto& row : *rows) context.deleteObject(*row);
  });
}

ErrorPtr SettingsStorageCoreData::change(const Work& work) {
  const auto container = container_();
  if (container == nullptr) return nullptr;
  const auto context = writingTogether_ ? writingTogether_ : container->newBackgroundContext();
  const auto saved = context->performTransaction([&]() -> Result<void> {
    work(*context);
    return {};
  });
  if (saved) return nullptr;
  Log::database.error(saved.error());
  return saved.error();
}

Result<void> SettingsStorageCoreData::writeTogether(const std::function<void()>& writes) {
  const auto container = container_();
  if (container == nullptr) return SettingsStorageContainer::writeTogether(writes);
  const std::scoped_lock lock(writing_);
  writingTogether_ = container->newBackgroundContext();
  auto saved = writingTogether_->performTransaction([&]() -> Result<void> {
    writes();
    return {};
  });
  writingTogether_ = nullptr;
  saveError_ = saved ? nullptr : saved.error();
  if (!saved) (void)refresh();  // what was written to memory
  return saved;
}

ErrorPtr SettingsStorageCoreData::saveError() const {
  const std::scoped_lock lock(writing_);
  return saveError_;
}

bool SettingsStorageCoreData::hasValue(std::string_view key) const {
  return queue_.sync([&] { return settingsByKey_.contains(key); });
}

void SettingsStorageCoreData::decodingFailed(const DecodingError& error) const {
  Log::settings.error(error);
}

void SettingsStorageCoreData::updateSettings() {
  const std::scoped_lock lock(writing_);
  if (refresh() && hasTwins_) deleteTwins();
}

// A thread other than the main one may hold up what the main thread waits for, and a program may
// never run its main loop: there the rows are read in a context that needs no main queue.
Result<void> SettingsStorageCoreData::refresh() {
  const auto container = container_();
  if (container == nullptr) return {};
  const auto& viewContext = container->viewContext();
  const auto context = viewContext->isOnQueue() ? viewContext : container->newBackgroundContext();
  const std::scoped_lock lock(writing_);
  return context->performAndWait([&] { return reload(*context); });
}

Result<void> SettingsStorageCoreData::reload(NSManagedObjectContext& context) {
  const auto rows = TRY(allRows(context));
  decltype(entities_) entities;
  decltype(settingsByKey_) settingsByKey;
  hasTwins_ = false;
  for (const auto& row : rows) {
    const std::string* key = row->text(SettingEntity::settingKey);
    if (key == nullptr) continue;
    if (settingsByKey.try_emplace(*key, valueOf(*row)).second) {
      entities.emplace(row->objectID(), *key);
    } else {
      hasTwins_ = true;
    }
  }
  queue_.sync([&] {
    entities_.swap(entities);
    settingsByKey_.swap(settingsByKey);
  });
  return {};
}

// Which ones are twins is decided within the transaction: since they were read, another process may
// have deleted those that counted.
void SettingsStorageCoreData::deleteTwins() {
  Log::settings.debug([] { return "Deleting duplicate settings"; });
  (void)change([](NSManagedObjectContext& context) {
    const auto rows = allRows(context);
    if (!rows) return;
    std::set<std::string> keys;
    for (const auto& row : *rows) {
      const std::string* key = row->text(SettingEntity::settingKey);
      if (key != nullptr && !keys.insert(*key).second) context.deleteObject(*row);
    }
  });
}

void SettingsStorageCoreData::didMerge(const Notification& notification) {
  const auto container = container_();
  if (container == nullptr || notification.object != container->viewContext().get()) return;
  const IDs rows = settingsIn(notification, *container->viewContext());
  const bool mayBeAny = notification.value<IDs>(NSInvalidatedAllObjectsKey) != nullptr;
  if (rows.empty() && !mayBeAny) return;
  auto keys = keysOf(rows, *container->viewContext());  // while twins are still there
  if (mayBeAny) keys.merge(knownKeys());
  updateSettings();
  if (mayBeAny) keys.merge(knownKeys());
  std::vector<Setting> changed;
  for (const Setting& setting : Setting::allCases()) {
    const std::string key = setting.key();
    if (!key.empty() && keys.contains(key)) changed.push_back(setting);
  }
  for (const Setting& setting : changed) follow(setting);
  if (changed.empty()) return;
  settings_.shareAgain();
  NSNotificationCenter::defaultCenter().post(
      {.name = settingsChangedNotification, .userInfo = {{settingNamesKey, std::move(changed)}}});
}

std::set<std::string> SettingsStorageCoreData::knownKeys() const {
  return queue_.sync([&] {
    const auto keys = std::views::keys(settingsByKey_);
    return std::set<std::string>(keys.begin(), keys.end());
  });
}

/// A row that was deleted elsewhere is known from when the rows were last read.
std::set<std::string> SettingsStorageCoreData::keysOf(const IDs& rows,
                                                      NSManagedObjectContext& context) const {
  const auto known = queue_.sync([&] { return entities_; });
  std::set<std::string> keys;
  for (const NSManagedObjectID id : rows) {
    const auto row = context.objectWithID(id);
    if (const auto* key = row->text(SettingEntity::settingKey)) {
      keys.insert(*key);
    } else if (const auto found = known.find(id); found != known.end()) {
      keys.insert(found->second);
    }
  }
  return keys;
}

/// The local tier is given the setting's new value, so that processes without this tier have it.
void SettingsStorageCoreData::follow(const Setting& setting) const {
  const std::string key = setting.key();
  const std::string wrapper(rawValue(setting.row().kind));
  if (!settings_.isCloudStored(setting)) {
    return Log::settings.debug([&] { return "Setting `" + key + "` set to not sync with cloud"; });
  }
  Log::settings.debug([&] { return "Updating setting for `" + key + "." + wrapper + "`"; });
  if (const SettingKind kind = setting.row().kind; kind != SettingKind::noOp) {
    return settings_.localStorage().write(read(key, kind), key);
  }
  Log::settings.error([&] { return "Unhandled data type: " + wrapper; });
}

}  // namespace velloro
