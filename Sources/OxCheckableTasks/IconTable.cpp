#include "OxCheckableTasks/IconTable.h"

#include "Foundation/Environment.h"
#include "Foundation/JSON.h"
#include "Foundation/NSFileManager.h"

#include <array>
#include <mutex>
#include <utility>

namespace velloro {
namespace {

/// As the file has it: the font's glyphs by the icons' names, font by font.
using GlyphsByFont = std::map<std::string, std::map<std::string, std::string>>;

struct IconFile {
  GlyphsByFont icons;
  GlyphsByFont symbols;

  static constexpr auto codingKeys =
      keys(key("icons", &IconFile::icons), key("symbols", &IconFile::symbols));
};

auto byName(const GlyphsByFont& glyphsByFont) {
  std::map<std::string, IconTable::Glyph, std::less<>> glyphs;
  for (const auto& [font, names] : glyphsByFont) {
    for (const auto& [name, glyph] : names) glyphs[name] = {.font = font, .name = glyph};
  }
  return glyphs;
}

template <typename Glyphs>
std::optional<IconTable::Glyph> found(const Glyphs& glyphs, std::string_view name) {
  const auto entry = glyphs.find(name);
  if (entry == glyphs.end()) return std::nullopt;
  return entry->second;
}

}  // namespace

const IconTable& IconTable::shared() {
  // Never destroyed: images are drawn in the background until the very end.
  static auto* mutex = new std::mutex;
  static auto* tables = new std::map<std::filesystem::path, IconTable>;
  const auto file = Environment::current().directories().resources / "Icons.json";
  const std::scoped_lock lock(*mutex);
  return tables->try_emplace(file, file).first->second;
}

IconTable::IconTable(const std::filesystem::path& file) {
  const auto json = NSFileManager::contents(file);
  if (!json) {
    Environment::current().report(json.error()->localizedDescription());
    return;
  }
  try {
    const auto content = JSONDecoder{}.decode<IconFile>(*json);
    icons_ = byName(content.icons);
    symbols_ = byName(content.symbols);
  } catch (const DecodingError& error) {
    Environment::current().report(file.string() + ": " + error.localizedDescription());
  }
}

std::optional<IconTable::Glyph> IconTable::icon(IconManagerIcon icon) const {
  return found(icons_, rawValue(icon));
}

std::optional<IconTable::Glyph> IconTable::symbol(std::string_view name) const {
  return found(symbols_, name);
}

}  // namespace velloro
