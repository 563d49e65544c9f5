#pragma once

#include <string_view>

namespace platform {

/// A type's name as a reader of an error knows it, without the house's namespaces.
///
///     typeName<platform::NSNotificationCenter::Token>();  // "NSNotificationCenter::Token"
template <typename T>
constexpr std::string_view typeName() {
  std::string_view name = __PRETTY_FUNCTION__;  // "… [with T = velloro::Task; std::string_view = …"
  name.remove_prefix(name.find("T = ") + 4);
  name = name.substr(0, name.find_first_of(";]"));
  for (const std::string_view house : {"velloro::", "platform::", "{anonymous}::"}) {
    if (name.starts_with(house)) name.remove_prefix(house.size());
  }
  return name;
}

}  // namespace platform
