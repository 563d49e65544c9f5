#include "CheckableTasks/CheckableTaskView.h"

#include "CheckableTasks/CheckableTaskPainter.h"
#include "Foundation/Dispatch/DispatchQueue.h"
#include "Foundation/Process/Environment.h"
#include "OxCheckableTasks/Ring/CheckableTaskTextKeys.h"
#include "OxKit/AccessibilityLabel.h"
#include "OxKit/Localization.h"
#include "VelloroCore/Titles/FormatManager.h"

#include <cmath>
#include <utility>

namespace velloro {
namespace {

using SubProgressBehaviour = CheckableTaskView::SubProgressBehaviour;

constexpr double minimumPressDuration = 0.2;
constexpr double innerHoldDuration = 0.6;
constexpr double durationBeforeChecked = 0.01;
constexpr int fullRate = 120;
constexpr int partialTimerRate = 30;

/// Frames a second: long runs move slowly.
int rateForPartialCompletions(double duration) {
  if (duration < 60) return fullRate;
  if (duration < 300) return 60;
  if (duration < 600) return 30;
  return duration < 3000 ? 15 : 5;
}

int rate(SubProgressBehaviour behaviour, double duration) {
  switch (behaviour) {
    case SubProgressBehaviour::partialCompletions:
      return rateForPartialCompletions(duration);
    case SubProgressBehaviour::timer:
      return fullRate;
    case SubProgressBehaviour::timerWithPartialCompletions:
      return partialTimerRate;
  }
  return fullRate;
}

int initialSubProgressRate(SubProgressBehaviour behaviour) {
  return behaviour == SubProgressBehaviour::timerWithPartialCompletions ? partialTimerRate
                                                                        : fullRate;
}

double mediaTime() {
  return Environment::current().mediaTime();
}

/// A ring that was full when it was pressed empties when the press is taken back.
double emptiedIfFull(double progress) {
  return progress == 1.0 ? 0 : progress;
}

}  // namespace

std::shared_ptr<CheckableTaskView> CheckableTaskView::make(CGSize size) {
  const std::shared_ptr<CheckableTaskView> view(new CheckableTaskView(size));
  view->setUp();
  return view;
}

CheckableTaskView::CheckableTaskView(CGSize size)
    : UIView(size), painter_(std::make_unique<Painter>(*this)) {}

CheckableTaskView::~CheckableTaskView() {
  tearDownDisplayLinks();
}

void CheckableTaskView::didMoveToWindow() {
  if (window() != nullptr) {
    setUp();
  } else {
    tearDownDisplayLinks();
    // Nobody sees the rest of an animation, and nothing will move the ring on when it comes back.
    progress_.jump(progress_.target());
    subProgress_.jump(subProgress_.target());
  }
}

void CheckableTaskView::setUp() {
  if (window() != nullptr) setContentsScale(window()->screenScale());
  setUpRecognizers();
  progressDisplayLink_ = std::make_unique<CADisplayLink>([this] { progressDisplayLinkUpdate(); });
  progressDisplayLink_->setPreferredFramesPerSecond(fullRate);
  subProgressDisplayLink_ =
      std::make_unique<CADisplayLink>([this] { subProgressDisplayLinkUpdate(); });
  subProgressDisplayLink_->setPreferredFramesPerSecond(
      initialSubProgressRate(configuration_.subProgressBehaviour));
}

void CheckableTaskView::setUpRecognizers() {
  for (const auto& old : {longPress_, tap_}) {
    if (old) removeGestureRecognizer(old);
  }
  const auto press =
      std::make_shared<UILongPressGestureRecognizer>([this](const UIGestureRecognizer& recognizer) {
        if (recognizer.state() == UIGestureRecognizer::State::began) pressBegan();
        if (recognizer.state() == UIGestureRecognizer::State::ended) pressEnded();
        if (recognizer.state() == UIGestureRecognizer::State::cancelled) pressCancelled();
      });
  press->minimumPressDuration = minimumPressDuration;
  longPress_ = press;
  tap_ = std::make_shared<UITapGestureRecognizer>([this](const auto&) { tapped(); });
  tap_->requireToFail(longPress_);
  for (const auto& recognizer : {longPress_, tap_}) {
    recognizer->setDelegate(this);
    addGestureRecognizer(recognizer);
  }
}

void CheckableTaskView::tearDownDisplayLinks() {
  progressDisplayLink_.reset();
  subProgressDisplayLink_.reset();
}

void CheckableTaskView::configure(Configuration configuration) {
  // Partial completions show in how the ring is pressed, not in how it looks.
  Configuration seen = configuration;
  seen.allowPartialCompletions = configuration_.allowPartialCompletions;
  const bool looksTheSame = seen == configuration_;
  configuration_ = std::move(configuration);
  if (looksTheSame) return;
  painter_->dropImages();
  setNeedsDisplay();
}

void CheckableTaskView::setProgress(double progress, double subProgress, double duration) {
  const bool movesSubProgress = configuration_.subProgressBehaviour != SubProgressBehaviour::timer;
  if (!(duration > 0)) {
    progress_.jump(progress);
    if (movesSubProgress) subProgress_.jump(subProgress);
    if (progressDisplayLink_) progressDisplayLink_->setPaused(true);
    if (subProgressDisplayLink_) subProgressDisplayLink_->setPaused(true);
    return setNeedsDisplay();
  }
  if (progress_.target() == progress && subProgress_.target() == subProgress) return;
  const double begin = mediaTime();
  const double end = begin + duration;
  const auto run = [&](CADisplayLink* link) {
    if (link == nullptr) return;
    link->setPreferredFramesPerSecond(rate(configuration_.subProgressBehaviour, duration));
    link->setPaused(false);
  };
  progress_.start(progress, configuration_.progressTimingFunction, begin, end);
  run(progressDisplayLink_.get());
  if (!movesSubProgress) return;
  subProgress_.start(subProgress, configuration_.subProgressTimingFunction, begin, end);
  run(subProgressDisplayLink_.get());
}

void CheckableTaskView::progressDisplayLinkUpdate() {
  if (progress_.tick(mediaTime())) progressDisplayLink_->setPaused(true);
  setNeedsDisplay();
}

void CheckableTaskView::subProgressDisplayLinkUpdate() {
  if (subProgress_.tick(mediaTime())) subProgressDisplayLink_->setPaused(true);
  setNeedsDisplay();
}

bool CheckableTaskView::setState(State newState) {
  if (newState == state_) return false;
  state_ = newState;
  painter_->dropImages();
  setNeedsDisplay();
  if (const auto delegate = delegate_.lock()) delegate->checkableTaskViewDidChangeState(newState);
  return true;
}

void CheckableTaskView::after(double seconds, std::function<void(CheckableTaskView&)> step) {
  const auto self = std::static_pointer_cast<CheckableTaskView>(shared_from_this());
  DispatchQueue::main().asyncAfter(seconds, [weak = std::weak_ptr(self), step = std::move(step)] {
    if (const auto view = weak.lock()) step(*view);
  });
}

void CheckableTaskView::afterInCheck(double seconds, std::function<void(CheckableTaskView&)> step) {
  after(seconds, [then = abandonedChecks_, step = std::move(step)](CheckableTaskView& view) {
    if (view.abandonedChecks_ == then) step(view);
  });
}

void CheckableTaskView::afterInPress(double seconds, std::function<void(CheckableTaskView&)> step) {
  after(seconds, [id = press_.id, step = std::move(step)](CheckableTaskView& view) {
    if (view.press_.id == id) step(view);
  });
}

void CheckableTaskView::prepareHapticFeedback() {
  hapticFeedbackGenerator_.reset();
  if (!configuration_.playHapticFeedback) return;
  hapticFeedbackGenerator_ = std::make_unique<UIImpactFeedbackGenerator>();
  hapticFeedbackGenerator_->prepare();
}

void CheckableTaskView::checkAutomatically(double duration) {
  const bool isAnimated = duration > 0;
  if (isAnimated) prepareHapticFeedback();
  setProgress(1, 0, duration);
  currentlyCheckingAuto_ = true;
  afterInCheck(duration + durationBeforeChecked, [isAnimated](CheckableTaskView& view) {
    if (view.currentlyCheckingAuto_) {
      if (isAnimated) view.hapticFeedbackGenerator_.reset();
      view.setState(State::checked);
    }
    view.afterInCheck(checkedToCompletedDelayDuration,
                      [](CheckableTaskView& later) { later.setState(State::completed); });
    view.currentlyCheckingAuto_ = false;
  });
}

void CheckableTaskView::abandonCheck() {
  ++abandonedChecks_;
  currentlyCheckingAuto_ = false;
  hapticFeedbackGenerator_.reset();
}

bool CheckableTaskView::hasPartialCompletions() const {
  return configuration_.numSegments >= 2 && configuration_.allowPartialCompletions;
}

void CheckableTaskView::pressBegan() {
  if (state_ != State::checkable) return;
  ++press_.id;
  press_.isCheckingManual = true;
  press_.preCheckingProgress = progress_.target();
  press_.preCheckingSubProgress = subProgress_.target();
  press_.preCheckingSubProgressBehaviour = configuration_.subProgressBehaviour;
  prepareHapticFeedback();
  configuration_.progressTimingFunction = OxAnimationCurve::easeInOut;
  configuration_.subProgressTimingFunction = OxAnimationCurve::easeInOut;
  configuration_.subProgressBehaviour = SubProgressBehaviour::partialCompletions;
  if (hasPartialCompletions()) {
    setProgress(progress_.target(), 1, progressAnimationDuration);
  } else {
    setProgress(1, 0, progressAnimationDuration);
  }
  afterInPress(progressAnimationDuration, &CheckableTaskView::firstHoldStep);
}

void CheckableTaskView::firstHoldStep() {
  if (!press_.isCheckingManual) return;
  if (state_ == State::checkable && hasPartialCompletions()) {
    setState(State::checkedInner);
    return afterInPress(innerHoldDuration, &CheckableTaskView::secondHoldStep);
  }
  setState(State::checked);
  setProgress(1, 0, 0);
}

void CheckableTaskView::secondHoldStep() {
  if (!press_.isCheckingManual) return;
  press_.isCheckingFullManual = true;
  setProgress(1, 1, progressAnimationDuration);
  afterInPress(progressAnimationDuration, [](CheckableTaskView& view) {
    if (view.press_.isCheckingFullManual) view.setState(State::checked);
  });
}

void CheckableTaskView::pressEnded() {
  released();
}

void CheckableTaskView::pressCancelled() {
  if (state_ == State::checkedInner || state_ == State::checked) return released();
  hapticFeedbackGenerator_.reset();
  setProgress(press_.preCheckingProgress, press_.preCheckingSubProgress, progressAnimationDuration);
  press_.isCheckingManual = false;
}

void CheckableTaskView::released() {
  hapticFeedbackGenerator_.reset();
  press_.isCheckingManual = false;
  const auto changeLater = [this](State next) {
    after(checkedToCompletedDelayDuration,
          [next](CheckableTaskView& view) { view.setState(next); });
  };
  switch (state_) {
    case State::checkable:
      returnToSnapshot();
      break;
    case State::checkedInner:
      if (press_.isCheckingFullManual) {
        setProgress(emptiedIfFull(press_.preCheckingProgress), 0, progressAnimationDuration);
        setState(State::checkable);
      } else {
        changeLater(State::checkable);
      }
      break;
    case State::checked:
      changeLater(State::completed);
      break;
    case State::completed:
      break;
  }
  press_.isCheckingFullManual = false;
}

void CheckableTaskView::returnToSnapshot() {
  configuration_.subProgressBehaviour = press_.preCheckingSubProgressBehaviour;
  setProgress(emptiedIfFull(press_.preCheckingProgress),
              emptiedIfFull(press_.preCheckingSubProgress), progressAnimationDuration);
}

void CheckableTaskView::draw(CGContext& context) {
  painter_->draw(context);
}

bool CheckableTaskView::gestureRecognizerShouldBegin(const UIGestureRecognizer& recognizer) {
  return &recognizer != longPress_.get() || configuration_.longPressIsEnabled;
}

bool CheckableTaskView::gestureRecognizerShouldReceive(const UIGestureRecognizer&,
                                                       const UITouch& touch) {
  const auto [x, y] = touch.location;
  const auto [width, height] = bounds().size;
  const bool isWithin = x >= 0 && y >= 0 && x < width && y < height;
  return touch.phase != UITouch::Phase::began || isWithin;
}

std::string CheckableTaskView::accessibilityLabel() const {
  AccessibilityLabel label;
  const auto add = [&](const std::optional<std::string>& text) {
    if (text) label.parts.emplace_back(*text);
  };
  const auto spoken = [](const Caption& caption) {
    const auto& instead = caption.accessibilityLabel;
    return instead && !instead->empty() ? instead : caption.text;
  };
  add(configuration_.accessibilityLabelPrefix);
  if (configuration_.accessibilityLabelIncludeState) add(stateSentence());
  add(spoken(configuration_.bottomCaption));
  add(spoken(configuration_.topCaption));
  return label.text();
}

std::string CheckableTaskView::stateSentence() const {
  const FormatManager& formats = FormatManager::shared(Locale::current());
  const auto& sentences = configuration_.habitMode == HabitMode::negative
                              ? checkable_task_text::negative
                              : checkable_task_text::positive;
  const int segments = configuration_.numSegments;
  if (state_ != State::checkable) return localized(sentences.done);
  if (hasPartialCompletions()) {
    const double steps = std::round(progress() * segments);
    return localized(sentences.timesPerDay, {formats.integerFormatter.string(steps),
                                             formats.integerFormatter.string(segments)});
  }
  if (!(progress() > 0)) return localized(sentences.open);
  return localized(sentences.pct, {formats.voiceoverPercentageFormatter.string(progress())});
}

}  // namespace velloro
