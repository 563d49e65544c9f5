#pragma once

#include "Agent/AgentPlan.h"
#include "Agent/AgentRecord.h"
#include "Agent/AgentVoice.h"
#include "Agent/QuietTime.h"
#include "Foundation/Dispatch/NSNotificationCenter.h"
#include "Foundation/Dispatch/NSTimer.h"
#include "Host/HostStore.h"
#include "Host/TimedTaskHost.h"
#include "TimedTasks/CalendarDayWatcher.h"
#include "UserNotifications/UNUserNotificationCenter.h"

#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velloro {

/// The application's part in reminders while nobody looks at it: it delivers what is due, shows it
/// by a voice, withdraws what is no longer needed, writes what is answered, and plans again on a
/// new day.
///
/// All of it is one comparison (`AgentPlan`): of what the centre has delivered and the store says
/// of the tasks with what is seen. Whatever happens leads to that comparison, so an event that is
/// lost, or told twice, changes nothing. On the main thread; whoever learns of an event calls the
/// function of its name.
class Agent final : public UNUserNotificationCenterDelegate,
                    public std::enable_shared_from_this<Agent> {
 public:
  struct Options {
    std::optional<QuietHours> quietHours = {};
    /// Opens a link. \param token For the program that is started.
    std::function<void(const std::string& url, const std::string& token)> open = {};
  };

  /// Seconds after the machine has been woken, or the clock was set, until something is shown.
  static constexpr TimeInterval settleTime = 3;
  /// Seconds after a change by another process until its plan is made, if that has not done so.
  static constexpr TimeInterval replanDelay = 1;

  /// \param store, voice Outlive it.
  [[nodiscard]] static std::shared_ptr<Agent> make(const HostStore& store, AgentVoice& voice,
                                                   Options options);
  ~Agent() override;

  /// Takes what came due out of the centre, plans everything again, and begins to show.
  void start();
  /// Withdraws what is seen, after what is under way; it stays delivered, and is shown again by the
  /// next agent.
  void endSoon(Block then);

  void centreDidChange();
  void settingsDidChange();
  void clockWasSet();
  void zoneDidChange();
  void machineWillSleep() { isAsleep_ = true; }
  void machineDidWake();
  void minute();

  /// What is open, and not answered.
  [[nodiscard]] const std::map<std::string, std::string>& visible() const { return visible_; }

  void willPresent(const UNNotification& notification) override;
  void badgeDidChange(std::int64_t) override {}

  /// Where the record of an agent lies.
  [[nodiscard]] static std::filesystem::path recordFile();

 private:
  using Work = std::function<void()>;

  Agent(const HostStore& store, AgentVoice& voice, Options options);

  /// Runs the work after what is under way: planning runs the main loop, from which more comes.
  void perform(Work work);
  void end();
  void compareSoon();
  void compare();
  void takeDue();
  void rebuild();
  void bringUpToDate();
  void watchDays();
  void storeDidChange(const Notification& merged);
  void closeLeftovers();
  [[nodiscard]] bool isHeld(Date now);
  void settle();

  [[nodiscard]] std::vector<OpenReminder> delivered();
  [[nodiscard]] bool isNeeded(const OpenReminder& reminder, Date now) const;
  /// With the text and the image of the task as it is now.
  [[nodiscard]] OpenReminder present(const OpenReminder& reminder, Date now) const;
  void apply(const AgentPlan& plan, Date now);
  void show(const OpenReminder& reminder, bool isQuiet, Date now);
  void showSummary(const AgentPlan& plan, Date now);
  void renewVisible(Date now);
  void writeRecord();

  void answered(const VoiceAnswer& answer);
  void acted(const OpenReminder& reminder, const VoiceAnswer& answer);
  void log(const OpenReminder& reminder, std::optional<NotificationAction> action,
           std::optional<double> amount);
  void snooze(const OpenReminder& reminder, const std::string& action);
  void openLink(const OpenReminder& reminder, const std::string& token) const;
  void finish(const OpenReminder& reminder);
  void dismissed(const std::string& key);
  void gone(const std::string& key, AgentRecord::State state);

  const HostStore& store_;
  AgentVoice& voice_;
  const Options options_;
  UNUserNotificationCenter center_;
  AgentRecord record_, writtenRecord_;
  std::map<std::string, std::string> visible_;  ///< The occurrence by its key.
  std::map<std::string, OpenReminder> shown_;   ///< By its key, as it was last shown.
  std::vector<OpenReminder> summary_;           ///< As it was last shown.
  std::string server_;                          ///< Whose identifiers the record has.
  std::deque<Work> waiting_;
  bool isBusy_ = false;
  bool isComparing_ = false;
  bool isAsleep_ = false;
  bool hasEnded_ = false;
  std::optional<Date> heldUntil_;
  double settledAt_ = 0;  ///< Media time.
  NSTimer settleTimer_, replanTimer_, laterLook_;
  std::shared_ptr<TimedTaskHost> timers_;
  CalendarDayWatcher days_;
  NSNotificationCenter::Token merges_;
};

}  // namespace velloro
