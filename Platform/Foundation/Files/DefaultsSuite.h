#pragma once

#include "Foundation/Coding/PropertyList.h"
#include "Foundation/Files/SharedFile.h"

#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

namespace platform {

/// The file of one defaults suite, and its cached content; see `NSUserDefaults` for its guarantees.
/// Safe from any thread.
///
/// A write takes the suite's lock file, reads the file again if another process has replaced it,
/// applies its own changes and replaces the file. A read looks at the file's identity alone, unless
/// that has changed.
class DefaultsSuite {
 public:
  using Dictionary = PropertyList::Dictionary;

  explicit DefaultsSuite(std::filesystem::path path) : file_(std::move(path)) {}
  /// The suite of that name in the current environment's folder; one object per process and file.
  [[nodiscard]] static std::shared_ptr<DefaultsSuite> named(std::string_view name);

  /// Null where there is none.
  [[nodiscard]] PropertyList value(std::string_view key);
  [[nodiscard]] Dictionary values();
  /// Sets each key's new value, or removes the key where that is null.
  void apply(const Dictionary& changes);
  /// Why changes are not on the disk yet; null when all are.
  [[nodiscard]] ErrorPtr saveError();
  void addRegistered(const Dictionary& values);

 private:
  struct Content {
    Dictionary values;
    bool replacesCorruptFile = false;
  };

  void refresh();
  void load();

  [[nodiscard]] bool canBeStored(const Dictionary& changes) const;
  [[nodiscard]] bool wouldChange(const Dictionary& changes);
  [[nodiscard]] Result<void> save(const Dictionary& changes);
  [[nodiscard]] Result<Content> contentWith(const Dictionary& changes);
  void keep(const Dictionary& changes, const ErrorPtr& reason);

  std::mutex writing_;  ///< Held during a whole write; locked before `mutex_`.
  std::mutex mutex_;    ///< Guards what follows.

  Dictionary stored_;      ///< What the file held when it was last read.
  Dictionary unsaved_;     ///< Changes that could not be written yet.
  Dictionary registered_;  ///< What is read where a key has no value.

  SharedFile file_;      ///< Its path and its lock need no mutex.
  ErrorPtr unreadable_;  ///< Why the file could not be read.
  ErrorPtr saveError_;   ///< Why `unsaved_` could not be written.
  bool isCorrupt_ = false;
};

}  // namespace platform
