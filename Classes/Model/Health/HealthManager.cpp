#include "Health/HealthManager.h"

namespace velloro {

HealthManager& HealthManager::shared() {
  static auto* instance = new HealthManager;
  return *instance;
}

void HealthManager::setFile(std::function<std::filesystem::path()> file) {
  const std::scoped_lock lock(mutex_);
  file_ = std::move(file);
}

std::shared_ptr<HKHealthStore> HealthManager::store() {
  const std::scoped_lock lock(mutex_);
  const auto path = file_ ? file_() : std::filesystem::path();
  auto& store = stores_[path];
  if (store == nullptr) store = std::make_shared<HKHealthStore>(path, ownBundleIdentifier);
  return store;
}

}  // namespace velloro
