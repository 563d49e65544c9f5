#include "CoreData/Store/StoreWatch.h"

#include "Foundation/Dispatch/NSNotificationCenter.h"
#include "Foundation/Process/SlowPoll.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>
#include <mutex>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <sys/inotify.h>
#include <sys/timerfd.h>
#include <unistd.h>

namespace platform {

struct StoreWatch::Watcher {
  std::filesystem::path path;
  std::function<void()> wake;
  int descriptor = -1;  // the kernel's name for the watched file
};

namespace {

using Watcher = StoreWatch::Watcher;
using Watchers = std::vector<std::shared_ptr<Watcher>>;

constexpr itimerspec everyTwoSeconds{.it_interval = {.tv_sec = 2, .tv_nsec = 0},
                                     .it_value = {.tv_sec = 2, .tv_nsec = 0}};
constexpr itimerspec once{.it_interval = {}, .it_value = {.tv_sec = 0, .tv_nsec = 1}};

/// All watchers of the process, and the thread that waits for the kernel's events.
class WatchThread {
 public:
  static WatchThread& shared() {
    static auto* instance = new WatchThread;
    return *instance;
  }

  void add(const std::shared_ptr<Watcher>& watcher) {
    const std::scoped_lock lock(mutex_);
    if (!std::exchange(started_, true)) {
      inotify_ = inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
      timer_ = timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK);
      if (SlowPoll::isCommon()) {
        looks_ = NSNotificationCenter::defaultCenter().addObserver(
            SlowPoll::looks, [this](const auto&) { timerfd_settime(timer_, 0, &once, nullptr); });
      } else {
        timerfd_settime(timer_, 0, &everyTwoSeconds, nullptr);
      }
      std::thread([this] { work(); }).detach();
    }
    watch(*watcher);
    watchers_.push_back(watcher);
  }

  void remove(const std::shared_ptr<Watcher>& watcher) {
    const std::scoped_lock lock(mutex_);
    std::erase(watchers_, watcher);
    const bool isWatched =
        std::ranges::find(watchers_, watcher->descriptor, &Watcher::descriptor) != watchers_.end();
    if (!isWatched && watcher->descriptor >= 0) inotify_rm_watch(inotify_, watcher->descriptor);
  }

  template <typename Condition>
  void wake(Condition isMeant) {
    Watchers meant;
    {
      const std::scoped_lock lock(mutex_);
      std::ranges::copy_if(watchers_, std::back_inserter(meant), isMeant);
    }
    for (const auto& watcher : meant) watcher->wake();
  }

 private:
  [[noreturn]] void work() {
    std::array<pollfd, 2> waiting{{{.fd = inotify_, .events = POLLIN, .revents = 0},
                                   {.fd = timer_, .events = POLLIN, .revents = 0}}};
    for (;;) {
      ::poll(waiting.data(), waiting.size(), -1);
      std::uint64_t expirations = 0;
      const bool isTime = ::read(timer_, &expirations, sizeof expirations) > 0;
      if (isTime) watchAnew();
      const std::vector<int> changed = readEvents();
      wake([&](const auto& watcher) {
        // An event without a descriptor says that some were lost.
        return isTime || std::ranges::find(changed, -1) != changed.end() ||
               std::ranges::find(changed, watcher->descriptor) != changed.end();
      });
    }
  }

  void watch(Watcher& watcher) const {
    watcher.descriptor = inotify_add_watch(inotify_, watcher.path.c_str(), IN_MODIFY);
  }

  /// The file may be another one by now, or one that wasn't there before.
  void watchAnew() {
    const std::scoped_lock lock(mutex_);
    for (const auto& watcher : watchers_) watch(*watcher);
  }

  std::vector<int> readEvents() const {
    alignas(inotify_event) std::array<char, 4096> buffer;
    const ssize_t size = ::read(inotify_, buffer.data(), buffer.size());
    std::vector<int> descriptors;
    for (ssize_t at = 0; at < size;) {
      const auto* event = reinterpret_cast<const inotify_event*>(buffer.data() + at);
      descriptors.push_back(event->wd);
      at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
    }
    return descriptors;
  }

  std::mutex mutex_;
  Watchers watchers_;
  int inotify_ = -1;
  int timer_ = -1;
  NSNotificationCenter::Token looks_;
  bool started_ = false;
};

}  // namespace

std::unique_ptr<StoreWatch> StoreWatch::begin(const std::filesystem::path& store,
                                              std::function<void()> wake) {
  const std::filesystem::path path = store.string() + "-changes";
  auto file = NSFileHandle::open(path, O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK);
  auto watcher = std::make_shared<Watcher>(Watcher{.path = path, .wake = std::move(wake)});
  WatchThread::shared().add(watcher);
  return std::unique_ptr<StoreWatch>(
      new StoreWatch(file ? std::move(*file) : NSFileHandle(), std::move(watcher)));
}

StoreWatch::StoreWatch(NSFileHandle file, std::shared_ptr<Watcher> watcher)
    : file_(std::move(file)), watcher_(std::move(watcher)) {}

StoreWatch::~StoreWatch() {
  WatchThread::shared().remove(watcher_);
}

void StoreWatch::touch(std::int64_t transaction) {
  // Nobody reads the number; it is there for people. A failed write, or no file, is a lost hint.
  std::array<char, 24> text{};
  const int size =
      std::snprintf(text.data(), text.size(), "%20lld\n", static_cast<long long>(transaction));
  [[maybe_unused]] const auto written =
      ::pwrite(file_.fileDescriptor(), text.data(), static_cast<std::size_t>(size), 0);
  WatchThread::shared().wake(
      [this](const auto& other) { return other != watcher_ && other->path == watcher_->path; });
}

}  // namespace platform
