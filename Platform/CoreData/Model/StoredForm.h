#pragma once

#include "CoreData/Model/PropertyValue.h"
#include "Foundation/Coding/RawValue.h"

#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

namespace platform {

/// How the texts of an attribute are compared and sorted, in the file and in memory alike.
enum class TextComparison {
  exact,
  withoutCase,  ///< Of "a" to "z": for identifiers, which programs write in either case.
};

/// How a type of the program is kept in a column. The program specialises it, and declares the
/// column with the type, such as `Attribute<std::optional<Colour>>`:
/// ```
/// template <>
/// struct platform::StoredForm<Colour> {
///   using Stored = std::optional<std::string>;  // the type of the column
///   static std::optional<Colour> decode(const std::string& stored);
///   static std::string encode(const Colour& colour);
/// };
/// ```
///
/// `Stored` is an integer, a real, a text or `Data`, or an optional one; `decode` takes it as
/// `std::int64_t`, `double`, `std::string` or `Data` and returns nothing for what it can't make
/// out. So a damaged value, or one of a newer program, reads as absent and takes nothing else
/// along. Where nothing is to be stored, an optional column is empty and any other holds 0.
///
/// Two more members are optional: `isWhole` takes what `decode` takes and returns whether none of
/// it is left out, for a form that is read in parts; `comparison` is the `TextComparison`.
///
/// The specialisation must be seen wherever the type is a column's. The type itself may be
/// incomplete where the column is declared.
template <typename T>
struct StoredForm;

/// An enumeration is kept as its raw value, an integer in 16 bits.
template <RawRepresentable E>
struct StoredForm<E> {
  static constexpr bool isText = std::same_as<RawValueType<E>, std::string_view>;
  using Stored = std::conditional_t<isText, std::optional<std::string>, std::int16_t>;

  static std::optional<E> decode(RawValueType<E> stored) { return fromRawValue<E>(stored); }
  static auto encode(E value) {
    return static_cast<std::conditional_t<isText, std::string, std::int16_t>>(rawValue(value));
  }
};

/// The same form in a column that can be empty.
template <typename T>
struct Boxed : StoredForm<T> {
  using Stored = std::optional<typename StoredForm<T>::Stored>;
};

template <typename T>
inline constexpr bool isOptionalType = false;
template <typename T>
inline constexpr bool isOptionalType<std::optional<T>> = true;

namespace stored_form_detail {
std::int64_t kept(std::integral auto);
double kept(double);
const std::string& kept(const std::string&);
const Data& kept(const Data&);
template <typename T>
auto kept(const std::optional<T>&) -> decltype(kept(std::declval<T>()));
}  // namespace stored_form_detail

/// A column of `std::optional<T>` in the form `Form`, as a `PropertyValue`.
template <typename T, typename Form = StoredForm<T>>
struct DecodedForm {
  using Stored = typename Form::Stored;
  static constexpr NSAttributeType type = AttributeForm<Stored>::type;
  static constexpr TextComparison comparison = [] {
    if constexpr (requires { Form::comparison; }) return Form::comparison;
    return TextComparison::exact;
  }();

  static std::optional<T> from(const PropertyValue& value) {
    const auto* stored = std::get_if<Kept>(&value);
    return stored != nullptr ? Form::decode(*stored) : std::nullopt;
  }
  static PropertyValue to(const std::optional<T>& value) {
    return value ? AttributeForm<Stored>::to(Stored(Form::encode(*value))) : nothing();
  }
  /// Whether all of a value can be read. An absent value and an empty text can.
  static bool canRead(const PropertyValue& value) {
    if (isNull(value) || value == nothing()) return true;
    const auto* stored = std::get_if<Kept>(&value);
    if (stored == nullptr) return false;
    if constexpr (std::same_as<Kept, std::string>) {
      if (stored->empty()) return true;
    }
    if constexpr (requires { Form::isWhole(*stored); }) {
      return Form::isWhole(*stored);
    } else {
      return Form::decode(*stored).has_value();  // needs the type to be complete
    }
  }

 private:
  using Kept =
      std::remove_cvref_t<decltype(stored_form_detail::kept(std::declval<const Stored&>()))>;

  static PropertyValue nothing() { return AttributeForm<Stored>::to(Stored()); }
};

/// A type of the program that has a `StoredForm`.
template <typename T>
concept HasStoredForm = requires {
  typename StoredForm<T>::Stored;
};

template <HasStoredForm T>
struct AttributeForm<std::optional<T>> : DecodedForm<T> {};

}  // namespace platform
