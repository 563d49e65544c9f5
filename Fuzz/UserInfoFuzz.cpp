#include "AppExtensions/NotificationViewController.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Fuzz.h"
#include "Support/SampleTasks.h"

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace velloro;

VirtualEnvironment& environment() {
  static VirtualEnvironment made;
  return made;
}

/// Whether there is a task to be read. One is written, and reads as the same again.
bool checkReading(const PropertyList& userInfo) {
  std::optional<NotificationData> data;
  try {
    data = NotificationData::fromUserInfo(userInfo);
  } catch (const Error& error) {
    if (error.localizedDescription().empty()) std::abort();
    return false;
  }
  if (NotificationData::fromUserInfo(data->userInfo()) != *data) std::abort();
  return true;
}

/// It is drawn, with the task where there is one, and an answer is answered once.
void checkShowing(const PropertyList& userInfo, bool isReadable) {
  const auto controller = NotificationViewController::make({.width = 200, .scale = 1});
  controller->didReceive(UNNotification{
      .date = Date::now(),
      .request = {.identifier = "r", .content = {.title = "Title", .userInfo = userInfo}}});
  if (controller->task().has_value() != isReadable) std::abort();
  UIWindow window(1);
  window.setContentView(controller->view());
  if (!window.displayIfNeeded()) std::abort();
  int answers = 0;
  controller->didReceive(
      {.notification = {}, .actionIdentifier = "NotificationManager.Action.MarkAsDone"},
      [&](UNNotificationContentExtensionResponseOption) { ++answers; });
  environment().advance(2);
  if (answers != 1) std::abort();
}

PropertyList userInfoOf(const TaskProgress& progress) {
  NotificationTask task = fullSampleTask();
  task.completionStatus.codableProgress.base = progress;
  task.displayTitle.quantity = TaskDisplayTitle::Quantity{
      .type = HealthType::dietaryDrinkWater,
      .quantity = {.quantity = 5, .unit = TypeUnit::cupsUS, .speeds = {}}};
  return NotificationData{.reminderId = sampleID(7),
                          .task = task,
                          .theme = Theme::hero.positioned(task.displayOrder),
                          .succinctBody = "2 left"}
      .userInfo();
}

/// Calls `run` with each value below `place` in turn replaced, and with each key taken away.
template <typename Run>
void damageEach(PropertyList& place, const PropertyList& damage, const Run& run) {
  PropertyList whole = std::exchange(place, damage);
  run();
  place = std::move(whole);
  if (auto* elements = place.array()) {
    for (PropertyList& element : *elements) damageEach(element, damage, run);
  }
  if (auto* fields = place.dictionary()) {
    for (auto& [name, value] : *fields) damageEach(value, damage, run);
    const PropertyList::Dictionary all = *fields;
    for (const auto& [name, value] : all) {
      fields->erase(name);
      run();
      fields->emplace(name, value);
    }
  }
}

PropertyList nested(int levels) {
  PropertyList deep = 1;
  for (int i = 0; i < levels; ++i) {
    PropertyList::Array outer;
    outer.push_back(std::move(deep));
    deep = std::move(outer);
  }
  return deep;
}

/// What is too large to be a seed, and what no JSON can hold, in every place.
void checkHugeDamage(PropertyList userInfo) {
  const PropertyList damages[] = {nested(5000),  std::string(1 << 20, 'w'),
                                  "\xFF\xFE",    std::string("\0", 1),
                                  Data("bytes"), Date::now()};
  for (const PropertyList& damage : damages) {
    int count = 0;
    damageEach(userInfo, damage, [&] {
      const bool isReadable = checkReading(userInfo);
      if (++count % 16 == 0) checkShowing(userInfo, isReadable);
    });
  }
}

std::vector<std::string> damagedPayloads() {
  const DatedPeriod day = sampleDay();
  const TaskProgress progress[] = {TaskProgressDiscrete{.period = day, .expectedCompletions = 3},
                                   TaskProgressTimer{.period = day, .totalTargetDuration = 600},
                                   TaskProgressActivityRings{.period = day, .energy = 0.5},
                                   TaskProgressContinuous{.period = day},
                                   TaskProgressSimple{.period = day},
                                   TaskProgressDateRange{.period = day}};
  const PropertyList damages[] = {INT64_MIN,
                                  nullptr,
                                  true,
                                  0,
                                  -1,
                                  1.5,
                                  INT64_MAX,
                                  1e300,
                                  "",
                                  "5",
                                  "nm",
                                  PropertyList::Array{},
                                  PropertyList::Dictionary{},
                                  nested(50)};
  std::vector<std::string> payloads;
  for (const TaskProgress& each : progress) {
    PropertyList userInfo = userInfoOf(each);
    if (!checkReading(userInfo)) std::abort();
    payloads.push_back(userInfo.json());
    for (const PropertyList& damage : damages) {
      damageEach(userInfo, damage, [&] { payloads.push_back(userInfo.json()); });
    }
  }
  return payloads;
}

}  // namespace

std::span<const std::string_view> fuzzSeeds() {
  static const auto payloads = [] {
    environment().setResources(VELLORO_RESOURCES);
    checkHugeDamage(userInfoOf(TaskProgressTimer{.period = sampleDay()}));
    return damagedPayloads();
  }();
  static const std::vector<std::string_view> seeds(payloads.begin(), payloads.end());
  return seeds;
}

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static std::size_t count = 0;
  PropertyList userInfo;
  try {
    userInfo = PropertyList::fromJSON({reinterpret_cast<const char*>(bytes), size});
  } catch (const DecodingError&) {
    return 0;
  }
  const bool isReadable = checkReading(userInfo);
  if (++count % 16 == 0) checkShowing(userInfo, isReadable);
  return 0;
}
