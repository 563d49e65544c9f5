#pragma once

#include "Foundation/Coding/RawValue.h"
#include "OxKit/Platform.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/NearMatches.h"

#include <string>
#include <string_view>
#include <vector>

namespace velloro {

/// "write one of add, list, undo", for an error message.
[[nodiscard]] std::string oneOf(const std::vector<std::string_view>& names);

/// An error that names near matches, or all names where there are few, or says where they are
/// listed.
[[nodiscard]] UsageError unknownName(const std::string& name, const std::string& text,
                                     const std::string& what,
                                     const std::vector<std::string_view>& names,
                                     const std::string& where = {});

/// A case of an enumeration by its raw text.
///
///     caseArgument<ThemeMode>("--mode", "blak", "mode");
///         // throws UsageError; --mode "blak": not a mode; did you mean "black"?
template <RawRepresentable E>
[[nodiscard]] E caseArgument(const std::string& name, const std::string& text,
                             const std::string& what, const std::string& where = {}) {
  if (const auto value = fromRawValue<E>(text)) return *value;
  std::vector<std::string_view> names;
  for (const E value : allCases<E>()) names.push_back(rawValue(value));
  throw unknownName(name, text, what, names, where);
}

}  // namespace velloro
