#include "VelloroCore/Advice/VisualRepresentationIntent.h"

#include "OxCheckableTasks/Icons/IconManagerIconCases.h"

#include <algorithm>
#include <cctype>
#include <string>

namespace velloro {
namespace {

using enum VisualRepresentationIntent;

struct Word {
  std::string_view text;
  VisualRepresentationIntent intent;
};

constexpr Word words[] = {
    {"antibiotic", medical}, {"antibiotics", medical}, {"insulin", medical},
    {"medication", medical}, {"medications", medical}, {"medicine", medical},
    {"meds", medical},       {"pill", medical},        {"pills", medical},
    {"tablet", medical},     {"tablets", medical},     {"brush", hygiene},
    {"floss", hygiene},      {"shower", hygiene},      {"teeth", hygiene},
    {"calories", dietary},   {"diet", dietary},        {"fasting", dietary},
};

struct Icon {
  IconManagerIcon icon;
  VisualRepresentationIntent intent;
};

constexpr Icon icons[] = {
    {IconManagerIcon::pill, medical},       {IconManagerIcon::syringe, medical},
    {IconManagerIcon::shower, hygiene},     {IconManagerIcon::soap, hygiene},
    {IconManagerIcon::tooth, hygiene},      {IconManagerIcon::toothbrush, hygiene},
    {IconManagerIcon::wash_hands, hygiene},
};

bool isLetter(char c) {
  return static_cast<unsigned char>(c) >= 0x80 || std::isalpha(static_cast<unsigned char>(c)) != 0;
}

}  // namespace

VisualRepresentationIntent titleIntent(std::string_view title) {
  std::string word;
  for (std::size_t i = 0; i <= title.size(); ++i) {
    if (i < title.size() && isLetter(title[i])) {
      word += static_cast<char>(std::tolower(static_cast<unsigned char>(title[i])));
      continue;
    }
    const auto* const found = std::ranges::find(words, word, &Word::text);
    if (found != std::end(words)) return found->intent;
    word.clear();
  }
  return unknown;
}

VisualRepresentationIntent iconIntent(IconManagerIcon icon) {
  const auto* const found = std::ranges::find(icons, icon, &Icon::icon);
  return found != std::end(icons) ? found->intent : unknown;
}

}  // namespace velloro
