#include "Foundation/Time/TimeZone.h"

#include "Foundation/Process/Environment.h"
#include "Foundation/Text/String.h"

#include <algorithm>
#include <cctype>
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

/// A zone's clock changes up to a horizon, as arrays, and the index over them. Beyond the horizon
/// the zone database itself is asked.
struct TimeZone::Rules : TimeZone::Index {
  static constexpr std::int64_t horizon = 4102444800;  // 2100-01-01

  std::string identifier;
  cctz::time_zone zone;
  std::vector<std::int64_t> changeAt;  ///< UTC second of each clock change, ascending
  std::vector<std::int64_t> offset;    ///< offset[i] holds before changeAt[i], one more behind
  std::vector<std::int64_t> localEnd;  ///< first local second that interval i can't show

  Rules(std::string name, cctz::time_zone loaded) : identifier(std::move(name)), zone(loaded) {
    collectChanges();
    for (std::size_t i = 0; i < stretches.size(); ++i) stretches[i] = stretchNumber(i);
  }

  [[nodiscard]] std::int64_t databaseOffsetAt(std::int64_t utcSeconds) const {
    return zone.lookup(instantAt(utcSeconds)).offset;
  }

  /// The number of changes at or before a UTC second.
  [[nodiscard]] std::size_t intervalAt(std::int64_t utcSeconds) const {
    const auto later = std::ranges::upper_bound(changeAt, utcSeconds);
    return static_cast<std::size_t>(later - changeAt.begin());
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

  [[nodiscard]] Stretch stretchNumber(std::size_t number) const {
    const auto start = static_cast<std::int64_t>(number << Stretch::shift);
    const auto end = static_cast<std::int64_t>((number + 1) << Stretch::shift);
    const std::size_t first = intervalAt(start);
    const std::size_t last = intervalAt(end - 1);
    return {.changeAt = first < last ? changeAt[first] : end,
            .before = static_cast<std::int32_t>(offset[first]),
            .after = static_cast<std::int32_t>(offset[last]),
            .isCrowded = last > first + 1};
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

/// Whether a text has the form of a name of the zone database, so that each zone has one spelling
/// and nothing is taken as a file path or as one of the loader's own pseudo zones.
bool isZoneName(std::string_view identifier) {
  const auto isPart = [](std::string_view part) {
    return !part.empty() && std::ranges::all_of(part, [](unsigned char c) {
      return std::isalnum(c) != 0 || c == '_' || c == '-' || c == '+';
    });
  };
  for (std::string_view rest = identifier;;) {
    const std::size_t slash = rest.find('/');
    if (!isPart(rest.substr(0, slash))) return false;
    if (slash == std::string_view::npos) break;
    rest.remove_prefix(slash + 1);
  }
  return identifier != "localtime" && identifier != "posixrules" &&
         !identifier.starts_with("posix/") && !identifier.starts_with("right/") &&
         !identifier.starts_with("Fixed/");
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

const TimeZone::Rules& TimeZone::rules() const {
  return static_cast<const Rules&>(*index_);
}

const std::string& TimeZone::identifier() const {
  return rules().identifier;
}

std::int64_t TimeZone::secondsFromGMT(Date date) const {
  return offsetAt(date.secondsSince1970());
}

std::int64_t TimeZone::searchedOffsetAt(const Index* index, std::int64_t utcSeconds) {
  const auto& rules = static_cast<const Rules&>(*index);
  if (utcSeconds >= Rules::horizon) return rules.databaseOffsetAt(utcSeconds);
  return rules.offset[rules.intervalAt(utcSeconds)];
}

std::int64_t TimeZone::utcSecondsAt(std::int64_t localSeconds) const {
  // An interval can show a local time up to the later of its two readings at its end: a repeated
  // time belongs to the interval before the change, and so does a skipped one, which that offset
  // carries forward by the gap.
  const std::uint64_t number = static_cast<std::uint64_t>(localSeconds) >> Stretch::shift;
  constexpr std::int64_t length = std::int64_t{1} << Stretch::shift;
  const std::int64_t place = localSeconds & (length - 1);
  if (number < Stretch::count && place >= offsetBound && place < length - offsetBound) {
    const Stretch& stretch = index_->stretches[number];
    if (!stretch.isCrowded) {
      const std::int64_t end = stretch.changeAt + std::max(stretch.before, stretch.after);
      return localSeconds - (localSeconds < end ? stretch.before : stretch.after);
    }
  }
  return searchedUtcSecondsAt(localSeconds);
}

std::int64_t TimeZone::searchedUtcSecondsAt(std::int64_t localSeconds) const {
  if (localSeconds >= Rules::horizon - offsetBound) {
    const auto civil = cctz::civil_second(1970, 1, 1, 0, 0, 0) + localSeconds;
    return secondsOf(rules().zone.lookup(civil).pre);
  }
  const auto later = std::ranges::upper_bound(rules().localEnd, localSeconds);
  return localSeconds - rules().offset[static_cast<std::size_t>(later - rules().localEnd.begin())];
}

}  // namespace platform
