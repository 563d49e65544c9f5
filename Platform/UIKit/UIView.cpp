#include "UIKit/UIView.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {
namespace {

/// Enough for so many points.
std::size_t pixels(double points, double scale) {
  return static_cast<std::size_t>(std::max(0.0, std::ceil(points * scale)));
}

}  // namespace

void UIView::setSize(CGSize size) {
  bounds_.size = size;
  setNeedsDisplay();
}

void UIView::setContentsScale(double scale) {
  contentsScale_ = scale;
  setNeedsDisplay();
}

void UIView::addGestureRecognizer(std::shared_ptr<UIGestureRecognizer> recognizer) {
  gestureRecognizers_.push_back(std::move(recognizer));
}

void UIView::removeGestureRecognizer(const std::shared_ptr<UIGestureRecognizer>& recognizer) {
  const auto removed = recognizer;  // the list may hold the last handle, and be what is passed
  if (std::erase(gestureRecognizers_, removed) > 0) removed->cancel();
}

void UIView::setUserInteractionEnabled(bool enabled) {
  isUserInteractionEnabled_ = enabled;
  if (!enabled) cancelTouch();
}

void UIView::cancelTouch() {
  const auto receivers = gestureRecognizers_;  // an action may change the list
  for (const auto& recognizer : receivers) recognizer->cancel();
}

void UIView::receive(const UITouch& touch) {
  if (!isUserInteractionEnabled_) return;
  const auto receivers = gestureRecognizers_;  // an action may change the list
  for (const auto& recognizer : receivers) recognizer->receive(touch);
}

void UIView::drawLayer(CGContext& context, CGPoint origin) {
  const auto layer = CGContext::bitmap(pixels(bounds_.size.width, contentsScale_),
                                       pixels(bounds_.size.height, contentsScale_));
  if (!layer) return;
  drawScaled(*layer);
  const auto image = layer->makeImage();
  context.draw(*image, {.origin = origin,
                        .size = {.width = static_cast<double>(image->width()) / contentsScale_,
                                 .height = static_cast<double>(image->height()) / contentsScale_}});
}

void UIView::drawScaled(CGContext& context) {
  const SavedGState saved(context);
  context.scaleBy(contentsScale_, contentsScale_);
  draw(context);
}

void UIView::moveTo(UIWindow* window) {
  cancelTouch();
  window_ = window;
  setNeedsDisplay();
  didMoveToWindow();
}

void UIWindow::setContentView(std::shared_ptr<UIView> view) {
  if (view == contentView_) return;
  surface_.reset();
  if (const auto leaving = std::exchange(contentView_, nullptr)) leaving->moveTo(nullptr);
  if (!view) return;
  if (view->window() != nullptr) view->window()->setContentView(nullptr);
  contentView_ = std::move(view);
  contentView_->moveTo(this);
}

bool UIWindow::displayIfNeeded() {
  if (!contentView_ || !contentView_->needsDisplay()) return false;
  CGContext* const context = surface();
  if (context == nullptr) return false;
  contentView_->needsDisplay_ = false;
  context->clear();
  contentView_->drawScaled(*context);
  return true;
}

std::shared_ptr<const CGImage> UIWindow::snapshot() {
  return surface_ ? surface_->makeImage() : nullptr;
}

CGContext* UIWindow::surface() {
  const double scale = contentView_->contentsScale();
  const std::size_t width = pixels(contentView_->bounds().size.width, scale);
  const std::size_t height = pixels(contentView_->bounds().size.height, scale);
  const bool fits = surface_ && surface_->width() == width && surface_->height() == height;
  if (!fits) surface_ = CGContext::bitmap(width, height);
  return surface_.get();
}

}  // namespace platform
