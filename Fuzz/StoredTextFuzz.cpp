#include "Foundation/Coding/JSON.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Fuzz.h"
#include "OxCheckableTasks/Icons/IconDisplayRepresentation.h"
#include "VelloroCore/Appearance/Theme.h"
#include "VelloroCore/Reminders/TaskNotificationSettings.h"
#include "VelloroCore/Status/CompletionStatus.h"

#include <array>
#include <cstdlib>
#include <functional>
#include <optional>
#include <string>

namespace {

using namespace velloro;
using Status = CompletionStatus::Status;

/// What could be read is written as a text that reads as the same again.
template <typename Value, typename Read, typename Write>
void checkRoundTrip(const std::optional<Value>& value, Read read, Write write) {
  if (!value) return;
  const std::string written = write(*value);
  const auto again = read(written);
  if (again != value || write(*again) != written) std::abort();
}

void checkIcon(std::string_view text) {
  const auto read = [](std::string_view stored) {
    return IconVisualRepresentation::fromStorableValue(stored);
  };
  const auto icon = read(text);
  if (!icon) return;
  checkRoundTrip(icon, read, std::mem_fn(&IconVisualRepresentation::storableValue));
  const std::string automatic = icon->storableValueWithAutoMonogram();
  if (IconVisualRepresentation::fromStorableValue(automatic, icon->text()) != icon) std::abort();
  (void)icon->accessibilityLabel();
}

/// A reminder's record, and what a user's clock makes of it, are whatever numbers they hold.
void checkReminder(std::string_view json) {
  static const TimeZone apia = TimeZone::fromIdentifier("Pacific/Apia").value();
  std::optional<TaskReminder> reminder;
  try {
    reminder = JSONDecoder{}.decode<TaskReminder>(json);
  } catch (const DecodingError&) {
    return;
  }
  const Date now = Date::now(), later = now + 200000;
  TaskNotificationSettings settings;
  using enum NotificationTimeZone;
  for (const NotificationTimeZone zone : {taskOwner, taskViewer}) {
    settings.reminders.push_back(reminder->convert(zone, TimeZone::gmt(), apia, now));
  }
  const HHMMSS time = reminder->snoozeTime.value_or(HHMMSS::midday);
  (void)settings.snoozeNow(reminder->uniqueId, {.startOfDay = time,
                                                .timeZone = apia,
                                                .deviceTimeZone = TimeZone::gmt(),
                                                .notificationTimeZone = taskViewer,
                                                .now = now});
  (void)settings.sortedEstimatedRelevantTimes(
      {.from = now, .to = later, .startOfDay = time, .timeZone = apia});
  (void)settings.remainingTimeOfDayReminders({{now}}, 1, time, apia, now);
  (void)settings.sortedTimerReminders();
  const HHMMSS of = reminder->trigger.timeOfDay.value_or(time);
  (void)of.occurrences(now, later, apia);
  (void)of.add(time, true);
  (void)of.add(time, false);
  (void)of.isWithin(1, time, true);
  (void)of.roundToNearestInterval(reminder->trigger.duration.value_or(900));
}

constexpr std::array<std::string_view, 15> seeds = {
    R"({"uniqueId":"00000000-0000-4000-8000-000000000001","timeZone":"owner","daysOfWeek":[1,3],)"
    R"("trigger":{"type":"tod","timeOfDay":84600},"dayIndexesFromStart":[0,9223372036854775807],)"
    R"("dayIndexesFromFinish":[-9223372036854775808],"sound":"ping","timeSensitive":true})",
    R"({"uniqueId":"00000000-0000-4000-8000-000000000002","daysOfWeek":[],"snoozeDate":20240307,)"
    R"("trigger":{"type":"todm","timeOfDay":{"h":23,"m":9223372036854775807,"s":1}},)"
    R"("snoozeTime":{"h":-9223372036854775808,"m":0,"s":9},"snoozeTimeZone":"viewer"})",
    R"({"uniqueId":"00000000-0000-4000-8000-000000000003","daysOfWeek":[6],)"
    R"("trigger":{"type":"dbf","duration":1e18}})",
    "ic_water_glass",
    "em_\U0001F6B2\U0001F3FD\u200D\u2640\uFE0F",
    "mg_ABCD",
    "sf_star.leadinghalf.filled",
    "char_10",
    R"({"vr":{"icon":"mug"},"dp":{"orientation":0}})",
    R"({"vr":{"sfSymbol":{"name":"star"}},"dp":{"orientation":7,"overlay":"slash"}})",
    R"({"vr":{"monogram":"\ud83c\udfc6"},"dp":{"overlay":null,"orientation":3.0}})",
    "i_mwoi",
    "nc_swi",
    "redBlue.white.grandSlam",
    "activityGreen.alternate",
};

}  // namespace

std::span<const std::string_view> fuzzSeeds() {
  return seeds;
}

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static const VirtualEnvironment environment;
  const std::string_view text(reinterpret_cast<const char*>(bytes), size);
  checkIcon(text);
  checkReminder(text);
  checkRoundTrip(IconDisplayRepresentation::fromCoreDataStringRepresentation(text),
                 IconDisplayRepresentation::fromCoreDataStringRepresentation,
                 std::mem_fn(&IconDisplayRepresentation::coreDataStringRepresentation));
  const auto status = Status::fromStringValue(text);
  if (status && status->stringValue() != text) std::abort();
  checkRoundTrip(Theme::fromStringValue(text), Theme::fromStringValue,
                 std::mem_fn(&Theme::stringValue));
  return 0;
}
