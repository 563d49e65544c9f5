#include "OxCheckableTasks/StaticImages/StaticImageGenerator.h"

#include "CoreGraphics/CGContext.h"
#include "Foundation/Dispatch/DispatchQueue.h"
#include "Foundation/Files/NSFileManager.h"
#include "OxCache/ImageCache.h"
#include "OxCheckableTasks/Icons/ArtworkVersion.h"
#include "OxCheckableTasks/Icons/IconArtwork.h"
#include "OxCheckableTasks/Ring/CheckableTaskRoundCircler.h"
#include "OxCheckableTasks/Ring/SegmentRenderer.h"
#include "OxCheckableTasks/StaticImages/BadgeRenderer.h"
#include "OxCheckableTasks/StaticImages/CaptionText.h"

#include <algorithm>
#include <cmath>

namespace velloro::StaticImageGenerator {
namespace {

constexpr OxCodableColor clear{.a = 0};
constexpr double top = 270;
constexpr double symbolResizeFactor = 0.9;
constexpr double standardCaptions = 8.5;  // font sizes per width
constexpr double largeCaptions = 6;

/// The measures of a request on a surface, in pixels.
struct Layout {
  CGRect frame;
  CGRect ring;                       ///< The frame without the inset.
  std::optional<double> trackWidth;  ///< Absent without a track.

  Layout(CGRect whole, const Request& request) : frame(whole) {
    const auto& properties = request.layoutProperties;
    const double inset = properties.inset * request.scale;
    ring = {
        .origin = {.x = whole.origin.x + inset, .y = whole.origin.y + inset},
        .size = {.width = whole.size.width - 2 * inset, .height = whole.size.height - 2 * inset}};
    if (properties.normalizedTrackWidth != 0) {
      trackWidth = properties.normalizedTrackWidth * ring.size.width;
    }
  }

  [[nodiscard]] double radius() const { return std::min(ring.size.width, ring.size.height) / 2; }
  [[nodiscard]] double radiusAtTrackCenter() const { return radius() - trackWidth.value_or(0) / 2; }
  [[nodiscard]] CGPoint center() const {
    return {.x = frame.origin.x + frame.size.width / 2,
            .y = frame.origin.y + frame.size.height / 2};
  }
};

class Drawing {
 public:
  Drawing(CGContext& context, CGRect frame, const Request& request)
      : context_(context),
        request_(request),
        properties_(request.layoutProperties),
        layout_(frame, request) {}

  void draw() {
    drawBackground();
    if (layout_.trackWidth) drawTrack(*layout_.trackWidth);
    drawCaptions();
    drawIcon();
    if (layout_.trackWidth) drawBadges(*layout_.trackWidth);
  }

 private:
  void drawBackground() {
    if (properties_.backgroundColor.a != 0) {
      context_.setFillColor(properties_.backgroundColor);
      context_.fill(layout_.frame);
    }
    CheckableTaskRoundCircler circler;
    const ColorProfile& colors = properties_.colors;
    const CGRect disc = layout_.trackWidth ? discBelowTrack(layout_.ring, colors, 1) : layout_.ring;
    circler.drawBackground(context_, disc, layout_.trackWidth, colors.centerFill);
  }

  void drawTrack(double width) {
    CheckableTaskRoundCircler::drawTrack(
        context_, {.center = layout_.center(),
                   .radius = layout_.radiusAtTrackCenter(),
                   .width = width,
                   .fillDirection = properties_.fillDirection,
                   .progress = properties_.progress,
                   .trackProgress = properties_.trackProgress,
                   .fillColor = properties_.colors.trackFill,
                   .backgroundColor = properties_.colors.trackBackground,
                   .fadedBackgroundColor = properties_.colors.trackFadedBackground,
                   .useRoundedLineCaps = properties_.useRoundedLineCaps});
    drawSubProgress(width);
    if (properties_.numSegments >= 2) drawNotches(width);
  }

  void drawSubProgress(double width) {
    const auto fill = calculateSubProgressFillProperties(
        CheckableTaskSubProgressStyle::fillLinear(), properties_.subProgress,
        {.radius = layout_.radiusAtTrackCenter() + width / 2,
         .trackWidth = width,
         .fillDirection = properties_.fillDirection},
        top);
    if (!fill) return;
    CheckableTaskRoundCircler::strokeSubProgress(context_, layout_.center(), *fill,
                                                 properties_.colors.trackFill);
  }

