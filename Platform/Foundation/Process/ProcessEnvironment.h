#pragma once

#include "Foundation/Process/Environment.h"

#include <mutex>
#include <optional>
#include <random>
#include <string>

namespace platform {

/// The real machine's environment. Folders follow the XDG base directories, the zone and the locale
/// the usual variables (TZ, LC_ALL, LC_MESSAGES, LANG) and the system's settings. Each option
/// replaces one answer, so that a command can be run again with the same result.
///
///     ProcessEnvironment environment({.now = Date::fromISO8601("2024-03-07T12:00:00Z")});
///     environment.now().iso8601();    // "2024-03-07T12:00:00Z"
class ProcessEnvironment : public Environment {
 public:
  struct Options {
    std::optional<Date> now = {};                      ///< The wall clock stands still there.
    std::optional<TimeZone> timeZone = {};             ///
    std::optional<std::string> localeIdentifier = {};  ///
    std::optional<std::filesystem::path> root = {};    ///< All writable folders lie below it.
    BundleInfo bundle = {};
  };

  ProcessEnvironment() : ProcessEnvironment(Options{}) {}
  explicit ProcessEnvironment(Options options);

  [[nodiscard]] Date now() const override;
  [[nodiscard]] bool isTimeGiven() const override { return options_.now.has_value(); }
  [[nodiscard]] double mediaTime() const override;
  [[nodiscard]] MainLoop& mainLoop() override;
  [[nodiscard]] TimedWork& timedWork() override;
  [[nodiscard]] std::string localeIdentifier() const override { return localeIdentifier_; }
  [[nodiscard]] const BundleInfo& bundle() const override { return options_.bundle; }
  [[nodiscard]] const Directories& directories() const override { return directories_; }
  [[nodiscard]] std::string deviceModel() const override;
  [[nodiscard]] ApplicationState applicationState() const override;
  [[nodiscard]] std::string variable(const std::string& name) const override;
  [[nodiscard]] std::uint64_t random() override;
  void report(std::string_view line) override;

  /// The machine's zone may have changed. One that was given stays.
  void readTimeZone();

 private:
  Options options_;
  std::string localeIdentifier_;
  Directories directories_;
  std::mutex randomMutex_;
  std::mt19937_64 generator_;
};

}  // namespace platform
