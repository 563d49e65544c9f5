#pragma once

#include "CheckableTasks/AnimatedValue.h"
#include "Foundation/Values/Geometry.h"
#include "OxCheckableTasks/Icons/IconDisplayRepresentation.h"
#include "OxCheckableTasks/Ring/ColorProfile.h"
#include "OxCheckableTasks/Ring/FillDirection.h"
#include "OxCheckableTasks/StaticImages/Badge.h"
#include "OxKit/OxAnimationCurve.h"
#include "UIKit/CADisplayLink.h"
#include "UIKit/UIFont.h"
#include "UIKit/UIGestureRecognizer.h"
#include "UIKit/UIImpactFeedbackGenerator.h"
#include "UIKit/UIView.h"
#include "VelloroCore/Appearance/CaptionIcons.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velloro {

/// The ring of a task, round its icon: it fills, and a long press checks it.
///
///     const auto view = CheckableTaskView::make({84, 84});
///     view->update([&](auto& ring) { ring.numSegments = 3; });
///     view->setProgress(1.0 / 3, 0, 0);
///     view->checkAutomatically(0.55);    // checked after 0.56 s, completed after 0.96 s
///
/// Lives on the main queue. Lengths of time are seconds, progress is 0..1.
class CheckableTaskView : public UIView, public UIGestureRecognizerDelegate {
 public:
  enum class State { checkable, checkedInner, checked, completed };
  enum class HabitMode { positive, negative };
  /// What the progress within one completion means.
  enum class SubProgressBehaviour { partialCompletions, timer, timerWithPartialCompletions };

  static constexpr double progressAnimationDuration = 0.55;
  static constexpr double checkedToCompletedDelayDuration = 0.4;

  class Delegate {
   public:
    virtual ~Delegate() = default;
    /// After each change, once it is on its way to the screen.
    virtual void checkableTaskViewDidChangeState(State newState) = 0;
  };

  /// One of the two lines of text in the ring.
  struct Caption {
    std::optional<std::string> text = {};
    std::vector<CaptionIcon> leadingIcons = {};
    std::vector<CaptionIcon> trailingIcons = {};
    std::optional<UIFont> font = {};  ///< Without one, nothing of the caption is drawn.
    std::optional<std::string> accessibilityLabel = {};  ///< Spoken in the place of the text.

    bool operator==(const Caption&) const = default;
  };

  /// How the ring looks and behaves.
  struct Configuration {
    HabitMode habitMode = HabitMode::positive;  ///< Selects the accessibility texts.
    OxAnimationCurve progressTimingFunction = OxAnimationCurve::easeInOut;
    OxAnimationCurve subProgressTimingFunction = OxAnimationCurve::easeInOut;
    FillDirection fillDirection = FillDirection::clockwise;
    double trackProgress = 1;  ///< Where the solid part of the open track ends.
    SubProgressBehaviour subProgressBehaviour = SubProgressBehaviour::partialCompletions;
    double subProgressTimerTotalDuration = 0;  ///< Of the timed task.
    bool useRoundedLineCaps = false;
    bool longPressIsEnabled = true;
    std::optional<std::string> accessibilityLabelPrefix = {};
    bool accessibilityLabelIncludeState = true;
    std::optional<IconDisplayRepresentation> uncheckedIcon = {};
    std::optional<IconDisplayRepresentation> uncheckedWhenCompleteIcon = {};
    std::optional<IconDisplayRepresentation> checkedIcon = {};
    double normalizedTrackWidth = 0.06;      ///< Per width of the view.
    double normalizedNotchThickness = 0.03;  ///< Per width of the view.
    OxCodableColor containingBackgroundColor = {.a =
                                                    0};  ///< Behind the view; badges blend with it.
    ColorProfile uncheckedColorProfile = ColorProfile::defaultUnchecked();
    ColorProfile completedColorProfile = ColorProfile::defaultCompleted();
    Caption bottomCaption = {};
    Caption topCaption = {};
    std::vector<Badge> badges = {};
    int numSegments = 1;
    bool allowPartialCompletions = false;
    bool playHapticFeedback = false;
    NSWritingDirection writingDirection = NSWritingDirection::natural;

    bool operator==(const Configuration&) const = default;
  };

  /// \param size In points.
  [[nodiscard]] static std::shared_ptr<CheckableTaskView> make(CGSize size);
  ~CheckableTaskView() override;

