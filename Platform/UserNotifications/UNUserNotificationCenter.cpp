#include "UserNotifications/UNUserNotificationCenter.h"

#include "Foundation/Dispatch/DispatchQueue.h"
#include "Foundation/Process/Environment.h"
#include "Foundation/Process/MainLoop.h"
#include "Foundation/Process/SlowPoll.h"
#include "Foundation/Values/Try.h"
#include "SQLite/StoreError.h"
#include "UserNotifications/NotificationStore.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <utility>

namespace platform {

class UNUserNotificationCenter::Service : public std::enable_shared_from_this<Service> {
 public:
  using Edit = std::move_only_function<Result<void>(NotificationRows&)>;
  using Delegate = std::weak_ptr<UNUserNotificationCenterDelegate>;

  explicit Service(std::filesystem::path folder) : store_(std::move(folder)) {}

  /// Many changes asked for in a row are one transaction, or a few.
  void change(Edit edit, Completion<void> completion = nullptr) {
    const std::scoped_lock lock(mutex_);
    waiting_.push_back(
        {.edit = std::move(edit), .completion = std::move(completion), .spared = spared_});
    if (waiting_.size() == 1 && holds_ == 0) applySoon();
  }

  std::shared_ptr<void> hold() {
    std::int64_t last = 0;
    queue_.sync([&] {
      store_.read([&](NotificationRows& rows) -> Result<void> {
        last = rows.lastPosition();
        return {};
      });
    });
    const std::scoped_lock lock(mutex_);
    if (holds_++ == 0) spared_ = last;
    return {nullptr, [self = shared_from_this()](std::nullptr_t) { self->release(); }};
  }

  /// \param part A member function of the rows.
  template <typename Part, typename T>
  void read(Part part, Handler<T> handler) {
    async([part, handler = std::move(handler)](Service& service) mutable {
      T found = {};
      service.store_.read([&](NotificationRows& rows) -> Result<void> {
        found = TRY(Result<T>(std::invoke(part, rows)));
        return {};
      });
      handler(found);
    });
  }

  void setDelegate(Delegate delegate) {
    async([delegate = std::move(delegate)](Service& service) mutable {
      service.delegate_ = std::move(delegate);
      service.toldBadge_.reset();
      service.deliver();
    });
  }

  void flush() const {
    queue_.sync([] {});
  }

 private:
  static constexpr std::int64_t nothing = std::numeric_limits<std::int64_t>::max();

  struct Change {
    Edit edit;
    Completion<void> completion;
    std::int64_t spared = nothing;
    Result<void> outcome = {};
  };
  struct Outlook {
    Date nextDue = Date::distantFuture();
    std::int64_t badge = 0;
  };

  /// Then nothing of the transaction is kept; any other failure refuses its change alone.
  static bool isOfTheFile(const Result<void>& outcome) {
    return !outcome && dynamic_cast<const StoreError*>(outcome.error().get()) != nullptr;
  }

  template <typename Work>
  void async(Work work) {
    queue_.async([self = shared_from_this(), work = std::move(work)]() mutable { work(*self); });
  }

  void release() {
    const std::scoped_lock lock(mutex_);
    if (--holds_ > 0) return;
    spared_ = nothing;
    if (!waiting_.empty()) applySoon();
  }

  void applySoon() {
    async([](Service& service) { service.applyWaiting(); });
  }

  void applyWaiting() {
    std::vector<Change> changes;
    {
      const std::scoped_lock lock(mutex_);
      if (holds_ > 0) return;
      changes.swap(waiting_);
    }
    const auto written = store_.change([&](NotificationRows& rows) -> Result<void> {
      for (Change& change : changes) {
        rows.spareBehind(change.spared);
        change.outcome = change.edit(rows);
        if (isOfTheFile(change.outcome)) return change.outcome;
      }
      return {};
    });
    for (Change& change : changes) {
      if (written && !change.outcome) {
        Environment::current().report("a notification centre refuses a change: " +
                                      change.outcome.error()->localizedDescription());
      }
      if (change.completion) change.completion(written ? change.outcome : written);
    }
    deliver();
  }

  void deliver() {
    Environment::current().timedWork().cancel(nextLook_);
    if (delegate_.expired()) return;
    std::vector<UNNotification> shown;
    const Date now = Date::now();
    Outlook outlook = look();
    if (outlook.nextDue <= now) {
      const auto moved = store_.change([&](NotificationRows& rows) -> Result<void> {
        shown = TRY(rows.deliverDue(now));
        return {};
      });
      // What is not on record as delivered would be shown again and again.
      if (!moved) shown.clear();
      outlook = look();
    }
    tell(std::move(shown), outlook.badge);
    lookAgain(outlook.nextDue.timeIntervalSince(now));
  }

  Outlook look() {
    Outlook outlook;
    store_.read([&](NotificationRows& rows) -> Result<void> {
      outlook = {.nextDue = TRY(rows.nextDue()), .badge = rows.badge()};
      return {};
    });
    return outlook;
  }

  void tell(std::vector<UNNotification> shown, std::int64_t badge) {
    const bool badgeIsNew = std::exchange(toldBadge_, badge) != badge;
    if (shown.empty() && !badgeIsNew) return;
    DispatchQueue::main().async([to = delegate_, shown = std::move(shown), badge, badgeIsNew] {
      const auto delegate = to.lock();
      if (!delegate) return;
      for (const auto& notification : shown) delegate->willPresent(notification);
      if (badgeIsNew) delegate->badgeDidChange(badge);
    });
  }

