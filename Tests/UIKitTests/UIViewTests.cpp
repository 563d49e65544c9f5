#include "Foundation/Process/VirtualEnvironment.h"
#include "UIKit/CADisplayLink.h"
#include "UIKit/UIImage.h"
#include "UIKit/UIView.h"

#include <optional>

#include <gmock/gmock.h>

namespace platform {
namespace {

using testing::DoubleNear;
using testing::ElementsAre;
using testing::Pointwise;

/// Ticks at 1/fps, 2/fps, … from the moment it runs, and none while it is paused.
TEST(CADisplayLink, TicksOnItsBeat) {
  VirtualEnvironment environment;
  const double start = environment.mediaTime();
  std::vector<double> ticks;
  std::optional<CADisplayLink> link;
  link.emplace([&] {
    ticks.push_back(environment.mediaTime() - start);
    if (ticks.size() == 7) link->setPaused(true);
    if (ticks.size() == 9) link.reset();
  });
  link->setPreferredFramesPerSecond(10);
  environment.advance(1);
  link->setPaused(false);
  environment.advance(0.15);
  link->setPaused(false);                 // no new beat
  link->setPreferredFramesPerSecond(10);  // nor here
  environment.advance(0.15);
  link->setPreferredFramesPerSecond(120);  // but here
  environment.advance(1);
  EXPECT_TRUE(link->isPaused());
  link->setPreferredFramesPerSecond(-1);
  link->setPaused(false);
  environment.advance(5);
  EXPECT_FALSE(link);
  EXPECT_THAT(ticks, Pointwise(DoubleNear(1e-9), {1.1, 1.2, 1.3, 1.3 + 1 / 120.0, 1.3 + 2 / 120.0,
                                                  1.3 + 3 / 120.0, 1.3 + 4 / 120.0, 3.3, 4.3}));

  CADisplayLink invalid([] { FAIL(); });
  invalid.setPaused(false);
  invalid.invalidate();
  invalid.setPreferredFramesPerSecond(5);
  environment.advance(1);
}

class Dot : public UIView {
 public:
  Dot() : UIView({10.2, 10}) {}
  void draw(CGContext& context) override {
    ++drawn;
    context.fill({{8, 8}, {2, 2}});
  }
  void didMoveToWindow() override { windows.push_back(window()); }

  int drawn = 0;
  std::vector<UIWindow*> windows;
};

TEST(UIView, DrawsWhenItHasAskedForIt) {
  const auto view = std::make_shared<Dot>();
  {
    UIWindow first(2);
    first.setContentView(view);
    UIWindow window(3);
    EXPECT_EQ(window.snapshot(), nullptr);
    window.setContentView(view);
    window.setContentView(view);
    EXPECT_THAT(view->windows, ElementsAre(&first, nullptr, &window));
    EXPECT_FALSE(first.displayIfNeeded());
    view->setContentsScale(window.screenScale());
    EXPECT_TRUE(window.displayIfNeeded());
    EXPECT_FALSE(window.displayIfNeeded());
    EXPECT_EQ(window.snapshot()->width(), 31);
    EXPECT_EQ(window.snapshot()->pixel(29, 29), 0xFF000000);
    EXPECT_EQ(window.snapshot()->pixel(23, 29), 0);
    view->setNeedsDisplay();
    EXPECT_TRUE(window.displayIfNeeded());
    view->setSize({0, 10});
    EXPECT_FALSE(window.displayIfNeeded());
    EXPECT_TRUE(view->needsDisplay());
  }
  EXPECT_EQ(view->drawn, 2);
  EXPECT_EQ(view->window(), nullptr);
  EXPECT_EQ((UIImage{.cgImage = std::make_shared<CGImage>(4, 2, std::vector<std::uint32_t>(8)),
                     .scale = 2}
                 .size()),
            (CGSize{2, 1}));
}

TEST(UIView, ErasesOfItselfAloneAsAPartOfAnother) {
  struct Frame : UIView {
    using UIView::UIView;
    void draw(CGContext& context) override {
      context.fill(bounds());
      context.setBlendMode(CGBlendMode::clear);
      context.fill(CGRect{{2, 2}, {2, 2}});
    }
  };
  const auto context = CGContext::bitmap(20, 20);
  context->setFillColor({.red = 1});
  context->fill(CGRect{{0, 0}, {20, 20}});
  context->scaleBy(2, 2);
  Frame frame({6, 6});
  frame.setContentsScale(2);
  frame.drawLayer(*context, {1, 1});
  const auto image = context->makeImage();
  EXPECT_EQ(image->pixel(2, 2), 0xFF000000);
  EXPECT_EQ(image->pixel(7, 7), 0xFFFF0000) << "the hole";
  EXPECT_EQ(image->pixel(14, 14), 0xFFFF0000);
}

/// Writes down what the recognisers tell, and how often: a press of 0.2 s and a tap.
class GestureTest : public testing::Test, public UIGestureRecognizerDelegate {
 protected:
  GestureTest() {
    press->minimumPressDuration = 0.2;
    tap->requireToFail(press);
    press->setDelegate(this);
    tap->setDelegate(this);
  }

