#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "VelloroCore/Types/TaskExtra.h"

#include <cstdint>
#include <optional>
#include <string>

namespace velloro {

/// A `TaskExtra::ActionButton` as a backup has it.
struct VelloroJSONBackupTaskExtraActionButton {
  TaskExtra::ActionButtonType type = TaskExtra::ActionButtonType::noAction;
  std::optional<std::string> url = {};
  std::optional<std::int64_t> incrementAmount = {};

  [[nodiscard]] TaskExtra::ActionButton actionButton() const;

  bool operator==(const VelloroJSONBackupTaskExtraActionButton&) const = default;
  static constexpr auto codingKeys =
      keys(key("type", &VelloroJSONBackupTaskExtraActionButton::type, initialWhenUnknown),
           key("url", &VelloroJSONBackupTaskExtraActionButton::url),
           key("incrementAmount", &VelloroJSONBackupTaskExtraActionButton::incrementAmount));
};

/// A `TaskExtra` as a backup has it, and the store. Dates, if there are ever any, are ISO 8601.
///
///     const TaskExtra extra{{TaskExtra::ActionButtonType::counter, std::nullopt, 250}};
///     JSONEncoder{.dateForm = DateForm::iso8601}.encode(codableTaskExtra(extra));
///         // {"uncheckedActionButton":{"type":4,"incrementAmount":250}}
struct VelloroJSONBackupTaskExtra {
  VelloroJSONBackupTaskExtraActionButton uncheckedActionButton = {};
  std::optional<VelloroJSONBackupTaskExtraActionButton> checkedActionButton = {};

  [[nodiscard]] TaskExtra taskExtra() const;

  bool operator==(const VelloroJSONBackupTaskExtra&) const = default;
  static constexpr auto codingKeys =
      keys(key("uncheckedActionButton", &VelloroJSONBackupTaskExtra::uncheckedActionButton),
           key("checkedActionButton", &VelloroJSONBackupTaskExtra::checkedActionButton));
};

[[nodiscard]] VelloroJSONBackupTaskExtra codableTaskExtra(const TaskExtra& extra);

}  // namespace velloro
