#pragma once

#include <concepts>
#include <initializer_list>
#include <optional>

namespace velloro {

/// The algebra of a set whose members are bits of one integer, for a type that derives from it. A
/// member and a set are the same type: a member is the set that holds it alone.
///
///     struct Sides : OptionSet<Sides, std::uint8_t> {
///       using OptionSet::OptionSet;
///       static const Sides left, right;
///     };
///     inline constexpr Sides Sides::left(1), Sides::right(2);
///
///     const Sides both{Sides::left, Sides::right};
///     both.rawValue;                 // 3
///     both.contains(Sides::left);    // true
template <typename Set, std::integral Bits>
struct OptionSet {
  Bits rawValue = 0;

  constexpr OptionSet() = default;
  explicit constexpr OptionSet(Bits bits) : rawValue(bits) {}
  constexpr OptionSet(std::initializer_list<Set> sets) {
    for (const Set set : sets) rawValue = union_(set).rawValue;
  }

  bool operator==(const OptionSet&) const = default;

  [[nodiscard]] constexpr Set union_(Set other) const { return of(rawValue | other.rawValue); }
  [[nodiscard]] constexpr Set intersection(Set other) const {
    return of(rawValue & other.rawValue);
  }
  [[nodiscard]] constexpr Set symmetricDifference(Set other) const {
    return of(rawValue ^ other.rawValue);
  }
  [[nodiscard]] constexpr Set subtracting(Set other) const {
    return of(rawValue & ~other.rawValue);
  }

  [[nodiscard]] constexpr bool contains(Set other) const { return isSuperset(other); }
  [[nodiscard]] constexpr bool isSubset(Set other) const { return intersection(other) == *this; }
  [[nodiscard]] constexpr bool isSuperset(Set other) const { return other.isSubset(of(rawValue)); }
  [[nodiscard]] constexpr bool isDisjoint(Set other) const { return intersection(other).isEmpty(); }
  [[nodiscard]] constexpr bool isEmpty() const { return rawValue == 0; }

  /// Adds the members of `other`; false when all of them were in already.
  constexpr bool insert(Set other) {
    const bool isNew = !contains(other);
    rawValue = union_(other).rawValue;
    return isNew;
  }
  /// Takes the members of `other` out and returns those that were in, absent when none was.
  constexpr std::optional<Set> remove(Set other) {
    const Set removed = intersection(other);
    rawValue = subtracting(other).rawValue;
    return removed.isEmpty() ? std::nullopt : std::optional(removed);
  }
  /// Adds the members of `other` and returns those that were in already, absent when none was.
  constexpr std::optional<Set> update(Set other) {
    const Set before = intersection(other);
    rawValue = union_(other).rawValue;
    return before.isEmpty() ? std::nullopt : std::optional(before);
  }

 private:
  /// Operators on short integers give an `int`.
  static constexpr Set of(auto bits) { return Set(static_cast<Bits>(bits)); }
};

}  // namespace velloro
