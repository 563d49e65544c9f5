#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace platform {

/// A text as a reader sees it: every kind of space is a space, and marks of direction are gone.
inline std::string visible(std::string text) {
  constexpr std::pair<std::string_view, std::string_view> replacements[] = {
      {"\u00A0", " "}, {"\u202F", " "}, {"\u200E", ""}, {"\u200F", ""}, {"\u061C", ""}};
  for (const auto& [from, to] : replacements) {
    for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
      text.replace(at, from.size(), to);
    }
  }
  return text;
}

}  // namespace platform
