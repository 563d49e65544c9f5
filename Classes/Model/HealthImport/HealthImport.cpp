#include "HealthImport/HealthImport.h"

#include "Archive/ZipReader.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Values/Try.h"
#include "HealthImport/ExportReader.h"
#include "HealthImport/OtherReaders.h"

#include <fstream>

namespace velloro {
namespace {

using Form = HealthImportForm;
using Progress = std::function<void(double)>;

auto unreadable(const std::filesystem::path& file, const std::string& reason) {
  return failure<Error>("velloro.health", 2, "\"" + file.string() + "\": " + reason);
}

Result<std::string> beginning(const ByteSource& source) {
  std::string bytes(1024, '\0');
  bytes.resize(TRY(source(bytes)));
  return bytes;
}

bool isExport(std::string_view bytes) {
  return bytes.contains("<!DOCTYPE HealthData") || bytes.contains("<HealthData");
}

ByteSource fileSource(const std::filesystem::path& file, const Progress& progress) {
  auto stream = std::make_shared<std::ifstream>(file, std::ios::binary);
  const auto size = static_cast<double>(NSFileManager::size(file).value_or(0));
  auto done = std::make_shared<double>(0);
  return [stream, size, done, progress](std::span<char> into) -> Result<std::size_t> {
    stream->read(into.data(), static_cast<std::streamsize>(into.size()));
    const auto got = static_cast<std::size_t>(stream->gcount());
    *done += static_cast<double>(got);
    if (progress && size > 0) progress(*done / size);
    return got;
  };
}

/// Nothing is to fill the disk.
constexpr std::uint64_t largestEntry = std::uint64_t{64} << 30;

Result<ByteSource> entrySource(const std::filesystem::path& file, const ZipReader& archive,
                               const ZipReader::Entry& entry, const Progress& progress) {
  const auto packed = NSFileManager::size(file).value_or(0);
  if (entry.size > largestEntry || entry.size / ZipReader::mostPerByte > packed + 1024) {
    return failure<Error>("velloro.health", 2,
                          "\"" + entry.name + "\" would unpack to far more than a health export");
  }
  std::shared_ptr<ZipReader::Stream> stream = TRY(archive.read(entry));
  auto done = std::make_shared<double>(0);
  const auto size = static_cast<double>(entry.size);
  return ByteSource([stream, done, size, progress](std::span<char> into) -> Result<std::size_t> {
    auto got = stream->read(into);
    *done += static_cast<double>(got.value_or(0));
    if (progress && size > 0) progress(*done / size);
    return got;
  });
}

/// A file is read by a name, so it is unpacked for as long as it is read.
class TemporaryFile {
 public:
  explicit TemporaryFile(std::filesystem::path path) : path_(std::move(path)) {}
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() { (void)NSFileManager::removeItem(path_); }

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

Result<void> unpack(const ByteSource& source, const std::filesystem::path& to) {
  std::ofstream file(to, std::ios::binary);
  char piece[65536];
  while (true) {
    const auto got = TRY(source(piece));
    if (got == 0) break;
    file.write(piece, static_cast<std::streamsize>(got));
  }
  file.close();
  return file ? Result<void>() : unreadable(to, "it can't be written");
}

class Importer {
 public:
  Importer(const std::filesystem::path& file, std::optional<Form> form, const Progress& progress,
           ImportSink& sink)
      : file_(file), form_(form), progress_(progress), sink_(sink) {}

  Result<void> read() {
    TRY(NSFileManager::size(file_));
    if (form_ != Form::csv && ZipReader::isArchive(file_)) return readArchive();
    const std::string start = TRY(beginning(fileSource(file_, {})));
    switch (form_ ? *form_ : formOf(start)) {
      case Form::export_: {
        if (start.starts_with("PK")) return unreadable(file_, "the archive is damaged");
        return ExportReader(sink_).read(fileSource(file_, progress_));
      }
      case Form::csv:
        return readCSV(fileSource(file_, progress_), sink_);
      case Form::gadgetbridge:
        return readGadgetbridge(file_, sink_, progress_);
    }
    return {};
  }

 private:
  static Form formOf(std::string_view start) {
    if (start.starts_with("SQLite format 3")) return Form::gadgetbridge;
    const bool isXML =
        isExport(start) || start.starts_with("<") || start.starts_with("\xEF\xBB\xBF<");
    return isXML ? Form::export_ : Form::csv;
  }

  [[nodiscard]] Result<std::string> beginningOf(const ZipReader& archive,
                                                const ZipReader::Entry& entry) const {
    return beginning(TRY(entrySource(file_, archive, entry, {})));
  }

  /// The export has a localised name, and stands one folder deep.
  Result<void> readArchive() {
    const auto archive = TRY(ZipReader::open(file_));
    ErrorPtr unread;
    for (const auto& entry : archive.entries()) {
      const bool isDatabase = entry.name.ends_with("database/Gadgetbridge");
      const bool isXML = entry.name.ends_with(".xml") && !entry.name.contains("__MACOSX");
      if (isDatabase && form_ != Form::export_) {
        const TemporaryFile copy(NSFileManager::cachesDirectory() /
                                 (UUID::random().uuidString() + ".sqlite"));
        const auto packed = TRY(entrySource(file_, archive, entry, {}));
        TRY(unpack(packed, copy.path()));
        return readGadgetbridge(copy.path(), sink_, progress_);
      }
      if (!isXML || form_ == Form::gadgetbridge) continue;
      const auto start = beginningOf(archive, entry);
      if (!start) {
        unread = start.error();
      } else if (isExport(*start)) {
        return ExportReader(sink_).read(TRY(entrySource(file_, archive, entry, progress_)));
      }
    }
    if (unread != nullptr) return std::unexpected(unread);
    return unreadable(file_, "the archive holds no health export");
  }

  const std::filesystem::path& file_;
  std::optional<Form> form_;
  const Progress& progress_;
  ImportSink& sink_;
};

}  // namespace

HealthImport importHealthData(const HKHealthStore& store, const std::filesystem::path& file,
                              std::optional<HealthImportForm> form,
                              const std::function<void(double)>& progress) {
  HealthImport result;
  const auto written = store.write([&](HKSampleWriter& writer) -> Result<void> {
    ImportSink sink(writer);
    const auto read = Importer(file, form, progress, sink).read();
    result.report = sink.finish();
    if (sink.error() != nullptr) return std::unexpected(sink.error());
    return read;
  });
  if (!written) result.error = written.error();
  return result;
}

}  // namespace velloro
