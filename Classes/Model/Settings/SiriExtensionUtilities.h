#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Time/Date.h"
#include "OxKit/FunctionRef.h"
#include "OxKit/Platform.h"
#include "OxKit/UniqueID.h"
#include "Settings/SettingsStorageContainer.h"

#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velloro {

/// What the voice assistant and the application share: the reminders that the user has asked for by
/// voice, each of one task at one instant. Safe from any thread, and from several processes.
///
///     const SiriExtensionUtilities utilities(localStorage);
///     utilities.editSiriReminders([&](auto& reminders) {
///       reminders.push_back({UniqueID::create(), task->uniqueId(), Date::now() + 3600});
///     });
///     utilities.siriReminders().size();    // 1
class SiriExtensionUtilities {
 public:
  struct SiriReminder {
    UniqueID uniqueId;
    UniqueID taskId;
    Date date;

    [[nodiscard]] std::string debugDescription() const;

    bool operator==(const SiriReminder&) const = default;
    static constexpr auto codingKeys =
        keys(key("uniqueId", &SiriReminder::uniqueId), key("taskId", &SiriReminder::taskId),
             key("date", &SiriReminder::date));
  };
  using SiriReminders = std::vector<SiriReminder>;

  /// Where the list is kept, as the bytes of its JSON.
  static constexpr std::string_view siriRemindersKey = "SiriReminders";

  /// The process's own, over the shared tier of the settings, or the plain local one where that
  /// can't be opened.
  [[nodiscard]] static const std::shared_ptr<SiriExtensionUtilities>& shared();
  explicit SiriExtensionUtilities(std::shared_ptr<SettingsStorageContainer> storage)
      : storage_(std::move(storage)) {}

  /// In the order in which they were added. An entry that can't be read is left out, and logged.
  [[nodiscard]] SiriReminders siriReminders() const;
  /// Reads the list, lets `change` change it and writes it; what other threads and processes do to
  /// the list comes before or after all of that. A list that is written has no entries whose time
  /// has passed. One that `change` leaves as it is, is not written.
  ///
  /// `change` must not change a setting: it would wait for itself. Not within a transaction of the
  /// store, for which a process that writes a setting may wait. Fails if the list is not kept.
  Result<void> editSiriReminders(FunctionRef<void(SiriReminders&)> change) const;

 private:
  std::shared_ptr<SettingsStorageContainer> storage_;
  mutable std::mutex mutex_;  // for a tier that is not shared, and so has no lock of its own
};

}  // namespace velloro
