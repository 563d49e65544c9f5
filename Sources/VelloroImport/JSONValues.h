#pragma once

#include "Foundation/Coding/PropertyList.h"
#include "Foundation/Values/Error.h"
#include "OxKit/Platform.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velloro {

/// The document; fails with what is wrong with it.
[[nodiscard]] Result<PropertyList> jsonIn(std::string_view text);

/// Empty for everything but a text.
[[nodiscard]] std::string textOf(const PropertyList& value);
/// False for everything but true.
[[nodiscard]] bool isTrue(const PropertyList& value);
/// The number, where it is one from `least` to `most`.
[[nodiscard]] std::optional<std::int64_t> wholeNumber(const PropertyList& value, std::int64_t least,
                                                      std::int64_t most);
/// The elements of an array; none of anything else.
[[nodiscard]] const PropertyList::Array& elementsOf(const PropertyList& value);

}  // namespace velloro
