#include "CairoDrawing/PangoLayout.h"

#include "CairoDrawing/CairoContext.h"
#include "CairoDrawing/Fonts.h"

#include <algorithm>
#include <cmath>

namespace platform {
namespace {

template <typename T>
using Object = std::unique_ptr<T, Free<g_object_unref>>;
using Font = std::unique_ptr<PangoFontDescription, Free<pango_font_description_free>>;
using Attributes = std::unique_ptr<PangoAttrList, Free<pango_attr_list_unref>>;
using FontOptions = std::unique_ptr<cairo_font_options_t, Free<cairo_font_options_destroy>>;

int pangoUnits(double points) {
  return static_cast<int>(std::lround(points * PANGO_SCALE));
}
double points(int units) {
  return static_cast<double>(units) / PANGO_SCALE;
}

Font fontOf(const UIFont& font) {
  Font description(pango_font_description_new());
  pango_font_description_set_family(description.get(),
                                    font.name.empty() ? "Inter" : font.name.c_str());
  pango_font_description_set_weight(description.get(), static_cast<PangoWeight>(font.weight));
  pango_font_description_set_absolute_size(description.get(), pangoUnits(font.pointSize));
  return description;
}

guint16 channel(double value) {
  return static_cast<guint16>(std::lround(std::clamp(value, 0.0, 1.0) * 65535));
}

/// The box of an image that stands on the line, `offset` points above it.
PangoAttribute* boxOf(CGSize size, double offset, const CGImage* image) {
  const PangoRectangle box = {.x = 0,
                              .y = -pangoUnits(size.height + offset),
                              .width = pangoUnits(size.width),
                              .height = pangoUnits(size.height)};
  return pango_attr_shape_new_with_data(&box, &box, const_cast<CGImage*>(image), nullptr, nullptr);
}

PangoDirection directionOf(const NSAttributedString& text) {
  const auto& runs = text.runs();
  const auto found = std::ranges::find_if(runs, [](const NSAttributedString::Run& run) {
    return run.attributes.writingDirection != NSWritingDirection::natural;
  });
  if (found == runs.end()) return PANGO_DIRECTION_NEUTRAL;
  return found->attributes.writingDirection == NSWritingDirection::rightToLeft
             ? PANGO_DIRECTION_RTL
             : PANGO_DIRECTION_LTR;
}

/// Pango turns left and right round by itself only where it finds the direction by itself.
PangoAlignment alignmentOf(const NSAttributedString& text, NSTextAlignment alignment) {
  if (alignment == NSTextAlignment::center) return PANGO_ALIGN_CENTER;
  return directionOf(text) == PANGO_DIRECTION_RTL ? PANGO_ALIGN_RIGHT : PANGO_ALIGN_LEFT;
}

class PangoTextLayout final : public TextLayout {
 public:
  PangoTextLayout(const NSAttributedString& text, const TextLayoutOptions& options)
      : context_(pango_font_map_create_context(threadFontMap())), isEmpty_(text.isEmpty()) {
    setUpContext(directionOf(text));
    layout_.reset(pango_layout_new(context_.get()));
    pango_layout_set_auto_dir(layout_.get(), directionOf(text) == PANGO_DIRECTION_NEUTRAL);
    setText(text, options.scale);
    if (options.maximumWidth) {
      pango_layout_set_width(layout_.get(), pangoUnits(std::max(0.0, *options.maximumWidth)));
      pango_layout_set_wrap(layout_.get(), PANGO_WRAP_WORD_CHAR);
    }
    pango_layout_set_alignment(layout_.get(), alignmentOf(text, options.alignment));
  }

  [[nodiscard]] CGSize size() const override {
    const PangoRectangle box = logicalBox();
    return {.width = points(box.width), .height = points(box.height)};
  }

  [[nodiscard]] double baseline() const override {
    return isEmpty_ ? 0 : points(pango_layout_get_baseline(layout_.get()));
  }

  [[nodiscard]] std::size_t lineCount() const override {
    return isEmpty_ ? 0 : static_cast<std::size_t>(pango_layout_get_line_count(layout_.get()));
  }

