#include "velloro/Pictures/ThemesCommand.h"

#include "Foundation/Coding/JSON.h"
#include "velloro/Options/CaseArgument.h"
#include "velloro/Output/Output.h"
#include "velloro/Pictures/ThemeReport.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace velloro {
namespace {

struct ThemesOptions {
  std::optional<std::string> scheme;
  std::string context = "main";
  bool json = false;
};

std::string answer(const ThemesOptions& options) {
  const auto context = caseArgument<ThemeContext>("--context", options.context, "place");
  std::vector<ThemeReport> reports;
  if (options.scheme) {
    const auto scheme = caseArgument<ColorScheme>("SCHEME", *options.scheme, "colour scheme");
    reports.push_back(ThemeReport::of(scheme, context));
  } else {
    for (const ColorScheme scheme : allCases<ColorScheme>()) {
      reports.push_back(ThemeReport::of(scheme, context));
    }
  }
  if (options.json) {
    return (options.scheme ? JSONEncoder{}.encode(reports[0]) : JSONEncoder{}.encode(reports)) +
           "\n";
  }
  return options.scheme ? reports[0].text() : table(reports);
}

}  // namespace

void addThemesCommand(CLI::App& app) {
  auto options = std::make_shared<ThemesOptions>();
  CLI::App* command = app.add_subcommand("themes", "Lists the colour schemes of pages and rings");
  command
      ->add_option("scheme", options->scheme,
                   "One scheme, with the colours of a ring in every mode and status (default: a "
                   "table of all schemes)")
      ->type_name("SCHEME");
  command
      ->add_option("--context", options->context,
                   "Where the ring is shown, such as notification or appleWatch (default: main)")
      ->type_name("CONTEXT");
  command->add_flag("--json", options->json, "Prints JSON");
  command->footer(
      "Examples:\n"
      "  velloro themes\n"
      "  velloro themes redBlue --context notification\n"
      "  velloro themes --json");
  command->callback([options] {
    const std::string text = answer(*options);
    print(text);
  });
}

}  // namespace velloro
