#pragma once

#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace velloro {

/// An option or argument of a command.
class Option {
 public:
  explicit Option(CLI::Option& option) : option_(&option) {}

  /// A command line without it is refused.
  void required() const;
  /// It can't stand beside any of these options, which were added to its command before.
  /// Returns itself.
  Option excludes(std::initializer_list<const char*> names) const;
  /// The help shows what its variable holds now.
  void showsDefault() const;

 private:
  CLI::Option* option_;
};

template <typename Options>
struct CommandWithOptions;

/// A command of the program, such as that of "velloro" or of "velloro log add". A copy stands for
/// the same command. What is typed goes to variables that live as long as the command line; those
/// in a struct of options are kept with their command.
///
///     struct SumOptions {
///       std::vector<std::string> terms;
///       std::optional<std::string> unit;
///       bool json = false;
///     };
///     void add(const SumOptions& options) {
///       if (options.unit == "apple") throw UsageError("--unit", *options.unit, "write apples");
///     }
///     CommandLine calculator("calc", "A calculator", "1.0");
///     const auto [command, options] =
///         calculator.command().subcommand("sum", "Adds numbers up", add);
///     command.option("TERM", options.terms, "TEXT", "A number").required();
///     command.option("--unit", options.unit, "UNIT", "What is counted (default: nothing)");
///     command.json(options.json);
///     command.footer("Example:\n  calc sum 1 2 --unit apples");
///
///     const char* typed[] = {"calc", "sum", "1", "2", "--unit", "apples"};
///     const auto prepare = [](const std::string& name) {};
///     calculator.run(6, typed, prepare);  // true
///     options.terms.size();               // 2
///     calculator.run(2, typed, prepare);
///         // throws UsageError: "TERM is required; see \"calc sum --help\""
class Command {
 public:
  explicit Command(CLI::App& command) : command_(&command) {}

  /// Adds a command of this one, which from then on needs one of its commands to be typed.
  /// \param help One line, for the list of commands.
  Command subcommand(const char* name, const std::string& help) const;
  /// Adds a command that runs `work` with its options, which are kept with it.
  template <typename Options>
  CommandWithOptions<Options> subcommand(const char* name, const std::string& help,
                                         void (*work)(const Options&)) const;

  // Options as "--date,--period"; any other name is that of an argument, by its place. Those that
  // aren't typed leave their variable as it is.

  /// \param placeholder Stands for the value in the help: "--at INSTANT".
  Option option(const char* name, std::string& value, const char* placeholder,
                const std::string& help) const;
  Option option(const char* name, std::optional<std::string>& value, const char* placeholder,
                const std::string& help) const;
  /// One that may be given several times.
  Option option(const char* name, std::vector<std::string>& values, const char* placeholder,
                const std::string& help) const;
  /// An option without a value.
  Option flag(const char* name, bool& value, const char* help) const;
  /// The flag `--json`.
  void json(bool& value, const char* help = "Prints JSON") const;

  /// The same command, for options that stand under a heading of their own in its help.
  [[nodiscard]] Command group(const char* heading) const;
  /// Text below the help, also of the commands that are added later and have none of their own.
  void footer(const std::string& text) const;
  /// What the command does.
  void runs(std::function<void()> work) const;
  /// What it does where none of its commands is typed, which have all been added before.
  void runsAlone(std::function<void()> work) const;

 private:
  [[nodiscard]] Option grouped(CLI::Option& option) const;

  CLI::App* command_;
  const char* group_ = nullptr;  ///< Null for that of options without a heading.
};

template <typename Options>
struct CommandWithOptions {
  Command command;
  Options& options;
};

template <typename Options>
CommandWithOptions<Options> Command::subcommand(const char* name, const std::string& help,
                                                void (*work)(const Options&)) const {
  const Command added = subcommand(name, help);
  auto options = std::make_shared<Options>();
  added.runs([options, work] { work(*options); });
  return {added, *options};
}

/// The program's commands, and what was typed.
class CommandLine {
 public:
  /// \param version What `--version` prints behind the name.
  CommandLine(const char* name, const char* help, const char* version);
  CommandLine(const CommandLine&) = delete;
  CommandLine& operator=(const CommandLine&) = delete;
  ~CommandLine();

  /// That of the program itself. Its options may be typed behind those of any other.
  [[nodiscard]] Command command() const;

  /// Runs the command that the arguments name. Returns false where only help or the version was
  /// asked for, which it prints.
  /// \param prepare Called before, with the full name of the command: "velloro log add".
  /// \throws UsageError for arguments that no command takes, and what the command throws.
  bool run(int argumentCount, const char* const* arguments,
           const std::function<void(const std::string&)>& prepare);

 private:
  std::unique_ptr<CLI::App> program_;
};

}  // namespace velloro
