#include "Foundation/Formatting/NSListFormatter.h"

#include "Foundation/Text/IcuSupport.h"

#include <utility>
#include <vector>

#include <unicode/listformatter.h>

namespace platform {
namespace {

UListFormatterWidth icuWidth(NSListFormatter::Width width) {
  switch (width) {
    case NSListFormatter::Width::narrow:
      return ULISTFMT_WIDTH_NARROW;
    case NSListFormatter::Width::short_:
      return ULISTFMT_WIDTH_SHORT;
    case NSListFormatter::Width::wide:
      break;
  }
  return ULISTFMT_WIDTH_WIDE;
}

std::unique_ptr<icu::ListFormatter> icuFormatter(const NSListFormatter::Settings& settings) {
  const bool isOfUnits = settings.kind == NSListFormatter::Kind::units;
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::ListFormatter> formatter(icu::ListFormatter::createInstance(
      settings.locale.data().icu, isOfUnits ? ULISTFMT_TYPE_UNITS : ULISTFMT_TYPE_AND,
      icuWidth(settings.width), status));
  checkIcu(status, "cannot load the form of lists");
  return formatter;
}

}  // namespace

struct NSListFormatter::Implementation {
  Settings settings;
  Lazy<std::unique_ptr<icu::ListFormatter>> formatter = {};
};

NSListFormatter::NSListFormatter(Settings settings)
    : implementation_(std::make_shared<const Implementation>(std::move(settings))) {}

std::string NSListFormatter::string(std::span<const std::string> items) const {
  if (items.size() == 1) return items.front();
  const auto& formatter =
      *implementation_->formatter.get([this] { return icuFormatter(implementation_->settings); });
  std::vector<icu::UnicodeString> texts;
  for (const std::string& item : items) texts.push_back(icuText(item));
  UErrorCode status = U_ZERO_ERROR;
  icu::UnicodeString text;
  formatter.format(texts.data(), static_cast<std::int32_t>(texts.size()), text, status);
  checkIcu(status, "cannot format a list");
  return utf8(text);
}

}  // namespace platform
