#pragma once

#include "Foundation/Process/Environment.h"
#include "Foundation/Process/VirtualTime.h"

#include <mutex>
#include <random>
#include <string>
#include <vector>

namespace platform {

/// An environment that is controlled by the program: the clock stands still until it is set or
/// advanced, zone and locale are fixed (Europe/Berlin and en_US at the start), random bits come
/// from a fixed seed, and the folders lie in a new temporary directory that is removed with the
/// object. It is the current environment while it lives. Tests run in it, and so do commands that
/// play a scene out of real time.
///
///     VirtualEnvironment environment;
///     DispatchQueue::main().asyncAfter(0.5, [] { Environment::current().report("done"); });
///     environment.advance(0.5);
///     environment.reports().front();    // "done"
///
/// Time is virtual; the thread that makes the environment is its main thread. Background queues run
/// on real threads, and before the clock moves on, all background work handed in so far has ended:
/// so a script gives the same result each time, as long as no background block waits for something
/// that only a later time brings. When the environment ends, what waits for the main thread or for
/// a time is dropped, and background work is waited for. Set places and names up before background
/// work starts, or after `settle`.
class VirtualEnvironment : public Environment {
 public:
  VirtualEnvironment();
  ~VirtualEnvironment() override;

  /// Moves both clocks on by so many seconds and stops on the way at each thing that falls due:
  /// what was posted to the main thread, delayed blocks, timers; at the same time, in the order in
  /// which they were scheduled. What they post or schedule in turn runs as well if it falls due.
  void advance(TimeInterval seconds) { time_.advance(seconds); }
  /// Runs everything that is due now, until nothing is.
  void settle() { advance(0); }
  /// Sets the wall clock alone, as a user does: nothing becomes due.
  void setNow(Date now) { time_.setNow(now); }
  using Environment::setTimeZone;
  void setLocale(std::string identifier) { localeIdentifier_ = std::move(identifier); }
  void setResources(std::filesystem::path folder) { directories_.resources = std::move(folder); }
  void setBundle(BundleInfo bundle) { bundle_ = std::move(bundle); }
  void setDeviceModel(std::string model) { deviceModel_ = std::move(model); }
  void setApplicationState(ApplicationState state) { applicationState_ = state; }
  void setVariable(const std::string& name, std::string value);
  void seed(std::uint64_t seed);

  /// What was reported so far, oldest first.
  [[nodiscard]] std::vector<std::string> reports() const;

  [[nodiscard]] Date now() const override { return time_.now(); }
  [[nodiscard]] double mediaTime() const override { return time_.mediaTime(); }
  [[nodiscard]] MainLoop& mainLoop() override { return time_; }
  [[nodiscard]] TimedWork& timedWork() override { return time_; }
  [[nodiscard]] std::string localeIdentifier() const override { return localeIdentifier_; }
  [[nodiscard]] const BundleInfo& bundle() const override { return bundle_; }
  [[nodiscard]] const Directories& directories() const override { return directories_; }
  [[nodiscard]] std::string deviceModel() const override { return deviceModel_; }
  [[nodiscard]] ApplicationState applicationState() const override { return applicationState_; }
  [[nodiscard]] std::string variable(const std::string& name) const override;
  [[nodiscard]] std::uint64_t random() override;
  void report(std::string_view line) override;

 private:
  VirtualTime time_{Date::since1970(1709809200)};  // 2024-03-07T11:00:00Z, noon in Berlin
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