  /// \param untilDue In seconds; not above 0 when what is due could not be delivered.
  void lookAgain(TimeInterval untilDue) {
    constexpr TimeInterval never = std::numeric_limits<TimeInterval>::infinity();
    const TimeInterval longest = SlowPoll::isCommon() ? never : recheckInterval;
    const TimeInterval wait = untilDue > 0 ? std::min(untilDue, longest) : recheckInterval;
    Environment& environment = Environment::current();
    nextLook_ =
        environment.timedWork().schedule(environment.mediaTime() + wait, [weak = weak_from_this()] {
          if (const auto self = weak.lock()) self->async([](Service& s) { s.deliver(); });
        });
  }

  const DispatchQueue queue_{"velloro.platform.usernotifications", QualityOfService::userInitiated};
  std::mutex mutex_;
  // Guarded by `mutex_`:
  std::vector<Change> waiting_;
  int holds_ = 0;
  std::int64_t spared_ = nothing;  // what has been added behind this position

  // On the queue alone:
  NotificationStore store_;
  Delegate delegate_;
  std::optional<std::int64_t> toldBadge_;
  TimedWork::Token nextLook_;
};

UNUserNotificationCenter::UNUserNotificationCenter(std::filesystem::path folder)
    : service_(std::make_shared<Service>(std::move(folder))) {}

UNUserNotificationCenter UNUserNotificationCenter::currentNotificationCenter() {
  static std::mutex mutex;
  static auto* centers = new std::map<std::filesystem::path, UNUserNotificationCenter>;
  const auto folder = notificationFolder();
  const std::scoped_lock lock(mutex);
  if (const auto known = centers->find(folder); known != centers->end()) return known->second;
  std::erase_if(*centers, [](const auto& center) {  // those of an environment that has gone
    return center.second.service_.use_count() == 1;
  });
  return centers->try_emplace(folder, folder).first->second;
}

void UNUserNotificationCenter::requestAuthorizationWithOptions(UNAuthorizationOptions options,
                                                               Completion<bool> completionHandler) {
  const auto granted = std::make_shared<bool>(false);
  service_->change(
      [options, granted](NotificationRows& rows) -> Result<void> {
        rows.authorize(options);
        *granted = rows.settings().authorizationStatus == UNAuthorizationStatus::authorized;
        return {};
      },
      [granted, handler = std::move(completionHandler)](const Result<void>& done) mutable {
        if (handler) handler(done ? Result<bool>(*granted) : std::unexpected(done.error()));
      });
}

void UNUserNotificationCenter::getNotificationSettingsWithCompletionHandler(
    Handler<UNNotificationSettings> handler) {
  service_->read(&NotificationRows::settings, std::move(handler));
}

void UNUserNotificationCenter::setNotificationSettings(const UNNotificationSettings& settings) {
  service_->change([settings](NotificationRows& rows) -> Result<void> {
    rows.setSettings(settings);
    return {};
  });
}

void UNUserNotificationCenter::setNotificationCategories(
    std::vector<UNNotificationCategory> categories) {
  service_->change([categories = std::move(categories)](NotificationRows& rows) {
    return rows.setCategories(categories);
  });
}

void UNUserNotificationCenter::getNotificationCategoriesWithCompletionHandler(
    Handler<std::vector<UNNotificationCategory>> handler) {
  service_->read(&NotificationRows::categories, std::move(handler));
}

void UNUserNotificationCenter::addNotificationRequest(UNNotificationRequest request,
                                                      Completion<void> withCompletionHandler) {
  service_->change([request = std::move(request)](
                       NotificationRows& rows) { return rows.add(request, Date::now()); },
                   std::move(withCompletionHandler));
}

void UNUserNotificationCenter::getPendingNotificationRequestsWithCompletionHandler(
    Handler<std::vector<UNNotificationRequest>> handler) {
  service_->read(&NotificationRows::pending, std::move(handler));
}

void UNUserNotificationCenter::getDeliveredNotificationsWithCompletionHandler(
    Handler<std::vector<UNNotification>> handler) {
  service_->read(&NotificationRows::delivered, std::move(handler));
}

void UNUserNotificationCenter::removePendingNotificationRequestsWithIdentifiers(
    const Identifiers& identifiers) {
  service_->change([removed = std::set(identifiers.begin(), identifiers.end())](
                       NotificationRows& rows) { return rows.removePending(removed); });
}

void UNUserNotificationCenter::removeDeliveredNotificationsWithIdentifiers(
    const Identifiers& identifiers) {
  service_->change(
      [removed = std::set(identifiers.begin(), identifiers.end())](NotificationRows& rows) {
        return rows.removeDelivered(removed, Date::now());
      });
}

void UNUserNotificationCenter::removeAllPendingNotificationRequests() {
  service_->change([](NotificationRows& rows) { return rows.removeAllPending(Date::now()); });
}

void UNUserNotificationCenter::removeAllDeliveredNotifications() {
  service_->change([](NotificationRows& rows) { return rows.removeAllDelivered(Date::now()); });
}

void UNUserNotificationCenter::setDelegate(
    std::weak_ptr<UNUserNotificationCenterDelegate> delegate) {
  service_->setDelegate(std::move(delegate));
}

std::shared_ptr<void> UNUserNotificationCenter::holdChanges() {
  return service_->hold();
}

void UNUserNotificationCenter::flush() const {
  service_->flush();
}

}  // namespace platform
