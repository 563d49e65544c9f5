#pragma once

#include "Foundation/Text/Locale.h"
#include "Foundation/Text/LocalizedStrings.h"
#include "OxKit/Platform.h"
#include "Tasks/Status/TaskSnapshot.h"
#include "VelloroCore/Titles/TaskDisplayTitle.h"
#include "VelloroCore/Wording/NotificationReminderString.h"
#include "VelloroCore/Wording/ReminderMotivations.h"

#include <optional>
#include <string>
#include <vector>

namespace velloro {

/// The message of an automatic reminder of the task, on a day and in the period that holds it: one
/// of the things that there are to say, picked at random. Absent where nothing can be said.
///
///     alertBodyForLocalIndividualNotification(*task, task->currentPeriod(), {2024, 3, 7});
///     // For example "Extend your best streak today (streak: 9, best: 9)"
[[nodiscard]] std::optional<std::string> alertBodyForLocalIndividualNotification(
    const TaskEntity& task, const DatedPeriod& period, YYYYMMDD triggerDate);
/// \param random 64 random bits, by which it is picked.
[[nodiscard]] std::optional<std::string> alertBodyForLocalIndividualNotification(
    const TaskEntity& task, const DatedPeriod& period, YYYYMMDD triggerDate,
    FunctionRef<std::uint64_t()> random, Date now);

/// What there is to say about a task on the day of a reminder. To be used on the queue of the task,
/// and no longer than its snapshot holds.
///
///     const auto snapshot = TaskSnapshot::of(*task, now);
///     const IndividualReminder reminder(snapshot, task->currentPeriod(), {2024, 3, 7});
///     reminder.message(NotificationIndividualReminder::reminder).text;    // "A little reminder"
class IndividualReminder {
 public:
  using Kind = NotificationIndividualReminder;
  using ParameterType = NotificationReminderString::ParameterType;

  struct Options {
    bool includeTaskName = false;  ///< For a message that no title stands above.
    bool showStreakBracket = true;
  };

  /// What goes into the texts for a parameter.
  struct Parameter {
    ParameterType type;
    LocalizedArgument value;
    LocalizedArgument inBracket;  ///< An amount has no unit there.
  };

  struct Message {
    /// Absent where the kind has no words for such a period.
    std::optional<NotificationReminderString> string = {};
    /// Those that the task has a value for.
    std::vector<Parameter> parameters = {};
    /// Absent without the string, or without one of its parameters.
    std::optional<std::string> text = {};
  };

  /// \param task Must outlive this.
  IndividualReminder(const TaskSnapshot& task, const DatedPeriod& period, YYYYMMDD triggerDate);
  IndividualReminder(TaskSnapshot&&, const DatedPeriod&, YYYYMMDD) = delete;
  /// \param status That of the task in the period, for a caller that has it.
  IndividualReminder(const TaskSnapshot& task, const DatedPeriod& period, YYYYMMDD triggerDate,
                     StreakedCompletionStatus status);

  [[nodiscard]] const ReminderFacts& facts() const { return facts_; }
  [[nodiscard]] Message message(Kind kind, Options options) const;
  [[nodiscard]] Message message(Kind kind) const { return message(kind, {}); }
  /// Of the kinds that apply, in an order left to chance, the first text that there is.
  ///
  /// \param random 64 random bits, by which it is picked.
  [[nodiscard]] std::optional<std::string> pickedText(FunctionRef<std::uint64_t()> random) const;

 private:
  using Context = TaskDisplayTitle::Context;
  using Value = std::optional<LocalizedArgument>;

  void addParameters(Message& message) const;
  [[nodiscard]] Value value(ParameterType parameter, const NotificationReminderString& string,
                            Context context) const;
  [[nodiscard]] Value title(bool withoutQuantity) const;
  [[nodiscard]] Value amount(double inUnitOfProgress, Context context) const;
  [[nodiscard]] Value periodEnd() const;

  const TaskSnapshot& task_;
  YYYYMMDD triggerDate_;
  Locale locale_ = Locale::current();
  PeriodEndRelation endRelation_;
  StreakedCompletionStatus status_;
  ReminderFacts facts_;
  std::optional<TaskDisplayTitle::Quantity> quantity_;  ///< Of the period's title.
};

}  // namespace velloro
