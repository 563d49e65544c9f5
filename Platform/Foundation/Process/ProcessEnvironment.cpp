#include "Foundation/Process/ProcessEnvironment.h"

#include "Foundation/Process/ProcessLoop.h"
#include "Foundation/Process/Terminal.h"
#include "Foundation/Text/String.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <system_error>
#include <utility>

#include <pwd.h>
#include <unistd.h>

namespace platform {
namespace {

namespace fs = std::filesystem;

std::string environmentVariable(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

void writeToStandardError(std::string_view line) {
  const std::string shown = terminalText(line) + "\n";
  std::fwrite(shown.data(), 1, shown.size(), stderr);
}

/// The zone that a name, or the path of a zone file, stands for.
std::optional<TimeZone> zoneNamed(std::string name) {
  constexpr std::string_view folder = "zoneinfo/";
  if (const auto at = name.rfind(folder); at != std::string::npos) {
    name.erase(0, at + folder.size());
  }
  return TimeZone::fromIdentifier(name);
}

/// The zone that the machine's clock is set to: TZ, else the file behind /etc/localtime, else the
/// name in /etc/timezone. A machine with none of these goes by GMT.
TimeZone machineTimeZone() {
  std::string name = environmentVariable("TZ");
  if (name.starts_with(':')) name.erase(0, 1);
  std::error_code ignored;
  if (name.empty()) name = fs::canonical("/etc/localtime", ignored).string();
  if (name.empty() || name == "/etc/localtime") {
    std::ifstream("/etc/timezone") >> name;
  }
  const auto zone = zoneNamed(name);
  if (!zone && !name.empty()) {
    writeToStandardError("cannot use the time zone " + inQuotes(name) + "; taking GMT");
  }
  return zone.value_or(TimeZone::gmt());
}

/// "de_DE" from "de_DE.UTF-8"; "en_US" where the machine names no language.
std::string machineLocale() {
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    std::string value = environmentVariable(name);
    const bool isLatin = value.ends_with("@latin");
    value.erase(std::min(value.find_first_of(".@"), value.size()));
    if (value == "C" || value == "POSIX") break;
    if (isLatin) value.insert(std::min(value.find('_'), value.size()), "_Latn");
    if (!value.empty()) return value;
  }
  return "en_US";
}

fs::path homeFolder() {
  const fs::path home = environmentVariable("HOME");
  if (home.is_absolute()) return home;
  const passwd* user = getpwuid(getuid());
  return user != nullptr ? user->pw_dir : "/";
}

fs::path temporaryFolder() {
  std::error_code unusable;
  const fs::path folder = fs::temp_directory_path(unusable);
  return unusable ? "/tmp" : folder;
}

fs::path xdgFolder(const char* variable, const char* belowHome) {
  const fs::path folder = environmentVariable(variable);
  // The base directory rules ignore relative paths.
  if (folder.is_absolute()) return folder / "velloro";
  return homeFolder() / belowHome / "velloro";
}

/// The installed layout and the build tree both keep the program in "bin" and its resources in
/// "share/velloro" beside it.
fs::path resourcesFolder() {
  std::error_code ignored;
  const fs::path program = fs::read_symlink("/proc/self/exe", ignored);
  return program.parent_path().parent_path() / "share" / "velloro";
}

Directories foldersBelow(const std::optional<fs::path>& root) {
  const fs::path data = root ? *root : xdgFolder("XDG_DATA_HOME", ".local/share");
  return {.caches = root ? *root / "caches" : xdgFolder("XDG_CACHE_HOME", ".cache"),
          .documents = data / "documents",
          .preferences = root ? *root / "preferences" : xdgFolder("XDG_CONFIG_HOME", ".config"),
          .groupContainers = data / "groups",
          .temporary = temporaryFolder(),
          .resources = resourcesFolder()};
}

}  // namespace

ProcessEnvironment::ProcessEnvironment(Options options)
    : Environment(options.timeZone ? *options.timeZone : machineTimeZone()),
      options_(std::move(options)),
      localeIdentifier_(options_.localeIdentifier.value_or(machineLocale())),
      directories_(foldersBelow(options_.root)),
      generator_(std::random_device{}()) {}

Date ProcessEnvironment::now() const {
  if (options_.now) return *options_.now;
  using Seconds = std::chrono::duration<double>;
  return Date::since1970(Seconds(std::chrono::system_clock::now().time_since_epoch()).count());
}

double ProcessEnvironment::mediaTime() const {
  return processMediaTime();
}

MainLoop& ProcessEnvironment::mainLoop() {
  return processMainLoop();
}

TimedWork& ProcessEnvironment::timedWork() {
  return processTimedWork();
}

std::string ProcessEnvironment::deviceModel() const {
  const std::string model = variable("VELLORO_DEVICE_MODEL");
  return model.empty() ? "iPhone" : model;
}

ApplicationState ProcessEnvironment::applicationState() const {
  return ApplicationState::active;
}

std::string ProcessEnvironment::variable(const std::string& name) const {
  return environmentVariable(name.c_str());
}

std::uint64_t ProcessEnvironment::random() {
  const std::scoped_lock lock(randomMutex_);
  return generator_();
}

void ProcessEnvironment::report(std::string_view line) {
  writeToStandardError(line);
}

void ProcessEnvironment::readTimeZone() {
  if (!options_.timeZone) setTimeZone(machineTimeZone());
}

}  // namespace platform
