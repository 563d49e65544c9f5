#include "Settings/SiriExtensionUtilities.h"

#include "Foundation/Coding/Coding.h"
#include "OxLog/Log.h"
#include "Settings/SettingsStorageLocal.h"

#include <optional>

namespace velloro {
namespace {

/// A list of which a damaged entry drops only itself, also where a key of it is missing.
struct ReadableReminders {
  SiriExtensionUtilities::SiriReminders reminders;

  static ReadableReminders decode(const Decoder& from) {
    ReadableReminders readable;
    from.forEachElement([&](const Decoder& element) {
      try {
        readable.reminders.push_back(element.decode<SiriExtensionUtilities::SiriReminder>());
      } catch (const DecodingError& error) {
        Log::siri.error(error);
      }
    });
    return readable;
  }
};

}  // namespace

std::string SiriExtensionUtilities::SiriReminder::debugDescription() const {
  return uniqueId.stringValue() + " of " + taskId.stringValue() + " at " + date.iso8601();
}

const std::shared_ptr<SiriExtensionUtilities>& SiriExtensionUtilities::shared() {
  static const auto* utilities =
      new std::shared_ptr(std::make_shared<SiriExtensionUtilities>(sharedOrLocalStorage()));
  return *utilities;
}

SiriExtensionUtilities::SiriReminders SiriExtensionUtilities::siriReminders() const {
  auto read = storage_->codableForKey<ReadableReminders>(siriRemindersKey);
  return read ? std::move(read->reminders) : SiriReminders();
}

Result<void> SiriExtensionUtilities::editSiriReminders(
    FunctionRef<void(SiriReminders&)> change) const {
  const std::lock_guard lock(mutex_);
  const auto alone = storage_->exclusiveAccess();
  SiriReminders reminders = siriReminders();
  const SiriReminders before = reminders;
  change(reminders);
  if (reminders == before) return {};
  std::erase_if(reminders, [now = Date::now()](const auto& each) { return each.date < now; });
  return storage_->writeTogether(
      [&] { storage_->setCodable(std::optional(reminders), siriRemindersKey); });
}

}  // namespace velloro
