#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace velloro {
class Command;
}

/// How the words of a reminder are chosen: at random, or by the number of `--seed`.
namespace velloro::WordChoice {

void addOption(const Command& command, std::optional<std::string>& seed);

/// 64 random bits a call. Throws a UsageError for what is no whole number from 0 on.
[[nodiscard]] std::function<std::uint64_t()> argument(const std::optional<std::string>& seed);

}  // namespace velloro::WordChoice
