#include "UserNotifications/UNNotificationTrigger.h"

#include <cstdint>
#include <string_view>

namespace platform {
namespace {

struct Component {
  std::string_view name;
  std::optional<std::int64_t> DateComponents::*member;
};

constexpr Component components[] = {
    {"year", &DateComponents::year},     {"month", &DateComponents::month},
    {"day", &DateComponents::day},       {"hour", &DateComponents::hour},
    {"minute", &DateComponents::minute}, {"second", &DateComponents::second}};

}  // namespace

std::optional<UNCalendarNotificationTrigger> UNCalendarNotificationTrigger::fromDate(Date date) {
  if (!(date > Date::now())) return std::nullopt;
  return UNCalendarNotificationTrigger{Calendar(TimeZone::current()).dateComponents(date)};
}

std::optional<Date> UNCalendarNotificationTrigger::nextTriggerDate() const {
  return Calendar(TimeZone::current()).date(dateComponents);
}

void UNCalendarNotificationTrigger::encode(Encoder& to) const {
  to.object([&](ObjectEncoder& object) {
    for (const auto& [name, member] : components) object.encode(name, dateComponents.*member);
  });
}

UNCalendarNotificationTrigger UNCalendarNotificationTrigger::decode(const Decoder& from) {
  UNCalendarNotificationTrigger trigger;
  for (const auto& [name, member] : components) {
    trigger.dateComponents.*member = from.decodeIfPresent<std::int64_t>(name);
  }
  return trigger;
}

}  // namespace platform
