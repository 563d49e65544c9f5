#pragma once

#include "Foundation/Coding/Decoder.h"
#include "Foundation/Coding/Encoder.h"
#include "Foundation/Coding/RecordCoding.h"
#include "Foundation/Text/String.h"

#include <algorithm>
#include <charconv>
#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

/// How lists, sets and maps are written and read: an element that can't be read is left out. Part
/// of Coding.h, which is the header to include.
namespace platform {
namespace coding_detail {

template <typename T>
concept Map = !SelfCoded<T> && requires {
  typename T::mapped_type;
};
template <typename T>
concept Set = !SelfCoded<T> && !Map<T> && requires {
  typename T::key_type;
};
template <typename T>
concept List = !SelfCoded<T> && !std::convertible_to<const T&, std::string_view> &&
               requires(T & list, typename T::value_type element) {
  list.push_back(element);
};

template <typename T>
concept TextKey = std::same_as<T, std::string>;
template <typename T>
concept IntegerKey = std::integral<T> && !std::same_as<T, bool>;

/// Calls `f` with each element, in an order that depends on the elements alone.
template <typename Container, typename F>
void forEachInOrder(const Container& container, F&& f) {
  if constexpr (requires { typename Container::hasher; }) {
    using Element = typename Container::value_type;
    const auto keyOf = [](const Element* element) -> const auto& {
      if constexpr (Map<Container>) {
        return element->first;
      } else {
        return *element;
      }
    };
    std::vector<const Element*> elements;
    elements.reserve(container.size());
    for (const Element& element : container) elements.push_back(&element);
    std::ranges::sort(elements, {}, keyOf);
    for (const Element* element : elements) f(*element);
  } else {
    for (const auto& element : container) f(element);
  }
}

template <typename Key>
Key keyFrom(std::string_view text, const Decoder& place) {
  if constexpr (TextKey<Key>) {
    return Key(text);
  } else {
    Key key{};
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), key);
    if (failure == std::errc() && end == text.data() + text.size()) return key;
    throw place.dataCorrupted("Expected an integer for a key, found " + inQuotes(text) + ".");
  }
}

template <typename Key>
auto keyText(const Key& key) {
  if constexpr (TextKey<Key>) {
    return std::string_view(key);
  } else {
    return std::to_string(key);
  }
}

}  // namespace coding_detail

template <coding_detail::List T>
struct Coding<T> {
  using Element = typename T::value_type;

  static void encode(const T& list, Encoder& to) {
    to.array([&](ArrayEncoder& array) {
      for (const auto& element : list) array.encode<Element>(element);
    });
  }

  static T decode(const Decoder& from) {
    T list;
    from.forEachElement([&](const Decoder& element) {
      if constexpr (requires { list.reserve(1); }) {
        if (list.empty()) list.reserve(from.count());
      }
      if constexpr (requires { Coding<Element>::decodeInto(list.emplace_back(), element); }) {
        Element& fresh = list.emplace_back();
        if (!element.succeeds([&] { Coding<Element>::decodeInto(fresh, element); })) {
          list.pop_back();
        }
      } else {
        (void)element.succeeds([&] { list.push_back(element.decode<Element>()); });
      }
    });
    return list;
  }
};

template <coding_detail::Set T>
struct Coding<T> {
  static void encode(const T& set, Encoder& to) {
    to.array([&](ArrayEncoder& array) {
      coding_detail::forEachInOrder(set, [&](const auto& element) { array.encode(element); });
    });
  }

  static T decode(const Decoder& from) {
    T set;
    from.forEachElement([&](const Decoder& element) {
      (void)element.succeeds(
          [&] { set.insert(set.end(), element.decode<typename T::value_type>()); });
    });
    return set;
  }
};

template <coding_detail::Map T>
struct Coding<T> {
  using Key = typename T::key_type;
  using Value = typename T::mapped_type;
  static constexpr bool isObject = coding_detail::TextKey<Key> || coding_detail::IntegerKey<Key>;

  static void encode(const T& map, Encoder& to) {
    if constexpr (isObject) {
      to.object([&](ObjectEncoder& object) {
        coding_detail::forEachInOrder(map, [&](const auto& entry) {
          // An absent value must not drop its key.
          object.template encode<Value>(coding_detail::keyText(entry.first), entry.second);
        });
      });
    } else {
      to.array([&](ArrayEncoder& array) {
        coding_detail::forEachInOrder(map, [&](const auto& entry) {
          array.encode(entry.first);
          array.encode(entry.second);
        });
      });
    }
  }

  static T decode(const Decoder& from) {
    T map;
    if constexpr (isObject) {
      from.forEachField([&](std::string_view key, const Decoder& value) {
        (void)value.succeeds([&] {
          map.insert_or_assign(map.end(), coding_detail::keyFrom<Key>(key, value),
                               value.decode<Value>());
        });
      });
    } else {
      from.forEachPair([&](const Decoder& key, const Decoder& value) {
        (void)value.succeeds(
            [&] { map.insert_or_assign(map.end(), key.decode<Key>(), value.decode<Value>()); });
      });
    }
    return map;
  }
};

}  // namespace platform
