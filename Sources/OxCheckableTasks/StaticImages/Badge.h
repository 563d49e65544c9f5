#pragma once

#include "Foundation/Coding/RawValue.h"
#include "Foundation/Values/Geometry.h"
#include "OxCheckableTasks/Icons/IconDisplayRepresentation.h"
#include "OxKit/OxCodableColor.h"

#include <optional>
#include <string>

namespace velloro {

/// Where a badge sits on a ring: with its middle on the track, or inside the ring.
enum class BadgePosition {
  topLeading,
  topTrailing,
  bottomLeading,
  bottomTrailing,
  topLeadingInside,
  topTrailingInside,
  bottomLeadingInside,
  bottomTrailingInside,
};

constexpr auto rawValues(std::type_identity<BadgePosition>) {
  return caseNames<BadgePosition::bottomTrailingInside>();
}

struct BadgeContent {
  IconDisplayRepresentation displayRepresentation;
  std::optional<std::string> monogramFontName = {};

  bool operator==(const BadgeContent&) const = default;
};

/// A small disc on a ring, with something in it.
struct Badge {
  std::optional<BadgeContent> content = {};
  BadgePosition position = BadgePosition::topTrailing;
  double normalizedBadgeDiameter = 0.25;   ///< Per width of the ring.
  double normalizedContentDiameter = 0.6;  ///< Of the content per width of the badge; at most 1.
  OxCodableColor contentColor = {};
  OxCodableColor badgeColor = {};
  std::optional<OxCodableColor> shadowColor = {};

  bool operator==(const Badge&) const = default;

  /// The square round the badge, on a surface whose y grows upwards.
  [[nodiscard]] CGRect frame(CGRect taskFrame, double trackWidth) const;
  [[nodiscard]] static CGRect frame(CGRect taskFrame, double trackWidth, double diameter,
                                    BadgePosition position);
};

/// What a badge has room for: of more than two letters the first and the last.
///
///     normalizedMonogram("ABCD");    // "AD"
[[nodiscard]] std::string normalizedMonogram(std::string_view monogram);

}  // namespace velloro
