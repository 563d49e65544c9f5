#include "Agent/ReminderAnswer.h"

#include "Foundation/Text/String.h"
#include "Host/LogWriter.h"
#include "Host/PeriodCloser.h"
#include "Notifications/Planning/TaskPlan.h"
#include "Tasks/Log/StoredEntries.h"
#include "Tasks/Requests/TaskLogFetchRequest.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Status/StoredTaskStatus.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace velloro {
namespace {

std::optional<TaskLogEntryType> typeOf(ReminderAnswer answer) {
  // The next tap is a step towards what the task counts: its completions, or its misses.
  return answer == ReminderAnswer::skip ? std::optional(TaskLogEntryType::skippedManuallyFull)
                                        : std::nullopt;
}

bool isAnswered(const TaskEntity& task, const UniqueID& id) {
  return !entriesOrNone(task, {.uniqueIds = {id}}).empty();
}

/// Of a day whose period is over, everything but what was done by hand can still be said.
bool isOpenToAnswer(const TaskEntity& task, YYYYMMDD day, Date now) {
  const auto rules = logRules(task, now);
  const auto period = rules.period(day);
  if (period == rules.period(rules.today())) return needsReminder(task, day, now);
  const auto entries =
      entriesOrNone(task, {.minDate = period.startDate, .maxDate = period.finishDate});
  return std::ranges::none_of(entries, [](const auto& entry) {
    const auto type = entry->value(TaskLogEntryEntity::entryType);
    return type && TaskLogEntryTypes::allManualTypes.contains(*type) && !isPartial(*type);
  });
}

}  // namespace

AnsweredReminder answerReminder(const HostStore& store, const OpenReminder& reminder,
                                ReminderAnswer answer, std::optional<double> amount, Date now) {
  return store.write([&]() -> AnsweredReminder {
    const auto task = taskOf(store, reminder);
    if (task == nullptr) {
      throw HostError(inQuotes(reminder.content().title) + ": its task is no longer there");
    }
    PeriodCloser(store.context(), now).close(*task);
    AnsweredReminder answered{.title = task->title()};
    const UniqueID id = answerEntryID(reminder);
    const YYYYMMDD day = std::min(reminder.day, logRules(*task, now).today());
    if (isAnswered(*task, id) || !isOpenToAnswer(*task, day, now)) return answered;
    answered.entry = addLogEntry(
        *task, {.type = typeOf(answer), .date = day, .at = now, .amount = amount, .id = id}, now);
    updateDerivedData(*task, now);
    return answered;
  });
}

UniqueID answerEntryID(const OpenReminder& reminder) {
  // FNV-1a, over both halves with an offset of their own: the same in every process and version.
  const auto hash = [&](std::uint64_t value) {
    for (const char c : reminder.occurrence) {
      value = (value ^ static_cast<std::uint8_t>(c)) * 0x100000001B3;
    }
    return value;
  };
  UUID::Bytes bytes{};
  const std::uint64_t halves[] = {hash(0xCBF29CE484222325), hash(0x9AE16A3B2F90404F)};
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    bytes[i] = static_cast<std::uint8_t>(halves[i / 8] >> (8 * (i % 8)));
  }
  bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x80);  // version 8: a form of our own
  bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);
  return {UUID(bytes)};
}

bool needsReminder(const TaskEntity& task, YYYYMMDD day, Date now) {
  const auto snapshot = TaskSnapshot::of(task, now);
  const auto status =
      streakedCompletionStatus(snapshot, snapshot.datedPeriod(day).period).completionStatus.status;
  return !whyNoReminders(snapshot.status, snapshot.standing.automaticTaskType, status);
}

std::shared_ptr<TaskEntity> taskOf(const HostStore& store, const OpenReminder& reminder) {
  return reminder.data ? store.task(reminder.data->task.taskId) : nullptr;
}

std::optional<double> amountIn(std::string_view text) {
  constexpr std::size_t longest = 20;
  const auto first = text.find_first_not_of(" \t\n");
  if (first == std::string_view::npos) return std::nullopt;
  std::string number(text.substr(first, text.find_last_not_of(" \t\n") - first + 1));
  if (number.size() > longest) return std::nullopt;
  std::ranges::replace(number, ',', '.');
  double amount = 0;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), amount,
                                            std::chars_format::fixed);
  const bool isWhole = error == std::errc() && end == number.data() + number.size();
  return isWhole && std::isfinite(amount) && amount > 0 ? std::optional(amount) : std::nullopt;
}

}  // namespace velloro
