#include "Foundation/Files/NSUserDefaults.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Settings/SettingsStorageLocal.h"
#include "Settings/SiriExtensionUtilities.h"
#include "Support/Fixtures.h"
#include "Support/Processes.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velloro {
namespace {

using ::testing::SizeIs;

const UniqueID first = UniqueID::fromString("11111111-0000-4000-8000-000000000000").value();
const UniqueID second = UniqueID::fromString("22222222-0000-4000-8000-000000000000").value();

class SiriExtensionUtilitiesTest : public ::testing::Test {
 protected:
  static NSUserDefaults suite() {
    return NSUserDefaults::initWithSuiteName("group.velloro.app.today").value();
  }
  static void add(const SiriExtensionUtilities::SiriReminder& reminder) {
    const auto kept = SiriExtensionUtilities::shared()->editSiriReminders(
        [&](auto& reminders) { reminders.push_back(reminder); });
    EXPECT_TRUE(kept);
  }

  VirtualEnvironment environment_;
};

// In a process of its own, as the shared one keeps the environment of its first use.
TEST_F(SiriExtensionUtilitiesTest, KeepsWhatIsStillToComeAndWhatCanBeRead) {
  EXPECT_TRUE(endedWell(startProcess([&] {
    const auto& utilities = *SiriExtensionUtilities::shared();
    const Date now = Date::now();
    EXPECT_THAT(utilities.siriReminders(), SizeIs(0));
    add({first, second, now});
    add({second, first, now + 0.5});
    expectFixture("SiriReminder", utilities.siriReminders());
    const auto stored = suite().dataForKey("SiriReminders").value().text();

    environment_.advance(0.25);
    EXPECT_TRUE(utilities.editSiriReminders([](auto&) {}));
    EXPECT_EQ(suite().dataForKey("SiriReminders").value().text(), stored);
    add({first, first, now + 60});
    const SiriExtensionUtilities::SiriReminders expected = {{second, first, now + 0.5},
                                                            {first, first, now + 60}};
    EXPECT_EQ(utilities.siriReminders(), expected);

    const std::string damaged = R"([{"uniqueId":"?","taskId":"?","date":1},{"date":1},7,)";
    suite().setObject(Data(damaged + std::string(stored.substr(1))), "SiriReminders");
    EXPECT_THAT(utilities.siriReminders(), SizeIs(2));
    suite().setObject("no list", "SiriReminders");
    EXPECT_THAT(utilities.siriReminders(), SizeIs(0));
  })));
}

TEST_F(SiriExtensionUtilitiesTest, EditsOfSeveralProcessesFollowOneAnother) {
  constexpr std::size_t each = 5;
  workInProcesses(3, 2, [&](int) {
    for (std::size_t i = 0; i < each; ++i) add({UniqueID::create(), first, Date::now() + 60});
  });
  const SiriExtensionUtilities utilities(sharedOrLocalStorage());
  EXPECT_THAT(utilities.siriReminders(), SizeIs(3 * 2 * each));
}

}  // namespace
}  // namespace velloro
