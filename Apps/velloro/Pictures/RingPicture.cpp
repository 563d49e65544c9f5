#include "velloro/Pictures/RingPicture.h"

#include "Foundation/Process/VirtualEnvironment.h"
#include "OxKit/RuntimeError.h"
#include "UIKit/TextLayout.h"
#include "VelloroCore/Appearance/ThemeBackground.h"

#include <algorithm>
#include <cmath>

namespace velloro {
namespace {

using View = CheckableTaskView;

std::unique_ptr<CGContext> bitmap(CGSize size, double scale) {
  const auto pixels = [&](double points) {
    constexpr double slack = 1e-6;  // of whole pixels that a division has turned into points
    return static_cast<std::size_t>(std::ceil(points * scale - slack));
  };
  auto context = CGContext::bitmap(pixels(size.width), pixels(size.height));
  if (!context) throw RuntimeError("nothing can be drawn here");
  context->scaleBy(scale, scale);
  return context;
}

}  // namespace

Canvas::Canvas(CGSize size, double scale) : context_(bitmap(size, scale)) {}

void Canvas::paint(CGRect rect, const OxCodableColor& color) {
  context_->setFillColor(color);
  context_->fill(rect);
}

void Canvas::paint(CGRect rect, const ThemeBackgroundType& background) {
  paintBackground(*context_, rect, background, {});
}

void Canvas::write(std::string_view text, CGPoint center, const UIFont& font,
                   const OxCodableColor& color) {
  const auto layout = TextLayout::make(NSAttributedString(text, {.font = font, .color = color}));
  if (layout) layout->drawCentered(*context_, center);
}

void Canvas::show(UIWindow& window, CGPoint origin) {
  window.displayIfNeeded();
  const auto picture = window.snapshot();
  if (!picture) return;
  const double scale = window.screenScale();
  context_->draw(*picture, {.origin = origin,
                            .size = {.width = static_cast<double>(picture->width()) / scale,
                                     .height = static_cast<double>(picture->height()) / scale}});
}

std::shared_ptr<const CGImage> RingPicture::pictureOf(UIWindow& window) const {
  const CGRect frame = window.contentView()->bounds();
  Canvas canvas(frame.size, scale);
  if (!look.isTransparent) canvas.paint(frame, look.theme.backgroundType());
  canvas.show(window, {});
  return canvas.image();
}

std::shared_ptr<const CGImage> RingPicture::image() const {
  UIWindow window(scale);
  window.setContentView(look.view());
  return pictureOf(window);
}

void RingPicture::playChecking(std::uint16_t framesPerSecond, const TakeFrame& take) const {
  constexpr double rest = 0.5;
  constexpr double duration =
      View::progressAnimationDuration + View::checkedToCompletedDelayDuration + rest;
  const Directories directories = Environment::current().directories();
  const std::string locale = Environment::current().localeIdentifier();
  VirtualEnvironment scene;
  scene.setResources(directories.resources);
  scene.setLocale(locale);
  UIWindow window(scale);
  const auto view = look.view();
  window.setContentView(view);
  view->checkAutomatically(View::progressAnimationDuration);
  const double start = scene.mediaTime();
  AnimationFrame frame{.count = static_cast<std::uint32_t>(duration * framesPerSecond) + 1,
                       .framesPerSecond = framesPerSecond};
  for (; frame.index < frame.count; ++frame.index) {
    scene.advance(start + static_cast<double>(frame.index) / framesPerSecond - scene.mediaTime());
    take(*pictureOf(window), frame);
  }
}

}  // namespace velloro
