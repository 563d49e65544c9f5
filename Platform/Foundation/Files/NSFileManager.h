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

/// Files and folders. A failure is a `PosixError` that names the item and the system's reason; what
/// fails leaves things as they were.
///
///     const auto file = NSFileManager::cachesDirectory() / "state.json";
///     NSFileManager::write("{}", file).has_value();    // true
///     NSFileManager::contents(file);                   // "{}"
///     NSFileManager::contents("/none").error()->localizedDescription();
///         // "cannot open \"/none\": No such file or directory"
///
/// Content is bytes; a `std::string` holds them whether they are text or not. What is made is the
/// owner's alone unless another `NewItemAccess` is asked for.
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

  /// Whether there is an item of that name. A link counts as what it leads to.
  [[nodiscard]] static bool exists(const Path& path);
  /// A file's size in bytes.
  [[nodiscard]] static Result<std::uint64_t> size(const Path& path);
  /// What tells a file from every other that ever had its name, also from its copies; it stays when
  /// the content changes. Empty where there is no file.
  [[nodiscard]] static std::string identity(const Path& path);
  /// A file, read whole; an error beyond so many bytes.
  [[nodiscard]] static Result<std::string> contents(const Path& path,
                                                    std::size_t limit = NSFileHandle::largestRead);
  /// The names of the items in a folder, sorted.
  [[nodiscard]] static Result<std::vector<std::string>> contentsOfDirectory(const Path& path);

  /// Whether `write` waits until the disk has taken the content. Without waiting, a power cut soon
  /// afterwards may leave the file empty or damaged: enough for what can be made again.
  enum class Durability : std::uint8_t { powerCut, process };

  /// Gives the file this content, at once and for good: at any moment, and after a power cut, it
  /// holds all of the old or all of the new. The file keeps its permissions. Several may write the
  /// same file; the last one's content stays. A process killed amid writing leaves one hidden file
  /// behind, which the next write takes over. A link is replaced by a file.
  [[nodiscard]] static Result<void> write(std::string_view bytes, const Path& path,
                                          NewItemAccess access = NewItemAccess::owner,
                                          Durability durability = Durability::powerCut);
  /// Adds to the end of a file that is there: all of `bytes`, or nothing when it fails. Pieces that
  /// several processes add never mix.
  [[nodiscard]] static Result<void> append(std::string_view bytes, const Path& path);

  /// Makes an empty file. One that is there already stays as it is.
  [[nodiscard]] static Result<void> createFile(const Path& path,
                                               NewItemAccess access = NewItemAccess::owner);
  /// Makes a folder and the ones above it. One that is there already is no failure.
  [[nodiscard]] static Result<void> createDirectory(const Path& path,
                                                    NewItemAccess access = NewItemAccess::owner);
  /// Takes the permissions of all but the owner away from an item.
  [[nodiscard]] static Result<void> makePrivate(const Path& path);
  /// Removes a file, or a folder with all that is in it. A missing item is a failure (`ENOENT`).
  [[nodiscard]] static Result<void> removeItem(const Path& path);
  /// Copies a file, or a folder with all that is in it. `to` must not be there yet (`EEXIST`), and
  /// comes to be only once the copy is complete.
  [[nodiscard]] static Result<void> copyItem(const Path& from, const Path& to);
  /// Gives an item another name, if need be in another file system. `to` must not be there yet
  /// (`EEXIST`).
  [[nodiscard]] static Result<void> moveItem(const Path& from, const Path& to);
  /// Puts the file `replacement` in the place of `path`, whether or not that is there. At no moment
  /// is there none.
  [[nodiscard]] static Result<void> replaceItem(const Path& path, const Path& replacement);
};

}  // namespace platform
