#include "Foundation/Formatting/NSMeasurementFormatter.h"
#include "Foundation/Formatting/NSNumberFormatter.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Foundation/Text/String.h"
#include "Foundation/Values/Error.h"
#include "Support/VisibleText.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace platform {
namespace {

using Style = NSNumberFormatter::Style;
using Unit = NSMeasurementFormatter::Unit;
using UnitStyle = NSMeasurementFormatter::UnitStyle;

Locale locale(const char* identifier) {
  return Locale::fromIdentifier(identifier);
}

TEST(NSNumberFormatter, WritesAsTheLocaleDoes) {
  const std::pair<const char*, const char*> texts[] = {
      {"en_US", "-1,234,567.891; -123,456,789%; -1234568"},
      {"fr_FR", "-1 234 567,891; -123 456 789 %; -1234568"},
      {"hi_IN", "-12,34,567.891; -12,34,56,789%; -1234568"},
      {"tr_TR", "-1.234.567,891; -%123.456.789; -1234568"},
      {"ar_EG", "-١٬٢٣٤٬٥٦٧٫٨٩١; -١٢٣٬٤٥٦٬٧٨٩٪; -١٢٣٤٥٦٨"},
      {"en_US_POSIX", "-1234567.891; -123456789%; -1234568"}};
  for (const auto& [identifier, text] : texts) {
    const auto styled = [&](Style style) {
      return NSNumberFormatter({.style = style, .locale = locale(identifier)})
          .string(-1234567.8908);
    };
    EXPECT_EQ(visible(styled(Style::decimal) + "; " + styled(Style::percent) + "; " +
                      styled(Style::none)),
              text);
  }
}

TEST(NSNumberFormatter, RoundsTheDecimalThatPrintsHalfToEven) {
  const NSNumberFormatter formatter(
      {.locale = Locale::posix(), .minimumFractionDigits = 2, .maximumFractionDigits = 2});
  for (int thousandths = 0; thousandths < 20000; ++thousandths) {
    const int down = thousandths / 10;
    const int hundredths = down + (thousandths % 10 > 5 - down % 2 ? 1 : 0);
    ASSERT_EQ(formatter.string(thousandths / 1000.0),
              stringWithFormat("%d.%02d", hundredths / 100, hundredths % 100));
  }
}

TEST(NSNumberFormatter, FollowsItsSettings) {
  const auto english = locale("en_US");
  const std::tuple<NSNumberFormatter::Settings, double, const char*> cases[] = {
      {{.locale = english, .minimumIntegerDigits = 2}, 5, "05"},
      {{.locale = english, .minimumIntegerDigits = 0}, 0.5, ".5"},
      {{.locale = english, .minimumFractionDigits = 2, .maximumFractionDigits = 1}, 1, "1.00"},
      {{.locale = english, .usesGroupingSeparator = false}, 1234, "1234"},
      {{.locale = locale("es_ES")}, 1234, "1234"},
      {{.locale = locale("es_ES"), .usesGroupingSeparator = true}, 1234, "1.234"},
      {{.style = Style::percent, .locale = english, .maximumFractionDigits = 1}, 0.0725, "7.2%"},
      {{.locale = english}, -0.0004, "0"},
      {{.locale = english}, std::nan(""), "NaN"},
      {{.locale = english, .negativePrefix = "less "}, -5, "less 5"}};
  for (const auto& [settings, value, text] : cases) {
    EXPECT_EQ(NSNumberFormatter(settings).string(value), text);
  }
  EXPECT_EQ(NSNumberFormatter({.locale = english}).string(std::numeric_limits<std::int64_t>::min()),
            "-9,223,372,036,854,775,808");
  EXPECT_THROW((void)NSNumberFormatter({.maximumFractionDigits = 5000}).string(1), Error);
}

TEST(NSNumberFormatter, AlwaysShowsTheSignWhereAsked) {
  // The invisible marks count here: a sign has one, not two.
  const std::tuple<const char*, Style, double, const char*> cases[] = {
      {"en_US", Style::decimal, 1234, "+1,234"}, {"en_US", Style::decimal, 0, "+0"},
      {"en_US", Style::decimal, -0.4, "+0"},     {"en_US", Style::decimal, -1234, "-1,234"},
      {"sv_SE", Style::decimal, -5, "\u22125"},  {"ar_EG", Style::decimal, 5, "\u061C+٥"},
      {"ar_EG", Style::decimal, -5, "\u061C-٥"}, {"he_IL", Style::decimal, -5, "\u200E-5"},
      {"tr_TR", Style::percent, -0.5, "-%50"},   {"tr_TR", Style::percent, 0.5, "+%50"}};
  for (const auto& [identifier, style, value, text] : cases) {
    const NSNumberFormatter::Settings plain{
        .style = style, .locale = locale(identifier), .maximumFractionDigits = 0};
    EXPECT_EQ(NSNumberFormatter(plain.withSigns()).string(value), text) << identifier;
  }
}

TEST(NSMeasurementFormatter, WritesUnitsAsTheLocaleDoes) {
  const std::tuple<const char*, UnitStyle, double, Unit, const char*> cases[] = {
      {"en_US", UnitStyle::short_, 2.5, Unit::kilometers, "2.5km"},
      {"en_US", UnitStyle::long_, 1, Unit::kilometers, "1 kilometer"},
      {"de_DE", UnitStyle::medium, 1234, Unit::kilocalories, "1.234 kcal"},
      {"fr_FR", UnitStyle::long_, 1.5, Unit::litres, "1,5 litre"},
      {"ru_RU", UnitStyle::long_, 3, Unit::hours, "3 часа"},
      {"tr_TR", UnitStyle::medium, 5, Unit::percent, "%5"},
      {"ar_EG", UnitStyle::long_, 2, Unit::hours, "ساعتان"}};
  for (const auto& [identifier, style, value, unit, text] : cases) {
    const NSMeasurementFormatter formatter(
        {.unitStyle = style, .number = {.locale = locale(identifier)}});
    EXPECT_EQ(visible(formatter.string(value, unit)), text);
  }
}

TEST(NSMeasurementFormatter, KeepsTheGivenUnitAndSharesItsNumbers) {
  const NSMeasurementFormatter formatter({.number = {.locale = locale("en_US")}});
  std::string texts;
  for (auto unit = Unit::kilometers; unit <= Unit::milesPerHour;
       unit = static_cast<Unit>(static_cast<int>(unit) + 1)) {
    texts += formatter.string(2, unit) + "; ";
  }
  EXPECT_EQ(texts,
            "2 km; 2 m; 2 mi; 2 yd; 2 ft; 2 cm; 2 in; 2 kg; 2 g; 2 mg; 2 μg; 2 lb; 2 st; 2 kcal; "
            "2 kJ; 2 L; 2 mL; 2 fl oz; 2 c; 2°C; 2°F; 2%; 2 days; 2 hr; 2 min; 2 sec; 2 km/h; "
            "2 mph; ");

  VirtualEnvironment environment;
  environment.setLocale("de_DE");
  const NSMeasurementFormatter tenths({.number = {.maximumFractionDigits = 1}});
  EXPECT_EQ(tenths.string(1234.25, Unit::kilometers), "1.234,2 km");
  EXPECT_EQ(tenths.numberFormatter().string(1234.25), "1.234,2");
}

}  // namespace
}  // namespace platform
