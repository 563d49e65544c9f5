#include "Foundation/Time/Date.h"

#include "Foundation/Process/Environment.h"
#include "Foundation/Text/String.h"
#include "Foundation/Time/CivilDay.h"

#include <charconv>

namespace platform {
namespace {

/// Reads a text from its front; once a piece does not fit, the whole has failed.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : rest_(text) {}

  [[nodiscard]] bool ok() const { return ok_; }
  [[nodiscard]] bool atEnd() const { return rest_.empty(); }

  bool skip(char wanted) {
    if (rest_.empty() || rest_.front() != wanted) return false;
    rest_.remove_prefix(1);
    return true;
  }
  void expect(char wanted) { ok_ = skip(wanted) && ok_; }

  /// Exactly `count` digits, with a value in the given range.
  std::int64_t digits(int count, std::int64_t lowest, std::int64_t highest) {
    std::int64_t value = 0;
    for (int i = 0; i < count; ++i) value = value * 10 + digit();
    ok_ = ok_ && value >= lowest && value <= highest;
    return value;
  }

  /// The digits that follow, at least one, as a fraction of 1.
  double fraction() {
    std::string text = "0.";
    do {
      text += static_cast<char>('0' + digit());
    } while (ok_ && !rest_.empty() && rest_.front() >= '0' && rest_.front() <= '9');
    double value = 0;  // stays for a fraction too small for any double
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
  }

 private:
  int digit() {
    if (rest_.empty() || rest_.front() < '0' || rest_.front() > '9') {
      ok_ = false;
      return 0;
    }
    const int value = rest_.front() - '0';
    rest_.remove_prefix(1);
    return value;
  }

  std::string_view rest_;
  bool ok_ = true;
};

/// "Z", "+01", "+0100" or "+01:00" as seconds east of Greenwich.
std::int64_t offsetFrom(Scanner& scanner) {
  if (scanner.skip('Z')) return 0;
  const bool west = scanner.skip('-');
  if (!west) scanner.expect('+');
  std::int64_t seconds = scanner.digits(2, 0, 18) * 3600;
  if (scanner.skip(':') || !scanner.atEnd()) seconds += scanner.digits(2, 0, 59) * 60;
  return west ? -seconds : seconds;
}

// Backups hold hundreds of thousands of dates: digits by hand take a tenth of printf's time.
void appendTwoDigits(std::string& text, std::int64_t number) {
  text += static_cast<char>('0' + number / 10);
  text += static_cast<char>('0' + number % 10);
}

std::string yearText(std::int64_t year) {
  if (year < 0 || year > 9999) return stringWithFormat("%04lld", static_cast<long long>(year));
  std::string text;
  appendTwoDigits(text, year / 100);
  appendTwoDigits(text, year % 100);
  return text;
}

}  // namespace

Date Date::now() {
  return Environment::current().now();
}

std::optional<Date> Date::fromISO8601(std::string_view text) {
  Scanner scanner(text);
  CivilDay day{};
  day.y = scanner.digits(4, 0, 9999);
  scanner.expect('-');
  day.m = scanner.digits(2, 1, 12);
  scanner.expect('-');
  day.d = scanner.digits(2, 1, 31);
  scanner.expect('T');
  const std::int64_t hour = scanner.digits(2, 0, 23);
  scanner.expect(':');
  const std::int64_t minute = scanner.digits(2, 0, 59);
  scanner.expect(':');
  const std::int64_t second = scanner.digits(2, 0, 59);
  const double fraction = scanner.skip('.') || scanner.skip(',') ? scanner.fraction() : 0;
  const std::int64_t offset = offsetFrom(scanner);
  if (!scanner.ok() || !scanner.atEnd() || day.d > daysInMonth(day.y, day.m)) return std::nullopt;
  const std::int64_t whole =
      daysFromCivil(day) * 86400 + hour * 3600 + minute * 60 + second - offset;
  return Date::since1970(static_cast<double>(whole)) + fraction;
}

std::string Date::iso8601() const {
  const std::int64_t seconds = secondsSince1970();
  const std::int64_t days = floorDivide(seconds, 86400);
  const CivilDay day = civilFromDays(days);
  const std::int64_t ofDay = seconds - days * 86400;
  std::string text = yearText(day.y);
  text.reserve(text.size() + 16);
  appendTwoDigits(text += '-', day.m);
  appendTwoDigits(text += '-', day.d);
  appendTwoDigits(text += 'T', ofDay / 3600);
  appendTwoDigits(text += ':', ofDay / 60 % 60);
  appendTwoDigits(text += ':', ofDay % 60);
  return text += 'Z';
}

}  // namespace platform
