#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Coding/Decoder.h"
#include "Foundation/Coding/Encoder.h"
#include "Foundation/Coding/RawValue.h"
#include "Foundation/Values/TypeName.h"

#include <array>
#include <concepts>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <variant>

namespace platform {

template <typename T>
concept CustomEncoded = requires(const T& value, Encoder& encoder) {
  value.encode(encoder);
};

template <typename T>
concept CustomDecoded = requires(const Decoder& decoder) {
  { T::decode(decoder) } -> std::same_as<T>;
};

/// A type that says its form itself.
template <typename T>
concept SelfCoded =
    KeyedRecord<T> || PayloadVariant<T> || SingleValue<T> || CustomEncoded<T> || CustomDecoded<T>;

}  // namespace platform

/// How records and payload variants are written and read by their lists (CodingKeys.h). Part of
/// Coding.h, which is the header to include.
namespace platform::coding_detail {

/// The index of a name in a list, where the expected index is tried first; the size of the list if
/// the name is not in it.
std::size_t searchName(std::span<const std::string_view> names, std::string_view name,
                       std::size_t expected);

inline std::size_t indexOf(std::span<const std::string_view> names, std::string_view name,
                           std::size_t expected) {
  if (expected < names.size() && names[expected] == name) return expected;
  return searchName(names, name, expected);
}

/// Reads into a value that has just been made: in place, where its type can.
template <typename T>
void decodeInto(T& fresh, const Decoder& from) {
  if constexpr (requires { Coding<T>::decodeInto(fresh, from); }) {
    Coding<T>::decodeInto(fresh, from);
  } else {
    fresh = from.decode<T>();
  }
}

template <typename T>
void decodeOptional(std::optional<T>& value, const Decoder& from) {
  if (from.isNull()) {
    value.reset();
  } else if constexpr (std::default_initializable<T>) {
    decodeInto(value.emplace(), from);
  } else {
    value.emplace(from.decode<T>());
  }
}

template <typename T>
inline constexpr bool isWhenUnknown = false;
template <typename Value>
inline constexpr bool isWhenUnknown<WhenUnknown<Value>> = true;

template <typename T>
struct RecordCoding {
  static constexpr const auto& keys = T::codingKeys;
  static constexpr std::size_t count = keys.count;
  using Indexes = std::make_index_sequence<count>;

  static void encode(const T& value, Encoder& to) {
    to.object([&](ObjectEncoder& object) {
      keys.entries.forEach([&](const auto& key) { object.encode(key.name, value.*key.member); });
    });
  }

  static void decodeInto(T& fresh, const Decoder& from) {
    std::uint64_t seen = 0;
    std::size_t expected = 0;
    from.forEachField([&](std::string_view name, const Decoder& value) {
      const std::size_t index = indexOf(keys.names, name, expected);
      if (index == count) return;
      expected = index + 1;
      seen |= std::uint64_t{1} << index;
      if (replacers[index] == nullptr) return readers[index](fresh, value);
      if (!value.succeeds([&] { readers[index](fresh, value); })) replacers[index](fresh, from);
    });
    supplyMissing(fresh, from, seen, Indexes{});
  }

 private:
  using Reader = void (*)(T&, const Decoder&);
  using Replacer = void (*)(T&, const Decoder&);

  template <std::size_t I>
  static constexpr const auto& keyAt = get<I>(keys.entries);
  template <std::size_t I>
  using Key = std::remove_cvref_t<decltype(keyAt<I>)>;
  template <std::size_t I>
  static constexpr bool isNeeded = !isOptional<typename Key<I>::MemberType> &&
                                   std::same_as<typename Key<I>::FallbackType, NoFallback>;
  template <std::size_t I>
  static constexpr bool mayBeMissing =
      !isNeeded<I> && !isWhenUnknown<typename Key<I>::FallbackType>;

  template <std::size_t I>
  static void read(T& record, const Decoder& from) {
    auto& member = record.*keyAt<I>.member;
    using Member = typename Key<I>::MemberType;
    if constexpr (isOptional<Member>) {
      decodeOptional(member, from);
    } else {
      if constexpr (mayBeMissing<I>) {
        if (from.isNull()) return replace<I>(record, from);
      }
      member = from.decode<Member>();
    }
  }

  /// Sets a member to the value that it has if its own can't be read.
  template <std::size_t I>
  static void replace(T& record, const Decoder& from) {
    auto& member = record.*keyAt<I>.member;
    using Member = typename Key<I>::MemberType;
    if constexpr (isOptional<Member>) {
      member.reset();
    } else if constexpr (isWhenUnknown<typename Key<I>::FallbackType>) {
      set<I>(member, keyAt<I>.fallback.value, from);
    } else {
      set<I>(member, keyAt<I>.fallback, from);
    }
  }

  template <std::size_t I, typename Member, typename Value>
  static void set(Member& member, const Value& value, const Decoder& from) {
    if constexpr (std::same_as<Value, InitialValue>) {
      T blank{};
      member = std::move(blank.*keyAt<I>.member);
    } else if constexpr (std::invocable<Value, const Decoder&>) {
      member = std::invoke(value, from);
    } else if constexpr (std::invocable<Value>) {
      member = value();
    } else {
      member = Member(value);
    }
  }

