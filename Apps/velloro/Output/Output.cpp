#include "velloro/Output/Output.h"

#include "Foundation/Formatting/NSDateFormatter.h"
#include "Foundation/Process/Terminal.h"
#include "Foundation/Text/Locale.h"
#include "Foundation/Text/String.h"
#include "VelloroCore/Appearance/Theme.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace velloro {

void print(std::string_view text) {
  printBytes(terminalLines(text));
}

void printBytes(std::string_view bytes) {
  std::fwrite(bytes.data(), 1, bytes.size(), stdout);
}

std::string instantText(Date date) {
  return NSDateFormatter::withFormat("uuuu-MM-dd HH:mm:ss ZZZZZ", {.locale = Locale::posix()})
      .string(date);
}

std::size_t columns(std::string_view text) {
  const bool isASCII = std::ranges::all_of(text, [](unsigned char c) { return c < 0x80; });
  return isASCII ? text.size() : graphemes(text).size();
}

std::string padded(std::string_view text, std::size_t width) {
  const std::size_t taken = columns(text);
  return std::string(text) + std::string(taken < width ? width - taken : 0, ' ');
}

std::string aligned(const std::vector<std::vector<std::string>>& rows) {
  std::vector<std::size_t> widths;
  for (const auto& row : rows) {
    widths.resize(row.size());
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], columns(row[i]));
  }
  std::string text;
  for (const auto& row : rows) {
    for (std::size_t i = 0; i + 1 < row.size(); ++i) text += padded(row[i], widths[i]) + "  ";
    text += row.back();
    text.erase(text.find_last_not_of(' ') + 1);
    text += "\n";
  }
  return text;
}

std::string colored(std::string_view text, const std::optional<OxCodableColor>& color) {
  static const bool hasColors = standardOutputHasColors();
  if (!hasColors) return std::string(text);
  const OxCodableColor chosen = color.value_or(Theme::hero.color());
  const auto level = [](double share) { return static_cast<int>(std::lround(share * 255)); };
  return stringWithFormat("\x1b[38;2;%d;%d;%dm", level(chosen.r), level(chosen.g),
                          level(chosen.b)) +
         std::string(text) + "\x1b[0m";
}

}  // namespace velloro
