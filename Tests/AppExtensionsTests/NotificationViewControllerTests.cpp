#include "AppExtensions/NotificationViewController.h"
#include "Foundation/Coding/JSON.h"
#include "Foundation/Files/NSUserDefaults.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Foundation/Text/String.h"
#include "Settings/AppGroup.h"
#include "Settings/PendingReportableError.h"
#include "Settings/SettingsStorageLocal.h"
#include "Support/SampleTasks.h"
#include "UserNotifications/UNNotificationContentExtensionHost.h"

#include <string>
#include <tuple>
#include <vector>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Status = CompletionStatus::Status;
using State = CheckableTaskView::State;

constexpr const char* done = "NotificationManager.Action.MarkAsDone";
constexpr const char* missed = "NotificationManager.Action.MarkAsMissed";

UNNotification notificationOf(const PropertyList& userInfo, std::string category = "nm.c.r") {
  return {.date = Date::now(),
          .request = {.identifier = "r",
                      .content = {.categoryIdentifier = std::move(category),
                                  .title = "Straße",
                                  .body = "Time to drink",
                                  .userInfo = userInfo}}};
}

NotificationData dataOf(const NotificationTask& task) {
  return {.task = task, .theme = Theme::hero.positioned(task.displayOrder)};
}

NotificationTask taskOf(const Status& status, const TaskProgress& progress) {
  NotificationTask task = sampleTask();
  task.completionStatus = CompletionStatus(status, progress);
  task.frequency.numPartialCompletions = progress.expectedCompletions();
  return task;
}

TaskProgress steps(std::int64_t completed, std::int64_t expected) {
  return TaskProgressDiscrete{
      .period = sampleDay(), .expectedCompletions = expected, .numCompletions = completed};
}

TaskProgress timer(std::int64_t expected, double seconds) {
  return TaskProgressTimer{.period = sampleDay(),
                           .unit = TaskProgressTimer::Unit::minutes,
                           .expectedCompletions = expected,
                           .totalTargetDuration = 600,
                           .currentCompletionDuration = seconds};
}

const Status open = Status::positiveIncomplete(SkipMode::willMissWithoutIndicator);
const Status clean = Status::negativeComplete(SkipMode::willMissWithoutIndicator);

struct NotificationViewControllerTest : ::testing::Test {
  NotificationViewControllerTest() { environment.setResources(VELLORO_RESOURCES); }

  void show(const NotificationTask& task, std::string category = "nm.c.r") {
    controller->didReceive(notificationOf(dataOf(task).userInfo(), std::move(category)));
  }

  void respond(const std::string& action, const std::string& name = "") {
    controller->didReceive({.notification = {}, .actionIdentifier = action},
                           [this, name](UNNotificationContentExtensionResponseOption option) {
                             note(name + "option " + std::to_string(rawValue(option)) + caption());
                           });
  }

  /// Writes down all that happens from here on, with its milliseconds.
  void watch() {
    start = environment.mediaTime();
    lines.clear();
    controller->setObserver(
        [this] { note("state " + std::to_string(static_cast<int>(ring().state())) + caption()); });
  }

  void note(const std::string& what) {
    const auto milliseconds = std::lround((environment.mediaTime() - start) * 1000);
    lines.push_back(std::to_string(milliseconds) + " " + what);
  }

  [[nodiscard]] const CheckableTaskView& ring() const {
    return *controller->view()->checkableTaskView();
  }
  [[nodiscard]] const CheckableTaskView::Configuration& look() const {
    return ring().configuration();
  }
  [[nodiscard]] std::string caption() const {
    return controller ? " caption " + look().bottomCaption.text.value_or("-") : "";
  }
  [[nodiscard]] std::shared_ptr<const CGImage> picture() const {
    UIWindow window(1);
    window.setContentView(controller->view());
    EXPECT_TRUE(window.displayIfNeeded());
    return window.snapshot();
  }
  [[nodiscard]] std::string title() const { return controller->view()->titleLabel().text.string(); }
  static std::optional<PendingReportableError> recordedError() {
    const auto data =
        NSUserDefaults::initWithSuiteName(appGroupIdentifier)->dataForKey("PendingReportableError");
    if (!data) return std::nullopt;
    return JSONDecoder{}.decode<PendingReportableError>(data->text());
  }

  VirtualEnvironment environment;
  std::shared_ptr<NotificationViewController> controller = NotificationViewController::make({});
  double start = 0;
  std::vector<std::string> lines;
};

