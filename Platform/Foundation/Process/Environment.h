#pragma once

#include "Foundation/Time/Date.h"
#include "Foundation/Time/TimeZone.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace platform {

class MainLoop;
class TimedWork;

/// The state of the application, as its user sees it.
enum class ApplicationState { active, inactive, background };

/// Where a process keeps its files.
struct Directories {
  std::filesystem::path caches;           ///< May be emptied at any time.
  std::filesystem::path documents;        ///< What the user would call their files.
  std::filesystem::path preferences;      ///< One file per defaults suite.
  std::filesystem::path groupContainers;  ///< One folder per application group.
  std::filesystem::path temporary;
  std::filesystem::path resources;  ///< The string tables and the icon table, read only.
};

/// The identity of the process.
struct BundleInfo {
  std::string identifier = {};     ///< Such as "velloro.app"; determines the run target.
  std::string shortVersion = {};   ///< CFBundleShortVersionString: "1.2.3".
  std::string version = {};        ///< CFBundleVersion: the build number.
  std::string pathExtension = {};  ///< Of the bundle's folder: "app", or "appex" of an extension.
};

/// What a process gets from outside: time, place, identity, folders and random bits. Nothing else
/// in the program asks the system for these, so a test or a command with `--now` can set them all.
///
/// A `ProcessEnvironment` stands for the real machine, a `VirtualEnvironment` for a hand-moved one.
/// The current one is the machine's until another is installed:
///
///     VirtualEnvironment environment;                 // installs itself, and leaves at scope end
///     environment.setNow(Date::fromISO8601("2024-03-07T12:00:00Z").value());
///     Date::now().iso8601();                       // "2024-03-07T12:00:00Z"
class Environment {
 public:
  virtual ~Environment() = default;
  explicit Environment(TimeZone timeZone) : timeZone_(timeZone) {}
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;

  [[nodiscard]] static Environment& current() {
    Environment* environment = installed_.load(std::memory_order_acquire);
    return environment != nullptr ? *environment : machine();
  }
  /// Makes `environment` the current one and returns the one before. Null restores the machine's.
  static Environment* install(Environment* environment);

  /// The wall clock.
  [[nodiscard]] virtual Date now() const = 0;
  /// Whether the user chose that instant, as with `--now`. Nothing may then be concluded from it
  /// about the machine's clock.
  [[nodiscard]] virtual bool isTimeGiven() const { return false; }
  /// The monotonic media clock in seconds, for animation, delays and timers.
  [[nodiscard]] virtual double mediaTime() const = 0;
  /// The blocks that wait for the main thread. `DispatchQueue::main()` posts to it.
  [[nodiscard]] virtual MainLoop& mainLoop() = 0;
  /// The blocks that wait for a media time. `DispatchQueue::asyncAfter` and `NSTimer` use it.
  [[nodiscard]] virtual TimedWork& timedWork() = 0;
  /// The device's zone. Not virtual: all arithmetic on days begins here.
  [[nodiscard]] TimeZone timeZone() const { return timeZone_.load(std::memory_order_relaxed); }
  /// Such as "en_US" or "de_DE".
  [[nodiscard]] virtual std::string localeIdentifier() const = 0;

  [[nodiscard]] virtual const BundleInfo& bundle() const = 0;
  [[nodiscard]] virtual const Directories& directories() const = 0;
  /// The device's model name; its beginning is the family: "iPhone", "iPad", "Mac", …
  [[nodiscard]] virtual std::string deviceModel() const = 0;
  [[nodiscard]] virtual ApplicationState applicationState() const = 0;
  /// A variable of the process environment, empty when it is not set.
  [[nodiscard]] virtual std::string variable(const std::string& name) const = 0;

  /// 64 random bits, from any thread.
  [[nodiscard]] virtual std::uint64_t random() = 0;

  /// Reports a line to the user: on standard error, or in the list of a test.
  virtual void report(std::string_view line) = 0;

 protected:
  void setTimeZone(TimeZone timeZone) { timeZone_.store(timeZone, std::memory_order_relaxed); }

 private:
  static Environment& machine();

  static inline std::atomic<Environment*> installed_ = nullptr;

  std::atomic<TimeZone> timeZone_;
};

}  // namespace platform
