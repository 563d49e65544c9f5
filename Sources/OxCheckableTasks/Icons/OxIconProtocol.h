#pragma once

#include "Foundation/Coding/RawValue.h"
#include "OxKit/Platform.h"

#include <concepts>
#include <string_view>

namespace velloro {

/// What drawing requires of an icon type: it can be made from its raw text, and `isDynamic` says
/// whether its image changes with a task's state.
template <typename Icon>
concept OxIconProtocol = RawRepresentable<Icon> &&
    std::same_as<RawValueType<Icon>, std::string_view> && requires(Icon icon) {
  { isDynamic(icon) } -> std::same_as<bool>;
};

}  // namespace velloro
