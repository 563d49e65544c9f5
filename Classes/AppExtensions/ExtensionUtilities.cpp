#include "AppExtensions/ExtensionUtilities.h"

#include "Foundation/NSFileManager.h"
#include "OxLog/Log.h"
#include "Settings/SettingsStorageLocal.h"
#include "VelloroCore/TaskProgress.h"

namespace velloro {
namespace {

constexpr std::string_view activityProgressKey = "ActivityProgress";

std::shared_ptr<SettingsStorageContainer> sharedOrLocalStorage() {
  if (auto shared = SettingsStorageLocalShared::open()) return shared;
  return std::make_shared<SettingsStorageLocal>();
}

bool isNews(const TaskProgressActivityRings& progress, const TaskProgressActivityRings& held) {
  if (held.period.period > progress.period.period) return false;
  return held.energy != progress.energy || held.exercise != progress.exercise ||
         held.stand != progress.stand;
}

}  // namespace

ExtensionUtilities& ExtensionUtilities::shared() {
  static auto* utilities = new ExtensionUtilities(sharedOrLocalStorage());
  return *utilities;
}

std::optional<std::filesystem::path> ExtensionUtilities::sharedContainer() {
  return NSFileManager::containerURLForSecurityApplicationGroupIdentifier(
      SettingsStorageLocalShared::suiteName);
}

std::optional<std::filesystem::path> ExtensionUtilities::iconCacheFile(const DataCacheKey& icon) {
  const auto container = sharedContainer();
  if (!container) return std::nullopt;
  return *container / "icon-cache-v4" / ("icon_" + std::to_string(icon.nsCacheKey()) + ".png");
}

void ExtensionUtilities::saveActivityRingsProgress(const TaskProgressActivityRings& progress) {
  const std::lock_guard lock(mutex_);
  auto& held = savedActivityRingsProgress_;
  if (!held) held = storage_->codableForKey<TaskProgressActivityRings>(activityProgressKey);
  if (held && !isNews(progress, *held)) return;
  held = progress;
  storage_->setCodable(held, activityProgressKey);
  Log::healthKit.info(
      [&] { return "Saving progress: " + TaskProgress(progress).debugDescription(); });
}

std::optional<TaskProgressActivityRings> ExtensionUtilities::savedActivityRingsProgress(
    YYYYMMDD date) const {
  auto saved = storage_->codableForKey<TaskProgressActivityRings>(activityProgressKey);
  if (saved && !saved->period.period.contains(date)) saved.reset();
  return saved;
}

}  // namespace velloro
