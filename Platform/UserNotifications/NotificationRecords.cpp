#include "UserNotifications/NotificationRecords.h"

#include "Foundation/Coding/JSON.h"

#include <algorithm>
#include <functional>
#include <iterator>

namespace platform {
namespace {

Date dueDate(const UNNotificationRequest& request) {
  if (!request.trigger) return Date::distantPast();
  return request.trigger->nextTriggerDate().value_or(Date::distantFuture());
}

/// To be asked first: one value that no text can hold would make every later write fail as well.
Result<void> canBeStored(const NotificationRecords& records) {
  try {
    (void)JSONEncoder{}.encode(records);
    return {};
  } catch (const EncodingError& error) {
    return failure<EncodingError>(error);
  }
}

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

Result<void> NotificationRecords::setCategories(std::vector<UNNotificationCategory> replacements) {
  if (auto stored = canBeStored({.categories = replacements}); !stored) return stored;
  categories = std::move(replacements);
  return {};
}

Result<void> NotificationRecords::add(UNNotificationRequest request) {
  if (settings.authorizationStatus != UNAuthorizationStatus::authorized) {
    return failure<Error>("UNErrorDomain", 1, "The user does not allow notifications.");
  }
  // Delivered, it will lie the deepest.
  const UNNotification delivery{.date = {}, .request = request};
  if (auto stored = canBeStored({.delivered = {delivery}}); !stored) return stored;
  std::erase_if(pending, [&](const auto& other) { return other.identifier == request.identifier; });
  pending.push_back(std::move(request));
  return {};
}

void NotificationRecords::removePending(const std::set<std::string>& identifiers) {
  std::erase_if(pending,
                [&](const auto& request) { return identifiers.contains(request.identifier); });
}

void NotificationRecords::removeDelivered(const std::set<std::string>& identifiers) {
  std::erase_if(delivered, [&](const auto& notification) {
    return identifiers.contains(notification.request.identifier);
  });
}

Date NotificationRecords::nextDue() const {
  Date next = Date::distantFuture();
  for (const auto& request : pending) next = std::min(next, dueDate(request));
  return next;
}

std::vector<UNNotification> NotificationRecords::deliverDue(Date now) {
  const auto firstDue = std::stable_partition(
      pending.begin(), pending.end(), [&](const auto& request) { return dueDate(request) > now; });
  std::vector<UNNotificationRequest> due(std::make_move_iterator(firstDue),
                                         std::make_move_iterator(pending.end()));
  pending.erase(firstDue, pending.end());
  std::ranges::stable_sort(due, {}, dueDate);

  std::vector<UNNotification> shown;
  if (settings.authorizationStatus != UNAuthorizationStatus::authorized) return shown;
  for (auto& request : due) {
    if (request.content.badge && settings.badgeSetting == UNNotificationSetting::enabled) {
      badge = std::max<std::int64_t>(0, *request.content.badge);
    }
    if (!request.content.hasText()) continue;
    removeDelivered({request.identifier});
    delivered.push_back({.date = now, .request = std::move(request)});
    shown.push_back(delivered.back());
  }
  if (delivered.size() > maximumDelivered) {
    delivered.erase(delivered.begin(), delivered.end() - maximumDelivered);
  }
  return shown;
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
