#include "Foundation/Formatting/NSNumberFormatter.h"

#include "Foundation/Formatting/IcuNumber.h"

#include <algorithm>
#include <utility>

#include <unicode/formattedvalue.h>
#include <unicode/uchar.h>

namespace platform {
namespace {

namespace number = icu::number;
using Style = NSNumberFormatter::Style;

int maximumFractionDigits(const NSNumberFormatter::Settings& settings) {
  const int ofStyle = settings.style == Style::decimal ? 3 : 0;
  return std::max(settings.maximumFractionDigits.value_or(ofStyle), settings.minimumFractionDigits);
}

UNumberGroupingStrategy grouping(const NSNumberFormatter::Settings& settings) {
  if (!settings.usesGroupingSeparator) {
    return settings.style == Style::none ? UNUM_GROUPING_OFF : UNUM_GROUPING_AUTO;
  }
  return *settings.usesGroupingSeparator ? UNUM_GROUPING_ON_ALIGNED : UNUM_GROUPING_OFF;
}

/// Where the invisible marks begin that stand in front of a sign at `start`: its field leaves them
/// out.
std::int32_t withDirectionMarks(const icu::UnicodeString& text, std::int32_t start) {
  while (start > 0 && u_charType(text[start - 1]) == U_FORMAT_CHAR) --start;
  return start;
}

}  // namespace

number::UnlocalizedNumberFormatter icuNumberFormatter(const NSNumberFormatter::Settings& settings) {
  return number::NumberFormatter::with()
      .integerWidth(number::IntegerWidth::zeroFillTo(settings.minimumIntegerDigits))
      .precision(number::Precision::minMaxFraction(settings.minimumFractionDigits,
                                                   maximumFractionDigits(settings)))
      .roundingMode(UNUM_ROUND_HALFEVEN)
      .grouping(grouping(settings))
      .sign(UNUM_SIGN_NEGATIVE);
}

number::LocalizedNumberFormatter localized(const number::UnlocalizedNumberFormatter& formatter,
                                           const NSNumberFormatter::Settings& settings) {
  number::LocalizedNumberFormatter result = formatter.locale(settings.locale.data().icu);
  UErrorCode status = U_ZERO_ERROR;
  result.copyErrorTo(status);
  checkIcu(status, "cannot make a number formatter");
  return result;
}

std::string numberText(const number::FormattedNumber& number,
                       const NSNumberFormatter::Settings& settings) {
  UErrorCode status = U_ZERO_ERROR;
  icu::UnicodeString text = number.toString(status);
  if (settings.positivePrefix || settings.negativePrefix) {
    icu::ConstrainedFieldPosition sign;
    sign.constrainField(UFIELD_CATEGORY_NUMBER, UNUM_SIGN_FIELD);
    if (!number.nextPosition(sign, status)) {
      text.insert(0, icuText(settings.positivePrefix.value_or("")));
    } else if (settings.negativePrefix) {
      const std::int32_t start = withDirectionMarks(text, sign.getStart());
      text.replaceBetween(start, sign.getLimit(), icuText(*settings.negativePrefix));
    }
  }
  checkIcu(status, "cannot format a number");
  return utf8(text);
}

struct NSNumberFormatter::Implementation {
  Settings settings;
  Lazy<number::LocalizedNumberFormatter> formatter = {};

  [[nodiscard]] const number::LocalizedNumberFormatter& icuFormatter() const {
    return formatter.get([this] {
      auto unlocalized = icuNumberFormatter(settings);
      if (settings.style == Style::percent) {
        unlocalized =
            std::move(unlocalized).unit(icu::NoUnit::percent()).scale(number::Scale::powerOfTen(2));
      }
      return localized(unlocalized, settings);
    });
  }
};

NSNumberFormatter::Settings NSNumberFormatter::Settings::withSigns() const {
  Settings result = *this;
  result.positivePrefix = locale.plusSign();
  result.negativePrefix = locale.minusSign();
  return result;
}

NSNumberFormatter::NSNumberFormatter(Settings settings)
    : implementation_(std::make_shared<const Implementation>(std::move(settings))) {}

std::string NSNumberFormatter::string(double value) const {
  UErrorCode status = U_ZERO_ERROR;
  const auto number = implementation_->icuFormatter().formatDouble(value, status);
  checkIcu(status, "cannot format a number");
  return numberText(number, settings());
}

std::string NSNumberFormatter::string(std::int64_t value) const {
  UErrorCode status = U_ZERO_ERROR;
  const auto number = implementation_->icuFormatter().formatInt(value, status);
  checkIcu(status, "cannot format a number");
  return numberText(number, settings());
}

const NSNumberFormatter::Settings& NSNumberFormatter::settings() const {
  return implementation_->settings;
}

}  // namespace platform
