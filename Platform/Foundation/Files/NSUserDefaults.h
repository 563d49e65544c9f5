#pragma once

#include "Foundation/Coding/PropertyList.h"
#include "Foundation/Values/Error.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

class DefaultsSuite;

/// Small values by key that outlive the process: a *suite*, kept in one file which every process of
/// the user that opens the suite shares. A handle; its copies, and all that are opened under the
/// same name, are the same suite. Safe from any thread.
///
///     auto defaults = NSUserDefaults::standardUserDefaults();
///     defaults.setObject(3, "launches");
///     defaults.integerForKey("launches");   // 3, in every process, from now on
///     defaults.stringForKey("launches");    // "3"
///     defaults.integerForKey("unknown");    // 0
///
/// A write returns when it is on the disk. It is applied to what the file holds at that moment, so
/// writers of different keys never undo each other; of the same key the last one's value stays. A
/// read sees every write that has returned, whichever process made it.
///
/// No function here reports a failure to its caller; problems go to `Environment::report`:
/// - A write that fails (a full disk, a folder that can't be written) stays in this process's
///   memory, where it is read as if it had succeeded, and goes to the disk with the next write that
///   succeeds.
/// - A file that is no JSON dictionary reads as empty. The next write moves it aside (".corrupt"
///   behind its name) before it makes a new one.
/// - A file that can't be read, for want of permission for example, reads as empty, and is left
///   alone: writes fail.
///
/// The file is JSON that a person can read and edit, in the folder `Directories::preferences`:
/// `NAME.json`.
class NSUserDefaults {
 public:
  using Dictionary = PropertyList::Dictionary;
  /// What to change in one write: the new value of each key. Null removes the key.
  using Changes = Dictionary;

  /// The suite of this program, named by its bundle identifier, or "standard" where it has none.
  [[nodiscard]] static NSUserDefaults standardUserDefaults();
  /// A suite that programs share by its name, such as an application group's "group.velloro.app".
  /// Absent when the name is empty or has "/" or ".." in it.
  [[nodiscard]] static std::optional<NSUserDefaults> initWithSuiteName(std::string_view name);

  /// \name Reading
  /// A key that is absent, or holds a value of another kind than these rules can convert, reads as
  /// 0, false, 0.0 or absent.
  /// @{

  /// A number cut to a whole one (and to the range), a flag as 1 or 0, a text by the number that it
  /// begins with.
  [[nodiscard]] std::int64_t integerForKey(std::string_view key) const;
  /// A number other than 0, or a text that begins with "Y", "T" (of either case) or such a number.
  [[nodiscard]] bool boolForKey(std::string_view key) const;
  /// A number, a flag as 1 or 0, a text by the number that it begins with.
  [[nodiscard]] double doubleForKey(std::string_view key) const;
  /// A text, or a number in the shortest digits that represent it exactly; a flag as "1" or "0".
  [[nodiscard]] std::optional<std::string> stringForKey(std::string_view key) const;
  [[nodiscard]] std::optional<Data> dataForKey(std::string_view key) const;
  /// Absent unless every element is a text.
  [[nodiscard]] std::optional<std::vector<std::string>> stringArrayForKey(
      std::string_view key) const;
  /// The value as it was set; the way to read a date, a list or a dictionary.
  [[nodiscard]] std::optional<PropertyList> objectForKey(std::string_view key) const;
  /// All keys and values, the registered ones too.
  [[nodiscard]] Dictionary dictionaryRepresentation() const;
  /// @}

  /// \name Writing
  /// A write that changes nothing touches no file. Null removes the key. A value that JSON can't
  /// hold (a number that is not finite, a text that is not UTF-8) is refused and reported.
  /// @{
  void setObject(PropertyList value, std::string_view key);
  void removeObjectForKey(std::string_view key);
  /// All changes in one write: other processes see all of them or none.
  void setObjects(const Changes& changes);
  /// Why changes of this process are only in its memory; null if all are on the disk.
  [[nodiscard]] ErrorPtr saveError() const;
  /// @}

  /// Registers values for keys that have none. They are not stored, and are kept until the process
  /// ends.
  void registerDefaults(const Dictionary& values);

 private:
  explicit NSUserDefaults(std::shared_ptr<DefaultsSuite> suite) : suite_(std::move(suite)) {}

  std::shared_ptr<DefaultsSuite> suite_;
};

}  // namespace platform