  void drawNotches(double width) {
    const SavedGState saved(context_);
    flip();
    SegmentRenderer::drawSegments(context_,
                                  {.center = layout_.center(),
                                   .trackWidth = width,
                                   .radiusAtTrackCenter = layout_.radiusAtTrackCenter(),
                                   .numSegments = properties_.numSegments,
                                   .progress = properties_.progress,
                                   .fillDirection = properties_.fillDirection},
                                  properties_.normalizedNotchThickness * layout_.ring.size.width,
                                  properties_.colors.notch);
  }

  /// From here on y grows upwards.
  void flip() {
    context_.translateBy(0, 2 * layout_.frame.origin.y + layout_.frame.size.height);
    context_.scaleBy(1, -1);
  }

  void drawCaptions() {
    const CaptionRing ring{.frame = layout_.frame,
                           .radius = layout_.radius(),
                           .trackWidth = layout_.trackWidth.value_or(0),
                           .iconHeight = properties_.iconPaddingScale * layout_.ring.size.height};
    const ColorProfile& colors = properties_.colors;
    if (const auto& caption = properties_.bottomCaption) {
      drawBottomCaption(context_, line(*caption, colors.bottomCaption), ring);
    }
    if (const auto& caption = properties_.topCaption) {
      drawTopCaption(context_, line(*caption, colors.topCaption), ring);
    }
  }

  [[nodiscard]] CaptionLine line(const Caption& caption, const OxCodableColor& color) const {
    const double perWidth = caption.size == Caption::Size::large ? largeCaptions : standardCaptions;
    const auto inked = [&](const std::vector<IconVisualRepresentation>& icons) {
      std::vector<CaptionLine::Icon> result;
      for (const auto& icon : icons) result.push_back({icon, color});
      return result;
    };
    return {.leadingIcons = inked(caption.leadingIcons),
            .text = caption.text.value_or(""),
            .trailingIcons = inked(caption.trailingIcons),
            .attributes = {.font = {.name = caption.fontName,
                                    .pointSize = layout_.frame.size.width / perWidth},
                           .color = color,
                           .writingDirection = caption.writingDirection}};
  }

  void drawIcon() {
    const double scale = request_.scale;
    const double perPoint = properties_.iconPaddingScale / scale;
    const CGSize box{.width = perPoint * layout_.ring.size.width,
                     .height = perPoint * layout_.ring.size.height};
    const UIImage image = iconImage(box);
    if (!image.cgImage) return;
    const CGSize points = calculateImageSize(image.size(), box);
    const CGSize size{.width = points.width * scale, .height = points.height * scale};
    const CGRect rect = iconFrame(size, layout_.frame);
    const SavedGState saved(context_);
    if (properties_.colors.imageMask.a == 0) {
      context_.setBlendMode(CGBlendMode::destinationOut);
      return context_.draw(*image.cgImage, rect);
    }
    context_.setFillColor(properties_.colors.imageMask);
    context_.fill(*image.cgImage, rect);
  }

  /// For a box in points. Emoji and monograms have none unless their request brings an image of its
  /// own: what is drawn here is a mask for one colour.
  [[nodiscard]] UIImage iconImage(CGSize box) const {
    if (!request_.image) return {};
    const Request::Image& image = *request_.image;
    if (image.image) {
      return applyOrientationAndOverlay(*image.image, image.displayProperties, OxCodableColor{});
    }
    if (!image.icon) return {};
    using enum IconVisualRepresentation::EncodingPrefix;
    const auto kind = image.icon->kind();
    if (kind != icon && kind != sfSymbol) return {};
    const double side = std::min(box.width, box.height);
    const IconDisplayRepresentation representation{*image.icon, image.displayProperties};
    return IconArtwork{.representation = representation,
                       .side = kind == sfSymbol ? side * symbolResizeFactor : side,
                       .scale = request_.scale}
        .image();
  }

  /// The finished image fades as a whole, badges included.
  void drawBadges(double trackWidth) {
    for (const Badge& badge : properties_.badges) {
      const auto drawing = BadgeDrawing::of(badge, {.ring = layout_.ring,
                                                    .trackWidth = trackWidth,
                                                    .surface = layout_.frame,
                                                    .circleColor = badge.badgeColor,
                                                    .contentColor = badge.contentColor});
      drawBadgeCircle(context_, drawing);
      drawBadgeContent(context_, drawing);
    }
  }

