#include "velloro/Options/CaseArgument.h"

#include "Foundation/Text/String.h"

namespace velloro {

std::string oneOf(const std::vector<std::string_view>& names) {
  return "write one of " + listed(names);
}

UsageError unknownName(const std::string& name, const std::string& text, const std::string& what,
                       const std::vector<std::string_view>& names, const std::string& where) {
  constexpr std::size_t few = 30;
  std::string hint = suggestion(text, names);
  if (hint.empty()) hint = names.size() <= few ? oneOf(names) : where;
  const char* article = std::string_view("aeiou").contains(what.front()) ? "an " : "a ";
  return UsageError(name, text,
                    std::string("not ") + article + what + (hint.empty() ? "" : "; " + hint));
}

}  // namespace velloro
