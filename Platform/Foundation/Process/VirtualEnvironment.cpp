#include "Foundation/Process/VirtualEnvironment.h"

#include "Foundation/Values/Error.h"

#include <cerrno>
#include <cstdlib>

namespace platform {
namespace {

namespace fs = std::filesystem;

fs::path newTemporaryDirectory() {
  std::string path = (fs::temp_directory_path() / "velloro-XXXXXX").string();
  if (mkdtemp(path.data()) == nullptr) {
    throw PosixError("cannot make the folder \"" + path + "\"", errno);
  }
  return path;
}

Directories foldersBelow(const fs::path& root, const fs::path& resources) {
  Directories folders{.caches = root / "caches",
                      .documents = root / "documents",
                      .preferences = root / "preferences",
                      .groupContainers = root / "groups",
                      .temporary = root / "tmp",
                      .resources = resources};
  fs::create_directory(folders.temporary);
  return folders;
}

}  // namespace

VirtualEnvironment::VirtualEnvironment()
    : Environment(TimeZone::fromIdentifier("Europe/Berlin").value()),
      directories_(
          foldersBelow(newTemporaryDirectory(), Environment::current().directories().resources)),
      previous_(Environment::install(this)) {}

VirtualEnvironment::~VirtualEnvironment() {
  time_.close();
  Environment::install(previous_);
  std::error_code ignored;
  fs::remove_all(directories_.temporary.parent_path(), ignored);
}

void VirtualEnvironment::setVariable(const std::string& name, std::string value) {
  std::erase_if(variables_, [&](const auto& variable) { return variable.first == name; });
  variables_.emplace_back(name, std::move(value));
}

void VirtualEnvironment::seed(std::uint64_t seed) {
  const std::scoped_lock lock(mutex_);
  generator_.seed(seed);
}

std::vector<std::string> VirtualEnvironment::reports() const {
  const std::scoped_lock lock(mutex_);
  return reports_;
}

std::string VirtualEnvironment::variable(const std::string& name) const {
  for (const auto& [key, value] : variables_) {
    if (key == name) return value;
  }
  return "";
}

std::uint64_t VirtualEnvironment::random() {
  const std::scoped_lock lock(mutex_);
  return generator_();
}

void VirtualEnvironment::report(std::string_view line) {
  const std::scoped_lock lock(mutex_);
  reports_.emplace_back(line);
}

}  // namespace platform
