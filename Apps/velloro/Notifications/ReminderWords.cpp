#include "velloro/Notifications/ReminderWords.h"

#include "Foundation/Process/Terminal.h"
#include "Foundation/Text/Locale.h"
#include "Notifications/IndividualReminder.h"
#include "Tasks/Rows/TaskEntity.h"
#include "VelloroCore/Titles/FormatManager.h"
#include "velloro/Output/Output.h"

#include <algorithm>

namespace velloro {
namespace {

using Message = IndividualReminder::Message;

std::string shown(const LocalizedArgument& argument) {
  if (const auto* text = std::get_if<std::string>(&argument)) return *text;
  const auto* integer = std::get_if<std::int64_t>(&argument);
  const double number = integer ? static_cast<double>(*integer) : std::get<double>(argument);
  return FormatManager::shared(Locale::current()).integerFormatter.string(number);
}

PropertyList shown(const IndividualReminder::Parameter& parameter) {
  using Type = IndividualReminder::ParameterType;
  if (parameter.type != Type::quantityComplete && parameter.type != Type::quantityTarget) {
    return shown(parameter.value);
  }
  return PropertyList::Dictionary{{"main", shown(parameter.value)},
                                  {"bracket", shown(parameter.inBracket)}};
}

PropertyList parametersOf(const Message& message) {
  PropertyList::Dictionary parameters;
  for (const auto& parameter : message.parameters) {
    parameters.emplace(rawValue(parameter.type), shown(parameter));
  }
  return parameters;
}

/// Why the message has no text.
std::string reasonOf(const Message& message, const ReminderFacts& facts, YYYYMMDD day) {
  const TaskFrequencyPeriod& period = facts.period.period;
  if (!message.string) {
    return "no words for a " + PeriodStretch::of(period).type + " that ends " +
           (period.finishDate == day ? "on that day" : "on another day");
  }
  if (!period.contains(facts.today)) return "amounts are known in the current period alone";
  return "the task has no amount";
}

}  // namespace

ReminderWords ReminderWords::of(const TaskEntity& task, YYYYMMDD day, Date now,
                                FunctionRef<std::uint64_t()> random) {
  const auto snapshot = TaskSnapshot::of(task, now);
  const DatedPeriod period = snapshot.datedPeriod(day);
  const IndividualReminder reminder(snapshot, period, day);
  ReminderWords words{.task = task.uniqueId().stringValue(),
                      .period = PeriodStretch::of(period.period),
                      .motivations = {},
                      .picked = {}};
  for (const auto kind : pickOrder(velloro::motivations(reminder.facts()), random)) {
    const Message message = reminder.message(kind);
    Motivation motivation{.kind = std::string(rawValue(kind)),
                          .parameters = parametersOf(message),
                          .text = message.text};
    if (message.string) {
      motivation.stringKey = message.string->stringKey;
      motivation.bracketStringKey = message.string->bracketStringKey;
    }
    if (!message.text) motivation.why = reasonOf(message, reminder.facts(), day);
    if (message.text && !words.picked) words.picked = motivation.kind;
    words.motivations.push_back(std::move(motivation));
  }
  return words;
}

std::string ReminderWords::text() const {
  std::size_t width = 0;
  for (const Motivation& each : motivations) width = std::max(width, each.kind.size());
  std::string lines;
  for (const Motivation& each : motivations) {
    lines += each.kind == picked ? "→ " : "  ";
    lines += padded(each.kind, width + 2);
    lines += each.text ? terminalText(*each.text) : "(" + each.why.value_or("") + ")";
    lines += "\n";
  }
  return lines;
}

}  // namespace velloro
