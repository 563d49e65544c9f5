#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velloro {

/// The names that a user may have meant by an unknown name, the nearest first, three at most: those
/// that contain it, and those that differ from it in few letters.
///
///     nearMatches("hk_watr", std::vector<std::string_view>{"hk_water", "hk_sleep"});
///         // {"hk_water"}
[[nodiscard]] std::vector<std::string_view> nearMatches(std::string_view name,
                                                        std::span<const std::string_view> names);

/// The same for an error message: `did you mean "hk_water"?`, or nothing.
[[nodiscard]] std::string suggestion(std::string_view name,
                                     std::span<const std::string_view> names);

}  // namespace velloro