  template <std::size_t... I>
  static void supplyMissing(T& record, const Decoder& from, std::uint64_t seen,
                            std::index_sequence<I...>) {
    (((seen >> I & 1) != 0 || (supply<I>(record, from), true)), ...);
  }

  /// What a member of a new record is when its key is missing.
  template <std::size_t I>
  static void supply(T& fresh, const Decoder& from) {
    if constexpr (!mayBeMissing<I>) {
      throw from.keyNotFound(keys.names[I]);
    } else if constexpr (!std::same_as<typename Key<I>::FallbackType, InitialValue>) {
      replace<I>(fresh, from);
    }
  }

  template <std::size_t... I>
  static constexpr std::array<Reader, count> makeReaders(std::index_sequence<I...>) {
    return {&read<I>...};
  }
  static constexpr std::array<Reader, count> readers = makeReaders(Indexes{});

  /// Null where there is no replacement for a value.
  template <std::size_t I>
  static constexpr Replacer replacerAt() {
    if constexpr (isNeeded<I>) {
      return nullptr;
    } else {
      return &replace<I>;
    }
  }
  template <std::size_t... I>
  static constexpr std::array<Replacer, count> makeReplacers(std::index_sequence<I...>) {
    return {replacerAt<I>()...};
  }
  static constexpr std::array<Replacer, count> replacers = makeReplacers(Indexes{});
};

template <typename T>
concept TupleLike = requires {
  typename std::tuple_size<T>::type;
};

/// A case without payload has an empty struct for an alternative.
template <typename T>
concept NoPayload = std::is_empty_v<T> && !SelfCoded<T>;

template <typename T>
struct VariantCoding {
  static constexpr const auto& list = T::codingCases;
  static constexpr std::size_t count = list.count;
  using Variant = std::remove_cvref_t<decltype(std::declval<T>().*list.member)>;
  using Indexes = std::make_index_sequence<count>;

  static void encode(const T& value, Encoder& to) {
    const Variant& variant = value.*list.member;
    if (variant.valueless_by_exception()) throw to.invalidValue("The variant has no value.");
    to.object([&](ObjectEncoder& object) { writers[variant.index()](variant, object); });
  }

  static T decode(const Decoder& from) {
    const auto [name, payload] = from.onlyField();
    for (std::size_t i = 0; i < count; ++i) {
      if (list.entries[i].name == name) return T{readers[i](payload)};
    }
    throw from.unknownCase(name, typeName<T>());
  }

 private:
  using Writer = void (*)(const Variant&, ObjectEncoder&);
  using Reader = Variant (*)(const Decoder&);

  template <std::size_t I>
  static void write(const Variant& variant, ObjectEncoder& object) {
    constexpr const CodingCase& entry = list.entries[I];
    const auto& payload = *std::get_if<I>(&variant);
    using Payload = std::remove_cvref_t<decltype(payload)>;
    if constexpr (NoPayload<Payload>) {
      object.object(entry.name, [](ObjectEncoder&) {});
    } else if constexpr (!entry.isKeyed) {
      object.encode(entry.name, payload);
    } else {
      object.object(entry.name, [&](ObjectEncoder& fields) {
        if constexpr (TupleLike<Payload>) {
          std::size_t label = 0;
          std::apply(
              [&](const auto&... element) { (fields.encode(entry.labels[label++], element), ...); },
              payload);
        } else {
          fields.encode(entry.labels[0], payload);
        }
      });
    }
  }

  template <std::size_t I>
  static Variant read(const Decoder& from) {
    constexpr const CodingCase& entry = list.entries[I];
    using Payload = std::variant_alternative_t<I, Variant>;
    constexpr auto place = std::in_place_index<I>;
    if constexpr (NoPayload<Payload>) {
      return Variant(place);
    } else if constexpr (!entry.isKeyed) {
      return Variant(place, from.decode<Payload>());
    } else if constexpr (TupleLike<Payload>) {
      constexpr std::size_t size = std::tuple_size_v<Payload>;
      static_assert(size <= CodingCase::maximumLabels, "a payload has at most so many elements");
      return Variant(place, readElements<I, Payload>(from, std::make_index_sequence<size>{}));
    } else {
      return Variant(place, readElement<Payload>(from, entry.labels[0]));
    }
  }

  template <std::size_t I, typename Payload, std::size_t... Element>
  static Payload readElements(const Decoder& from, std::index_sequence<Element...>) {
    return Payload{readElement<std::tuple_element_t<Element, Payload>>(
        from, list.entries[I].labels[Element])...};
  }

  template <typename Element>
  static Element readElement(const Decoder& from, std::string_view label) {
    if constexpr (isOptional<Element>) {
      Element element;
      const bool isKnown = from.succeeds(
          [&] { element = from.decodeIfPresent<typename Element::value_type>(label); });
      return isKnown ? element : std::nullopt;
    } else {
      return from.decode<Element>(label);
    }
  }

  template <std::size_t... I>
  static constexpr std::array<Writer, count> makeWriters(std::index_sequence<I...>) {
    return {&write<I>...};
  }
  template <std::size_t... I>
  static constexpr std::array<Reader, count> makeReaders(std::index_sequence<I...>) {
    return {&read<I>...};
  }
  static constexpr std::array<Writer, count> writers = makeWriters(Indexes{});
  static constexpr std::array<Reader, count> readers = makeReaders(Indexes{});
};

}  // namespace platform::coding_detail
