#include "Notifications/IndividualReminder.h"

#include "Foundation/Process/Environment.h"
#include "OxKit/Localization.h"
#include "OxLog/Log.h"
#include "Tasks/Status/StoredTaskStatus.h"
#include "VelloroCore/Titles/FormatManager.h"
#include "VelloroCore/Wording/ReminderWordingKeys.h"

#include <algorithm>
#include <utility>

namespace velloro {
namespace {

using Kind = NotificationIndividualReminder;
using Type = NotificationReminderString::ParameterType;

/// What is known of the longer period in which days are counted, for reminders of one of its days.
void addCount(ReminderFacts& facts, const TaskSnapshot& task) {
  const auto counting = periodTypeForCompletionCountCalculation(facts.frequency.dayMode);
  const auto& [date, period] = facts.period;
  if (counting == TaskFrequencyPeriodType::day || counting == period.periodType) return;
  const auto first = firstDate(counting, date, facts.firstDayOfWeek, facts.timeZone);
  const auto last = lastDate(counting, date, facts.firstDayOfWeek, facts.timeZone);
  facts.createdDay = createdDay(task);
  facts.completions = numUniqueCompletions(task, first, last).count;
}

ReminderFacts factsOf(const TaskSnapshot& task, const DatedPeriod& period,
                      const CompletionStatus& status) {
  const TaskStanding& standing = task.standing;
  const auto skipMode = status.status.skipMode;
  ReminderFacts facts{.isNegative = standing.isNegative,
                      .shareStatus = task.shareStatus,
                      .frequency = standing.frequency,
                      .hasAutomaticType = standing.automaticTaskType.has_value(),
                      .firstDayOfWeek = standing.firstDayOfWeek,
                      .timeZone = standing.timeZone,
                      .today = standing.today(),
                      .period = period,
                      .streak = standing.streak(),
                      .willSkip = isSkip(skipMode ? *skipMode : willSkip(task, period.period)),
                      .partialCompletions = status.progress().numCompletions(standing.now),
                      .expectedPartialCompletions = status.progress().expectedCompletions()};
  addCount(facts, task);
  return facts;
}

/// The unit of the amounts of a progress; absent where it is not measured in an amount.
std::optional<TypeUnit> unitOf(const TaskProgress& progress, const AutomaticTaskType& type) {
  if (const auto* timer = progress.as<TaskProgressTimer>())
    return automaticTaskTypeUnit(timer->unit);
  return progress.as<TaskProgressContinuous>() != nullptr ? type.unit : std::nullopt;
}

/// The values that `parameters` name, in that order. Absent when one of them has none.
template <typename Parameters>
bool append(std::vector<LocalizedArgument>& arguments, const Parameters& parameters,
            const std::vector<IndividualReminder::Parameter>& values,
            LocalizedArgument IndividualReminder::Parameter::*column) {
  for (const std::optional<Type>& parameter : parameters) {
    if (!parameter) continue;
    const auto found = std::ranges::find(values, *parameter, &IndividualReminder::Parameter::type);
    if (found == values.end()) return false;
    arguments.push_back((*found).*column);
  }
  return true;
}

std::optional<std::string> textOf(const NotificationReminderString& string,
                                  const std::vector<IndividualReminder::Parameter>& values) {
  using Parameter = IndividualReminder::Parameter;
  std::vector<LocalizedArgument> arguments;
  if (!append(arguments, string.parameters(), values, &Parameter::value)) return std::nullopt;
  std::string text = localized(string.stringKey, arguments);
  if (!string.bracketStringKey) return text;
  arguments = {std::move(text)};
  if (!append(arguments, string.bracketParameters(), values, &Parameter::inBracket)) {
    return std::nullopt;
  }
  return localized(*string.bracketStringKey, arguments);
}

}  // namespace

std::optional<std::string> alertBodyForLocalIndividualNotification(const TaskEntity& task,
                                                                   const DatedPeriod& period,
                                                                   YYYYMMDD triggerDate) {
  return alertBodyForLocalIndividualNotification(
      task, period, triggerDate, [] { return Environment::current().random(); }, Date::now());
}

std::optional<std::string> alertBodyForLocalIndividualNotification(
    const TaskEntity& task, const DatedPeriod& period, YYYYMMDD triggerDate,
    FunctionRef<std::uint64_t()> random, Date now) {
  const auto snapshot = TaskSnapshot::of(task, now);
  return IndividualReminder(snapshot, period, triggerDate).pickedText(random);
}

IndividualReminder::IndividualReminder(const TaskSnapshot& task, const DatedPeriod& period,
                                       YYYYMMDD triggerDate)
    : IndividualReminder(task, period, triggerDate, streakedCompletionStatus(task, period.period)) {
}

IndividualReminder::IndividualReminder(const TaskSnapshot& task, const DatedPeriod& period,
                                       YYYYMMDD triggerDate, StreakedCompletionStatus status)
    : task_(task),
      triggerDate_(triggerDate),
      endRelation_(
          periodEndRelation(period.period.finishDate, triggerDate, task.standing.timeZone)),
      status_(std::move(status)),
      facts_(factsOf(task_, period, status_.completionStatus)) {
  // Of a period to come nothing is known yet, and an amount is that of a type.
  if (!period.period.contains(facts_.today) || !facts_.hasAutomaticType) return;
  quantity_ = displayTitle(task_, status_.completionStatus.progress()).quantity;
}

IndividualReminder::Message IndividualReminder::message(Kind kind, Options options) const {
  Message message{.string =
                      NotificationReminderString::from(kind, facts_.period.period.periodType,
                                                       endRelation_, options.includeTaskName)};
  if (!message.string) return message;
  if (options.showStreakBracket) message.string = message.string->withStreakBracket(status_.streak);
  addParameters(message);
  message.text = textOf(*message.string, message.parameters);
  return message;
}

std::optional<std::string> IndividualReminder::pickedText(
    FunctionRef<std::uint64_t()> random) const {
  for (const Kind kind : pickOrder(motivations(facts_), random)) {
    if (auto text = message(kind).text) return text;
    Log::notifications.error(
        [&] { return "Notification string not created: " + std::string(rawValue(kind)); });
  }
  return std::nullopt;
}

void IndividualReminder::addParameters(Message& message) const {
  for (const Type type : allCases<Type>()) {
    if (!message.string->has(type)) continue;
    const Value shown = value(type, *message.string, Context::notificationWithQuantity);
    const bool isAmount = type == Type::quantityComplete || type == Type::quantityTarget;
    const Value inBracket =
        isAmount ? value(type, *message.string, Context::notificationBracket) : shown;
    if (shown && inBracket) message.parameters.push_back({type, *shown, *inBracket});
  }
}

/// Numbers stay numbers: the texts count and write them.
IndividualReminder::Value IndividualReminder::value(ParameterType parameter,
                                                    const NotificationReminderString& string,
                                                    Context context) const {
  const TaskProgress& progress = status_.completionStatus.progress();
  switch (parameter) {
    using enum NotificationReminderString::ParameterType;
    case taskTitle:
      return title(string.has(quantityComplete));
    case streakAtDate:
      return status_.streak.current;
    case bestStreakAtDate:
      return status_.streak.best;
    case completionsComplete:
      return facts_.completions;
    case completionsTarget:
      return facts_.frequency.numCompletions;
    case partialCompletionsComplete:
      return facts_.partialCompletions;
    case partialCompletionsTarget:
      return facts_.expectedPartialCompletions;
    case quantityComplete:
      return amount(progress.currentValue(task_.standing.now), context);
    case quantityTarget:
      return amount(progress.targetValue(), context);
    case ParameterType::periodEnd:
      return this->periodEnd();
  }
  return std::nullopt;
}

IndividualReminder::Value IndividualReminder::title(bool withoutQuantity) const {
  const TaskFrequencyPeriod period = task_.datedPeriod(triggerDate_).period;
  TaskDisplayTitle title = displayTitle(task_, task_.standing.progress(period));
  if (withoutQuantity) return title.localizedTitle(Context::notificationWithoutQuantity, locale_);
  if (quantity_) title.quantity = quantity_;
  return title.localizedTitle(Context::notificationWithQuantity, locale_);
}

/// In the unit of the title, which counts a timer in seconds.
IndividualReminder::Value IndividualReminder::amount(double inUnitOfProgress,
                                                     Context context) const {
  const auto& type = task_.standing.automaticTaskType;
  if (!quantity_ || !type || !type->quantityCanCountdown()) return std::nullopt;
  const auto unit = unitOf(status_.completionStatus.progress(), *type);
  const auto converted =
      unit ? convert(inUnitOfProgress, *unit, quantity_->quantity.unit) : std::nullopt;
  if (!converted) return std::nullopt;
  TaskDisplayTitle::Quantity quantity = *quantity_;
  quantity.quantity.quantity = *converted;
  return quantity.localizedFormatted(context, locale_);
}

IndividualReminder::Value IndividualReminder::periodEnd() const {
  const auto nameOf = [&](const LocalizedKey& day) { return locale_.lowercased(localized(day)); };
  const YYYYMMDD lastDay = facts_.period.period.finishDate;
  switch (endRelation_) {
    case PeriodEndRelation::past:
      break;
    case PeriodEndRelation::yesterday:
      return nameOf(reminder_wording::yesterday);
    case PeriodEndRelation::today:
      return nameOf(reminder_wording::today);
    case PeriodEndRelation::tomorrow:
      return nameOf(reminder_wording::tomorrow);
    case PeriodEndRelation::withinWeek:
      return localizedTitle(lastDay.dayOfWeek(task_.standing.timeZone), locale_);
    case PeriodEndRelation::later:
      return FormatManager::shared(locale_).dateFormatterMedium.string(
          lastDay.dateAt(HHMMSS::midnight, HHMMSS::midnight, task_.standing.timeZone),
          task_.standing.timeZone);
  }
  return std::nullopt;
}

}  // namespace velloro
