#pragma once

#include "Foundation/Time/Date.h"
#include "Foundation/Values/Data.h"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace platform {

class Decoder;
class Encoder;
class Hasher;

/// A value whose structure is only known at run time, such as a notification's `userInfo` or the
/// content of a defaults file. Null, a Boolean, a number, a text, `Data`, `Date`, an array or a
/// dictionary.
///
///     const PropertyList info(PropertyList::Dictionary{{"id", "a1"}, {"days", 5}});
///     info["days"].integer();     // 5
///     info["id"].text();          // "a1": by a pointer
///     info["x"]["y"].isNull();    // true: what is missing reads as null
///     info.json();                // {"days":5,"id":"a1"}
///
/// A number is an integer wherever it is one that fits 64 bits with a sign (5.0 is the same value
/// as 5, but -0.0 is a real), and dictionaries are kept in the order of their keys, so that equal
/// values give equal texts. In JSON, an integer beyond 64 bits reads as a real, and a number beyond
/// those as null.
class PropertyList {
 public:
  using Array = std::vector<PropertyList>;
  using Dictionary = std::map<std::string, PropertyList, std::less<>>;

  /// Null.
  PropertyList() = default;
  PropertyList(std::nullptr_t) {}
  template <std::same_as<bool> Boolean>
  PropertyList(Boolean value) : value_(value) {}
  template <std::signed_integral Integer>
  PropertyList(Integer value) : value_(std::int64_t{value}) {}
  PropertyList(double value);
  PropertyList(std::string value) : value_(std::move(value)) {}
  PropertyList(std::string_view value) : value_(std::string(value)) {}
  PropertyList(const char* value) : value_(std::string(value)) {}
  PropertyList(Data value) : value_(std::move(value)) {}
  PropertyList(Date value) : value_(value) {}
  PropertyList(Array value) : value_(std::move(value)) {}
  PropertyList(Dictionary value) : value_(std::move(value)) {}

  [[nodiscard]] bool isNull() const { return std::holds_alternative<Null>(value_); }
  /// Absent when this is something else; a number is no Boolean.
  [[nodiscard]] std::optional<bool> boolean() const { return copy<bool>(); }
  /// Absent for a number with a fraction.
  [[nodiscard]] std::optional<std::int64_t> integer() const { return copy<std::int64_t>(); }
  /// Of any number.
  [[nodiscard]] std::optional<double> real() const;
  [[nodiscard]] std::optional<Date> date() const { return copy<Date>(); }
  /// A pointer into this value, null when it is something else. So are the following.
  [[nodiscard]] const std::string* text() const { return std::get_if<std::string>(&value_); }
  [[nodiscard]] const Data* data() const { return std::get_if<Data>(&value_); }
  [[nodiscard]] const Array* array() const { return std::get_if<Array>(&value_); }
  [[nodiscard]] Array* array() { return std::get_if<Array>(&value_); }
  [[nodiscard]] const Dictionary* dictionary() const { return std::get_if<Dictionary>(&value_); }
  [[nodiscard]] Dictionary* dictionary() { return std::get_if<Dictionary>(&value_); }
  /// The value under a key; null when there is none, or when this is no dictionary.
  [[nodiscard]] const PropertyList& operator[](std::string_view key) const;

  /// Plain JSON. `Data` is written as Base64 and `Date` as a number of seconds since 2001, and both
  /// read back as a text and a number.
  [[nodiscard]] std::string json() const;
  [[nodiscard]] static PropertyList fromJSON(std::string_view json);

  /// JSON that loses nothing, for files: bytes as {"$data":"…"}, instants as {"$date":…}, and a
  /// dictionary's own key that starts with "$" is written with a second one. On reading, an object
  /// whose "$data" or "$date" can't be read is a dictionary.
  [[nodiscard]] std::string fileText() const;
  [[nodiscard]] static PropertyList fromFileText(std::string_view text);

  bool operator==(const PropertyList&) const = default;
  void hash(Hasher& hasher) const;

  // The plain form (Coding.h).
  void encode(Encoder& to) const;
  static PropertyList decode(const Decoder& from);

 private:
  using Null = std::monostate;

  template <typename T>
  [[nodiscard]] std::optional<T> copy() const {
    const T* value = std::get_if<T>(&value_);
    return value != nullptr ? std::optional<T>(*value) : std::nullopt;
  }

  std::variant<Null, bool, std::int64_t, double, std::string, Data, Date, Array, Dictionary> value_;
};

}  // namespace platform
