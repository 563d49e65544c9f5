#include "velloro/Timers/TimerWait.h"

#include "Foundation/Dispatch/NSTimer.h"
#include "Foundation/Process/Environment.h"
#include "Foundation/Process/MainLoop.h"
#include "Foundation/Process/TerminalLine.h"
#include "Tasks/Rows/TaskEntity.h"
#include "TimedTasks/TimedTaskLiveActivityManager.h"
#include "velloro/Output/Output.h"
#include "velloro/Timers/TimerReport.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace velloro {
namespace {

std::string barText(double share, std::size_t width) {
  const auto full = static_cast<std::size_t>(std::lround(share * static_cast<double>(width)));
  std::string bar;
  for (std::size_t i = 0; i < width; ++i) bar += i < full ? "█" : "░";
  return bar;
}

/// The time that is left, each time that it is to be seen.
class Countdown {
 public:
  Countdown(std::string title, double duration) : title_(std::move(title)), duration_(duration) {}

  void show(double left) {
    if (width_) return rewrite(left);
    if (left > nextLine_) return;
    print(clockText(left) + " left\n");
    std::fflush(stdout);
    const double step = std::max(duration_ / 10, 1.0);
    nextLine_ = (std::ceil(left / step) - 1) * step;
  }
  /// The place for what comes next.
  void end() const {
    if (width_) rewriteTerminalLine("");
  }

 private:
  void rewrite(double left) const {
    constexpr std::size_t widestTitle = 40;
    constexpr std::size_t widestBar = 40;
    constexpr std::size_t narrowestBar = 5;
    const std::string clock = clockText(left) + " left";
    const bool hasTitle = columns(title_) <= std::min(widestTitle, *width_ / 2);
    std::string line = hasTitle ? title_ + "  " : "";
    const std::size_t taken = columns(line) + columns(clock) + 3;
    if (taken + narrowestBar <= *width_) {
      line += barText(1 - left / duration_, std::min(*width_ - taken, widestBar)) + "  ";
    }
    rewriteTerminalLine(line + clock);
  }

  std::string title_;
  double duration_;
  std::optional<std::size_t> width_ = terminalLineWidth();
  double nextLine_ = duration_;
};

}  // namespace

bool waitForTimer(const TimedTaskHost::Started& started, bool isShown) {
  constexpr TimeInterval tick = 0.25;
  Environment& environment = Environment::current();
  TimedTaskManager& manager = TimedTaskManager::shared();
  const double duration = started.run.end.timeIntervalSince(started.run.start);
  const double end = environment.mediaTime() + duration;
  Countdown countdown(terminalText(started.task->title()), duration);
  bool hasEnded = false;
  const auto look = [&] {
    const auto entry = manager.entry(started.run.taskIdentifier);
    if (entry && entry->entryId == started.run.entryId) {
      if (isShown) countdown.show(std::max(end - environment.mediaTime(), 0.0));
      return;
    }
    hasEnded = true;
    environment.mainLoop().stop();
  };
  const auto token = NSNotificationCenter::defaultCenter().addObserver(
      TimedTaskLiveActivityManager::activitiesChanged, [&](const auto&) { look(); });
  const auto ticks = NSTimer::scheduled(tick, true, [&] {
    // The clock may have been set, or the machine asleep.
    if (Date::now() >= started.run.end) manager.processCurrentTimers();
    look();
  });
  look();
  environment.mainLoop().run();
  if (isShown) countdown.end();
  return hasEnded;
}

}  // namespace velloro
