#pragma once

#include "Foundation/Files/NSFileHandle.h"
#include "Foundation/Values/Error.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// Operations on files and folders. A failure is a `PosixError` that names the item and the
/// system's reason; an operation that fails changes nothing.
///
///     const auto file = NSFileManager::cachesDirectory() / "state.json";
///     NSFileManager::write("{}", file).has_value();    // true
///     NSFileManager::contents(file);                   // "{}"
///     NSFileManager::contents("/none").error()->localizedDescription();
///         // "cannot open \"/none\": No such file or directory"
///
/// Content is bytes; a `std::string` holds them whether they are text or not. New items are
/// accessible for the owner alone, unless another `NewItemAccess` is given.
class NSFileManager {
 public:
  using Path = std::filesystem::path;

  NSFileManager() = delete;

  /// \name The process's own folders, made when they are missing. When that fails, so does whatever
  /// is opened in them.
  /// @{
  [[nodiscard]] static Path cachesDirectory();
  [[nodiscard]] static Path documentDirectory();
  /// The folder that the programs of an application group share. Absent when it can't be made, or
  /// when the identifier is no file name.
  [[nodiscard]] static std::optional<Path> containerURLForSecurityApplicationGroupIdentifier(
      std::string_view identifier);
  /// @}

  /// Whether `name` can be one item's name in a folder: not empty, no "/", not "." or "..".
  [[nodiscard]] static bool isFileName(std::string_view name);

  /// Whether an item has that name. Links are followed.
  [[nodiscard]] static bool exists(const Path& path);
  /// A file's size in bytes.
  [[nodiscard]] static Result<std::uint64_t> size(const Path& path);
  /// Distinguishes a file from every other file that ever had its name, and from its copies. It
  /// does not change with the content. Empty where there is no file.
  [[nodiscard]] static std::string identity(const Path& path);
  /// The whole content of a file; an error if it has more bytes than `limit`.
  [[nodiscard]] static Result<std::string> contents(const Path& path,
                                                    std::size_t limit = NSFileHandle::largestRead);
  /// The names of the items in a folder, sorted.
  [[nodiscard]] static Result<std::vector<std::string>> contentsOfDirectory(const Path& path);

  /// Whether `write` waits until the disk has taken the content. Without waiting, a power cut soon
  /// afterwards may leave the file empty or damaged: enough for what can be made again.
  enum class Durability : std::uint8_t { powerCut, process };

  /// Replaces the content of the file atomically: at any moment, and after a power cut, it has all
  /// of the old or all of the new content. The file keeps its permissions. Several may write the
  /// same file; the last one's content stays. A process that is killed while it writes leaves a
  /// hidden file, which the next write reuses. A link is replaced by a file.
  [[nodiscard]] static Result<void> write(std::string_view bytes, const Path& path,
                                          NewItemAccess access = NewItemAccess::owner,
                                          Durability durability = Durability::powerCut);
  /// Appends to an existing file: all of `bytes`, or nothing if it fails. Pieces that several
  /// processes append are never mixed.
  [[nodiscard]] static Result<void> append(std::string_view bytes, const Path& path);

  /// Makes an empty file. An existing file is not changed.
  [[nodiscard]] static Result<void> createFile(const Path& path,
                                               NewItemAccess access = NewItemAccess::owner);
  /// Makes a folder and its missing parents. An existing folder is no failure.
  [[nodiscard]] static Result<void> createDirectory(const Path& path,
                                                    NewItemAccess access = NewItemAccess::owner);
  /// Takes the permissions of all but the owner away from an item.
  [[nodiscard]] static Result<void> makePrivate(const Path& path);
  /// Removes a file, or a folder with all that is in it. A missing item is a failure (`ENOENT`).
  [[nodiscard]] static Result<void> removeItem(const Path& path);
  /// Copies a file, or a folder with its content. `to` must not exist (`EEXIST`), and is made only
  /// when the copy is complete.
  [[nodiscard]] static Result<void> copyItem(const Path& from, const Path& to);
  /// Renames an item, if necessary to another file system. `to` must not exist (`EEXIST`).
  [[nodiscard]] static Result<void> moveItem(const Path& from, const Path& to);
  /// Moves the file `replacement` to `path`, which may exist. If it does, there is a file at `path`
  /// at any moment.
  [[nodiscard]] static Result<void> replaceItem(const Path& path, const Path& replacement);
};

}  // namespace platform
