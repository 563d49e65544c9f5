#include "VelloroBackup/VelloroJSONBackupTaskExtra.h"

namespace velloro {
namespace {

VelloroJSONBackupTaskExtraActionButton codable(const TaskExtra::ActionButton& button) {
  return {.type = button.type, .url = button.url, .incrementAmount = button.incrementAmount};
}

}  // namespace

TaskExtra::ActionButton VelloroJSONBackupTaskExtraActionButton::actionButton() const {
  return {.type = type, .url = url, .incrementAmount = incrementAmount};
}

TaskExtra VelloroJSONBackupTaskExtra::taskExtra() const {
  TaskExtra extra{.uncheckedActionButton = uncheckedActionButton.actionButton()};
  if (checkedActionButton) extra.checkedActionButton = checkedActionButton->actionButton();
  return extra;
}

VelloroJSONBackupTaskExtra codableTaskExtra(const TaskExtra& extra) {
  VelloroJSONBackupTaskExtra record{.uncheckedActionButton = codable(extra.uncheckedActionButton)};
  if (extra.checkedActionButton) record.checkedActionButton = codable(*extra.checkedActionButton);
  return record;
}

}  // namespace velloro
