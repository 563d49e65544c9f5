#include "velloro/Pictures/IconsCommand.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Text/String.h"
#include "OxCheckableTasks/Icons/IconManagerIcon.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/Command.h"
#include "velloro/Options/NearMatches.h"
#include "velloro/Output/Output.h"

#include <string>
#include <vector>

namespace velloro {
namespace {

struct IconsOptions {
  std::string pattern;
  bool json = false;
};

struct IconReport {
  IconManagerIcon name = {};
  IconCategory category = {};

  static constexpr auto codingKeys =
      keys(key("name", &IconReport::name), key("category", &IconReport::category));
};

/// Those with the pattern in their own name, and all of a group by that name.
std::vector<IconReport> iconsWith(const std::string& pattern) {
  const std::string wanted = lowercased(pattern);
  std::vector<IconReport> found;
  for (const IconManagerIcon icon : allCases<IconManagerIcon>()) {
    const IconCategory group = category(icon);
    if (rawValue(icon).contains(wanted) || rawValue(group) == wanted) {
      found.push_back({icon, group});
    }
  }
  return found;
}

UsageError unknown(const std::string& pattern) {
  std::vector<std::string_view> names;
  for (const IconManagerIcon icon : allCases<IconManagerIcon>()) names.push_back(rawValue(icon));
  for (const IconCategory group : allCases<IconCategory>()) names.push_back(rawValue(group));
  const std::string hint = suggestion(lowercased(pattern), names);
  return UsageError("PATTERN", pattern,
                    "in the name of no icon and no group's name; " +
                        (hint.empty() ? "\"velloro icons\" lists them" : hint));
}

void run(const IconsOptions& options) {
  const auto icons = iconsWith(options.pattern);
  if (icons.empty()) throw unknown(options.pattern);
  std::string text;
  if (options.json) {
    text = JSONEncoder{}.encode(icons) + "\n";
  } else {
    for (const IconReport& icon : icons) {
      text += stringWithFormat("%-32s %s\n", std::string(rawValue(icon.name)).c_str(),
                               std::string(rawValue(icon.category)).c_str());
    }
  }
  print(text);
}

}  // namespace

void addIconsCommand(const Command& app) {
  const auto [command, options] =
      app.subcommand("icons", "Lists the icons that a task can show", run);
  command.option("pattern", options.pattern, "PATTERN",
                 "A part of the names to list, or a group (default: all icons)");
  command.json(options.json);
  command.footer(
      "Examples:\n"
      "  velloro icons water\n"
      "  velloro icons zodiac --json");
}

}  // namespace velloro