  bool gestureRecognizerShouldBegin(const UIGestureRecognizer& recognizer) override {
    return &recognizer != press.get() || pressAllowed;
  }
  bool gestureRecognizerShouldReceive(const UIGestureRecognizer&, const UITouch& touch) override {
    return touch.location.x < 50;
  }

  /// Plays a script: "d" down, "m" moved a little, "f" moved far, "u" up, "c" cancelled, "." for
  /// 0.1 s; "l" the view enters a window and leaves it, "s" it is switched off and on, "r" it gets
  /// its recognisers anew. Returns the log.
  std::string play(std::string_view script) {
    log.clear();
    for (const char step : script) {
      if (step == '.') environment.advance(0.1);
      if (step == 'd') view->receive({UITouch::Phase::began, {5, 5}});
      if (step == 'o') view->receive({UITouch::Phase::began, {55, 5}});
      if (step == 'm') view->receive({UITouch::Phase::moved, {8, 5}});
      if (step == 'f') view->receive({UITouch::Phase::moved, {80, 5}});
      if (step == 'u') view->receive({UITouch::Phase::ended, {8, 5}});
      if (step == 'c') view->receive({UITouch::Phase::cancelled, {8, 5}});
      if (step == 'l') UIWindow(1).setContentView(view);
      if (step == 's') view->setUserInteractionEnabled(false);
      if (step == 's') view->setUserInteractionEnabled(true);
      if (step == 'r') setRecognizers(view->gestureRecognizers().front() == tap);
    }
    EXPECT_EQ(press->state(), UIGestureRecognizer::State::possible);
    EXPECT_EQ(tap->state(), UIGestureRecognizer::State::possible);
    return log;
  }

  void setRecognizers(bool tapFirst) {
    for (const auto& recognizer : std::vector(view->gestureRecognizers()))
      view->removeGestureRecognizer(recognizer);
    view->addGestureRecognizer(tapFirst ? std::shared_ptr<UIGestureRecognizer>(tap) : press);
    view->addGestureRecognizer(tapFirst ? std::shared_ptr<UIGestureRecognizer>(press) : tap);
  }

  VirtualEnvironment environment;
  std::string log;
  bool pressAllowed = true;
  std::shared_ptr<UIView> view = std::make_shared<UIView>(CGSize{50, 50});
  std::shared_ptr<UILongPressGestureRecognizer> press =
      std::make_shared<UILongPressGestureRecognizer>([this](UIGestureRecognizer& recognizer) {
        constexpr const char* names[] = {"?", "began ", "changed ", "ended ", "cancelled ", "?"};
        log += names[static_cast<int>(recognizer.state())];
      });
  std::shared_ptr<UITapGestureRecognizer> tap =
      std::make_shared<UITapGestureRecognizer>([this](UIGestureRecognizer&) { log += "tap "; });
};

TEST_F(GestureTest, PressesAndTaps) {
  struct Case {
    const char* script;
    const char* log;
  };
  const Case cases[] = {
      {"d.u", "tap "},                              // too short to be a press
      {"d..m.fu", "began changed changed ended "},  // once begun, it may stray
      {"dm...u", "began ended "},
      {"d...c", "began cancelled "},
      {"d.f...u", ""},  // strayed too early
      {"d.c...", ""},
      {"o...u", ""},  // came down outside
      {"u.f.c", ""},
      {"d.u.d.u...", "tap tap "},
      {"d...dd.u", "began ended "},  // a second finger counts for nothing
      {"d...lmu", "began cancelled "},
      {"d...smu", "began cancelled "},
      {"d...rmu", "began cancelled "},
      {"d.l..ud.su", ""},
      {"d.r..ud.u", "tap "},
  };
  for (const bool tapFirst : {false, true}) {
    setRecognizers(tapFirst);
    for (const auto& [script, expected] : cases) {
      EXPECT_EQ(play(script), expected) << script << (tapFirst ? " tap first" : "");
    }
    pressAllowed = false;
    EXPECT_EQ(play("d...u"), "tap ");
    pressAllowed = true;
  }
  view->setUserInteractionEnabled(false);
  EXPECT_EQ(play("d...u"), "");
}

}  // namespace
}  // namespace platform
