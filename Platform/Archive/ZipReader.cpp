#include "Archive/ZipReader.h"

#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Values/Try.h"

#include <algorithm>
#include <fstream>
#include <optional>
#include <string_view>

#include <zlib.h>

namespace platform {
namespace {

constexpr std::string_view localHeader = "PK\x03\x04";
constexpr std::string_view centralHeader = "PK\x01\x02";
constexpr std::string_view endRecord = "PK\x05\x06";
constexpr std::string_view largeEndLocator = "PK\x06\x07";
constexpr std::string_view largeEndRecord = "PK\x06\x06";
constexpr std::uint64_t inLargeField = 0xFFFFFFFF;

auto damaged(const std::filesystem::path& path, const std::string& reason) {
  return failure<Error>("velloro.archive", 1, "\"" + path.string() + "\": " + reason);
}

/// Numbers in an archive have their lowest byte first.
std::uint64_t number(std::string_view bytes, std::size_t at, std::size_t length) {
  std::uint64_t value = 0;
  for (std::size_t i = std::min(at + length, bytes.size()); i > at; --i) {
    value = value << 8 | static_cast<unsigned char>(bytes[i - 1]);
  }
  return value;
}

std::optional<std::string> bytesAt(std::ifstream& file, std::uint64_t offset, std::size_t length) {
  std::string bytes(length, '\0');
  file.clear();
  file.seekg(static_cast<std::streamoff>(offset));
  file.read(bytes.data(), static_cast<std::streamsize>(length));
  return static_cast<std::size_t>(file.gcount()) == length ? std::optional(std::move(bytes))
                                                           : std::nullopt;
}

struct Directory {
  std::uint64_t offset = 0;
  std::uint64_t size = 0;
};

std::optional<Directory> directoryOf(std::ifstream& file, std::uint64_t size) {
  constexpr std::uint64_t endLength = 22;
  constexpr std::uint64_t longestComment = 65535;
  const std::uint64_t tail = std::min(size, endLength + longestComment);
  const auto bytes = bytesAt(file, size - tail, tail);
  const auto at = bytes ? bytes->rfind(endRecord) : std::string::npos;
  if (at == std::string::npos || at + endLength > bytes->size()) return std::nullopt;
  Directory found{.offset = number(*bytes, at + 16, 4), .size = number(*bytes, at + 12, 4)};
  if (found.offset != inLargeField && found.size != inLargeField) return found;
  constexpr std::size_t locatorLength = 20;
  if (at < locatorLength ||
      !std::string_view(*bytes).substr(at - locatorLength).starts_with(largeEndLocator)) {
    return std::nullopt;
  }
  const auto large = bytesAt(file, number(*bytes, at - locatorLength + 8, 8), 56);
  if (!large || !large->starts_with(largeEndRecord)) return std::nullopt;
  return Directory{.offset = number(*large, 48, 8), .size = number(*large, 40, 8)};
}

/// What did not fit its field stands in an extra one, in a fixed order.
void readLargeFields(std::string_view extra, ZipReader::Entry& entry) {
  while (extra.size() >= 4) {
    const auto length = std::min<std::size_t>(number(extra, 2, 2), extra.size() - 4);
    const std::string_view field = extra.substr(4, length);
    if (number(extra, 0, 2) == 1) {
      std::size_t at = 0;
      for (std::uint64_t* value : {&entry.size, &entry.compressedSize, &entry.offset}) {
        if (*value != inLargeField) continue;
        *value = number(field, at, 8);
        at += 8;
      }
    }
    extra.remove_prefix(4 + length);
  }
}

class EntryStream : public ZipReader::Stream {
 public:
  EntryStream(std::ifstream file, const std::filesystem::path& path, const ZipReader::Entry& entry)
      : file_(std::move(file)), path_(path), entry_(entry), left_(entry.compressedSize) {
    isOpen_ = entry.method == 0 || inflateInit2(&inflater_, -MAX_WBITS) == Z_OK;
  }
  EntryStream(const EntryStream&) = delete;
  EntryStream& operator=(const EntryStream&) = delete;
  ~EntryStream() override {
    if (entry_.method != 0 && isOpen_) inflateEnd(&inflater_);
  }

  Result<std::size_t> read(std::span<char> into) override {
    if (!isOpen_) return damaged(path_, "there is not enough memory");
    if (isOver_ || into.empty()) return 0;
    const std::size_t got = TRY(entry_.method == 0 ? copied(into) : inflated(into));
    done_ += got;
    if (done_ > entry_.size) return damaged(path_, "an entry is larger than it says");
    if (isOver_ && done_ < entry_.size) return damaged(path_, "an entry breaks off");
    return got;
  }

