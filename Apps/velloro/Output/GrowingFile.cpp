#include "velloro/Output/GrowingFile.h"

#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Text/String.h"
#include "Foundation/Values/UUID.h"
#include "velloro/Output/Output.h"

#include <stdexcept>
#include <system_error>
#include <utility>

namespace velloro {

GrowingFile::GrowingFile(std::string file, std::string option)
    : file_(std::move(file)), option_(std::move(option)) {
  if (isStandardOutput()) return;
  const std::filesystem::path path(file_);
  hidden_ =
      path.parent_path() / ("." + path.filename().string() + "." + UUID::random().uuidString());
  check(NSFileManager::createFile(hidden_, NewItemAccess::byUmask));
}

GrowingFile::~GrowingFile() {
  if (!hidden_.empty()) (void)NSFileManager::removeItem(hidden_);
}

void GrowingFile::add(std::string_view piece) {
  if (!isStandardOutput()) return check(NSFileManager::append(piece, hidden_));
  printBytes(piece);
}

void GrowingFile::finish() {
  if (isStandardOutput()) return;
  // A file that is replaced keeps its permissions, as when it is written at once.
  std::error_code isNew;
  const auto replaced = std::filesystem::status(file_, isNew);
  if (std::filesystem::exists(replaced)) {
    std::filesystem::permissions(hidden_, replaced.permissions(), isNew);
  }
  check(NSFileManager::replaceItem(file_, hidden_));
  hidden_.clear();
}

void GrowingFile::check(const Result<void>& done) const {
  if (done) return;
  throw std::runtime_error(option_ + " " + inQuotes(file_) + ": " +
                           done.error()->localizedDescription());
}

}  // namespace velloro
