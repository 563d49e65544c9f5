#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Coding/ContainerCoding.h"
#include "Foundation/Coding/Decoder.h"
#include "Foundation/Coding/Encoder.h"
#include "Foundation/Coding/RawValue.h"
#include "Foundation/Coding/RecordCoding.h"
#include "Foundation/Values/TypeName.h"

#include <concepts>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

namespace platform {

class Data;
class Date;
class TimeZone;
class UUID;

/// The JSON forms of values. The form is declared once, beside the type; writing, reading and
/// hashing follow from it:
///
///     /// An enumeration: one table (RawValue.h).
///     enum class Mood { good, bad };
///     constexpr auto rawValues(std::type_identity<Mood>) {
///       return rawTexts<Mood>({{Mood::good, "g"}, {Mood::bad, "b"}});
///     }
///
///     /// A struct around one value, which is checked on reading.
///     struct Day {
///       std::int64_t number = 1;
///       static constexpr auto codingValue = &Day::number;
///       static Day decode(const Decoder& from) {
///         const auto number = from.decode<std::int64_t>();
///         if (number >= 1) return Day{number};
///         throw from.dataCorrupted("Unable to create Day from " + std::to_string(number));
///       }
///       auto operator<=>(const Day&) const = default;
///     };
///
///     /// A variant with payload: one list of cases, in the order of the alternatives.
///     struct Place {
///       struct Pinned { bool operator==(const Pinned&) const = default; };
///       std::variant<Day, Pinned> value;
///       bool operator==(const Place&) const = default;
///       static constexpr auto codingCases = cases(&Place::value, keyed("date"), keyed("pinned"));
///     };
///
///     /// A record: one list of keys, behind the members.
///     struct Note {
///       Day day;
///       Place place;
///       std::optional<Mood> mood;
///       std::vector<std::string> lines;
///       bool operator==(const Note&) const = default;
///       static constexpr auto codingKeys =
///           keys(key("day", &Note::day), key("place", &Note::place), key("mood", &Note::mood),
///                key("lines", &Note::lines, initialValue));
///     };
///
///     const Note note{Day{20240307}, Place{Place::Pinned{}}, Mood::good, {"a"}};
///     JSONEncoder{}.encode(note);
///         // {"day":20240307,"place":{"pinned":{}},"mood":"g","lines":["a"]}
///     JSONDecoder{}.decode<Note>(JSONEncoder{}.encode(note)) == note;   // true
///     JSONDecoder{}.decode<Note>(R"({"day":-5,"place":{"pinned":{}}})");
///         // throws DecodingError: "day: Unable to create Day from -5"
///     const std::unordered_set<Note> notes{note};    // the hash comes from the list, too
///
/// A value that can't be read affects as little as possible, so that a damaged record, or one of a
/// newer program, can still be read. If a value has the right type but no known meaning (an
/// enumeration's text, a time zone, a number out of range), an optional member reads as absent, an
/// element of a list, set or map is left out, and a member with a fallback takes the fallback.
/// Without any of these, the smallest record around the value fails, and the same rule holds for
/// that record:
///
///     JSONDecoder{}.decode<Note>(R"({"day":1,"place":{"pinned":{}},"mood":"?"})").mood;  // absent
///     JSONDecoder{.isStrict = true}.decode<Note>(R"({"day":1,"place":{"pinned":{}},"mood":"?"})");
///         // throws DecodingError; "mood: No case of Mood is the text "?"."
///
/// A type may have a member `void encode(Encoder&) const` or a static `T decode(const Decoder&)`
/// (Encoder.h, Decoder.h), alone or beside a list. These take precedence; they can use
/// `encodeKeyed` and `decodeKeyed`, which follow the list.
///
/// | type | form |
/// | --- | --- |
/// | bool, numbers, texts | themselves; a number reads as an integer when it has no fraction |
/// | enumerations | the raw value, or {"case":{}} of a table made by `keyedCases` |
/// | records | an object; unknown keys are ignored, of a key that stands twice the last counts |
/// | variants | {"case": payload} or {"case": {"_0": payload}}: see `payload` and `keyed` |
/// | `std::optional` | null; in a record its key is left out |
/// | lists | an array |
/// | sets | an array; those without an order are sorted, so equal sets give equal texts |
/// | maps keyed by texts or integers | an object |
/// | other maps | an array: key, value, key, value, … |
/// | `Date` | by the coder's `DateForm` |
/// | `Data`, `UUID` | Base64, the text with dashes |
/// | `TimeZone` | {"identifier": "Europe/Berlin"} |
/// | `PropertyList` | whatever it holds; no `Data` or `Date` comes back |
template <typename T>
struct Coding {
  static_assert(sizeof(T) == 0,
                "this type has no form in JSON: give it a list, or encode and decode");
};

template <KeyedRecord T>
void encodeKeyed(const T& value, Encoder& to) {
  coding_detail::RecordCoding<T>::encode(value, to);
}

template <KeyedRecord T>
[[nodiscard]] T decodeKeyed(const Decoder& from) {
  static_assert(std::default_initializable<T>, "a record's members need initial values");
  T record{};
  coding_detail::RecordCoding<T>::decodeInto(record, from);
  return record;
}

template <SelfCoded T>
struct Coding<T> {
  static void encode(const T& value, Encoder& to) {
    if constexpr (CustomEncoded<T>) {
      value.encode(to);
    } else if constexpr (KeyedRecord<T>) {
      encodeKeyed(value, to);
    } else if constexpr (PayloadVariant<T>) {
      coding_detail::VariantCoding<T>::encode(value, to);
    } else {
      to.encode(value.*T::codingValue);
    }
  }

