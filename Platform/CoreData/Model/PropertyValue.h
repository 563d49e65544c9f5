#pragma once

#include "Foundation/Time/Date.h"
#include "Foundation/Values/Data.h"
#include "Foundation/Values/UUID.h"

#include <compare>
#include <concepts>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace platform {

class NSEntityDescription;

/// Names one object of a store, in every context and process that has the store open. An object
/// that was never saved has a temporary ID, which only its own context knows; its first save gives
/// it the permanent one, which is never given to another object.
struct NSManagedObjectID {
  const NSEntityDescription* entity = nullptr;
  std::int64_t key = 0;  ///< The row's primary key; below 0 for a temporary ID.

  [[nodiscard]] bool isTemporaryID() const { return key < 0; }

  bool operator==(const NSManagedObjectID&) const = default;
  /// By entity in the order of the model, then by age.
  std::strong_ordering operator<=>(const NSManagedObjectID& other) const;
};

/// What one property of an object holds, as the store sees it: nothing; an integer or a Boolean; a
/// real, or a date as seconds since 2001; a text; bytes or a UUID; the object of a to-one relation.
using PropertyValue =
    std::variant<std::monostate, std::int64_t, double, std::string, Data, NSManagedObjectID>;
using PropertyValues = std::vector<PropertyValue>;
/// The values of one row, by slot; null before they are read. Rows that were read together may lie
/// in one block, which lives for as long as one of them does.
using RowValues = std::shared_ptr<PropertyValue[]>;

[[nodiscard]] inline bool isNull(const PropertyValue& value) {
  return value.index() == 0;
}

/// The order of sort descriptors and of SQLite: nothing, numbers by size (of either kind), texts
/// and then bytes byte by byte, objects.
[[nodiscard]] std::weak_ordering order(const PropertyValue& one, const PropertyValue& other);

/// The kinds of attributes.
enum class NSAttributeType {
  boolean,
  integer16,
  integer32,
  integer64,
  double_,
  string,
  date,
  binary,
  uuid,
  transformable,
};

/// How a C++ type stands in a `PropertyValue`. Nothing reads as the type's empty value. For types
/// of the program see `StoredForm`.
template <typename T>
struct AttributeForm;

template <std::integral T>
struct AttributeForm<T> {
  using Stored = T;
  static constexpr NSAttributeType type = std::same_as<T, bool>      ? NSAttributeType::boolean
                                          : std::same_as<T, int16_t> ? NSAttributeType::integer16
                                          : std::same_as<T, int32_t> ? NSAttributeType::integer32
                                                                     : NSAttributeType::integer64;
  static T from(const PropertyValue& value) {
    const auto* number = std::get_if<std::int64_t>(&value);
    return number != nullptr ? static_cast<T>(*number) : T{};
  }
  static PropertyValue to(T value) { return static_cast<std::int64_t>(value); }
};

template <>
struct AttributeForm<double> {
  using Stored = double;
  static constexpr NSAttributeType type = NSAttributeType::double_;
  static double from(const PropertyValue& value) {
    const auto* number = std::get_if<double>(&value);
    return number != nullptr ? *number : 0;
  }
  static PropertyValue to(double value) { return value; }
};

template <>
struct AttributeForm<Date> {
  using Stored = Date;
  static constexpr NSAttributeType type = NSAttributeType::date;
  static Date from(const PropertyValue& value) {
    return Date::sinceReferenceDate(AttributeForm<double>::from(value));
  }
  static PropertyValue to(Date value) { return value.timeIntervalSinceReferenceDate(); }
};

template <>
struct AttributeForm<std::string> {
  using Stored = std::string;
  static constexpr NSAttributeType type = NSAttributeType::string;
  static std::string from(const PropertyValue& value) {
    const auto* text = std::get_if<std::string>(&value);
    return text != nullptr ? *text : std::string();
  }
  static PropertyValue to(std::string value) { return value; }
};

template <>
struct AttributeForm<Data> {
  using Stored = Data;
  static constexpr NSAttributeType type = NSAttributeType::binary;
  static Data from(const PropertyValue& value) {
    const auto* data = std::get_if<Data>(&value);
    return data != nullptr ? *data : Data();
  }
  static PropertyValue to(Data value) { return value; }
};

/// Kept as 16 bytes; other bytes read as the empty UUID.
template <>
struct AttributeForm<UUID> {
  using Stored = UUID;
  static constexpr NSAttributeType type = NSAttributeType::uuid;
  static UUID from(const PropertyValue& value);
  static PropertyValue to(const UUID& value);
};

/// Nothing is absent: a boxed number, an optional text.
template <typename T>
struct AttributeForm<std::optional<T>> {
  using Stored = std::optional<T>;
  static constexpr NSAttributeType type = AttributeForm<T>::type;
  static std::optional<T> from(const PropertyValue& value) {
    return isNull(value) ? std::nullopt : std::optional<T>(AttributeForm<T>::from(value));
  }
  static PropertyValue to(std::optional<T> value) {
    return value ? AttributeForm<T>::to(*std::move(value)) : PropertyValue();
  }
};

}  // namespace platform

template <>
struct std::hash<platform::NSManagedObjectID> {
  std::size_t operator()(const platform::NSManagedObjectID& id) const noexcept {
    // Entities are few and aligned; the golden ratio spreads them away from the keys.
    return std::hash<const void*>{}(id.entity) * 0x9e3779b97f4a7c15U +
           static_cast<std::size_t>(id.key);
  }
};
