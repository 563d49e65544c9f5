#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Coding/RawValue.h"
#include "Foundation/Values/Hasher.h"
#include "OxKit/Platform.h"

#include <cstdint>
#include <optional>
#include <string>
#include <type_traits>

namespace velloro {

/// The buttons that a task offers, before it is done and after.
struct TaskExtra {
  enum class ActionButtonType : std::uint8_t {
    noAction,
    automatic,
    timer,
    externalUrl,
    counter,
    healthInput,
    recordNote,
    sendMessage,
    share,
    openVelloroWorkout,
  };

  struct ActionButton {
    ActionButtonType type = ActionButtonType::noAction;
    std::optional<std::string> url = {};               ///< What `externalUrl` opens.
    std::optional<std::int64_t> incrementAmount = {};  ///< What one press of `counter` adds.

    bool operator==(const ActionButton&) const = default;
    static constexpr auto codingKeys =
        keys(key("type", &ActionButton::type, initialWhenUnknown), key("url", &ActionButton::url),
             key("incrementAmount", &ActionButton::incrementAmount));
  };

  ActionButton uncheckedActionButton = {};
  std::optional<ActionButton> checkedActionButton = {};

  bool operator==(const TaskExtra&) const = default;
  static constexpr auto codingKeys =
      keys(key("uncheckedActionButton", &TaskExtra::uncheckedActionButton),
           key("checkedActionButton", &TaskExtra::checkedActionButton));
};

/// Integers from 0, in the order of the cases.
constexpr auto rawValues(std::type_identity<TaskExtra::ActionButtonType>) {
  using enum TaskExtra::ActionButtonType;
  return rawIntegers<TaskExtra::ActionButtonType>({{noAction, 0},
                                                   {automatic, 1},
                                                   {timer, 2},
                                                   {externalUrl, 3},
                                                   {counter, 4},
                                                   {healthInput, 5},
                                                   {recordNote, 6},
                                                   {sendMessage, 7},
                                                   {share, 8},
                                                   {openVelloroWorkout, 9}});
}

}  // namespace velloro
