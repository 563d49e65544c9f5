#include "Foundation/Process/VirtualEnvironment.h"
#include "Settings/RunTarget.h"

#include <string>
#include <tuple>
#include <utility>

#include <gtest/gtest.h>

namespace velloro {
namespace {

TEST(RunTargetTest, FollowsTheBundleAndTheDevice) {
  using enum RunTarget;
  const std::tuple<std::string, RunTarget, RunTarget, bool> cases[] = {
      {"velloro.app", app, macApp, false},
      {"velloro.app.today", today, today, true},
      {"velloro.app.widgets", widgets, macWidgets, true},
      {"velloro.app.siri", siri, macSiri, true},
      {"velloro.app.siriui", siriUI, macSiriUI, true},
      {"velloro.app.notification", notification, notification, true},
      {"velloro.app.deviceactivity", deviceActivity, deviceActivity, true},
      {"maccatalyst.velloro.app", macApp, macApp, false},
      {"maccatalyst.velloro.app.widgets", macWidgets, macWidgets, true},
      {"maccatalyst.velloro.app.siri", macSiri, macSiri, true},
      {"maccatalyst.velloro.app.siriui", macSiriUI, macSiriUI, true},
      {"maccatalyst.velloro.app.today", unknown, unknown, false},
      {"velloro.app.watchkitapp.watchkitextension", watchApp, watchApp, false},
      {"velloro.app.watchkitapp.watchkitextension.siri", watchSiri, watchSiri, true},
      {"", unknown, unknown, false}};
  VirtualEnvironment environment;
  for (const auto& [identifier, onPhone, onMac, extension] : cases) {
    environment.setBundle({.identifier = identifier});
    for (const auto& [device, expected] : {std::pair("iPhone14,5", onPhone), {"Mac16,1", onMac}}) {
      environment.setDeviceModel(device);
      EXPECT_EQ(runTarget(environment.bundle()), expected) << identifier << " on " << device;
      EXPECT_EQ(isExtension(), extension) << identifier << " on " << device;
    }
  }
  EXPECT_TRUE(isExtension({.identifier = "another", .pathExtension = "appex"}));
  EXPECT_FALSE(isExtension({.identifier = "velloro.app", .pathExtension = "appex"}));
}

}  // namespace
}  // namespace velloro
