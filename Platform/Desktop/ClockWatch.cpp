#include "Desktop/ClockWatch.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <ctime>
#include <set>
#include <utility>

#include <sys/inotify.h>
#include <sys/timerfd.h>
#include <unistd.h>

namespace platform {

std::shared_ptr<ClockWatch> ClockWatch::begin(MainLoop& loop, std::function<void()> clockWasSet,
                                              std::function<void()> minute) {
  std::shared_ptr<ClockWatch> watch(new ClockWatch(std::move(clockWasSet), std::move(minute)));
  loop.watch(watch);
  return watch;
}

ClockWatch::ClockWatch(std::function<void()> clockWasSet, std::function<void()> minute)
    : clockWasSet_(std::move(clockWasSet)),
      minute_(std::move(minute)),
      timer_(timerfd_create(CLOCK_REALTIME, TFD_CLOEXEC | TFD_NONBLOCK)) {
  arm();
}

ClockWatch::~ClockWatch() {
  ::close(timer_);
}

/// At the next full minute. Where that fails with ECANCELED, the timer is armed all the same.
void ClockWatch::arm() const {
  constexpr std::time_t minute = 60;
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  const itimerspec next{.it_interval = {},
                        .it_value = {.tv_sec = (now.tv_sec / minute + 1) * minute, .tv_nsec = 0}};
  timerfd_settime(timer_, TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &next, nullptr);
}

void ClockWatch::proceed() {
  std::uint64_t expirations = 0;
  const bool isTime = ::read(timer_, &expirations, sizeof expirations) > 0;
  const bool wasSet = !isTime && errno == ECANCELED;
  if (!isTime && !wasSet) return;
  arm();
  if (wasSet) {
    clockWasSet_();
  } else {
    minute_();
  }
}

std::shared_ptr<FolderWatch> FolderWatch::begin(
    MainLoop& loop, std::function<void(const std::string&, const std::string&)> changed) {
  std::shared_ptr<FolderWatch> watch(new FolderWatch(std::move(changed)));
  loop.watch(watch);
  return watch;
}

FolderWatch::FolderWatch(std::function<void(const std::string&, const std::string&)> changed)
    : changed_(std::move(changed)), inotify_(inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {}

FolderWatch::~FolderWatch() {
  ::close(inotify_);
}

void FolderWatch::add(const std::string& folder) {
  const int watch = inotify_add_watch(inotify_, folder.c_str(),
                                      IN_CLOSE_WRITE | IN_MODIFY | IN_MOVED_TO | IN_ATTRIB |
                                          IN_CREATE | IN_DELETE | IN_DONT_FOLLOW);
  if (watch >= 0) folders_[watch] = folder;
}

void FolderWatch::proceed() {
  alignas(inotify_event) std::array<char, 4096> buffer;
  std::set<std::pair<std::string, std::string>> changes;
  for (;;) {
    const ssize_t size = ::read(inotify_, buffer.data(), buffer.size());
    if (size <= 0) break;
    for (ssize_t at = 0; at < size;) {
      const auto* event = reinterpret_cast<const inotify_event*>(buffer.data() + at);
      const auto folder = folders_.find(event->wd);
      if (folder != folders_.end() && event->len > 0) changes.emplace(folder->second, event->name);
      at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
    }
  }
  for (const auto& [folder, file] : changes) changed_(folder, file);
}

}  // namespace platform
