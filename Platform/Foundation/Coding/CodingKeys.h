#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <variant>

namespace platform {

class Decoder;
class Encoder;

namespace coding_detail {
template <typename T>
inline constexpr bool isOptional = false;
template <typename T>
inline constexpr bool isOptional<std::optional<T>> = true;
}  // namespace coding_detail

/// The fallback of a key that keeps the member's own initial value when the key is missing.
struct InitialValue {};
inline constexpr InitialValue initialValue;

/// The fallback of a key that must be there.
struct NoFallback {};

/// The fallback of a key that must be present, but whose value may be unknown, such as the text of
/// a newer program's case. See `whenUnknown`.
template <typename Value>
struct WhenUnknown {
  [[no_unique_address]] Value value;
};

/// The replacement for a value that can't be read (`DecodingError::isOfOneValue`). The key itself
/// must be present. It is `initialValue` (`initialWhenUnknown`), a value, or a function that
/// returns one, which takes the decoder or no argument.
///
/// Such as `key("mode", &Task::mode, initialWhenUnknown)`, or with a value
/// `key("count", &Task::count, whenUnknown(1))`.
template <typename Value>
consteval auto whenUnknown(Value value) {
  return WhenUnknown<Value>{value};
}
inline constexpr auto initialWhenUnknown = whenUnknown(initialValue);

/// One member of a record and the key under which it is written.
template <typename Record, typename Member, typename Fallback>
struct CodingKey {
  using MemberType = Member;
  using FallbackType = Fallback;
  std::string_view name;
  Member Record::*member;
  [[no_unique_address]] Fallback fallback;
};

/// A member under its key: it must be present when it is read, unless it is a `std::optional`. That
/// is written only if it has a value, and reads as absent if the key is missing, or if its value is
/// null or can't be read.
template <typename Record, typename Member>
consteval auto key(std::string_view name, Member Record::*member) {
  return CodingKey<Record, Member, NoFallback>{name, member, {}};
}

/// A member that has the value `fallback` if its key is missing, or if its value is null or can't
/// be read. `initialValue` means the value in the member's declaration; see also `whenUnknown`.
///
/// Such as `key("count", &Task::count, 1)`, or with an empty list
/// `key("days", &Task::days, initialValue)`.
template <typename Record, typename Member, typename Fallback>
consteval auto key(std::string_view name, Member Record::*member, Fallback fallback) {
  static_assert(!coding_detail::isOptional<Member>, "an optional reads as absent without its key");
  return CodingKey<Record, Member, Fallback>{name, member, fallback};
}

namespace coding_detail {
template <std::size_t N>
consteval const std::array<std::string_view, N>& distinct(
    const std::array<std::string_view, N>& names) {
  for (std::size_t i = 0; i < N; ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      if (names[i] == names[j]) throw "a name stands twice in its list";
    }
  }
  return names;
}

template <std::size_t I, typename Key>
struct KeyAt {
  Key key;
};

/// Keys of different types, by index. It is an aggregate, because the constructors of `std::tuple`
/// would take a large part of the time to compile a header with many records.
template <typename Indexes, typename... Key>
struct KeyList;
template <std::size_t... I, typename... Key>
struct KeyList<std::index_sequence<I...>, Key...> : KeyAt<I, Key>... {
  template <typename F>
  constexpr void forEach(F&& f) const {
    (f(KeyAt<I, Key>::key), ...);
  }
};

template <std::size_t I, typename Key>
constexpr const Key& get(const KeyAt<I, Key>& at) {
  return at.key;
}
}  // namespace coding_detail

/// A record's keys, in the order in which they are written. See `keys`.
template <typename... Key>
struct CodingKeys {
  static constexpr std::size_t count = sizeof...(Key);
  static_assert(count <= 64, "a record can have 64 keys");

  coding_detail::KeyList<std::index_sequence_for<Key...>, Key...> entries;
  std::array<std::string_view, count> names;

  template <typename Record, typename F>
  constexpr void forEachMember(const Record& record, F&& f) const {
    entries.forEach([&](const auto& entry) { f(record.*entry.member); });
  }
};

/// The one list of a record's members, from which come its JSON form (Coding.h) and its hash
/// (Hasher.h). It stands behind the members, as the example in Coding.h shows:
///
/// `static constexpr auto codingKeys =
/// keys(key("date", &Entry::date), key("note", &Entry::note));`
template <typename... Key>
consteval CodingKeys<Key...> keys(Key... key) {
  return {{{key}...},
          coding_detail::distinct(std::array<std::string_view, sizeof...(Key)>{key.name...})};
}

/// One case of a variant: its name, and how its payload is written.
struct CodingCase {
  static constexpr std::size_t maximumLabels = 4;

  std::string_view name;
  bool isKeyed;
  std::array<std::string_view, maximumLabels> labels;
};

/// A case written as {"name": payload}.
consteval CodingCase payload(std::string_view name) {
  return {.name = name, .isKeyed = false, .labels = {}};
}

/// A case written as {"name": {"_0": payload}}. A payload that is a tuple or a pair gives one key
/// per element, "_0", "_1", …, or the labels given here; an empty struct gives {"name": {}}.
template <typename... Label>
consteval CodingCase keyed(std::string_view name, Label... label) {
  CodingCase result{.name = name, .isKeyed = true, .labels = {"_0", "_1", "_2", "_3"}};
  std::size_t i = 0;
  ((result.labels[i++] = label), ...);
  return result;
}

/// A variant's cases. See `cases`.
template <typename Owner, typename... Alternative>
struct CodingCases {
  static constexpr std::size_t count = sizeof...(Alternative);

  std::variant<Alternative...> Owner::*member;
  std::array<CodingCase, count> entries;
};

/// The one list of the cases of a struct around a `std::variant`, one for each alternative and in
/// their order:
///
/// `static constexpr auto codingCases =
/// cases(&Action::value, payload("completion"), payload("note"));`
template <typename Owner, typename... Alternative, std::same_as<CodingCase>... Case>
consteval auto cases(std::variant<Alternative...> Owner::*member, Case... entry) {
  static_assert(sizeof...(Alternative) == sizeof...(Case), "one case for each alternative");
  coding_detail::distinct(std::array<std::string_view, sizeof...(Case)>{entry.name...});
  return CodingCases<Owner, Alternative...>{member, {entry...}};
}

/// A record whose form is its list of keys.
template <typename T>
concept KeyedRecord = requires {
  T::codingKeys;
};

/// A struct whose form is its list of cases.
template <typename T>
concept PayloadVariant = requires {
  T::codingCases;
};

/// A struct that is written as one of its members: `codingValue` points to it.
template <typename T>
concept SingleValue = requires {
  T::codingValue;
};

}  // namespace platform
