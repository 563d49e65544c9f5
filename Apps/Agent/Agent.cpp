#include "Agent/Agent.h"

#include "Agent/ReminderAnswer.h"
#include "Foundation/Process/Environment.h"
#include "Foundation/Text/String.h"
#include "Host/NotificationUpdates.h"
#include "Host/Snooze.h"
#include "Notifications/TaskNotifications.h"
#include "OxLog/Log.h"
#include "Settings/Settings.h"
#include "Tasks/Rows/TaskEntity.h"
#include "TimedTasks/TimedTaskManager.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <set>

namespace velloro {
namespace {

using State = AgentRecord::State;

/// The rings of a plan are drawn for a phone; a desktop shows them larger.
constexpr double imageDiameter = 42;

double imageScale() {
  const auto& environment = Environment::current();
  const bool isFine = environment.variable("GDK_SCALE") >= "2";
  constexpr double finer = 128;
  return (isFine ? finer : static_cast<double>(notificationImageSide)) / imageDiameter;
}

/// The tasks that rows of a merge belong to.
std::set<std::shared_ptr<TaskEntity>> tasksOf(const Notification& merged,
                                              NSManagedObjectContext& context) {
  std::set<std::shared_ptr<TaskEntity>> tasks;
  for (const char* key : {NSInsertedObjectIDsKey, NSUpdatedObjectIDsKey}) {
    const auto* ids = merged.value<std::vector<NSManagedObjectID>>(key);
    if (ids == nullptr) continue;
    for (const NSManagedObjectID id : *ids) {
      const auto object = context.objectWithID(id);
      if (auto task = std::dynamic_pointer_cast<TaskEntity>(object)) tasks.insert(task);
      for (const NSRelationshipDescription& relation : object->entity().relationships()) {
        if (relation.isToMany || relation.destinationName != TaskEntity::entityName()) continue;
        for (const auto& owner : object->members(relation)) {
          tasks.insert(std::static_pointer_cast<TaskEntity>(owner));
        }
      }
    }
  }
  return tasks;
}

/// Of "….Snooze-600": 600.
std::optional<TimeInterval> snoozeLength(const std::string& action) {
  const auto at = action.rfind('-');
  if (at == std::string::npos) return std::nullopt;
  int seconds = 0;
  const auto [end, error] =
      std::from_chars(action.data() + at + 1, action.data() + action.size(), seconds);
  return error == std::errc() && seconds > 0 ? std::optional<TimeInterval>(seconds) : std::nullopt;
}

bool looksTheSame(const OpenReminder& one, const OpenReminder& other) {
  return one.content().title == other.content().title &&
         one.content().subtitle == other.content().subtitle &&
         one.content().body == other.content().body &&
         one.content().attachments == other.content().attachments;
}

}  // namespace

std::shared_ptr<Agent> Agent::make(const HostStore& store, AgentVoice& voice, Options options) {
  return std::shared_ptr<Agent>(new Agent(store, voice, std::move(options)));
}

Agent::Agent(const HostStore& store, AgentVoice& voice, Options options)
    : store_(store),
      voice_(voice),
      options_(std::move(options)),
      center_(UNUserNotificationCenter::currentNotificationCenter()),
      timers_(std::make_shared<TimedTaskHost>(store, /*runsTimers=*/true)),
      days_([this] {
        perform([this] { rebuild(); });
        perform([this] { compare(); });
      }) {}

Agent::~Agent() = default;

std::filesystem::path Agent::recordFile() {
  return notificationFolder() / "agent.json";
}

void Agent::start() {
  record_ = writtenRecord_ = AgentRecord::read(recordFile());
  voice_.setHandlers({.answered =
                          [this](const VoiceAnswer& answer) {
                            // Not within the voice: planning runs the main loop, and more may come
                            // from it.
                            DispatchQueue::main().async([weak = weak_from_this(), answer] {
                              const auto self = weak.lock();
                              if (self == nullptr) return;
                              self->perform(
                                  [agent = self.get(), answer] { agent->answered(answer); });
                            });
                          },
                      .changed =
                          [this] {
                            if (!voice_.isReady()) visible_.clear();
                            compareSoon();
                          },
                      .shown =
                          [this](const std::string& key, std::uint32_t id) {
                            const auto shown = visible_.find(key);
                            if (shown == visible_.end()) return;
                            if (key != AgentPlan::summaryKey)
                              record_.told[shown->second].serverId = id;
                            writeRecord();
                          }});
  TimedTaskManager::shared().delegate = timers_;
  merges_ = NSNotificationCenter::defaultCenter().addObserver(
      NSManagedObjectContext::didMergeChangesObjectIDsNotification, &store_.context(), std::nullopt,
      [this](const Notification& merged) { storeDidChange(merged); });
  perform([this] { rebuild(); });
  perform([this] { compare(); });
}

void Agent::endSoon(Block then) {
  auto last = std::make_shared<Block>(std::move(then));
  perform([this, last] {
    end();
    (*last)();
  });
}

void Agent::end() {
  hasEnded_ = true;
  center_.setDelegate({});
  merges_.remove();
  TimedTaskManager::shared().delegate.reset();
  voice_.withdrawAll();
  voice_.finish();
  writeRecord();
  center_.flush();
}

void Agent::perform(Work work) {
  waiting_.push_back(std::move(work));
  if (std::exchange(isBusy_, true)) return;
  while (!waiting_.empty()) {
    const Work next = std::move(waiting_.front());
    waiting_.pop_front();
    try {
      if (!hasEnded_) next();
    } catch (const std::exception& error) {
      Log::notifications.error(error);
      Environment::current().report(error.what());
    }
  }
  isBusy_ = false;
}

void Agent::compareSoon() {
  if (std::exchange(isComparing_, true)) return;
  DispatchQueue::main().async([weak = weak_from_this()] {
    const auto self = weak.lock();
    if (self == nullptr) return;
    self->isComparing_ = false;
    self->perform([agent = self.get()] { agent->compare(); });
  });
}

void Agent::willPresent(const UNNotification&) {
  compareSoon();
}

/// A file is told of before a commit to it can be read: what is missed now is seen a moment later.
void Agent::centreDidChange() {
  constexpr TimeInterval moment = 0.05;
  takeDue();
  compareSoon();
  laterLook_ = NSTimer::scheduled(moment, false, [this] {
    takeDue();
    compareSoon();
  });
}

void Agent::settingsDidChange() {
  compareSoon();
}

/// What is due is delivered, also what another process has added.
void Agent::takeDue() {
  if (!hasEnded_) center_.setDelegate(weak_from_this());
}

/// Whatever is due is taken first: a rebuild clears all that is pending.
void Agent::rebuild() {
  takeDue();
  center_.flush();
  NotificationUpdates::shared().rebuildAll();
  TimedTaskManager::shared().processCurrentTimers();
  watchDays();
}

/// What a plan depends on may have changed, although nothing was written.
void Agent::bringUpToDate() {
  takeDue();
  center_.flush();
  NotificationUpdates::shared().noteSettings();
  NotificationUpdates::shared().bringUpToDate();
  takeDue();
}

void Agent::watchDays() {
  days_.monitor(CalendarDayWatcher::DayStarts::of(store_.tasks(activeStatuses),
                                                  Settings::shared().startOfDay()));
}

void Agent::storeDidChange(const Notification& merged) {
  for (const auto& task : tasksOf(merged, store_.context())) {
    NotificationUpdates::shared().note(task);
  }
  compareSoon();
  // The process that has made the change usually plans it, too; an extension does not.
  if (replanTimer_.isValid()) return;
  replanTimer_ = NSTimer::scheduled(replanDelay, false, [this] {
    perform([this] {
      TimedTaskManager::shared().processCurrentTimers();
      bringUpToDate();
      watchDays();
      compare();
    });
  });
}

void Agent::clockWasSet() {
  settle();
  NSNotificationCenter::defaultCenter().post({.name = CalendarDayWatcher::clockDidChange});
  perform([this] {
    TimedTaskManager::shared().processCurrentTimers();
    bringUpToDate();
  });
}

void Agent::zoneDidChange() {
  NSNotificationCenter::defaultCenter().post({.name = CalendarDayWatcher::clockDidChange});
  perform([this] {
    bringUpToDate();
    compare();
  });
}

void Agent::machineDidWake() {
  isAsleep_ = false;
  clockWasSet();
}

/// The network, the desktop and the other programs wake up, too.
void Agent::settle() {
  settledAt_ = Environment::current().mediaTime() + settleTime;
  settleTimer_ = NSTimer::scheduled(settleTime, false, [this] {
    takeDue();
    compareSoon();
  });
}

void Agent::minute() {
  const Date now = Date::now();
  if (voice_.staysVisible()) {
    const bool hasHeld = std::ranges::any_of(
        record_.told, [](const auto& told) { return told.second.state == State::held; });
    if (hasHeld || !visible_.empty()) voice_.lookAgain();
    if (hasHeld) compareSoon();
  }
  takeDue();
  if (heldUntil_ && *heldUntil_ <= now) compareSoon();
}

bool Agent::isHeld(Date now) {
  heldUntil_ = quietUntil(options_.quietHours, now, TimeZone::current());
  return heldUntil_ || isAsleep_ || !voice_.isReady() ||
         Environment::current().mediaTime() + 1e-6 < settledAt_;
}

std::vector<OpenReminder> Agent::delivered() {
  std::vector<OpenReminder> open;
  center_.getDeliveredNotificationsWithCompletionHandler(
      [&](const std::vector<UNNotification>& delivered) {
        for (const UNNotification& each : delivered) open.push_back(OpenReminder::of(each));
      });
  center_.flush();
  return open;
}

bool Agent::isNeeded(const OpenReminder& reminder, Date now) const {
  if (!reminder.data) return true;  // its text is all that there is
  const auto task = taskOf(store_, reminder);
  if (task == nullptr) return false;
  const auto rules = logRules(*task, now);
  const auto period = rules.period(reminder.day);
  if (period.endsBefore(rules.today())) return false;
  return needsReminder(*task, reminder.day, now);
}

OpenReminder Agent::present(const OpenReminder& reminder, Date now) const {
  if (!reminder.isReminder || !reminder.data) return reminder;
  const auto task = taskOf(store_, reminder);
  if (task == nullptr) return reminder;
  const auto notifications =
      TaskNotifications::of(*task, {.now = now, .screenScale = imageScale()});
  const std::size_t seed = std::hash<std::string>()(reminder.occurrence);
  const auto made =
      notifications.reminder(notifications.day(reminder.day),
                             {.id = {reminder.id()}, .reminderId = reminder.data->reminderId},
                             [seed] { return static_cast<std::uint64_t>(seed); });
  OpenReminder present = reminder;
  auto& content = present.notification.request.content;
  content.attachments.clear();
  if (!made) return present;
  if (made->imageUrl) {
    content.attachments = {{.identifier = reminder.id(), .url = made->imageUrl->string()}};
  }
  content.title = made->title.value_or(content.title);
  content.subtitle = made->subtitle.value_or("");
  if (made->data->task.completionStatus != reminder.data->task.completionStatus) {
    content.body = made->body.value_or("");
    present.data = made->data;
  }
  return present;
}

void Agent::compare() {
  const Date now = Date::now();
  closeLeftovers();
  const AgentPlan::Situation situation{.delivered = delivered(),
                                       .record = record_,
                                       .visible = visible_,
                                       .now = now,
                                       .isHeld = isHeld(now),
                                       .isInhibited = voice_.isInhibited(),
                                       .staysVisible = voice_.staysVisible() && voice_.isReady()};
  const auto plan = AgentPlan::of(
      situation, [&](const OpenReminder& reminder) { return isNeeded(reminder, now); });
  apply(plan, now);
  renewVisible(now);
  record_.removeOld(now);
  writeRecord();
}

void Agent::apply(const AgentPlan& plan, Date now) {
  for (const std::string& key : plan.withdrawn) {
    voice_.withdraw(key);
    visible_.erase(key);
  }
  if (!plan.settled.empty()) center_.removeDeliveredNotificationsWithIdentifiers(plan.settled);
  for (const std::string& occurrence : plan.superseded) record_.set(occurrence, State::done, now);
  for (const OpenReminder& reminder : plan.again) show(reminder, /*isQuiet=*/true, now);
  for (const OpenReminder& reminder : plan.fresh) show(reminder, /*isQuiet=*/false, now);
  if (!plan.summary.empty()) showSummary(plan, now);
}

/// What ends before it is on record as shown is shown once more: better than never.
void Agent::show(const OpenReminder& reminder, bool isQuiet, Date now) {
  const OpenReminder shown = present(reminder, now);
  const auto* told = record_.find(reminder.occurrence);
  const bool wasHeld = told != nullptr && told->state == State::held;
  visible_[reminder.key] = reminder.occurrence;
  shown_.insert_or_assign(reminder.key, shown);
  voice_.show(shown, isQuiet);
  if (!voice_.staysVisible()) visible_.erase(reminder.key);
  record_.set(reminder.occurrence, voice_.staysVisible() ? State::open : State::done, now);
  if (wasHeld) record_.told[reminder.occurrence].wasOffered = true;
}

void Agent::showSummary(const AgentPlan& plan, Date now) {
  std::vector<OpenReminder> shown;
  for (const OpenReminder& each : plan.summary) {
    shown.push_back(present(each, now));
    record_.set(each.occurrence, voice_.staysVisible() ? State::summarised : State::done, now);
  }
  summary_ = plan.summary;
  if (voice_.staysVisible()) {
    visible_[AgentPlan::summaryKey] = AgentPlan::occurrence(plan.summary);
  }
  voice_.showSummary(shown, /*isQuiet=*/!plan.isSummaryFresh);
}

/// What is seen of a task that has moved on is changed in its place.
void Agent::renewVisible(Date now) {
  for (const auto& [key, occurrence] : visible_) {
    const auto shown = shown_.find(key);
    if (shown == shown_.end() || shown->second.occurrence != occurrence) continue;
    OpenReminder renewed = present(shown->second, now);
    if (looksTheSame(renewed, shown->second)) continue;
    shown->second = std::move(renewed);
    voice_.show(shown->second, /*isQuiet=*/true);
  }
}

void Agent::writeRecord() {
  if (record_ == writtenRecord_) return;
  record_.write(recordFile());
  writtenRecord_ = record_;
}

/// Notifications of an agent that was killed can't be answered any more.
void Agent::closeLeftovers() {
  if (!voice_.isReady() || server_ == voice_.server()) return;
  const bool isTheirs = server_.empty() && record_.server == voice_.server();
  for (auto& [occurrence, told] : record_.told) {
    const auto id = static_cast<std::uint32_t>(std::exchange(told.serverId, 0));
    if (isTheirs && id != 0) voice_.closeLeftover(id);
  }
  server_ = record_.server = voice_.server();
}

void Agent::answered(const VoiceAnswer& answer) {
  using enum VoiceAnswer::Kind;
  if (answer.kind == dismissed) return this->dismissed(answer.key);
  if (answer.kind == expired) return gone(answer.key, State::done);
  if (answer.kind == unseen) return gone(answer.key, State::held);
  const auto shown = shown_.find(answer.key);
  if (shown == shown_.end()) return;
  const OpenReminder reminder = shown->second;
  try {
    acted(reminder, answer);
  } catch (const Error& error) {
    Log::notifications.error(error);
    Environment::current().report(error.localizedDescription());
    // It is not written, and so it can be answered once more.
    visible_[reminder.key] = reminder.occurrence;
    voice_.show(reminder, /*isQuiet=*/false);
  }
}

void Agent::acted(const OpenReminder& reminder, const VoiceAnswer& answer) {
  using enum NotificationAction;
  if (answer.kind == VoiceAnswer::Kind::opened) return openLink(reminder, answer.token);
  if (answer.kind == VoiceAnswer::Kind::reply) {
    const auto amount = amountIn(answer.text);
    if (!amount) throw HostError(inQuotes(answer.text) + " is no amount");
    return log(reminder, markAsDone, amount);
  }
  if (answer.text == VoiceAnswer::skipAction) return log(reminder, std::nullopt, std::nullopt);
  if (answer.text.starts_with(rawValue(snooze))) return this->snooze(reminder, answer.text);
  const auto action = fromRawValue<NotificationAction>(answer.text);
  if (action == openExternalUrl) return openLink(reminder, answer.token);
  if (action == markAsDone || action == markAsMissed) log(reminder, action, std::nullopt);
}

void Agent::log(const OpenReminder& reminder, std::optional<NotificationAction> action,
                std::optional<double> amount) {
  using enum ReminderAnswer;
  const ReminderAnswer answer = !action                                     ? skip
                                : *action == NotificationAction::markAsDone ? done
                                                                            : missed;
  answerReminder(store_, reminder, answer, amount, Date::now());
  finish(reminder);
}

void Agent::snooze(const OpenReminder& reminder, const std::string& action) {
  const Date now = Date::now();
  // A task that needs no reminder any more has none to put off.
  if (isNeeded(reminder, now)) {
    snoozeReminder(
        store_,
        [&] {
          auto task = taskOf(store_, reminder);
          if (task == nullptr) throw HostError("the task is no longer there");
          return task;
        },
        snoozeLength(action), now);
  }
  finish(reminder);
}

/// The reminder stays: a link that was opened is not done yet.
void Agent::openLink(const OpenReminder& reminder, const std::string& token) const {
  if (!reminder.data || !reminder.data->task.externalUrl || !options_.open) return;
  options_.open(*reminder.data->task.externalUrl, token);
}

/// It is answered.
void Agent::finish(const OpenReminder& reminder) {
  voice_.withdraw(reminder.key);
  visible_.erase(reminder.key);
  record_.set(reminder.occurrence, State::done, Date::now());
  writeRecord();
  center_.removeDeliveredNotificationsWithIdentifiers({reminder.id()});
  bringUpToDate();
  compare();
}

void Agent::dismissed(const std::string& key) {
  UNUserNotificationCenter::Identifiers ids;
  if (key == AgentPlan::summaryKey) {
    for (const OpenReminder& each : summary_) {
      ids.push_back(each.id());
      record_.set(each.occurrence, State::done, Date::now());
    }
    summary_.clear();
  } else if (const auto shown = shown_.find(key); shown != shown_.end()) {
    ids.push_back(shown->second.id());
  }
  center_.removeDeliveredNotificationsWithIdentifiers(ids);
  gone(key, State::done);
}

/// It is no longer seen, and stays delivered.
void Agent::gone(const std::string& key, State state) {
  const auto shown = visible_.find(key);
  if (shown == visible_.end()) return;
  const std::string occurrence = shown->second;
  visible_.erase(shown);
  if (key == AgentPlan::summaryKey) {
    for (const OpenReminder& each : summary_)
      record_.set(each.occurrence, State::done, Date::now());
  } else {
    const auto* told = record_.find(occurrence);
    const bool wasOffered = told != nullptr && told->wasOffered;
    record_.set(occurrence, wasOffered ? State::done : state, Date::now());
  }
  writeRecord();
}

}  // namespace velloro
