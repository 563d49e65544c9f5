#include "UIKit/UIView.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

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
  std::erase(gestureRecognizers_, recognizer);
}

void UIView::receive(const UITouch& touch) {
  if (!isUserInteractionEnabled_) return;
  const auto receivers = gestureRecognizers_;  // an action may change the list
  for (const auto& recognizer : receivers) recognizer->receive(touch);
}

void UIView::moveTo(UIWindow* window) {
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
  const SavedGState saved(*context);
  context->scaleBy(contentView_->contentsScale(), contentView_->contentsScale());
  contentView_->draw(*context);
  return true;
}

std::shared_ptr<const CGImage> UIWindow::snapshot() {
  return surface_ ? surface_->makeImage() : nullptr;
}

CGContext* UIWindow::surface() {
  const auto pixels = [this](double points) {
    return static_cast<std::size_t>(
        std::max(0.0, std::ceil(points * contentView_->contentsScale())));
  };
  const auto [width, height] = contentView_->bounds().size;
  const bool fits =
      surface_ && surface_->width() == pixels(width) && surface_->height() == pixels(height);
  if (!fits) surface_ = CGContext::bitmap(pixels(width), pixels(height));
  return surface_.get();
}

}  // namespace platform