TEST_F(NotificationViewControllerTest, PlaysEachRoadOfATap) {
  using Road = std::vector<std::string>;
  const Road positive = {"560 state 2 caption 4", "960 state 3 caption 5",
                         "1460 option 2 caption 5"};
  const Road negative = {"560 state 2 caption 4", "960 state 3 caption -",
                         "1460 option 2 caption -"};
  const Road step = {"1000 option 2 caption 4"};
  const Road atOnce = {"0 option 2 caption 4"};
  const std::string prefix = "NotificationManager.Action.";
  const std::tuple<const char*, NotificationTask, std::string, Road, double> cases[] = {
      {"the last step", taskOf(open, steps(2, 3)), done, positive, 1},
      {"a step", taskOf(open, steps(0, 3)), done, step, 1.0 / 3},
      {"a timer", taskOf(open, timer(1, 150)), done, positive, 1},
      {"a timer's step", taskOf(open, timer(2, 150)), done, step, 0.5},
      {"a miss", taskOf(clean, steps(0, 1)), missed, negative, 1},
      {"a step to a miss", taskOf(clean, steps(0, 2)), missed, step, 0.5},
      {"full", taskOf(Status::positiveComplete, steps(1, 1)), done, positive, 1},
      {"snooze", taskOf(open, steps(0, 1)), prefix + "Snooze", atOnce, 0},
      {"a link", taskOf(open, steps(0, 1)), prefix + "OpenExternalURL", atOnce, 0},
      {"a message", taskOf(open, steps(0, 1)), prefix + "SendMessage", atOnce, 0},
      {"default", taskOf(open, steps(0, 1)), "default", atOnce, 0},
      {"unknown", taskOf(open, steps(0, 1)), prefix + "Dance", atOnce, 0},
  };
  for (const auto& [name, task, action, road, progressInTheEnd] : cases) {
    SCOPED_TRACE(name);
    controller = NotificationViewController::make({});
    show(task);
    environment.advance(1);
    watch();
    respond(action);
    respond(done, "second ");
    environment.advance(5);
    EXPECT_EQ(lines, road);
    EXPECT_EQ(ring().progressCurrent(), progressInTheEnd);
  }
}

TEST_F(NotificationViewControllerTest, FillsTheRingOnTheWay) {
  for (const auto& [completed, halfWay, half] :
       {std::tuple(0, 0.25, 1.0 / 6), {2, 0.275, 5.0 / 6}}) {
    controller = NotificationViewController::make({});
    show(taskOf(open, steps(completed, 3)));
    respond(done);
    environment.advance(halfWay);
    EXPECT_NEAR(ring().progressCurrent(), half, 0.01);
  }
}

TEST_F(NotificationViewControllerTest, AnswersEachResponseOnce) {
  show(taskOf(Status::positiveComplete, steps(1, 1)));
  EXPECT_EQ(ring().state(), State::completed);
  EXPECT_EQ(look().bottomCaption.text, "4");
  watch();
  respond(done);
  environment.advance(0.9);
  show(taskOf(open, steps(0, 3)));  // in the place of the first one, which is still playing
  controller->setObserver(nullptr);
  respond(done, "new ");
  controller.reset();
  environment.advance(5);
  EXPECT_THAT(lines, ElementsAre("560 state 2 caption 4", "900 option 2 caption 4",
                                 "900 state 0 caption 4", "1900 new option 2"));
}

TEST_F(NotificationViewControllerTest, ShowsNothingOfTheNotificationBefore) {
  for (const double seconds : {0.2, 0.7, 1.2}) {  // the ring fills, is checked, is completed
    show(taskOf(open, steps(0, 1)));
    watch();
    respond(done);
    environment.advance(seconds);
    show(taskOf(open, steps(1, 3)));
    environment.advance(3);
    EXPECT_EQ(ring().state(), State::checkable) << seconds;
    EXPECT_NEAR(ring().progressCurrent(), 1 / 3.0, 1e-9) << seconds;
    EXPECT_EQ(look().bottomCaption.text, "4") << seconds;
    EXPECT_EQ(std::ranges::count_if(lines, [](auto& line) { return line.contains("option 2"); }),
              1);
  }
}

