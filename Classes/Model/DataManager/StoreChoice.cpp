#include "DataManager/StoreChoice.h"

#include "DataManager/DataManager.h"
#include "Foundation/Files/NSUserDefaults.h"
#include "Settings/AppGroup.h"

namespace velloro {
namespace {

constexpr const char* choosesCloud = "storeSwitch.choosesCloud";
constexpr const char* keepsTasksKey = "storeSwitch.keepsTasks";
constexpr const char* beganKey = "storeSwitch.began";

std::optional<NSUserDefaults> suite() {
  return NSUserDefaults::initWithSuiteName(appGroupIdentifier);
}

Result<void> keep(const NSUserDefaults::Changes& changes) {
  auto defaults = suite();
  if (!defaults) return {};
  defaults->setObjects(changes);
  if (auto error = defaults->saveError()) return std::unexpected(std::move(error));
  return {};
}

}  // namespace

std::optional<StoreChoice> StoreChoice::underWay() {
  const auto defaults = suite();
  const auto kept = defaults ? defaults->objectForKey(choosesCloud) : std::nullopt;
  const auto isCloud = kept ? kept->boolean() : std::nullopt;
  if (!isCloud) return std::nullopt;
  StoreChoice choice{.isCloud = *isCloud, .keepsTasks = defaults->boolForKey(keepsTasksKey)};
  // Earlier versions have not noted it.
  const auto began = defaults->objectForKey(beganKey);
  if (const auto date = began ? began->date() : std::nullopt) choice.began = *date;
  return choice;
}

Result<void> StoreChoice::begin() const {
  auto begun = keep({{choosesCloud, isCloud}, {keepsTasksKey, keepsTasks}, {beganKey, began}});
  if (!begun) (void)end();
  return begun;
}

Result<void> StoreChoice::end() {
  return keep({{choosesCloud, nullptr}, {keepsTasksKey, nullptr}, {beganKey, nullptr}});
}

}  // namespace velloro
