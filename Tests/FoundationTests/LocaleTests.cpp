#include "Foundation/Process/VirtualEnvironment.h"
#include "Foundation/Text/Locale.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

TEST(Locale, WritesAsItsPlaceDoes) {
  struct Case {
    const char* identifier;
    int firstWeekday;
    bool uses24HourTime, isRightToLeft;
    std::string languageAndSigns;
  };
  const Case cases[] = {{"en_US", 1, false, false, "en .%+-"},
                        {"de_DE", 2, true, false, "de ,%+-"},
                        {"ar_EG", 7, false, true, "ar \u066B\u066A\u061C\u061C+\u061C-"},
                        {"sv_SE", 2, true, false, "sv ,%+\u2212"},
                        {"ja_JP", 1, true, false, "ja .%+-"},
                        {"en_US_POSIX", 1, false, false, "en .%+-"},
                        // What is unknown falls back to English; the place still counts.
                        {"xx_DE", 2, true, false, "en ,%+-"},
                        {"no locale at all", 1, false, false, "en .%+-"},
                        {"", 1, false, false, "en .%+-"}};
  for (const Case& c : cases) {
    const Locale locale = Locale::fromIdentifier(c.identifier);
    EXPECT_EQ(locale.firstWeekday(), c.firstWeekday) << c.identifier;
    EXPECT_EQ(locale.uses24HourTime(), c.uses24HourTime) << c.identifier;
    EXPECT_EQ(locale.isRightToLeft(), c.isRightToLeft) << c.identifier;
    EXPECT_EQ(locale.languageCode() + " " + locale.decimalSeparator() + locale.percentSign() +
                  locale.plusSign() + locale.minusSign(),
              c.languageAndSigns);
  }
}

TEST(Locale, ChangesCaseAsItsLanguageDoes) {
  struct Case {
    const char *identifier, *text, *upper, *lower, *capitalized;
  };
  const Case cases[] = {
      {"en_US", "it's 2 hrs, 1h", "IT'S 2 HRS, 1H", "it's 2 hrs, 1h", "It's 2 Hrs, 1h"},
      {"tr_TR", "istanbul IS", "İSTANBUL IS", "istanbul ıs", "İstanbul Is"},
      {"de_DE", "straße", "STRASSE", "straße", "Straße"},
      {"nl_NL", "ijsland", "IJSLAND", "ijsland", "IJsland"},
      {"el_GR", "Ώρα ΟΔΟΣ", "ΩΡΑ ΟΔΟΣ", "ώρα οδος", "Ώρα Οδος"}};
  for (const Case& c : cases) {
    const Locale locale = Locale::fromIdentifier(c.identifier);
    EXPECT_EQ(locale.uppercased(c.text), c.upper);
    EXPECT_EQ(locale.lowercased(c.text), c.lower);
    EXPECT_EQ(locale.capitalized(c.text), c.capitalized);
  }
}

TEST(Locale, IsTheSameInEverySpelling) {
  const Locale german = Locale::fromIdentifier("de-de");
  EXPECT_EQ(german.identifier(), "de_DE");
  VirtualEnvironment environment;
  environment.setLocale("de_DE");
  EXPECT_EQ(Locale::current(), german);
}

TEST(Locale, NamesCharacters) {
  EXPECT_EQ(unicodeName(U'\U0001F600'), "GRINNING FACE");
  EXPECT_EQ(unicodeName(U'\n'), std::nullopt);
}

}  // namespace
}  // namespace platform
