#include "velloro/Notifications/WordChoice.h"

#include "Foundation/Process/Environment.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/Command.h"

#include <random>

namespace velloro::WordChoice {

void addOption(const Command& command, std::optional<std::string>& seed) {
  command.option("--seed", seed, "N", "Choose the words by this number, and not at random");
}

std::function<std::uint64_t()> argument(const std::optional<std::string>& seed) {
  if (!seed) {
    return [] { return Environment::current().random(); };
  }
  return [generator = std::mt19937_64(static_cast<std::uint64_t>(
              countArgument("--seed", *seed)))]() mutable { return generator(); };
}

}  // namespace velloro::WordChoice
