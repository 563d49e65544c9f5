#include "velloro/CaseArgument.h"

namespace velloro {

UsageError unknownName(const std::string& name, const std::string& text, const std::string& what,
                       const std::vector<std::string_view>& names) {
  constexpr std::size_t few = 30;
  std::string hint = suggestion(text, names);
  if (hint.empty() && names.size() <= few) {
    for (const auto known : names) hint.append(hint.empty() ? "write one of " : ", ").append(known);
  }
  return UsageError(name + " \"" + text + "\": not a " + what + (hint.empty() ? "" : "; " + hint));
}

}  // namespace velloro
