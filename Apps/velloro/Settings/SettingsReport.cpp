#include "velloro/Settings/SettingsReport.h"

#include "Foundation/Process/Terminal.h"
#include "Foundation/Text/String.h"
#include "OxDateTime/HHMMSS.h"
#include "velloro/Output/Output.h"
#include "velloro/Settings/SettingsArgument.h"

#include <algorithm>
#include <utility>

namespace velloro {
namespace {

struct Read {
  const SettingsStorage& storage;

  PropertyList operator()(const Setting::BoolSetting& setting) const {
    return storage.boolean(setting);
  }
  PropertyList operator()(const Setting::IntSetting& setting) const {
    return storage.integer(setting);
  }
  PropertyList operator()(const Setting::DoubleSetting& setting) const {
    return storage.real(setting);
  }
  PropertyList operator()(const Setting::StringSetting& setting) const {
    const auto text = storage.string(setting);
    return text ? PropertyList(repairedUTF8(*text)) : PropertyList();
  }
  PropertyList operator()(const Setting::CodableSetting& setting) const {
    return storage.codable<PropertyList>(setting).value_or(PropertyList());
  }
  PropertyList operator()(const Setting::NoOpSetting&) const { return {}; }
};

std::string valueText(const SettingsReport& report) {
  if (report.value.isNull()) return "none";
  if (const auto* text = report.value.text()) return terminalText(*text);
  const bool isTime = report.name == rawValue(Setting::startOfDay);
  const auto time =
      isTime ? HHMMSS::fromIntValue(report.value.integer().value_or(-1)) : std::nullopt;
  return report.value.json() + (time ? " (" + time->debugDescription() + ")" : "");
}

}  // namespace

SettingsReport SettingsReport::of(const SettingsStorage& storage, const Setting& setting) {
  return {.name = settingName(setting),
          .key = setting.key(),
          .description = std::string(setting.row().description),
          .fallback = std::string(setting.row().fallback),
          .kind = setting.row().kind,
          .tier = storage.source(setting),
          .value = std::visit(Read{storage}, setting.wrapper())};
}

bool SettingsReport::hasValue() const {
  return value != PropertyList() && value != PropertyList(false) && value != PropertyList(0);
}

std::string table(const std::vector<SettingsReport>& reports, bool isDescribed) {
  constexpr std::size_t gap = 2;
  const std::string nothing = "-";
  std::size_t nameWidth = 0;
  for (const SettingsReport& report : reports)
    nameWidth = std::max(nameWidth, columns(terminalText(report.name)));
  std::string text;
  for (const SettingsReport& report : reports) {
    const std::string tier = report.tier ? std::string(rawValue(*report.tier)) : nothing;
    text += padded(terminalText(report.name), nameWidth + gap) +
            padded(tier, rawValue(SettingSource::shared).size() + gap) + valueText(report) + "\n";
    if (isDescribed) text += "    " + report.description + " Default: " + report.fallback + ".\n";
  }
  return text;
}

}  // namespace velloro
