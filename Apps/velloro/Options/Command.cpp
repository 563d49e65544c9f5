#include "velloro/Options/Command.h"

#include "Foundation/Text/String.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/CaseArgument.h"

#include <string_view>
#include <utility>

#include <CLI/CLI.hpp>

namespace velloro {
namespace {

/// The innermost command that was typed, such as that of "log add".
const CLI::App& commandOf(const CLI::App& app) {
  const auto typed = app.get_subcommands();
  return typed.empty() ? app : commandOf(*typed.front());
}

std::string fullName(const CLI::App& command) {
  const CLI::App* outer = command.get_parent();
  return (outer != nullptr ? fullName(*outer) + " " : "") + command.get_name();
}

std::vector<std::string_view> subcommandNames(const CLI::App& command) {
  std::vector<std::string_view> names;
  for (const CLI::App* inner : command.get_subcommands([](const auto*) { return true; })) {
    names.push_back(inner->get_name());
  }
  return names;
}

/// What is wrong with the command line, and what would be right.
UsageError complaint(const CLI::App& app, const CLI::ParseError& error) {
  const CLI::App& command = commandOf(app);
  const std::string name = fullName(command);
  const auto commands = subcommandNames(command);
  const auto unexpected = app.remaining(true);
  const std::string word = unexpected.empty() ? "" : unexpected.front();
  if (!commands.empty() && !word.empty() && !word.starts_with('-')) {
    return unknownName("COMMAND", word, "command of " + inQuotes(name), commands);
  }
  const bool isMissing = dynamic_cast<const CLI::RequiredError*>(&error) != nullptr;
  if (isMissing && !commands.empty() && word.empty()) {
    return UsageError("a command is needed; " + oneOf(commands));
  }
  return UsageError((word.empty() ? excerpt(error.what()) : cited(word) + ": not expected here") +
                    "; see " + inQuotes(name + " --help"));
}

template <typename T>
CLI::Option& added(CLI::App& command, const char* name, T& value, const char* placeholder,
                   const std::string& help) {
  return *command.add_option(name, value, help)->type_name(placeholder);
}

}  // namespace

void Option::required() const {
  option_->required();
}

Option Option::excludes(std::initializer_list<const char*> names) const {
  for (const char* name : names) option_->excludes(name);
  return *this;
}

void Option::showsDefault() const {
  option_->capture_default_str();
}

Command Command::subcommand(const char* name, const std::string& help) const {
  command_->require_subcommand(1);
  return Command(*command_->add_subcommand(name, help));
}

Option Command::option(const char* name, std::string& value, const char* placeholder,
                       const std::string& help) const {
  return grouped(added(*command_, name, value, placeholder, help));
}

Option Command::option(const char* name, std::optional<std::string>& value, const char* placeholder,
                       const std::string& help) const {
  return grouped(added(*command_, name, value, placeholder, help));
}

Option Command::option(const char* name, std::vector<std::string>& values, const char* placeholder,
                       const std::string& help) const {
  CLI::Option& option = added(*command_, name, values, placeholder, help);
  // What stands behind the value of an option is an argument of the command.
  if (*name == '-') option.allow_extra_args(false);
  return grouped(option);
}

Option Command::flag(const char* name, bool& value, const char* help) const {
  return grouped(*command_->add_flag(name, value, help)->disable_flag_override());
}

void Command::json(bool& value, const char* help) const {
  flag("--json", value, help);
}

Option Command::grouped(CLI::Option& option) const {
  if (group_ != nullptr) option.group(group_);
  return Option(option);
}

Command Command::group(const char* heading) const {
  Command same = *this;
  same.group_ = heading;
  return same;
}

void Command::footer(const std::string& text) const {
  command_->footer(text);
}

void Command::runs(std::function<void()> work) const {
  command_->callback(std::move(work));
}

void Command::runsAlone(std::function<void()> work) const {
  command_->require_subcommand(0, 1);
  runs([command = command_, work = std::move(work)] {
    if (command->get_subcommands().empty()) work();
  });
}

CommandLine::CommandLine(const char* name, const char* help, const char* version)
    : program_(std::make_unique<CLI::App>(help, name)) {
  program_->set_version_flag("--version", name + std::string(" ") + version);
  program_->fallthrough();
}

CommandLine::~CommandLine() = default;

Command CommandLine::command() const {
  return Command(*program_);
}

bool CommandLine::run(int argumentCount, const char* const* arguments,
                      const std::function<void(const std::string&)>& prepare) {
  program_->parse_complete_callback([&] { prepare(fullName(commandOf(*program_))); });
  try {
    program_->parse(argumentCount, arguments);
    return true;
  } catch (const CLI::Success& asked) {  // --help, --version
    program_->exit(asked);
    return false;
  } catch (const CLI::ParseError& error) {
    throw complaint(*program_, error);
  }
}

}  // namespace velloro
