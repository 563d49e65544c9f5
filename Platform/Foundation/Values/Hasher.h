#pragma once

#include "Foundation/Coding/CodingKeys.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <ranges>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <variant>

namespace platform {

class Hasher;
class TimeZone;

template <typename T>
concept CustomHashing = requires(const T& value, Hasher& hasher) {
  value.hash(hasher);
};

/// A type that says what its hash covers: by its list of keys or cases or its `codingValue`
/// (CodingKeys.h), or by a member `void hash(Hasher&) const`, which comes first. Such a type has a
/// `std::hash` by that alone.
template <typename T>
concept SelfHashing = CustomHashing<T> || KeyedRecord<T> || PayloadVariant<T> || SingleValue<T>;

/// Makes one number of many values. The number is the same in every process and on every machine,
/// so it may be stored and sent; equal values give equal numbers.
///
///     Hasher hasher;
///     hasher.combine(3, "Read");
///     hasher.finalize() == hashValue(std::pair(3, std::string("Read")));    // true
///
/// Takes numbers, texts, enumerations, optionals, variants, tuples, ranges (those without an order
/// as well), what is `SelfHashing`, and anything else that `std::hash` takes.
class Hasher {
 public:
  template <typename... T>
  void combine(const T&... values) {
    (add(values), ...);
  }

  [[nodiscard]] std::size_t finalize() const { return mix(state_); }

 private:
  static constexpr std::uint64_t mix(std::uint64_t bits) {
    bits = (bits ^ bits >> 30) * 0xbf58476d1ce4e5b9U;
    bits = (bits ^ bits >> 27) * 0x94d049bb133111ebU;
    return bits ^ bits >> 31;
  }

  void addBits(std::uint64_t bits) { state_ = mix(state_ ^ bits) + 0x9e3779b97f4a7c15U; }
  void add(std::string_view text);
  void add(const TimeZone& zone);

  template <typename T>
  void add(const T& value) {
    if constexpr (CustomHashing<T>) {
      value.hash(*this);
    } else if constexpr (KeyedRecord<T>) {
      T::codingKeys.forEachMember(value, [this](const auto& member) { add(member); });
    } else if constexpr (PayloadVariant<T>) {
      add(value.*T::codingCases.member);
    } else if constexpr (SingleValue<T>) {
      add(value.*T::codingValue);
    } else if constexpr (std::is_enum_v<T> || std::is_integral_v<T>) {
      addBits(static_cast<std::uint64_t>(value));
    } else if constexpr (std::is_floating_point_v<T>) {
      addBits(std::bit_cast<std::uint64_t>(static_cast<double>(value) + 0.0));  // -0 equals 0
    } else if constexpr (std::is_convertible_v<const T&, std::string_view>) {
      add(std::string_view(value));
    } else if constexpr (std::ranges::range<const T>) {
      addRange(value);
    } else {
      addComposite(value);
    }
  }

  template <typename T>
  void addComposite(const std::optional<T>& value) {
    addBits(value.has_value());
    if (value) add(*value);
  }
  template <typename... T>
  void addComposite(const std::variant<T...>& value) {
    addBits(value.index());
    std::visit([this](const auto& alternative) { add(alternative); }, value);
  }
  template <typename... T>
  void addComposite(const std::tuple<T...>& value) {
    std::apply([this](const auto&... element) { combine(element...); }, value);
  }
  template <typename First, typename Second>
  void addComposite(const std::pair<First, Second>& value) {
    combine(value.first, value.second);
  }
  template <typename T>
  void addComposite(const T& value) {
    if constexpr (!std::is_empty_v<T>) addBits(std::hash<T>{}(value));
  }

  template <typename Range>
  void addRange(const Range& range) {
    std::uint64_t count = 0;
    std::uint64_t unordered = 0;
    for (const auto& element : range) {
      ++count;
      if constexpr (requires { typename Range::hasher; }) {
        Hasher own;
        own.add(element);
        unordered += own.finalize();
      } else {
        add(element);
      }
    }
    addBits(count);
    if (unordered != 0) addBits(unordered);
  }

  std::uint64_t state_ = 0;
};

/// The hash of one value.
template <typename T>
[[nodiscard]] std::size_t hashValue(const T& value) {
  Hasher hasher;
  hasher.combine(value);
  return hasher.finalize();
}

}  // namespace platform

template <platform::SelfHashing T>
struct std::hash<T> {
  std::size_t operator()(const T& value) const noexcept { return platform::hashValue(value); }
};
