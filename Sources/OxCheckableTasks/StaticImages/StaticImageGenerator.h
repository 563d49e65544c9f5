#pragma once

#include "Foundation/Values/Geometry.h"
#include "OxCache/DataCacheKey.h"
#include "OxCheckableTasks/Icons/IconVisualRepresentation.h"
#include "OxCheckableTasks/Ring/CheckableTaskConstants.h"
#include "OxCheckableTasks/Ring/ColorProfile.h"
#include "OxCheckableTasks/Ring/FillDirection.h"
#include "OxCheckableTasks/StaticImages/Badge.h"
#include "UIKit/NSAttributedString.h"
#include "UIKit/UIImage.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace platform {
class CGContext;
}

/// Draws a task's ring to an image that is kept, for lists, widgets and sheets to share.
///
///     StaticImageGenerator::Request request{.size = {44, 44}, .scale = 2};
///     request.image = {.icon = IconVisualRepresentation::icon(IconManagerIcon::book)};
///     request.layoutProperties.progress = 0.5;
///     const UIImage image = request.createSync();
namespace velloro::StaticImageGenerator {

/// A line of text in the upper or lower part of the ring.
struct Caption {
  enum class Size { standard, large };

  std::optional<std::string> text = {};
  std::vector<IconVisualRepresentation> leadingIcons = {};
  std::vector<IconVisualRepresentation> trailingIcons = {};
  std::string fontName = {};  ///< Empty, or not installed: the system font.
  Size size = Size::standard;
  NSWritingDirection writingDirection = NSWritingDirection::natural;

  bool operator==(const Caption&) const = default;
};

constexpr auto rawValues(std::type_identity<Caption::Size>) {
  return caseNames<Caption::Size::large>();
}

struct Request {
  /// What is shown in the middle.
  struct Image {
    std::optional<IconVisualRepresentation> icon = {};
    bool dynamic = false;               ///< The icon's image changes with the task's state.
    std::optional<UIImage> image = {};  ///< To be drawn in the icon's place.
    IconVisualRepresentation::DisplayProperties displayProperties = {};

    struct Circle {
      CGSize size;
      double scale = 1;
      std::vector<OxCodableColor> backgroundColors;
      OxCodableColor maskColor;  ///< Clear cuts the icon out of the disc.
      bool useCache = true;
      double iconPaddingScale = CheckableTaskConstants::defaultIconPaddingScale;
    };
    /// The icon on a disc, without a ring.
    [[nodiscard]] UIImage circled(const Circle& circle) const;
  };

  struct LayoutProperties {
    double iconPaddingScale = CheckableTaskConstants::defaultIconPaddingScale;
    ColorProfile colors = ColorProfile::defaultUnchecked();
    std::optional<Caption> bottomCaption = {};
    std::optional<Caption> topCaption = {};
    int numSegments = 1;
    double normalizedNotchThickness = CheckableTaskConstants::normalizedNotchThickness;
    double progress = 0;
    double subProgress = 0;
    double trackProgress = 1;
    FillDirection fillDirection = FillDirection::clockwise;
    double normalizedTrackWidth = CheckableTaskConstants::normalizedTrackWidth;  ///< 0: no track.
    bool useRoundedLineCaps = false;
    OxCodableColor backgroundColor = {.a = 0};
    double inset = 0;  ///< Points on each side.
    std::vector<Badge> badges = {};
  };

  CGSize size = {};  ///< Points.
  double scale = 1;  ///< Pixels per point.
  bool useCache = true;
  std::optional<Image> image = {};
  LayoutProperties layoutProperties = {};

  [[nodiscard]] double alpha() const { return layoutProperties.colors.alpha(); }
  /// What all of the image depends on. Absent for what is not to be kept: without `useCache`,
  /// without an icon, and for an icon that is drawn from a task's state.
  [[nodiscard]] std::optional<ImageCacheKey> cacheKey(std::string_view identifier) const;

  [[nodiscard]] UIImage createSync() const;
  /// Draws in the background and hands the image out on the main queue.
  void createAsync(std::function<void(UIImage)> completion) const;
};

/// The image from the cache, else drawn and put there. Without an image where no surface is to be
/// had.
[[nodiscard]] UIImage create(const Request& request);
[[nodiscard]] UIImage createNoCache(const Request& request);
/// The image's PNG file in the cache, drawn where it is not there yet. Absent for an image that is
/// not kept, and for one that can't be drawn or written.
[[nodiscard]] std::optional<std::filesystem::path> imageFile(const Request& request);
/// Where that file is, or would be; draws and writes nothing.
[[nodiscard]] std::optional<std::filesystem::path> imageFilePath(const Request& request);
/// Draws on a surface of pixels whose y grows downwards.
void drawInto(CGContext& context, CGRect frame, const Request& request);

}  // namespace velloro::StaticImageGenerator
