#include "OxDateTimeTests/CalendarOracle.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include <unicode/rbtz.h>
#include <unicode/tzrule.h>

namespace velloro {
namespace {

/// The clock changes of a zone file (RFC 8536): for each its UTC second and the offset behind it.
struct ZoneFile {
  std::int64_t firstOffset = 0;
  std::vector<std::int64_t> changeAt;
  std::vector<std::int64_t> offset;

  explicit ZoneFile(const std::string& zone) {
    const char* folder = std::getenv("TZDIR");
    std::ifstream file(std::string(folder != nullptr ? folder : "/usr/share/zoneinfo") + "/" + zone,
                       std::ios::binary);
    bytes_.assign(std::istreambuf_iterator<char>(file), {});
    if (!bytes_.starts_with("TZif")) throw std::runtime_error("not a zone file: " + zone);
    const Header narrow = header(0);
    const std::size_t wideAt = 44 + narrow.length(4);
    readTimes(header(wideAt), wideAt + 44);
  }

 private:
  struct Header {
    std::int64_t utc, standard, leaps, times, types, characters;
    std::size_t length(std::int64_t timeSize) const {
      return static_cast<std::size_t>(times * (timeSize + 1) + types * 6 + characters +
                                      leaps * (timeSize + 4) + standard + utc);
    }
  };

  std::int64_t number(std::size_t at, int size) const {
    std::int64_t value = static_cast<signed char>(bytes_.at(at));
    for (int i = 1; i < size; ++i) {
      value = value * 256 + static_cast<unsigned char>(bytes_.at(at + static_cast<std::size_t>(i)));
    }
    return value;
  }

  Header header(std::size_t at) const {
    const auto count = [&](std::size_t i) { return number(at + 20 + 4 * i, 4); };
    return {count(0), count(1), count(2), count(3), count(4), count(5)};
  }

  void readTimes(const Header& header, std::size_t start) {
    const auto times = static_cast<std::size_t>(header.times);
    const std::size_t types = start + times * 9;
    firstOffset = number(types, 4);
    for (std::size_t i = 0; i < times; ++i) {
      changeAt.push_back(number(start + 8 * i, 8));
      const auto type = static_cast<std::size_t>(number(start + 8 * times + i, 1));
      offset.push_back(number(types + 6 * type, 4));
    }
  }

  std::string bytes_;
};

icu::TimeZone* zoneOf(const ZoneFile& file) {
  UErrorCode status = U_ZERO_ERROR;
  const auto milliseconds = [](std::int64_t seconds) { return static_cast<int>(seconds * 1000); };
  auto* zone = new icu::RuleBasedTimeZone(
      "oracle", new icu::InitialTimeZoneRule("first", milliseconds(file.firstOffset), 0));
  for (std::size_t i = 0; i < file.changeAt.size(); ++i) {
    const UDate start = static_cast<double>(file.changeAt[i]) * 1000;
    zone->addTransitionRule(
        new icu::TimeArrayTimeZoneRule("change", milliseconds(file.offset[i]), 0, &start, 1,
                                       icu::DateTimeRule::UTC_TIME),
        status);
  }
  zone->complete(status);
  if (U_FAILURE(status)) throw std::runtime_error(u_errorName(status));
  return zone;
}

}  // namespace

CalendarOracle::CalendarOracle(const std::string& zone) {
  const ZoneFile file(zone);
  std::int64_t offset = file.firstOffset;
  for (std::size_t i = 0; i < file.changeAt.size(); ++i) {
    if (file.offset[i] != offset) changes_.push_back(file.changeAt[i]);
    offset = file.offset[i];
  }
  UErrorCode status = U_ZERO_ERROR;
  calendar_ = std::make_unique<icu::GregorianCalendar>(zoneOf(file), icu::Locale::getUS(), status);
  calendar_->setGregorianChange(-1e18, status);
  calendar_->setRepeatedWallTimeOption(UCAL_WALLTIME_FIRST);
  calendar_->setSkippedWallTimeOption(UCAL_WALLTIME_LAST);
}

void CalendarOracle::set(std::int64_t day, std::int64_t secondOfDay) {
  calendar_->clear();
  calendar_->set(static_cast<int>(day / 10000), static_cast<int>(day / 100 % 100) - 1,
                 static_cast<int>(day % 100), static_cast<int>(secondOfDay / 3600),
                 static_cast<int>(secondOfDay / 60 % 60), static_cast<int>(secondOfDay % 60));
}

std::int64_t CalendarOracle::day() const {
  UErrorCode status = U_ZERO_ERROR;
  return calendar_->get(UCAL_EXTENDED_YEAR, status) * 10000LL +
         (calendar_->get(UCAL_MONTH, status) + 1) * 100 + calendar_->get(UCAL_DATE, status);
}

std::int64_t CalendarOracle::add(std::int64_t day, int days) {
  UErrorCode status = U_ZERO_ERROR;
  set(day, 43200);
  calendar_->add(UCAL_DATE, days, status);
  return this->day();
}

int CalendarOracle::weekday(std::int64_t day) {
  UErrorCode status = U_ZERO_ERROR;
  set(day, 43200);
  return calendar_->get(UCAL_DAY_OF_WEEK, status) - 1;
}

int CalendarOracle::distance(std::int64_t from, std::int64_t to) {
  UErrorCode status = U_ZERO_ERROR;
  set(to, 43200);
  const UDate end = calendar_->getTime(status);
  set(from, 43200);
  return calendar_->fieldDifference(end, UCAL_DATE, status);
}

int CalendarOracle::numberOfDaysInMonth(std::int64_t day) {
  UErrorCode status = U_ZERO_ERROR;
  set(day, 43200);
  return calendar_->getActualMaximum(UCAL_DATE, status);
}

CalendarOracle::Reading CalendarOracle::read(std::int64_t utcSeconds) {
  UErrorCode status = U_ZERO_ERROR;
  calendar_->setTime(static_cast<double>(utcSeconds) * 1000, status);
  return {.day = day(), .secondOfDay = calendar_->get(UCAL_MILLISECONDS_IN_DAY, status) / 1000};
}

std::int64_t CalendarOracle::instant(std::int64_t day, std::int64_t secondOfDay, int daysOn) {
  UErrorCode status = U_ZERO_ERROR;
  set(day, secondOfDay);
  auto milliseconds = calendar_->getTime(status);
  if (daysOn != 0) {
    // The moved time of the clock, set anew on the other day, so that a repeated one is the first.
    const Reading reading = read(static_cast<std::int64_t>(milliseconds / 1000));
    set(add(reading.day, daysOn), reading.secondOfDay);
    milliseconds = calendar_->getTime(status);
  }
  return static_cast<std::int64_t>(milliseconds / 1000);
}

std::vector<std::int64_t> CalendarOracle::changes(std::int64_t from, std::int64_t to) const {
  std::vector<std::int64_t> found;
  for (const std::int64_t change : changes_) {
    if (change >= from && change < to) found.push_back(change);
  }
  return found;
}

}  // namespace velloro
