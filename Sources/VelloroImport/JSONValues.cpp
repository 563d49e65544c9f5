#include "VelloroImport/JSONValues.h"

#include "Foundation/Coding/CodingError.h"

namespace velloro {

Result<PropertyList> jsonIn(std::string_view text) {
  try {
    return PropertyList::fromJSON(text);
  } catch (const DecodingError& error) {
    return failure<Error>("velloro.import", 2, std::string(error.localizedDescription()));
  }
}

std::string textOf(const PropertyList& value) {
  const std::string* text = value.text();
  return text != nullptr ? *text : "";
}

bool isTrue(const PropertyList& value) {
  return value.boolean().value_or(false);
}

std::optional<std::int64_t> wholeNumber(const PropertyList& value, std::int64_t least,
                                        std::int64_t most) {
  const auto number = value.integer();
  return number && *number >= least && *number <= most ? number : std::nullopt;
}

const PropertyList::Array& elementsOf(const PropertyList& value) {
  static const PropertyList::Array none;
  const PropertyList::Array* elements = value.array();
  return elements != nullptr ? *elements : none;
}

}  // namespace velloro
