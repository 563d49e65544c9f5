#include "UserNotifications/NotificationRecords.h"

#include "Foundation/Coding/JSON.h"

#include <functional>

namespace platform {
namespace {

/// Runs `read` on the value under a key, if there is one. A failure is told and goes no further.
template <typename Read>
void readField(const Decoder& from, std::string_view key, std::vector<std::string>& problems,
               const Read& read) {
  try {
    if (const auto value = from.find(key)) read(*value);
  } catch (const DecodingError& error) {
    problems.emplace_back(error.what());
  }
}

template <typename T>
void readList(const Decoder& from, std::string_view key, std::vector<std::string>& problems,
              std::vector<T>& list) {
  readField(from, key, problems, [&](const Decoder& array) {
    array.forEachElement([&](const Decoder& element) {
      try {
        list.push_back(element.decode<T>());
      } catch (const DecodingError& error) {
        problems.emplace_back(error.what());
      }
    });
  });
}

}  // namespace

void NotificationRecords::authorize(UNAuthorizationOptions options) {
  if (settings.authorizationStatus != UNAuthorizationStatus::notDetermined) return;
  const auto setting = [&](UNAuthorizationOptions option) {
    using enum UNNotificationSetting;
    return options.contains(option) ? enabled : disabled;
  };
  const auto alert = setting(UNAuthorizationOptions::alert);
  settings = {.authorizationStatus = UNAuthorizationStatus::authorized,
              .alertSetting = alert,
              .lockScreenSetting = alert,
              .notificationCenterSetting = alert,
              .badgeSetting = setting(UNAuthorizationOptions::badge),
              .soundSetting = setting(UNAuthorizationOptions::sound)};
}

NotificationRecords NotificationRecords::fromText(std::string_view json,
                                                  std::vector<std::string>& problems) {
  NotificationRecords records;
  try {
    const JSONDocument document(json);
    // What is left out is gone when the records are written next: it is a problem, too.
    const std::function<void(const DecodingError&)> note = [&](const DecodingError& error) {
      problems.emplace_back(error.what());
    };
    const DecodingRules rules{.didLeaveOut = &note};
    const Decoder from(document.root(), rules);
    readField(from, "settings", problems, [&](const Decoder& value) {
      records.settings = value.decode<UNNotificationSettings>();
    });
    readList(from, "categories", problems, records.categories);
    readList(from, "pending", problems, records.pending);
    readList(from, "delivered", problems, records.delivered);
    readField(from, "badge", problems,
              [&](const Decoder& value) { records.badge = value.decode<std::int64_t>(); });
  } catch (const DecodingError& error) {
    problems.emplace_back(error.what());
  }
  return records;
}

}  // namespace platform
