#pragma once

#include "Foundation/Values/TypeName.h"

#include <array>
#include <cassert>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace platform {

/// Enumerations whose cases are stored or exchanged as a raw value, a text or an integer. One table
/// beside the enumeration assigns a raw value to each case, and everything else follows from it:
///
///     enum class Unit { hours, minutes, seconds };
///
///     constexpr auto rawValues(std::type_identity<Unit>) {
///       return rawTexts<Unit>({{Unit::hours, "h"}, {Unit::minutes, "m"}, {Unit::seconds, "s"}});
///     }
///
///     rawValue(Unit::minutes);      // "m"
///     fromRawValue<Unit>("s");      // Unit::seconds
///     fromRawValue<Unit>("d");      // absent
///     allCases<Unit>();             // {Unit::hours, Unit::minutes, Unit::seconds}
///
/// The table stands in the enumeration's namespace. For an enumeration nested in a class it follows
/// the class, or is a `friend` inside it where the class's own header needs it. It lists every
/// case; if a case or a raw value occurs twice, using the table is a compilation error.
///
/// `rawIntegers` makes a table of integers. `caseNames` makes the table of texts of an enumeration
/// whose raw values are the names of its cases. In JSON (Coding.h) a case is its raw value. A table
/// made by `keyedCases` is one of texts whose cases are written as objects instead: {"pinned":{}}.
///
/// A table with further columns has rows of its own type, which begins with `value` and `raw`:
///
///     enum class Stop { coffee, lunch };
///     struct StopRow { Stop value; std::string_view raw; int minutes; };
///     inline constexpr StopRow stopRows[] = {{Stop::coffee, "c", 15}, {Stop::lunch, "l", 60}};
///     constexpr auto rawValues(std::type_identity<Stop>) { return rawColumn(stopRows); }
///
///     rowOf(stopRows, Stop::lunch).minutes;  // 60
template <typename E, typename Raw>
struct RawCase {
  E value;
  Raw raw;
};

/// What `rawTexts`, `rawIntegers` and `keyedCases` give. Look-ups by index where cases count from 0
/// or raw values are consecutive, else by binary search.
template <typename E, typename Raw, std::size_t N, bool Keyed>
class RawValueTable {
 public:
  using RawType = Raw;
  static constexpr bool isKeyed = Keyed;

  template <typename Row>
  constexpr explicit RawValueTable(const Row (&rows)[N]) {
    for (std::size_t i = 0; i < N; ++i) {
      cases_[i] = rows[i].value;
      raws_[i] = rows[i].raw;
    }
    byCase_ = order(cases_, "a case stands twice in its table of raw values");
    byRaw_ = order(raws_, "a raw value stands twice in its table");
    for (std::size_t i = 0; i < N; ++i) {
      casesCountFrom0_ = casesCountFrom0_ && underlying(cases_[i]) == static_cast<std::int64_t>(i);
      if constexpr (std::is_integral_v<Raw>) {
        rawsAreConsecutive_ = rawsAreConsecutive_ && distance(raws_[i]) == i;
      }
    }
  }

  [[nodiscard]] constexpr std::span<const E> cases() const { return cases_; }

  [[nodiscard]] constexpr Raw rawValue(E value) const {
    const std::size_t i = indexOf(value);
    assert(i < N && "a case is missing from its table of raw values");
    return i < N ? raws_[i] : Raw{};
  }

  [[nodiscard]] constexpr std::optional<E> fromRawValue(Raw raw) const {
    const std::size_t i = indexOf(raw);
    return i < N ? std::optional(cases_[i]) : std::nullopt;
  }

  /// The row of a case.
  [[nodiscard]] constexpr std::size_t indexOf(E value) const {
    if (casesCountFrom0_) return static_cast<std::size_t>(underlying(value));
    return search(byCase_, cases_, value);
  }

 private:
  using Order = std::array<std::uint16_t, N>;

  static constexpr std::int64_t underlying(E value) { return static_cast<std::int64_t>(value); }

  /// By insertion: the compiler does this in every source that sees the table, most tables are in
  /// order already, and the standard's sort costs several times as much to compile.
  template <typename Value>
  static constexpr Order order(const std::array<Value, N>& values, const char* whenRepeated) {
    Order indexes{};
    for (std::size_t i = 0; i < N; ++i) {
      std::size_t place = i;
      for (; place > 0 && values[i] < values[indexes[place - 1]]; --place) {
        indexes[place] = indexes[place - 1];
      }
      if (place > 0 && values[i] == values[indexes[place - 1]]) throw whenRepeated;
      indexes[place] = static_cast<std::uint16_t>(i);
    }
    return indexes;
  }

  /// How far a raw value lies behind the first one; unsigned, so one comparison bounds it.
  [[nodiscard]] constexpr std::uint64_t distance(Raw raw) const {
    return static_cast<std::uint64_t>(raw) - static_cast<std::uint64_t>(raws_[0]);
  }

