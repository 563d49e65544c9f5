#pragma once

#include "Settings/SettingTable.h"
#include "VelloroCore/Appearance/TaskDisplayOrder.h"

#include <cassert>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace velloro {

/// The name of one preference, of the user or of the system. `SettingsStorage` has its value.
///
///     const Setting plain = Setting::startOfDay;
///     plain.key();                                   // "Settings_StartOfDay"
///     const Setting ofPage(Setting::selectedTheme, TaskPageNumber{2});
///     ofPage.key();                                  // "UITheme_2"
///     Setting::fromKey("UITheme_2") == ofPage;       // true
struct Setting {
  using Case = SettingCase;
  using Kind = SettingKind;
  using Tier = SettingTier;
  using Payload = std::variant<std::monostate, TaskPageNumber, std::string>;
  using enum SettingCase;

  /// A setting whose kind the compiler knows: `Setting::themeAutoSwitch` is taken for a
  /// `BoolSetting`, and a case of another kind is an error of compilation.
  template <Kind>
  struct Of;
  using BoolSetting = Of<Kind::bool_>;
  using StringSetting = Of<Kind::string>;
  using IntSetting = Of<Kind::int_>;
  using DoubleSetting = Of<Kind::double_>;
  using CodableSetting = Of<Kind::codable>;
  using NoOpSetting = Of<Kind::noOp>;
  using Wrapper = std::variant<BoolSetting, StringSetting, IntSetting, DoubleSetting,
                               CodableSetting, NoOpSetting>;

  Case name;
  /// The page, the user's profile, the family of complications, or the filter's identity. None for
  /// most cases, and for `selectedFilterTheme` where no filter is meant.
  Payload payload;

  constexpr Setting(Case setting) : name(setting) {
    assert(row().payload == SettingPayload::none || row().payload == SettingPayload::filter);
  }
  constexpr Setting(Case setting, TaskPageNumber page) : name(setting), payload(page) {
    assert(row().payload == SettingPayload::page);
  }
  constexpr Setting(Case setting, std::string text) : name(setting), payload(std::move(text)) {
    assert(row().payload == SettingPayload::filter || row().payload == SettingPayload::text);
  }

  bool operator==(const Setting&) const = default;

  [[nodiscard]] constexpr const SettingRow& row() const { return settingRowOf(name); }
  /// Under which its value is kept; empty for the one that has no storage.
  [[nodiscard]] std::string key() const;
  /// The setting as one of its kind.
  [[nodiscard]] Wrapper wrapper() const;

  /// The settings whose changes on other devices are announced: all without a payload except the
  /// last one, and the themes and the visibility of the first four pages.
  [[nodiscard]] static std::span<const Setting> allCases();
  /// The one of `allCases` with a key; absent for another key, and for the empty one.
  [[nodiscard]] static std::optional<Setting> fromKey(std::string_view key);
};

template <Setting::Kind kind>
struct Setting::Of {
  Setting setting;

  consteval Of(Case name) : setting(name) {
    if (settingRowOf(name).kind != kind) throw "the setting is of another kind";
  }
  /// For a setting that is known only at run time; it must be of the kind.
  explicit Of(Setting ofKind) : setting(std::move(ofKind)) { assert(setting.row().kind == kind); }

  bool operator==(const Of&) const = default;
};

}  // namespace velloro
