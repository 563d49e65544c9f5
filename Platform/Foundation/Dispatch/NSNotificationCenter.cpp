#include "Foundation/Dispatch/NSNotificationCenter.h"

#include <atomic>
#include <mutex>
#include <utility>
#include <vector>

namespace platform {

struct NSNotificationCenter::Observer {
  std::string name;
  const void* object;
  std::optional<DispatchQueue> queue;
  Handler handler;
  std::atomic<bool> isRemoved = false;

  void hear(const Notification& notification) const {
    if (!isRemoved) handler(notification);
  }
};

struct NSNotificationCenter::Observers {
  using List = std::vector<std::shared_ptr<Observer>>;

  std::mutex mutex;
  std::map<std::string, List, std::less<>> byName;

  void add(const std::shared_ptr<Observer>& observer) {
    const std::scoped_lock lock(mutex);
    byName[observer->name].push_back(observer);
  }

  void remove(const std::shared_ptr<Observer>& observer) {
    const std::scoped_lock lock(mutex);
    const auto found = byName.find(observer->name);
    std::erase(found->second, observer);
    if (found->second.empty()) byName.erase(found);
  }

  [[nodiscard]] List named(const std::string& name) {
    const std::scoped_lock lock(mutex);
    const auto found = byName.find(name);
    return found != byName.end() ? found->second : List();
  }
};

struct NSNotificationCenter::Token::Registration {
  std::weak_ptr<Observers> observers;
  std::shared_ptr<Observer> observer;
};

NSNotificationCenter::Token::Token(std::shared_ptr<Registration> registration)
    : registration_(std::move(registration)) {}

NSNotificationCenter::Token& NSNotificationCenter::Token::operator=(Token&& other) noexcept {
  Token replaced(std::exchange(registration_, std::move(other.registration_)));
  return *this;
}

void NSNotificationCenter::Token::remove() {
  const auto registration = std::move(registration_);
  if (!registration) return;
  registration->observer->isRemoved = true;
  if (const auto observers = registration->observers.lock()) {
    observers->remove(registration->observer);
  }
}

NSNotificationCenter::NSNotificationCenter() : observers_(std::make_shared<Observers>()) {}

NSNotificationCenter& NSNotificationCenter::defaultCenter() {
  static auto* center = new NSNotificationCenter;
  return *center;
}

NSNotificationCenter::Token NSNotificationCenter::addObserver(std::string name, const void* object,
                                                              std::optional<DispatchQueue> queue,
                                                              Handler handler) {
  auto observer =
      std::make_shared<Observer>(std::move(name), object, std::move(queue), std::move(handler));
  observers_->add(observer);
  return Token(std::make_shared<Token::Registration>(observers_, std::move(observer)));
}

NSNotificationCenter::Token NSNotificationCenter::addObserver(std::string name, Handler handler) {
  return addObserver(std::move(name), nullptr, std::nullopt, std::move(handler));
}

void NSNotificationCenter::post(Notification notification) const {
  const auto shared = std::make_shared<const Notification>(std::move(notification));
  for (const auto& observer : observers_->named(shared->name)) {
    if (observer->object != nullptr && observer->object != shared->object) continue;
    if (!observer->queue || observer->queue->isCurrent()) {
      observer->hear(*shared);
    } else {
      observer->queue->async([observer, shared] { observer->hear(*shared); });
    }
  }
}

}  // namespace platform
