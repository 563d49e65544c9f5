#include "Settings/SavedActivityRings.h"

#include "OxLog/Log.h"
#include "Settings/SettingsStorageLocal.h"
#include "VelloroCore/Progress/TaskProgress.h"

namespace velloro {
namespace {

constexpr std::string_view activityProgressKey = "ActivityProgress";

bool isNews(const TaskProgressActivityRings& progress, const TaskProgressActivityRings& held,
            YYYYMMDD today) {
  const auto isAhead = [&](const auto& rings) { return rings.period.period.startsAfter(today); };
  if (isAhead(held) && !isAhead(progress)) return true;
  if (held.period.period > progress.period.period) return false;
  return held.energy != progress.energy || held.exercise != progress.exercise ||
         held.stand != progress.stand;
}

}  // namespace

const std::shared_ptr<SavedActivityRings>& SavedActivityRings::shared() {
  static const auto* rings =
      new std::shared_ptr(std::make_shared<SavedActivityRings>(sharedOrLocalStorage()));
  return *rings;
}

void SavedActivityRings::save(const TaskProgressActivityRings& progress, YYYYMMDD today) {
  const std::lock_guard lock(mutex_);
  if (!held_) held_ = storage_->codableForKey<TaskProgressActivityRings>(activityProgressKey);
  if (held_ && !isNews(progress, *held_, today)) return;
  held_ = progress;
  storage_->setCodable(held_, activityProgressKey);
  Log::healthKit.info(
      [&] { return "Saving progress: " + TaskProgress(progress).debugDescription(Date()); });
}

std::optional<TaskProgressActivityRings> SavedActivityRings::saved(YYYYMMDD date) const {
  auto saved = storage_->codableForKey<TaskProgressActivityRings>(activityProgressKey);
  if (saved && !saved->period.period.contains(date)) saved.reset();
  return saved;
}

}  // namespace velloro
