#include "Archive/ZipReader.h"

#include "Foundation/Values/Try.h"

#include <fstream>

#include <archive.h>
#include <archive_entry.h>

namespace platform {
namespace {

using Handle = std::unique_ptr<archive, int (*)(archive*)>;

std::unexpected<ErrorPtr> damaged(const std::filesystem::path& path, const std::string& reason) {
  return failure<Error>("platform.archive", 1,
                        "cannot read the archive \"" + path.string() + "\": " + reason);
}

std::unexpected<ErrorPtr> damaged(const std::filesystem::path& path, archive* at) {
  const char* reason = archive_error_string(at);
  return damaged(path, reason != nullptr ? reason : "it is damaged");
}

Result<Handle> opened(const std::filesystem::path& path) {
  constexpr std::size_t blockSize = 65536;
  Handle handle(archive_read_new(), archive_read_free);
  if (handle == nullptr) throw std::bad_alloc();
  archive_read_support_format_zip(handle.get());
  if (archive_read_open_filename(handle.get(), path.c_str(), blockSize) != ARCHIVE_OK) {
    return damaged(path, handle.get());
  }
  return handle;
}

class EntryStream final : public ZipReader::Stream {
 public:
  EntryStream(std::filesystem::path path, Handle handle, std::uint64_t most)
      : path_(std::move(path)), handle_(std::move(handle)), left_(most) {}

  Result<std::size_t> read(std::span<char> into) override {
    const la_ssize_t got = archive_read_data(handle_.get(), into.data(), into.size());
    if (got < 0) return damaged(path_, handle_.get());
    const auto count = static_cast<std::uint64_t>(got);
    if (count > left_) return damaged(path_, "it unpacks to far more than it should");
    left_ -= count;
    return static_cast<std::size_t>(count);
  }

 private:
  std::filesystem::path path_;
  Handle handle_;
  std::uint64_t left_;
};

}  // namespace

bool ZipReader::isArchive(const std::filesystem::path& path) {
  char start[4] = {};
  std::ifstream(path, std::ios::binary).read(start, sizeof start);
  return std::string_view(start, sizeof start) == std::string_view("PK\x03\x04", 4);
}

Result<ZipReader> ZipReader::open(const std::filesystem::path& path) {
  const Handle handle = TRY(opened(path));
  ZipReader reader(path);
  for (std::size_t index = 0;; ++index) {
    archive_entry* entry = nullptr;
    const int status = archive_read_next_header(handle.get(), &entry);
    if (status == ARCHIVE_EOF) return reader;
    if (status < ARCHIVE_WARN) {
      // What stands before the break can be read.
      if (reader.entries_.empty()) return damaged(path, handle.get());
      return reader;
    }
    const char* name = archive_entry_pathname(entry);
    const bool hasSize = archive_entry_size_is_set(entry) != 0;
    reader.entries_.push_back(
        {.name = name != nullptr ? name : "",
         .size = hasSize ? static_cast<std::uint64_t>(archive_entry_size(entry)) : 0,
         .index = index});
  }
}

Result<std::unique_ptr<ZipReader::Stream>> ZipReader::read(const Entry& entry) const {
  Handle handle = TRY(opened(path_));
  for (std::size_t index = 0; index <= entry.index; ++index) {
    archive_entry* header = nullptr;
    const int status = archive_read_next_header(handle.get(), &header);
    if (status == ARCHIVE_EOF) return damaged(path_, "it has changed");
    if (status < ARCHIVE_WARN) return damaged(path_, handle.get());
  }
  std::error_code ignored;
  const std::uint64_t size = std::filesystem::file_size(path_, ignored);
  return std::make_unique<EntryStream>(path_, std::move(handle), mostPerByte * (size + 1024));
}

}  // namespace platform
