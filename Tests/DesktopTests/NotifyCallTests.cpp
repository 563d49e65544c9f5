#include "Desktop/NotifyCall.h"

#include <gmock/gmock.h>

namespace platform {
namespace {

using testing::ElementsAre;

const NotifyCall::Sender sender{.name = "velloro", .desktopEntry = "app", .icon = ""};

DesktopNotification reminder() {
  return {.title = "Read & <write>",
          .body = "1 < 2 & \"3\"",
          .actions = {{"done", "Done"}, {"snooze", "Snooze"}},
          .defaultAction = {{"default", "Open"}},
          .reply = {{"Amount", "Log"}},
          .isUrgent = true,
          .tag = "key"};
}

TEST(NotifyCall, FollowsWhatTheServerAnnounces) {
  const auto actions = [](const NotificationServerInfo& server) {
    return NotifyCall::of(reminder(), sender, server).actions;
  };
  EXPECT_THAT(actions({.name = "any"}),
              ElementsAre("done", "Done", "snooze", "Snooze", "default", "Open"));
  EXPECT_THAT(actions({.name = "dunst"}), ElementsAre("done", "Done", "snooze", "Snooze"));
  EXPECT_THAT(
      actions({.name = "Plasma", .capabilities = {"inline-reply"}}),
      ElementsAre("done", "Done", "snooze", "Snooze", "inline-reply", "Log", "default", "Open"));
  DesktopNotification lone = reminder();
  lone.actions.pop_back();
  EXPECT_THAT(NotifyCall::of(lone, sender, {}).actions, ElementsAre());

  const auto plain = NotifyCall::of(reminder(), sender, {});
  EXPECT_EQ(plain.body, "1 < 2 & \"3\"");
  EXPECT_EQ(plain.summary, "Read & <write>") << "a title has no markup on any server";
  EXPECT_FALSE(plain.hints.contains("sound-name"));
  EXPECT_EQ(plain.hints.at("urgency"), NotifyCall::Hint(std::uint8_t{2}));
  EXPECT_EQ(plain.hints.at("resident"), NotifyCall::Hint(true));
  EXPECT_FALSE(plain.hints.contains("transient") || plain.hints.contains("value"));
  EXPECT_EQ(plain.expireTimeout, 0);

  auto quiet = reminder();
  quiet.isSilent = true;
  quiet.isUrgent = false;
  quiet.title = "";
  quiet.stays = false;
  const auto marked = NotifyCall::of(quiet, sender, {.capabilities = {"body-markup", "sound"}});
  EXPECT_EQ(marked.body, "1 &lt; 2 &amp; \"3\"");
  EXPECT_EQ(marked.hints.at("suppress-sound"), NotifyCall::Hint(true));
  EXPECT_FALSE(marked.hints.contains("sound-name"));
  EXPECT_EQ(marked.hints.at("urgency"), NotifyCall::Hint(std::uint8_t{1}));
  EXPECT_EQ(marked.summary, "velloro");
  EXPECT_EQ(marked.expireTimeout, -1);
}

TEST(NotifyCall, GivesPixelsWithStraightAlpha) {
  const CGImage image(2, 1, {0x80402000, 0x00000000});
  const auto pixels = straightPixels(image);
  EXPECT_EQ(pixels.width, 2);
  EXPECT_THAT(pixels.bytes, ElementsAre(0x80, 0x40, 0, 0x80, 0, 0, 0, 0));
}

}  // namespace
}  // namespace platform
