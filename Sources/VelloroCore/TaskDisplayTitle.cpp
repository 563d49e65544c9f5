#include "VelloroCore/TaskDisplayTitle.h"

namespace velloro {

const TaskDisplayTitle& TaskDisplayTitle::empty() {
  static const TaskDisplayTitle title{.localizedPrimary = ""};
  return title;
}

std::optional<TaskDisplayTitle> TaskDisplayTitle::withoutQuantity() const {
  if (!localizedPrimary) return std::nullopt;
  return TaskDisplayTitle{.localizedPrimary = localizedPrimary,
                          .localizedSecondary = localizedSecondary};
}

}  // namespace velloro