 private:
  Result<std::size_t> copied(std::span<char> into) {
    const auto wanted = std::min<std::uint64_t>(into.size(), left_);
    file_.read(into.data(), static_cast<std::streamsize>(wanted));
    const auto got = static_cast<std::size_t>(file_.gcount());
    left_ -= got;
    isOver_ = left_ == 0 || got == 0;
    return got;
  }

  Result<std::size_t> inflated(std::span<char> into) {
    inflater_.next_out = reinterpret_cast<Bytef*>(into.data());
    inflater_.avail_out = static_cast<uInt>(into.size());
    while (inflater_.avail_out > 0 && !isOver_) {
      if (inflater_.avail_in == 0) {
        const auto wanted = std::min<std::uint64_t>(sizeof buffer_, left_);
        file_.read(buffer_, static_cast<std::streamsize>(wanted));
        const auto got = static_cast<std::size_t>(file_.gcount());
        if (got == 0) return damaged(path_, "an entry breaks off");
        left_ -= got;
        inflater_.next_in = reinterpret_cast<Bytef*>(buffer_);
        inflater_.avail_in = static_cast<uInt>(got);
      }
      const int code = inflate(&inflater_, Z_NO_FLUSH);
      if (code == Z_STREAM_END) {
        isOver_ = true;
      } else if (code != Z_OK) {
        return damaged(path_, "an entry is damaged");
      }
    }
    return into.size() - inflater_.avail_out;
  }

  std::ifstream file_;
  std::filesystem::path path_;
  ZipReader::Entry entry_;
  std::uint64_t left_;
  std::uint64_t done_ = 0;
  bool isOpen_ = false;
  bool isOver_ = false;
  z_stream inflater_{};
  char buffer_[65536] = {};
};

}  // namespace

bool ZipReader::isArchive(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  const auto start = bytesAt(file, 0, localHeader.size());
  return start && (*start == localHeader || *start == endRecord);
}

Result<ZipReader> ZipReader::open(const std::filesystem::path& path) {
  const auto size = TRY(NSFileManager::size(path));
  std::ifstream file(path, std::ios::binary);
  const auto directory = directoryOf(file, size);
  if (!directory || directory->offset > size || directory->size > size - directory->offset) {
    return damaged(path, "the archive is no zip archive, or it breaks off");
  }
  constexpr std::uint64_t longestDirectory = std::uint64_t{256} << 20;
  if (directory->size > longestDirectory) return damaged(path, "the archive has too many entries");
  const auto bytes = bytesAt(file, directory->offset, directory->size);
  if (!bytes) return damaged(path, "the archive breaks off");
  ZipReader reader(path);
  std::string_view rest = *bytes;
  constexpr std::size_t headerLength = 46;
  while (rest.starts_with(centralHeader) && rest.size() >= headerLength) {
    const auto nameLength = number(rest, 28, 2);
    const auto extraLength = number(rest, 30, 2);
    const auto whole = headerLength + nameLength + extraLength + number(rest, 32, 2);
    if (whole > rest.size()) return damaged(path, "the list of entries is damaged");
    Entry entry{.name = std::string(rest.substr(headerLength, nameLength)),
                .size = number(rest, 24, 4),
                .compressedSize = number(rest, 20, 4),
                .offset = number(rest, 42, 4),
                .method = static_cast<int>(number(rest, 10, 2))};
    readLargeFields(rest.substr(headerLength + nameLength, extraLength), entry);
    reader.entries_.push_back(std::move(entry));
    rest.remove_prefix(whole);
  }
  return reader;
}

Result<std::unique_ptr<ZipReader::Stream>> ZipReader::read(const Entry& entry) const {
  if (entry.method != 0 && entry.method != Z_DEFLATED) {
    return damaged(path_, "an entry is packed in an unknown way");
  }
  std::ifstream file(path_, std::ios::binary);
  constexpr std::size_t headerLength = 30;
  const auto header = bytesAt(file, entry.offset, headerLength);
  if (!header || !header->starts_with(localHeader)) return damaged(path_, "an entry is missing");
  const auto data = entry.offset + headerLength + number(*header, 26, 2) + number(*header, 28, 2);
  file.seekg(static_cast<std::streamoff>(data));
  return std::make_unique<EntryStream>(std::move(file), path_, entry);
}

}  // namespace platform