  void draw(CGContext& target, CGPoint origin) override {
    if (isEmpty_) return;
    target_ = &static_cast<CairoContext&>(target);
    cairo_t* const cairo = target_->cairo();
    const double alpha = target_->alpha();
    const SavedGState saved(target);
    target.setAlpha(1);
    if (alpha < 1) cairo_push_group(cairo);
    // Lines that stand apart from the left edge, in the middle or at the right, begin behind it.
    cairo_move_to(cairo, origin.x - points(logicalBox().x), origin.y);
    pango_cairo_show_layout(cairo, layout_.get());
    if (alpha >= 1) return;
    cairo_pop_group_to_source(cairo);
    cairo_paint_with_alpha(cairo, alpha);
  }

 private:
  void setUpContext(PangoDirection direction) {
    const FontOptions options(cairo_font_options_create());
    cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
    // Unhinted, a text is as wide at every scale as at any other.
    cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
    pango_cairo_context_set_font_options(context_.get(), options.get());
    pango_context_set_round_glyph_positions(context_.get(), FALSE);
    pango_cairo_context_set_shape_renderer(context_.get(), drawAttachment, this, nullptr);
    pango_context_set_base_dir(
        context_.get(), direction == PANGO_DIRECTION_NEUTRAL ? PANGO_DIRECTION_LTR : direction);
  }

  void setText(const NSAttributedString& text, double scale) {
    const Attributes attributes(pango_attr_list_new());
    guint position = 0;
    for (const NSAttributedString::Run& run : text.runs()) {
      constexpr guint placeholderBytes = 3;  // U+FFFC in UTF-8
      const guint end =
          position + (run.attachment ? placeholderBytes : static_cast<guint>(run.text.size()));
      const auto add = [&](PangoAttribute* attribute) {
        attribute->start_index = position;
        attribute->end_index = end;
        pango_attr_list_insert(attributes.get(), attribute);
      };
      const auto& [font, color, baselineOffset, direction] = run.attributes;
      add(pango_attr_font_desc_new(fontOf(font).get()));
      if (run.attachment) {
        images_.push_back(run.attachment->image(scale));
        const double raised = baselineOffset - run.attachment->descent();
        add(boxOf(run.attachment->size(), raised, images_.back().get()));
      } else {
        add(pango_attr_foreground_new(channel(color.red), channel(color.green),
                                      channel(color.blue)));
        // No alpha would mean opaque.
        add(pango_attr_foreground_alpha_new(std::max<guint16>(1, channel(color.alpha))));
        if (baselineOffset != 0) add(pango_attr_rise_new(pangoUnits(baselineOffset)));
      }
      position = end;
    }
    std::string all = text.string();
    std::ranges::replace(all, '\0', ' ');  // Pango takes one for the end of the text
    pango_layout_set_text(layout_.get(), all.data(), static_cast<int>(all.size()));
    pango_layout_set_attributes(layout_.get(), attributes.get());
  }

  [[nodiscard]] PangoRectangle logicalBox() const {
    PangoRectangle box = {};
    if (!isEmpty_) pango_layout_get_extents(layout_.get(), nullptr, &box);
    return box;
  }

  static void drawAttachment(cairo_t* cairo, PangoAttrShape* shape, gboolean onlyPath,
                             gpointer self) {
    const auto* image = static_cast<const CGImage*>(shape->data);
    if (image == nullptr || onlyPath != FALSE) return;
    double x = 0;
    double y = 0;
    cairo_get_current_point(cairo, &x, &y);
    const PangoRectangle& box = shape->logical_rect;
    static_cast<PangoTextLayout*>(self)->target_->draw(
        *image, {.origin = {x + points(box.x), y + points(box.y)},
                 .size = {points(box.width), points(box.height)}});
  }

  Object<PangoContext> context_;
  Object<PangoLayout> layout_;
  std::vector<std::shared_ptr<const CGImage>> images_;
  bool isEmpty_;
  CairoContext* target_ = nullptr;  // while drawing
};

}  // namespace

std::unique_ptr<TextLayout> layOut(const NSAttributedString& text,
                                   const TextLayoutOptions& options) {
  return std::make_unique<PangoTextLayout>(text, options);
}

}  // namespace platform
