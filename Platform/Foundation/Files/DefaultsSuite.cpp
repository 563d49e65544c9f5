#include "Foundation/Files/DefaultsSuite.h"

#include "Foundation/Coding/CodingError.h"
#include "Foundation/Process/Environment.h"
#include "Foundation/Values/Try.h"

#include <algorithm>
#include <map>

namespace platform {
namespace {

namespace fs = std::filesystem;
using Dictionary = DefaultsSuite::Dictionary;

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

}  // namespace

std::shared_ptr<DefaultsSuite> DefaultsSuite::named(std::string_view name) {
  static std::mutex mutex;
  static auto* suites = new std::map<std::string, std::shared_ptr<DefaultsSuite>>;
  const fs::path folder = Environment::current().directories().preferences;
  const std::string path = (folder / name).string() + ".json";
  const std::scoped_lock lock(mutex);
  if (const auto known = suites->find(path); known != suites->end()) return known->second;
  std::erase_if(*suites, [&](const auto& suite) {  // those of an environment that has gone
    return suite.second.use_count() == 1 && suite.second->file_.path().parent_path() != folder;
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
  if (!file_.isUpToDate()) load();
}

void DefaultsSuite::load() {
  stored_.clear();
  unreadable_ = nullptr;
  isCorrupt_ = false;
  const auto text = file_.read();
  if (!text) {
    unreadable_ = text.error();
    return file_.reportOnce(unreadable_->localizedDescription() + "; it reads as empty");
  }
  if (!*text) return;
  try {
    stored_ = dictionaryFrom(**text);
    file_.forgetReport();
  } catch (const DecodingError& error) {
    isCorrupt_ = true;
    file_.reportOnce("the defaults file \"" + file_.path().string() +
                     "\" reads as empty: " + error.what());
  }
}

void DefaultsSuite::apply(const Dictionary& changes) {
  if (!canBeStored(changes) || !wouldChange(changes)) return;
  const std::scoped_lock lock(writing_);
  if (const auto saved = save(changes); !saved) {
    Environment::current().report("defaults are kept in memory only: " +
                                  saved.error()->localizedDescription());
    keep(changes, saved.error());
  }
}

ErrorPtr DefaultsSuite::saveError() {
  const std::scoped_lock lock(mutex_);
  return saveError_;
}

/// To be asked first: one value that no text can hold would make every later write fail as well.
bool DefaultsSuite::canBeStored(const Dictionary& changes) const {
  const auto text = textFrom(changes);
  if (!text) {
    Environment::current().report("the defaults file \"" + file_.path().string() +
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
  const auto lock = TRY(file_.lock());
  const auto content = TRY(contentWith(changes));
  const auto text = TRY(textFrom(content.values));
  if (content.replacesCorruptFile) {
    TRY(file_.moveAside());
  }
  TRY(file_.write(text));
  const std::scoped_lock reading(mutex_);
  load();
  unsaved_.clear();
  saveError_ = nullptr;
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

void DefaultsSuite::keep(const Dictionary& changes, const ErrorPtr& reason) {
  const std::scoped_lock lock(mutex_);
  saveError_ = reason;
  for (const auto& [key, value] : changes) unsaved_.insert_or_assign(key, value);
}

}  // namespace platform
