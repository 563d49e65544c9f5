#include "DataManager/PendingCleanUps.h"

#include "Foundation/Files/NSUserDefaults.h"
#include "Settings/AppGroup.h"

#include <algorithm>
#include <optional>

namespace velloro {
namespace {

constexpr std::string_view prefix = "importCleanUp.";

std::optional<NSUserDefaults> suite() {
  return NSUserDefaults::initWithSuiteName(appGroupIdentifier);
}

}  // namespace

PendingCleanUps PendingCleanUps::kept() {
  PendingCleanUps pending;
  const auto defaults = suite();
  if (!defaults) return pending;
  for (const auto& [key, value] : defaults->dictionaryRepresentation()) {
    const auto date = key.starts_with(prefix) ? value.date() : std::nullopt;
    if (!date) continue;
    pending.keys_.push_back(key);
    pending.since = std::min(pending.since, *date);
  }
  return pending;
}

void PendingCleanUps::add(const UUID& id, Date since) {
  if (auto defaults = suite()) defaults->setObject(since, std::string(prefix) + id.uuidString());
}

void PendingCleanUps::remove() const {
  NSUserDefaults::Changes changes;
  for (const std::string& key : keys_) changes.insert_or_assign(key, nullptr);
  if (auto defaults = suite()) defaults->setObjects(changes);
}

}  // namespace velloro
