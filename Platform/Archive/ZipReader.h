#pragma once

#include "Foundation/Values/Error.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace platform {

/// Reads a zip archive, also one of more than 4 GiB, and one that breaks off as far as it goes.
/// Entries are read piece by piece and never unpacked as a whole.
///
/// ```
/// auto archive = ZipReader::open("export.zip").value();
/// for (const auto& entry : archive.entries()) {
///   auto stream = archive.read(entry).value();
///   char piece[65536];
///   while (stream->read(piece).value_or(0) > 0) …
/// }
/// ```
class ZipReader {
 public:
  struct Entry {
    std::string name;
    std::uint64_t size = 0;  ///< Unpacked, as the archive says; 0 where it does not.
    std::size_t index = 0;
  };

  /// The bytes of an entry.
  class Stream {
   public:
    virtual ~Stream() = default;
    /// Fills at most `into`; 0 at the end. Fails for damaged data, for an entry of another length
    /// than it says, and for one that unpacks to more than `mostPerByte` times its archive.
    [[nodiscard]] virtual Result<std::size_t> read(std::span<char> into) = 0;
  };

  /// What honest files are packed to is far more.
  static constexpr std::uint64_t mostPerByte = 200;

  /// Fails for a file that is no archive, or one whose first entry breaks off.
  [[nodiscard]] static Result<ZipReader> open(const std::filesystem::path& path);
  /// Whether the file begins as an archive does.
  [[nodiscard]] static bool isArchive(const std::filesystem::path& path);

  [[nodiscard]] const std::vector<Entry>& entries() const { return entries_; }
  [[nodiscard]] Result<std::unique_ptr<Stream>> read(const Entry& entry) const;

 private:
  explicit ZipReader(std::filesystem::path path) : path_(std::move(path)) {}

  std::filesystem::path path_;
  std::vector<Entry> entries_;
};

}  // namespace platform
