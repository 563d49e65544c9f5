#include "Foundation/Text/String.h"
#include "Foundation/Values/Try.h"
#include "HealthImport/OtherReaders.h"
#include "HealthKit/HealthDetails.h"
#include "OxHealthKit/HKObjects.h"

namespace velloro {
namespace {

/// Splits text into records of fields: quotes may hold commas, line breaks and doubled quotes.
class CSVRecords {
 public:
  explicit CSVRecords(std::function<void(std::int64_t, std::vector<std::string>)> take)
      : take_(std::move(take)) {}

  void feed(std::string_view bytes) {
    for (const char c : bytes) character(c);
  }
  /// Whether the text ends outside of quotes.
  [[nodiscard]] bool finish() {
    if (!fields_.empty() || !field_.empty() || wasQuoted_) endRecord();
    return !isQuoted_ || isQuoteSeen_;
  }

 private:
  void character(char c) {
    if (isQuoted_ && isQuoteSeen_) {
      isQuoteSeen_ = false;
      if (c == '"') {
        field_ += c;
        return;
      }
      isQuoted_ = false;
    } else if (isQuoted_) {
      if (c == '"') {
        isQuoteSeen_ = true;
      } else {
        add(c);
      }
      if (c == '\n') ++line_;
      return;
    }
    plain(c);
  }

  void plain(char c) {
    const bool isSecondOfBreak = c == '\n' && wasReturn_;
    wasReturn_ = c == '\r';
    if (c == '"' && field_.empty() && !wasQuoted_) {
      isQuoted_ = wasQuoted_ = true;
    } else if (c == ',') {
      endField();
    } else if (c == '\n' || c == '\r') {
      if (!isSecondOfBreak) endRecord();
    } else {
      add(c);
    }
  }

  void add(char c) {
    constexpr std::size_t longest = 4096;
    if (field_.size() < longest) field_ += c;
  }

  void endField() {
    constexpr std::size_t most = 64;
    if (fields_.size() < most) fields_.push_back(std::move(field_));
    field_.clear();
    wasQuoted_ = false;
  }

  void endRecord() {
    const bool isEmpty = fields_.empty() && field_.empty() && !wasQuoted_;
    endField();
    const std::int64_t first = std::exchange(recordLine_, ++line_);
    auto fields = std::exchange(fields_, {});
    if (!isEmpty) take_(first, std::move(fields));
  }

  std::function<void(std::int64_t, std::vector<std::string>)> take_;
  std::vector<std::string> fields_;
  std::string field_;
  bool isQuoted_ = false, isQuoteSeen_ = false, wasQuoted_ = false, wasReturn_ = false;
  std::int64_t line_ = 1, recordLine_ = 1;
};

std::optional<OxHKSampleType> typeOf(std::string_view text) {
  const auto named = sampleTypeNamed(text);
  return named ? named : sampleTypeOfIdentifier(text);
}

void addRow(std::int64_t line, std::vector<std::string> fields, ImportSink& sink) {
  constexpr std::size_t columns = 6;
  for (std::string& field : fields) field = repairedUTF8(field);
  if (fields.front().starts_with("\xEF\xBB\xBF")) fields.front().erase(0, 3);
  const bool isHeading = line == 1 && fields.front() == "type";
  if (isHeading) return;
  fields.resize(std::max(fields.size(), columns));
  const auto type = typeOf(fields[0]);
  if (!type) return sink.ignore();
  const auto start = dateIn(fields[1]);
  const auto end = fields[2].empty() ? start : dateIn(fields[2]);
  if (!start) return sink.skip(line, "its start is no date");
  if (!end) return sink.skip(line, "its end is no date");
  if (*end < *start) return sink.skip(line, "it ends before it starts");
  const auto read = sampleValue(*type, {.value = fields[3], .unit = fields[4]});
  if (!read) return sink.skip(line, read.error());
  const std::string identifier = hkObjectType(*type).identifier;
  HKSampleRow row{.type = identifier,
                  .start = *start,
                  .end = *end,
                  .value = read->value,
                  .unit = read->unit,
                  .source = fields[5].empty() ? "CSV" : std::string_view(fields[5])};
  std::string details;
  if (*type == OxHKSampleType::workout()) {
    row.value = end->timeIntervalSince(*start);
    details = detailsText({.activityType = activityNamed(fields[3]), .duration = row.value});
    row.details = details;
  }
  sink.add(row);
}

}  // namespace

Result<void> readCSV(const ByteSource& source, ImportSink& sink) {
  CSVRecords records([&](std::int64_t line, std::vector<std::string> fields) {
    addRow(line, std::move(fields), sink);
  });
  char piece[65536];
  while (true) {
    const auto got = TRY(source(piece));
    if (got == 0) break;
    records.feed({piece, got});
    if (sink.error() != nullptr) return std::unexpected(sink.error());
  }
  if (records.finish()) return {};
  return failure<Error>("velloro.health", 2, "the file breaks off within quotes");
}

}  // namespace velloro
