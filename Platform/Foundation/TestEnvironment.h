#pragma once

#include "Foundation/Environment.h"

#include <mutex>
#include <random>
#include <string>
#include <vector>

namespace platform {

/// An environment moved by hand: the clock stands until it is set or advanced, zone and locale are
/// what they were set to (Europe/Berlin and en_US at the start), chance comes from a fixed seed,
/// and the folders lie in a new temporary directory that goes with the object. It is the current
/// environment while it lives. Tests run in it, and so do commands that play a scene out of real
/// time.
///
///     TestEnvironment environment;
///     environment.setNow(Date::fromISO8601("2024-03-07T12:00:00Z").value());
class TestEnvironment : public Environment {
 public:
  TestEnvironment();
  ~TestEnvironment() override;

  void setNow(Date now) { now_ = now; }
  void setTimeZone(TimeZone zone) { timeZone_ = zone; }
  void setLocale(std::string identifier) { localeIdentifier_ = std::move(identifier); }
  void setBundle(BundleInfo bundle) { bundle_ = std::move(bundle); }
  void setDeviceModel(std::string model) { deviceModel_ = std::move(model); }
  void setApplicationState(ApplicationState state) { applicationState_ = state; }
  void setVariable(const std::string& name, std::string value);
  void seed(std::uint64_t seed);

  /// What was reported so far, oldest first.
  [[nodiscard]] std::vector<std::string> reports() const;

  [[nodiscard]] Date now() const override { return now_; }
  [[nodiscard]] double mediaTime() const override { return mediaTime_; }
  [[nodiscard]] TimeZone timeZone() const override { return timeZone_; }
  [[nodiscard]] std::string localeIdentifier() const override { return localeIdentifier_; }
  [[nodiscard]] const BundleInfo& bundle() const override { return bundle_; }
  [[nodiscard]] const Directories& directories() const override { return directories_; }
  [[nodiscard]] std::string deviceModel() const override { return deviceModel_; }
  [[nodiscard]] ApplicationState applicationState() const override { return applicationState_; }
  [[nodiscard]] std::string variable(const std::string& name) const override;
  [[nodiscard]] std::uint64_t random() override;
  void report(std::string_view line) override;

 private:
  Date now_ = Date::since1970(1709809200);  // 2024-03-07T11:00:00Z, noon in Berlin
  double mediaTime_ = 1000;
  TimeZone timeZone_;
  std::string localeIdentifier_ = "en_US";
  BundleInfo bundle_ = {.identifier = "velloro.app", .shortVersion = "1.0.0", .version = "1"};
  std::string deviceModel_ = "iPhone";
  ApplicationState applicationState_ = ApplicationState::active;
  std::vector<std::pair<std::string, std::string>> variables_;
  Directories directories_;
  mutable std::mutex mutex_;  // guards what background threads reach: the generator, the reports
  std::mt19937_64 generator_{1};
  std::vector<std::string> reports_;
  Environment* previous_;
};

}  // namespace platform
