#include "TimedTasks/TimedTaskManager.h"

#include "DataManager/DataManager.h"
#include "Foundation/Coding/JSON.h"
#include "OxLog/Log.h"
#include "TimedTasks/TimedTaskLiveActivityManager.h"

#include <algorithm>

namespace velloro {
namespace {

using Entry = TimedTaskManagerEntry;

std::string description(const Entry& entry) {
  return JSONEncoder{.dateForm = DateForm::iso8601}.encode(entry);
}

/// What can't be written is thrown.
void expectWritten(const Result<void>& written) {
  if (!written) throw Error(*written.error());
}

/// Sets a flag for as long as it lives.
struct Meanwhile {
  explicit Meanwhile(bool& flag) : flag_(flag) { flag_ = true; }
  Meanwhile(const Meanwhile&) = delete;
  Meanwhile& operator=(const Meanwhile&) = delete;
  ~Meanwhile() { flag_ = false; }

 private:
  bool& flag_;
};

}  // namespace

TimedTaskManager::Error::Error(Reason reason)
    : platform::Error("velloro.timedTaskManager", static_cast<int>(reason),
                      reason == Reason::alreadyTiming ? "a timer of the task is running already"
                                                      : "no timer of the task is running") {}

TimedTaskManager& TimedTaskManager::shared() {
  static auto* const manager = new TimedTaskManager(
      SettingsStorage::shared(), [] { return DataManager::shared().inMaintenanceMode(); });
  return *manager;
}

std::set<UniqueID> TimedTaskManager::processCurrentTimers() {
  std::set<UniqueID> expired;
  const std::vector<Entry> entries = isProcessing_ ? std::vector<Entry>() : entries_.all();
  if (entries.empty() || inMaintenanceMode_()) return expired;
  const Meanwhile processing(isProcessing_);
  const Date now = Date::now();
  const auto host = delegate.lock();
  const bool mayRun = host != nullptr && host->mayRunTimers();
  for (const Entry& entry : entries) {
    if (entry.end <= now) {
      Log::general.info([&] { return "Timer expired, processing now: " + description(entry); });
      if (expire(entry)) expired.insert(entry.entryId);
    } else if (mayRun) {
      Log::general.info(
          [&] { return "Timed task not finished, restarting timer " + description(entry); });
      restartTimer(entry, now);
    }
  }
  remove(expired);
  updateLiveActivity();
  return expired;
}

void TimedTaskManager::timerTriggered(const UniqueID& entryId) {
  timers_.erase(entryId);
  const auto entries = entries_.all();
  const auto found = std::ranges::find(entries, entryId, &Entry::entryId);
  if (found == entries.end()) throw Error(Error::Reason::taskNotFound);
  const Meanwhile processing(isProcessing_);
  if (expire(*found)) remove({entryId});
  updateLiveActivity();
}

std::optional<Entry> TimedTaskManager::entry(const UniqueID& taskIdentifier) const {
  const auto entries = entries_.all();
  const auto found = std::ranges::find(entries, taskIdentifier, &Entry::taskIdentifier);
  return found != entries.end() ? std::optional(*found) : std::nullopt;
}

void TimedTaskManager::start(const Entry& entry) {
  expectWritten(entries_.change([&](std::vector<Entry>& entries) {
    if (std::ranges::count(entries, entry.taskIdentifier, &Entry::taskIdentifier) > 0) {
      throw Error(Error::Reason::alreadyTiming);
    }
    entries.push_back(entry);
  }));
  const auto host = delegate.lock();
  if (host != nullptr && host->mayRunTimers()) restartTimer(entry, Date::now());
  updateLiveActivity();
}

void TimedTaskManager::stop(const UniqueID& entryId) {
  expectWritten(entries_.change([&](std::vector<Entry>& entries) {
    const auto removed =
        std::erase_if(entries, [&](const Entry& entry) { return entry.entryId == entryId; });
    if (removed == 0) throw Error(Error::Reason::taskNotFound);
  }));
  timers_.erase(entryId);
  updateLiveActivity();
}

/// Whether it is to be removed.
bool TimedTaskManager::expire(const Entry& entry) {
  const auto host = delegate.lock();
  if (host == nullptr) return true;
  try {
    host->timerExpired(entry, entry.taskIdentifier);
    return true;
  } catch (const std::exception& error) {
    Log::general.error(error);
    return false;
  }
}

void TimedTaskManager::restartTimer(const Entry& entry, Date now) {
  timers_[entry.entryId] =
      NSTimer::scheduled(entry.end.timeIntervalSince(now), false, [this, id = entry.entryId] {
        try {
          timerTriggered(id);
        } catch (const std::exception& error) {
          Log::general.error(error);
        }
      });
}

/// From the list as it is by now: others have added theirs meanwhile.
void TimedTaskManager::remove(const std::set<UniqueID>& entryIds) {
  if (entryIds.empty()) return;
  const auto written = entries_.change([&](std::vector<Entry>& entries) {
    std::erase_if(entries, [&](const Entry& entry) { return entryIds.contains(entry.entryId); });
  });
  if (!written) Log::general.error(written.error());
  for (const UniqueID& id : entryIds) timers_.erase(id);
}

void TimedTaskManager::updateLiveActivity() const {
  const auto host = delegate.lock();
  if (host == nullptr) return;
  TimedTaskLiveActivityManager::update(
      entries_.all(), [&](const UniqueID& task) { return host->liveActivityDisplayMode(task); });
}

}  // namespace velloro
