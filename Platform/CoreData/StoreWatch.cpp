#include "CoreData/StoreWatch.h"

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

constexpr int millisecondsBetweenLooks = 2000;

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
      inotify_ = inotify_init1(IN_CLOEXEC);
      std::thread([this] { work(); }).detach();
    }
    watcher->descriptor = inotify_add_watch(inotify_, watcher->path.c_str(), IN_MODIFY);
    watchers_.push_back(watcher);
  }

  void remove(const std::shared_ptr<Watcher>& watcher) {
    const std::scoped_lock lock(mutex_);
    std::erase(watchers_, watcher);
    const bool isWatched =
        std::ranges::find(watchers_, watcher->descriptor, &Watcher::descriptor) != watchers_.end();
    if (!isWatched) inotify_rm_watch(inotify_, watcher->descriptor);
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
    for (;;) {
      pollfd waiting{.fd = inotify_, .events = POLLIN, .revents = 0};
      const std::vector<int> changed =
          ::poll(&waiting, 1, millisecondsBetweenLooks) > 0 ? readEvents() : std::vector<int>();
      wake([&](const auto& watcher) {
        // An event without a descriptor says that some were lost.
        return changed.empty() || std::ranges::find(changed, -1) != changed.end() ||
               std::ranges::find(changed, watcher->descriptor) != changed.end();
      });
    }
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
  bool started_ = false;
};

}  // namespace

Result<std::unique_ptr<StoreWatch>> StoreWatch::begin(const std::filesystem::path& store,
                                                      std::function<void()> wake) {
  const std::filesystem::path path = store.string() + "-changes";
  auto file = NSFileHandle::open(path, O_RDWR | O_CREAT);
  if (!file) return std::unexpected(file.error());
  auto watcher = std::make_shared<Watcher>(Watcher{.path = path, .wake = std::move(wake)});
  WatchThread::shared().add(watcher);
  return std::unique_ptr<StoreWatch>(new StoreWatch(std::move(*file), std::move(watcher)));
}

StoreWatch::StoreWatch(NSFileHandle file, std::shared_ptr<Watcher> watcher)
    : file_(std::move(file)), watcher_(std::move(watcher)) {}

StoreWatch::~StoreWatch() {
  WatchThread::shared().remove(watcher_);
}

void StoreWatch::touch(std::int64_t transaction) {
  // Nobody reads the number; it is there for people. A failed write is a lost hint.
  std::array<char, 24> text{};
  const int size =
      std::snprintf(text.data(), text.size(), "%20lld\n", static_cast<long long>(transaction));
  [[maybe_unused]] const auto written =
      ::pwrite(file_.fileDescriptor(), text.data(), static_cast<std::size_t>(size), 0);
  WatchThread::shared().wake(
      [this](const auto& other) { return other != watcher_ && other->path == watcher_->path; });
}

}  // namespace platform
