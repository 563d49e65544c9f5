#include "Desktop/NotificationServer.h"
#include "Foundation/Process/VirtualEnvironment.h"

#include <gmock/gmock.h>

namespace platform {
namespace {

using testing::ElementsAre;

/// A server whose every answer the test decides about.
class FakeBus : public NotificationBus {
 public:
  std::expected<bool, BusProblem> claim(const std::string&) override { return true; }
  std::string identity() const override { return "bus"; }
  void getServer(Answer<NotificationServerInfo> answer) override {
    if (notReady-- > 0) {
      return answer(std::unexpected(BusProblem{"org.freedesktop.DBus.Error.UnknownObject", ""}));
    }
    answer(info);
  }
  void notify(const NotifyCall& call, Answer<std::uint32_t> answer) override {
    calls.push_back(call);
    if (isSlow) {
      waiting.push_back(std::move(answer));
    } else {
      reply(answer);
    }
  }
  void close(std::uint32_t id) override { closed.push_back(id); }
  void flush() override {}

  void reply(const Answer<std::uint32_t>& answer) {
    if (refusals-- > 0) {
      return answer(std::unexpected(BusProblem{"org.example.ExcessNotificationGeneration", ""}));
    }
    const std::uint32_t replaced = calls.back().replaces;
    answer(givesZero ? 0 : replaced != 0 && keepsReplaced ? replaced : ++lastId);
  }

  NotificationServerInfo info{.name = "fake", .capabilities = {"actions", "inline-reply"}};
  int notReady = 0, refusals = 0;
  bool isSlow = false, givesZero = false, keepsReplaced = true;
  std::uint32_t lastId = 0;
  std::vector<NotifyCall> calls;
  std::vector<std::uint32_t> closed;
  std::vector<Answer<std::uint32_t>> waiting;
};

class NotificationServerTest : public testing::Test {
 protected:
  NotificationServerTest() {
    server_.setBus(bus_);
    signals_.ownerChanged(":1.5");
    environment_.settle();
    heard_.clear();
  }

  static DesktopNotification reminder(std::string title = "Read") {
    return {.title = std::move(title),
            .actions = {{"done", "Done"}, {"snooze", "Snooze"}},
            .reply = {{"Amount", "Log"}}};
  }
  /// The key under which the last post offers an action.
  std::string offered(const std::string& action) const {
    for (const auto& key : bus_.calls.back().actions) {
      if (key.starts_with(action + ".")) return key;
    }
    return "none";
  }