TEST_F(NotificationViewControllerTest, AnswersWithoutATask) {
  controller->didReceive(notificationOf(PropertyList::Dictionary{}));
  EXPECT_TRUE(controller->view()->ringIsHidden());
  watch();
  respond(done);
  EXPECT_THAT(lines, ElementsAre("0 option 2 caption -"));
  show(taskOf(open, steps(0, 1)));
  EXPECT_FALSE(controller->view()->ringIsHidden());
  EXPECT_EQ(controller->view()->titleLabel().textAlignment, NSTextAlignment::natural);
  respond("default");
  EXPECT_EQ(lines.size(), 2U);
}

TEST_F(NotificationViewControllerTest, ShowsHowTheTaskStands) {
  const std::tuple<NotificationTask, double, double, State> cases[] = {
      {taskOf(open, steps(1, 4)), 0.25, 0, State::checkable},
      {taskOf(open, steps(4, 4)), 0, 0, State::completed},
      {taskOf(open, timer(1, 150)), 0.25, 0, State::checkable},
      {taskOf(open, timer(2, 150)), 0.25, 0.5, State::checkable},
  };
  for (const auto& [task, progress, subProgress, state] : cases) {
    controller = NotificationViewController::make({});
    show(task);
    EXPECT_EQ(ring().progress(), progress);
    EXPECT_EQ(ring().subProgress(), subProgress);
    EXPECT_EQ(ring().state(), state);
    EXPECT_EQ(look().numSegments, task.frequency.numPartialCompletions);
  }
  show(taskOf(clean, steps(0, 1)));
  EXPECT_EQ(look().fillDirection, FillDirection::antiClockwise);
  EXPECT_EQ(look().checkedIcon, look().uncheckedWhenCompleteIcon);
  EXPECT_EQ(look().checkedIcon->visualRepresentation.storableValue(), "ic_missed");
  EXPECT_THAT(look().badges, IsEmpty());
  show(fullSampleTask());
  ASSERT_EQ(look().badges.size(), 1U);
  EXPECT_EQ(look().badges[0].content->displayRepresentation.visualRepresentation.storableValue(),
            "ic_water_glass");
  NotificationTask ownerless = fullSampleTask();
  ownerless.shareOwnerDisplayRepresentation.reset();
  show(ownerless);
  EXPECT_EQ(look().badges[0].content->displayRepresentation.visualRepresentation.storableValue(),
            "ic_person");
}

TEST_F(NotificationViewControllerTest, TakesItsTitleByTheCategory) {
  for (const auto& [category, text] : {std::pair("nm.c.r", "Drink"),
                                       {"", "Drink"},
                                       {"nm.c.later", "Drink"},
                                       {"nm.tt.pc", "\uFFFC STRASSE"},
                                       {"nm.tt.pr", "\uFFFC STRASSE"}}) {
    show(sampleTask(), category);
    EXPECT_EQ(title(), text) << category;
    EXPECT_EQ(controller->view()->bodyLabel().text.string(), "Time to drink");
  }
  EXPECT_THAT(ring().accessibilityLabel(), HasSubstr("Straße"));
  EXPECT_FALSE(recordedError());
}

TEST_F(NotificationViewControllerTest, GrowsWithItsTexts) {
  NotificationTask wordy = fullSampleTask();
  wordy.displayTitle.localizedPrimary = std::string(1 << 20, 'w');
  NotificationTask tall = sampleTask();
  tall.displayTitle.localizedPrimary = std::string(1 << 20, '\n');
  for (const double width : {60.0, 200.0, 320.0, 1000.0}) {
    controller = NotificationViewController::make({.width = width});
    show(sampleTask());
    EXPECT_EQ(controller->preferredContentSize(), (CGSize{width, 128}));
    show(wordy);
    EXPECT_EQ(controller->preferredContentSize(), (CGSize{width, 128}));
    EXPECT_GT(controller->view()->bounds().size.height, 128);
    const auto image = picture();
    EXPECT_EQ(image->pixels().back() >> 24U, 0xFFU);
    EXPECT_THAT(title(), testing::EndsWith("…"));
    show(tall);
    EXPECT_LT(controller->view()->bounds().size.height, 2500);
  }
}

