#include "Foundation/Coding/Decoder.h"

#include "Foundation/Coding/ExactInteger.h"
#include "Foundation/Text/Locale.h"
#include "Foundation/Text/String.h"
#include "Foundation/Time/TimeZone.h"

#include <cmath>
#include <utility>

namespace platform {

std::optional<Decoder> Decoder::find(std::string_view key) const {
  expect(Kind::object, "an object");
  JSONFields fields(node_);
  std::optional<Decoder> last;
  std::string_view name;
  for (JSONNode value = node_; fields.next(name, value);) {
    if (name == key) last = Decoder(*this, name, value);
  }
  return last;
}

std::pair<std::string_view, Decoder> Decoder::onlyField() const {
  expect(Kind::object, "an object");
  if (count() != 1) {
    throw dataCorrupted("Invalid number of keys found, expected one.").ofMoreThanOneValue();
  }
  JSONFields fields(node_);
  std::string_view key;
  JSONNode value = node_;
  fields.next(key, value);
  return {key, Decoder(*this, key, value)};
}

bool Decoder::boolean() const {
  expect(Kind::boolean, "true or false");
  return node_.boolean();
}

std::int64_t Decoder::integer(std::int64_t lowest, std::int64_t highest) const {
  std::optional<std::int64_t> value;
  switch (kind()) {
    case Kind::integer:
      value = node_.integer();
      break;
    case Kind::real:
      value = exactInteger(node_.real());
      break;
    case Kind::unsignedInteger:
      break;
    default:
      throw mismatch("an integer");
  }
  if (value && *value >= lowest && *value <= highest) return *value;
  if (!value) throw invalidValue("an integer of 64 bits");
  throw invalidValue("an integer from " + std::to_string(lowest) + " to " +
                     std::to_string(highest));
}

std::uint64_t Decoder::unsignedInteger() const {
  if (kind() == Kind::unsignedInteger) return node_.unsignedInteger();
  return static_cast<std::uint64_t>(integer(0));
}

double Decoder::real() const {
  const bool isNumber =
      kind() == Kind::real || kind() == Kind::integer || kind() == Kind::unsignedInteger;
  if (!isNumber) throw mismatch("a number");
  const double value = node_.real();
  if (!std::isfinite(value)) throw invalidValue("a number");
  return value;
}

std::string_view Decoder::text() const {
  expect(Kind::text, "a text");
  return node_.text();
}

TimeZone Decoder::timeZone() const {
  return TimeZone::current();
}

Locale Decoder::locale() const {
  return Locale::current();
}

Date Decoder::date() const {
  if (rules_->dateForm == DateForm::secondsSinceReferenceDate)
    return Date::sinceReferenceDate(real());
  const auto date = Date::fromISO8601(text());
  if (!date) throw invalidValue("a date in ISO 8601");
  return *date;
}

DecodingError Decoder::dataCorrupted(std::string debugDescription) const {
  return {DecodingError::Kind::dataCorrupted, path_.text(), std::move(debugDescription)};
}

DecodingError Decoder::invalidValue(std::string_view wanted) const {
  return dataCorrupted(expectation(wanted));
}

DecodingError Decoder::mismatch(std::string_view wanted) const {
  using enum DecodingError::Kind;
  return {isNull() ? valueNotFound : typeMismatch, path_.text(), expectation(wanted)};
}

std::string Decoder::expectation(std::string_view wanted) const {
  return "Expected " + std::string(wanted) + ", found " + node_.description() + ".";
}

DecodingError Decoder::keyNotFound(std::string_view key) const {
  return {DecodingError::Kind::keyNotFound, path_.text(),
          "The key \"" + std::string(key) + "\" is missing."};
}

DecodingError Decoder::unknownCase(std::string_view typeName) const {
  return dataCorrupted("No case of " + std::string(typeName) + " is " + node_.description() + ".");
}

DecodingError Decoder::unknownCase(std::string_view name, std::string_view typeName) const {
  return dataCorrupted("No case of " + std::string(typeName) + " is named " + inQuotes(name) + ".")
      .ofMoreThanOneValue();
}

}  // namespace platform
