#include "CairoDrawing/Fonts.h"

#include "CairoDrawing/Free.h"
#include "Foundation/Values/Hasher.h"

#include <charconv>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string_view>
#include <system_error>

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include <pango/pangofc-fontmap.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

namespace platform {
namespace {

constexpr const char* rules = R"(<?xml version="1.0"?>
<fontconfig>
  <dir>/usr/share/fonts</dir>
  <dir>/usr/local/share/fonts</dir>
  <dir>/usr/share/python-qtawesome/fonts</dir>
  <dir prefix="xdg">fonts</dir>
  <dir>~/.fonts</dir>
  <cachedir prefix="xdg">fontconfig</cachedir>
  <cachedir>/var/cache/fontconfig</cachedir>
  <include>/usr/share/fontconfig/conf.avail/10-scale-bitmap-fonts.conf</include>
  <selectfont><rejectfont><glob>*/fonts/woff/*</glob></rejectfont></selectfont>
  <selectfont><rejectfont><glob>*/materialdesignicons-webfont/*</glob></rejectfont></selectfont>
  <alias binding="same">
    <family>emoji</family><prefer><family>Noto Color Emoji</family></prefer>
  </alias>
  <match target="pattern">
    <edit name="family" mode="append_last"><string>Inter</string></edit>
    <edit name="family" mode="append_last"><string>Noto Sans Arabic UI</string></edit>
    <edit name="family" mode="append_last"><string>DejaVu Sans</string></edit>
  </match>
</fontconfig>)";

FcConfig* makeConfig() {
  FcConfig* const made = FcConfigCreate();
  FcConfigParseAndLoadFromMemory(made, reinterpret_cast<const FcChar8*>(rules), FcFalse);
  return made;
}

FcConfig* config() {
  static FcConfig* const loaded = [] {
    FcConfig* const made = makeConfig();
    FcConfigBuildFonts(made);
    // Else Pango would load the machine's and the user's rules first.
    FcConfigSetCurrent(made);
    return made;
  }();
  return loaded;
}

using Face = std::unique_ptr<FT_FaceRec, Free<FT_Done_Face>>;
using FontPattern = std::unique_ptr<FcPattern, Free<FcPatternDestroy>>;
using FontList = std::unique_ptr<FcFontSet, Free<FcFontSetDestroy>>;
using FontFields = std::unique_ptr<FcObjectSet, Free<FcObjectSetDestroy>>;

/// Null when the family isn't installed.
Face openFace(FT_Library library, const std::string& family) {
  const FontPattern pattern(FcPatternCreate());
  FcPatternAddString(pattern.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(family.c_str()));
  const FontFields fields(FcObjectSetBuild(FC_FILE, FC_INDEX, nullptr));
  const FontList found(FcFontList(config(), pattern.get(), fields.get()));
  FcChar8* file = nullptr;
  int index = 0;
  if (found->nfont == 0 ||
      FcPatternGetString(found->fonts[0], FC_FILE, 0, &file) != FcResultMatch) {
    return nullptr;
  }
  FcPatternGetInteger(found->fonts[0], FC_INDEX, 0, &index);
  FT_Face face = nullptr;
  const auto* path = reinterpret_cast<const char*>(file);
  return Face(FT_New_Face(library, path, index, &face) == 0 ? face : nullptr);
}

/// 0 for a glyph that the font doesn't have.
FT_UInt glyphIndex(FT_Face face, const std::string& glyph) {
  if (!glyph.starts_with("U+")) return FT_Get_Name_Index(face, glyph.c_str());
  FT_ULong codePoint = 0;
  const char* end = glyph.data() + glyph.size();
  const auto read = std::from_chars(glyph.data() + 2, end, codePoint, 16);
  return read.ptr == end ? FT_Get_Char_Index(face, codePoint) : 0;
}

CGPath outlinePath(FT_Outline& outline) {
  const auto point = [](const FT_Vector* v) {
    return CGPoint{.x = static_cast<double>(v->x), .y = static_cast<double>(v->y)};
  };
  static constexpr auto at = point;
  static constexpr auto path = [](void* user) { return static_cast<CGPath*>(user); };
  const FT_Outline_Funcs pen = {
      .move_to = [](const FT_Vector* to, void* user) { return path(user)->move(at(to)), 0; },
      .line_to = [](const FT_Vector* to, void* user) { return path(user)->addLine(at(to)), 0; },
      .conic_to = [](const FT_Vector* control, const FT_Vector* to,
                     void* user) { return path(user)->addQuadCurve(at(control), at(to)), 0; },
      .cubic_to = [](const FT_Vector* a, const FT_Vector* b, const FT_Vector* to,
                     void* user) { return path(user)->addCurve(at(a), at(b), at(to)), 0; },
      .shift = 0,
      .delta = 0};
  CGPath drawn;
  FT_Outline_Decompose(&outline, &pen, &drawn);
  return drawn;
}

}  // namespace

PangoFontMap* threadFontMap() {
  using Map = std::unique_ptr<PangoFontMap, Free<g_object_unref>>;
  thread_local const Map map = [] {
    FcConfig* const rulesFirst = config();
    Map made(pango_cairo_font_map_new_for_font_type(CAIRO_FONT_TYPE_FT));
    pango_fc_font_map_set_config(PANGO_FC_FONT_MAP(made.get()), rulesFirst);
    return made;
  }();
  return map.get();
}

std::uint64_t fontsFingerprint() {
  namespace fs = std::filesystem;
  using Config = std::unique_ptr<FcConfig, Free<FcConfigDestroy>>;
  using Folders = std::unique_ptr<FcStrList, Free<FcStrListDone>>;
  Hasher hasher;
  hasher.combine(cairo_version(), pango_version());
  // A font that comes, goes or is replaced changes its folder; to open the fonts would take long.
  const auto add = [&](const fs::path& folder) {
    std::error_code lost;
    const auto changed = fs::last_write_time(folder, lost).time_since_epoch().count();
    if (!lost) hasher.combine(std::hash<std::string_view>{}(folder.native()), changed);
  };
  const Config unread(makeConfig());
  const Folders folders(FcConfigGetConfigDirs(unread.get()));
  while (const FcChar8* name = FcStrListNext(folders.get())) {
    const fs::path root(reinterpret_cast<const char*>(name));
    add(root);
    std::error_code gone;
    for (fs::recursive_directory_iterator item(root, gone), end; !gone && item != end;
         item.increment(gone)) {
      std::error_code lost;
      if (item->is_directory(lost)) add(item->path());
    }
  }
  return hasher.finalize();
}

std::optional<CGPath> fontGlyph(const std::string& family, const std::string& glyph) {
  FT_Library opened = nullptr;
  if (FT_Init_FreeType(&opened) != 0) return std::nullopt;
  const std::unique_ptr<FT_LibraryRec_, Free<FT_Done_FreeType>> library(opened);
  const Face face = openFace(opened, family);
  if (!face) return std::nullopt;
  const FT_UInt index = glyphIndex(face.get(), glyph);
  const bool loaded = index != 0 && FT_Load_Glyph(face.get(), index, FT_LOAD_NO_SCALE) == 0;
  if (!loaded || face->glyph->format != FT_GLYPH_FORMAT_OUTLINE) return std::nullopt;
  const CGPath path = outlinePath(face->glyph->outline);
  if (path.isEmpty()) return std::nullopt;
  const double unit = 1.0 / (face->ascender - face->descender);
  const double left = (1 - static_cast<double>(face->glyph->metrics.horiAdvance) * unit) / 2;
  return path.applying({.a = unit, .d = -unit, .tx = left, .ty = face->ascender * unit});
}

}  // namespace platform