  [[nodiscard]] const Configuration& configuration() const { return configuration_; }
  /// Changes the configuration; the view is drawn again if it then looks different.
  template <typename Change>
  void update(Change&& change) {
    Configuration changed = configuration_;
    change(changed);
    configure(std::move(changed));
  }
  void configure(Configuration configuration);
  void setDelegate(std::weak_ptr<Delegate> delegate) { delegate_ = std::move(delegate); }

  [[nodiscard]] State state() const { return state_; }
  [[nodiscard]] double progress() const { return progress_.target(); }
  [[nodiscard]] double subProgress() const { return subProgress_.target(); }
  [[nodiscard]] double progressCurrent() const { return progress_.current(); }        ///< As shown.
  [[nodiscard]] double subProgressCurrent() const { return subProgress_.current(); }  ///< As shown.
  /// While either is true, `setProgress` and `setState` must wait.
  [[nodiscard]] bool currentlyCheckingManual() const { return press_.isCheckingManual; }
  [[nodiscard]] bool currentlyCheckingAuto() const { return currentlyCheckingAuto_; }

  /// Moves the ring, in so many seconds or, with 0, at once. To where it already is going: nothing.
  /// A timer's sub-progress stays where it is.
  void setProgress(double progress, double subProgress, double duration);
  /// Whether the state changed.
  bool setState(State newState);
  /// Fills the ring, then goes through `checked` to `completed`.
  void checkAutomatically(double duration);
  /// Forgets what `checkAutomatically` still has to do: the ring is to show something else.
  void abandonCheck();

  /// \name The long press; the recognisers call these.
  /// @{
  void pressBegan();
  void pressEnded();
  void pressCancelled();
  void tapped() {}  ///< A tap changes nothing.
  /// @}

  void draw(CGContext& context) override;

  /// What a screen reader says: what the task is, how it stands, and the captions.
  [[nodiscard]] std::string accessibilityLabel() const override;
  [[nodiscard]] bool isAccessibilityElement() const override { return true; }

  bool gestureRecognizerShouldBegin(const UIGestureRecognizer& recognizer) override;
  bool gestureRecognizerShouldReceive(const UIGestureRecognizer& recognizer,
                                      const UITouch& touch) override;

 protected:
  void didMoveToWindow() override;

 private:
  struct Press {
    int id = 0;  ///< Counts presses: what was scheduled in an earlier one does nothing.
    bool isCheckingManual = false;
    bool isCheckingFullManual = false;
    double preCheckingProgress = 0;
    double preCheckingSubProgress = 0;
    SubProgressBehaviour preCheckingSubProgressBehaviour = SubProgressBehaviour::partialCompletions;
  };
  class Painter;

  explicit CheckableTaskView(CGSize size);

  void setUp();
  void setUpRecognizers();
  void tearDownDisplayLinks();
  void progressDisplayLinkUpdate();
  void subProgressDisplayLinkUpdate();
  [[nodiscard]] bool hasPartialCompletions() const;
  /// Runs the step on the main queue after so many seconds, if the view is still there.
  void after(double seconds, std::function<void(CheckableTaskView&)> step);
  /// The same for a step of `checkAutomatically`: not when that was abandoned.
  void afterInCheck(double seconds, std::function<void(CheckableTaskView&)> step);
  /// The same for a step of this press: not when it was let go or another has begun.
  void afterInPress(double seconds, std::function<void(CheckableTaskView&)> step);
  void prepareHapticFeedback();
  void firstHoldStep();
  void secondHoldStep();
  void released();
  void returnToSnapshot();
  [[nodiscard]] std::string stateSentence() const;

  Configuration configuration_;
  State state_ = State::checkable;
  AnimatedValue progress_;
  AnimatedValue subProgress_;
  std::shared_ptr<UIGestureRecognizer> longPress_;
  std::shared_ptr<UIGestureRecognizer> tap_;
  std::unique_ptr<CADisplayLink> progressDisplayLink_;
  std::unique_ptr<CADisplayLink> subProgressDisplayLink_;
  Press press_;
  bool currentlyCheckingAuto_ = false;
  int abandonedChecks_ = 0;  ///< A step of a check that was scheduled before one of them is void.
  std::unique_ptr<UIImpactFeedbackGenerator> hapticFeedbackGenerator_;
  std::unique_ptr<Painter> painter_;
  std::weak_ptr<Delegate> delegate_;
};

}  // namespace velloro
