#include "Foundation/DefaultsSuite.h"

#include "Foundation/CodingError.h"
#include "Foundation/Environment.h"
#include "Foundation/FileLock.h"
#include "Foundation/NSFileManager.h"

#include <algorithm>
#include <cerrno>
#include <map>

#include <fcntl.h>

namespace platform {
namespace {

namespace fs = std::filesystem;
using Dictionary = DefaultsSuite::Dictionary;

/// Whether two looks at a name saw the same file in the same state. The size and the time notice a
/// person's editor that writes into the file; our own writes always make a new one.
bool isSameState(const struct stat& one, const struct stat& other) {
  return one.st_dev == other.st_dev && one.st_ino == other.st_ino && one.st_size == other.st_size &&
         one.st_mtim.tv_sec == other.st_mtim.tv_sec && one.st_mtim.tv_nsec == other.st_mtim.tv_nsec;
}

void applyTo(Dictionary& values, const Dictionary& changes) {
  for (const auto& [key, value] : changes) {
    if (value.isNull()) {
      values.erase(key);
    } else {
      values.insert_or_assign(key, value);
    }
  }
}

const PropertyList* find(const Dictionary& values, std::string_view key) {
  const auto found = values.find(key);
  return found != values.end() ? &found->second : nullptr;
}

/// \throws DecodingError
Dictionary dictionaryFrom(const std::string& text) {
  PropertyList list = PropertyList::fromFileText(text);
  if (auto* dictionary = list.dictionary()) {
    std::erase_if(*dictionary, [](const auto& entry) { return entry.second.isNull(); });
    return std::move(*dictionary);
  }
  throw DecodingError(DecodingError::Kind::typeMismatch, "", "Expected a dictionary.");
}

Result<std::string> textFrom(const Dictionary& values) {
  try {
    return PropertyList(values).fileText();
  } catch (const EncodingError& error) {
    return failure<EncodingError>(error);
  }
}

fs::path lockFileOf(const fs::path& path) {
  return path.parent_path() / ("." + path.filename().string() + ".lock");
}

/// Takes the file out of the way, under the first name that is free.
Result<void> moveAside(const fs::path& path) {
  for (int count = 1;; ++count) {
    const std::string mark = count == 1 ? ".corrupt" : ".corrupt." + std::to_string(count);
    auto moved = NSFileManager::moveItem(path, path.string() + mark);
    if (moved || moved.error()->code() != EEXIST) return moved;
  }
}

}  // namespace

std::shared_ptr<DefaultsSuite> DefaultsSuite::named(std::string_view name) {
  static std::mutex mutex;
  static auto* suites = new std::map<std::string, std::shared_ptr<DefaultsSuite>>;
  const fs::path folder = Environment::current().directories().preferences;
  const std::string path = (folder / name).string() + ".json";
  const std::scoped_lock lock(mutex);
  if (const auto known = suites->find(path); known != suites->end()) return known->second;
  std::erase_if(*suites, [&](const auto& suite) {  // those of an environment that has gone
    return suite.second.use_count() == 1 && suite.second->path_.parent_path() != folder;
  });
  return suites->emplace(path, std::make_shared<DefaultsSuite>(path)).first->second;
}

PropertyList DefaultsSuite::value(std::string_view key) {
  const std::scoped_lock lock(mutex_);
  refresh();
  const PropertyList* value = find(unsaved_, key);
  if (value == nullptr) value = find(stored_, key);
  if (value == nullptr || value->isNull()) value = find(registered_, key);
  return value != nullptr ? *value : PropertyList();
}

Dictionary DefaultsSuite::values() {
  const std::scoped_lock lock(mutex_);
  refresh();
  Dictionary all = stored_;
  applyTo(all, unsaved_);
  all.insert(registered_.begin(), registered_.end());
  return all;
}

void DefaultsSuite::addRegistered(const Dictionary& values) {
  const std::scoped_lock lock(mutex_);
  for (const auto& [key, value] : values) registered_.insert_or_assign(key, value);
}

void DefaultsSuite::refresh() {
  if (!isUpToDate()) load();
}

bool DefaultsSuite::isUpToDate() const {
  struct stat state {};
  if (::stat(path_.c_str(), &state) == 0) return file_.isOpen() && isSameState(state, state_);
  return errno == ENOENT && !file_.isOpen() && !unreadable_;
}

void DefaultsSuite::load() {
  stored_.clear();
  unreadable_ = nullptr;
  isCorrupt_ = false;
  const auto text = open();
  if (!text) {
    file_ = NSFileHandle();
    if (text.error()->code() == ENOENT) return;
    unreadable_ = text.error();
    return reportOnce(unreadable_->localizedDescription() + "; it reads as empty");
  }
  try {
    stored_ = dictionaryFrom(*text);
    lastReported_.clear();
  } catch (const DecodingError& error) {
    isCorrupt_ = true;
    reportOnce("the defaults file \"" + path_.string() + "\" reads as empty: " + error.what());
  }
}

Result<std::string> DefaultsSuite::open() {
  auto file = NSFileHandle::open(path_, O_RDONLY);
  if (!file) return std::unexpected(file.error());
  file_ = std::move(*file);
  // Before the content, so that a change in between shows at the next look.
  if (auto known = file_.getStatus(state_); !known) return std::unexpected(known.error());
  return file_.readToEnd();
}

void DefaultsSuite::reportOnce(const std::string& problem) {
  if (problem == lastReported_) return;
  lastReported_ = problem;
  Environment::current().report(problem);
}

void DefaultsSuite::apply(const Dictionary& changes) {
  if (!canBeStored(changes) || !wouldChange(changes)) return;
  const std::scoped_lock lock(writing_);
  if (const auto saved = save(changes); !saved) {
    Environment::current().report("defaults are kept in memory only: " +
                                  saved.error()->localizedDescription());
    keep(changes);
  }
}

/// To be asked first: one value that no text can hold would make every later write fail as well.
bool DefaultsSuite::canBeStored(const Dictionary& changes) const {
  const auto text = textFrom(changes);
  if (!text) {
    Environment::current().report("the defaults file \"" + path_.string() +
                                  "\" can't take a value: " + text.error()->what());
  }
  return text.has_value();
}

bool DefaultsSuite::wouldChange(const Dictionary& changes) {
  const std::scoped_lock lock(mutex_);
  refresh();
  const auto isNew = [&](const auto& change) {
    const PropertyList* stored = find(stored_, change.first);
    return change.second != (stored != nullptr ? *stored : PropertyList());
  };
  return unreadable_ || !unsaved_.empty() || std::ranges::any_of(changes, isNew);
}

Result<void> DefaultsSuite::save(const Dictionary& changes) {
  if (auto made = NSFileManager::createDirectory(path_.parent_path()); !made) return made;
  const auto lock = FileLock::exclusive(lockFileOf(path_));
  if (!lock) return std::unexpected(lock.error());
  const auto content = contentWith(changes);
  if (!content) return std::unexpected(content.error());
  const auto text = textFrom(content->values);
  if (!text) return std::unexpected(text.error());
  if (content->replacesCorruptFile) {
    if (auto aside = moveAside(path_); !aside) return aside;
  }
  if (auto written = NSFileManager::write(*text, path_); !written) return written;
  const std::scoped_lock reading(mutex_);
  load();
  unsaved_.clear();
  return {};
}

/// What the file is to hold, at a time when no other process can change it.
Result<DefaultsSuite::Content> DefaultsSuite::contentWith(const Dictionary& changes) {
  const std::scoped_lock lock(mutex_);
  refresh();
  if (unreadable_) return std::unexpected(unreadable_);
  Content content{.values = stored_, .replacesCorruptFile = isCorrupt_};
  applyTo(content.values, unsaved_);
  applyTo(content.values, changes);
  return content;
}

void DefaultsSuite::keep(const Dictionary& changes) {
  const std::scoped_lock lock(mutex_);
  for (const auto& [key, value] : changes) unsaved_.insert_or_assign(key, value);
}

}  // namespace platform
