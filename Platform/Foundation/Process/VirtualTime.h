#pragma once

#include "Foundation/Process/MainLoop.h"
#include "Foundation/Process/MainLoopSources.h"
#include "Foundation/Process/TimedBlocks.h"
#include "Foundation/Time/Date.h"

#include <deque>
#include <mutex>
#include <thread>

namespace platform {

/// Both clocks, the main loop and the timed work of a `VirtualEnvironment`. The clocks stand still
/// but for `advance` and `run`; the thread that made the object is the main thread. The clocks are
/// read, and work is handed in, from any thread.
class VirtualTime : public MainLoop, public TimedWork {
 public:
  explicit VirtualTime(Date now) : now_(now) {}

  [[nodiscard]] Date now() const;
  [[nodiscard]] double mediaTime() const;
  /// Sets the wall clock and leaves the media clock alone.
  void setNow(Date now);

  /// Runs everything that falls due in the next `seconds`, each thing at its time.
  void advance(TimeInterval seconds);
  /// Drops what waits and whatever comes later, and waits for the background work to end.
  void close();

  void post(Block block) override;
  /// Sources proceed when they are ready at the time that a step begins; nothing waits for them.
  void watch(std::weak_ptr<MainLoopSource> source) override { sources_.add(std::move(source)); }
  [[nodiscard]] bool isCurrent() const override;
  void run() override;
  void stop() override;

  Token schedule(double mediaTime, Block block) override;
  void cancel(Token token) override;

 private:
  bool step(double end);
  void awaitBackgroundWork();
  Block take(double end);

  const std::thread::id mainThread_ = std::this_thread::get_id();
  MainLoopSources sources_;
  mutable std::mutex mutex_;
  double mediaTime_ = 1000;
  Date now_;                      // the wall clock's reading …
  double nowSetAt_ = mediaTime_;  // … at this media time: so no step adds a rounding error
  std::deque<Block> posted_;
  TimedBlocks timed_;
  bool stopping_ = false;
  bool closed_ = false;
};

}  // namespace platform
