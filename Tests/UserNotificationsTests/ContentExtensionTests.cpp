#include "Foundation/Dispatch/DispatchQueue.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Support/Fixtures.h"
#include "UserNotifications/UNNotificationContentExtensionHost.h"

#include <gmock/gmock.h>

namespace platform {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Option = UNNotificationContentExtensionResponseOption;
using Events = std::vector<std::string>;

/// Answers "a/b/…" with the options 0, 1 and 2 from a background queue, so many tenths of a second
/// later: "2@5" dismisses and forwards after half a second.
class Extension : public UNNotificationContentExtension {
 public:
  explicit Extension(Events& events) : events_(events) { events_.emplace_back("made"); }
  ~Extension() override { events_.emplace_back("gone"); }
  void didReceive(const UNNotification& notification) override {
    EXPECT_TRUE(DispatchQueue::main().isCurrent());
    events_.push_back("shows " + notification.request.identifier);
  }
  void didReceive(const UNNotificationResponse& response, CompletionHandler handler) override {
    EXPECT_TRUE(DispatchQueue::main().isCurrent());
    const std::string& action = response.actionIdentifier;
    if (action == "never") return;
    const auto option = fromRawValue<Option>(action[0] - '0').value();
    DispatchQueue::global().asyncAfter((action[2] - '0') * 0.1,
                                       [option, handler = std::move(handler)]() mutable {
                                         handler(option);
                                         handler(Option::dismissAndForwardAction);
                                       });
  }
  [[nodiscard]] CGSize preferredContentSize() const override { return {.width = 3, .height = 4}; }

 private:
  Events& events_;
};

class ContentExtensionTest : public ::testing::Test {
 protected:
  Events eventsAfter(double seconds) {
    environment_.advance(seconds);
    return std::exchange(events_, {});
  }
  void present(const std::string& identifier) {
    host_->present({.date = {}, .request = {.identifier = identifier}});
  }

  VirtualEnvironment environment_;
  Events events_;
  std::optional<UNNotificationContentExtensionHost> host_{
      std::in_place,
      UNNotificationContentExtensionHost::Handlers{
          .makeController = [this] { return std::make_shared<Extension>(events_); },
          .forward =
              [this](const UNNotificationResponse& response) {
                events_.push_back("forwards " + response.notification.request.identifier + " " +
                                  response.actionIdentifier);
              },
          .didAnswer =
              [this](Option option) { events_.push_back("answers " + debugDescription(option)); }}};
};

TEST_F(ContentExtensionTest, TheFirstAnswerCountsAndIsTaken) {
  host_->respond("2@0");  // nothing is shown
  present("a");
  present("b");  // in its place
  EXPECT_THAT(eventsAfter(0), ElementsAre("made", "shows a", "shows b"));
  EXPECT_EQ(host_->controller()->preferredContentSize().height, 4);
  host_->respond("never");
  host_->respond("0@5");
  EXPECT_THAT(eventsAfter(0.4), IsEmpty());
  EXPECT_THAT(eventsAfter(0.1), ElementsAre("answers 0"));
  host_->respond("2@5");
  EXPECT_THAT(eventsAfter(0.5), ElementsAre("answers 2", "forwards b 2@5", "gone"));
  EXPECT_EQ(host_->controller(), nullptr);
  expectRawValues<Option>({0, 1, 2});
}

TEST_F(ContentExtensionTest, ALateAnswerClosesNoOtherNotification) {
  present("a");
  host_->respond("2@9");
  host_->respond("1@1");
  EXPECT_THAT(eventsAfter(0.5), ElementsAre("made", "shows a", "answers 1", "gone"));
  present("b");
  EXPECT_THAT(eventsAfter(0.5), ElementsAre("made", "shows b", "answers 2", "forwards a 2@9"));
  host_->respond("2@1");
  present("c");  // in its place
  EXPECT_THAT(eventsAfter(0.5), ElementsAre("shows c", "answers 2", "forwards b 2@1"));
  EXPECT_NE(host_->controller(), nullptr);
  host_->respond("2@1");
  environment_.settle();
  host_.reset();
  EXPECT_THAT(eventsAfter(1), ElementsAre("gone"));
}

}  // namespace
}  // namespace platform
