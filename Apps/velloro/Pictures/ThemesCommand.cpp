#include "velloro/Pictures/ThemesCommand.h"

#include "Foundation/Coding/JSON.h"
#include "velloro/Options/CaseArgument.h"
#include "velloro/Options/Command.h"
#include "velloro/Output/Output.h"
#include "velloro/Pictures/ThemeReport.h"

#include <optional>
#include <string>
#include <vector>

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

void run(const ThemesOptions& options) {
  print(answer(options));
}

}  // namespace

void addThemesCommand(const Command& app) {
  const auto [command, options] =
      app.subcommand("themes", "Lists the colour schemes of pages and rings", run);
  command.option("scheme", options.scheme, "SCHEME",
                 "One scheme, with the colours of a ring in every mode and status (default: a "
                 "table of all schemes)");
  command.option("--context", options.context, "CONTEXT",
                 "Where the ring is shown, such as notification or appleWatch (default: main)");
  command.json(options.json);
  command.footer(
      "Examples:\n"
      "  velloro themes\n"
      "  velloro themes redBlue --context notification\n"
      "  velloro themes --json");
}

}  // namespace velloro
