// A title with its amount, beside ICU's own formatters: kept, as here, and made for each title.

#include "Foundation/Process/VirtualEnvironment.h"
#include "Foundation/Text/Locale.h"
#include "VelloroCore/Titles/TaskDisplayTitle.h"

#include <benchmark/benchmark.h>
#include <unicode/measunit.h>
#include <unicode/msgfmt.h>
#include <unicode/numberformatter.h>

namespace velloro {
namespace {

using benchmark::State;

class IcuTitle {
 public:
  [[nodiscard]] std::string text(double kilometers) const {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Formattable parts[] = {icu::UnicodeString(u"Run"),
                                      number_.formatDouble(kilometers, status).toString(status)};
    icu::UnicodeString text;
    icu::FieldPosition ignored;
    message_.format(parts, 2, text, ignored, status);
    std::string result;
    return text.toUTF8String(result);
  }

 private:
  UErrorCode status_ = U_ZERO_ERROR;
  icu::number::LocalizedNumberFormatter number_ =
      icu::number::NumberFormatter::withLocale("en_US")
          .unit(icu::MeasureUnit::getKilometer())
          .unitWidth(UNUM_UNIT_WIDTH_SHORT)
          .precision(icu::number::Precision::fixedFraction(1));
  icu::MessageFormat message_{u"{0} {1}", "en_US", status_};
};

void ofVelloro(State& state) {
  const VirtualEnvironment environment;
  const Locale locale = Locale::current();
  const TaskDisplayTitle title{
      .localizedPrimary = "Run",
      .quantity = TaskDisplayTitle::Quantity{.quantity = {5, TypeUnit::distanceKm}}};
  for (auto each : state) {
    benchmark::DoNotOptimize(title.localizedTitle(TaskDisplayTitle::Context::iPhoneWidget, locale));
  }
}
BENCHMARK(ofVelloro)->Name("title_of_5_km/velloro");

void ofKeptIcu(State& state) {
  const IcuTitle title;
  for (auto each : state) benchmark::DoNotOptimize(title.text(5));
}
BENCHMARK(ofKeptIcu)->Name("title_of_5_km/icu_kept");

void ofIcuMadeEachTime(State& state) {
  for (auto each : state) benchmark::DoNotOptimize(IcuTitle().text(5));
}
BENCHMARK(ofIcuMadeEachTime)->Name("title_of_5_km/icu_made_each_time");

}  // namespace
}  // namespace velloro
