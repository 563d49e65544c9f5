#pragma once

#include "OxKit/OptionSet.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <type_traits>

namespace velloro {

/// A set of the cases of an enumeration that count from 0 to 63 at most: eight bytes, no
/// allocation, and walked through in the order of the cases. In JSON it is an array of raw values
/// in that order; when read, any order will do.
///
///     enum class Meal { breakfast, lunch, dinner };
///     const EnumSet<Meal> meals{Meal::dinner, Meal::breakfast};
///     meals.contains(Meal::lunch);    // false
///     meals;                          // {Meal::breakfast, Meal::dinner}: the order of the cases
template <typename E>
requires std::is_enum_v<E>
struct EnumSet : OptionSet<EnumSet<E>, std::uint64_t> {
  using OptionSet<EnumSet, std::uint64_t>::OptionSet;
  using OptionSet<EnumSet, std::uint64_t>::insert;
  using key_type = E;
  using value_type = E;

  constexpr EnumSet(E member) : EnumSet(std::uint64_t{1} << static_cast<unsigned>(member)) {}

  class Iterator {
   public:
    using value_type = E;
    using reference = E;
    using pointer = void;
    using difference_type = std::ptrdiff_t;
    using iterator_category = std::input_iterator_tag;
    using iterator_concept = std::forward_iterator_tag;

    constexpr Iterator() = default;
    explicit constexpr Iterator(std::uint64_t rest) : rest_(rest) {}
    constexpr E operator*() const { return static_cast<E>(std::countr_zero(rest_)); }
    constexpr Iterator& operator++() {
      rest_ &= rest_ - 1;
      return *this;
    }
    constexpr Iterator operator++(int) {
      const Iterator before = *this;
      ++*this;
      return before;
    }
    bool operator==(const Iterator&) const = default;

   private:
    std::uint64_t rest_ = 0;
  };
  using iterator = Iterator;
  using const_iterator = Iterator;

  [[nodiscard]] constexpr Iterator begin() const { return Iterator(this->rawValue); }
  [[nodiscard]] constexpr Iterator end() const { return Iterator(); }
  [[nodiscard]] constexpr std::size_t size() const {
    return static_cast<std::size_t>(std::popcount(this->rawValue));
  }

  /// As the standard's sets have it, so that it is filled as they are. The place does not matter.
  constexpr void insert(Iterator, E member) { insert(EnumSet(member)); }
};

}  // namespace velloro
