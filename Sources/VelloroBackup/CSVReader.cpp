#include "VelloroBackup/CSVReader.h"

#include "Foundation/Text/String.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <set>

namespace velloro {
namespace {

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view littleEndianMark = "\xFF\xFE";
constexpr std::string_view bigEndianMark = "\xFE\xFF";

void append(std::string& text, std::uint32_t scalar) {
  const auto add = [&](std::uint32_t byte) { text += static_cast<char>(byte); };
  const auto follow = [&](unsigned shift) { add(0x80U | ((scalar >> shift) & 0x3FU)); };
  if (scalar < 0x80) {
    add(scalar);
  } else if (scalar < 0x800) {
    add(0xC0U | scalar >> 6U);
    follow(0);
  } else if (scalar < 0x10000) {
    add(0xE0U | scalar >> 12U);
    follow(6);
    follow(0);
  } else {
    add(0xF0U | scalar >> 18U);
    follow(12);
    follow(6);
    follow(0);
  }
}

/// A surrogate without its other half becomes a byte that is no UTF-8, so that its place is told
/// as that of any other.
std::string fromUTF16(std::string_view bytes, bool isBigEndian) {
  std::string text;
  const auto unit = [&](std::size_t i) -> std::uint32_t {
    const auto first = static_cast<unsigned char>(bytes[i]);
    const auto second = static_cast<unsigned char>(bytes[i + 1]);
    return isBigEndian ? first * 256U + second : second * 256U + first;
  };
  std::size_t i = 0;
  for (; i + 1 < bytes.size(); i += 2) {
    const std::uint32_t high = unit(i);
    const bool isHigh = high >= 0xD800 && high < 0xDC00;
    const std::uint32_t low = isHigh && i + 3 < bytes.size() ? unit(i + 2) : 0;
    if (isHigh && low >= 0xDC00 && low < 0xE000) {
      append(text, 0x10000 + ((high - 0xD800) << 10U) + (low - 0xDC00));
      i += 2;
    } else if (high >= 0xD800 && high < 0xE000) {
      text += '\xFF';
    } else {
      append(text, high);
    }
  }
  if (i < bytes.size()) text += '\xFF';
  return text;
}

}  // namespace

CSVReader::CSVReader(std::string_view bytes) : text_(bytes) {
  if (bytes.starts_with(utf8Mark)) {
    text_.remove_prefix(utf8Mark.size());
  } else if (bytes.starts_with(littleEndianMark) || bytes.starts_with(bigEndianMark)) {
    converted_ = fromUTF16(bytes.substr(2), bytes.starts_with(bigEndianMark));
    text_ = converted_;
  }
  if (text_.empty() || text_.front() == '\n') throw CSVError(Kind::emptyHeader, CSVPlace{});
  readRow();
  checkHeaders();
}

void CSVReader::checkHeaders() {
  std::set<std::string_view> seen;
  for (const Field& field : fields_) {
    if (!seen.insert(field.text).second) fail(Kind::equalHeaders, field.at);
    headers_.emplace_back(field.text);
  }
}

bool CSVReader::next() {
  if (at_ >= text_.size()) return false;
  const std::size_t start = at_;
  readRow();
  if (fields_.size() != headers_.size()) fail(Kind::differentLength, start);
  return true;
}

void CSVReader::readRow() {
  fields_.clear();
  unescaped_.clear();
  unescaped_.reserve(headers_.size());  // views into them stay
  for (;;) {
    const std::size_t end = readField(at_);
    const bool isLast = end == text_.size() || text_[end] == '\n';
    at_ = std::min(end + 1, text_.size());
    if (!isLast) {
      if (at_ < text_.size()) continue;
      fields_.push_back({{}, at_});  // behind a comma at the very end
    }
    return validate(at_);
  }
}

/// Returns where the field's delimiter stands, or the end of the text.
std::size_t CSVReader::readField(std::size_t start) {
  if (start < text_.size() && text_[start] == '"') return readQuoted(start);
  const std::size_t end = endOfField(start);
  fields_.push_back({text_.substr(start, end - start), start});
  if (end < text_.size() && text_[end] == '"') fail(Kind::quoteInField, end);
  const bool isEndOfRow = end < text_.size() && text_[end] == '\n';
  if (isEndOfRow && end > start && text_[end - 1] == '\r') fail(Kind::textBehindQuote, end - 1);
  return end;
}

/// The next comma, line feed or quote.
std::size_t CSVReader::endOfField(std::size_t from) const {
  while (from < text_.size()) {
    const char c = text_[from];
    if (c == ',' || c == '\n' || c == '"') break;
    ++from;
  }
  return from;
}

std::size_t CSVReader::readQuoted(std::size_t start) {
  std::size_t from = start + 1;
  std::string* unescaped = nullptr;
  for (;;) {
    const std::size_t quote = text_.find('"', from);
    if (quote == std::string_view::npos) fail(Kind::endInQuotes, start);
    const bool isDoubled = quote + 1 < text_.size() && text_[quote + 1] == '"';
    if (isDoubled && unescaped == nullptr) unescaped = &unescaped_.emplace_back();
    if (unescaped != nullptr) unescaped->append(text_.substr(from, quote - from + isDoubled));
    from = quote + 1 + isDoubled;
    if (isDoubled) continue;
    const bool isDelimited = from == text_.size() || text_[from] == ',' || text_[from] == '\n';
    if (!isDelimited) fail(Kind::textBehindQuote, from);
    const auto plain = text_.substr(start + 1, quote - start - 1);
    fields_.push_back({unescaped != nullptr ? std::string_view(*unescaped) : plain, start});
    return from;
  }
}

void CSVReader::validate(std::size_t to) {
  const std::string_view fresh = text_.substr(validated_, to - validated_);
  if (!isUTF8(fresh)) {
    // Found by halves: the longest beginning that is whole.
    std::size_t good = 0;
    while (good < fresh.size()) {
      std::size_t length = 1;
      while (length <= 4 && good + length <= fresh.size() && !isUTF8(fresh.substr(good, length))) {
        ++length;
      }
      if (length > 4 || good + length > fresh.size()) break;
      good += length;
    }
    throw CSVError(Kind::notUTF8, place(validated_ + good));
  }
  validated_ = to;
}

/// What stands before in the text is told first.
void CSVReader::fail(Kind kind, std::size_t at) {
  // A character may reach across the place.
  if (at > validated_ && !isUTF8(text_.substr(validated_, at - validated_))) validate(at);
  throw CSVError(kind, place(at));
}

CSVPlace CSVReader::place(std::size_t at) const {
  const std::string_view before = text_.substr(0, at);
  const std::size_t start = before.rfind('\n') + 1;  // 0 behind npos
  const auto isFirstByte = [](char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
  };
  return {.line = 1 + static_cast<std::size_t>(std::ranges::count(before, '\n')),
          .column = 1 + static_cast<std::size_t>(
                            std::ranges::count_if(before.substr(start), isFirstByte))};
}

}  // namespace velloro
