#pragma once

#include "OxCheckableTasks/IconManagerIcon.h"
#include "OxKit/Platform.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace velloro {

/// Which glyph of which installed font serves as the artwork of an icon or of a system symbol:
/// `Icons.json` in the resources.
///
///     IconTable::shared().icon(IconManagerIcon::water_glass);    // {"Material Design Icons",
///     "cup"}
///
/// A table that can't be read is reported once, and is empty.
class IconTable {
 public:
  struct Glyph {
    std::string font;  ///< The family.
    std::string name;  ///< In the font; or a code point, "U+1F3B8".

    bool operator==(const Glyph&) const = default;
  };

  /// That of the environment's resources; read at first use, and kept.
  [[nodiscard]] static const IconTable& shared();
  explicit IconTable(const std::filesystem::path& file);

  /// Absent where there is no artwork.
  [[nodiscard]] std::optional<Glyph> icon(IconManagerIcon icon) const;
  [[nodiscard]] std::optional<Glyph> symbol(std::string_view name) const;

 private:
  using Glyphs = std::map<std::string, Glyph, std::less<>>;

  Glyphs icons_;
  Glyphs symbols_;
};

}  // namespace velloro