  static T decode(const Decoder& from) {
    if constexpr (CustomDecoded<T>) {
      return T::decode(from);
    } else if constexpr (KeyedRecord<T>) {
      return decodeKeyed<T>(from);
    } else if constexpr (PayloadVariant<T>) {
      return coding_detail::VariantCoding<T>::decode(from);
    } else {
      T value{};
      coding_detail::decodeInto(value.*T::codingValue, from);
      return value;
    }
  }

  static void decodeInto(T& fresh,
                         const Decoder& from) requires(KeyedRecord<T> && !CustomDecoded<T>) {
    coding_detail::RecordCoding<T>::decodeInto(fresh, from);
  }
};

template <>
struct Coding<bool> {
  static void encode(bool value, Encoder& to) { to.boolean(value); }
  static bool decode(const Decoder& from) { return from.boolean(); }
};

template <std::signed_integral T>
struct Coding<T> {
  static void encode(T value, Encoder& to) { to.integer(value); }
  static T decode(const Decoder& from) {
    using Limits = std::numeric_limits<T>;
    return static_cast<T>(from.integer(Limits::min(), Limits::max()));
  }
};

template <std::unsigned_integral T>
struct Coding<T> {
  static void encode(T value, Encoder& to) { to.unsignedInteger(value); }
  static T decode(const Decoder& from) {
    if constexpr (sizeof(T) == sizeof(std::uint64_t)) {
      return from.unsignedInteger();
    } else {
      return static_cast<T>(from.integer(0, std::numeric_limits<T>::max()));
    }
  }
};

template <std::floating_point T>
struct Coding<T> {
  static void encode(T value, Encoder& to) { to.real(value); }
  static T decode(const Decoder& from) { return static_cast<T>(from.real()); }
};

template <>
struct Coding<std::string> {
  static void encode(const std::string& value, Encoder& to) { to.text(value); }
  static std::string decode(const Decoder& from) { return std::string(from.text()); }
};

template <>
struct Coding<std::string_view> {
  static void encode(std::string_view value, Encoder& to) { to.text(value); }
};

template <std::size_t N>
struct Coding<char[N]> : Coding<std::string_view> {};

template <RawRepresentable E>
struct Coding<E> {
  using Raw = RawValueType<E>;

  static void encode(E value, Encoder& to) {
    if constexpr (rawValueTable<E>.isKeyed) {
      to.object(
          [&](ObjectEncoder& object) { object.object(rawValue(value), [](ObjectEncoder&) {}); });
    } else {
      to.encode(rawValue(value));
    }
  }

  static E decode(const Decoder& from) {
    if constexpr (rawValueTable<E>.isKeyed) {
      const std::string_view name = from.onlyField().first;
      if (const auto value = fromRawValue<E>(name)) return *value;
      throw from.unknownCase(name, typeName<E>());
    } else if constexpr (std::same_as<Raw, std::string_view>) {
      if (from.isNull()) throw from.mismatch("a text");
      const auto value =
          from.kind() == Decoder::Kind::text ? fromRawValue<E>(from.text()) : std::nullopt;
      if (value) return *value;
      throw from.unknownCase(typeName<E>());
    } else {
      // A newer program may have other cases, and also texts for them.
      if (from.kind() == Decoder::Kind::text) throw from.unknownCase(typeName<E>());
      if (const auto value = fromRawValue<E>(from.integer())) return *value;
      throw from.unknownCase(typeName<E>());
    }
  }
};

template <typename T>
struct Coding<std::optional<T>> {
  static void encode(const std::optional<T>& value, Encoder& to) {
    value ? to.encode(*value) : to.null();
  }
  static std::optional<T> decode(const Decoder& from) {
    std::optional<T> value;
    coding_detail::decodeOptional(value, from);
    return value;
  }
};

template <>
struct Coding<Data> {
  static void encode(const Data& value, Encoder& to);
  static Data decode(const Decoder& from);
};

template <>
struct Coding<Date> {
  static void encode(const Date& value, Encoder& to);
  static Date decode(const Decoder& from);
};

template <>
struct Coding<TimeZone> {
  static void encode(const TimeZone& value, Encoder& to);
  static TimeZone decode(const Decoder& from);
};

template <>
struct Coding<UUID> {
  static void encode(const UUID& value, Encoder& to);
  static UUID decode(const Decoder& from);
};

}  // namespace platform
