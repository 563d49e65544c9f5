#include "velloro/Notifications/WordChoice.h"

#include "Foundation/Process/Environment.h"
#include "velloro/Options/Arguments.h"

#include <random>

#include <CLI/CLI.hpp>

namespace velloro::WordChoice {

void addOption(CLI::App& command, std::optional<std::string>& seed) {
  command.add_option("--seed", seed, "Choose the words by this number, and not at random")
      ->type_name("N");
}

std::function<std::uint64_t()> argument(const std::optional<std::string>& seed) {
  if (!seed) {
    return [] { return Environment::current().random(); };
  }
  return [generator = std::mt19937_64(static_cast<std::uint64_t>(
              countArgument("--seed", *seed)))]() mutable { return generator(); };
}

}  // namespace velloro::WordChoice
