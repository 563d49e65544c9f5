#include "Foundation/Coding/Encoder.h"

#include "Foundation/Coding/JSONDocument.h"

#include <cmath>
#include <utility>

namespace platform {

void Encoder::null() {
  writer_.null();
}

void Encoder::boolean(bool value) {
  writer_.boolean(value);
}

void Encoder::integer(std::int64_t value) {
  writer_.integer(value);
}

void Encoder::unsignedInteger(std::uint64_t value) {
  writer_.unsignedInteger(value);
}

void Encoder::real(double value) {
  if (!std::isfinite(value)) {
    throw invalidValue("The number " + std::to_string(value) + " has no form in JSON.");
  }
  writer_.real(value);
}

void Encoder::text(std::string_view value) {
  if (!writer_.text(value)) throw invalidValue("The text is not UTF-8.");
}

void Encoder::date(Date value) {
  if (dateForm_ == DateForm::secondsSinceReferenceDate) {
    real(value.timeIntervalSinceReferenceDate());
    return;
  }
  constexpr double firstSecond = -62167219200;  // 0000-01-01
  constexpr double pastLast = 253402300800;     // 10000-01-01
  const double seconds = value.timeIntervalSince1970();
  if (!(seconds >= firstSecond && seconds < pastLast)) {
    throw invalidValue("The date " + std::to_string(seconds) +
                       " seconds after 1970 has no form in ISO 8601.");
  }
  text(value.iso8601());
}

EncodingError Encoder::invalidValue(std::string debugDescription) const {
  return {path_.text(), std::move(debugDescription)};
}

void Encoder::startObject() {
  checkDepth();
  writer_.startObject();
}

void Encoder::startArray() {
  checkDepth();
  writer_.startArray();
}

// What is written must be readable again.
void Encoder::checkDepth() const {
  if (writer_.depth() < maximumJSONDepth) return;
  throw invalidValue("The value nests deeper than " + std::to_string(maximumJSONDepth) +
                     " levels.");
}

void ObjectEncoder::writeKey(std::string_view key) {
  if (!encoder_.writer_.key(key)) throw encoder_.invalidValue("A key is not UTF-8.");
}

}  // namespace platform
