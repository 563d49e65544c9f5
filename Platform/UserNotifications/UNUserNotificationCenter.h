#pragma once

#include "UserNotifications/UNNotificationCategory.h"
#include "UserNotifications/UNNotificationRequest.h"
#include "UserNotifications/UNNotificationSettings.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace platform {

/// Shows what a notification centre delivers: a desktop's agent, a command, a test. Called on the
/// main queue.
class UNUserNotificationCenterDelegate {
 public:
  virtual ~UNUserNotificationCenterDelegate() = default;
  UNUserNotificationCenterDelegate() = default;
  UNUserNotificationCenterDelegate(const UNUserNotificationCenterDelegate&) = delete;
  UNUserNotificationCenterDelegate& operator=(const UNUserNotificationCenterDelegate&) = delete;

  virtual void willPresent(const UNNotification& notification) = 0;
  /// The number on the program's icon, 0 for none: once at the start, and when it has changed.
  virtual void badgeDidChange(std::int64_t badge) = 0;
};

/// Keeps a program's notifications until their time has come, and after that until they are
/// removed. A handle; its copies are the same centre. Safe from any thread; nothing waits.
///
///     auto center = UNUserNotificationCenter::currentNotificationCenter();
///     center.requestAuthorizationWithOptions(UNAuthorizationOptions::alert, [](const auto&) {});
///     center.removePendingNotificationRequestsWithIdentifiers({"r7.a.0"});
///     center.addNotificationRequest(
///         {.identifier = "r7.a.1", .content = {.title = "Drink"},
///          .trigger = UNCalendarNotificationTrigger::fromDate(Date::now() + 60)});
///
/// What is asked takes effect in the order of the calls; handlers run later, on a queue of the
/// centre, when the change is on the disk. One fails with a `PosixError` or a `StoreError` of the
/// file, with an `EncodingError` for a value that can't be stored, and with domain "UNErrorDomain",
/// code 1, for a request while the user does not allow notifications. A failure is also reported by
/// `Environment::report`.
///
/// Requests lie in a file that all processes of the program share. They are delivered, each once,
/// by a process whose centre has a delegate; until there is one, what falls due waits. The wall
/// clock decides: it is looked at when the next request should fall due, and every
/// `recheckInterval` seconds (or with the `SlowPoll`, by `setDelegate`), which also notices a clock
/// that was set, a device that slept, and what other processes have added. There is no limit to
/// pending requests; of the delivered notifications the last 100 are kept. What is due and waits
/// for a process to show it is pending, but it is removed as if it had been delivered: it stays
/// when all pending requests are removed, and goes with the delivered ones.
class UNUserNotificationCenter {
 public:
  static constexpr TimeInterval recheckInterval = 5;

  using Identifiers = std::vector<std::string>;
  template <typename T>
  using Handler = std::move_only_function<void(const T&)>;

  /// The one of the current environment's program.
  [[nodiscard]] static UNUserNotificationCenter currentNotificationCenter();
  /// A centre of its own over the notifications in a folder, as another process would have it.
  explicit UNUserNotificationCenter(std::filesystem::path folder);

  /// Asks the user, who says yes to all of `options`, unless they have said no before; the handler
  /// gets the answer. Once answered it stays.
  void requestAuthorizationWithOptions(UNAuthorizationOptions options,
                                       Completion<bool> completionHandler = nullptr);
  void getNotificationSettingsWithCompletionHandler(Handler<UNNotificationSettings> handler);
  /// What the user has chosen, in a settings screen for example.
  void setNotificationSettings(const UNNotificationSettings& settings);

  /// Replaces all earlier ones.
  void setNotificationCategories(std::vector<UNNotificationCategory> categories);
  void getNotificationCategoriesWithCompletionHandler(
      Handler<std::vector<UNNotificationCategory>> handler);

  /// Replaces a pending request that has the identifier. A delivered notification that has it stays
  /// until the new one is delivered.
  void addNotificationRequest(UNNotificationRequest request,
                              Completion<void> withCompletionHandler = nullptr);
  void getPendingNotificationRequestsWithCompletionHandler(
      Handler<std::vector<UNNotificationRequest>> handler);
  void getDeliveredNotificationsWithCompletionHandler(Handler<std::vector<UNNotification>> handler);

  /// \name Identifiers that there are not are no error.
  /// @{
  void removePendingNotificationRequestsWithIdentifiers(const Identifiers& identifiers);
  void removeDeliveredNotificationsWithIdentifiers(const Identifiers& identifiers);
  void removeAllPendingNotificationRequests();
  void removeAllDeliveredNotifications();
  /// @}

  /// Who shows what is delivered from now on, and what has fallen due meanwhile; null or gone: no
  /// one. While there is a delegate the centre always has a next look at the clock ahead of it.
  void setDelegate(std::weak_ptr<UNUserNotificationCenterDelegate> delegate);

  /// From now on, changes are kept until the returned object has gone, and are then made in one
  /// transaction: a process that ends before has changed nothing, and what falls due before is
  /// delivered. What other processes add meanwhile is newer than these changes, and is neither
  /// replaced nor removed. Not from a handler.
  [[nodiscard]] std::shared_ptr<void> holdChanges();

  /// Returns when all that was asked before has taken effect, but for what is kept; to be called
  /// before the process ends. Not from a handler.
  void flush() const;

 private:
  class Service;
  std::shared_ptr<Service> service_;
};

}  // namespace platform
