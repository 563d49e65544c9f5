#include "Foundation/TimeZone.h"

#include "Foundation/Environment.h"
#include "Foundation/String.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <sstream>
#include <unordered_map>

#include <cctz/civil_time.h>
#include <cctz/time_zone.h>

namespace platform {

namespace {

using CctzInstant = cctz::time_point<cctz::seconds>;

CctzInstant instantAt(std::int64_t utcSeconds) {
  return CctzInstant(cctz::seconds(utcSeconds));
}

std::int64_t secondsOf(CctzInstant instant) {
  return instant.time_since_epoch().count();
}

constexpr std::int64_t secondsPerDay = 86400;
constexpr std::int64_t largestOffset = 18 * 3600;
/// Wider than any offset a zone ever had, the days on the far side of the date line included.
constexpr std::int64_t offsetBound = 26 * 3600;

}  // namespace

/// A zone's clock changes up to a horizon, as arrays, with an index by stretches of 2^21 seconds
/// (24 days): a look-up reads one index entry and compares with next to always at most one change.
/// Beyond the horizon the zone database itself is asked.
struct TimeZone::Rules {
  static constexpr int stretchShift = 21;
  static constexpr std::int64_t indexStart = -2208988800;  // 1900-01-01
  static constexpr std::int64_t horizon = 4102444800;      // 2100-01-01

  std::string identifier;
  cctz::time_zone zone;
  bool hasDayJump = false;
  std::vector<std::int64_t> changeAt;  ///< UTC second of each clock change, ascending
  std::vector<std::int64_t> offset;    ///< offset[i] holds before changeAt[i], one more behind
  std::vector<std::int64_t> localEnd;  ///< first local second that interval i can't show
  std::vector<std::uint16_t> changesBefore;  ///< per stretch, the changes at or before its start

  Rules(std::string name, cctz::time_zone loaded) : identifier(std::move(name)), zone(loaded) {
    collectChanges();
    buildIndex();
  }

  [[nodiscard]] std::int64_t databaseOffsetAt(std::int64_t utcSeconds) const {
    return zone.lookup(instantAt(utcSeconds)).offset;
  }

  [[nodiscard]] std::size_t intervalAt(std::int64_t utcSeconds) const {
    if (utcSeconds < indexStart || utcSeconds >= horizon) {
      return static_cast<std::size_t>(
          std::upper_bound(changeAt.begin(), changeAt.end(), utcSeconds) - changeAt.begin());
    }
    std::size_t interval =
        changesBefore[static_cast<std::size_t>(utcSeconds - indexStart) >> stretchShift];
    while (interval < changeAt.size() && changeAt[interval] <= utcSeconds) ++interval;
    return interval;
  }

 private:
  void collectChanges() {
    CctzInstant at = CctzInstant::min();
    offset.push_back(databaseOffsetAt(-offsetBound * secondsPerDay));
    cctz::time_zone::civil_transition change;
    while (zone.next_transition(at, &change)) {
      at = zone.lookup(std::min(change.from, change.to)).trans;
      if (secondsOf(at) >= horizon) break;
      addChange(secondsOf(at));
    }
  }

  void addChange(std::int64_t at) {
    const std::int64_t before = offset.back();
    const std::int64_t after = databaseOffsetAt(at);
    if (before == after) return;  // only the abbreviation changed
    hasDayJump = hasDayJump || std::abs(after - before) > secondsPerDay / 2;
    changeAt.push_back(at);
    offset.push_back(after);
    localEnd.push_back(at + std::max(before, after));
  }