  VirtualEnvironment environment_;
  FakeBus bus_;
  std::vector<std::string> heard_;
  NotificationServer server_{
      {.name = "velloro", .desktopEntry = "", .icon = ""},
      {.arrived = [this](bool isNew) { heard_.push_back(isNew ? "new" : "changed"); },
       .gone = [this] { heard_.push_back("gone"); },
       .answered = [this](const auto& key, const auto& action,
                          const auto& token) { heard_.push_back(key + " " + action + token); },
       .replied = [this](const auto& key,
                         const auto& text) { heard_.push_back(key + ": " + text); },
       .closed =
           [this](const auto& key, auto reason) {
             heard_.push_back(key + " closed " + std::to_string(static_cast<int>(reason)));
           }}};
  NotificationBus::Signals signals_ = server_.signals();
};

TEST_F(NotificationServerTest, TakesAnAnswerFromItsServerToItsOwnPresentForm) {
  server_.show("a", reminder(), false);
  const std::string first = offered("done");
  signals_.invoked(":1.6", 1, first);      // another's
  signals_.invoked(":1.5", 2, first);      // not ours
  signals_.invoked(":1.5", 1, "done");     // without its nonce
  signals_.invoked(":1.5", 1, "default");  // never offered
  EXPECT_THAT(heard_, ElementsAre());
  server_.show("a", reminder("Read on"), true);
  EXPECT_EQ(bus_.calls.back().replaces, 1u) << "a quiet update takes its place";
  signals_.invoked(":1.5", 1, first);  // of a form that is no longer seen
  EXPECT_THAT(heard_, ElementsAre());
  signals_.token(":1.5", 1, " token");
  signals_.invoked(":1.5", 1, offered("done"));
  EXPECT_THAT(heard_, ElementsAre("a done token"));
  server_.withdraw("a");
  signals_.invoked(":1.5", 1, offered("done"));
  signals_.closed(":1.5", 1, 3);
  EXPECT_THAT(heard_, ElementsAre("a done token")) << "the second signal";
  EXPECT_THAT(bus_.closed, ElementsAre(1u));
}

TEST_F(NotificationServerTest, TakesAnActionShortlyAfterClosing) {
  for (const double delay : {1.0, 3.0}) {
    server_.show("a", reminder(), false);
    const std::uint32_t id = bus_.lastId;
    const std::string key = offered("snooze");
    signals_.closed(":1.5", id, 2);
    environment_.advance(delay);
    signals_.invoked(":1.5", id, key);
    signals_.invoked(":1.5", id, key);
  }
  EXPECT_THAT(heard_, ElementsAre("a closed 2", "a snooze", "a closed 2"));
}

TEST_F(NotificationServerTest, KeepsSignalsThatComeBeforeTheAnswer) {
  bus_.isSlow = true;
  server_.show("a", reminder(), false);
  signals_.invoked(":1.5", 1, offered("done"));
  signals_.invoked(":1.5", 9, offered("done"));
  EXPECT_THAT(heard_, ElementsAre());
  bus_.reply(bus_.waiting.at(0));
  EXPECT_THAT(heard_, ElementsAre("a done"));

  // Withdrawn, or changed, while the server has not answered.
  server_.show("b", reminder(), false);
  server_.withdraw("b");
  bus_.reply(bus_.waiting.at(1));
  EXPECT_THAT(bus_.closed, ElementsAre(2u));
  server_.show("c", reminder("old"), false);
  server_.show("c", reminder("new"), true);
  EXPECT_EQ(bus_.calls.back().summary, "old");
  bus_.reply(bus_.waiting.at(2));
  EXPECT_EQ(bus_.calls.back().summary, "new");
  EXPECT_EQ(bus_.calls.back().replaces, 3u);
}

TEST_F(NotificationServerTest, CopesWithWhatServersGiveBack) {
  bus_.givesZero = true;
  server_.show("zero", reminder(), false);
  EXPECT_THAT(heard_, ElementsAre("zero closed 4")) << "not shown";
  bus_.givesZero = false;
  bus_.keepsReplaced = false;
  server_.show("a", reminder(), false);
  server_.show("a", reminder("again"), true);
  EXPECT_THAT(bus_.closed, ElementsAre(1u)) << "what was to be replaced must not stay beside it";
  server_.show("a", reminder("renewed"), false);
  EXPECT_THAT(bus_.closed, ElementsAre(1u, 2u));
  EXPECT_EQ(bus_.calls.back().replaces, 0u);

  bus_.refusals = 2;
  const std::size_t before = bus_.calls.size();
  server_.show("many", reminder(), false);
  environment_.advance(10);
  EXPECT_EQ(bus_.calls.size(), before + 3) << "two refusals, with a pause after each";
  EXPECT_TRUE(server_.isShown("many"));

  // An identifier that the server gives out once more belongs to the newer one alone.
  bus_.lastId = 2;
  server_.show("b", reminder(), false);
  EXPECT_FALSE(server_.isShown("a"));
  heard_.clear();
  signals_.replied(":1.5", 3, "2.5");
  EXPECT_THAT(heard_, ElementsAre("b: 2.5"));
}

TEST_F(NotificationServerTest, ForgetsEverythingWithItsServer) {
  server_.show("a", reminder(), false);
  const std::string key = offered("done");
  signals_.ownerChanged("");
  signals_.invoked(":1.5", 1, key);
  server_.show("b", reminder(), false);
  EXPECT_EQ(bus_.calls.size(), 1u) << "nobody is there";
  bus_.notReady = 3;
  bus_.lastId = 0;
  signals_.ownerChanged(":1.8");
  EXPECT_THAT(heard_, ElementsAre("gone"));
  environment_.advance(1);
  EXPECT_THAT(heard_, ElementsAre("gone", "new")) << "it exports its object after its name";
  server_.show("a", reminder(), true);
  EXPECT_EQ(bus_.calls.back().replaces, 0u);
  signals_.invoked(":1.8", 1, key);
  signals_.invoked(":1.8", 1, offered("done"));
  EXPECT_THAT(heard_, ElementsAre("gone", "new", "a done"));
  bus_.info.capabilities.clear();
  server_.lookAgain();
  server_.lookAgain();
  EXPECT_EQ(heard_.back(), "changed");
  EXPECT_EQ(heard_.size(), 4u);
}

}  // namespace
}  // namespace platform