TEST_F(NotificationViewControllerTest, FollowsTheScreenWhereTheSettingsSaySo) {
  const auto local = std::make_shared<SettingsStorageLocal>();
  const auto shared = SettingsStorageLocalShared::open();
  SettingsStorage program({.localStorage = local, .localSharedStorage = shared}, false);
  SettingsStorage extension({.localStorage = local, .localSharedStorage = shared}, true);
  const Settings settings(extension);
  program.setString("black", Setting::themeAutoSwitchDarkMode);
  program.setString("white", Setting::themeAutoSwitchLightMode);
  using enum UIUserInterfaceStyle;
  for (const auto& [isOn, style, mode] : {std::tuple(false, dark, ThemeMode::normal),
                                          {true, light, ThemeMode::white},
                                          {true, dark, ThemeMode::black},
                                          {true, unspecified, ThemeMode::black}}) {
    program.setBoolean(isOn, Setting::themeAutoSwitch);
    controller = NotificationViewController::make({.userInterfaceStyle = style}, settings);
    show(sampleTask());
    const auto expected = Theme::hero.withMode(mode).backgroundType().plainColor();
    EXPECT_EQ(stringWithFormat("%06X", picture()->pixel(0, 0) & 0xFFFFFFU), expected.toHex());
  }
}

TEST_F(NotificationViewControllerTest, PaintsTheThemesBackground) {
  const auto corners = [this](ColorScheme scheme, std::int64_t page) {
    NotificationTask task = sampleTask();
    task.displayOrder.pageNumber = TaskPageNumber{page};
    const Theme theme{.colorScheme = scheme};
    controller->didReceive(notificationOf(
        NotificationData{.task = task, .theme = theme.positioned(task.displayOrder)}.userInfo()));
    const auto image = picture();
    const auto pixels = image->pixels();
    return std::vector<std::uint32_t>{pixels.front(), pixels.back(), pixels[319]};
  };
  const auto flat = corners(ColorScheme::blue, 0);
  EXPECT_THAT(flat, testing::Each(flat[0]));
  const auto gradient = corners(ColorScheme::redBlue, 0);
  EXPECT_NE(gradient[0], gradient[1]);
  EXPECT_EQ(look().containingBackgroundColor,
            Theme{.colorScheme = ColorScheme::redBlue}.backgroundType().plainColor());
  EXPECT_NE(corners(ColorScheme::pride, 0), corners(ColorScheme::pride, 1));
}

/// One value in a payload, named by its path, replaced or (null) taken away.
struct Damage {
  std::vector<const char*> path;
  PropertyList value;
};

PropertyList damaged(const Damage& damage) {
  PropertyList userInfo = dataOf(fullSampleTask()).userInfo();
  PropertyList* place = &userInfo;
  for (const char* name : damage.path) place = &(*place->dictionary())[name];
  *place = damage.value;
  return userInfo;
}

TEST_F(NotificationViewControllerTest, ShowsTheTextOfWhatCannotBeRead) {
  // Fuzz/UserInfoFuzz.cpp damages every place in every way.
  const Damage cases[] = {
      {{"velloro"}, nullptr},
      {{"velloro"}, "text"},
      {{"velloro", "task"}, PropertyList::Array{}},
      {{"velloro", "task", "frequency"}, nullptr},
      {{"velloro", "task", "streak", "current"}, "4"},
      {{"velloro", "task", "completionStatus", "status"}, "i_x"},
      {{"velloro", "task", "displayTitle", "localizedPrimary"}, "\xFF\xFE"},
  };
  for (const Damage& damage : cases) {
    SCOPED_TRACE(damage.path.back());
    NSUserDefaults::initWithSuiteName(appGroupIdentifier)
        ->removeObjectForKey("PendingReportableError");
    show(sampleTask());
    controller->didReceive(notificationOf(damaged(damage)));
    EXPECT_TRUE(controller->view()->ringIsHidden());
    EXPECT_FALSE(controller->task());
    EXPECT_EQ(title(), "Straße");
    EXPECT_EQ(controller->view()->titleLabel().textAlignment, NSTextAlignment::center);
    const auto error = recordedError();
    ASSERT_TRUE(error);
    EXPECT_EQ(error->date, environment.now());
    EXPECT_THAT(error->underlyingError, HasSubstr(error->errorDescription));
  }
}

TEST_F(NotificationViewControllerTest, ShowsAsManySegmentsAsThereIsRoomFor) {
  const PropertyList many = 4000000000000;
  controller->didReceive(
      notificationOf(damaged({{"velloro", "task", "frequency", "numPartialCompletions"}, many})));
  ASSERT_TRUE(controller->task());
  EXPECT_EQ(look().numSegments, 36);
}

}  // namespace
}  // namespace velloro
