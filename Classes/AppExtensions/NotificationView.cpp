#include "AppExtensions/NotificationView.h"

#include "Foundation/Text/Locale.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace velloro {
namespace {

constexpr double minimumColumn = 120;  // narrower ones break most words
constexpr double lineGap = 4;

double heightOf(const std::shared_ptr<TextLayout>& text) {
  return text ? text->size().height : 0;
}

bool isContinuation(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// A notification is a few lines; a text that would fill a book is damage, and drawing it would
/// take longer than anyone waits.
NSAttributedString shortened(const NSAttributedString& text, std::size_t room) {
  NSAttributedString result;
  for (const NSAttributedString::Run& run : text.runs()) {
    if (run.attachment) {
      result.append(run.attachment, run.attributes);
      continue;
    }
    if (run.text.size() <= room) {
      room -= run.text.size();
      result.append(run.text, run.attributes);
      continue;
    }
    while (room > 0 && isContinuation(run.text[room])) --room;
    result.append(run.text.substr(0, room) + "…", run.attributes);
    break;
  }
  return result;
}

}  // namespace

NotificationView::NotificationView(double width, double scale)
    : UIView({.width = width, .height = 0}),
      direction_(Locale::current().isRightToLeft() ? NSWritingDirection::rightToLeft
                                                   : NSWritingDirection::leftToRight),
      checkableTaskView_(
          CheckableTaskView::make({.width = constraints_.height, .height = constraints_.height})) {
  setContentsScale(scale);
  checkableTaskView_->setContentsScale(scale);
  layoutSubviews();
}

void NotificationView::setContents(Contents contents) {
  for (Label* label : {&contents.titleLabel, &contents.bodyLabel}) {
    label->text = shortened(label->text, maximumTextLength);
  }
  if (contents == contents_) return;
  contents_ = std::move(contents);
  layoutSubviews();
}

void NotificationView::setBackground(const Background& background) {
  background_ = background;
  setNeedsDisplay();
}

std::shared_ptr<TextLayout> NotificationView::layOut(const Label& label, double width) const {
  if (label.text.isEmpty()) return nullptr;
  const auto layOut = [&](const NSAttributedString& text) -> std::shared_ptr<TextLayout> {
    return TextLayout::make(
        text, {.maximumWidth = width, .alignment = label.textAlignment, .scale = contentsScale()});
  };
  // A few bytes can be many lines.
  auto text = layOut(label.text);
  for (std::size_t room = maximumTextLength / 2; heightOf(text) > maximumTextHeight; room /= 2) {
    text = layOut(shortened(label.text, room));
  }
  return text;
}

void NotificationView::layoutSubviews() {
  const auto [ring, leading, trailing] = constraints_;
  const double width = bounds().size.width;
  const double beside = width - leading - ring - trailing - trailing;
  const bool isBeside = !ringIsHidden() && beside >= minimumColumn;
  const double column = std::max(isBeside ? beside : width - 2 * trailing, 1.0);
  title_.text = layOut(titleLabel(), column);
  body_.text = layOut(bodyLabel(), column);
  const bool hasBoth = heightOf(title_.text) > 0 && heightOf(body_.text) > 0;
  const double texts = heightOf(title_.text) + heightOf(body_.text) + (hasBoth ? lineGap : 0);
  const double above = isBeside || ringIsHidden() ? 0 : ring + trailing;
  const double height = std::max(ring, above + texts) + 2 * leading;
  const bool isRightToLeft = direction_ == NSWritingDirection::rightToLeft;

  ringOrigin_ = {
      .x = isBeside ? (isRightToLeft ? width - leading - ring : leading) : (width - ring) / 2,
      .y = isBeside ? (height - ring) / 2 : leading};
  const double columnX = isBeside && !isRightToLeft ? width - trailing - column : trailing;
  placeTexts(columnX, column, above > 0 ? leading + above : (height - texts) / 2);
  setSize({.width = width, .height = height});
  checkableTaskView_->setNeedsDisplay();
  setNeedsDisplay();
}

void NotificationView::placeTexts(double x, double width, double y) {
  const auto place = [&](Placed& placed, NSTextAlignment alignment) {
    if (!placed.text) return;
    const CGSize size = placed.text->size();
    const double free = width - size.width;
    const bool isRightToLeft = direction_ == NSWritingDirection::rightToLeft;
    const double before = alignment == NSTextAlignment::center ? free / 2
                          : isRightToLeft                      ? free
                                                               : 0;
    placed.origin = {.x = x + before, .y = y};
    if (size.height > 0) y += size.height + lineGap;
  };
  place(title_, titleLabel().textAlignment);
  place(body_, bodyLabel().textAlignment);
}

void NotificationView::draw(CGContext& context) {
  if (background_) {
    // The last pixels of a picture may lie half outside of the view.
    const auto wholePixels = [scale = contentsScale()](double points) {
      return std::ceil(points * scale) / scale;
    };
    const auto [width, height] = bounds().size;
    const CGRect area{.origin = {},
                      .size = {.width = wholePixels(width), .height = wholePixels(height)}};
    paintBackground(context, area, background_->type, background_->page);
  }
  if (!ringIsHidden()) checkableTaskView_->drawLayer(context, ringOrigin_);
  for (const Placed& placed : {title_, body_}) {
    if (placed.text) placed.text->draw(context, placed.origin);
  }
}

}  // namespace velloro