  void buildIndex() {
    std::size_t changes = 0;
    for (std::int64_t start = indexStart; start < horizon; start += 1LL << stretchShift) {
      while (changes < changeAt.size() && changeAt[changes] <= start) ++changes;
      changesBefore.push_back(static_cast<std::uint16_t>(changes));
    }
  }
};

namespace {

struct Registry {
  std::mutex mutex;
  std::unordered_map<std::string, const TimeZone::Rules*> rules;
};

/// Zones are never unloaded: a handle must stay good for the life of the process.
Registry& registry() {
  static auto* instance = new Registry;
  return *instance;
}

template <typename Load>
const TimeZone::Rules* rulesNamed(const std::string& name, Load load) {
  Registry& known = registry();
  const std::scoped_lock lock(known.mutex);
  if (const auto found = known.rules.find(name); found != known.rules.end()) return found->second;
  cctz::time_zone zone;
  if (!load(zone)) return nullptr;
  return known.rules[name] = new TimeZone::Rules(name, zone);
}

std::string fixedIdentifier(std::int64_t seconds) {
  if (seconds == 0) return "GMT";
  const auto magnitude = std::abs(seconds);
  std::string text =
      stringWithFormat("GMT%c%02d%02d", seconds < 0 ? '-' : '+', static_cast<int>(magnitude / 3600),
                       static_cast<int>(magnitude / 60 % 60));
  if (magnitude % 60 != 0) text += stringWithFormat("%02d", static_cast<int>(magnitude % 60));
  return text;
}

/// The seconds of "GMT+0530", "GMT-05", "GMT+053015"; absent for any other text.
std::optional<std::int64_t> fixedSeconds(std::string_view identifier) {
  if (!identifier.starts_with("GMT") || identifier.size() < 6) return std::nullopt;
  const char sign = identifier[3];
  const std::string_view digits = identifier.substr(4);
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  if ((sign != '+' && sign != '-') || digits.size() > 6 || digits.size() % 2 != 0 ||
      !std::ranges::all_of(digits, isDigit)) {
    return std::nullopt;
  }
  std::int64_t parts[3] = {0, 0, 0};
  for (std::size_t i = 0; i < digits.size() / 2; ++i) {
    std::from_chars(&digits[2 * i], &digits[2 * i] + 2, parts[i]);
  }
  if (parts[1] > 59 || parts[2] > 59) return std::nullopt;
  const std::int64_t seconds = parts[0] * 3600 + parts[1] * 60 + parts[2];
  return sign == '-' ? -seconds : seconds;
}

/// The zone loader would take these as file paths or as its own pseudo zones.
bool isZoneName(std::string_view identifier) {
  return !identifier.empty() && identifier.front() != '/' && !identifier.contains("..") &&
         !identifier.contains(':') && !identifier.starts_with("Fixed/");
}

std::filesystem::path zoneDatabaseFolder() {
  const char* folder = std::getenv("TZDIR");
  return folder != nullptr && *folder != '\0' ? folder : "/usr/share/zoneinfo";
}

}  // namespace

TimeZone TimeZone::gmt() {
  static const TimeZone zone = fromSecondsFromGMT(0).value();
  return zone;
}

TimeZone TimeZone::current() {
  return Environment::current().timeZone();
}

std::optional<TimeZone> TimeZone::fromIdentifier(std::string_view identifier) {
  if (identifier == "GMT") return gmt();
  if (const auto seconds = fixedSeconds(identifier)) return fromSecondsFromGMT(*seconds);
  if (!isZoneName(identifier)) return std::nullopt;
  const std::string name(identifier);
  const Rules* rules =
      rulesNamed(name, [&](cctz::time_zone& zone) { return cctz::load_time_zone(name, &zone); });
  return rules != nullptr ? std::optional(TimeZone(rules)) : std::nullopt;
}

std::optional<TimeZone> TimeZone::fromSecondsFromGMT(std::int64_t seconds) {
  if (std::abs(seconds) > largestOffset) return std::nullopt;
  const auto load = [&](cctz::time_zone& zone) {
    zone = cctz::fixed_time_zone(cctz::seconds(seconds));
    return true;
  };
  return TimeZone(rulesNamed(fixedIdentifier(seconds), load));
}

std::vector<std::string> TimeZone::knownTimeZoneIdentifiers() {
  std::vector<std::string> identifiers;
  std::ifstream list(zoneDatabaseFolder() / "tzdata.zi");
  for (std::string line; std::getline(list, line);) {
    std::istringstream words(line);
    std::string kind, name;
    words >> kind >> name;
    if (kind == "L") words >> name;  // a link names its target first
    if ((kind == "Z" || kind == "L") && std::filesystem::exists(zoneDatabaseFolder() / name)) {
      identifiers.push_back(name);
    }
  }
  std::ranges::sort(identifiers);
  return identifiers;
}

const std::string& TimeZone::identifier() const {
  return rules_->identifier;
}

std::int64_t TimeZone::secondsFromGMT(Date date) const {
  return offsetAt(date.secondsSince1970());
}

std::int64_t TimeZone::offsetAt(std::int64_t utcSeconds) const {
  if (utcSeconds >= Rules::horizon) return rules_->databaseOffsetAt(utcSeconds);
  return rules_->offset[rules_->intervalAt(utcSeconds)];
}

std::int64_t TimeZone::utcSecondsAt(std::int64_t localSeconds) const {
  if (localSeconds >= Rules::horizon - offsetBound) {
    const auto civil = cctz::civil_second(1970, 1, 1, 0, 0, 0) + localSeconds;
    return secondsOf(rules_->zone.lookup(civil).pre);
  }
  // An interval can show a local time up to the later of its two readings at its end: a repeated
  // time belongs to the interval before the change, and so does a skipped one, which that offset
  // carries forward by the gap.
  std::size_t interval = rules_->intervalAt(localSeconds - offsetBound);
  while (interval < rules_->localEnd.size() && localSeconds >= rules_->localEnd[interval]) {
    ++interval;
  }
  return localSeconds - rules_->offset[interval];
}

bool TimeZone::hasSkippedOrRepeatedDays() const {
  return rules_->hasDayJump;
}

std::optional<Date> TimeZone::nextTransition(Date after) const {
  const std::size_t next = rules_->intervalAt(after.secondsSince1970());
  if (next < rules_->changeAt.size()) {
    return Date::since1970(static_cast<double>(rules_->changeAt[next]));
  }
  cctz::time_zone::civil_transition change;
  const CctzInstant from = instantAt(std::max(after.secondsSince1970(), Rules::horizon - 1));
  if (!rules_->zone.next_transition(from, &change)) return std::nullopt;
  const CctzInstant at = rules_->zone.lookup(std::min(change.from, change.to)).trans;
  return Date::since1970(static_cast<double>(secondsOf(at)));
}

}  // namespace platform
