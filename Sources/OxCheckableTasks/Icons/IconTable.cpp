#include "OxCheckableTasks/Icons/IconTable.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/Environment.h"
#include "Foundation/Values/Hasher.h"

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
  std::map<std::string, std::string> drawings;
  std::map<std::string, double> outlineWidths;  // by the font

  static constexpr auto codingKeys =
      keys(key("icons", &IconFile::icons), key("symbols", &IconFile::symbols),
           key("drawings", &IconFile::drawings), key("outlineWidths", &IconFile::outlineWidths));
};

auto byName(const GlyphsByFont& glyphsByFont, const std::map<std::string, double>& widths) {
  IconTable::Glyphs glyphs;
  for (const auto& [font, names] : glyphsByFont) {
    const auto width = widths.find(font);
    const double outlineWidth = width != widths.end() ? width->second : 0;
    for (const auto& [name, glyph] : names) {
      glyphs[name] = {.font = font, .name = glyph, .outlineWidth = outlineWidth};
    }
  }
  return glyphs;
}

template <typename Value>
std::optional<Value> found(const std::map<std::string, Value, std::less<>>& table,
                           std::string_view name) {
  const auto entry = table.find(name);
  if (entry == table.end()) return std::nullopt;
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
  Hasher hasher;
  hasher.combine(*json);
  fingerprint_ = hasher.finalize();
  try {
    const auto content = JSONDecoder{}.decode<IconFile>(*json);
    icons_ = byName(content.icons, content.outlineWidths);
    symbols_ = byName(content.symbols, content.outlineWidths);
    drawings_.insert(content.drawings.begin(), content.drawings.end());
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

std::optional<std::string> IconTable::drawing(IconManagerIcon icon) const {
  return found(drawings_, rawValue(icon));
}

}  // namespace velloro
