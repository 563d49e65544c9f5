#pragma once

#include "OxCheckableTasks/Icons/IconManagerIcon.h"
#include "OxKit/Platform.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace velloro {

/// The artwork of the icons and of the system symbols: `Icons.json` in the resources. Most are a
/// glyph of an installed font; what no font has is drawn by a few lines of our own.
///
///     IconTable::shared().icon(IconManagerIcon::tooth)->name;    // "tooth"
///     IconTable::shared().icon(IconManagerIcon::tooth)->font;    // "Material Design Icons"
///     IconTable::shared().drawing(IconManagerIcon::peas)->substr(0, 10);    // "M1.5 8c2 1"
///
/// A table that can't be read is reported once, and is empty.
class IconTable {
 public:
  struct Glyph {
    std::string font;  ///< The family.
    std::string name;  ///< In the font; or a code point, "U+1F3B8".
    /// How wide a line goes round the outline, in parts of the icon's side: a font of thin lines
    /// is made as heavy as the others.
    double outlineWidth = 0;

    bool operator==(const Glyph&) const = default;
  };
  using Glyphs = std::map<std::string, Glyph, std::less<>>;
  using Drawings = std::map<std::string, std::string, std::less<>>;

  /// That of the environment's resources; read at first use, and kept.
  [[nodiscard]] static const IconTable& shared();
  explicit IconTable(const std::filesystem::path& file);

  /// Absent where there is no artwork.
  [[nodiscard]] std::optional<Glyph> icon(IconManagerIcon icon) const;
  [[nodiscard]] std::optional<Glyph> symbol(std::string_view name) const;
  /// The path data (`CGPath::fromSVG`) of lines that are 2 wide, with round ends, in a box of 24 by
  /// 24. Absent for an icon that has a glyph, and where there is no artwork.
  [[nodiscard]] std::optional<std::string> drawing(IconManagerIcon icon) const;
  /// The same for two tables read from the same bytes, in every process.
  [[nodiscard]] std::uint64_t fingerprint() const { return fingerprint_; }
  // The whole table, by the names.

  [[nodiscard]] const Glyphs& icons() const { return icons_; }
  [[nodiscard]] const Glyphs& symbols() const { return symbols_; }
  [[nodiscard]] const Drawings& drawings() const { return drawings_; }

 private:
  Glyphs icons_;
  Glyphs symbols_;
  Drawings drawings_;
  std::uint64_t fingerprint_ = 0;
};

}  // namespace velloro