  [[nodiscard]] constexpr std::size_t indexOf(Raw raw) const {
    if constexpr (std::is_integral_v<Raw>) {
      if (rawsAreConsecutive_) return static_cast<std::size_t>(distance(raw));
    }
    return search(byRaw_, raws_, raw);
  }

  template <typename Value>
  static constexpr std::size_t search(const Order& indexes, const std::array<Value, N>& values,
                                      const Value& wanted) {
    std::size_t first = 0;
    for (std::size_t last = N; first < last;) {
      const std::size_t middle = (first + last) / 2;
      if (values[indexes[middle]] < wanted) {
        first = middle + 1;
      } else {
        last = middle;
      }
    }
    return first < N && values[indexes[first]] == wanted ? indexes[first] : N;
  }

  std::array<E, N> cases_{};
  std::array<Raw, N> raws_{};
  Order byCase_{};
  Order byRaw_{};
  bool casesCountFrom0_ = true;
  bool rawsAreConsecutive_ = std::is_integral_v<Raw>;
};

template <typename E, std::size_t N>
constexpr auto rawTexts(const RawCase<E, std::string_view> (&rows)[N]) {
  return RawValueTable<E, std::string_view, N, false>(rows);
}

template <typename E, std::size_t N>
constexpr auto rawIntegers(const RawCase<E, std::int64_t> (&rows)[N]) {
  return RawValueTable<E, std::int64_t, N, false>(rows);
}

template <typename E, std::size_t N>
constexpr auto keyedCases(const RawCase<E, std::string_view> (&rows)[N]) {
  return RawValueTable<E, std::string_view, N, true>(rows);
}

/// The table of raw values of one with further columns.
template <typename Row, std::size_t N>
constexpr auto rawColumn(const Row (&rows)[N]) {
  return RawValueTable<decltype(Row::value), decltype(Row::raw), N, false>(rows);
}

namespace raw_value_detail {
template <auto Case>
constexpr std::string_view nameOf() {
  using Holder = std::integral_constant<decltype(Case), Case>;
  // "std::integral_constant<Mood, Mood::good>", with "(Mood)7" for a number that is no case
  std::string_view name = typeName<Holder>();
  if (name.contains(')')) throw "a number between the cases has no case";
  name.remove_prefix(name.rfind(':') + 1);
  name.remove_suffix(1);
  if (name.ends_with('_')) name.remove_suffix(1);
  return name;
}
}  // namespace raw_value_detail

/// The names of the cases from 0 to the last one, without the underscore behind a keyword. To
/// rename a case is then to change a raw value. The table of an enumeration whose last case is
/// `bad` is
/// `constexpr auto rawValues(std::type_identity<Mood>) { return caseNames<Mood::bad>(); }`.
template <auto Last>
constexpr auto caseNames() {
  using E = decltype(Last);
  return []<std::size_t... I>(std::index_sequence<I...>) {
    return rawTexts<E>({{static_cast<E>(I), raw_value_detail::nameOf<static_cast<E>(I)>()}...});
  }
  (std::make_index_sequence<static_cast<std::size_t>(Last) + 1>());
}

/// An enumeration with a table of raw values.
template <typename E>
concept RawRepresentable = std::is_enum_v<E> && requires {
  rawValues(std::type_identity<E>{});
};

template <RawRepresentable E>
inline constexpr auto rawValueTable = rawValues(std::type_identity<E>{});

/// `std::string_view` or `std::int64_t`.
template <RawRepresentable E>
using RawValueType = typename std::remove_cvref_t<decltype(rawValueTable<E>)>::RawType;

template <RawRepresentable E>
constexpr RawValueType<E> rawValue(E value) {
  return rawValueTable<E>.rawValue(value);
}

/// The case with a raw value, absent when no case has it.
template <RawRepresentable E>
constexpr std::optional<E> fromRawValue(std::type_identity_t<RawValueType<E>> raw) {
  return rawValueTable<E>.fromRawValue(raw);
}

/// A case's row in the table of which its raw values are a column.
template <typename Row, std::size_t N>
constexpr const Row& rowOf(const Row (&rows)[N], decltype(Row::value) value) {
  const std::size_t i = rawValueTable<decltype(Row::value)>.indexOf(value);
  assert(i < N && "a case is missing from its table");
  return rows[i];
}

/// Every case, in the order of the table.
template <RawRepresentable E>
constexpr std::span<const E> allCases() {
  return rawValueTable<E>.cases();
}

/// The raw value as a text for logs: "h", "3".
template <RawRepresentable E>
std::string debugDescription(E value) {
  if constexpr (std::is_same_v<RawValueType<E>, std::string_view>) {
    return std::string(rawValue(value));
  } else {
    return std::to_string(rawValue(value));
  }
}

}  // namespace platform
