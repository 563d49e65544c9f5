#include "VelloroBackup/BackupDocument.h"

#include "Foundation/Coding/JSON.h"

#include <optional>

namespace velloro {
namespace {

constexpr JSONDecoder decoder{.dateForm = DateForm::iso8601, .isStrict = true};

struct Parts {
  std::vector<std::pair<std::size_t, std::size_t>> tasks = {};  ///< Start and length.
  std::size_t listStart = 0, listEnd = 0;  ///< Behind the bracket of the list, and before the last.
};

/// Finds the tasks in a document. It looks at no more than it needs for that; whether each part is
/// right is for the decoder to say.
class Splitter {
 public:
  explicit Splitter(std::string_view json) : json_(json) {}

  /// Absent for a text of another structure.
  std::optional<Parts> parts() && {
    const bool isWhole = take('{') && takeFields() && next() == '\0' && at_ == json_.size();
    return isWhole && parts_.listStart != 0 ? std::optional(std::move(parts_)) : std::nullopt;
  }

 private:
  /// Behind white space; zero at the end.
  char next() {
    at_ = std::min(json_.find_first_not_of(" \t\r\n", at_), json_.size());
    return at_ < json_.size() ? json_[at_] : '\0';
  }
  bool take(char wanted) {
    if (next() != wanted) return false;
    ++at_;
    return true;
  }

  bool takeFields() {
    do {
      if (next() != '"') return false;
      const std::size_t start = at_;
      if (!skipText()) return false;
      const std::string_view key = json_.substr(start + 1, at_ - start - 2);
      // Another form of that key, or the key once more, is for the decoder.
      if (key.contains('\\') || !take(':')) return false;
      if (key != "tasks") {
        if (!skipValue()) return false;
      } else if (parts_.listStart != 0 || !takeTasks()) {
        return false;
      }
    } while (take(','));
    return take('}');
  }

  bool takeTasks() {
    if (!take('[')) return false;
    parts_.listStart = at_;
    if (next() != ']') {
      do {
        (void)next();
        const std::size_t start = at_;
        if (!skipValue()) return false;
        parts_.tasks.emplace_back(start, at_ - start);
      } while (take(','));
    }
    parts_.listEnd = at_;
    return take(']');
  }

  /// An object or a list by its brackets, whatever is between them.
  bool skipValue() {
    std::size_t depth = 0;
    if (next() == '\0') return false;
    do {
      const char first = json_[at_];
      if (first == '"') {
        if (!skipText()) return false;
        continue;
      }
      if (first == '{' || first == '[') ++depth;
      if (first == '}' || first == ']') {
        if (depth == 0) return false;
        --depth;
      }
      ++at_;
      if (depth == 0 && first != '}' && first != ']') return skipScalar();
    } while (depth > 0 && at_ < json_.size());
    return depth == 0;
  }
  bool skipScalar() {
    at_ = std::min(json_.find_first_of(",]} \t\r\n", at_), json_.size());
    return true;
  }
  bool skipText() {
    for (++at_; at_ < json_.size(); ++at_) {
      if (json_[at_] == '"') {
        ++at_;
        return true;
      }
      if (json_[at_] == '\\') ++at_;
    }
    return false;
  }

  std::string_view json_;
  std::size_t at_ = 0;
  Parts parts_;
};

VelloroJSONBackupTask decoded(std::string_view task) {
  return decoder.decode<VelloroJSONBackupTask>(task);
}

}  // namespace

BackupDocument::BackupDocument(std::string json) : json_(std::move(json)) {
  const std::string_view text = json_;
  auto parts = text.size() > maximumJSONSize ? std::nullopt : Splitter(text).parts();
  try {
    if (parts) {
      frame_ = VelloroJSONBackup::fromJSON(std::string(text.substr(0, parts->listStart)) +
                                           std::string(text.substr(parts->listEnd)));
      for (const auto& [start, length] : parts->tasks) (void)decoded(text.substr(start, length));
      places_ = std::move(parts->tasks);
      return;
    }
  } catch (const DecodingError&) {  // whose place is not that of the whole document
  }
  *this = BackupDocument(VelloroJSONBackup::fromJSON(json_));
}

BackupDocument::BackupDocument(VelloroJSONBackup backup)
    : frame_(std::move(backup)), tasks_(std::exchange(frame_.tasks, {})) {}

void BackupDocument::forEachTask(FunctionRef<void(const VelloroJSONBackupTask&)> visit) const {
  for (const VelloroJSONBackupTask& task : tasks_) visit(task);
  for (const auto& [start, length] : places_) {
    visit(decoded(std::string_view(json_).substr(start, length)));
  }
}

}  // namespace velloro