  CGContext& context_;
  const Request& request_;
  const Request::LayoutProperties& properties_;
  Layout layout_;
};

UIImage withAlpha(const UIImage& image, double alpha) {
  const auto context = CGContext::bitmap(image.cgImage->width(), image.cgImage->height());
  if (!context) return {};
  context->setAlpha(alpha);
  context->draw(*image.cgImage, {.origin = {},
                                 .size = {.width = static_cast<double>(image.cgImage->width()),
                                          .height = static_cast<double>(image.cgImage->height())}});
  return {.cgImage = context->makeImage(), .scale = image.scale};
}

}  // namespace

namespace {

constexpr std::string_view cacheIdentifier = "sig";

ImageCache& imagesOfThisArtwork() {
  ImageCache& cache = ImageCache::shared();
  const int version = artworkVersion();
  if (cache.version() != version) cache.setVersion(version, false);
  return cache;
}

}  // namespace

std::optional<std::filesystem::path> imageFilePath(const Request& request) {
  const auto key = request.cacheKey(cacheIdentifier);
  return key ? std::optional(imagesOfThisArtwork().imageUrl(*key)) : std::nullopt;
}

std::optional<std::filesystem::path> imageFile(const Request& request) {
  const auto file = imageFilePath(request);
  if (!file || NSFileManager::exists(*file)) return file;
  const UIImage image = request.createSync();
  if (NSFileManager::exists(*file)) return file;
  // The image was in memory alone, or the cache keeps no files.
  const auto png = image.cgImage ? image.cgImage->pngData() : std::nullopt;
  if (!png || !NSFileManager::createDirectory(file->parent_path())) return std::nullopt;
  return NSFileManager::write(png->text(), *file) ? file : std::nullopt;
}

UIImage create(const Request& request) {
  const auto key = request.cacheKey(cacheIdentifier);
  if (!key) return createNoCache(request);
  ImageCache& cache = imagesOfThisArtwork();
  if (auto image = cache.image(*key, true)) return *image;
  UIImage image = createNoCache(request);
  if (image.cgImage) cache.save(image, *key, true);
  return image;
}

UIImage createNoCache(const Request& request) {
  const double width = std::round(request.size.width * request.scale);
  const double height = std::round(request.size.height * request.scale);
  if (!(width >= 1) || !(height >= 1)) return {};
  const auto context =
      CGContext::bitmap(static_cast<std::size_t>(width), static_cast<std::size_t>(height));
  if (!context) return {};
  drawInto(*context, {.origin = {}, .size = {.width = width, .height = height}}, request);
  const UIImage image{.cgImage = context->makeImage(), .scale = request.scale};
  return request.layoutProperties.colors.isFaded ? withAlpha(image, request.alpha()) : image;
}

void drawInto(CGContext& context, CGRect frame, const Request& request) {
  Drawing(context, frame, request).draw();
}

UIImage Request::createSync() const {
  return create(*this);
}

void Request::createAsync(std::function<void(UIImage)> completion) const {
  DispatchQueue::global(QualityOfService::userInteractive)
      .async([request = *this, completion = std::move(completion)]() mutable {
        DispatchQueue::main().async(
            [image = create(request), completion = std::move(completion)] { completion(image); });
      });
}

UIImage Request::Image::circled(const Circle& circle) const {
  Request request{
      .size = circle.size, .scale = circle.scale, .useCache = circle.useCache, .image = *this};
  request.layoutProperties = {.iconPaddingScale = circle.iconPaddingScale,
                              .colors = {.bottomCaption = clear,
                                         .topCaption = clear,
                                         .trackFill = clear,
                                         .trackBackground = clear,
                                         .trackFadedBackground = clear,
                                         .centerFill = circle.backgroundColors,
                                         .imageMask = circle.maskColor,
                                         .timer = clear,
                                         .notch = clear,
                                         .badge = clear,
                                         .badgeContent = clear},
                              .normalizedNotchThickness = 0,
                              .normalizedTrackWidth = 0};
  return create(request);
}

}  // namespace velloro::StaticImageGenerator
