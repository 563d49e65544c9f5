#pragma once

#include <algorithm>
#include <string>
#include <vector>

namespace velloro {

/// The names between the commas of an argument; empty ones too, which are no names.
///
///     namesIn("walk,run").size();    // 2
[[nodiscard]] inline std::vector<std::string> namesIn(const std::string& text) {
  std::vector<std::string> names;
  for (std::size_t from = 0; from <= text.size();) {
    const auto comma = std::min(text.find(',', from), text.size());
    names.push_back(text.substr(from, comma - from));
    from = comma + 1;
  }
  return names;
}

}  // namespace velloro
