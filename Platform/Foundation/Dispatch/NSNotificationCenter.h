#pragma once

#include "Foundation/Dispatch/DispatchQueue.h"

#include <any>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// What observers receive: the name of an event, the object that it concerns, and further values.
struct Notification {
  std::string name;
  const void* object = nullptr;  ///< Used for its identity alone.
  std::map<std::string, std::any, std::less<>> userInfo = {};

  /// The value under `key`; null when there is none or it has another type.
  ///
  ///     Notification{.name = "Saved", .userInfo = {{"rows", 3}}}.value<int>("rows");    // 3
  template <typename T>
  [[nodiscard]] const T* value(std::string_view key) const {
    const auto found = userInfo.find(key);
    return found != userInfo.end() ? std::any_cast<T>(&found->second) : nullptr;
  }
};

/// Notifies the observers of a name when a notification with that name is posted. All members may
/// be called from any thread, and from within an observer.
///
///     int heard = 0;
///     const auto token = NSNotificationCenter::defaultCenter().addObserver(
///         "Settings.SettingsChanged", [&](const Notification&) { ++heard; });
///     NSNotificationCenter::defaultCenter().post({.name = "Settings.SettingsChanged"});
///     heard;    // 1
class NSNotificationCenter {
 public:
  /// Runs on several threads at once when they post at once.
  using Handler = std::move_only_function<void(const Notification&) const>;

  /// Keeps an observer registered; destroying it removes the observer. After `remove`, no new call
  /// begins, not even for a notification that is being posted or waits in the observer's queue. A
  /// call on another thread may still be running.
  class Token {
   public:
    Token() = default;
    Token(Token&& other) noexcept = default;
    Token& operator=(Token&& other) noexcept;
    ~Token() { remove(); }

    void remove();

   private:
    friend class NSNotificationCenter;
    struct Registration;
    explicit Token(std::shared_ptr<Registration> registration);

    std::shared_ptr<Registration> registration_;
  };

  NSNotificationCenter();
  NSNotificationCenter(const NSNotificationCenter&) = delete;
  NSNotificationCenter& operator=(const NSNotificationCenter&) = delete;

  [[nodiscard]] static NSNotificationCenter& defaultCenter();

  /// \param object Only notifications of this object are received; null for those of any object.
  /// \param queue Where the handler runs. It runs before `post` returns when there is no queue or
  ///     the queue is current where it is posted, and later otherwise.
  [[nodiscard]] Token addObserver(std::string name, const void* object,
                                  std::optional<DispatchQueue> queue, Handler handler);
  /// The same for any object; the handler runs on the posting thread.
  [[nodiscard]] Token addObserver(std::string name, Handler handler);

  /// Calls the observers in the order in which they were added. An observer that is added meanwhile
  /// receives only the next notification.
  void post(Notification notification) const;

 private:
  struct Observer;
  struct Observers;
  std::shared_ptr<Observers> observers_;
};

}  // namespace platform
