#pragma once

#include "Foundation/Process/MainLoop.h"

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace platform {

/// The wall clock as an event of the main loop: each full minute, and each time that it was set,
/// which is also when the machine has slept. An idle program is woken by nothing else.
class ClockWatch : public MainLoopSource {
 public:
  /// \param clockWasSet Or the machine has slept. \param minute After it, and each minute.
  [[nodiscard]] static std::shared_ptr<ClockWatch> begin(MainLoop& loop,
                                                         std::function<void()> clockWasSet,
                                                         std::function<void()> minute);
  ~ClockWatch() override;

  [[nodiscard]] Wait wait() override { return {.descriptor = timer_}; }
  void proceed() override;

 private:
  ClockWatch(std::function<void()> clockWasSet, std::function<void()> minute);
  void arm() const;

  std::function<void()> clockWasSet_;
  std::function<void()> minute_;
  int timer_;
};

/// Calls a function when files of a folder have changed: other processes write them, or put
/// another one in the place of one. `changed` gets the name of each.
class FolderWatch : public MainLoopSource {
 public:
  [[nodiscard]] static std::shared_ptr<FolderWatch> begin(
      MainLoop& loop,
      std::function<void(const std::string& folder, const std::string& file)> changed);
  ~FolderWatch() override;

  /// A folder that is not there yet is not watched.
  void add(const std::string& folder);

  [[nodiscard]] Wait wait() override { return {.descriptor = inotify_}; }
  void proceed() override;

 private:
  explicit FolderWatch(std::function<void(const std::string&, const std::string&)> changed);

  std::function<void(const std::string&, const std::string&)> changed_;
  std::map<int, std::string> folders_;
  int inotify_;
};

}  // namespace platform
