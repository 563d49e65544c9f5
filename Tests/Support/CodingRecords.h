#pragma once

#include "Foundation/Coding/JSON.h"
#include "Foundation/Time/TimeZone.h"
#include "Foundation/Values/Hasher.h"
#include "Foundation/Values/UUID.h"

#include <map>
#include <set>
#include <unordered_map>
#include <unordered_set>

namespace platform {

// The example of Coding.h, word for word.

/// An enumeration: one table (RawValue.h).
enum class Mood { good, bad };
constexpr auto rawValues(std::type_identity<Mood>) {
  return rawTexts<Mood>({{Mood::good, "g"}, {Mood::bad, "b"}});
}

/// A struct around one value, which is checked on reading.
struct Day {
  std::int64_t number = 1;
  static constexpr auto codingValue = &Day::number;
  static Day decode(const Decoder& from) {
    const auto number = from.decode<std::int64_t>();
    if (number >= 1) return Day{number};
    throw from.dataCorrupted("Unable to create Day from " + std::to_string(number));
  }
  auto operator<=>(const Day&) const = default;
};

/// A variant with payload: one list of cases, in the order of the alternatives.
struct Place {
  struct Pinned {
    bool operator==(const Pinned&) const = default;
  };
  std::variant<Day, Pinned> value;
  bool operator==(const Place&) const = default;
  static constexpr auto codingCases = cases(&Place::value, keyed("date"), keyed("pinned"));
};

/// A record: one list of keys, behind the members.
struct Note {
  Day day;
  Place place;
  std::optional<Mood> mood;
  std::vector<std::string> lines;
  bool operator==(const Note&) const = default;
  static constexpr auto codingKeys =
      keys(key("day", &Note::day), key("place", &Note::place), key("mood", &Note::mood),
           key("lines", &Note::lines, initialValue));
};

// What the example leaves out.

enum class Weekday : std::int8_t { sunday, monday, tuesday };
constexpr auto rawValues(std::type_identity<Weekday>) {
  using enum Weekday;
  return rawIntegers<Weekday>({{sunday, 0}, {monday, 1}, {tuesday, 2}});
}

enum class Origin { shortcut, app };
constexpr auto rawValues(std::type_identity<Origin>) {
  return keyedCases<Origin>({{Origin::shortcut, "fromShortcut"}, {Origin::app, "fromApp"}});
}

/// Several alternatives of one type, tuples, labels, an absent element.
struct Change {
  struct None {
    bool operator==(const None&) const = default;
  };
  using Both = std::tuple<double, std::optional<std::int64_t>>;
  std::variant<double, double, Both, std::pair<Day, Mood>, Note, None> value;
  bool operator==(const Change&) const = default;
  template <std::size_t I, typename... Payload>
  static Change of(Payload... payload) {
    return {decltype(value)(std::in_place_index<I>, payload...)};
  }
  static constexpr auto codingCases =
      cases(&Change::value, keyed("quantity"), payload("duration"), keyed("both"),
            keyed("moved", "to", "mood"), payload("note"), payload("none"));
};

/// A time of day: a number of seconds, or in older texts an object.
struct Time {
  std::int64_t seconds = 0;
  static constexpr auto codingValue = &Time::seconds;
  static Time decode(const Decoder& from) {
    return from.firstOf([&] { return Time{from.integer(0, 86399)}; },
                        [&] { return fromFields(from); });
  }
  static Time fromFields(const Decoder& from) {
    return Time{from.decode<std::int64_t>("h") * 3600 +
                from.decodeIfPresent<std::int64_t>("m").value_or(0) * 60};
  }
  auto operator<=>(const Time&) const = default;
};

/// A record with a check of its own behind the list.
struct Streak {
  std::int64_t current = 0;
  std::int64_t best = 0;
  bool operator==(const Streak&) const = default;
  static constexpr auto codingKeys =
      keys(key("current", &Streak::current), key("best", &Streak::best, 0));
  static Streak decode(const Decoder& from) {
    Streak streak = decodeKeyed<Streak>(from);
    streak.best = std::max(streak.best, streak.current);
    return streak;
  }
};

/// A type without a value of its own to begin with, and with a form for which there is no list.
struct Tag {
  explicit Tag(std::string text) : name(std::move(text)) {}
  void encode(Encoder& to) const { to.encode(std::vector<std::string>{"tag", name}); }
  static Tag decode(const Decoder& from) {
    const auto parts = from.decode<std::vector<std::string>>();
    if (parts.size() != 2) throw from.invalidValue("two texts");
    return Tag(parts[1]);
  }
  void hash(Hasher& hasher) const { hasher.combine(name); }
  auto operator<=>(const Tag&) const = default;

  std::string name;
};

/// One member of every kind.
struct Everything {
  std::int64_t integer = 0;
  std::uint64_t large = 0;
  std::int8_t small = 0;
  std::string text;
  Origin origin = Origin::app;
  Date date;
  TimeZone zone = TimeZone::gmt();
  UUID id;
  Data data;
  PropertyList info;
  Time time;
  Streak streak;
  std::vector<Change> changes;
  std::vector<bool> flags;
  std::vector<Tag> tags;
  std::set<Day> days;
  std::unordered_set<Mood> moods;
  std::map<std::string, std::optional<Note>> notes;
  std::unordered_map<std::int64_t, double> numbers;
  std::map<Day, Streak> streaks;
  std::unordered_map<Weekday, std::string> names;
  std::optional<Tag> tag;
  std::optional<std::vector<std::vector<std::optional<int>>>> rows;
  bool operator==(const Everything&) const = default;

  static constexpr auto codingKeys = keys(
      key("integer", &Everything::integer), key("large", &Everything::large),
      key("small", &Everything::small), key("text", &Everything::text),
      key("origin", &Everything::origin), key("date", &Everything::date),
      key("zone", &Everything::zone), key("id", &Everything::id), key("data", &Everything::data),
      key("info", &Everything::info), key("time", &Everything::time),
      key("streak", &Everything::streak), key("changes", &Everything::changes),
      key("flags", &Everything::flags), key("tags", &Everything::tags),
      key("days", &Everything::days), key("moods", &Everything::moods),
      key("notes", &Everything::notes), key("numbers", &Everything::numbers),
      key("streaks", &Everything::streaks), key("names", &Everything::names),
      key("tag", &Everything::tag), key("rows", &Everything::rows));
};

}  // namespace platform
